#include "shell/mainwindow.h"

#include "chart/sticky.h"
#include "form/formview.h"
#include "project/projectfile.h"
#include "shell/aboutdialog.h"
#include "shell/chartcheck.h"
#include "shell/findbar.h"
#include "shell/graphwidget.h"
#include "shell/introscreen.h"
#include "shell/projectdrop.h"
#include "shell/projecttabwidget.h"
#include "shell/statusline.h"
#include "shell/toolstoolbar.h"
#include "shell/windowmemory.h"
#include "shell/zoomwidget.h"
#include "support/helpbrowser.h"
#include "support/log.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QFileOpenEvent>
#include <QMenu>
#include <QShortcut>
#include <QStatusBar>
#include <QTabBar>
#include <QTimer>
#include <QUndoGroup>
#include <QWindow>

namespace
{

constexpr int LongestTip = 500;  // characters
constexpr int LongestWait = 500; // milliseconds, for a desktop without a window manager
constexpr int PlaceMargin = 80;  // pixels between a place that is shown and the view's edge, if
                                 // there is room
// What the settings call them; a factor's tab goes by the factor's GUID.
constexpr char FormTab[] = "form";
constexpr char ChartTab[] = "chart";

GraphWidget *getView(const ProjectScene *sheet)
{
    return sheet ? qobject_cast<GraphWidget *>(sheet->views().value(0)) : nullptr;
}

void bringIntoView(GraphWidget *view, const QRectF &place)
{
    const QSize room = view->viewport()->size() - view->mapFromScene(place).boundingRect().size();
    view->ensureVisible(place, qBound(0, room.width() / 2, PlaceMargin),
                        qBound(0, room.height() / 2, PlaceMargin));
}

} // namespace

MainWindow::MainWindow(IntroScreen *introScreen)
    : introScreen(introScreen), desk(new ProjectDesk(this))
{
    setWindowTitle("TRAC/Ex Examiner");
    QIcon icon(":/images/16/icon_16.png");
    icon.addFile(":/images/icon_48.png", QSize(48, 48));
    setWindowIcon(icon);
    resize(800, 600);
    connect(desk, &ProjectDesk::interfaceNeeded, this, &MainWindow::loadFullInterface);
    connect(desk, &ProjectDesk::clearing, this, &MainWindow::rememberTabs);
    connect(desk, &ProjectDesk::clearing, this, &MainWindow::clearInterface);
    connect(desk, &ProjectDesk::opened, this, &MainWindow::arrangeTabs);
    connect(new ProjectDrop(this), &ProjectDrop::dropped, this,
            [this](const QString &path) { openProject(path); });
    if (introScreen)
        connect(desk, &ProjectDesk::recentFilesChanged, introScreen, &IntroScreen::listRecentFiles);
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
    desk->showUntitled();
    Role::loadAllRoles();
    createProjectObjects();
    createMainSheet();
    desk->setProject(projectFile, book, formView, undoGroup);
    tabWidget->addTab(formView, tr("Investigation Form"));
    formView->setAccessibleName(tabWidget->tabText(0));
    tabWidget->addTab(mainView, tr("ECS Chart"));
    createStatusBar();
    commands = new ChartCommands(this, book, &currentScene, undoGroup, zoomWidget);
    connectCommands();
    createFindBar();
    WindowMemory::show(*this);
    zoomWidget->setZoom(WindowMemory::getZoom());
    mainView->setZoomScale(zoomWidget->getZoom());
    interfaceLoaded = true;
    awaitFocus();
}

/// A box that comes before the desktop gives the window the keys takes the news from it: when the
/// box has gone, no shortcut works.
void MainWindow::awaitFocus()
{
    QEventLoop waiting;
    const auto look = [&] {
        if (isActiveWindow())
            waiting.quit();
    };
    connect(qApp, &QGuiApplication::focusWindowChanged, &waiting, look, Qt::QueuedConnection);
    QTimer::singleShot(LongestWait, &waiting, &QEventLoop::quit);
    if (!isActiveWindow())
        waiting.exec(QEventLoop::ExcludeUserInputEvents);
}

