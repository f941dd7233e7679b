#include "chart/line.h"

#include "chart/chartsheet.h"
#include "chart/routing.h"
#include "chart/sharpness.h"
#include "chart/sheethost.h"
#include "support/log.h"

#include <QCursor>
#include <QPaintEngine>
#include <QPainter>

#include <limits>

namespace
{

constexpr qreal HandleSize = 6;
constexpr qreal ArrowSize = 1.5 * HandleSize; // length and width
constexpr qreal NormalZ = 1;
constexpr qreal SelectedZ = 5;

QRectF makeHandle(const QPointF &p)
{
    return QRectF(p.x() - HandleSize / 2, p.y() - HandleSize / 2, HandleSize, HandleSize);
}

Line::LineSide getOther(Line::LineSide side)
{
    return side == Line::Start ? Line::End : Line::Start;
}

/// Two smooth strokes show the joint where they meet as a dot. Along an axis there is nothing
/// to smooth, and whole pixels keep all segments of a route equally wide. A filled bar is drawn
/// in half the time of a stroke.
void drawSharpLines(QPainter *painter, QPen pen, const QVector<QLineF> &lines)
{
    if (painter->paintEngine()->type() == QPaintEngine::Pdf) { // has no pixels
        painter->setPen(pen);
        painter->drawLines(lines);
        return;
    }
    const qreal scale = painter->deviceTransform().m11();
    if (scale > 0)
        pen.setWidthF(qMax(1, qRound(pen.widthF() * scale)) / scale);
    const qreal margin = pen.widthF() / 2; // the ends are square
    const bool smooth = painter->testRenderHint(QPainter::Antialiasing);
    painter->setPen(pen);
    painter->setRenderHint(QPainter::Antialiasing, false);
    if (pen.style() == Qt::SolidLine) {
        for (const QLineF &line : lines) {
            const QRectF bar = QRectF(line.p1(), line.p2()).normalized();
            painter->fillRect(bar.adjusted(-margin, -margin, margin, margin), pen.color());
        }
    } else {
        painter->drawLines(lines);
    }
    painter->setRenderHint(QPainter::Antialiasing, smooth);
}

/// Where a line that comes from the point meets the note; all in the scene.
QPointF getMeetingPoint(const Sticky *note, Sticky::Side side, const QPointF &from)
{
    return note->mapToScene(note->getConnectionPoint(side, note->mapFromScene(from)));
}

/// The end as the router sees it: on a settled side, or free.
RouteEnd makeRouteEnd(const QPointF &p, const Sticky *note, Sticky::Side side,
                      const QPointF &otherEnd)
{
    if (!note)
        return {p, Sticky::NoSide};
    if (side == Sticky::AutoSide)
        return {p, note->resolveAutoSide(note->mapFromScene(otherEnd))};
    return {p, side};
}

} // namespace

bool LineEnds::operator==(const LineEnds &other) const
{
    return startPoint == other.startPoint && endPoint == other.endPoint && start == other.start &&
           end == other.end;
}

Line::Line(ChartSheet *sheet, CanvasItemInfo &record) : ProjectItem(sheet, record)
{
    straight = info.type != ConnectorTool;
    if (!info.backgroundColor.isValid())
        info.backgroundColor = Qt::black;
    setFlag(ItemIsSelectable);
    setZValue(NormalZ);
    // The caller's record takes the usual width; this line keeps what it was given.
    record.borderLineWidth = qBound(2, record.borderLineWidth, 10);
    pen.setWidth(record.borderLineWidth);
    setCursor(Qt::SizeAllCursor);
    startHandle = makeHandle(info.startPoint);
    setEndPoint(info.endPoint);
}

double Line::length() const
{
    return QLineF(info.startPoint, info.endPoint).length();
}

Qt::PenStyle Line::getLineStyle() const
{
    const bool known = info.lineStyle >= Qt::NoPen && info.lineStyle <= Qt::DashDotDotLine;
    return known ? Qt::PenStyle(info.lineStyle) : Qt::SolidLine;
}

Line::ArrowType Line::getArrowStyle() const
{
    return info.arrowStyle == ArrowAtEnd ? ArrowAtEnd : NoArrows;
}

void Line::setStartPoint(QPointF p)
{
    info.startPoint = p;
    startHandle = makeHandle(p);
    buildPath();
}

void Line::setEndPoint(QPointF p)
{
    info.endPoint = p;
    endHandle = makeHandle(p);
    buildPath();
}

void Line::connectStartPoint(Sticky *note, Sticky::Side side)
{
    connectPoint(Start, note, side);
}

void Line::connectEndPoint(Sticky *note, Sticky::Side side)
{
    connectPoint(End, note, side);
}

void Line::setStartConnection(ConnectionInfo connection)
{
    connectPoint(Start, connection.item, connection.side);
}

