#include "sheet/projectscene.h"

#include "chart/sticky.h"
#include "form/formview.h"
#include "output/footeritem.h"
#include "output/headeritem.h"
#include "project/projectfile.h"
#include "sheet/pageinfo.h"
#include "sheet/sheethost.h"
#include "support/fonts.h"

#include <QGraphicsRectItem>
#include <QGraphicsView>
#include <QPainter>
#include <QSettings>
#include <QUndoGroup>
#include <QUndoStack>

#include <cmath>

namespace
{

// The scene is that much larger than its pages, to the right and below.
constexpr int SheetMargin = 20;
constexpr int CanvasCheckInterval = 250; // ms
// Nobody prints as many pages: beyond them an item has gone astray.
constexpr int MaximumFooters = 2000;

QRectF getExtent(const QGraphicsItem *item)
{
    return item->boundingRect().translated(item->pos());
}

QRectF extendTo(const QRectF &bound, const QGraphicsItem *item)
{
    const QRectF extent = getExtent(item);
    return QRectF(0, 0, qMax(bound.right(), extent.right()), qMax(bound.bottom(), extent.bottom()));
}

int countPages(qreal length, int page)
{
    const float pages = std::ceil(float(length) / float(page));
    return int(qBound(1.0f, pages, float(ProjectScene::MaximumPages)));
}

/// Whether a drag of the selection moves the item: also a line that hangs on it.
bool isDragged(const ProjectItem *item)
{
    const auto *line = qobject_cast<const Line *>(item);
    if (!line)
        return item->isSelected();
    const Sticky *start = line->getStartConnection().item;
    const Sticky *end = line->getEndConnection().item;
    return line->isSelected() || (start && start->isSelected()) || (end && end->isSelected());
}

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
    if (projectFile)
        connect(undoStack, &QUndoStack::cleanChanged, projectFile, &ProjectFile::setClean);
    if (formView)
        connect(formView, &FormView::formValueChanged, this, &ProjectScene::onFormValueChanged);
    createSingletonItems();
    canvasCheckTimer.setInterval(CanvasCheckInterval);
    connect(&canvasCheckTimer, &QTimer::timeout, this, &ProjectScene::checkMovingItems);
    boundTimer.setSingleShot(true);
    connect(&boundTimer, &QTimer::timeout, this, &ProjectScene::forgetBound);
    selectionTimer.setSingleShot(true);
    connect(&selectionTimer, &QTimer::timeout, this, &ProjectScene::reportSelection);
    setPagesGrid(1, 1);
    defaultFont = getStandardFont();
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

int ProjectScene::getNumVerticalPages() const
{
    return int(std::ceil((sceneRect().height() - SheetMargin) / pageSize.height()));
}

int ProjectScene::getNumHorizontalPages() const
{
    return int(std::ceil((sceneRect().width() - SheetMargin) / pageSize.width()));
}

QRectF ProjectScene::getPageBoundsAtPoint(const QPointF &p) const
{
    const int column = int(p.x() / pageSize.width());
    const int row = int(p.y() / pageSize.height());
    return QRectF(QPointF(column * pageSize.width(), row * pageSize.height()), pageSize);
}

bool ProjectScene::pageContainsItems(const QRectF &page) const
{
    const auto nearby = items(page, Qt::IntersectsItemBoundingRect);
    return std::any_of(nearby.begin(), nearby.end(), [&page](const QGraphicsItem *item) {
        return isProjectItem(item) && getExtent(item).intersects(page);
    });
}

QRectF ProjectScene::projectItemsBoundingRect() const
{
    QRectF bound(0, 0, 0, 0);
    for (const ProjectItem *item : itemIndex)
        bound = extendTo(bound, item);
    return bound;
}

QPair<Sticky *, Sticky *> ProjectScene::getLossAndLoCNotes() const
{
    QPair<Sticky *, Sticky *> found(nullptr, nullptr);
    for (Sticky *note : getAllNotes()) {
        if (note->getRoleType() == "Loss")
            found.first = note;
        else if (note->getRoleType() == "Loss_Of_Control")
            found.second = note;
    }
    return found;
}

QList<Sticky *> ProjectScene::getAllCausalFactors() const
{
    QList<Sticky *> factors = getAllNotes();
    const auto isOther = [](const Sticky *note) { return note->getRoleType() != "Causal_Factor"; };
    factors.erase(std::remove_if(factors.begin(), factors.end(), isOther), factors.end());
    return factors;
}

QList<Sticky *> ProjectScene::getAllNotes() const
{
    return pick<Sticky>(items());
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

void ProjectScene::setPagesGrid(int rows, int columns)
{
    const int height = qBound(1, rows, MaximumPages) * pageSize.height();
    const int width = qBound(1, columns, MaximumPages) * pageSize.width();
    setSceneRect(0, 0, width + SheetMargin, height + SheetMargin);
    updatePageNumberItems();
}

void ProjectScene::setPageSize(QSize size)
{
    pageSize = size.expandedTo(QSize(PageInfo::MinimumPage, PageInfo::MinimumPage));
    const QRectF bound = projectItemsBoundingRect();
    setPagesGrid(countPages(bound.bottom(), pageSize.height()),
                 countPages(bound.right(), pageSize.width()));
}

void ProjectScene::setRenderBackground(bool render, bool showFooters, bool showHeader)
{
    renderBackground = render;
    for (QGraphicsItem *item : items()) {
        if (item->type() == ProjectItem::InfoType)
            item->setVisible(render);
        else if (item->type() == ProjectItem::FooterType)
            item->setVisible(render && showFooters);
        else if (item == headerItem)
            item->setVisible(render && showHeader);
    }
}

void ProjectScene::clear()
{
    if (editingNote)
        emit textEditingChanged(false);
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
    if (undoStack)
        undoStack->clear(); // its steps hold raw pointers
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
    highlightItem = nullptr;
}

void ProjectScene::hideHighlightItem()
{
    if (highlightItem)
        highlightItem->hide();
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
        if (note && note->getRoleType() == "Causal_Factor")
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
    restingBound.reset();
    if (itemsBound)
        itemsBound = extendTo(*itemsBound, item);
}

void ProjectScene::itemLeft(ProjectItem *item)
{
    itemIndex.remove(item->getGUID(), item);
    itemsBound.reset();
    restingBound.reset();
    // An item that still has its scene leaves because it is being destroyed.
    if (item->scene())
        ownedItems.remove(item);
}

void ProjectScene::checkCanvasSize()
{
    fitPages(projectItemsBoundingRect());
}

void ProjectScene::updatePageNumberItems()
{
    const QSettings settings;
    if (headerItem)
        headerItem->setVisible(settings.value("showHeader", true).toBool());
    const FooterLook look = {settings.value("showPageNumbers", true).toBool(),
                             settings.value("showLegend", true).toBool(),
                             projectFile ? projectFile->getOpenProjectName() : QString(), pageSize};
    if (!(look == footerLook))
        resizeFooters(0, 0);
    footerLook = look;
    const int columns = getNumHorizontalPages();
    resizeFooters(qMin(getNumVerticalPages(), qMax(1, MaximumFooters / columns)), columns);
    for (const QList<FooterItem *> &row : qAsConst(footerItems)) {
        for (FooterItem *footer : row)
            footer->show();
    }
}

void ProjectScene::drawBackground(QPainter *painter, const QRectF &rect)
{
    QGraphicsScene::drawBackground(painter, rect);
    if (!renderBackground)
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, false);
    if (host->isGridEnabled())
        drawGrid(painter, rect);
    drawPageFrames(painter);
    painter->restore();
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

void ProjectScene::fitPages(const QRectF &bound)
{
    const int columns = countPages(bound.right(), pageSize.width());
    const int rows = countPages(bound.bottom(), pageSize.height());
    if (columns != getNumHorizontalPages() || rows != getNumVerticalPages())
        setPagesGrid(rows, columns);
}

// A file brings thousands of items in one turn of the event loop: walking over all of them
// after each would cost the square of their number.
void ProjectScene::checkCanvasAfterAdding()
{
    if (!itemsBound) {
        itemsBound = projectItemsBoundingRect();
        boundTimer.start(0);
    }
    fitPages(*itemsBound);
}

// While a file is opened, events are handled every now and then, yet items keep coming.
void ProjectScene::forgetBound()
{
    if (projectFile && projectFile->isBusy())
        boundTimer.start(0);
    else
        itemsBound.reset();
}

// Several times a second during a drag: too often to walk over the whole sheet.
void ProjectScene::checkMovingItems()
{
    if (!restingBound)
        splitMovingItems();
    QRectF bound = *restingBound;
    for (const ProjectItem *item : qAsConst(movingItems))
        bound = extendTo(bound, item);
    fitPages(bound);
}

void ProjectScene::splitMovingItems()
{
    movingItems.clear();
    restingBound = QRectF(0, 0, 0, 0);
    for (ProjectItem *item : qAsConst(itemIndex)) {
        if (isDragged(item))
            movingItems.append(item);
        else
            restingBound = extendTo(*restingBound, item);
    }
}

void ProjectScene::drawGrid(QPainter *painter, const QRectF &rect) const
{
    const int left = int(qMax(rect.left(), 0.0)) / GridStep * GridStep;
    const int top = int(qMax(rect.top(), 0.0)) / GridStep * GridStep;
    const qreal right = qMin(rect.right(), qreal(getNumHorizontalPages() * pageSize.width()));
    const qreal bottom = qMin(rect.bottom(), qreal(getNumVerticalPages() * pageSize.height()));
    QVarLengthArray<QPointF, 3000> dots;
    for (int x = left; x < right; x += GridStep) {
        for (int y = top; y < bottom; y += GridStep)
            dots.append(QPointF(x, y));
    }
    painter->setPen(QPen(QColor(192, 192, 192), 0));
    painter->drawPoints(dots.constData(), dots.size());
}

void ProjectScene::drawPageFrames(QPainter *painter) const
{
    const int width = getNumHorizontalPages() * pageSize.width();
    const int height = getNumVerticalPages() * pageSize.height();
    painter->setPen(QPen(Qt::black, 0)); // a hairline at every zoom
    for (int x = 0; x <= width; x += pageSize.width())
        painter->drawLine(x, 0, x, height);
    for (int y = 0; y <= height; y += pageSize.height())
        painter->drawLine(0, y, width, y);
}

// A growing sheet keeps the footers that it has: a file lets it grow page by page.
void ProjectScene::resizeFooters(int rows, int columns)
{
    while (footerItems.size() > rows) {
        for (FooterItem *footer : footerItems.takeLast())
            removeAndDelete(footer);
    }
    while (footerItems.size() < rows)
        footerItems.append(QList<FooterItem *>());
    for (int row = 0; row < rows; ++row) {
        QList<FooterItem *> &footers = footerItems[row];
        while (footers.size() > columns)
            removeAndDelete(footers.takeLast());
        while (footers.size() < columns)
            footers.append(makeFooter(row, footers.size()));
    }
}

FooterItem *ProjectScene::makeFooter(int row, int column)
{
    auto *footer = new FooterItem(row, column);
    const bool first = row == 0 && column == 0;
    footer->showFooter(footerLook.pageNumbers, footerLook.projectName, first && footerLook.legend);
    const QSizeF size = footer->effectiveSizeHint(Qt::PreferredSize);
    footer->resize(size);
    footer->setPos((column + 1) * pageSize.width() - size.width() - 1,
                   (row + 1) * pageSize.height() - size.height() - 1);
    addItem(footer);
    return footer;
}
