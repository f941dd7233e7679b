#pragma once

#include "chart/chartsheet.h"
#include "chart/line.h"

#include <QGraphicsScene>
#include <QRectF>

inline QString describe(const QPointF &p)
{
    return QString("%1,%2").arg(p.x()).arg(p.y());
}

/// Every field of a record in one line, so that "comes back as it was" is one comparison.
inline QString describe(const CanvasItemInfo &info)
{
    const auto color = [](const QColor &c) { return c.isValid() ? c.name() : QString("-"); };
    return QString(
               "%1 %2 %3 at %4 to %5 size %6 %7 font %8 %9 text %10 fill %11 align %12 line %13 "
               "border %14 factor %15 of %16 siblings %17 arrow %18 image %19%20")
        .arg(info.type)
        .arg(info.role.getTypeName(), info.guid, describe(info.startPoint), describe(info.endPoint),
             describe(QPointF(info.size.width(), info.size.height())), '"' + info.text + '"',
             info.font.toString())
        .arg(info.customFont)
        .arg(color(info.textColor), color(info.backgroundColor))
        .arg(int(info.textAlignment))
        .arg(info.lineStyle)
        .arg(info.borderLineWidth)
        .arg(info.causalFactorNumber)
        .arg(info.parent, info.siblings.join('+'))
        .arg(info.arrowStyle)
        .arg(info.image.width())
        .arg(info.notRelevant ? " not relevant" : "");
}

inline QString describe(const ConnectionInfo &end)
{
    return end.item ? end.item->getGUID() + " side " + QString::number(end.side) : QString("free");
}

/// The item's record as a file would hold it, and what a line hangs on.
inline QString describe(ProjectItem *item)
{
    CanvasItemInfo info = item->getCanvasItemInfo();
    info.parent = item->getSheet()->getOwnerGUID();
    if (item->type() != ProjectItem::LineType)
        info.endPoint = info.startPoint + QPointF(info.size.width(), info.size.height());
    if (!info.role.isParentItem())
        info.causalFactorNumber = 0;
    info.siblings.sort();
    QString text = describe(info);
    if (auto *line = qobject_cast<const Line *>(item))
        text += " from " + describe(line->getStartConnection()) + " to " +
                describe(line->getEndConnection());
    return text;
}

/// All project items of a sheet, sorted by their text.
inline QString describe(const QGraphicsScene &scene)
{
    QStringList lines;
    for (QGraphicsItem *item : scene.items()) {
        if (auto *projectItem = qobject_cast<ProjectItem *>(item->toGraphicsObject()))
            lines.append(describe(projectItem));
    }
    lines.sort();
    return lines.join('\n');
}
