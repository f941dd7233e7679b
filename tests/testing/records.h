#pragma once

#include "chart/chartsheet.h"
#include "chart/line.h"

#include <QDebug>
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
    const QPointF size(info.size.width(), info.size.height());
    QString text;
    QDebug(&text).noquote() << info.type << info.role.getTypeName() << info.guid << "at"
                            << describe(info.startPoint) << "to" << describe(info.endPoint)
                            << "size" << describe(size) << '"' + info.text + '"' << "font"
                            << info.font.toString() << int(info.customFont) << "text"
                            << color(info.textColor) << "fill" << color(info.backgroundColor)
                            << "align" << int(info.textAlignment) << "line" << info.lineStyle
                            << "border" << info.borderLineWidth << "factor"
                            << info.causalFactorNumber << "of" << info.parent << "siblings"
                            << info.siblings.join('+') << "arrow" << info.arrowStyle << "image"
                            << info.image.width() << (info.notRelevant ? "not relevant" : "");
    return text.trimmed();
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
