#include "sheet/projectscene.h"

#include "chart/formfields.h"
#include "chart/sheethost.h"
#include "editing/commands.h"
#include "form/formview.h"
#include "project/projectfile.h"

#include <QInputDialog>
#include <QKeyEvent>
#include <QMessageBox>
#include <QUndoStack>

namespace
{

constexpr int HighestNumber = 99;
// A rubber band over a large chart makes every item report itself. Past this
// many in one turn of the event loop, one report at its end stands for the rest.
constexpr int SingleReports = 10;

const char ChangeRoleWarning[] = QT_TRANSLATE_NOOP(
    "ProjectScene",
    "You are about to change the role for an item which is the parent of another sheet.\n"
    "This will delete the associated sheet and information on that sheet will be lost.\n"
    "This action CANNOT BE UNDONE.");
const char DeleteParentWarning[] = QT_TRANSLATE_NOOP(
    "ProjectScene",
    "You are about to delete an item which is the parent of another sheet.\n"
    "This will delete the associated sheet and information on that sheet will be lost.\n"
    "This action CANNOT BE UNDONE.");

bool hasParentItem(const QList<Sticky *> &notes)
{
    return std::any_of(notes.begin(), notes.end(),
                       [](const Sticky *note) { return note->isParentItem(); });
}

QList<Sticky *> getNotesOfOtherRole(const QString &role, QList<Sticky *> notes)
{
    const auto hasRole = [&role](const Sticky *note) { return note->getRoleType() == role; };
    notes.erase(std::remove_if(notes.begin(), notes.end(), hasRole), notes.end());
    return notes;
}

QString getTextFieldId(int causalFactorNumber)
{
    return FormFields::getRowField(FormFields::CausalFactorText, causalFactorNumber);
}

} // namespace

bool ProjectScene::setSelectedNotesRole(const QString &role)
{
    const QList<Sticky *> selected = getSelectedNotes();
    if (!selected.isEmpty() && getNotesOfOtherRole(role, selected).isEmpty())
        return true;
    if (!checkRoleChangePermission(role, selected))
        return false;
    // The question runs the event loop.
    const QList<Sticky *> notes = getNotesOfOtherRole(role, getSelectedNotes());
    if (notes.isEmpty())
        return true;
    undoStack->push(new RoleChangeCommand(
        notes, role, [this](const Sticky *note) { return getFormText(note); }));
    for (Sticky *note : notes)
        fillFormField(note);
    return true;
}

bool ProjectScene::checkRoleChangePermission(const QString &role, const QList<Sticky *> &notes)
{
    if (!Role(role).isParentItem() && hasParentItem(notes) &&
        !askToDropSheet(tr("Change Role"), tr(ChangeRoleWarning)))
        return false;
    const QString refusal = getRoleRefusal(role, notes);
    if (refusal.isEmpty())
        return true;
    QMessageBox::critical(host->getDialogParent(), tr("Invalid Role"), refusal);
    return false;
}

QString ProjectScene::getRoleRefusal(const QString &role, const QList<Sticky *> &notes) const
{
    if (Role(role).isParentItem() && isSecondary())
        return tr("You cannot create an item that spawns a new sheet on a secondary sheet.");

    const auto [loss, lossOfControl] = getLossAndLoCNotes();
    // No row of the role table bears the second name.
    if ((role == RoleType::CausalFactor || role == "Underlying_Factor") && !(loss && lossOfControl))
        return tr(
            "You cannot create this role type until you have identified both a Loss and a Loss "
            "of Control event");

    if ((role == RoleType::Loss || role == RoleType::LossOfControl) && notes.size() >= 2)
        return tr("You cannot identify more than one Loss or Loss of Control per project");
    if (role == RoleType::Loss && loss)
        return tr("You cannot identify more than one Loss per project");
    if (role == RoleType::LossOfControl && lossOfControl)
        return tr("You cannot identify more than one Loss of Control per project");
    return QString();
}

void ProjectScene::deleteSelectedItems()
{
    if (!isSecondary() && hasParentItem(getSelectedNotes()) &&
        !askToDropSheet(tr("Delete Parent Item"), tr(DeleteParentWarning)))
        return;
    const QList<QGraphicsItem *> items = selectedItems();
    if (items.isEmpty())
        return; // an empty step would end what can be redone
    for (QGraphicsItem *item : items) {
        if (!isProjectItem(item))
            removedExtras.insert(item);
    }
    undoStack->push(new DeleteCommand(this, items));
}

bool ProjectScene::askToDropSheet(const QString &title, const QString &text)
{
    return QMessageBox::warning(host->getDialogParent(), title, text,
                                QMessageBox::Ok | QMessageBox::Cancel,
                                QMessageBox::Cancel) == QMessageBox::Ok;
}

// The form wins over the note: one that has just become the Loss takes the text
// that stands in the form's field.
QString ProjectScene::getFormText(const Sticky *note) const
{
    QString text;
    for (const QString &id : note->getSiblings()) {
        const QString value = formView ? formView->getFieldValue(id) : QString();
        if (!value.isEmpty())
            text = value;
    }
    return text;
}

