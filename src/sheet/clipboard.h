#pragma once

#include "chart/canvasiteminfo.h"
#include "chart/sticky.h"

#include <QHash>
#include <QList>
#include <QObject>

class Line;
class ProjectItem;
class ProjectScene;

/// A line end to restore on a paste.
struct ClipBoardConnection {
    QString lineGuid;       ///< of the copied line
    Line *line = nullptr;   ///< the new line; filled during a paste
    QString noteGuid;       ///< of the copied note at this end
    Sticky *note = nullptr; ///< the new note; filled during a paste
    int end = 0;            ///< 0 the start, 1 the end
    Sticky::Side side = Sticky::NoSide;
};

/// Copied items as records, and how their lines hang on their notes.
struct CopiedItems {
    QList<CanvasItemInfo> items;
    QList<ClipBoardConnection> connections;
};

/// Copy and paste for all sheets of the program. The records stay inside the
/// program; other programs get a picture.
class ClipBoard : public QObject
{
    Q_OBJECT

public:
    /// `activeScene` points at the owner's pointer to the sheet of the moment.
    ClipBoard(ProjectScene **activeScene, QObject *parent);

public slots:
    void onCopyTriggered();
    void onPasteTriggered();
    /// A copy of the selection one step beside it; what was copied before stays.
    void onDuplicateTriggered();

private:
    QPointF getPasteOffset(const ProjectScene *scene) const;

    CopiedItems copied;
    ProjectScene **activeScene; // not owned; the sheet may be null
};
