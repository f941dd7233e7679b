#include "sheet/projectscene.h"

#include "chart/sticky.h"
#include "chart/toolid.h"
#include "form/formview.h"
#include "project/projectfile.h"
#include "sheet/headeritem.h"
#include "support/pageinfo.h"

#include <QGraphicsRectItem>
#include <QGraphicsView>
#include <QUndoGroup>

#include <algorithm>
#include <tuple>
#include <vector>

namespace
{

constexpr int CanvasCheckInterval = 250; // ms

template<typename Item> QList<Item *> pick(const QList<QGraphicsItem *> &items)
{
    QList<Item *> picked;
    for (QGraphicsItem *item : items) {
        if (auto *match = qobject_cast<Item *>(item->toGraphicsObject()))
            picked.append(match);
    }
    return picked;
}

} // namespace

ProjectScene::ProjectScene(SheetHost *host, QUndoGroup *group, ProjectFile *projectFile,
                           FormView *formView, QSize pageSize, Sticky *parentNote)
    : host(host), projectFile(projectFile), formView(formView),
      pageSize(pageSize.expandedTo(QSize(PageInfo::MinimumPage, PageInfo::MinimumPage))),
      undoStack(new QUndoStack(group)), parentNote(parentNote)
{
    Q_ASSERT(host);
    if (parentNote)
        ownerGUID = parentNote->getGUID();
    setBackgroundBrush(Qt::white);
    connect(undoStack, &QUndoStack::indexChanged, this, &ProjectScene::onStepTaken);
    if (projectFile)
        connect(undoStack, &QUndoStack::cleanChanged, projectFile, &ProjectFile::setClean);
    if (formView)
        connect(formView, &FormView::formValueChanged, this, &ProjectScene::onFormValueChanged);
    createSingletonItems();
    canvasCheckTimer.setInterval(CanvasCheckInterval);
    connect(&canvasCheckTimer, &QTimer::timeout, this, &ProjectScene::checkMovingItems);
    stepTimer.setSingleShot(true);
    connect(&stepTimer, &QTimer::timeout, this, &ProjectScene::checkCanvasSize);
    boundTimer.setSingleShot(true);
    connect(&boundTimer, &QTimer::timeout, this, &ProjectScene::forgetBound);
    selectionTimer.setSingleShot(true);
    connect(&selectionTimer, &QTimer::timeout, this, &ProjectScene::reportSelection);
    setPagesGrid(1, 1);
    if (projectFile)
        connect(projectFile, &ProjectFile::projectNameChanged, this,
                &ProjectScene::updatePageNumberItems);
}

ProjectScene::~ProjectScene()
{
    // The end of one sheet must not make a project with other changes look clean.
    if (undoStack && projectFile)
        disconnect(undoStack, nullptr, projectFile, nullptr);
    deleteItems();
    delete undoStack;
}

QSizeF ProjectScene::gridToSize(int columns, int rows)
{
    return QSizeF(columns * GridStep, rows * GridStep);
}

QSizeF ProjectScene::getStandardItemSize(int tool)
{
    switch (tool) {
    case EventTool:
    case ConditionTool:
        return gridToSize(6, 4);
    case SequenceMarkerTool:
        return gridToSize(6, 1);
    case ImageTool:
        return gridToSize(8, 7);
    case ConnectorTool:
    case ArrowTool:
    case StraightLineTool:
        return gridToSize(3, 1);
    case FailedBarrierTool:
    case ImprovedBarrierTool:
    case NewBarrierTool:
    case BarrierWorkedTool:
        return QSizeF(17, 82);
    default:
        return gridToSize(20, 20);
    }
}

QPair<Sticky *, Sticky *> ProjectScene::getLossAndLoCNotes() const
{
    QList<ProjectItem *> losses, lossesOfControl;
    for (ProjectItem *item : itemIndex) {
        const auto *note = qobject_cast<Sticky *>(item);
        if (note && note->getRoleType() == RoleType::Loss)
            losses.append(item);
        else if (note && note->getRoleType() == RoleType::LossOfControl)
            lossesOfControl.append(item);
    }
    // Each new factor asks, so the slow walk by stacking order is for the rare case of several.
    const auto getLowest = [this](const QList<ProjectItem *> &notes) {
        const auto lowest = notes.size() < 2 ? notes : sortBottomFirst(notes);
        return static_cast<Sticky *>(lowest.value(0));
    };
    return {getLowest(losses), getLowest(lossesOfControl)};
}

QList<Sticky *> ProjectScene::getAllCausalFactors() const
{
    QList<Sticky *> factors = getAllNotes();
    const auto isOther = [](const Sticky *note) {
        return note->getRoleType() != RoleType::CausalFactor;
    };
    factors.erase(std::remove_if(factors.begin(), factors.end(), isOther), factors.end());
    return factors;
}

QList<Sticky *> ProjectScene::getAllNotes() const
{
    return pick<Sticky>(items());
}

QList<Sticky *> ProjectScene::getNotesInReadingOrder() const
{
    using Place = std::tuple<int, int, qreal, qreal, int>;
    std::vector<std::pair<Place, Sticky *>> places;
    for (ProjectItem *item : itemIndex) {
        if (auto *note = qobject_cast<Sticky *>(item))
            places.push_back(
                {{int(note->y() / pageSize.height()), int(note->x() / pageSize.width()), note->x(),
                  note->y(), entries.value(note)},
                 note});
    }
    std::sort(places.begin(), places.end());
    QList<Sticky *> notes;
    for (const auto &[place, note] : places)
        notes.append(note);
    return notes;
}

QList<Sticky *> ProjectScene::getSelectedNotes() const
{
    return pick<Sticky>(selectedItems());
}

