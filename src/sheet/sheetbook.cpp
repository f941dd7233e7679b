#include "sheet/sheetbook.h"

#include "chart/formfields.h"
#include "chart/sticky.h"
#include "form/formview.h"
#include "project/projectfile.h"
#include "sheet/factorseeds.h"
#include "sheet/projectscene.h"
#include "support/fonts.h"
#include "support/log.h"
#include "support/pageinfo.h"

#include <QGraphicsView>
#include <QUndoGroup>
#include <QUndoStack>

#include <algorithm>
#include <utility>

namespace
{

constexpr int MostSeeds = 5; // a new sheet's items: three notes, two connectors

QString getTextField(int number)
{
    return FormFields::getRowField(FormFields::CausalFactorText, number);
}

/// Whether more stands in a row than a note brings along: its GUID and its text.
bool hasOwnWords(const QStringList &row)
{
    return std::any_of(row.begin() + 2, row.end(),
                       [](const QString &value) { return !value.isEmpty() && value != "false"; });
}

} // namespace

SheetBook::SheetBook(SheetHost *host, QUndoGroup *undoGroup, ProjectFile *projectFile,
                     FormView *formView)
    : host(host), undoGroup(undoGroup), projectFile(projectFile), formView(formView)
{
    const QRect printable = PageInfo().getPrintableArea();
    mainSheet = new ProjectScene(host, undoGroup, projectFile, formView, printable.size());
    mainSheet->setParent(this);
    qCDebug(sheetLog) << "Printable area" << printable;
    connect(mainSheet, &ProjectScene::causalFactorAdded, this, &SheetBook::onCausalFactorAdded);
    connect(mainSheet, &ProjectScene::causalFactorRemoved, this, &SheetBook::onCausalFactorRemoved);
    connect(mainSheet, &ProjectScene::factorGoes, this, &SheetBook::onFactorGoes);
    connect(mainSheet, &ProjectScene::stepTaken, this, &SheetBook::onStepTaken);
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
    QList<ProjectItem *> items = mainSheet->sortBottomFirst(mainSheet->getProjectItems());
    for (ProjectScene *sheet : getFactorSheets()) {
        if (isOnMainSheet(sheet->getParentNote()) && sheet->getParentNote()->isParentItem())
            items += sheet->sortBottomFirst(sheet->getProjectItems());
    }
    return items;
}

void SheetBook::finishEditing()
{
    finishInput();
    for (ProjectScene *sheet : getAllSheets())
        sheet->finishEditing();
}

void SheetBook::commitEditing()
{
    finishInput();
    for (ProjectScene *sheet : getAllSheets())
        sheet->commitEditing();
}

/// A dialog would take the release of a drag: its place would stand nowhere but on the screen.
void SheetBook::finishInput()
{
    if (formView)
        formView->settle();
    for (ProjectScene *sheet : getAllSheets()) {
        sheet->giveUpDrag();
        sheet->giveUpLine();
    }
}

void SheetBook::shareEditedText()
{
    for (ProjectScene *sheet : getAllSheets())
        sheet->shareEditedText();
}

bool SheetBook::isOnMainSheet(const Sticky *note) const
{
    return note->scene() == mainSheet;
}

void SheetBook::clear()
{
    for (const RestingSheet &rest : std::exchange(resting, {}))
        delete rest.sheet;
    leaving.clear();
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
    if (sheets.contains(note))
        return; // a step has brought it back already
    if (resting.contains(note)) {
        bringBack(note);
        return;
    }
    takeFreeNumber(note);
    ProjectScene *sheet = createSheet(note);
    seedFactorSheet(sheet, note, mainSheet->getLossAndLoCNotes());
    if (formView) {
        const QString field = formView->addCausalFactor(
            note->getGUID(), note->getCausalFactorNumber(), note->getText());
        qCDebug(sheetLog) << "Setting the sibling:" << field;
        note->addSibling(field);
    }
    addInfoBox(sheet);
}

void SheetBook::onCausalFactorRemoved(Sticky *note)
{
    ProjectScene *sheet = sheets.value(note);
    const Leave last =
        leaving.contains(note) ? leaving.take(note) : Leave{note->getCausalFactorNumber(), false};
    // News of a step that another has taken back.
    const bool isBack = isOnMainSheet(note) && note->isParentItem() &&
                        note->getSiblings().contains(getTextField(note->getCausalFactorNumber()));
    if (!sheet || isBack)
        return;
    if (last.undone) {
        layAside(note, last.number);
        return;
    }
    leave(sheet);
    if (formView)
        formView->removeCausalFactor(last.number);
    delete sheet;
}

