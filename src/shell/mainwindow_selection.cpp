#include "chart/line.h"
#include "chart/sticky.h"
#include "editing/commands.h"
#include "shell/graphwidget.h"
#include "shell/itempropertiesdialog.h"
#include "shell/mainwindow.h"
#include "shell/toolstoolbar.h"
#include "support/fonts.h"

#include <QActionGroup>
#include <QColorDialog>
#include <QComboBox>
#include <QSettings>
#include <QToolBar>
#include <QUndoStack>

#include <algorithm>

namespace
{

/// The first item of the type, or null.
QGraphicsItem *findFirst(const QList<QGraphicsItem *> &items, int type)
{
    const auto found = std::find_if(items.cbegin(), items.cend(),
                                    [type](QGraphicsItem *item) { return item->type() == type; });
    return found == items.cend() ? nullptr : *found;
}

} // namespace

void MainWindow::onSelectionChanged(const QList<QGraphicsItem *> &items)
{
    auto *note = static_cast<Sticky *>(findFirst(items, ProjectItem::StickyType));
    auto *line = static_cast<Line *>(findFirst(items, ProjectItem::LineType));
    const bool picture = findFirst(items, ProjectItem::SVGPictureType);
    deleteAction->setEnabled(note || line || picture);
    if (note)
        showNoteState(note);
    if (line)
        showLineState(line, !note);
    if (!note && !line)
        showEmptyState();
}

void MainWindow::showNoteState(Sticky *note)
{
    itemToolbar->setEnabled(true);
    noteFormatGroup->setEnabled(true);
    roleCombo->setEnabled(true);
    itemColorAction->setEnabled(true);
    itemPropertiesAction->setEnabled(true);
    roleCombo->setCurrentIndex(roleCombo->findData(note->getRoleType()));
    checkAlignmentActions(note->getRecord().textAlignment);
    chooseFontAction->setData(note->getFont());
    markNotRelevantAction->setChecked(note->isNotRelevant());
}

void MainWindow::checkAlignmentActions(Qt::Alignment alignment)
{
    if (alignment & Qt::AlignLeft)
        alignLeftAction->setChecked(true);
    else if (alignment & Qt::AlignHCenter)
        alignCenterAction->setChecked(true);
    else if (alignment & Qt::AlignJustify)
        justifyAction->setChecked(true);
    if (alignment & Qt::AlignTop)
        alignTopAction->setChecked(true);
    else if (alignment & Qt::AlignVCenter)
        centerVerticallyAction->setChecked(true);
}

void MainWindow::showLineState(Line *line, bool alone)
{
    itemToolbar->setEnabled(true);
    itemPropertiesAction->setEnabled(true);
    itemColorAction->setEnabled(true);
    if (alone) {
        noteFormatGroup->setEnabled(false);
        roleCombo->setEnabled(false);
    }
    const CanvasItemInfo &record = line->getRecord();
    if (record.arrowStyle == Line::NoArrows)
        noArrowsAction->setChecked(true);
    else if (record.arrowStyle == Line::ArrowAtEnd)
        singleArrowAction->setChecked(true);
    if (record.lineStyle == Qt::SolidLine)
        solidLineAction->setChecked(true);
    else if (record.lineStyle == Qt::DashLine)
        dashedLineAction->setChecked(true);
}

void MainWindow::showEmptyState()
{
    itemPropertiesAction->setEnabled(false);
    itemToolbar->setEnabled(false);
    noteFormatGroup->setEnabled(true);
    roleCombo->setEnabled(true);
    itemColorAction->setEnabled(true);
}

void MainWindow::onTextEditingChanged(bool editing)
{
    const QList<QAction *> sheetActions = {copyAction, pasteAction,     undoAction,
                                           redoAction, selectAllAction, deleteAction};
    for (QAction *action : sheetActions)
        action->setEnabled(!editing);
    if (editing)
        toolsToolbar->cancelActiveTool();
}

void MainWindow::onEscapePressed()
{
    currentScene->finishEditing();
    toolsToolbar->cancelActiveTool();
}

int MainWindow::selectedTool() const
{
    return toolsToolbar->getSelectedTool();
}

bool MainWindow::isGridEnabled() const
{
    return showGridAction->isChecked();
}

