#include "sheet/factorseeds.h"

#include "chart/formfields.h"
#include "chart/line.h"
#include "chart/sticky.h"
#include "chart/toolid.h"
#include "sheet/infoitem.h"
#include "sheet/projectscene.h"

#include <algorithm>

namespace
{

constexpr QPointF SeedPosition(240, 200); // of the factor on its own sheet
constexpr QPointF InfoPosition(100, 20);
constexpr int SeedGap = 80;

Sticky *addTwin(ProjectScene *sheet, Sticky *note, const QPointF &position)
{
    CanvasItemInfo info = note->getCanvasItemInfo();
    info.guid.clear();
    info.startPoint = position;
    // The row is the factor's alone: one that an undo brings back may get another number yet.
    info.siblings.erase(
        std::remove_if(info.siblings.begin(), info.siblings.end(), FormFields::isOfCausalFactor),
        info.siblings.end());
    auto *twin = qobject_cast<Sticky *>(sheet->loadCanvasItem(info));
    twin->addSibling(note);
    note->addSibling(twin);
    return twin;
}

void addConnector(ProjectScene *sheet, Sticky *from, Sticky::Side fromSide, Sticky *to,
                  Sticky::Side toSide)
{
    CanvasItemInfo info;
    info.type = ConnectorTool;
    info.startPoint = from->mapToScene(from->getEdgeMidPoint(fromSide));
    info.endPoint = to->mapToScene(to->getEdgeMidPoint(toSide));
    auto *line = qobject_cast<Line *>(sheet->loadCanvasItem(info));
    line->connectStartPoint(from, fromSide);
    line->connectEndPoint(to, toSide);
}

} // namespace

void seedFactorSheet(ProjectScene *sheet, Sticky *factor, const QPair<Sticky *, Sticky *> &ends)
{
    Sticky *twin = addTwin(sheet, factor, SeedPosition);
    if (!ends.first || !ends.second)
        return;
    const qreal controlX = SeedPosition.x() - twin->getRect().width() - SeedGap;
    Sticky *control = addTwin(sheet, ends.second, QPointF(controlX, SeedPosition.y()));
    addConnector(sheet, control, Sticky::RightSide, twin, Sticky::LeftSide);

    const QRectF place = control->getGeometry();
    const qreal difference = place.width() - ends.first->getRect().width();
    const qreal lossX = place.x() + (difference == 40 ? 20 : 0);
    Sticky *loss = addTwin(sheet, ends.first, QPointF(lossX, place.bottom() + SeedGap));
    addConnector(sheet, control, Sticky::BottomSide, loss, Sticky::TopSide);
}

void addInfoBox(ProjectScene *sheet)
{
    auto *box = new InfoItem;
    box->setPos(InfoPosition);
    sheet->setInfoBox(box);
}
