#include "sheet/projectscene.h"

#include "chart/routing.h"
#include "chart/sheethost.h"
#include "editing/commands.h"
#include "support/rounding.h"

#include <QDataStream>
#include <QGraphicsRectItem>
#include <QGraphicsSceneContextMenuEvent>
#include <QGraphicsSceneDragDropEvent>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsView>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QUndoStack>
#include <QtMath>

namespace
{

constexpr double ShortestLine = 10;
constexpr int LineReach = 3; // pixels of the screen beside a line that still mean it

// Nothing for a foreign drag and for a payload that is cut short.
std::optional<int> readTool(const QMimeData *data)
{
    if (!data->hasFormat(ToolMimeType))
        return std::nullopt;
    QDataStream stream(data->data(ToolMimeType));
    qint32 tool = SelectTool;
    stream >> tool;
    if (stream.status() != QDataStream::Ok)
        return std::nullopt;
    return tool;
}

void acceptAsMove(QGraphicsSceneDragDropEvent *event)
{
    event->setDropAction(Qt::MoveAction);
    event->accept();
}

QPointF getArrowStep(int key)
{
    switch (key) {
    case Qt::Key_Left:
        return QPointF(-ChartSheet::GridStep, 0);
    case Qt::Key_Right:
        return QPointF(ChartSheet::GridStep, 0);
    case Qt::Key_Up:
        return QPointF(0, -ChartSheet::GridStep);
    case Qt::Key_Down:
        return QPointF(0, ChartSheet::GridStep);
    default:
        return QPointF();
    }
}

/// The pixel that holds the point; QGraphicsView::mapFromScene() rounds.
QPoint toPixel(const QGraphicsView *view, const QPointF &scenePos)
{
    const QPointF p = view->viewportTransform().map(scenePos);
    return QPoint(qFloor(p.x()), qFloor(p.y()));
}

/// The closest point of a line near the pixel, where no other item covers it; null if none.
std::optional<QPointF> getPointBeside(const QGraphicsView *view, const QPoint &pixel)
{
    const qreal scale = view->transform().m11();
    const QRect around(pixel.x() - LineReach, pixel.y() - LineReach, 2 * LineReach + 1,
                       2 * LineReach + 1);
    const QPointF p = view->viewportTransform().inverted().map(QPointF(pixel) + QPointF(0.5, 0.5));
    std::optional<QPointF> closest;
    for (QGraphicsItem *item : view->scene()->items(view->mapToScene(around).boundingRect(),
                                                    Qt::IntersectsItemBoundingRect)) {
        const auto *line = qobject_cast<Line *>(item->toGraphicsObject());
        if (!line)
            continue;
        const QPointF point = getClosestPoint(line->getPoints(), p);
        const qreal distance = QLineF(p, point).length();
        const qreal reach = LineReach / scale + line->getBorderLineWidth() / 2.0;
        if (distance <= reach && (!closest || distance < QLineF(p, *closest).length()) &&
            view->itemAt(toPixel(view, point)) == item)
            closest = point;
    }
    return closest;
}

/// A press or a menu just beside a line, with nothing else there, is meant for the line.
template<typename Event> void aimAtLine(Event *event)
{
    const QWidget *viewport = event->widget();
    auto *view = viewport ? qobject_cast<QGraphicsView *>(viewport->parentWidget()) : nullptr;
    if (!view || view->itemAt(viewport->mapFromGlobal(event->screenPos())))
        return;
    if (const auto p = getPointBeside(view, viewport->mapFromGlobal(event->screenPos()))) {
        event->setScenePos(*p);
        event->setScreenPos(viewport->mapToGlobal(toPixel(view, *p)));
    }
}

/// The shift key adds to the selection too.
void addAsControlDoes(QGraphicsSceneMouseEvent *event)
{
    if (event->modifiers() & Qt::ShiftModifier)
        event->setModifiers(event->modifiers() | Qt::ControlModifier);
}

} // namespace

