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

protected:
    bool sceneEvent(QEvent *event) override;

private:
    void addText(const QString &text, const QRectF &place);
};
