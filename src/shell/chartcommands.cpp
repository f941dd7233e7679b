#include "shell/chartcommands.h"

#include "chart/line.h"
#include "chart/sticky.h"
#include "chart/toolid.h"
#include "sheet/clipboard.h"
#include "sheet/projectscene.h"
#include "sheet/sheetbook.h"
#include "shell/graphwidget.h"
#include "shell/itempropertiesdialog.h"
#include "shell/toolstoolbar.h"
#include "shell/zoomwidget.h"
#include "support/fonts.h"
#include "support/toolbarmore.h"

#include <QActionGroup>
#include <QColorDialog>
#include <QComboBox>
#include <QGraphicsView>
#include <QMainWindow>
#include <QMenu>
#include <QSettings>
#include <QToolBar>
#include <QUndoGroup>

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

ChartCommands::ChartCommands(QMainWindow *window, SheetBook *book, ProjectScene **currentSheet,
                             QUndoGroup *undoGroup, ZoomWidget *zoom)
    : QObject(window), window(window), book(book), currentSheet(currentSheet), zoom(zoom),
      clipBoard(new ClipBoard(currentSheet, window))
{
    createActions(undoGroup);
    prepareActions();
    connectActions();
    createActionGroups();
    createToolbars();
    createMenus();
    showToolbarMore(window);
    connect(undoGroup, &QUndoGroup::indexChanged, this, // a step may have changed what is selected
            [this] { showSelection(sheet()->selectedItems()); });
}

ChartCommands::~ChartCommands() = default;

int ChartCommands::getSelectedTool() const
{
    return palette->getSelectedTool();
}

QList<QAction *> ChartCommands::pick(const QList<Command> &commands) const
{
    QList<QAction *> picked;
    for (Command command : commands)
        picked.append(actions[command]);
    return picked;
}

void ChartCommands::showSelection(const QList<QGraphicsItem *> &items)
{
    auto *note = static_cast<Sticky *>(findFirst(items, ProjectItem::StickyType));
    auto *line = static_cast<Line *>(findFirst(items, ProjectItem::LineType));
    const bool picture = findFirst(items, ProjectItem::SVGPictureType);
    actions[Delete]->setEnabled(note || line || picture);
    if (note)
        showNoteState(note);
    if (line)
        showLineState(line, !note);
    if (!note && !line)
        showEmptyState();
}

void ChartCommands::showNoteState(Sticky *note)
{
    itemToolbar->setEnabled(true);
    noteFormatGroup->setEnabled(true);
    roleBox->setEnabled(true);
    actions[ItemColor]->setEnabled(true);
    actions[ItemProperties]->setEnabled(true);
    roleBox->setCurrentIndex(roleBox->findData(note->getRoleType()));
    checkAlignment(note->getRecord().textAlignment);
    actions[ChooseFont]->setData(note->getFont());
    actions[MarkNotRelevant]->setChecked(note->isNotRelevant());
}

void ChartCommands::checkAlignment(Qt::Alignment alignment)
{
    if (alignment & Qt::AlignLeft)
        actions[AlignLeft]->setChecked(true);
    else if (alignment & Qt::AlignHCenter)
        actions[AlignCenter]->setChecked(true);
    else if (alignment & Qt::AlignJustify)
        actions[Justify]->setChecked(true);
    if (alignment & Qt::AlignTop)
        actions[AlignTop]->setChecked(true);
    else if (alignment & Qt::AlignVCenter)
        actions[CenterVertically]->setChecked(true);
}

void ChartCommands::showLineState(Line *line, bool alone)
{
    itemToolbar->setEnabled(true);
    actions[ItemProperties]->setEnabled(true);
    actions[ItemColor]->setEnabled(true);
    if (alone) {
        noteFormatGroup->setEnabled(false);
        roleBox->setEnabled(false);
    }
    const CanvasItemInfo &record = line->getRecord();
    if (record.arrowStyle == Line::NoArrows)
        actions[NoArrows]->setChecked(true);
    else if (record.arrowStyle == Line::ArrowAtEnd)
        actions[SingleArrow]->setChecked(true);
    if (record.lineStyle == Qt::SolidLine)
        actions[SolidLine]->setChecked(true);
    else if (record.lineStyle == Qt::DashLine)
        actions[DashedLine]->setChecked(true);
}

void ChartCommands::showEmptyState()
{
    actions[ItemProperties]->setEnabled(false);
    itemToolbar->setEnabled(false);
    noteFormatGroup->setEnabled(true);
    roleBox->setEnabled(true);
    actions[ItemColor]->setEnabled(true);
}

void ChartCommands::setTextEditing(bool editing)
{
    for (QAction *action : pick({Copy, Paste, Duplicate, Undo, Redo, SelectAll, Delete}))
        action->setEnabled(!editing);
    if (editing)
        palette->cancelActiveTool();
}

void ChartCommands::setSheetShown(bool shown)
{
    for (QAction *action : pick({Copy, Paste, Duplicate, SelectAll}))
        action->setEnabled(shown);
    if (!shown)
        actions[Delete]->setEnabled(false);
}

