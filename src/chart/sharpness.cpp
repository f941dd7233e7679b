#include "chart/sharpness.h"

#include <QPaintEngine>
#include <QPainter>
#include <QPen>
#include <QtMath>

namespace
{

constexpr qreal PaperResolution = 300; // dots to the inch

} // namespace

qreal getPixelsPerUnit(const QPainter *painter)
{
    const QTransform transform = painter->deviceTransform();
    const qreal pixels = qSqrt(qAbs(transform.determinant()));
    if (isPainterOnPixels(painter))
        return pixels;
    return pixels * PaperResolution / painter->device()->logicalDpiX();
}

bool isPainterOnPixels(const QPainter *painter)
{
    return painter->paintEngine()->type() == QPaintEngine::Raster;
}

QPen keepThinDashesApart(QPen pen, const QPainter *painter)
{
    if (!isPainterOnPixels(painter) && pen.style() != Qt::SolidLine && pen.widthF() <= 1)
        pen.setCapStyle(Qt::FlatCap);
    return pen;
}
