#include "benchsheet.h"

#include "chart/sticky.h"

#include <QGraphicsPathItem>
#include <QGraphicsTextItem>
#include <QPen>

namespace
{

constexpr int NotesPerRow = 50;
constexpr QSizeF NoteSize(120, 80);
constexpr qreal ColumnWidth = 200;
constexpr qreal RowHeight = 140;
constexpr QSize PageSize(1606, 1030);

CanvasItemInfo makeNote(int index)
{
    CanvasItemInfo info;
    info.type = NoteItemType;
    info.guid = QString("{note-%1}").arg(index);
    info.role = Role(index % 3 == 0 ? "Condition" : "Event");
    info.text = QString("Note %1 of a long row").arg(index);
    info.size = NoteSize;
    info.startPoint =
        QPointF(20 + (index % NotesPerRow) * ColumnWidth, 20 + (index / NotesPerRow) * RowHeight);
    info.endPoint = info.startPoint + QPointF(NoteSize.width(), NoteSize.height());
    return info;
}

CanvasItemInfo makeLine(int index, const CanvasItemInfo &start, const CanvasItemInfo &end)
{
    const qreal middle = NoteSize.height() / 2;
    CanvasItemInfo info;
    info.type = ConnectorTool;
    info.guid = QString("{line-%1}").arg(index);
    info.startPoint = start.startPoint + QPointF(NoteSize.width(), middle);
    info.endPoint = end.startPoint + QPointF(0, middle);
    return info;
}

QPainterPath makeElbow(const QPointF &start, const QPointF &end)
{
    const qreal middle = (start.x() + end.x()) / 2;
    QPainterPath path(start);
    path.lineTo(middle, start.y());
    path.lineTo(middle, end.y());
    path.lineTo(end);
    return path;
}

BareBox *addBareBox(QGraphicsScene &scene, const CanvasItemInfo &info)
{
    auto *box = new BareBox(QRectF(QPointF(), info.size));
    box->setPos(info.startPoint);
    auto *text = new QGraphicsTextItem(info.text, box);
    text->setTextWidth(info.size.width());
    scene.addItem(box);
    return box;
}

} // namespace

BenchChart::BenchChart(int count)
{
    for (int i = 0; i < count; ++i)
        notes.push_back(makeNote(i));
    for (int i = 0; i < count; ++i) {
        const int next = (i + 1) % count;
        lines.push_back(makeLine(i, notes.at(i), notes.at(next)));
        links.push_back({i, next});
    }
}

BenchSheet::BenchSheet(const BenchChart &chart) : scene(&host, &group, nullptr, nullptr, PageSize)
{
    for (CanvasItemInfo info : chart.notes)
        notes.push_back(static_cast<Sticky *>(scene.loadCanvasItem(info)));
    for (CanvasItemInfo info : chart.lines)
        lines.push_back(static_cast<Line *>(scene.loadCanvasItem(info)));
    for (size_t i = 0; i < lines.size(); ++i) {
        lines[i]->setStartConnection({notes[chart.links[i].start], Sticky::RightSide});
        lines[i]->setEndConnection({notes[chart.links[i].end], Sticky::LeftSide});
    }
}

BareBox::BareBox(const QRectF &rect) : QGraphicsRectItem(rect)
{
    setFlags(ItemIsMovable | ItemIsSelectable | ItemSendsGeometryChanges);
    setBrush(Qt::white);
    setZValue(1);
}

QVariant BareBox::itemChange(GraphicsItemChange change, const QVariant &value)
{
    if (change == ItemPositionHasChanged) {
        for (const Hook &hook : hooks)
            hook.path->setPath(makeElbow(hook.path->path().elementAt(0), pos() + hook.place));
    }
    return QGraphicsRectItem::itemChange(change, value);
}

BareSheet::BareSheet(const BenchChart &chart)
{
    for (const CanvasItemInfo &info : chart.notes)
        boxes.push_back(addBareBox(scene, info));
    for (const CanvasItemInfo &info : chart.lines)
        paths.push_back(scene.addPath(makeElbow(info.startPoint, info.endPoint)));
}

void addBareNote(QGraphicsScene &scene, const CanvasItemInfo &info)
{
    addBareBox(scene, info);
}
