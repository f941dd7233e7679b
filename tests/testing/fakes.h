#pragma once

#include "chart/boxitem.h"
#include "chart/chartsheet.h"
#include "chart/sheethost.h"
#include "chart/sticky.h"

#include <QApplication>
#include <QGraphicsScene>
#include <QGraphicsSceneMouseEvent>
#include <QMenu>
#include <QPainter>
#include <QPair>

class FakeSheet;

/// A program around some sheets, with values that a test sets.
class FakeHost : public SheetHost
{
public:
    int selectedTool() const override { return tool; }
    bool isGridEnabled() const override { return gridEnabled; }
    QMenu *getSceneContextMenu() override { return &sceneMenu; }
    QMenu *getNoteContextMenu() override { return &noteMenu; }
    QMenu *getLineContextMenu() override { return &lineMenu; }
    Sticky *getNoteWithGUID(const QString &guid) const override;
    ChartSheet *getSceneForParent(const QString &guid) const override;
    void onCausalFactorChanged(Sticky *note) override { changedFactors.append(note); }
    QWidget *getDialogParent() override { return nullptr; }

    int tool = SelectTool;
    bool gridEnabled = true;
    QMenu sceneMenu;
    QMenu noteMenu;
    QMenu lineMenu;
    QList<FakeSheet *> sheets; ///< in the order of their making; the first is the main sheet
    QList<Sticky *> changedFactors;
};

/// A bare scene that answers as a sheet and writes down what items ask for.
class FakeSheet : public QGraphicsScene, public ChartSheet
{
public:
    explicit FakeSheet(FakeHost *host, const QString &owner = QString()) : owner(owner), host(host)
    {
        host->sheets.append(this);
        setSceneRect(0, 0, 1000, 800);
    }

    ~FakeSheet() override
    {
        clear(); // items report their end to a whole sheet
        host->sheets.removeOne(this);
    }

    SheetHost *getHost() const override { return host; }
    QString getOwnerGUID() const override { return owner; }
    int getViewZoom() const override { return zoom; }

    Sticky *getNoteAt(QPointF scenePos) const override
    {
        for (QGraphicsItem *item : items(scenePos)) {
            if (auto *note = qgraphicsitem_cast<Sticky *>(item))
                return note;
        }
        return nullptr;
    }

    ProjectItem *getItemWithGUID(const QString &guid) const override
    {
        for (ProjectItem *item : entered) {
            if (item->getGUID() == guid)
                return item;
        }
        return nullptr;
    }

    int getFirstUnusedCFNumber() const override { return firstUnusedNumber; }
    void setHighlightToNote(Sticky *note) override { highlighted.append(note); }
    void dragNewLine(const QPointF &scenePos) override { lineDrags.append(scenePos); }
    void setConnectedFormField(const QString &id, const QString &text) override
    {
        formFields.append({id, text});
    }
    void itemEntered(ProjectItem *item) override { entered.append(item); }
    void itemLeft(ProjectItem *item) override { entered.removeOne(item); }

    /// Puts a note there.
    Sticky *addNote(CanvasItemInfo info)
    {
        auto *note = new Sticky(this, info);
        addItem(note);
        return note;
    }

    QString owner;
    int zoom = 100;
    int firstUnusedNumber = 1;
    QList<ProjectItem *> entered;
    QList<Sticky *> highlighted;
    QList<QPointF> lineDrags;
    QList<QPair<QString, QString>> formFields;

private:
    FakeHost *host; // outlives the sheet
};

inline Sticky *FakeHost::getNoteWithGUID(const QString &guid) const
{
    for (FakeSheet *sheet : sheets) {
        if (auto *note = qobject_cast<Sticky *>(sheet->getItemWithGUID(guid)))
            return note;
    }
    return nullptr;
}

inline ChartSheet *FakeHost::getSceneForParent(const QString &guid) const
{
    for (FakeSheet *sheet : sheets) {
        if (sheet->owner == guid)
            return sheet;
    }
    return sheets.first();
}

/// The record of a note, ready to be built.
inline CanvasItemInfo noteInfo(const QString &guid, const QRectF &geometry,
                               const QString &text = QString(), const QString &role = "Event")
{
    CanvasItemInfo info;
    info.type = NoteItemType;
    info.guid = guid;
    info.startPoint = geometry.topLeft();
    info.size = geometry.size();
    info.text = text;
    info.role = Role(role);
    return info;
}

/// Sends the scene a mouse event as a view would.
inline void sendMouse(QGraphicsScene *scene, QEvent::Type type, const QPointF &scenePos,
                      Qt::MouseButton button = Qt::LeftButton)
{
    static QPointF lastPos;
    static QPointF pressPos;
    const bool isMove = type == QEvent::GraphicsSceneMouseMove;
    const bool isRelease = type == QEvent::GraphicsSceneMouseRelease;
    if (!isMove && !isRelease)
        pressPos = scenePos;

    QGraphicsSceneMouseEvent event(type);
    event.setScenePos(scenePos);
    event.setScreenPos(scenePos.toPoint());
    event.setLastScenePos(lastPos);
    event.setButtonDownScenePos(button, pressPos);
    event.setButton(isMove ? Qt::NoButton : button);
    event.setButtons(isRelease ? Qt::NoButton : button);
    lastPos = scenePos;
    QApplication::sendEvent(scene, &event);
}

inline void press(QGraphicsScene *scene, const QPointF &p)
{
    sendMouse(scene, QEvent::GraphicsSceneMousePress, p);
}

inline void moveTo(QGraphicsScene *scene, const QPointF &p)
{
    sendMouse(scene, QEvent::GraphicsSceneMouseMove, p);
}

inline void release(QGraphicsScene *scene, const QPointF &p)
{
    sendMouse(scene, QEvent::GraphicsSceneMouseRelease, p);
}

/// Press, one move, release.
inline void drag(QGraphicsScene *scene, const QPointF &from, const QPointF &to)
{
    press(scene, from);
    moveTo(scene, to);
    release(scene, to);
}

inline void doubleClick(QGraphicsScene *scene, const QPointF &p)
{
    press(scene, p);
    release(scene, p);
    sendMouse(scene, QEvent::GraphicsSceneMouseDoubleClick, p);
    release(scene, p);
}

/// The colour at a scene point of a sheet drawn on white.
inline QColor colorAt(QGraphicsScene *scene, const QPointF &p)
{
    const QRectF area = scene->sceneRect();
    QImage image(area.size().toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    scene->render(&painter, image.rect(), area);
    return image.pixelColor((p - area.topLeft()).toPoint());
}