// Left empty, the field would replace the note's text with the first letter typed there.
void ProjectScene::fillFormField(Sticky *note)
{
    if (!formView)
        return;
    for (const QString id : {FormFields::Loss, FormFields::LossOfControl}) {
        if (note->getSiblings().contains(id) && formView->getFieldValue(id).isEmpty())
            formView->setFieldValue(id, note->getText());
    }
}

// What was typed there while the note was deleted could not reach it.
void ProjectScene::takeFormField(Sticky *note)
{
    for (const QString id : {FormFields::Loss, FormFields::LossOfControl}) {
        const QString text = formView ? formView->getFieldValue(id) : QString();
        if (note->getSiblings().contains(id) && !text.isEmpty() && !note->getText().isEmpty())
            note->setText(text);
    }
}

void ProjectScene::onStepTaken(int index)
{
    const bool pushed = index == stepIndex + 1 && undoStack->command(stepIndex) != nextStep;
    stepIndex = index;
    nextStep = undoStack->command(index);
    if (pushed || undoStack->count() == 0)
        return;
    // What comes back with a step may lie beyond the pages; lines' ends follow a turn later.
    stepTimer.start(0);
    // It may be the Loss again.
    for (ProjectItem *item : itemIndex) {
        if (auto *note = qobject_cast<Sticky *>(item); note && !note->getSiblings().isEmpty())
            fillFormField(note);
    }
    emit stepTaken();
}

void ProjectScene::onRequestCausalFactorNumberChange(Sticky *note)
{
    QInputDialog dialog(host->getDialogParent());
    dialog.setWindowTitle(tr("Set Causal Factor Number"));
    dialog.setLabelText(tr("Causal Factor Number:"));
    dialog.setInputMode(QInputDialog::IntInput);
    dialog.setIntRange(1, HighestNumber);
    dialog.setIntValue(note->getCausalFactorNumber());
    // The title is longer than the label, and stands between the window's buttons.
    dialog.resize(2 * dialog.fontMetrics().horizontalAdvance(dialog.windowTitle()), 0);
    const bool accepted = dialog.exec() == QDialog::Accepted;
    const int number = dialog.intValue();
    // The dialog runs the event loop, so the note may be gone.
    if (!accepted || !isAlive(note) || number == note->getCausalFactorNumber())
        return;
    Sticky *holder = getCausalFactor(number);
    if (!holder) {
        moveCausalFactor(note, number);
        return;
    }
    const QString question = tr("The Causal Factor %1 already exists.\nWould you like to swap "
                                "numbers with this Causal Factor?")
                                 .arg(number);
    const auto answer =
        QMessageBox::question(host->getDialogParent(), tr("Causal Factor already exists"), question,
                              QMessageBox::Ok | QMessageBox::Cancel);
    if (answer == QMessageBox::Ok && isAlive(note) && isAlive(holder))
        swapCausalFactors(note, holder);
}

Sticky *ProjectScene::getCausalFactor(int number) const
{
    for (ProjectItem *item : itemIndex) {
        auto *note = qobject_cast<Sticky *>(item);
        if (note && note->getRoleType() == RoleType::CausalFactor &&
            note->getCausalFactorNumber() == number)
            return note;
    }
    return nullptr;
}

// No undo step tells of a new number. The id of the old one stays among the siblings.
void ProjectScene::moveCausalFactor(Sticky *note, int number)
{
    QString id = getTextFieldId(number);
    if (formView)
        id = formView->changeCausalFactorNumber(note->getGUID(), note->getCausalFactorNumber(),
                                                number, QString());
    note->setCausalFactorNumber(number);
    note->addSibling(id);
    host->onCausalFactorChanged(note);
    markDirty();
}

void ProjectScene::swapCausalFactors(Sticky *note, Sticky *other)
{
    const int oldNumber = note->getCausalFactorNumber();
    const int newNumber = other->getCausalFactorNumber();
    if (formView)
        formView->changeCausalFactorNumber(note->getGUID(), oldNumber, newNumber, other->getGUID());
    renumber(other, oldNumber);
    renumber(note, newNumber);
    markDirty();
}

void ProjectScene::markDirty()
{
    undoStack->resetClean();
    if (projectFile)
        projectFile->setDirty();
}

void ProjectScene::renumber(Sticky *note, int number)
{
    const QString oldField = getTextFieldId(note->getCausalFactorNumber());
    note->removeSibling(oldField);
    for (const QString &id : note->getSiblings()) {
        Sticky *twin = host->getNoteWithGUID(id);
        if (twin && twin->getSiblings().contains(oldField))
            twin->removeSibling(oldField); // files hold such twins
    }
    note->addSibling(getTextFieldId(number));
    note->setCausalFactorNumber(number);
    host->onCausalFactorChanged(note);
}

void ProjectScene::onNoteBecameCausalFactor(Sticky *note)
{
    if (isAlive(note))
        emit causalFactorAdded(note);
}

void ProjectScene::onNoteWasCausalFactor(Sticky *note)
{
    if (isAlive(note))
        emit causalFactorRemoved(note);
}

