#pragma once

#include <QGraphicsPixmapItem>

/// The picture in a note: scaled to its space, and drawn from the full picture where the
/// view is enlarged or paper shows more.
class NotePicture : public QGraphicsPixmapItem
{
public:
    NotePicture(const QPixmap &picture, QGraphicsItem *parent);

    /// In the note's units.
    QSizeF getSize() const;
    /// As large as fits, at once and rough or slower and well. Without space it shows nothing.
    void fit(const QSize &newSpace, bool roughly);

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

private:
    QPixmap getSharp(const QSize &size, bool keep);

    const QPixmap picture; // in full
    QSize space;
    bool rough = false;
    QPixmap sharp; // as last drawn in an enlarged view
};
