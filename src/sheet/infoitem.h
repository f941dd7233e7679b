#pragma once

#include "chart/projectitem.h"

#include <QGraphicsRectItem>

/// The box on a secondary sheet that explains how to read it. It can be moved
/// about and is never saved.
class InfoItem : public QGraphicsRectItem
{
public:
    InfoItem();

    int type() const override { return ProjectItem::InfoType; }

private:
    void addText(const QString &text, const QRectF &place);
};
