#pragma once

#include <QBrush>
#include <QGraphicsItem>
#include <QPainterPath>

/// The small circle on a note's corner, with a number, a letter or just a colour.
class CircledNumberItem : public QGraphicsItem
{
public:
    enum NumberingMode { NoNumber = 0, Numerals = 1, Letters = 2 };

    explicit CircledNumberItem(QGraphicsItem *parent);

    int getNumber() const { return number; }
    NumberingMode getNumberingMode() const { return numberingMode; }
    /// As the circle shows it; the letter of 1 is "A".
    QString getString() const;

    void setNumber(int value);
    void setNumberingMode(NumberingMode mode);
    void setBrush(const QBrush &fill);

    int type() const override;
    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

private:
    const QRectF rect = QRectF(0, 0, 20, 20);
    int number = 0;
    NumberingMode numberingMode = Numerals;
    QBrush brush = QBrush(Qt::white);
};