void Line::setEndConnection(ConnectionInfo connection)
{
    connectPoint(End, connection.item, connection.side);
}

void Line::disconnectStartPoint()
{
    disconnectPoint(Start);
}

void Line::disconnectEndPoint()
{
    disconnectPoint(End);
}

void Line::setEnds(const LineEnds &ends)
{
    hang(Start, ends.start);
    hang(End, ends.end);
    setStartPoint(ends.startPoint);
    setEndPoint(ends.endPoint);
    if (selected)
        highlightEdges(true);
}

void Line::setLineStyle(Qt::PenStyle style)
{
    if (info.lineStyle == style)
        return;
    info.lineStyle = style;
    update();
}

void Line::setArrowStyle(ArrowType style)
{
    if (info.arrowStyle == style)
        return;
    info.arrowStyle = style;
    buildPath();
}

void Line::handleLineMoving(const QPointF &scenePos, LineSide side)
{
    const LineSide other = getOther(side);
    Sticky *note = sheet->getNoteAt(scenePos);
    if (!note) {
        disconnectPoint(side);
        setPoint(side, scenePos);
    } else {
        Sticky::Side edge = note->updateLineConnection(note->mapFromScene(scenePos));
        if (edge == Sticky::NoSide) { // between the bands of a note as flat as a marker
            edge = Sticky::AutoSide;
            note->setHighlightedEdge(edge);
        }
        if (note != itemAt(other)) {
            connectPoint(side, note, edge);
            setPoint(side, getMeetingPoint(note, edge, getPoint(other)));
        }
    }
    followAutoSide(other);
}

void Line::settleAutoSides()
{
    if (!isAuto(Start) || !isAuto(End) || startItem == endItem)
        return;
    // The order is the one in which a note settles ties, so that the stubs agree.
    static constexpr auto sides = {Sticky::LeftSide, Sticky::RightSide, Sticky::TopSide,
                                   Sticky::BottomSide};
    QLineF shortest;
    qreal length = std::numeric_limits<qreal>::max();
    for (Sticky::Side start : sides) {
        for (Sticky::Side end : sides) {
            const QLineF link(startItem->mapToScene(startItem->getEdgeMidPoint(start)),
                              endItem->mapToScene(endItem->getEdgeMidPoint(end)));
            if (link.length() <= length) {
                shortest = link;
                length = link.length();
            }
        }
    }
    moveTo(Start, shortest.p1());
    moveTo(End, shortest.p2());
}

CanvasItemInfo Line::getCanvasItemInfo()
{
    const QPointF extent = info.endPoint - info.startPoint;
    info.size = QSizeF(extent.x(), extent.y());
    return info;
}

void Line::setCustomBackgroundColor(const QColor &color)
{
    info.backgroundColor = color;
    update();
}

// The extent of a line is that of its ends.
void Line::setSize(QSizeF) {}

QRectF Line::boundingRect() const
{
    const qreal margin = info.borderLineWidth / 2.0;
    return shapePath.boundingRect().adjusted(-margin, -margin, margin, margin);
}

QPainterPath Line::shape() const
{
    return shapePath;
}

void Line::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    const QColor own = info.backgroundColor.isValid() ? info.backgroundColor : QColor(Qt::black);
    const QColor color = selected ? QColor(Qt::red) : own;
    pen.setColor(color);
    brush.setColor(color);
    pen.setWidthF(getPenWidth(painter));
    pen.setStyle(Qt::SolidLine);
    painter->setPen(pen);
    painter->setBrush(brush);
    painter->drawPath(startPath);
    painter->drawPath(endPath);

    pen.setStyle(getLineStyle());
    painter->setPen(keepThinDashesApart(pen, painter));
    painter->setBrush(Qt::NoBrush);
    QVector<QLineF> alongAnAxis;
    for (int i = 1; i < points.size(); ++i) {
        const QLineF segment(points.at(i - 1), points.at(i));
        if (qFuzzyIsNull(segment.dx()) || qFuzzyIsNull(segment.dy()))
            alongAnAxis.append(segment);
        else
            painter->drawLine(segment);
    }
    drawSharpLines(painter, painter->pen(), alongAnAxis);
}

/// A pen of width 0 draws one pixel of a screen, but nothing that a printer shows.
qreal Line::getPenWidth(const QPainter *painter) const
{
    const bool onPaper = painter->device()->devType() == QInternal::Printer;
    return onPaper ? qMax(1, info.borderLineWidth) : info.borderLineWidth;
}

void Line::relayout(bool)
{
    buildPath();
}

QVariant Line::itemChange(GraphicsItemChange change, const QVariant &value)
{
    if (change == ItemSelectedChange) {
        selected = value.toBool();
        setZValue(selected ? SelectedZ : NormalZ);
        highlightEdges(selected);
        buildPath();
        emit selectionChanged();
    } else if (change == ItemSceneHasChanged && selected) {
        highlightEdges(scene()); // an undone line leaves no marks behind
    }
    return ProjectItem::itemChange(change, value);
}

