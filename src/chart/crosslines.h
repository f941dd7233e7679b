#pragma once

class QGraphicsItem;
class QGraphicsLineItem;

/// The two lines that cross a note out. They become items when first shown.
class CrossLines
{
public:
    explicit CrossLines(QGraphicsItem *parent);

    void setVisible(bool visible);
    /// To be called when the parent's bounds have changed.
    void updateSize();

private:
    QGraphicsLineItem *makeLine() const;

    QGraphicsItem *parent; // owns the lines
    QGraphicsLineItem *falling = nullptr;
    QGraphicsLineItem *rising = nullptr;
};