void ProjectScene::dragEnterEvent(QGraphicsSceneDragDropEvent *event)
{
    dragMoveEvent(event);
    highlightItem->setVisible(event->isAccepted() && readTool(event->mimeData()).has_value());
}

void ProjectScene::dragMoveEvent(QGraphicsSceneDragDropEvent *event)
{
    const std::optional<int> tool = readTool(event->mimeData());
    if (!tool) {
        event->ignore();
        if (editingNote) // takes text
            QGraphicsScene::dragMoveEvent(event);
        return;
    }
    moveHighlight(*tool, event->scenePos());
    acceptAsMove(event);
}

void ProjectScene::dragLeaveEvent(QGraphicsSceneDragDropEvent *event)
{
    hideHighlightItem();
    QGraphicsScene::dragLeaveEvent(event);
}

void ProjectScene::dropEvent(QGraphicsSceneDragDropEvent *event)
{
    const std::optional<int> tool = readTool(event->mimeData());
    if (!tool) {
        event->ignore();
        if (editingNote)
            QGraphicsScene::dropEvent(event);
        return;
    }
    createItemAt(event->scenePos(), *tool);
    hideHighlightItem();
    acceptAsMove(event);
}

void ProjectScene::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    const int tool = host->selectedTool();
    if (tool == HandTool)
        return;
    if (event->button() == Qt::LeftButton)
        finishLeftLine();
    Sticky *note = getNoteAt(event->scenePos());
    const bool startsOnNote = isLineTool(tool) && note;
    if (tool == SelectTool)
        aimAtLine(event);
    if (!editingNote || editingNote != note)
        addAsControlDoes(event);
    if (!startsOnNote)
        QGraphicsScene::mousePressEvent(event);
    if (editingNote && editingNote != note)
        finishEditing();
    if (event->isAccepted())
        return;

    if (event->button() != Qt::LeftButton || tool == SelectTool) {
        event->ignore();
    } else if (isLineTool(tool)) {
        startLine(tool, event->scenePos());
        event->accept();
    } else {
        createItemAt(event->scenePos(), tool);
        hideHighlightItem();
        event->accept();
    }
}

void ProjectScene::mouseMoveEvent(QGraphicsSceneMouseEvent *event)
{
    const int tool = host->selectedTool();
    if (tool == HandTool)
        return;
    if (!(event->buttons() & Qt::LeftButton))
        finishLeftLine();
    if (newLine) {
        dragNewLine(event->scenePos());
        event->accept();
    } else if (!isMetaTool(tool) && !isLineTool(tool)) {
        moveHighlight(tool, event->scenePos());
        highlightItem->show();
        event->accept();
    } else {
        event->ignore();
        QGraphicsScene::mouseMoveEvent(event);
    }
}

void ProjectScene::mouseReleaseEvent(QGraphicsSceneMouseEvent *event)
{
    const int tool = host->selectedTool();
    if (tool == HandTool)
        return;
    Sticky *note = getNoteAt(event->scenePos());
    // A line under way ends here even if the tool has changed meanwhile.
    if (newLine) {
        if (event->button() == Qt::LeftButton)
            finishLine(note);
        event->accept();
        return;
    }
    // A barrier or a line's end may be dragged with a line tool in hand: what holds the
    // mouse must see its release.
    if (isLineTool(tool) && note && !mouseGrabberItem())
        return;
    if (!editingNote)
        addAsControlDoes(event);
    event->ignore();
    QGraphicsScene::mouseReleaseEvent(event);
}

void ProjectScene::mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event)
{
    if (host->selectedTool() != HandTool)
        QGraphicsScene::mouseDoubleClickEvent(event);
}

void ProjectScene::keyPressEvent(QKeyEvent *event)
{
    if (editingNote) {
        QGraphicsScene::keyPressEvent(event);
        return;
    }
    const QPointF step = getArrowStep(event->key());
    if (step.isNull() || getSelectedBoxes().isEmpty()) {
        event->ignore();
        QGraphicsScene::keyPressEvent(event);
        return;
    }
    moveSelectedBoxes(step);
    event->accept();
}

