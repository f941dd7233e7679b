#pragma once

#include <QGraphicsDropShadowEffect>

/// A drop shadow whose bounds leave room for all of it: the toolkit's own are
/// too tight and leave traces behind a note that is dragged.
class WorkingDropShadow : public QGraphicsDropShadowEffect
{
    Q_OBJECT

public:
    explicit WorkingDropShadow(QObject *parent);

    QRectF boundingRectFor(const QRectF &rect) const override;
};
