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

/// Keeps the line ends whose note is copied too; the others will be free.
void keepConnections(CopiedItems &copy, const QList<ProjectItem *> &selection)
{
    QSet<QString> guids;
    for (const CanvasItemInfo &info : qAsConst(copy.items))
        guids.insert(info.guid);

    const auto keep = [&](const Line *line, int end, const ConnectionInfo &connection) {
        if (connection.item && guids.contains(connection.item->getGUID()))
            copy.connections.append({line->getGUID(), nullptr, connection.item->getGUID(), nullptr,
                                     end, connection.side});
    };
    for (ProjectItem *item : selection) {
        if (const auto *line = qobject_cast<Line *>(item)) {
            keep(line, Line::Start, line->getStartConnection());
            keep(line, Line::End, line->getEndConnection());
        }
    }
}

CopiedItems makeCopies(const QList<ProjectItem *> &selection)
{
    CopiedItems copy;
    for (ProjectItem *item : selection)
        copy.items << item->getCanvasItemInfo();
    keepConnections(copy, selection);
    return copy;
}

/// `pasted` holds the new items by the GUIDs of the copied ones.
void restoreConnections(CopiedItems &copy, const QHash<QString, ProjectItem *> &pasted)
{
    for (ClipBoardConnection &connection : copy.connections) {
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

/// New items, selected, each with its undo step.
void insertCopies(ProjectScene *scene, CopiedItems &copy, const QPointF &offset)
{
    scene->clearSelection();
    QHash<QString, ProjectItem *> pasted;
    for (const CanvasItemInfo &original : qAsConst(copy.items)) {
        CanvasItemInfo info = makeCopy(original, offset, scene);
        ProjectItem *item = scene->createCanvasItem(info, true);
        if (!item)
            continue;
        item->setSelected(true);
        pasted.insert(original.guid, item);
    }
    restoreConnections(copy, pasted);
}

/// From the bottom to the top, so that copies lie on each other as these do. Without a sheet
/// nothing is selected.
QList<ProjectItem *> getSelection(const ProjectScene *scene)
{
    return scene ? scene->sortBottomFirst(scene->getSelectedProjectItems())
                 : QList<ProjectItem *>();
}

} // namespace

ClipBoard::ClipBoard(ProjectScene **activeScene, QObject *parent)
    : QObject(parent), activeScene(activeScene)
{
}

void ClipBoard::onCopyTriggered()
{
    ProjectScene *scene = *activeScene;
    const QList<ProjectItem *> selection = getSelection(scene);
    if (selection.isEmpty())
        return;

    const QRectF bounds = getSceneBounds(selection);
    scene->clearSelection(); // no handles or marks in the picture
    const QPixmap picture = drawPicture(scene, bounds);
    for (ProjectItem *item : selection)
        item->setSelected(true);
    QApplication::clipboard()->setPixmap(picture);

    copied = makeCopies(selection);
}

void ClipBoard::onPasteTriggered()
{
    ProjectScene *scene = *activeScene; // a pasted causal factor may change the active sheet
    if (!copied.items.isEmpty() && scene)
        insertCopies(scene, copied, getPasteOffset(scene));
}

void ClipBoard::onDuplicateTriggered()
{
    ProjectScene *scene = *activeScene;
    const QList<ProjectItem *> selection = getSelection(scene);
    if (selection.isEmpty())
        return;
    CopiedItems copy = makeCopies(selection);
    insertCopies(scene, copy, QPointF(ChartSheet::GridStep, ChartSheet::GridStep));
}

/// Brings the group to a point near the top left of what the first view shows.
QPointF ClipBoard::getPasteOffset(const ProjectScene *scene) const
{
    QRectF bounds;
    for (const CanvasItemInfo &info : copied.items)
        bounds |= getPlace(info);
    const QPoint corner(100, 100);
    const QList<QGraphicsView *> views = scene->views();
    const QPointF target = views.isEmpty() ? corner : views.first()->mapToScene(corner);
    return ProjectScene::getNearestGridPoint(target) - bounds.topLeft();
}
