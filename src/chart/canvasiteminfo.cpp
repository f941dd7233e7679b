#include "chart/canvasiteminfo.h"

void CanvasItemInfo::clear()
{
    type = 0;
    role = Role();
    guid.clear();
    startPoint = QPointF();
    endPoint = QPointF();
    size = QSizeF();
    text.clear();
    image = QPixmap();
    hiddenImage.clear();
    customFont = false;
    font = QFont();
    textColor = QColor();
    backgroundColor = QColor();
    textAlignment = Qt::AlignHCenter | Qt::AlignVCenter;
    lineStyle = Qt::SolidLine;
    borderLineWidth = 0;
    causalFactorNumber = 0;
    parent.clear();
    siblings.clear();
    arrowStyle = 0;
    notRelevant = false;
}
