#pragma once

#include "chart/role.h"

#include <QByteArray>
#include <QColor>
#include <QFont>
#include <QPixmap>
#include <QPointF>
#include <QSizeF>
#include <QStringList>

/// The record through which an item is born, saved, copied and pasted.
struct CanvasItemInfo {
    CanvasItemInfo() { clear(); }
    /// Back to the defaults of an empty note of role "Event".
    void clear();

    int type; ///< a tool id or NoteItemType; anything else makes no item
    Role role;
    QString guid;           ///< braced text of a QUuid; empty until the item is made
    QPointF startPoint;     ///< position of a box, first end of a line; scene units
    QPointF endPoint;       ///< bottom right corner of a note, second end of a line
    QSizeF size;            ///< (-1,-1) when unknown; for a line endPoint less startPoint
    QString text;           ///< plain; empty while the note shows its placeholder
    QPixmap image;          ///< full size; null unless an image note
    QByteArray hiddenImage; ///< as the file holds a picture that can't be shown in full
    bool customFont;        ///< the note doesn't follow the standard font
    QFont font;
    QColor textColor;       ///< invalid means black
    QColor backgroundColor; ///< a note's fill, invalid for the role's; a line's colour
    Qt::Alignment textAlignment;
    int lineStyle;       ///< a Qt::PenStyle: 1 solid, 2 dashed
    int borderLineWidth; ///< a note's border, 0 for the role's; a line's width
    int causalFactorNumber;
    QString parent;       ///< GUID of the note that owns the sheet; empty on the main sheet
    QStringList siblings; ///< GUIDs of notes and form field ids, told apart by lookup
    int arrowStyle;       ///< 0 no arrows, 1 arrow at the end
    bool notRelevant;     ///< crossed out
};
