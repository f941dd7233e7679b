#include "chart/workingdropshadow.h"

WorkingDropShadow::WorkingDropShadow(QObject *parent) : QGraphicsDropShadowEffect(parent)
{
    setBlurRadius(5);
}

QRectF WorkingDropShadow::boundingRectFor(const QRectF &rect) const
{
    return QGraphicsDropShadowEffect::boundingRectFor(rect).adjusted(-10, -10, 10, 10);
}
