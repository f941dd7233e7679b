#include "editing/commands.h"

#include "chart/formfields.h"
#include "support/fonts.h"

#include <QCoreApplication>
#include <QGraphicsScene>

namespace
{

/// The texts of all steps are translated together.
struct UndoStep {
    Q_DECLARE_TR_FUNCTIONS(UndoStep)
};

QString tellDeletion(int count)
{
    return count > 1 ? UndoStep::tr("delete %n items", nullptr, count)
                     : UndoStep::tr("delete %n item", nullptr, count);
}

QString tellMove(int count)
{
    return count > 1 ? UndoStep::tr("move %n items", nullptr, count)
                     : UndoStep::tr("move %n item", nullptr, count);
}

QString tellRole(QString type)
{
    return UndoStep::tr("change role to %1").arg(Role::tr(type.replace('_', ' ').toUtf8()));
}

void setGeometries(const QList<BoxItem *> &items, const QList<QRectF> &geometries)
{
    for (int i = 0; i < items.size(); ++i) {
        items.at(i)->setPos(geometries.at(i).topLeft());
        items.at(i)->setSize(geometries.at(i).size());
    }
}

} // namespace

AddCommand::AddCommand(QGraphicsItem *item, QGraphicsScene *scene, QUndoCommand *parent)
    : QUndoCommand(UndoStep::tr("add an item"), parent), scene(scene), item(item)
{
}

void AddCommand::undo()
{
    item->setSelected(false); // else whoever shows the selection goes on counting it
    scene->removeItem(item);
}

void AddCommand::redo()
{
    // A line that was drawn by hand stands on the sheet already.
    if (item->scene() != scene)
        scene->addItem(item);
}

DeleteCommand::DeleteCommand(QGraphicsScene *scene, const QList<QGraphicsItem *> &items,
                             QUndoCommand *parent)
    : QUndoCommand(tellDeletion(items.size()), parent), scene(scene), items(items)
{
    for (QGraphicsItem *item : items)
        item->setSelected(false);
}

void DeleteCommand::undo()
{
    for (QGraphicsItem *item : qAsConst(items)) {
        scene->addItem(item);
        if (auto *note = qgraphicsitem_cast<Sticky *>(item))
            note->notifySceneAddition();
    }
    scene->update();
}

void DeleteCommand::redo()
{
    for (QGraphicsItem *item : qAsConst(items)) {
        scene->removeItem(item);
        if (auto *note = qgraphicsitem_cast<Sticky *>(item))
            note->notifySceneRemoval();
    }
    scene->update();
}

GeometryChangeCommand::GeometryChangeCommand(const BoxGeometries &before, QUndoCommand *parent)
    : QUndoCommand(parent)
{
    bool moved = false;
    for (const auto &[item, geometry] : before) {
        items << item;
        oldGeometry << geometry;
        newGeometry << item->getGeometry();
        moved = moved || item->pos() != geometry.topLeft();
    }
    setText(moved ? tellMove(items.size()) : UndoStep::tr("resize item"));
}

GeometryChangeCommand::GeometryChangeCommand(const QList<BoxItem *> &items,
                                             const QPointF &moveDelta, const QSizeF &sizeDelta,
                                             QUndoCommand *parent)
    : QUndoCommand(moveDelta.isNull() ? UndoStep::tr("resize item") : tellMove(items.size()),
                   parent),
      items(items)
{
    for (BoxItem *item : items) {
        const QRectF geometry = item->getGeometry();
        newGeometry << geometry;
        oldGeometry << QRectF(geometry.topLeft() - moveDelta, geometry.size() - sizeDelta);
    }
}

void GeometryChangeCommand::undo()
{
    setGeometries(items, oldGeometry);
}

void GeometryChangeCommand::redo()
{
    setGeometries(items, newGeometry);
}

LineEndCommand::LineEndCommand(Line *line, const LineEnds &before, QUndoCommand *parent)
    : QUndoCommand(UndoStep::tr("move line end"), parent), line(line), oldEnds(before),
      newEnds(line->getEnds())
{
}

void LineEndCommand::undo()
{
    line->setEnds(oldEnds);
}

void LineEndCommand::redo()
{
    line->setEnds(newEnds);
}

LineStyleChangeCommand::LineStyleChangeCommand(const QList<Line *> &lines, Qt::PenStyle style,
                                               QUndoCommand *parent)
    : QUndoCommand(UndoStep::tr("change line style"), parent), lines(lines), newStyle(style)
{
    for (Line *line : lines)
        oldStyles << line->getLineStyle();
}

void LineStyleChangeCommand::undo()
{
    for (int i = 0; i < lines.size(); ++i)
        lines.at(i)->setLineStyle(oldStyles.at(i));
}

void LineStyleChangeCommand::redo()
{
    for (Line *line : qAsConst(lines))
        line->setLineStyle(newStyle);
}

ArrowStyleChangeCommand::ArrowStyleChangeCommand(const QList<Line *> &lines, Line::ArrowType style,
                                                 QUndoCommand *parent)
    : QUndoCommand(UndoStep::tr("change arrow style"), parent), lines(lines), newStyle(style)
{
    for (Line *line : lines)
        oldStyles << line->getArrowStyle();
}