void SheetBook::onFactorGoes(Sticky *factor)
{
    leaving.insert(factor, {factor->getCausalFactorNumber(), false});
    keepWork(factor);
}

void SheetBook::onStepTaken()
{
    for (Leave &leave : leaving)
        leave.undone = true;
    for (ProjectScene *sheet : sheets.values()) {
        Sticky *factor = sheet->getParentNote();
        if (isOnMainSheet(factor))
            continue;
        if (leaving.remove(factor) == 0)
            keepWork(factor);
        layAside(factor, factor->getCausalFactorNumber());
    }
    for (Sticky *factor : resting.keys()) {
        if (isOnMainSheet(factor) && factor->isParentItem())
            bringBack(factor);
    }
}

ProjectScene *SheetBook::createSheet(Sticky *factor)
{
    const QSize pageSize = PageInfo().getPrintableArea().size();
    auto *sheet = new ProjectScene(host, undoGroup, projectFile, formView, pageSize, factor);
    sheet->setParent(this);
    enter(sheet);
    emit sheetCame(sheet);
    return sheet;
}

void SheetBook::enter(ProjectScene *sheet)
{
    sheets.insert(sheet->getParentNote(), sheet);
    sheetsByOwner.insert(sheet->getOwnerGUID(), sheet);
}

void SheetBook::leave(ProjectScene *sheet)
{
    sheet->finishEditing(); // a text under edit reaches its twins
    sheets.remove(sheet->getParentNote());
    sheetsByOwner.remove(sheet->getOwnerGUID(), sheet);
    undoGroup->removeStack(sheet->getUndoStack());
    emit sheetGoes(sheet);
    qDeleteAll(sheet->views());
}

void SheetBook::layAside(Sticky *factor, int number)
{
    ProjectScene *sheet = sheets.value(factor);
    leave(sheet);
    QStringList row;
    if (formView) {
        row = formView->getCausalFactorRow(number);
        formView->removeCausalFactor(number);
    }
    resting.insert(factor, {sheet, row});
}

void SheetBook::bringBack(Sticky *factor)
{
    const RestingSheet rest = resting.take(factor);
    undoGroup->addStack(rest.sheet->getUndoStack());
    enter(rest.sheet);
    takeFreeNumber(factor);
    // Nothing reached the sheet while it was away.
    rest.sheet->setPageSize(mainSheet->getPageSize());
    rest.sheet->setItemsFont(getStandardFont());
    for (Sticky *note : rest.sheet->getAllNotes())
        note->catchUp();
    if (formView) {
        const QString field = formView->restoreCausalFactor(
            factor->getGUID(), factor->getCausalFactorNumber(), rest.row);
        formView->setFieldValue(field, factor->getText());
        factor->addSibling(field);
    }
    emit sheetCame(rest.sheet);
}

// A new number is no undo step, so the one that a step brings back may be another's by now.
void SheetBook::takeFreeNumber(Sticky *factor)
{
    const int number = factor->getCausalFactorNumber();
    for (ProjectItem *item : mainSheet->getItemsUnsorted()) {
        const auto *other = qobject_cast<Sticky *>(item);
        if (!other || other == factor || other->getRoleType() != RoleType::CausalFactor ||
            other->getCausalFactorNumber() != number)
            continue;
        if (factor->getSiblings().contains(getTextField(number)))
            factor->removeSibling(getTextField(number));
        factor->setCausalFactorNumber(mainSheet->getFirstUnusedCFNumber());
        return;
    }
}

void SheetBook::keepWork(Sticky *factor)
{
    ProjectScene *sheet = sheets.value(factor);
    const int number = factor->getCausalFactorNumber();
    const bool hasWork = sheet && (sheet->getUndoStack()->canUndo() ||
                                   sheet->getItemsUnsorted().size() > MostSeeds ||
                                   (formView && hasOwnWords(formView->getCausalFactorRow(number))));
    if (!hasWork)
        return;
    QList<ProjectItem *> items = getProjectItems();
    if (!isOnMainSheet(factor))
        items = items << factor << sheet->sortBottomFirst(sheet->getProjectItems());
    projectFile->keepSnapshot(items, formView ? formView->collectForSave() : FormValues());
    // The step may yet call the project clean.
    QMetaObject::invokeMethod(mainSheet, &ProjectScene::markDirty, Qt::QueuedConnection);
}
