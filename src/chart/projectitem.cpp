#include "chart/projectitem.h"

#include "chart/chartsheet.h"

#include <QGraphicsScene>

const QByteArray ProjectItem::PROPERTY_BACKGROUND_COLOR = "customBackgroundColor";
const QByteArray ProjectItem::PROPERTY_LINE_WIDTH = "borderLineWidth";

namespace
{

constexpr int MaximumLineWidth = 20;

// Shared by all items, since a sheet holds thousands.
const QHash<QByteArray, QString> &getCommonLabels()
{
    static const QHash<QByteArray, QString> labels = {
        {ProjectItem::PROPERTY_BACKGROUND_COLOR, ProjectItem::tr("change background color")},
        {ProjectItem::PROPERTY_LINE_WIDTH, ProjectItem::tr("change line thickness")},
    };
    return labels;
}

} // namespace

ProjectItem::ProjectItem(ChartSheet *sheet, CanvasItemInfo &info)
    : info(info), sheet(sheet), propertyLabels(getCommonLabels())
{
}

ProjectItem::~ProjectItem()
{
    if (scene())
        sheet->itemLeft(this);
}

QString ProjectItem::getPropertyLabel(const QByteArray &property) const
{
    return propertyLabels.value(property);
}

void ProjectItem::letMouseGo()
{
    QGraphicsItem *holder = scene() ? scene()->mouseGrabberItem() : nullptr;
    if (holder == this || isAncestorOf(holder)) // a child under the mouse holds it in its name
        holder->ungrabMouse();
}

void ProjectItem::selectForMenu()
{
    letMouseGo();
    if (isSelected())
        return;
    if (scene())
        scene()->clearSelection();
    setSelected(true);
}

void ProjectItem::setBorderLineWidth(int width)
{
    if (width < 0 || width > MaximumLineWidth)
        return;
    prepareGeometryChange();
    info.borderLineWidth = width;
    relayout(false);
}

CanvasItemInfo ProjectItem::getCanvasItemInfo()
{
    return info;
}

void ProjectItem::relayout(bool) {}

QVariant ProjectItem::itemChange(GraphicsItemChange change, const QVariant &value)
{
    if (change == ItemSceneHasChanged) {
        if (scene())
            sheet->itemEntered(this);
        else
            sheet->itemLeft(this);
    }
    return QGraphicsObject::itemChange(change, value);
}