// A menu takes the focus when it opens, and once more at its first arrow key: by then the
// toolkit would forget which text is to have it back.
void ProjectScene::focusOutEvent(QFocusEvent *event)
{
    if (hasFocus())
        QGraphicsScene::focusOutEvent(event);
}

QGraphicsItem *ProjectScene::getItemUnder(const QGraphicsSceneContextMenuEvent *event) const
{
    const QWidget *viewport = event->widget();
    auto *view = viewport ? qobject_cast<QGraphicsView *>(viewport->parentWidget()) : nullptr;
    // A line's outline holds no point, but a pixel meets it.
    return view ? view->itemAt(viewport->mapFromGlobal(event->screenPos()))
                : itemAt(event->scenePos(), QTransform());
}

void ProjectScene::contextMenuEvent(QGraphicsSceneContextMenuEvent *event)
{
    if (newLine)
        return; // a menu would keep the release to itself
    aimAtLine(event);
    const QGraphicsItem *item = getItemUnder(event);
    if (item && item != highlightItem) {
        event->ignore();
        QGraphicsScene::contextMenuEvent(event);
        return;
    }
    lastContextMenuPos = event->scenePos();
    if (QMenu *menu = host->getSceneContextMenu())
        menu->exec(event->screenPos());
}

void ProjectScene::startLine(int tool, const QPointF &scenePos)
{
    CanvasItemInfo info;
    info.type = tool;
    info.arrowStyle = tool == ArrowTool ? Line::ArrowAtEnd : Line::NoArrows;
    info.startPoint = roundHalfUp(scenePos);
    info.endPoint = info.startPoint;
    newLine = qobject_cast<Line *>(loadCanvasItem(info));
    if (!newLine)
        return;
    clearSelection();
    newLine->setSelected(true);
    newLine->handleLineMoving(scenePos, Line::Start);
}

void ProjectScene::finishLine(Sticky *noteUnderPointer)
{
    Line *line = std::exchange(newLine, nullptr);
    line->settleAutoSides();
    const Sticky *startNote = line->getStartConnection().item;
    const bool backAtStart = startNote && startNote == noteUnderPointer;
    const bool stands = line->scene() == this && line->length() >= ShortestLine && !backAtStart;
    if (stands)
        undoStack->push(new AddCommand(line, this));
    else
        dropLine(line);
}

// A line whose release went to a menu, a dialog or another tab would stand outside all steps.
void ProjectScene::finishLeftLine()
{
    if (newLine)
        finishLine(newLine->getEndConnection().item);
}

void ProjectScene::giveUpLine()
{
    if (newLine)
        dropLine(std::exchange(newLine, nullptr));
}

void ProjectScene::giveUpDrag()
{
    if (QGraphicsItem *item = mouseGrabberItem())
        item->ungrabMouse();
}

void ProjectScene::onNoteFollowed(Sticky *note)
{
    giveUpDrag(); // the release goes to the sheet that comes
    emit factorFollowed(note);
}

void ProjectScene::dropLine(Line *line)
{
    if (line->scene() != this)
        return; // deleted under the mouse, and its undo step still knows it
    line->setSelected(false);
    removeItem(line);
    ownedItems.remove(line);
    delete line;
}

void ProjectScene::moveSelectedBoxes(const QPointF &step)
{
    BoxGeometries before;
    for (BoxItem *box : getSelectedBoxes()) {
        const QRectF geometry = box->getGeometry();
        const QPointF place = geometry.topLeft() + step;
        box->setPos(qMax(place.x(), 0.0), qMax(place.y(), 0.0)); // as far as a drag goes
        if (box->pos() != geometry.topLeft())
            before.append({box, geometry});
    }
    if (before.isEmpty())
        return;
    undoStack->push(new GeometryChangeCommand(before));
    checkCanvasSize();
}
