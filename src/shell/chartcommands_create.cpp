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

namespace
{

struct ActionRow {
    ChartCommands::Command command;
    const char *text;
    const char *icon; // empty for none
    QKeySequence shortcut;
    const char *statusTip; // null for none
};

} // namespace

void ChartCommands::createActions(QUndoGroup *undoGroup)
{
    const QKeySequence none;
    const ActionRow rows[] = {
        {NewProject, "&New Project", "document-new", QKeySequence::New, "Start a new project"},
        {OpenProject, "&Open Project...", "document-open", QKeySequence::Open,
         "Open an existing project"},
        {QuickStart, "Quick Start &Template", "tools_wizard", none, "Open quick start template"},
        {Save, "&Save", "document-save", QKeySequence::Save, "Save the current project"},
        {SaveAs, "Save &As...", "document-save-as", none,
         "Save the project with a different file name."},
        {PrintSetup, "Print Setup", "", none, "Choose which pages to print"},
        {Print, "&Print", "document-print", QKeySequence::Print, "Print the project"},
        {Export, "Export...", "document-export", none, "Export to other formats"},
        {SavePagePNG, "Save page as PNG image...", "image-png", none,
         "Export current page as PNG image"},
        {Exit, "E&xit", "application-exit", QKeySequence("Ctrl+Q"), "Quit the application"},
        {Undo, "Undo", "edit-undo", QKeySequence::Undo, "Undo the last action"},
        {Redo, "Redo", "edit-redo", QKeySequence::Redo, "Redo the last undone action"},
        {Copy, "Copy", "edit-copy", QKeySequence::Copy, "Copy the current note to the clipboard"},
        {Paste, "Paste", "edit-paste", QKeySequence::Paste, "Paste the clipboard contents"},
        {SelectAll, "Select &All", "", QKeySequence::SelectAll, "Select all items in the scene"},
        {Delete, "Delete item(s)", "edit-delete", Qt::Key_Backspace,
         "Delete the currently selected items"},
        {Find, "&Find...", "", QKeySequence::Find, "Search the notes and the form"},
        {FindNext, "Find Next", "", Qt::Key_F3, "Go to the next place that was found"},
        {FindPrevious, "Find Previous", "", QKeySequence("Shift+F3"),
         "Go to the previous place that was found"},
        {ItemProperties, "Item Properties", "", none, "Edit the properties for the selected items"},
        {MarkNotRelevant, "Mark not relevant", "", none,
         "Mark this note not relevant to the investigation"},
        {ProjectOptions, "&Project Settings", "configure", none, "Set project options"},
        {ProgramOptions, "Program Settings", "", none, "Edit program settings"},
        {ShowGrid, "Display grid", "", none, "Show the grid that items snap to"},
        {LockToolbars, "Unlock toolbars", "decrypted", none,
         "Unlock the toolbars to make them moveable"},
        {Registration, "&Registration", "", none, "Show whether this edition needs a registration"},
        {HelpContents, "Help Contents", "help-contents", QKeySequence::HelpContents,
         "Get help on how to use this application"},
        {About, "&About", "", none, "Show information about the application"},
        {ChooseFont, "Choose Font", "choose-font", none, nullptr},
        {ItemColor, "Item Color", "choose-item-color", none, nullptr},
        {TextColor, "Text Color", "choose-text-color", none, nullptr},
        {AlignLeft, "Align Left", "format-justify-left", QKeySequence("Ctrl+L"), nullptr},
        {AlignCenter, "Align Center", "format-justify-center", QKeySequence("Ctrl+E"), nullptr},
        {Justify, "Justify", "format-justify-fill", QKeySequence("Ctrl+J"), nullptr},
        {CenterVertically, "Center Vertically", "format-justify-vcenter", none, nullptr},
        {AlignTop, "Align Top", "format-justify-top", none, nullptr},
        {NoArrows, "No Arrows", "", none, nullptr},
        {SingleArrow, "Single Arrow", "", none, nullptr},
        {SolidLine, "Solid Line", "", none, nullptr},
        {DashedLine, "Dashed Line", "", none, nullptr},
        {ExportForm, "Export Form", "word-icon", none, "Export form to a Microsoft Word document"},
        {PrintForm, "Print Form", "", none, nullptr},
    };
    for (const ActionRow &row : rows) {
        QAction *action = row.command == Undo   ? undoGroup->createUndoAction(window, row.text)
                          : row.command == Redo ? undoGroup->createRedoAction(window, row.text)
                                                : new QAction(row.text, window);
        if (*row.icon)
            action->setIcon(PMIconLoader::loadIcon(row.icon));
        if (!row.shortcut.isEmpty())
            action->setShortcut(row.shortcut);
        if (row.statusTip)
            action->setStatusTip(row.statusTip);
        nameShortcutInTip(action);
        actions[row.command] = action;
    }
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
    lockedIcon = PMIconLoader::loadIcon("decrypted");
    unlockedIcon = PMIconLoader::loadIcon("encrypted");
}