void ArrowStyleChangeCommand::undo()
{
    for (int i = 0; i < lines.size(); ++i)
        lines.at(i)->setArrowStyle(oldStyles.at(i));
}

void ArrowStyleChangeCommand::redo()
{
    for (Line *line : qAsConst(lines))
        line->setArrowStyle(newStyle);
}

TextChangeCommand::TextChangeCommand(Sticky *note, const QString &oldText, const QString &newText,
                                     QUndoCommand *parent)
    : QUndoCommand(UndoStep::tr("change text"), parent), note(note), oldText(oldText),
      newText(newText)
{
}

// The form changes a note without a step. What it wrote comes back with the way on or back.
void TextChangeCommand::undo()
{
    newText = note->getText();
    isUndone = true;
    note->setText(oldText);
}

void TextChangeCommand::redo()
{
    if (isUndone)
        oldText = note->getText();
    note->setText(newText);
}

TextAlignmentChangeCommand::TextAlignmentChangeCommand(const QList<Sticky *> &notes,
                                                       Qt::Alignment alignment,
                                                       QUndoCommand *parent)
    : QUndoCommand(UndoStep::tr("change text alignment"), parent), notes(notes),
      newAlignment(alignment)
{
    for (Sticky *note : notes)
        oldAlignments << note->getRecord().textAlignment;
}

void TextAlignmentChangeCommand::undo()
{
    for (int i = 0; i < notes.size(); ++i)
        notes.at(i)->setTextAlignment(oldAlignments.at(i));
}

void TextAlignmentChangeCommand::redo()
{
    for (Sticky *note : qAsConst(notes))
        note->setTextAlignment(newAlignment);
}

RoleChangeCommand::RoleChangeCommand(const QList<Sticky *> &notes, const QString &roleType,
                                     FormText formText, QUndoCommand *parent)
    : QUndoCommand(tellRole(roleType), parent), notes(notes), newRole(roleType),
      formText(std::move(formText))
{
    for (Sticky *note : notes) {
        oldRoles << note->getRoleType();
        oldRecords << note->getCanvasItemInfo();
    }
}

void RoleChangeCommand::undo()
{
    for (int i = 0; i < notes.size(); ++i) {
        Sticky *note = notes.at(i);
        takeBackText(note, oldRecords.at(i).text, newTexts.at(i));
        note->setRoleType(oldRoles.at(i));
        takeBackTie(note, oldRecords.at(i));
        takeFormText(note);
        takeBackShape(note, oldRecords.at(i));
    }
}

void RoleChangeCommand::redo()
{
    newTexts.clear();
    for (int i = 0; i < notes.size(); ++i) {
        notes.at(i)->setRoleType(newRole);
        takeFormText(notes.at(i));
        newTexts << notes.at(i)->getText();
    }
}

// A text that came from elsewhere since stays, unless the form keeps it.
void RoleChangeCommand::takeBackText(Sticky *note, const QString &oldText,
                                     const QString &newText) const
{
    const QString text = note->getText();
    const bool isInForm = formText && formText(note) == text;
    note->removeRoleSiblings(); // first: the form keeps its own
    if (text != oldText && (text == newText || isInForm))
        note->setText(oldText);
}

/// A copy of the Loss has no tie to the form, whose words would take the place of its own.
void RoleChangeCommand::takeBackTie(Sticky *note, const CanvasItemInfo &old) const
{
    for (const char *field : {FormFields::Loss, FormFields::LossOfControl}) {
        if (note->getSiblings().contains(field) && !old.siblings.contains(field))
            note->removeRoleSiblings();
    }
}

void RoleChangeCommand::takeFormText(Sticky *note) const
{
    const QString text = formText ? formText(note) : QString();
    if (!text.isEmpty() && text != note->getText())
        note->setText(text);
}

/// Some roles make a note square, and a transfer gets a text and an alignment of its own.
void RoleChangeCommand::takeBackShape(Sticky *note, const CanvasItemInfo &old) const
{
    if (note->getRect().size() != old.size)
        note->setSize(old.size);
    if (newRole != RoleType::Transfer && old.role.getTypeName() != RoleType::Transfer)
        return;
    note->setTextAlignment(old.textAlignment);
    if (old.text.isEmpty() && note->getText() == "A")
        note->setText(QString());
}

ItemPropertyChangeCommand::ItemPropertyChangeCommand(const QList<ProjectItem *> &items,
                                                     const QByteArray &property,
                                                     const QVariant &value, QUndoCommand *parent)
    : QUndoCommand(parent), items(items), newValue(value), property(property)
{
    for (ProjectItem *item : items) {
        const bool follows =
            property == Sticky::PROPERTY_CUSTOM_FONT && !item->getRecord().customFont;
        oldValues << (follows ? QVariant() : item->property(property));
        setText(item->getPropertyLabel(property));
    }
}

void ItemPropertyChangeCommand::undo()
{
    for (int i = 0; i < items.size(); ++i) {
        auto *note = qobject_cast<Sticky *>(items.at(i));
        if (note && !oldValues.at(i).isValid())
            note->setDefaultFont(getStandardFont());
        else
            items.at(i)->setProperty(property, oldValues.at(i));
    }
}

void ItemPropertyChangeCommand::redo()
{
    for (ProjectItem *item : qAsConst(items))
        item->setProperty(property, newValue);
}
