#pragma once

#include "chart/boxitem.h"
#include "chart/chartsheet.h"
#include "chart/sheethost.h"
#include "chart/sticky.h"

#include <QGraphicsScene>
#include <QMenu>
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
    Sticky *getNoteWithGUID(const QString &guid) const override
    {
        for (const ChartSheet *sheet : sheets) {
            if (auto *note = qobject_cast<Sticky *>(sheet->getItemWithGUID(guid)))
                return note;
        }
        return nullptr;
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

/// A bare scene that answers as a sheet and writes down what reaches the form.
class FakeSheet : public QGraphicsScene, public ChartSheet
{
public:
    explicit FakeSheet(FakeHost *host, const QString &owner = QString()) : host(host), owner(owner)
    {
        host->sheets.append(this);
    }
    ~FakeSheet() override
    {
        clear(); // items report their end to a whole sheet
        host->sheets.removeOne(this);
    }

    SheetHost *getHost() const override { return host; }
    QString getOwnerGUID() const override { return owner; }
    int getViewZoom() const override { return 100; }
    Sticky *getNoteAt(QPointF) const override { return nullptr; }
    ProjectItem *getItemWithGUID(const QString &guid) const override { return index.value(guid); }
    int getFirstUnusedCFNumber() const override { return 1; }
    void setHighlightToNote(Sticky *) override {}
    void dragNewLine(const QPointF &) override {}
    void setConnectedFormField(const QString &id, const QString &text) override
    {
        formFields.append({id, text});
    }
    void itemEntered(ProjectItem *item) override { index.insert(item->getGUID(), item); }
    void itemLeft(ProjectItem *item) override { index.remove(item->getGUID()); }

    /// Puts a note there.
    Sticky *addNote(CanvasItemInfo info)
    {
        auto *note = new Sticky(this, info);
        addItem(note);
        return note;
    }

    QList<QPair<QString, QString>> formFields;

private:
    FakeHost *host; // outlives the sheet
    QString owner;
    QHash<QString, ProjectItem *> index;
};

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

/// The colour at a scene point of a sheet drawn on white.
inline QColor colorAt(QGraphicsScene *scene, const QPointF &p)
{
    QImage image(1, 1, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    scene->render(&painter, image.rect(), QRectF(p, QSizeF(1, 1)));
    return image.pixelColor(0, 0);
}