void ChartCommands::connectActions()
{
    onTriggered(Copy, clipBoard, &ClipBoard::onCopyTriggered);
    onTriggered(Paste, clipBoard, &ClipBoard::onPasteTriggered);
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
    projectToolbar = window->addToolBar("Project Toolbar");
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
    itemToolbar = window->addToolBar("Item Toolbar");
    itemToolbar->setObjectName("ItemToolbar");
    itemToolbar->addWidget(new QLabel("Role:  "));
    roleBox = new QComboBox;
    roleBox->setIconSize(QSize(22, 22));
    for (auto role = Role::rolesList.cbegin(); role != Role::rolesList.cend(); ++role)
        roleBox->addItem(role->icon, role->displayName, role.key());
    connect(roleBox, QOverload<int>::of(&QComboBox::activated), this,
            &ChartCommands::setRoleFromBox);
    itemToolbar->addWidget(roleBox);
    itemToolbar->addActions(
        pick({ItemColor, TextColor, ChooseFont, AlignLeft, AlignCenter, Justify}));
    itemToolbar->setEnabled(false);
}

void ChartCommands::createMenus(ZoomWidget *zoom)
{
    QMenu *file = window->menuBar()->addMenu("&File");
    file->addActions(pick({NewProject, OpenProject, QuickStart}));
    file->addSeparator();
    file->addActions(pick({Save, SaveAs}));
    file->addSeparator();
    file->addActions(pick({PrintSetup, Print, Export}));
    file->addSeparator();
    file->addAction(actions[Exit]);

    QMenu *edit = window->menuBar()->addMenu("&Edit");
    edit->addActions(pick({Undo, Redo}));
    edit->addSeparator();
    edit->addActions(pick({Copy, Paste, SelectAll, Delete}));
    edit->addSeparator();
    edit->addActions(pick({Find, FindNext, FindPrevious}));
    edit->addSeparator();
    edit->addAction(actions[ItemProperties]);
    edit->addSeparator();
    edit->addActions(pick({ProjectOptions, ProgramOptions}));

    QMenu *view = window->menuBar()->addMenu("&View");
    view->addActions({zoom->getZoomInAction(), zoom->getZoomOutAction(),
                      zoom->getActualSizeAction(), actions[ShowGrid]});
    view->addMenu("&Toolbars")
        ->addActions({actions[LockToolbars], itemToolbar->toggleViewAction()});

    window->menuBar()->addMenu("&Help")->addActions(pick({Registration, HelpContents, About}));
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
    menu->addMenu("Arrow Style")->addActions(pick({NoArrows, SingleArrow}));
    menu->addMenu("Line Style")->addActions(pick({SolidLine, DashedLine}));
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
    QMenu *alignment = noteContextMenu->addMenu("Text Alignment");
    alignment->addActions(pick({AlignLeft, AlignCenter, Justify}));
    alignment->addSeparator();
    alignment->addActions(pick({AlignTop, CenterVertically}));
    noteContextMenu->addMenu("Change Colors")->addActions(pick({TextColor, ItemColor}));
    createRoleMenu(noteContextMenu->addMenu("Change Role"));
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
