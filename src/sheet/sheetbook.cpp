#include "sheet/sheetbook.h"

#include "chart/sticky.h"
#include "form/formview.h"
#include "project/projectfile.h"
#include "sheet/factorseeds.h"
#include "sheet/projectscene.h"
#include "support/pageinfo.h"

#include <QDebug>
#include <QGraphicsView>
#include <QUndoGroup>

#include <algorithm>
#include <utility>

SheetBook::SheetBook(SheetHost *host, QUndoGroup *undoGroup, ProjectFile *projectFile,
                     FormView *formView)
    : host(host), undoGroup(undoGroup), projectFile(projectFile), formView(formView)
{
    const QRect printable = PageInfo().getPrintableArea();
    mainSheet = new ProjectScene(host, undoGroup, projectFile, formView, printable.size());
    mainSheet->setParent(this);
    qDebug() << "Printable area" << printable;
    connect(mainSheet, &ProjectScene::causalFactorAdded, this, &SheetBook::onCausalFactorAdded);
    connect(mainSheet, &ProjectScene::causalFactorRemoved, this, &SheetBook::onCausalFactorRemoved);
    connect(projectFile, &ProjectFile::loadedItem, this, &SheetBook::onItemLoaded);
}

SheetBook::~SheetBook()
{
    // While they go, sheets still ask their host, and that asks this book.
    qDeleteAll(findChildren<ProjectScene *>());
}

QList<ProjectScene *> SheetBook::getFactorSheets() const
{
    QList<ProjectScene *> ordered = sheets.values();
    std::sort(ordered.begin(), ordered.end(), [](ProjectScene *a, ProjectScene *b) {
        return a->getParentNote()->getCausalFactorNumber() <
               b->getParentNote()->getCausalFactorNumber();
    });
    return ordered;
}

QList<ProjectScene *> SheetBook::getAllSheets() const
{
    return QList<ProjectScene *>{mainSheet} + getFactorSheets();
}

ProjectScene *SheetBook::getSheetOf(int number) const
{
    for (ProjectScene *sheet : sheets) {
        if (sheet->getParentNote()->getCausalFactorNumber() == number)
            return sheet;
    }
    return nullptr;
}

ProjectScene *SheetBook::getSheetForOwner(const QString &guid) const
{
    return sheetsByOwner.value(guid, mainSheet);
}

Sticky *SheetBook::getNoteWithGUID(const QString &guid) const
{
    if (auto *note = qobject_cast<Sticky *>(mainSheet->getItemWithGUID(guid)))
        return note;
    for (ProjectScene *sheet : sheets) {
        if (auto *note = qobject_cast<Sticky *>(sheet->getItemWithGUID(guid)))
            return note;
    }
    return nullptr;
}

QList<ProjectItem *> SheetBook::getProjectItems() const
{
    QList<ProjectItem *> items;
    for (ProjectScene *sheet : getAllSheets())
        items += sheet->getProjectItems();
    return items;
}

void SheetBook::finishEditing()
{
    for (ProjectScene *sheet : getAllSheets())
        sheet->finishEditing();
}

void SheetBook::shareEditedText()
{
    for (ProjectScene *sheet : getAllSheets())
        sheet->shareEditedText();
}

void SheetBook::clear()
{
    sheetsByOwner.clear();
    const QHash<const Sticky *, ProjectScene *> former = std::exchange(sheets, {});
    for (ProjectScene *sheet : former) {
        sheet->clear();
        emit sheetGoes(sheet);
        // What comes must not cost it any work.
        disconnect(projectFile, nullptr, sheet, nullptr);
        if (formView)
            disconnect(formView, nullptr, sheet, nullptr);
    }
    mainSheet->clear();
}

void SheetBook::setItemsFont(const QFont &font)
{
    for (ProjectScene *sheet : getAllSheets())
        sheet->setItemsFont(font);
}

void SheetBook::setPageSize(QSize size)
{
    for (ProjectScene *sheet : getAllSheets())
        sheet->setPageSize(size);
}

void SheetBook::onItemLoaded(CanvasItemInfo &info)
{
    if (!info.parent.isEmpty()) {
        getSheetForOwner(info.parent)->loadCanvasItem(info);
        return;
    }
    auto *note = qobject_cast<Sticky *>(mainSheet->loadCanvasItem(info));
    if (note && note->isParentItem())
        addInfoBox(createSheet(note));
}

void SheetBook::onCausalFactorAdded(Sticky *note)
{
    ProjectScene *sheet = createSheet(note);
    seedFactorSheet(sheet, note, mainSheet->getLossAndLoCNotes());
    if (formView) {
        const QString field = formView->addCausalFactor(
            note->getGUID(), note->getCausalFactorNumber(), note->getText());
        qDebug() << "Setting the sibling:" << field;
        note->addSibling(field);
    }
    addInfoBox(sheet);
}

void SheetBook::onCausalFactorRemoved(Sticky *note)
{
    ProjectScene *sheet = sheets.value(note);
    if (!sheet)
        return;
    sheet->finishEditing(); // a text under edit reaches its twins
    sheets.remove(note);
    sheetsByOwner.remove(sheet->getOwnerGUID(), sheet);
    undoGroup->removeStack(sheet->getUndoStack());
    emit sheetGoes(sheet);
    if (formView)
        formView->removeCausalFactor(note->getCausalFactorNumber());
    qDeleteAll(sheet->views());
    delete sheet;
}

ProjectScene *SheetBook::createSheet(Sticky *factor)
{
    const QSize pageSize = PageInfo().getPrintableArea().size();
    auto *sheet = new ProjectScene(host, undoGroup, projectFile, formView, pageSize, factor);
    sheet->setParent(this);
    sheets.insert(factor, sheet);
    sheetsByOwner.insert(factor->getGUID(), sheet);
    emit sheetCame(sheet);
    return sheet;
}