void MainWindow::onToolSelectionChanged(int toolId)
{
    if (toolId == SelectTool)
        currentScene->hideHighlightItem();
    const auto mode = toolId == HandTool ? QGraphicsView::ScrollHandDrag : QGraphicsView::NoDrag;
    for (ProjectScene *sheet : book->getAllSheets()) {
        for (QGraphicsView *view : sheet->views())
            view->setDragMode(mode);
    }
}

void MainWindow::onRoleComboChanged(int index)
{
    currentScene->setSelectedNotesRole(roleCombo->itemData(index).toString());
}

void MainWindow::onRoleItemTriggered(QAction *selectedAct)
{
    const QString role = selectedAct->data().toString();
    if (currentScene->setSelectedNotesRole(role))
        roleCombo->setCurrentIndex(roleCombo->findData(role));
}

void MainWindow::onMarkNotRelevantTriggered(bool notRelevant)
{
    currentScene->setSelectedNotesProperty(Sticky::PROPERTY_NOT_RELEVANT, notRelevant);
}

void MainWindow::onItemColorActionTriggered()
{
    const QColor color = QColorDialog::getColor(Qt::black, nullptr);
    if (!color.isValid())
        return;
    currentScene->setSelectedLinesProperty(ProjectItem::PROPERTY_BACKGROUND_COLOR, color);
    currentScene->setSelectedNotesProperty(ProjectItem::PROPERTY_BACKGROUND_COLOR, color);
}

void MainWindow::onTextColorActionTriggered()
{
    const QColor color = QColorDialog::getColor(Qt::black, nullptr);
    if (color.isValid())
        currentScene->setSelectedNotesProperty(Sticky::PROPERTY_TEXT_COLOR, color);
}

void MainWindow::onChooseFontTriggered()
{
    QFont font = chooseFontAction->data().value<QFont>();
    if (!askForFont(font, this))
        return;
    currentScene->setSelectedNotesProperty(Sticky::PROPERTY_CUSTOM_FONT, font);
    chooseFontAction->setData(font);
}

void MainWindow::onAlignmentChanged()
{
    Qt::Alignment alignment;
    if (alignTopAction->isChecked())
        alignment |= Qt::AlignTop;
    else if (centerVerticallyAction->isChecked())
        alignment |= Qt::AlignVCenter;
    if (alignLeftAction->isChecked())
        alignment |= Qt::AlignLeft;
    else if (alignCenterAction->isChecked())
        alignment |= Qt::AlignHCenter;
    else if (justifyAction->isChecked())
        alignment |= Qt::AlignJustify;
    currentScene->setSelectedNotesAlignment(alignment);
}

void MainWindow::onArrowStyleChanged()
{
    const QList<Line *> lines = currentScene->getSelectedLines();
    const auto style = singleArrowAction->isChecked() ? Line::ArrowAtEnd : Line::NoArrows;
    if (!lines.isEmpty())
        currentScene->getUndoStack()->push(new ArrowStyleChangeCommand(lines, style));
}

void MainWindow::onLineStyleChanged()
{
    const QList<Line *> lines = currentScene->getSelectedLines();
    const auto style = dashedLineAction->isChecked() ? Qt::DashLine : Qt::SolidLine;
    if (!lines.isEmpty())
        currentScene->getUndoStack()->push(new LineStyleChangeCommand(lines, style));
}

void MainWindow::onSelectAllTriggered()
{
    currentScene->selectAll();
}

void MainWindow::onDeleteTriggered()
{
    currentScene->deleteSelectedItems();
}

void MainWindow::showItemPropertiesDialog()
{
    const QList<Sticky *> notes = currentScene->getSelectedNotes();
    const QList<Line *> lines = currentScene->getSelectedLines();
    ItemPropertiesDialog dialog(currentScene, notes.value(0), lines.value(0), this);
    dialog.exec();
}

void MainWindow::toggleToolbarLock()
{
    projectToolbar->setMovable(toolbarsLocked);
    itemToolbar->setMovable(toolbarsLocked);
    toolbarsLocked = !toolbarsLocked;
    lockToolbarsAction->setIcon(toolbarsLocked ? lockedIcon : unlockedIcon);
    lockToolbarsAction->setText(toolbarsLocked ? "Unlock toolbars" : "Lock toolbars");
    lockToolbarsAction->setStatusTip(toolbarsLocked
                                         ? "Unlock the toolbars to make them movable"
                                         : "Lock the toolbars to prevent them from being moved");
}

void MainWindow::onShowGridTriggered()
{
    QSettings().setValue("showGrid", showGridAction->isChecked());
    getMainScene()->invalidate();
}