void Line::onConnectedItemMoved(BoxItem *item)
{
    if (item == startItem) {
        followNote(Start);
        followAutoSide(End);
    } else if (item == endItem) {
        followNote(End);
        followAutoSide(Start);
    } else {
        qCDebug(chartLog) << "Warning: got signal from unconnected note";
    }
    settleAutoSides();
    update();
}

void Line::onConnectedItemDeleted(Sticky *note)
{
    if (note == startItem)
        letGo(Start);
    if (note == endItem)
        letGo(End);
    buildPath();
}

void Line::buildPath()
{
    prepareGeometryChange();
    points = getRoute();
    buildEndPaths();
    buildShape();
    update();
}

void Line::buildEndPaths()
{
    endPath = QPainterPath(info.endPoint);
    if (info.arrowStyle == ArrowAtEnd && getManhattanLength(info.startPoint, info.endPoint) > 0) {
        for (const QPointF &p :
             getArrowHead(QLineF(points.at(points.size() - 2), info.endPoint), ArrowSize))
            endPath.lineTo(p);
    }
    if (info.arrowStyle == NoArrows && (selected || isFree(End)))
        endPath.addRect(endHandle);

    startPath = QPainterPath(info.startPoint);
    if (selected || isFree(Start))
        startPath.addRect(startHandle);
}

/// The route there and back, a thin outline for hits, and what stands at its ends.
void Line::buildShape()
{
    shapePath = QPainterPath(info.startPoint);
    shapePath.addPolygon(points);
    for (int i = points.size() - 2; i >= 0; --i)
        shapePath.lineTo(points.at(i));
    shapePath.addPath(startPath);
    shapePath.addPath(endPath);
}

QPolygonF Line::getRoute() const
{
    return routeLine(makeRouteEnd(info.startPoint, startItem, startSide, info.endPoint),
                     makeRouteEnd(info.endPoint, endItem, endSide, info.startPoint), straight);
}

bool Line::isFree(LineSide side) const
{
    return side == Start ? !startItem || startSide == Sticky::NoSide
                         : !endItem || endSide == Sticky::NoSide;
}

const QPointF &Line::getPoint(LineSide side) const
{
    return side == Start ? info.startPoint : info.endPoint;
}

void Line::setPoint(LineSide side, const QPointF &p)
{
    if (side == Start)
        setStartPoint(p);
    else
        setEndPoint(p);
}

void Line::connectPoint(LineSide side, Sticky *note, Sticky::Side noteSide)
{
    if (note && note != itemAt(side)) {
        if (itemAt(side))
            letGo(side);
        itemAt(side) = note;
        listenTo(side);
    }
    sideAt(side) = noteSide;
    buildPath();
}

void Line::hang(LineSide side, const ConnectionInfo &connection)
{
    if (!connection.item && itemAt(side))
        letGo(side);
    connectPoint(side, connection.item, connection.side);
}

void Line::disconnectPoint(LineSide side)
{
    if (itemAt(side) && sideAt(side) != Sticky::NoSide)
        letGo(side);
}

void Line::listenTo(LineSide side)
{
    // The end follows a move one turn of the event loop later than the start.
    const auto kind = side == Start ? Qt::DirectConnection : Qt::QueuedConnection;
    connect(itemAt(side), &Sticky::moved, this, &Line::onConnectedItemMoved, kind);
    connect(itemAt(side), &Sticky::deleted, this, &Line::onConnectedItemDeleted);
}

void Line::letGo(LineSide side)
{
    Sticky *note = itemAt(side);
    note->setHighlightedEdge(Sticky::NoSide);
    disconnect(note, nullptr, this, nullptr);
    itemAt(side) = nullptr;
    sideAt(side) = Sticky::NoSide;
    // A file may hang both ends on one note; the other one must still hear of its end.
    if (itemAt(getOther(side)) == note)
        listenTo(getOther(side));
}

void Line::followNote(LineSide side)
{
    moveTo(side, getMeetingPoint(itemAt(side), sideAt(side), getPoint(getOther(side))));
}

void Line::moveTo(LineSide side, const QPointF &p)
{
    if (!p.isNull()) // the origin stands for no answer
        setPoint(side, p);
}

void Line::followAutoSide(LineSide side)
{
    if (isAuto(side))
        followNote(side);
}

bool Line::isAuto(LineSide side) const
{
    return side == Start ? startItem && startSide == Sticky::AutoSide
                         : endItem && endSide == Sticky::AutoSide;
}

void Line::highlightEdges(bool highlight)
{
    if (endItem)
        endItem->setHighlightedEdge(highlight ? endSide : Sticky::NoSide);
    if (startItem)
        startItem->setHighlightedEdge(highlight ? startSide : Sticky::NoSide);
}