void ChartCommands::leaveEverything()
{
    sheet()->finishEditing();
    sheet()->giveUpLine();
    palette->cancelActiveTool();
}

void ChartCommands::fitChart()
{
    fit(sheet()->getProjectItems());
}

void ChartCommands::fitSelection()
{
    const QList<ProjectItem *> selection = sheet()->getSelectedProjectItems();
    if (!selection.isEmpty())
        fit(selection);
}

void ChartCommands::fit(const QList<ProjectItem *> &items)
{
    auto *view = qobject_cast<GraphWidget *>(sheet()->views().value(0));
    if (!view || !view->isVisible())
        return; // the form is in front
    QRectF area;
    for (const ProjectItem *item : items)
        area |= item->sceneBoundingRect();
    if (area.isEmpty())
        area = sheet()->getPageBoundsAtPoint(QPointF());
    zoom->setZoom(view->getZoomFor(area));
    view->centerOn(area.center());
}

void ChartCommands::setTool(int toolId)
{
    if (toolId == SelectTool)
        sheet()->hideHighlightItem();
    const auto mode = toolId == HandTool ? QGraphicsView::ScrollHandDrag : QGraphicsView::NoDrag;
    for (ProjectScene *each : book->getAllSheets()) {
        if (!isLineTool(toolId))
            each->clearEdgeMarks();
        for (QGraphicsView *view : each->views())
            view->setDragMode(mode);
    }
}

void ChartCommands::setRoleFromBox(int index)
{
    sheet()->setSelectedNotesRole(roleBox->itemData(index).toString());
}

void ChartCommands::setRoleFromMenu(QAction *action)
{
    const QString role = action->data().toString();
    if (sheet()->setSelectedNotesRole(role))
        roleBox->setCurrentIndex(roleBox->findData(role));
}

void ChartCommands::setNotRelevant(bool notRelevant)
{
    sheet()->setSelectedNotesProperty(Sticky::PROPERTY_NOT_RELEVANT, notRelevant);
}

void ChartCommands::chooseItemColor()
{
    const QColor color = QColorDialog::getColor(Qt::black, nullptr);
    if (!color.isValid())
        return;
    sheet()->setSelectedLinesProperty(ProjectItem::PROPERTY_BACKGROUND_COLOR, color);
    sheet()->setSelectedNotesProperty(ProjectItem::PROPERTY_BACKGROUND_COLOR, color);
}

void ChartCommands::chooseTextColor()
{
    const QColor color = QColorDialog::getColor(Qt::black, nullptr);
    if (color.isValid())
        sheet()->setSelectedNotesProperty(Sticky::PROPERTY_TEXT_COLOR, color);
}

void ChartCommands::chooseFont()
{
    QFont font = actions[ChooseFont]->data().value<QFont>();
    if (!askForFont(font, window))
        return;
    sheet()->setSelectedNotesProperty(Sticky::PROPERTY_CUSTOM_FONT, font);
    actions[ChooseFont]->setData(font);
}

void ChartCommands::applyAlignment()
{
    Qt::Alignment alignment;
    if (isChecked(AlignTop))
        alignment |= Qt::AlignTop;
    else if (isChecked(CenterVertically))
        alignment |= Qt::AlignVCenter;
    if (isChecked(AlignLeft))
        alignment |= Qt::AlignLeft;
    else if (isChecked(AlignCenter))
        alignment |= Qt::AlignHCenter;
    else if (isChecked(Justify))
        alignment |= Qt::AlignJustify;
    sheet()->setSelectedNotesAlignment(alignment);
}

void ChartCommands::applyArrowStyle()
{
    sheet()->setSelectedLinesArrowStyle(isChecked(SingleArrow) ? Line::ArrowAtEnd : Line::NoArrows);
}

void ChartCommands::applyLineStyle()
{
    sheet()->setSelectedLinesStyle(isChecked(DashedLine) ? Qt::DashLine : Qt::SolidLine);
}

void ChartCommands::selectAll()
{
    sheet()->selectAll();
}

void ChartCommands::deleteSelection()
{
    sheet()->deleteSelectedItems();
}

void ChartCommands::showItemProperties()
{
    const QList<Sticky *> notes = sheet()->getSelectedNotes();
    const QList<Line *> lines = sheet()->getSelectedLines();
    ItemPropertiesDialog dialog(sheet(), notes.value(0), lines.value(0), window);
    dialog.exec();
}

void ChartCommands::toggleToolbarLock()
{
    projectToolbar->setMovable(toolbarsLocked);
    itemToolbar->setMovable(toolbarsLocked);
    toolbarsLocked = !toolbarsLocked;
    QAction *lock = actions[LockToolbars];
    lock->setIcon(toolbarsLocked ? lockedIcon : unlockedIcon);
    lock->setText(toolbarsLocked ? tr("Unlock toolbars") : tr("Lock toolbars"));
    lock->setStatusTip(toolbarsLocked ? tr("Unlock the toolbars to make them movable")
                                      : tr("Lock the toolbars to prevent them from being moved"));
}

void ChartCommands::rememberGrid()
{
    QSettings().setValue("showGrid", isGridEnabled());
    book->getMainSheet()->invalidate();
}
