#pragma once

#include "chart/boxitem.h"
#include "chart/chartsheet.h"
#include "chart/sheethost.h"
#include "chart/sticky.h"

#include <QApplication>
#include <QGraphicsScene>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPair>

/// A program around some sheets, with values that a test sets.
class FakeHost : public SheetHost
{
public:
    int selectedTool() const override { return tool; }
    bool isGridEnabled() const override { return true; }
    QMenu *getSceneContextMenu() override { return &sceneMenu; }
    QMenu *getNoteContextMenu() override { return &noteMenu; }
    QMenu *getLineContextMenu() override { return &lineMenu; }
    void onCausalFactorChanged(Sticky *note) override { changedFactors.append(note); }
    QWidget *getDialogParent() override { return nullptr; }
    ProjectItem *getItem(const QString &guid) const
    {
        for (const ChartSheet *sheet : sheets) {
            if (ProjectItem *item = sheet->getItemWithGUID(guid))
                return item;
        }
        return nullptr;
    }
    Sticky *getNoteWithGUID(const QString &guid) const override
    {
        return qobject_cast<Sticky *>(getItem(guid));
    }
    ChartSheet *getSceneForParent(const QString &guid) const override
    {
        for (ChartSheet *sheet : sheets) {
            if (sheet->getOwnerGUID() == guid)
                return sheet;
        }
        return sheets.first();
    }

    int tool = SelectTool;
    QMenu sceneMenu, noteMenu, lineMenu;
    QList<ChartSheet *> sheets; ///< in the order of their making; the first is the main sheet
    QList<Sticky *> changedFactors;
};

/// The record of a note, ready to be built, or of another item that fills the place.
inline CanvasItemInfo noteInfo(const QString &guid, const QRectF &geometry,
                               const QString &text = QString(), const QString &role = "Event",
                               int type = NoteItemType)
{
    CanvasItemInfo info;
    info.type = type;
    info.guid = guid;
    info.startPoint = geometry.topLeft();
    info.endPoint = geometry.bottomRight();
    info.size = geometry.size();
    info.text = text;
    info.role = Role(role);
    return info;
}

/// QTest's own moves carry no buttons.
inline void sendMouse(QWidget *widget, QEvent::Type type, const QPoint &place,
                      Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = {})
{
    QMouseEvent event(type, place, widget->mapToGlobal(place),
                      type == QEvent::MouseMove ? Qt::NoButton : button,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : button, keys);
    QApplication::sendEvent(widget, &event);
}

/// The colour at a scene point of a sheet drawn on white.
inline QColor colorAt(QGraphicsScene *scene, const QPointF &p)
{
    QImage image(1, 1, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    scene->render(&painter, image.rect(), QRectF(p, QSizeF(1, 1)));
    return image.pixelColor(0, 0);
}
