#pragma once

#include "chart/sticky.h"

#include <QLineF>
#include <QPolygonF>

// The geometry of connectors. All points are scene points, all angles degrees.

/// An end of a line: its point, and the side of the note that it hangs on,
/// never AutoSide. NoSide is a free end.
struct RouteEnd {
    QPointF point;
    Sticky::Side side = Sticky::NoSide;
};

/// From the anchor on a note outward to the end of its stub.
QPointF getSideOffset(Sticky::Side side);

/// The sum of the rounded distances along both axes; the points are rounded first.
int getManhattanLength(const QPointF &a, const QPointF &b);

/// The turn from one direction to the other, 0 to 180, whichever way round.
/// A line without length turns by 0.
double closestAngle(const QLineF &a, const QLineF &b);

/// Joins two stubs, each given from its anchor outward: appends the one or two
/// points that lie between them. Always true.
bool intersectionMove(const QLineF &first, const QLineF &second, QPolygonF &points);

/// The point of a route that lies closest to `p`.
QPointF getClosestPoint(const QPolygonF &route, const QPointF &p);

/// The points of a line from start to end. A straight one runs directly, and so
/// does a routed one that is too short for stubs.
QPolygonF routeLine(const RouteEnd &start, const RouteEnd &end, bool straight);

/// The head of an arrow at the end of the segment: the two corners of its base,
/// then the tip. `size` is its length and width. Empty if the segment has no length.
QPolygonF getArrowHead(const QLineF &segment, qreal size);