void MainWindow::createProjectObjects()
{
    zoomWidget = new ZoomWidget(this);
    tabWidget = new ProjectTabWidget(this);
    setCentralWidget(tabWidget);
    // Queued: the first tabs come before the palette that a tab change speaks to.
    connect(tabWidget, &QTabWidget::currentChanged, this, &MainWindow::onCurrentTabChanged,
            Qt::QueuedConnection);
    connect(tabWidget, &ProjectTabWidget::toolTipNeeded, this, &MainWindow::describeTab);
    projectFile = new ProjectFile(this);
    projectFile->setParent(this);
    undoGroup = new QUndoGroup(this);
    formView = new FormView(undoGroup);
    connect(formView, &FormView::exportFormRequested, this, &MainWindow::onExportFormTriggered);
    connect(formView, &FormView::printed, this, &MainWindow::say);
    formView->setFileProposal(
        [this] { return proposeExport(" - " + tr("Investigation Form") + ".pdf"); });
    connect(projectFile, &ProjectFile::loadedFormData, formView, &FormView::onFormDataLoaded);
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
    connect(new QShortcut(QKeySequence("Ctrl+PgUp"), this), &QShortcut::activated, tabWidget,
            &ProjectTabWidget::showPrevious);
    connect(new QShortcut(QKeySequence("Ctrl+PgDown"), this), &QShortcut::activated, tabWidget,
            &ProjectTabWidget::showNext);
    mainView = new GraphWidget(currentScene, nullptr);
    connectSheet(currentScene, mainView);
    connect(currentScene, &ProjectScene::headerEditRequested, this, &MainWindow::focusFormTab);
}

void MainWindow::createStatusBar()
{
    statusLine = new StatusLine(this);
    chartCheck = new ChartCheck(book);
    statusBar()->addPermanentWidget(chartCheck);
    statusBar()->addPermanentWidget(zoomWidget);
    connect(chartCheck, &ChartCheck::placeWanted, this, &MainWindow::showPlace);
    connect(undoGroup, &QUndoGroup::indexChanged, chartCheck, &ChartCheck::lookSoon);
    connect(projectFile, &ProjectFile::loadedFormData, chartCheck, &ChartCheck::lookSoon);
    connect(desk, &ProjectDesk::clearing, chartCheck, &ChartCheck::lookSoon);
    connect(formView, &FormView::formChanged, chartCheck, &ChartCheck::lookSoon);
    connect(zoomWidget, &ZoomWidget::zoomChanged, this, &MainWindow::onZoomChanged);
}

void MainWindow::createFindBar()
{
    findBar = new FindBar(tabWidget, formView);
    tabWidget->setBar(findBar);
    connect(findBar, &FindBar::noteWanted, this, &MainWindow::showPlace);
    connect(undoGroup, &QUndoGroup::indexChanged, findBar, &FindBar::lookAgainSoon);
    connect(formView, &FormView::formChanged, findBar, &FindBar::lookAgainSoon);
    connect(desk, &ProjectDesk::clearing, findBar, &FindBar::dismiss);
    commands->onTriggered(ChartCommands::Find, this, [this] {
        book->finishEditing(); // also what is being typed is found
        findBar->open();
    });
    commands->onTriggered(ChartCommands::FindNext, findBar, &FindBar::goToNext);
    commands->onTriggered(ChartCommands::FindPrevious, findBar, &FindBar::goToPrevious);
}

void MainWindow::showPlace(ProjectScene *sheet, ProjectItem *item)
{
    GraphWidget *view = getView(sheet);
    if (!view)
        return;
    currentScene->finishEditing();
    tabWidget->setCurrentWidget(view);
    // Queued like the change of the tab, which takes a selection away and has yet to give the view
    // its size.
    const QPointer<ProjectItem> place = item;
    QMetaObject::invokeMethod(
        view,
        [place, view] {
            if (!place || place->scene() != view->scene())
                return;
            bringIntoView(view, place->sceneBoundingRect());
            view->scene()->clearSelection();
            place->setSelected(true);
        },
        Qt::QueuedConnection);
}

