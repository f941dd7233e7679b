#include "chart/role.h"
#include "sheet/clipboard.h"
#include "shell/chartcommands.h"
#include "shell/pmiconloader.h"
#include "shell/shortcuttip.h"
#include "shell/toolstoolbar.h"
#include "shell/zoomwidget.h"

#include <QActionGroup>
#include <QComboBox>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QSettings>
#include <QUndoGroup>
#include <QWheelEvent>

namespace
{

struct ActionRow {
    ChartCommands::Command command;
    QString text;
    const char *icon; // empty for none
    QKeySequence shortcut;
    QString statusTip; // empty for none
};

/// A wheel that only passes over it must not change the selected notes.
class RoleBox : public QComboBox
{
protected:
    void wheelEvent(QWheelEvent *event) override
    {
        if (hasFocus())
            QComboBox::wheelEvent(event);
        else
            event->ignore();
    }
};

} // namespace

void ChartCommands::createActions(QUndoGroup *undoGroup)
{
    const QKeySequence none;
    const ActionRow rows[] = {
        {NewProject, tr("&New Project"), "document-new", QKeySequence::New,
         tr("Start a new project")},
        {OpenProject, tr("&Open Project..."), "document-open", QKeySequence::Open,
         tr("Open an existing project")},
        {QuickStart, tr("Quick Start &Template"), "tools_wizard", none,
         tr("Open quick start template")},
        {Save, tr("&Save"), "document-save", QKeySequence::Save, tr("Save the current project")},
        {SaveAs, tr("Save &As..."), "document-save-as", none,
         tr("Save the project with a different file name.")},
        {PrintSetup, tr("Print Setup"), "", none, tr("Choose which pages to print")},
        {Print, tr("&Print"), "document-print", QKeySequence::Print, tr("Print the project")},
        {Export, tr("Export..."), "document-export", none, tr("Export to other formats")},
        {SavePagePNG, tr("Save page as PNG image..."), "image-png", none,
         tr("Export current page as PNG image")},
        {Exit, tr("E&xit"), "application-exit", QKeySequence("Ctrl+Q"), tr("Quit the application")},
        {Undo, tr("Undo"), "edit-undo", QKeySequence::Undo, tr("Undo the last action")},
        {Redo, tr("Redo"), "edit-redo", QKeySequence::Redo, tr("Redo the last undone action")},
        {Copy, tr("Copy"), "edit-copy", QKeySequence::Copy,
         tr("Copy the current note to the clipboard")},
        {Paste, tr("Paste"), "edit-paste", QKeySequence::Paste, tr("Paste the clipboard contents")},
        {SelectAll, tr("Select &All"), "", QKeySequence::SelectAll,
         tr("Select all items in the scene")},
        {Delete, tr("Delete item(s)"), "edit-delete", Qt::Key_Backspace,
         tr("Delete the currently selected items")},
        {Find, tr("&Find..."), "", QKeySequence::Find, tr("Search the notes and the form")},
        {FindNext, tr("Find Next"), "", Qt::Key_F3, tr("Go to the next place that was found")},
        {FindPrevious, tr("Find Previous"), "", QKeySequence("Shift+F3"),
         tr("Go to the previous place that was found")},
        {ItemProperties, tr("Item Properties"), "", none,
         tr("Edit the properties for the selected items")},
        {MarkNotRelevant, tr("Mark not relevant"), "", none,
         tr("Mark this note not relevant to the investigation")},
        {ProjectOptions, tr("&Project Settings"), "configure", none, tr("Set project options")},
        {ProgramOptions, tr("Program Settings"), "", none, tr("Edit program settings")},
        {ShowGrid, tr("Display grid"), "", none, tr("Show the grid that items snap to")},
        {LockToolbars, tr("Unlock toolbars"), "decrypted", none,
         tr("Unlock the toolbars to make them moveable")},
        {Registration, tr("&Registration"), "", none,
         tr("Show whether this edition needs a registration")},
        {HelpContents, tr("Help Contents"), "help-contents", QKeySequence::HelpContents,
         tr("Get help on how to use this application")},
        {About, tr("&About"), "", none, tr("Show information about the application")},
        {ChooseFont, tr("Choose Font"), "choose-font", none, QString()},
        {ItemColor, tr("Item Color"), "choose-item-color", none, QString()},
        {TextColor, tr("Text Color"), "choose-text-color", none, QString()},
        {AlignLeft, tr("Align Left"), "format-justify-left", QKeySequence("Ctrl+L"), QString()},
        {AlignCenter, tr("Align Center"), "format-justify-center", QKeySequence("Ctrl+E"),
         QString()},
        {Justify, tr("Justify"), "format-justify-fill", QKeySequence("Ctrl+J"), QString()},
        {CenterVertically, tr("Center Vertically"), "format-justify-vcenter", none, QString()},
        {AlignTop, tr("Align Top"), "format-justify-top", none, QString()},
        {NoArrows, tr("No Arrows"), "", none, QString()},
        {SingleArrow, tr("Single Arrow"), "", none, QString()},
        {SolidLine, tr("Solid Line"), "", none, QString()},
        {DashedLine, tr("Dashed Line"), "", none, QString()},
        {ExportForm, tr("Export Form"), "word-icon", none,
         tr("Export form to a Microsoft Word document")},
        {PrintForm, tr("Print Form"), "", none, QString()},
        {Duplicate, tr("Duplicate"), "", QKeySequence("Ctrl+D"),
         tr("Make a copy of the selected items beside them")},
        {FitChart, tr("Fit Chart"), "", QKeySequence("Ctrl+9"),
         tr("Zoom so that the whole chart is seen")},
        {FitSelection, tr("Fit Selection"), "", QKeySequence("Shift+2"),
         tr("Zoom so that the selected items fill the view")},
    };
    for (const ActionRow &row : rows) {
        QAction *action = row.command == Undo   ? undoGroup->createUndoAction(window, row.text)
                          : row.command == Redo ? undoGroup->createRedoAction(window, row.text)
                                                : new QAction(row.text, window);
        if (*row.icon)
            action->setIcon(PMIconLoader::loadIcon(row.icon));
        if (!row.shortcut.isEmpty())
            action->setShortcut(row.shortcut);
        action->setStatusTip(row.statusTip);
        nameShortcutInTip(action);
        actions[row.command] = action;
    }
    // Hands know both; menu and tool tip name the first.
    actions[Redo]->setShortcuts({actions[Redo]->shortcut(), QKeySequence("Ctrl+Y")});
}

