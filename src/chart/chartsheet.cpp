#include "chart/chartsheet.h"

#include "support/rounding.h"

namespace
{

qreal snap(qreal value)
{
    return roundHalfUp(qMax(value, 0.0) / ChartSheet::GridStep) * ChartSheet::GridStep;
}

} // namespace

QPointF ChartSheet::getNearestGridPoint(const QPointF &p)
{
    return QPointF(snap(p.x()), snap(p.y()));
}
