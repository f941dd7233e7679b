#pragma once

#include "chart/toolid.h"

#include <QString>

class ChartSheet;
class QMenu;
class QWidget;
class Sticky;

/// What sheets, items and the project file may ask of the program around them.
class SheetHost
{
public:
    virtual ~SheetHost() = default;

    /// A ToolId.
    virtual int selectedTool() const = 0;
    bool isLineToolSelected() const { return isLineTool(selectedTool()); }
    bool isMetaToolSelected() const { return isMetaTool(selectedTool()); }
    virtual bool isGridEnabled() const = 0;

    virtual QMenu *getSceneContextMenu() = 0;
    virtual QMenu *getNoteContextMenu() = 0;
    virtual QMenu *getLineContextMenu() = 0;

    /// The main sheet is asked first; null when no sheet holds such a note.
    virtual Sticky *getNoteWithGUID(const QString &guid) const = 0;
    /// The sheet whose owner note bears the GUID; the main sheet for an empty
    /// or unknown one.
    virtual ChartSheet *getSceneForParent(const QString &guid) const = 0;
    /// The number of a causal factor changed.
    virtual void onCausalFactorChanged(Sticky *note) = 0;

    /// Where dialogs stand; may be null.
    virtual QWidget *getDialogParent() = 0;
};