void ChartCommands::prepareActions()
{
    actions[Delete]->setEnabled(false);
    actions[ItemProperties]->setEnabled(false);
    actions[MarkNotRelevant]->setCheckable(true);
    actions[ProjectOptions]->setMenuRole(QAction::PreferencesRole);
    actions[ShowGrid]->setCheckable(true);
    actions[ShowGrid]->setChecked(QSettings().value("showGrid", true).toBool());
    actions[ChooseFont]->setData(QFont("Arial", 8, QFont::Normal, false));
    // What is typed elsewhere than on a sheet stays a character.
    actions[FitSelection]->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    lockedIcon = PMIconLoader::loadIcon("decrypted");
    unlockedIcon = PMIconLoader::loadIcon("encrypted");
}

void ChartCommands::connectActions()
{
    onTriggered(Copy, clipBoard, &ClipBoard::onCopyTriggered);
    onTriggered(Paste, clipBoard, &ClipBoard::onPasteTriggered);
    onTriggered(Duplicate, clipBoard, &ClipBoard::onDuplicateTriggered);
    onTriggered(FitChart, this, &ChartCommands::fitChart);
    onTriggered(FitSelection, this, &ChartCommands::fitSelection);
    onTriggered(SelectAll, this, &ChartCommands::selectAll);
    onTriggered(Delete, this, &ChartCommands::deleteSelection);
    onTriggered(ItemProperties, this, &ChartCommands::showItemProperties);
    onTriggered(MarkNotRelevant, this, &ChartCommands::setNotRelevant);
    onTriggered(ShowGrid, this, &ChartCommands::rememberGrid);
    onTriggered(LockToolbars, this, &ChartCommands::toggleToolbarLock);
    onTriggered(ChooseFont, this, &ChartCommands::chooseFont);
    onTriggered(ItemColor, this, &ChartCommands::chooseItemColor);
    onTriggered(TextColor, this, &ChartCommands::chooseTextColor);
}

void ChartCommands::createActionGroups()
{
    // An action belongs to one group at a time: the alignments leave this one again, so that
    // it enables the font and the text colour alone.
    noteFormatGroup = new QActionGroup(window);
    for (QAction *action : pick({ChooseFont, TextColor, AlignLeft, AlignCenter, Justify}))
        noteFormatGroup->addAction(action);
    createGroup({AlignLeft, AlignCenter, Justify}, &ChartCommands::applyAlignment);
    createGroup({AlignTop, CenterVertically}, &ChartCommands::applyAlignment);
    createGroup({NoArrows, SingleArrow}, &ChartCommands::applyArrowStyle);
    createGroup({SolidLine, DashedLine}, &ChartCommands::applyLineStyle);
}

void ChartCommands::createGroup(const QList<Command> &commands, void (ChartCommands::*slot)())
{
    auto *group = new QActionGroup(window);
    for (QAction *action : pick(commands)) {
        action->setCheckable(true);
        group->addAction(action);
    }
    connect(group, &QActionGroup::triggered, this, slot);
}

void ChartCommands::createToolbars()
{
    window->setUnifiedTitleAndToolBarOnMac(false);
    window->setIconSize(QSize(22, 22)); // drawn for, so nothing is scaled
    projectToolbar = window->addToolBar(tr("Project Toolbar"));
    projectToolbar->setObjectName("ProjectToolbar");
    projectToolbar->addActions(pick({Undo, Redo}));
    createItemToolbar();
    window->addToolBarBreak();
    palette = new ToolsToolBar(window);
    palette->setFormActions({actions[ExportForm]});
    connect(palette, &ToolsToolBar::toolSelectionChanged, this, &ChartCommands::setTool);
    window->addToolBar(palette);
    toggleToolbarLock();
}

