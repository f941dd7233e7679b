#pragma once

#include "chart/line.h"
#include "chart/sticky.h"

#include <QGraphicsScene>
#include <QUndoCommand>
#include <QVariant>

#include <functional>

// The undo steps of a chart. None owns an item: a sheet clears its stack
// together with its items. None merges with another.

class AddCommand : public QUndoCommand
{
public:
    AddCommand(QGraphicsItem *item, QGraphicsScene *scene, QUndoCommand *parent = nullptr);
    void undo() override;
    void redo() override;

private:
    QGraphicsScene *scene;
    QGraphicsItem *item;
};

class DeleteCommand : public QUndoCommand
{
public:
    DeleteCommand(QGraphicsScene *scene, const QList<QGraphicsItem *> &items,
                  QUndoCommand *parent = nullptr);
    void undo() override;
    void redo() override;

private:
    QGraphicsScene *scene;
    QList<QGraphicsItem *> items;
};

/// Built after the move or resize has happened.
class GeometryChangeCommand : public QUndoCommand
{
public:
    /// Of boxes that a drag changed, each in its own way.
    explicit GeometryChangeCommand(const BoxGeometries &before, QUndoCommand *parent = nullptr);
    /// Of boxes that all changed by the same.
    GeometryChangeCommand(const QList<BoxItem *> &items, const QPointF &moveDelta,
                          const QSizeF &sizeDelta, QUndoCommand *parent = nullptr);
    void undo() override;
    void redo() override;

private:
    QList<BoxItem *> items;
    QList<QRectF> newGeometry;
    QList<QRectF> oldGeometry;
};

/// Built after the mouse has dragged an end of the line, with its ends before that.
class LineEndCommand : public QUndoCommand
{
public:
    LineEndCommand(Line *line, const LineEnds &before, QUndoCommand *parent = nullptr);
    void undo() override;
    void redo() override;

private:
    Line *line;
    LineEnds oldEnds;
    LineEnds newEnds;
};

class LineStyleChangeCommand : public QUndoCommand
{
public:
    LineStyleChangeCommand(const QList<Line *> &lines, Qt::PenStyle style,
                           QUndoCommand *parent = nullptr);
    void undo() override;
    void redo() override;

private:
    QList<Line *> lines;
    QList<Qt::PenStyle> oldStyles;
    Qt::PenStyle newStyle;
};

class ArrowStyleChangeCommand : public QUndoCommand
{
public:
    ArrowStyleChangeCommand(const QList<Line *> &lines, Line::ArrowType style,
                            QUndoCommand *parent = nullptr);
    void undo() override;
    void redo() override;

private:
    QList<Line *> lines;
    QList<Line::ArrowType> oldStyles;
    Line::ArrowType newStyle;
};

class TextChangeCommand : public QUndoCommand
{
public:
    TextChangeCommand(Sticky *note, const QString &oldText, const QString &newText,
                      QUndoCommand *parent = nullptr);
    void undo() override;
    void redo() override;

private:
    Sticky *note;
    QString oldText;
    QString newText;
    bool isUndone = false; // once it was
};

class TextAlignmentChangeCommand : public QUndoCommand
{
public:
    TextAlignmentChangeCommand(const QList<Sticky *> &notes, Qt::Alignment alignment,
                               QUndoCommand *parent = nullptr);
    void undo() override;
    void redo() override;

private:
    QList<Sticky *> notes;
    QList<Qt::Alignment> oldAlignments;
    Qt::Alignment newAlignment;
};

/// Undone, it also gives back the size, text and alignment that the role changed.
class RoleChangeCommand : public QUndoCommand
{
public:
    /// What the form holds for a note of its role, which wins over the note; empty for nothing.
    using FormText = std::function<QString(const Sticky *)>;

    RoleChangeCommand(const QList<Sticky *> &notes, const QString &roleType,
                      FormText formText = nullptr, QUndoCommand *parent = nullptr);
    void undo() override;
    void redo() override;

private:
    void takeBackText(Sticky *note, const QString &oldText, const QString &newText) const;
    void takeBackTie(Sticky *note, const CanvasItemInfo &old) const;
    void takeFormText(Sticky *note) const;
    void takeBackShape(Sticky *note, const CanvasItemInfo &old) const;

    QList<Sticky *> notes;
    QList<QString> oldRoles;
    QList<CanvasItemInfo> oldRecords;
    QStringList newTexts;
    QString newRole;
    FormText formText;
};

/// Sets a QObject property by name; the items' own label is the text.
class ItemPropertyChangeCommand : public QUndoCommand
{
public:
    ItemPropertyChangeCommand(const QList<ProjectItem *> &items, const QByteArray &property,
                              const QVariant &value, QUndoCommand *parent = nullptr);
    void undo() override;
    void redo() override;

private:
    QList<ProjectItem *> items;
    QList<QVariant> oldValues; // invalid: the note followed the project's font
    QVariant newValue;
    QByteArray property;
};
