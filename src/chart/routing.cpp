#include "chart/routing.h"

#include "support/rounding.h"

#include <QLoggingCategory>

namespace
{

constexpr int StubLength = 20;
constexpr int LongestUnrouted = 40; // Manhattan length

// Off unless asked for by name: a route is built on every mouse move.
Q_LOGGING_CATEGORY(routing, "examiner.routing", QtInfoMsg)

QPointF midPoint(const QPointF &a, const QPointF &b)
{
    return (a + b) / 2;
}

/// The continuation of a stub beyond its end.
QLineF continued(const QLineF &stub, qreal length)
{
    QLineF ray(stub.p2(), stub.p2() + (stub.p2() - stub.p1()));
    ray.setLength(length);
    return ray;
}

/// The line across a stub at its end.
QLineF across(const QLineF &stub)
{
    return QLineF(stub.p2(), stub.p2() + QPointF(stub.dy(), -stub.dx()));
}

/// The origin when the lines never meet.
QPointF crossing(const QLineF &a, const QLineF &b)
{
    QPointF point;
    a.intersects(b, &point);
    return point;
}

QLineF turnedBack(const QLineF &stub)
{
    return QLineF(stub.p2(), stub.p1());
}

/// The stubs run in opposite directions.
void joinOpposite(const QLineF &first, const QLineF &second, QPolygonF &points)
{
    qCDebug(routing) << "opposite direcitons";
    const QPointF s = first.p2();
    const QPointF t = second.p2();
    const int length = roundHalfUp(t - s).manhattanLength();
    const QPointF acrossFirst = crossing(across(first), continued(second, length));
    const QPointF acrossSecond = crossing(across(second), continued(first, length));

    if (closestAngle(turnedBack(second), QLineF(t, s)) < 90) {
        qCDebug(routing) << "acute";
        points << midPoint(acrossFirst, s) << midPoint(acrossSecond, t);
    } else {
        qCDebug(routing) << "obtuse";
        points << midPoint(acrossSecond, s) << midPoint(acrossFirst, t);
    }
}

/// How much the path turns on its way around the corner; squares punish one
/// sharp turn more than two mild ones.
double getTurning(const QLineF &first, const QPointF &corner, const QLineF &second)
{
    const QLineF toCorner(first.p2(), corner);
    const QLineF fromCorner(corner, second.p2());
    const double leaving = closestAngle(first, toCorner);
    const double bend = closestAngle(toCorner, fromCorner);
    const double arriving = closestAngle(fromCorner, turnedBack(second));
    return leaving * leaving + bend * bend + arriving * arriving;
}

void joinAtCorner(const QLineF &first, const QLineF &second, QPolygonF &points)
{
    const QPointF corner1(first.x2(), second.y2());
    const QPointF corner2(second.x2(), first.y2());
    const double turning1 = getTurning(first, corner1, second);
    const double turning2 = getTurning(first, corner2, second);
    qCDebug(routing) << "points are" << corner1 << corner2;
    qCDebug(routing) << "angles are" << turning1 << turning2;
    points << (turning1 < turning2 ? corner1 : corner2);
}

/// Joins s and e halfway, across the axis in which the whole line reaches further.
void joinAtMiddle(const QPointF &extent, const QPointF &s, const QPointF &e, QPolygonF &points)
{
    // In single precision, so that a near tie bends as a tie does.
    const float width = float(extent.x());
    const float height = float(extent.y());
    if (qAbs(width) > qAbs(height)) {
        const float half = float(e.x() - s.x()) / 2;
        points << QPointF(s.x() + half, s.y()) << QPointF(s.x() + half, e.y());
    } else {
        const float half = float(e.y() - s.y()) / 2;
        points << QPointF(s.x(), s.y() + half) << QPointF(e.x(), s.y() + half);
    }
}

/// The points between the two ends.
void layOut(const RouteEnd &start, const RouteEnd &end, QPolygonF &points)
{
    const bool startConnected = start.side != Sticky::NoSide;
    const bool endConnected = end.side != Sticky::NoSide;
    const QLineF first(start.point, start.point + getSideOffset(start.side));
    const QLineF second(end.point, end.point + getSideOffset(end.side));

    if (startConnected)
        points << first.p2();
    if (!startConnected || !endConnected)
        joinAtMiddle(end.point - start.point, first.p2(), second.p2(), points);
    else if (roundHalfUp(first.angleTo(QLineF(first.p2(), second.p2()))) % 360 != 0)
        intersectionMove(first, second, points);
    if (endConnected)
        points << second.p2();
}

} // namespace

QPointF getSideOffset(Sticky::Side side)
{
    switch (side) {
    case Sticky::LeftSide:
        return QPointF(-StubLength, 0);
    case Sticky::TopSide:
        return QPointF(0, -StubLength);
    case Sticky::RightSide:
        return QPointF(StubLength, 0);
    case Sticky::BottomSide:
        return QPointF(0, StubLength);
    default:
        return QPointF();
    }
}

int getManhattanLength(const QPointF &a, const QPointF &b)
{
    return (roundHalfUp(b) - roundHalfUp(a)).manhattanLength();
}

double closestAngle(const QLineF &a, const QLineF &b)
{
    const double angle = a.angleTo(b);
    return qMin(angle, 360 - angle);
}

bool intersectionMove(const QLineF &first, const QLineF &second, QPolygonF &points)
{
    qCDebug(routing) << "intersectionmove";
    if (roundHalfUp(first.angleTo(second)) == 180)
        joinOpposite(first, second, points);
    else
        joinAtCorner(first, second, points);
    return true;
}

QPointF getClosestPoint(const QPolygonF &route, const QPointF &p)
{
    QPointF closest = route.value(0);
    for (int i = 1; i < route.size(); ++i) {
        const QPointF along = route.at(i) - route.at(i - 1);
        const qreal part = QPointF::dotProduct(p - route.at(i - 1), along) /
                           qMax(1e-9, QPointF::dotProduct(along, along));
        const QPointF candidate = route.at(i - 1) + qBound(0.0, part, 1.0) * along;
        if (QLineF(p, candidate).length() < QLineF(p, closest).length())
            closest = candidate;
    }
    return closest;
}

QPolygonF routeLine(const RouteEnd &start, const RouteEnd &end, bool straight)
{
    QPolygonF points;
    points.reserve(6); // two ends, two stubs, two points of the joint
    points << start.point;
    if (!straight && getManhattanLength(start.point, end.point) > LongestUnrouted)
        layOut(start, end, points);
    points << end.point;
    return points;
}

QPolygonF getArrowHead(const QLineF &segment, qreal size)
{
    if (segment.isNull())
        return QPolygonF();
    const QPointF base = segment.pointAt(1 - size / segment.length());
    const QPointF axis = segment.p2() - base;
    const QPointF half(axis.y() / 2, -axis.x() / 2);
    return QPolygonF({base + half, base - half, segment.p2()});
}
