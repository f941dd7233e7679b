#include "support/helpbrowser.h"

#include "support/helpsearch.h"
#include "support/helptextbrowser.h"
#include "support/log.h"
#include "support/screenfit.h"

#include <QDockWidget>
#include <QHelpContentWidget>
#include <QHelpEngine>
#include <QHelpLink>
#include <QIcon>
#include <QMenu>
#include <QMenuBar>
#include <QStandardPaths>

namespace
{
constexpr int IndexWidth = 210; // pixels; leaves the pictures of the pages their whole width
} // namespace

HelpBrowser::HelpBrowser(QWidget *parent) : QMainWindow(parent)
{
    setWindowTitle(tr("Help"));
    resize(800, 600);
    fitToScreen(this);
    setWindowIcon(QIcon(":/images/16/help-contents.png"));
    setAttribute(Qt::WA_DeleteOnClose);
    openCollection();
    createIndexDock();
    createMenu();
    browser = new HelpTextBrowser(helpEngine, this);
    browser->setAccessibleName(windowTitle());
    setCentralWidget(browser);
    connectIndex();
    showIndexPage();
}

void HelpBrowser::openCollection()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    helpEngine = new QHelpEngine(folder + "/helpcollection2.qhc", this);
    helpEngine->setupData(); // the contents widget fills only after this
    qCDebug(supportLog) << "Help engine:" << helpEngine->error();
}

void HelpBrowser::createIndexDock()
{
    indexDock = new QDockWidget(tr("Index"), this);
    indexDock->setObjectName("indexDock");
    indexDock->setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    indexDock->setWidget(helpEngine->contentWidget());
    helpEngine->contentWidget()->setAccessibleName(indexDock->windowTitle());
    addDockWidget(Qt::LeftDockWidgetArea, indexDock);
    resizeDocks({indexDock}, {IndexWidth}, Qt::Horizontal);
}

void HelpBrowser::createMenu()
{
    QMenu *view = menuBar()->addMenu(tr("&View"));
    view->addAction(indexDock->toggleViewAction());
    view->addAction(tr("&Search..."), this, &HelpBrowser::openSearch, QKeySequence::Find);
}

void HelpBrowser::connectIndex()
{
    QHelpContentWidget *contents = helpEngine->contentWidget();
    connect(contents, &QHelpContentWidget::linkActivated, browser, &HelpTextBrowser::loadUrl);
    // Most desktops activate by a double click alone, and nobody tries that on a topic.
    connect(contents, &QTreeView::clicked, this, [this](const QModelIndex &index) {
        browser->loadUrl(helpEngine->contentModel()->contentItemAt(index)->url());
    });
    connect(browser, &HelpTextBrowser::pageShown, this, &HelpBrowser::showInIndex);
    connect(helpEngine->contentModel(), &QHelpContentModel::contentsCreated, contents,
            &QTreeView::expandAll);
}

void HelpBrowser::showInIndex(const QUrl &url)
{
    QHelpContentWidget *contents = helpEngine->contentWidget();
    const QModelIndex index = contents->indexOf(url);
    if (index.isValid())
        contents->setCurrentIndex(index);
}

void HelpBrowser::openSearch()
{
    if (!searchDock)
        createSearchDock();
    searchDock->show();
    search->takeFocus();
}

void HelpBrowser::createSearchDock()
{
    search = new HelpSearch(helpEngine, this);
    connect(search, &HelpSearch::pageChosen, browser, &HelpTextBrowser::showWords);
    searchDock = new QDockWidget(tr("Search"), this);
    searchDock->setObjectName("searchDock");
    searchDock->setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    searchDock->setWidget(search);
    addDockWidget(Qt::LeftDockWidgetArea, searchDock);
}

void HelpBrowser::showIndexPage()
{
    const QList<QHelpLink> links = helpEngine->documentsForIdentifier("index");
    if (!links.isEmpty())
        browser->loadUrl(links.first().url);
}
