#pragma once

#include "chart/projectitem.h"
#include "chart/sticky.h"

#include <QPainterPath>
#include <QPen>
#include <QPolygonF>

/// The note and side at one end of a line; no note for a free end.
struct ConnectionInfo {
    Sticky *item = nullptr;
    Sticky::Side side = Sticky::NoSide;

    bool operator==(const ConnectionInfo &other) const
    {
        return item == other.item && side == other.side;
    }
};

/// All that dragging an end can change: where a line runs and what it hangs on.
struct LineEnds {
    bool operator==(const LineEnds &other) const;

    QPointF startPoint;
    QPointF endPoint;
    ConnectionInfo start;
    ConnectionInfo end;
};

/// A connector whose ends may hang on notes. It sits at (0,0), so that its
/// coordinates are scene coordinates.
class Line : public ProjectItem
{
    Q_OBJECT

public:
    enum ArrowType { NoArrows = 0, ArrowAtEnd = 1 };
    enum LineSide { Start = 0, End = 1 };

    Line(ChartSheet *sheet, CanvasItemInfo &info);

    ConnectionInfo getStartConnection() const { return {startItem, startSide}; }
    ConnectionInfo getEndConnection() const { return {endItem, endSide}; }
    LineEnds getEnds() const
    {
        return {info.startPoint, info.endPoint, {startItem, startSide}, {endItem, endSide}};
    }
    /// The route from start to end, in scene coordinates.
    const QPolygonF &getPoints() const { return points; }
    /// The straight distance between the ends in scene units, whatever the route.
    double length() const;
    /// Solid when a file holds a number that is no style.
    Qt::PenStyle getLineStyle() const;
    /// No arrows when a file holds a number that is no style.
    ArrowType getArrowStyle() const;

    void setStartPoint(QPointF p);
    void setEndPoint(QPointF p);
    /// A null note changes only the side.
    void connectStartPoint(Sticky *note, Sticky::Side side);
    void connectEndPoint(Sticky *note, Sticky::Side side);
    void setStartConnection(ConnectionInfo connection);
    void setEndConnection(ConnectionInfo connection);
    /// Nothing when the end is free. The route is built with the next change.
    void disconnectStartPoint();
    void disconnectEndPoint();
    /// Puts both ends back where they were.
    void setEnds(const LineEnds &ends);
    void setLineStyle(Qt::PenStyle style);
    void setArrowStyle(ArrowType style);
    /// Drags one end; over a note it hangs on the closest edge.
    void handleLineMoving(const QPointF &scenePos, LineSide side);
    /// Settles two automatic sides, which depend on each other: the pair whose middles lie
    /// closest stands, whatever moved first. Nothing for other ends.
    void settleAutoSides();
    /// Marks the sides that the line hangs on, as while it is selected.
    void highlightEdges(bool highlight);

    CanvasItemInfo getCanvasItemInfo() override;
    void setCustomBackgroundColor(const QColor &color) override;
    void setSize(QSizeF size) override;
    int type() const override { return LineType; }
    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;
    void relayout(bool doItFast) override;
    using ProjectItem::relayout;

signals:
    /// The mouse has moved an end or hung it elsewhere.
    void endDragged(Line *line, const LineEnds &before);

protected:
    bool sceneEvent(QEvent *event) override;
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;
    void contextMenuEvent(QGraphicsSceneContextMenuEvent *event) override;
    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *event) override;

private slots:
    void onConnectedItemMoved(BoxItem *item);
    void onConnectedItemDeleted(Sticky *note);

private:
    qreal getPenWidth(const QPainter *painter) const;
    void buildPath();
    void buildEndPaths();
    void buildShape();
    QPolygonF getRoute() const;
    bool isFree(LineSide side) const;
    bool isOnHandle(const QPointF &p, LineSide side) const;

    // Both ends work alike; these tell by the side which one is meant.
    const QPointF &getPoint(LineSide side) const;
    void setPoint(LineSide side, const QPointF &p);
    Sticky *&itemAt(LineSide side) { return side == Start ? startItem : endItem; }
    Sticky::Side &sideAt(LineSide side) { return side == Start ? startSide : endSide; }
    void connectPoint(LineSide side, Sticky *note, Sticky::Side noteSide);
    void hang(LineSide side, const ConnectionInfo &connection);
    void disconnectPoint(LineSide side);
    void listenTo(LineSide side);
    void letGo(LineSide side);
    void followNote(LineSide side);
    void moveTo(LineSide side, const QPointF &p);
    void followAutoSide(LineSide side);
    bool isAuto(LineSide side) const;
    void finishDrag();

    QPen pen = QPen(Qt::black);
    QBrush brush = QBrush(Qt::black);
    QPainterPath shapePath; // follows points, like the two paths of the ends
    bool movingStart = false;
    bool movingEnd = false;
    LineEnds endsAtPress;
    QRectF startHandle;
    QRectF endHandle;
    QPolygonF points;
    QPainterPath endPath;
    QPainterPath startPath;
    Sticky *startItem = nullptr; // not owned, cleared when the note goes
    Sticky::Side startSide = Sticky::NoSide;
    Sticky *endItem = nullptr; // likewise
    Sticky::Side endSide = Sticky::NoSide;
    int straight = 0;
    bool selected = false;
};
