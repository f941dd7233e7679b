#include "chart/sticky.h"
#include "sheet/clipboard.h"
#include "shell/mainwindow.h"
#include "shell/pmiconloader.h"

#include <QAction>
#include <QActionGroup>
#include <QSettings>
#include <QUndoGroup>

template<typename Slot>
QAction *MainWindow::createAction(const QString &text, const QString &iconName,
                                  const QKeySequence &shortcut, const QString &statusTip, Slot slot)
{
    QAction *action = createGroupAction(text, iconName, shortcut);
    if (!statusTip.isNull())
        action->setStatusTip(statusTip);
    connect(action, &QAction::triggered, this, slot);
    return action;
}

QAction *MainWindow::createGroupAction(const QString &text, const QString &iconName,
                                       const QKeySequence &shortcut)
{
    auto *action = new QAction(text, this);
    if (!iconName.isEmpty())
        action->setIcon(PMIconLoader::loadIcon(iconName));
    if (!shortcut.isEmpty())
        action->setShortcut(shortcut);
    return action;
}

QActionGroup *MainWindow::createGroup(const QList<QAction *> &actions, void (MainWindow::*slot)())
{
    auto *group = new QActionGroup(this);
    for (QAction *action : actions) {
        action->setCheckable(true);
        group->addAction(action);
    }
    connect(group, &QActionGroup::triggered, this, slot);
    return group;
}

void MainWindow::createAllActions()
{
    createFileActions();
    createEditActions();
    createSettingsActions();
    createNoteActions();
    createLineActions();
    createFormActions();
    createActionGroups();
}

void MainWindow::createFileActions()
{
    newProjectAction = createAction("&New Project", "document-new", QKeySequence::New,
                                    "Start a new project", &MainWindow::newProject);
    openProjectAction = createAction("&Open Project...", "document-open", QKeySequence::Open,
                                     "Open an existing project", [this] { openProject(); });
    quickStartAction = createAction("Quick Start &Template", "tools_wizard", QKeySequence(),
                                    "Open quick start template", &MainWindow::openQuickStart);
    saveAction = createAction("&Save", "document-save", QKeySequence::Save,
                              "Save the current project", [this] { saveProject(); });
    saveAsAction =
        createAction("Save &As...", "document-save-as", QKeySequence(),
                     "Save the project with a different file name.", &MainWindow::saveProjectAs);
    printSetupAction =
        createAction("Print Setup", QString(), QKeySequence(), "Choose which pages to print",
                     &MainWindow::showPageSetupDialog);
    printAction = createAction("&Print", "document-print", QKeySequence::Print, "Print the project",
                               &MainWindow::print);
    exportAction = createAction("Export...", "document-export", QKeySequence(),
                                "Export to other formats", [this] { onExportClicked(); });
    savePagePNGAction =
        createAction("Save page as PNG image...", "image-png", QKeySequence(),
                     "Export current page as PNG image", &MainWindow::saveCurrentPagePNG);
    exitAction = createAction("E&xit", "application-exit", QKeySequence("Ctrl+Q"),
                              "Quit the application", &MainWindow::close);
}

void MainWindow::createEditActions()
{
    undoAction = undoGroup->createUndoAction(this, "Undo");
    undoAction->setIcon(PMIconLoader::loadIcon("edit-undo"));
    undoAction->setShortcut(QKeySequence::Undo);
    undoAction->setStatusTip("Undo the last action");
    redoAction = undoGroup->createRedoAction(this, "Redo");
    redoAction->setIcon(PMIconLoader::loadIcon("edit-redo"));
    redoAction->setShortcut(QKeySequence::Redo);
    redoAction->setStatusTip("Redo the last undone action");
    copyAction = createAction("Copy", "edit-copy", QKeySequence::Copy,
                              "Copy the current note to the clipboard",
                              [this] { clipBoard->onCopyTriggered(); });
    pasteAction =
        createAction("Paste", "edit-paste", QKeySequence::Paste, "Paste the clipboard contents",
                     [this] { clipBoard->onPasteTriggered(); });
    selectAllAction =
        createAction("Select &All", QString(), QKeySequence::SelectAll,
                     "Select all items in the scene", &MainWindow::onSelectAllTriggered);
    deleteAction =
        createAction("Delete item(s)", "edit-delete", Qt::Key_Backspace,
                     "Delete the currently selected items", &MainWindow::onDeleteTriggered);
    deleteAction->setEnabled(false);
    itemPropertiesAction = createAction("Item Properties", QString(), QKeySequence(),
                                        "Edit the properties for the selected items",
                                        &MainWindow::showItemPropertiesDialog);
    itemPropertiesAction->setEnabled(false);
    markNotRelevantAction = createAction("Mark not relevant", QString(), QKeySequence(),
                                         "Mark this note not relevant to the investigation",
                                         &MainWindow::onMarkNotRelevantTriggered);
    markNotRelevantAction->setCheckable(true);
}

