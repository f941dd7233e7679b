#pragma once

#include "chart/canvasiteminfo.h"

#include <QGraphicsObject>
#include <QHash>

class ChartSheet;

/// An item that a project saves: a note, a line or a barrier.
class ProjectItem : public QGraphicsObject
{
    Q_OBJECT
    Q_PROPERTY(
        QColor customBackgroundColor READ getCustomBackgroundColor WRITE setCustomBackgroundColor)
    Q_PROPERTY(int borderLineWidth READ getBorderLineWidth WRITE setBorderLineWidth)

public:
    enum ItemType {
        StickyType = UserType + 4,
        LineType = UserType + 5,
        CircledNumberType = UserType + 6,
        InfoType = UserType + 7,
        SVGPictureType = UserType + 9,
        FooterType = UserType + 10,
    };

    static const QByteArray PROPERTY_BACKGROUND_COLOR;
    static const QByteArray PROPERTY_LINE_WIDTH;

    ProjectItem(ChartSheet *sheet, CanvasItemInfo &info);
    ~ProjectItem() override;

    const QString &getGUID() const { return info.guid; }
    ChartSheet *getSheet() const { return sheet; }
    QColor getCustomBackgroundColor() const { return info.backgroundColor; }
    int getBorderLineWidth() const { return info.borderLineWidth; }
    /// The live state as it stands, not refreshed from the item.
    const CanvasItemInfo &getRecord() const { return info; }
    /// The text of the undo command that changes the property; empty if it has none.
    QString getPropertyLabel(const QByteArray &property) const;

    /// What follows up to the release is no drag: a menu or a dialog may keep that, and keys
    /// would seem to disturb one.
    void letMouseGo();
    /// What a menu works on: the item alone, unless it is part of the selection.
    void selectForMenu();
    /// Above 20 or below 0 the call changes nothing.
    void setBorderLineWidth(int width);

    /// A copy of the record, refreshed from the item.
    virtual CanvasItemInfo getCanvasItemInfo();
    virtual void setCustomBackgroundColor(const QColor &color) = 0;
    virtual void setSize(QSizeF size) = 0;

public slots:
    /// `doItFast` while the size changes under the mouse.
    virtual void relayout(bool doItFast);
    void relayout() { relayout(false); }

signals:
    void selectionChanged();

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;

    CanvasItemInfo info;
    ChartSheet *sheet; // not owned, outlives the item
    QHash<QByteArray, QString> propertyLabels;
};

/// Whether the item is one that a project saves.
inline bool isProjectItem(const QGraphicsItem *item)
{
    const int type = item->type();
    return type == ProjectItem::StickyType || type == ProjectItem::LineType ||
           type == ProjectItem::SVGPictureType;
}