QList<Line *> ProjectScene::getSelectedLines() const
{
    return pick<Line>(selectedItems());
}

QList<BoxItem *> ProjectScene::getSelectedBoxes() const
{
    return pick<BoxItem>(selectedItems());
}

QList<ProjectItem *> ProjectScene::getProjectItems() const
{
    return pick<ProjectItem>(items());
}

QList<ProjectItem *> ProjectScene::getSelectedProjectItems() const
{
    return pick<ProjectItem>(selectedItems());
}

QList<ProjectItem *> ProjectScene::sortBottomFirst(QList<ProjectItem *> items) const
{
    std::sort(items.begin(), items.end(), [this](const ProjectItem *a, const ProjectItem *b) {
        return entries.value(a) < entries.value(b);
    });
    return items;
}

void ProjectScene::clear()
{
    if (editingNote)
        emit textEditingChanged(false);
    clearSelection(); // else whoever shows the selection goes on counting it
    deleteItems();
    printEnabled = true;
    renderBackground = true;
    lastContextMenuPos = QPointF();
    createSingletonItems();
    setPagesGrid(1, 1);
}

void ProjectScene::deleteItems()
{
    canvasCheckTimer.stop();
    newLine = nullptr;
    editingNote = nullptr;
    if (undoStack) {
        undoStack->clear();    // its steps hold raw pointers
        undoStack->setClean(); // a stack without steps may bear a new number's mark
    }
    resizeFooters(0, 0);
    // What was deleted or undone stands on no sheet, so nobody else would free it.
    const QSet<ProjectItem *> known = ownedItems;
    for (ProjectItem *item : known)
        removeAndDelete(item);
    ownedItems.clear();
    for (QGraphicsItem *item : std::exchange(removedExtras, {})) {
        if (!item->scene())
            delete item;
    }
    QGraphicsScene::clear();
    headerItem = nullptr;
    infoBox = nullptr;
    highlightItem = nullptr;
}

void ProjectScene::hideHighlightItem()
{
    if (highlightItem)
        highlightItem->hide();
}

void ProjectScene::clearEdgeMarks()
{
    const auto items = itemIndex;
    for (ProjectItem *item : items) {
        if (auto *note = qobject_cast<Sticky *>(item))
            note->setHighlightedEdge(Sticky::NoSide);
    }
    for (Line *line : getSelectedLines())
        line->highlightEdges(true);
}

int ProjectScene::getViewZoom() const
{
    return views().isEmpty() ? 0 : qRound(views().first()->transform().m11() * 100);
}

Sticky *ProjectScene::getNoteAt(QPointF scenePos) const
{
    for (QGraphicsItem *item : items(scenePos)) {
        if (item->type() == ProjectItem::StickyType && item->contains(item->mapFromScene(scenePos)))
            return static_cast<Sticky *>(item);
    }
    return nullptr;
}

ProjectItem *ProjectScene::getItemWithGUID(const QString &guid) const
{
    return itemIndex.value(guid);
}

int ProjectScene::getFirstUnusedCFNumber() const
{
    QSet<int> used;
    for (ProjectItem *item : itemIndex) {
        auto *note = qobject_cast<Sticky *>(item);
        if (note && note->getRoleType() == RoleType::CausalFactor)
            used.insert(note->getCausalFactorNumber());
    }
    int number = 1;
    while (used.contains(number))
        ++number;
    return number;
}

void ProjectScene::setHighlightToNote(Sticky *note)
{
    const QRectF geometry = note->getGeometry();
    highlightItem->setRect(QRectF(getNearestGridPoint(geometry.topLeft()),
                                  getNearestGridPoint(geometry.bottomRight())));
}

void ProjectScene::dragNewLine(const QPointF &scenePos)
{
    if (newLine)
        newLine->handleLineMoving(scenePos, Line::End);
}

void ProjectScene::setConnectedFormField(const QString &id, const QString &text)
{
    if (formView)
        formView->setFieldValue(id, text);
}

void ProjectScene::itemEntered(ProjectItem *item)
{
    itemIndex.insert(item->getGUID(), item);
    ownedItems.insert(item);
    entries.insert(item, ++lastEntry);
    restingBound.reset();
    extendBound(item);
}

void ProjectScene::itemLeft(ProjectItem *item)
{
    itemIndex.remove(item->getGUID(), item);
    entries.remove(item);
    itemsBound.reset();
    restingBound.reset();
    // An item that still has its scene leaves because it is being destroyed.
    if (!item->scene())
        return;
    ownedItems.remove(item);
    if (item == editingNote)
        editingNote = nullptr;
}

void ProjectScene::createSingletonItems()
{
    highlightItem = addRect(QRectF(0, 0, GridStep, GridStep), QPen(), QColor(0, 0, 0, 50));
    highlightItem->hide();
    if (!isSecondary())
        createHeader();
}

void ProjectScene::createHeader()
{
    headerItem = new HeaderItem;
    connect(headerItem, &HeaderItem::editRequested, this, &ProjectScene::headerEditRequested);
    if (formView) {
        connect(formView, &FormView::formValueChanged, headerItem, &HeaderItem::setHeaderValue);
        connect(formView, &FormView::formValueLoaded, headerItem, &HeaderItem::setHeaderValue);
    } else if (projectFile) {
        connect(projectFile, &ProjectFile::loadedFormData, headerItem,
                &HeaderItem::setHeaderValues);
    }
    headerItem->loadTemplate(":/formdata/header_template.html");
    addItem(headerItem);
    headerItem->setPos(0, 0);
}

// Deleting an item with children while it is on a large scene takes the toolkit a walk
// over all items for each child.
void ProjectScene::removeAndDelete(QGraphicsItem *item)
{
    if (item->scene())
        removeItem(item);
    delete item;
}
