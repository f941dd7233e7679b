#pragma once

#include <QPointF>

#include <cmath>

/// Halves go up on both sides of zero. The toolkit's versions differ there, and routes, grid
/// points and the starts of lines must not.
inline int roundHalfUp(qreal value)
{
    return int(std::floor(value + 0.5));
}

inline QPoint roundHalfUp(const QPointF &point)
{
    return QPoint(roundHalfUp(point.x()), roundHalfUp(point.y()));
}