void MainWindow::createSettingsActions()
{
    projectSettingsAction = createAction("&Project Settings", "configure", QKeySequence(),
                                         "Set project options", &MainWindow::showSettings);
    projectSettingsAction->setMenuRole(QAction::PreferencesRole);
    programSettingsAction = createAction("Program Settings", QString(), QKeySequence(),
                                         "Edit program settings", &MainWindow::showProgramSettings);
    showGridAction =
        createAction("Display grid", QString(), QKeySequence(), "Show the grid that items snap to",
                     &MainWindow::onShowGridTriggered);
    showGridAction->setCheckable(true);
    showGridAction->setChecked(QSettings().value("showGrid", true).toBool());
    lockedIcon = PMIconLoader::loadIcon("decrypted");
    unlockedIcon = PMIconLoader::loadIcon("encrypted");
    lockToolbarsAction =
        createAction("Unlock toolbars", "decrypted", QKeySequence(),
                     "Unlock the toolbars to make them moveable", &MainWindow::toggleToolbarLock);
    registrationAction = createAction("&Registration", QString(), QKeySequence(),
                                      "Show whether this edition needs a registration",
                                      [this] { registrationCheck.showInformation(this); });
    helpContentsAction =
        createAction("Help Contents", "help-contents", QKeySequence::HelpContents,
                     "Get help on how to use this application", &MainWindow::showHelp);
    aboutAction =
        createAction("&About", QString(), QKeySequence(), "Show information about the application",
                     &MainWindow::showAboutDialog);
}

void MainWindow::createNoteActions()
{
    chooseFontAction = createAction("Choose Font", "choose-font", QKeySequence(), QString(),
                                    &MainWindow::onChooseFontTriggered);
    chooseFontAction->setData(QFont("Arial", 8, QFont::Normal, false));
    itemColorAction = createAction("Item Color", "choose-item-color", QKeySequence(), QString(),
                                   &MainWindow::onItemColorActionTriggered);
    textColorAction = createAction("Text Color", "choose-text-color", QKeySequence(), QString(),
                                   &MainWindow::onTextColorActionTriggered);
    alignLeftAction =
        createGroupAction("Align Left", "format-justify-left", QKeySequence("Ctrl+L"));
    alignCenterAction =
        createGroupAction("Align Center", "format-justify-center", QKeySequence("Ctrl+E"));
    justifyAction = createGroupAction("Justify", "format-justify-fill", QKeySequence("Ctrl+J"));
    centerVerticallyAction = createGroupAction("Center Vertically", "format-justify-vcenter");
    alignTopAction = createGroupAction("Align Top", "format-justify-top");
}

void MainWindow::createLineActions()
{
    noArrowsAction = createGroupAction("No Arrows", QString());
    singleArrowAction = createGroupAction("Single Arrow", QString());
    solidLineAction = createGroupAction("Solid Line", QString());
    dashedLineAction = createGroupAction("Dashed Line", QString());
}

void MainWindow::createFormActions()
{
    exportFormAction = createAction("Export Form", "word-icon", QKeySequence(),
                                    "Export form to a Microsoft Word document",
                                    &MainWindow::onExportFormTriggered);
    printFormAction = createAction("Print Form", QString(), QKeySequence(), QString(),
                                   &MainWindow::onPrintFormTriggered);
}

void MainWindow::createActionGroups()
{
    // An action belongs to one group at a time: the alignments leave this one again, so that
    // it enables the font and the text colour alone.
    noteFormatGroup = new QActionGroup(this);
    const QList<QAction *> format = {chooseFontAction, textColorAction, alignLeftAction,
                                     alignCenterAction, justifyAction};
    for (QAction *action : format)
        noteFormatGroup->addAction(action);
    horizontalAlignmentGroup = createGroup({alignLeftAction, alignCenterAction, justifyAction},
                                           &MainWindow::onAlignmentChanged);
    verticalAlignmentGroup =
        createGroup({alignTopAction, centerVerticallyAction}, &MainWindow::onAlignmentChanged);
    arrowStyleGroup =
        createGroup({noArrowsAction, singleArrowAction}, &MainWindow::onArrowStyleChanged);
    lineStyleGroup =
        createGroup({solidLineAction, dashedLineAction}, &MainWindow::onLineStyleChanged);
}