void MainWindow::connectCommands()
{
    using C = ChartCommands;
    commands->onTriggered(C::NewProject, this, &MainWindow::newProject);
    commands->onTriggered(C::OpenProject, this, [this] { openProject(); });
    commands->onTriggered(C::QuickStart, this, &MainWindow::openQuickStart);
    commands->onTriggered(C::Save, this, [this] { saveProject(); });
    commands->onTriggered(C::SaveAs, this, &MainWindow::saveProjectAs);
    commands->onTriggered(C::PrintSetup, this, &MainWindow::showPageSetupDialog);
    commands->onTriggered(C::Print, this, &MainWindow::print);
    commands->onTriggered(C::Export, this, [this] { onExportClicked(); });
    commands->onTriggered(C::SavePagePNG, this, &MainWindow::saveCurrentPagePNG);
    commands->onTriggered(C::Exit, this, &MainWindow::close);
    commands->onTriggered(C::ProjectOptions, this, &MainWindow::showSettings);
    commands->onTriggered(C::ProgramOptions, this, &MainWindow::showProgramSettings);
    commands->onTriggered(C::Registration, this,
                          [this] { desk->getRegistrationCheck().showInformation(this); });
    commands->onTriggered(C::HelpContents, this, &MainWindow::showHelp);
    commands->onTriggered(C::About, this, &MainWindow::showAboutDialog);
    commands->onTriggered(C::ExportForm, this, &MainWindow::onExportFormTriggered);
    commands->onTriggered(C::PrintForm, this, &MainWindow::onPrintFormTriggered);
    connect(commands->getPalette(), &ToolsToolBar::toolSelectionChanged, statusLine,
            &StatusLine::showHint);
    mainView->addAction(commands->getAction(C::FitSelection));
    connect(desk, &ProjectDesk::savingAllowed, commands->getAction(C::Save), &QAction::setEnabled);
}

void MainWindow::connectSheet(ProjectScene *sheet, GraphWidget *view)
{
    connect(view, &GraphWidget::doZoom, zoomWidget, &ZoomWidget::stepZoom);
    connect(sheet, &ProjectScene::selectionChanged, this, &MainWindow::onSelectionChanged,
            Qt::UniqueConnection);
    connect(sheet, &ProjectScene::textEditingChanged, this, &MainWindow::onTextEditingChanged,
            Qt::UniqueConnection);
    connect(sheet, &ProjectScene::factorFollowed, this, &MainWindow::onFactorFollowed,
            Qt::UniqueConnection);
}

void MainWindow::clearInterface()
{
    book->clear();
    mainView->centerOn(0, 0); // where the next chart begins
    formView->clearForm();
    desk->forgetChanges();
}

void MainWindow::onSheetCame(ProjectScene *sheet)
{
    auto *view = new GraphWidget(sheet, this);
    connectSheet(sheet, view);
    view->addAction(commands->getAction(ChartCommands::FitSelection));
    tabWidget->addFactor(view, sheet->getParentNote()->getCausalFactorNumber());
}

void MainWindow::onSheetGoes(ProjectScene *sheet)
{
    tabWidget->removeTab(tabWidget->indexOf(getView(sheet)));
    if (currentScene != sheet)
        return;
    // With the form in front no tab change follows that would bring it back.
    currentScene = getMainScene();
    undoGroup->setActiveStack(currentScene->getUndoStack());
}

void MainWindow::onCausalFactorChanged(Sticky *note)
{
    desk->noteUnaskedChange(); // a new number is no undo step, so nobody would ask about it
    if (GraphWidget *view = getView(book->getSheetOf(note)))
        tabWidget->setFactorNumber(view, note->getCausalFactorNumber());
}

void MainWindow::onEscapePressed()
{
    commands->leaveEverything();
    if (GraphWidget *view = getView(currentScene))
        view->giveUpDrag();
}

void MainWindow::onFactorFollowed(Sticky *note)
{
    if (ProjectScene *sheet = book->getSheetOf(note))
        showPlace(sheet, nullptr);
    else
        showPlace(getMainScene(),
                  getMainScene()->getItemWithGUID(note->getSheet()->getOwnerGUID()));
}

bool MainWindow::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() != QEvent::FileOpen)
        return QMainWindow::eventFilter(object, event);
    openProject(static_cast<QFileOpenEvent *>(event)->file(), true);
    return true;
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    event->ignore(); // also when a save fails with an exception
    event->setAccepted(desk->leaveProject());
    if (event->isAccepted())
        remember();
}

