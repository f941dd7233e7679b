#include "sheet/clipboard.h"

#include "chart/line.h"
#include "chart/toolid.h"
#include "sheet/projectscene.h"

#include <QApplication>
#include <QClipboard>
#include <QGraphicsView>
#include <QPainter>
#include <QPixmap>
#include <QSet>

#include <cmath>

namespace
{

constexpr qreal LargestPicture = 32e6; // pixels
constexpr qreal LongestSide = 32000;   // pixels; a pixmap has no more

QRectF getSceneBounds(const QList<ProjectItem *> &items)
{
    QRectF bounds;
    for (const ProjectItem *item : items)
        bounds |= item->sceneBoundingRect();
    return bounds.adjusted(-2, -2, 2, 2);
}

/// The size of a picture of the bounds: theirs, or smaller where items lie so
/// far apart that no pixmap could hold it.
QSize getPictureSize(const QRectF &bounds)
{
    const qreal area = bounds.width() * bounds.height();
    const qreal scale = qMin(qMin(1.0, std::sqrt(LargestPicture / area)),
                             LongestSide / qMax(bounds.width(), bounds.height()));
    return (bounds.size() * scale).toSize().expandedTo(QSize(1, 1));
}

QPixmap drawPicture(ProjectScene *scene, const QRectF &bounds)
{
    QPixmap picture(getPictureSize(bounds));
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    scene->setRenderBackground(false, true, true);
    scene->render(&painter, picture.rect(), bounds, Qt::KeepAspectRatio);
    scene->setRenderBackground(true, true, true);
    painter.end();
    return picture;
}

/// The place that a record takes. A line may run backwards; a box says its end
/// only by its size.
QRectF getPlace(const CanvasItemInfo &info)
{
    if (isLineTool(info.type))
        return QRectF(info.startPoint, info.endPoint).normalized();
    return QRectF(info.startPoint, info.size);
}

/// A record for a new item that is bound to no other.
CanvasItemInfo makeCopy(const CanvasItemInfo &original, const QPointF &offset,
                        const ProjectScene *scene)
{
    CanvasItemInfo copy = original;
    copy.guid.clear();
    copy.parent.clear();
    copy.siblings.clear();
    copy.startPoint += offset;
    copy.endPoint += offset;
    if (copy.role.getTypeName() == RoleType::CausalFactor)
        copy.causalFactorNumber = scene->getFirstUnusedCFNumber();
    return copy;
}

} // namespace

ClipBoard::ClipBoard(ProjectScene **activeScene, QObject *parent)
    : QObject(parent), activeScene(activeScene)
{
}

void ClipBoard::onCopyTriggered()
{
    ProjectScene *scene = *activeScene;
    const QList<ProjectItem *> selection =
        scene ? scene->getSelectedProjectItems() : QList<ProjectItem *>();
    if (selection.isEmpty())
        return;

    const QRectF bounds = getSceneBounds(selection);
    scene->clearSelection(); // no handles or marks in the picture
    const QPixmap picture = drawPicture(scene, bounds);
    for (ProjectItem *item : selection)
        item->setSelected(true);
    QApplication::clipboard()->setPixmap(picture);

    items.clear();
    for (ProjectItem *item : selection)
        items << item->getCanvasItemInfo();
    keepConnections(selection);
}

void ClipBoard::onPasteTriggered()
{
    ProjectScene *scene = *activeScene; // a pasted causal factor may change the active sheet
    if (items.isEmpty() || !scene)
        return;
    scene->clearSelection();
    const QPointF offset = getPasteOffset(scene);
    QHash<QString, ProjectItem *> pasted;
    for (const CanvasItemInfo &original : qAsConst(items)) {
        CanvasItemInfo copy = makeCopy(original, offset, scene);
        ProjectItem *item = scene->createCanvasItem(copy, true);
        if (!item)
            continue;
        item->setSelected(true);
        pasted.insert(original.guid, item);
    }
    restoreConnections(pasted);
}

/// Keeps the line ends whose note was copied too; the others will be free.
void ClipBoard::keepConnections(const QList<ProjectItem *> &copied)
{
    QSet<QString> guids;
    for (const CanvasItemInfo &info : qAsConst(items))
        guids.insert(info.guid);

    connections.clear();
    const auto keep = [&](const Line *line, int end, const ConnectionInfo &connection) {
        if (connection.item && guids.contains(connection.item->getGUID()))
            connections.append({line->getGUID(), nullptr, connection.item->getGUID(), nullptr, end,
                                connection.side});
    };
    for (ProjectItem *item : copied) {
        if (const auto *line = qobject_cast<Line *>(item)) {
            keep(line, Line::Start, line->getStartConnection());
            keep(line, Line::End, line->getEndConnection());
        }
    }
}

/// `pasted` holds the new items by the GUIDs of the copied ones.
void ClipBoard::restoreConnections(const QHash<QString, ProjectItem *> &pasted)
{
    for (ClipBoardConnection &connection : connections) {
        connection.line = qobject_cast<Line *>(pasted.value(connection.lineGuid));
        connection.note = qobject_cast<Sticky *>(pasted.value(connection.noteGuid));
        if (!connection.line || !connection.note)
            continue;
        if (connection.end == Line::Start)
            connection.line->setStartConnection({connection.note, connection.side});
        else
            connection.line->setEndConnection({connection.note, connection.side});
    }
}

/// Brings the group to a point near the top left of what the first view shows.
QPointF ClipBoard::getPasteOffset(const ProjectScene *scene) const
{
    QRectF bounds;
    for (const CanvasItemInfo &info : items)
        bounds |= getPlace(info);
    const QPoint corner(100, 100);
    const QList<QGraphicsView *> views = scene->views();
    const QPointF target = views.isEmpty() ? corner : views.first()->mapToScene(corner);
    return ProjectScene::getNearestGridPoint(target) - bounds.topLeft();
}
