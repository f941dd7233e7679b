#include "chart/sheethost.h"
#include "project/projectfile.h"
#include "sheet/footeritem.h"
#include "sheet/headeritem.h"
#include "sheet/infoitem.h"
#include "sheet/projectscene.h"
#include "support/pageinfo.h"
#include "support/projectsettings.h"

#include <QPainter>

#include <cmath>

namespace
{

// The scene is that much larger than its pages, to the right and below.
constexpr int SheetMargin = 20;
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

/// The row or column of pages at this place, within those that there are.
int getPageOf(qreal place, qreal page, int pages)
{
    return int(qBound(0.0, std::floor(place / page), pages - 1.0));
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

} // namespace

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

std::set<ProjectScene::PagePlace> ProjectScene::getFilledPages(const QSizeF &page, int rows,
                                                               int columns) const
{
    std::set<PagePlace> filled;
    for (const ProjectItem *item : itemIndex) {
        const QRectF extent = getExtent(item);
        const int lastRow = getPageOf(extent.bottom(), page.height(), rows);
        const int lastColumn = getPageOf(extent.right(), page.width(), columns);
        for (int row = getPageOf(extent.top(), page.height(), rows); row <= lastRow; ++row) {
            for (int column = getPageOf(extent.left(), page.width(), columns); column <= lastColumn;
                 ++column) {
                const QPointF corner(column * page.width(), row * page.height());
                if (extent.intersects(QRectF(corner, page)))
                    filled.insert({row, column});
            }
        }
    }
    return filled;
}

QRectF ProjectScene::projectItemsBoundingRect() const
{
    QRectF bound(0, 0, 0, 0);
    for (const ProjectItem *item : itemIndex)
        bound = extendTo(bound, item);
    return bound;
}

void ProjectScene::setPagesGrid(int rows, int columns)
{
    const int height = qBound(1, rows, MaximumPages) * pageSize.height();
    const int width = qBound(1, columns, MaximumPages) * pageSize.width();
    setSceneRect(0, 0, width + SheetMargin, height + SheetMargin);
    updatePageNumberItems();
    // The frames of pages that were and of those that come; while items come in, once at the end,
    // as each painting files all of them anew.
    if (!boundTimer.isActive())
        update();
}

void ProjectScene::setPageSize(QSize size)
{
    pageSize = size.expandedTo(QSize(PageInfo::MinimumPage, PageInfo::MinimumPage));
    const QRectF bound = projectItemsBoundingRect();
    setPagesGrid(countPages(bound.bottom(), pageSize.height()),
                 countPages(bound.right(), pageSize.width()));
}

QList<FooterItem *> ProjectScene::getFooters() const
{
    QList<FooterItem *> footers;
    for (const QList<FooterItem *> &row : footerItems)
        footers += row;
    return footers;
}

void ProjectScene::setInfoBox(InfoItem *box)
{
    infoBox = box;
    addItem(box);
}

void ProjectScene::setRenderBackground(bool render, bool showFooters, bool showHeader)
{
    dress(render, render && showFooters, render && showHeader);
}

void ProjectScene::dressForPaper(bool decorated)
{
    dress(false, decorated, decorated);
}

void ProjectScene::checkCanvasSize()
{
    fitPages(projectItemsBoundingRect());
}

void ProjectScene::updatePageNumberItems()
{
    const ProjectSettings settings;
    if (headerItem)
        headerItem->setVisible(settings.shows(ProjectSettings::Header));
    const FooterLook look = {settings.shows(ProjectSettings::PageNumbers),
                             settings.shows(ProjectSettings::Legend),
                             projectFile ? projectFile->getOpenProjectName() : QString(), pageSize};
    if (!(look == footerLook))
        resizeFooters(0, 0);
    footerLook = look;
    const int columns = getNumHorizontalPages();
    resizeFooters(qMin(getNumVerticalPages(), qMax(1, MaximumFooters / columns)), columns);
    for (FooterItem *footer : getFooters())
        footer->show();
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

void ProjectScene::dress(bool background, bool footers, bool header)
{
    renderBackground = background;
    const bool hasHeader = ProjectSettings().shows(ProjectSettings::Header);
    if (!background)
        clearEdgeMarks();
    if (infoBox)
        infoBox->setVisible(background);
    for (FooterItem *footer : getFooters())
        footer->setVisible(footers);
    if (headerItem)
        headerItem->setVisible(header && hasHeader);
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

void ProjectScene::extendBound(const ProjectItem *item)
{
    if (itemsBound)
        itemsBound = extendTo(*itemsBound, item);
}

// While a file is opened, events are handled every now and then, yet items keep coming.
void ProjectScene::forgetBound()
{
    if (projectFile && projectFile->isBusy()) {
        boundTimer.start(0);
        return;
    }
    itemsBound.reset();
    update();
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