void MainWindow::endFromOutside()
{
    remember();
    desk->endFromOutside();
}

QMenu *MainWindow::createPopupMenu()
{
    auto *menu = new QMenu(this);
    menu->addActions(commands->getToolbarActions());
    return menu;
}

void MainWindow::remember()
{
    if (!interfaceLoaded)
        return;
    WindowMemory::store(*this);
    WindowMemory::storeZoom(mainView->getZoom());
    rememberTabs();
}

void MainWindow::rememberTabs()
{
    if (projectFile->requiresFilenamePrompt())
        return;
    const bool usual = tabWidget->indexOf(formView) == 0 && tabWidget->indexOf(mainView) == 1 &&
                       tabWidget->hasFactorsInOrder();
    QStringList names;
    for (int i = 0; i < tabWidget->count() && !usual; ++i)
        names += getTabName(i);
    WindowMemory::storeTabs(projectFile->getOpenFilename(), names);
}

void MainWindow::arrangeTabs()
{
    QList<QWidget *> tabs = {formView, mainView};
    const QStringList names = WindowMemory::getTabs(projectFile->getOpenFilename());
    if (!names.isEmpty())
        tabs.clear();
    for (const QString &name : names)
        tabs += getTab(name);
    tabWidget->arrange(tabs);
}

QString MainWindow::getTabName(int index) const
{
    auto *view = qobject_cast<GraphWidget *>(tabWidget->widget(index));
    return !view ? FormTab : view == mainView ? ChartTab : view->getProjectScene()->getOwnerGUID();
}

/// Null for a name that no tab has.
QWidget *MainWindow::getTab(const QString &name) const
{
    for (int i = 0; i < tabWidget->count(); ++i) {
        if (getTabName(i) == name)
            return tabWidget->widget(i);
    }
    return nullptr;
}

void MainWindow::openProject(QString openName, bool addToRecentFiles)
{
    desk->openProject(openName, addToRecentFiles);
}

void MainWindow::saveProject(bool chooseNewName, bool autoSave)
{
    desk->saveProject(chooseNewName, autoSave);
}

void MainWindow::onCurrentTabChanged(int)
{
    qCDebug(shellLog) << "current tab changed";
    formView->settle();
    currentScene->finishEditing();
    currentScene->giveUpLine();
    if (GraphWidget *view = getView(currentScene))
        view->giveUpDrag(); // it would go on unseen
    currentScene->clearSelection();
    // To settle turns the event loop: a later change of the tab may be done by now.
    QWidget *tab = tabWidget->currentWidget();
    commands->setSheetShown(tab != formView);
    if (auto *view = qobject_cast<GraphWidget *>(tab)) {
        currentScene = view->getProjectScene();
        undoGroup->setActiveStack(currentScene->getUndoStack());
        zoomWidget->setZoom(view->getZoom());
        commands->getPalette()->setActiveButtons(ToolsToolBar::ToolButtons);
    } else if (tab == formView) {
        undoGroup->setActiveStack(formView->getUndoStack());
        commands->getPalette()->setActiveButtons(ToolsToolBar::FormButtons);
    }
    statusLine->showHint(tab == formView ? int(SelectTool) : selectedTool());
    giveKeysTo(tab);
}

/// A walk along the tabs, or through what was found, keeps the keys.
void MainWindow::giveKeysTo(QWidget *tab)
{
    const QWidget *focus = focusWidget();
    if (tab && focus != tabWidget->tabBar() && !findBar->isAncestorOf(focus))
        tab->setFocus(Qt::OtherFocusReason);
}

void MainWindow::describeTab(int index)
{
    auto *view = qobject_cast<GraphWidget *>(tabWidget->widget(index));
    const Sticky *factor = view ? view->getProjectScene()->getParentNote() : nullptr;
    if (!factor)
        return;
    const QString text = factor->getText().left(LongestTip).toHtmlEscaped();
    tabWidget->setTabToolTip(index, text.isEmpty() ? text : "<qt>" + text + "</qt>");
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
