#include "shell/mainwindow.h"

#include "form/formview.h"
#include "project/projectfile.h"
#include "sheet/clipboard.h"
#include "shell/aboutdialog.h"
#include "shell/graphwidget.h"
#include "shell/introscreen.h"
#include "shell/projecttabwidget.h"
#include "shell/toolstoolbar.h"
#include "shell/zoomwidget.h"
#include "support/helpbrowser.h"
#include "support/pageinfo.h"

#include <QDebug>
#include <QEvent>
#include <QFileOpenEvent>
#include <QLabel>
#include <QMenu>
#include <QShortcut>
#include <QStatusBar>
#include <QUndoGroup>
#include <QUndoStack>

MainWindow::MainWindow(IntroScreen *introScreen) : introScreen(introScreen)
{
    setWindowTitle("TRAC/Ex Examiner");
    QIcon icon(":/images/16/icon_16.png");
    icon.addFile(":/images/icon_48.png", QSize(48, 48));
    setWindowIcon(icon);
    resize(800, 600);
}

MainWindow::~MainWindow()
{
    // Sheets reach for the form, the file and this window until their last item is gone.
    qDeleteAll(findChildren<GraphWidget *>());
    delete book;
}

void MainWindow::loadFullInterface()
{
    if (interfaceLoaded)
        return;
    if (introScreen)
        introScreen->deleteLater();
    setUntitledTitle();
    Role::loadAllRoles();
    createProjectObjects();
    createMainSheet();
    tabWidget->addTab(formView, "Investigation Form");
    tabWidget->addTab(mainView, "ECS Chart");
    createStatusBar();
    createAllActions();
    createToolbars();
    createAllMenus();
    showMaximized();
    interfaceLoaded = true;
}

void MainWindow::createProjectObjects()
{
    zoomWidget = new ZoomWidget(this);
    tabWidget = new ProjectTabWidget(this);
    setCentralWidget(tabWidget);
    // Queued: the first tabs come before the palette that a tab change speaks to.
    connect(tabWidget, &QTabWidget::currentChanged, this, &MainWindow::onCurrentTabChanged,
            Qt::QueuedConnection);
    projectFile = new ProjectFile(this);
    projectFile->setParent(this);
    connect(projectFile, &ProjectFile::requestAutoSave, this, &MainWindow::onAutoSaveRequested);
    connect(projectFile, &ProjectFile::requestSnapshot, this, &MainWindow::onSnapshotRequested);
    connect(projectFile, &ProjectFile::dirtyChanged, this, &MainWindow::onDirtyChanged);
    undoGroup = new QUndoGroup(this);
    formView = new FormView(undoGroup);
    connect(formView, &FormView::exportFormRequested, this, &MainWindow::onExportFormTriggered);
}

void MainWindow::createMainSheet()
{
    book = new SheetBook(this, undoGroup, projectFile, formView);
    connect(book, &SheetBook::sheetCame, this, &MainWindow::onSheetCame);
    connect(book, &SheetBook::sheetGoes, this, &MainWindow::onSheetGoes);
    currentScene = getMainScene();
    undoGroup->setActiveStack(currentScene->getUndoStack());
    escapeShortcut = new QShortcut(Qt::Key_Escape, this);
    connect(escapeShortcut, &QShortcut::activated, this, &MainWindow::onEscapePressed);
    clipBoard = new ClipBoard(&currentScene, this);
    connect(formView, &FormView::formChanged, this, &MainWindow::onFormChanged);
    connect(projectFile, &ProjectFile::loadedFormData, formView, &FormView::onFormDataLoaded);
    mainView = new GraphWidget(currentScene, nullptr);
    connectSheet(currentScene, mainView);
    connect(currentScene, &ProjectScene::headerEditRequested, this, &MainWindow::focusFormTab);
}

void MainWindow::connectSheet(ProjectScene *sheet, GraphWidget *view)
{
    connect(view, &GraphWidget::doZoom, zoomWidget, &ZoomWidget::stepZoom);
    connect(sheet, &ProjectScene::selectionChanged, this, &MainWindow::onSelectionChanged);
    connect(sheet, &ProjectScene::textEditingChanged, this, &MainWindow::onTextEditingChanged);
}

void MainWindow::createStatusBar()
{
    registrationLabel = new QLabel(registrationCheck.getStatusText());
    statusBar()->addPermanentWidget(registrationLabel);
    statusBar()->addPermanentWidget(zoomWidget);
    connect(zoomWidget, &ZoomWidget::zoomChanged, this, &MainWindow::onZoomChanged);
}

void MainWindow::clearInterface()
{
    // With the form in front no tab change follows that would bring it back.
    currentScene = getMainScene();
    book->clear();
    formView->clearForm();
    formTouched = false;
    unaskedChanges = false;
}

void MainWindow::setUntitledTitle()
{
    setWindowTitle("untitled[*] - TRAC/Ex Examiner");
}

void MainWindow::setTitleFor(const QString &path)
{
    setWindowTitle(path + "[*] - TRAC/Ex Examiner");
}

void MainWindow::onCurrentTabChanged(int tabIndex)
{
    qDebug() << "current tab changed";
    currentScene->clearSelection();
    QWidget *tab = tabWidget->widget(tabIndex);
    if (auto *view = qobject_cast<GraphWidget *>(tab)) {
        currentScene = view->getProjectScene();
        undoGroup->setActiveStack(currentScene->getUndoStack());
        zoomWidget->setZoom(view->getZoom());
        toolsToolbar->setActiveButtons(ToolsToolBar::ToolButtons);
    } else if (tab == formView) {
        undoGroup->setActiveStack(formView->getUndoStack());
        toolsToolbar->setActiveButtons(ToolsToolBar::FormButtons);
    }
}

void MainWindow::focusFormTab()
{
    tabWidget->setCurrentWidget(formView);
}

void MainWindow::onZoomChanged(int zoom)
{
    if (auto *view = qobject_cast<GraphWidget *>(tabWidget->currentWidget()))
        view->setZoomScale(zoom);
}

void MainWindow::showHelp()
{
    auto *help = new HelpBrowser(this); // deletes itself
    help->show();
}

void MainWindow::showAboutDialog()
{
    AboutDialog dialog(this);
    dialog.exec();
}
