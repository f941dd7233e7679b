#include "shell/introbutton.h"

#include <QPainter>

void IntroButton::paintEvent(QPaintEvent *event)
{
    QToolButton::paintEvent(event);
    if (!hasFocus())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::ButtonText), 2));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 3, 3);
}