void ChartCommands::createItemToolbar()
{
    itemToolbar = window->addToolBar(tr("Item Toolbar"));
    itemToolbar->setObjectName("ItemToolbar");
    auto *label = new QLabel(tr("Role:  "));
    itemToolbar->addWidget(label);
    roleBox = new RoleBox;
    label->setBuddy(roleBox); // else it has no name but its value
    roleBox->setIconSize(QSize(22, 22));
    roleBox->setFocusPolicy(Qt::TabFocus); // after a choice the arrow keys are the chart's again
    for (auto role = Role::rolesList.cbegin(); role != Role::rolesList.cend(); ++role)
        roleBox->addItem(role->icon, role->displayName, role.key());
    connect(roleBox, QOverload<int>::of(&QComboBox::activated), this,
            &ChartCommands::setRoleFromBox);
    itemToolbar->addWidget(roleBox);
    itemToolbar->addActions(
        pick({ItemColor, TextColor, ChooseFont, AlignLeft, AlignCenter, Justify}));
    itemToolbar->setEnabled(false);
}

void ChartCommands::createMenus()
{
    QMenu *file = window->menuBar()->addMenu(tr("&File"));
    file->addActions(pick({NewProject, OpenProject, QuickStart}));
    file->addSeparator();
    file->addActions(pick({Save, SaveAs}));
    file->addSeparator();
    file->addActions(pick({PrintSetup, Print, Export}));
    file->addSeparator();
    file->addAction(actions[Exit]);

    QMenu *edit = window->menuBar()->addMenu(tr("&Edit"));
    edit->addActions(pick({Undo, Redo}));
    edit->addSeparator();
    edit->addActions(pick({Copy, Paste, Duplicate, SelectAll, Delete}));
    edit->addSeparator();
    edit->addActions(pick({Find, FindNext, FindPrevious}));
    edit->addSeparator();
    edit->addAction(actions[ItemProperties]);
    edit->addSeparator();
    edit->addActions(pick({ProjectOptions, ProgramOptions}));

    QMenu *view = window->menuBar()->addMenu(tr("&View"));
    view->addActions({zoom->getZoomInAction(), zoom->getZoomOutAction(),
                      zoom->getActualSizeAction(), actions[FitChart], actions[FitSelection],
                      actions[ShowGrid]});
    view->addMenu(tr("&Toolbars"))->addActions(getToolbarActions());

    window->menuBar()->addMenu(tr("&Help"))->addActions(pick({Registration, HelpContents, About}));
}

QList<QAction *> ChartCommands::getToolbarActions() const
{
    return {actions[LockToolbars], itemToolbar->toggleViewAction()};
}

QMenu *ChartCommands::createContextMenu()
{
    contextMenus.push_back(std::make_unique<QMenu>());
    return contextMenus.back().get();
}

QMenu *ChartCommands::getSceneContextMenu()
{
    QMenu *menu = createContextMenu();
    menu->addAction(actions[Paste]);
    menu->addSeparator();
    menu->addAction(actions[SavePagePNG]);
    return menu;
}

QMenu *ChartCommands::getLineContextMenu()
{
    QMenu *menu = createContextMenu();
    menu->addAction(actions[Copy]);
    menu->addSeparator();
    menu->addAction(actions[ItemColor]);
    menu->addMenu(tr("Arrow Style"))->addActions(pick({NoArrows, SingleArrow}));
    menu->addMenu(tr("Line Style"))->addActions(pick({SolidLine, DashedLine}));
    menu->addAction(actions[ItemProperties]);
    menu->addSeparator();
    menu->addAction(actions[Delete]);
    return menu;
}

QMenu *ChartCommands::getNoteContextMenu()
{
    if (!noteContextMenu)
        createNoteContextMenu();
    return noteContextMenu;
}

void ChartCommands::createNoteContextMenu()
{
    noteContextMenu = createContextMenu();
    noteContextMenu->addAction(actions[Copy]);
    noteContextMenu->addSeparator();
    noteContextMenu->addAction(actions[ChooseFont]);
    QMenu *alignment = noteContextMenu->addMenu(tr("Text Alignment"));
    alignment->addActions(pick({AlignLeft, AlignCenter, Justify}));
    alignment->addSeparator();
    alignment->addActions(pick({AlignTop, CenterVertically}));
    noteContextMenu->addMenu(tr("Change Colors"))->addActions(pick({TextColor, ItemColor}));
    createRoleMenu(noteContextMenu->addMenu(tr("Change Role")));
    noteContextMenu->addActions(pick({MarkNotRelevant, ItemProperties}));
    noteContextMenu->addSeparator();
    noteContextMenu->addAction(actions[Delete]);
}

void ChartCommands::createRoleMenu(QMenu *menu)
{
    auto *group = new QActionGroup(window);
    for (auto role = Role::rolesList.cbegin(); role != Role::rolesList.cend(); ++role) {
        auto *action = new QAction(role->icon, role->displayName, window);
        action->setData(role.key());
        group->addAction(action);
        menu->addAction(action);
    }
    connect(group, &QActionGroup::triggered, this, &ChartCommands::setRoleFromMenu);
}
