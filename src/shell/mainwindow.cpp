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

#include <algorithm>

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
    connectMainScene();
    connectProjectFile();
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
    const QRect printable = PageInfo().getPrintableArea();
    mainScene = new ProjectScene(this, undoGroup, projectFile, formView, printable.size());
    qDebug() << "Printable area" << printable;
    undoGroup->setActiveStack(mainScene->getUndoStack());
    currentScene = mainScene;
    escapeShortcut = new QShortcut(Qt::Key_Escape, this);
    connect(escapeShortcut, &QShortcut::activated, this, &MainWindow::onEscapePressed);
    clipBoard = new ClipBoard(&currentScene, this);
    connect(formView, &FormView::formChanged, this, &MainWindow::onFormChanged);
    mainView = new GraphWidget(mainScene, nullptr);
    mainScene->setParent(mainView);
    connect(mainView, &GraphWidget::doZoom, zoomWidget, &ZoomWidget::stepZoom);
}

void MainWindow::connectMainScene()
{
    connect(mainScene, &ProjectScene::headerEditRequested, this, &MainWindow::focusFormTab);
    connect(mainScene, &ProjectScene::causalFactorAdded, this, &MainWindow::onCausalFactorAdded);
    connect(mainScene, &ProjectScene::causalFactorRemoved, this,
            &MainWindow::onCausalFactorRemoved);
    connect(mainScene, &ProjectScene::textEditingChanged, this, &MainWindow::onTextEditingChanged);
    connect(mainScene, &ProjectScene::selectionChanged, this, &MainWindow::onSelectionChanged);
}

void MainWindow::connectProjectFile()
{
    connect(projectFile, &ProjectFile::loadedItem, this, &MainWindow::onCanvasItemLoaded);
    connect(projectFile, &ProjectFile::loadedFormData, formView, &FormView::onFormDataLoaded);
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
    const QList<Sheet> formerSheets = sheets.values();
    for (const Sheet &sheet : formerSheets) {
        sheet.second->clear();
        tabWidget->removeTab(tabWidget->indexOf(sheet.first));
        // The sheet lives on unseen: what comes must not cost it any work.
        disconnect(projectFile, nullptr, sheet.second, nullptr);
        disconnect(formView, nullptr, sheet.second, nullptr);
    }
    sheets.clear();
    // With the form in front no tab change follows that would bring it back.
    currentScene = mainScene;
    mainScene->clear();
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

QList<ProjectScene *> MainWindow::getFactorScenes() const
{
    QList<ProjectScene *> scenes;
    for (const Sheet &sheet : sheets)
        scenes.append(sheet.second);
    std::sort(scenes.begin(), scenes.end(), [](ProjectScene *a, ProjectScene *b) {
        return a->getParentNote()->getCausalFactorNumber() <
               b->getParentNote()->getCausalFactorNumber();
    });
    return scenes;
}

QList<GraphWidget *> MainWindow::getAllViews() const
{
    QList<GraphWidget *> views = {mainView};
    for (const Sheet &sheet : sheets)
        views.append(sheet.first);
    return views;
}

ProjectScene *MainWindow::getSceneForParent(const QString &guid) const
{
    if (guid.isEmpty())
        return mainScene;
    for (const Sheet &sheet : sheets)
        if (sheet.second->getParentNote()->getGUID() == guid)
            return sheet.second;
    return mainScene;
}

Sticky *MainWindow::getNoteWithGUID(const QString &guid) const
{
    if (auto *note = qobject_cast<Sticky *>(mainScene->getItemWithGUID(guid)))
        return note;
    for (const Sheet &sheet : sheets)
        if (auto *note = qobject_cast<Sticky *>(sheet.second->getItemWithGUID(guid)))
            return note;
    return nullptr;
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
