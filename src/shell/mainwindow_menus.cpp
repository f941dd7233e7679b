#include "chart/role.h"
#include "shell/mainwindow.h"
#include "shell/toolstoolbar.h"
#include "shell/zoomwidget.h"

#include <QActionGroup>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

void MainWindow::createToolbars()
{
    setUnifiedTitleAndToolBarOnMac(false);
    setIconSize(QSize(22, 22)); // drawn for, so nothing is scaled
    projectToolbar = addToolBar("Project Toolbar");
    projectToolbar->setObjectName("ProjectToolbar");
    projectToolbar->addActions({undoAction, redoAction});
    createItemToolbar();
    addToolBarBreak();
    toolsToolbar = new ToolsToolBar(this);
    toolsToolbar->setFormActions({exportFormAction});
    connect(toolsToolbar, &ToolsToolBar::toolSelectionChanged, this,
            &MainWindow::onToolSelectionChanged);
    addToolBar(toolsToolbar);
    toggleToolbarLock();
}

void MainWindow::createItemToolbar()
{
    itemToolbar = addToolBar("Item Toolbar");
    itemToolbar->setObjectName("ItemToolbar");
    roleLabel = new QLabel("Role:  ");
    itemToolbar->addWidget(roleLabel);
    roleCombo = new QComboBox;
    roleCombo->setIconSize(QSize(22, 22));
    for (auto role = Role::rolesList.cbegin(); role != Role::rolesList.cend(); ++role)
        roleCombo->addItem(role->icon, role->displayName, role.key());
    connect(roleCombo, QOverload<int>::of(&QComboBox::activated), this,
            &MainWindow::onRoleComboChanged);
    itemToolbar->addWidget(roleCombo);
    itemToolbar->addActions({itemColorAction, textColorAction, chooseFontAction, alignLeftAction,
                             alignCenterAction, justifyAction});
    itemToolbar->setEnabled(false);
}

void MainWindow::createAllMenus()
{
    createFileMenu();
    createEditMenu();
    createViewMenu();
    createHelpMenu();
}

void MainWindow::createFileMenu()
{
    fileMenu = menuBar()->addMenu("&File");
    fileMenu->addActions({newProjectAction, openProjectAction, quickStartAction});
    fileMenu->addSeparator();
    fileMenu->addActions({saveAction, saveAsAction});
    fileMenu->addSeparator();
    fileMenu->addActions({printSetupAction, printAction, exportAction});
    fileMenu->addSeparator();
    fileMenu->addAction(exitAction);
}

void MainWindow::createEditMenu()
{
    editMenu = menuBar()->addMenu("&Edit");
    editMenu->addActions({undoAction, redoAction});
    editMenu->addSeparator();
    editMenu->addActions({copyAction, pasteAction, selectAllAction, deleteAction});
    editMenu->addSeparator();
    editMenu->addAction(itemPropertiesAction);
    editMenu->addSeparator();
    editMenu->addActions({projectSettingsAction, programSettingsAction});
}

void MainWindow::createViewMenu()
{
    viewMenu = menuBar()->addMenu("&View");
    viewMenu->addActions({zoomWidget->getZoomInAction(), zoomWidget->getZoomOutAction(),
                          zoomWidget->getActualSizeAction(), showGridAction});
    toolbarsMenu = viewMenu->addMenu("&Toolbars");
    toolbarsMenu->addActions({lockToolbarsAction, itemToolbar->toggleViewAction()});
}

void MainWindow::createHelpMenu()
{
    helpMenu = menuBar()->addMenu("&Help");
    helpMenu->addActions({registrationAction, helpContentsAction, aboutAction});
}

QMenu *MainWindow::createContextMenu()
{
    contextMenus.push_back(std::make_unique<QMenu>());
    return contextMenus.back().get();
}

QMenu *MainWindow::getSceneContextMenu()
{
    QMenu *menu = createContextMenu();
    menu->addAction(pasteAction);
    menu->addSeparator();
    menu->addAction(savePagePNGAction);
    return menu;
}

QMenu *MainWindow::getLineContextMenu()
{
    QMenu *menu = createContextMenu();
    menu->addAction(copyAction);
    menu->addSeparator();
    menu->addAction(itemColorAction);
    menu->addMenu("Arrow Style")->addActions({noArrowsAction, singleArrowAction});
    menu->addMenu("Line Style")->addActions({solidLineAction, dashedLineAction});
    menu->addAction(itemPropertiesAction);
    menu->addSeparator();
    menu->addAction(deleteAction);
    return menu;
}

QMenu *MainWindow::getNoteContextMenu()
{
    if (!noteContextMenu)
        createNoteContextMenu();
    return noteContextMenu;
}

void MainWindow::createNoteContextMenu()
{
    noteContextMenu = createContextMenu();
    noteContextMenu->addAction(copyAction);
    noteContextMenu->addSeparator();
    noteContextMenu->addAction(chooseFontAction);
    QMenu *alignment = noteContextMenu->addMenu("Text Alignment");
    alignment->addActions({alignLeftAction, alignCenterAction, justifyAction});
    alignment->addSeparator();
    alignment->addActions({alignTopAction, centerVerticallyAction});
    noteContextMenu->addMenu("Change Colors")->addActions({textColorAction, itemColorAction});
    createRoleMenu(noteContextMenu->addMenu("Change Role"));
    noteContextMenu->addActions({markNotRelevantAction, itemPropertiesAction});
    noteContextMenu->addSeparator();
    noteContextMenu->addAction(deleteAction);
}

void MainWindow::createRoleMenu(QMenu *menu)
{
    roleGroup = new QActionGroup(this);
    for (auto role = Role::rolesList.cbegin(); role != Role::rolesList.cend(); ++role) {
        auto *action = new QAction(role->icon, role->displayName, this);
        action->setData(role.key());
        roleGroup->addAction(action);
        menu->addAction(action);
    }
    connect(roleGroup, &QActionGroup::triggered, this, &MainWindow::onRoleItemTriggered);
}