void ProjectScene::onStickyTextEdited(Sticky *source, QString from, QString to)
{
    undoStack->push(new TextChangeCommand(source, from, to));
}

void ProjectScene::onEditingStarted(Sticky *note)
{
    if (editingNote && editingNote != note)
        editingNote->finishEditing();
    editingNote = note;
    emit textEditingChanged(true);
}

void ProjectScene::finishEditing()
{
    if (!editingNote)
        return;
    editingNote->finishEditing();
    editingNote = nullptr;
    emit textEditingChanged(false);
}

void ProjectScene::commitEditing()
{
    if (!editingNote)
        return;
    editingNote->commitEditing();
    emit textEditingChanged(true); // the new step has switched undo on
}

void ProjectScene::shareEditedText()
{
    if (editingNote)
        editingNote->setSiblingText();
}

bool ProjectScene::handleEditingCommand(QKeyEvent *event) const
{
    if (!editingNote)
        return false;
    if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)
        return true;
    const auto commands = {QKeySequence::Cut,  QKeySequence::Copy, QKeySequence::Paste,
                           QKeySequence::Undo, QKeySequence::Redo, QKeySequence::SelectAll};
    return std::any_of(commands.begin(), commands.end(),
                       [event](auto command) { return event->matches(command); });
}

bool ProjectScene::disturbsDrag(const QKeyEvent *event) const
{
    static const QSet<int> keys = {Qt::Key_A, Qt::Key_D, Qt::Key_V, Qt::Key_Y, Qt::Key_Z};
    return (mouseGrabberItem() || newLine) && event->modifiers() & Qt::ControlModifier &&
           keys.contains(event->key());
}

void ProjectScene::onSelectionChanged()
{
    restingBound.reset();
    if (!selectionTimer.isActive())
        selectionTimer.start(0);
    if (++selectionReports <= SingleReports)
        tellSelection();
}

// The toolkit takes the whole selection apart when one item of several is clicked, and reports
// nothing of the one that stays.
void ProjectScene::reportSelection()
{
    selectionReports = 0;
    if (toldSelection != selectedItems())
        tellSelection();
}

void ProjectScene::tellSelection()
{
    toldSelection = selectedItems();
    emit selectionChanged(toldSelection);
}

void ProjectScene::onFormValueChanged(QString id, QString value)
{
    const auto items = itemIndex; // a text may reach other sheets and the form
    for (ProjectItem *item : items) {
        auto *note = qobject_cast<Sticky *>(item);
        if (note && note->getSiblings().contains(id))
            note->setText(value);
    }
}

void ProjectScene::setSelectedNotesAlignment(Qt::Alignment alignment)
{
    const QList<Sticky *> notes = getSelectedNotes();
    if (!notes.isEmpty())
        undoStack->push(new TextAlignmentChangeCommand(notes, alignment));
}

void ProjectScene::setSelectedNotesProperty(const QByteArray &property, const QVariant &value)
{
    QList<ProjectItem *> items;
    for (Sticky *note : getSelectedNotes())
        items.append(note);
    if (!items.isEmpty())
        undoStack->push(new ItemPropertyChangeCommand(items, property, value));
}

void ProjectScene::setSelectedLinesProperty(const QByteArray &property, const QVariant &value)
{
    QList<ProjectItem *> items;
    for (Line *line : getSelectedLines())
        items.append(line);
    if (!items.isEmpty())
        undoStack->push(new ItemPropertyChangeCommand(items, property, value));
}

void ProjectScene::setSelectedLinesArrowStyle(Line::ArrowType style)
{
    const QList<Line *> lines = getSelectedLines();
    if (!lines.isEmpty())
        undoStack->push(new ArrowStyleChangeCommand(lines, style));
}

void ProjectScene::setSelectedLinesStyle(Qt::PenStyle style)
{
    const QList<Line *> lines = getSelectedLines();
    if (!lines.isEmpty())
        undoStack->push(new LineStyleChangeCommand(lines, style));
}

void ProjectScene::setItemsFont(const QFont &font)
{
    for (Sticky *note : getAllNotes()) {
        if (!note->getRecord().customFont)
            note->setDefaultFont(font);
    }
}

bool ProjectScene::walkNotes(bool forward)
{
    const QList<Sticky *> notes = getNotesInReadingOrder();
    if (editingNote || notes.isEmpty())
        return false;
    if (mouseGrabberItem())
        return true; // a selection that changes under a drag would drag others
    const auto isSelected = [](const Sticky *note) { return note->isSelected(); };
    const auto at = std::find_if(notes.begin(), notes.end(), isSelected);
    const int step = forward ? 1 : -1;
    const int start = at != notes.end() ? int(at - notes.begin()) : forward ? -1 : notes.size();
    Sticky *note = notes.at((start + step + notes.size()) % notes.size());
    clearSelection();
    note->setSelected(true);
    note->ensureVisible();
    return true;
}

void ProjectScene::selectAll()
{
    const auto items = itemIndex;
    for (ProjectItem *item : items)
        item->setSelected(true);
}
