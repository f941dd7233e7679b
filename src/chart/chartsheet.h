#pragma once

#include <QPointF>
#include <QString>

class ProjectItem;
class SheetHost;
class Sticky;

/// What an item may ask of the sheet that it stands on. All points are scene
/// points. Items hold a raw pointer: the sheet outlives them.
class ChartSheet
{
public:
    static constexpr int GridStep = 20; ///< scene units

    virtual ~ChartSheet() = default;

    /// Clamped below at 0, then to the nearest multiple of the grid step.
    static QPointF getNearestGridPoint(const QPointF &p);

    /// The program around the sheet; never null.
    virtual SheetHost *getHost() const = 0;
    /// GUID of the note that owns this sheet; empty on the main sheet.
    virtual QString getOwnerGUID() const = 0;
    /// Percent, of the first view; 0 when no view shows the sheet.
    virtual int getViewZoom() const = 0;

    /// The topmost note there, or null.
    virtual Sticky *getNoteAt(QPointF scenePos) const = 0;
    /// Null when no item of this sheet bears it.
    virtual ProjectItem *getItemWithGUID(const QString &guid) const = 0;
    /// The smallest number from 1 that no causal factor of this sheet carries.
    virtual int getFirstUnusedCFNumber() const = 0;

    /// Lays the landing rectangle on the grid points nearest to the note's corners.
    virtual void setHighlightToNote(Sticky *note) = 0;
    /// Takes the free end of the line being drawn there; nothing when none is.
    virtual void dragNewLine(const QPointF &scenePos) = 0;
    virtual void setConnectedFormField(const QString &id, const QString &text) = 0;

    /// Items report themselves as they enter and leave the scene, so that look-ups
    /// by GUID need no walk.
    virtual void itemEntered(ProjectItem *item) = 0;
    virtual void itemLeft(ProjectItem *item) = 0;
};
