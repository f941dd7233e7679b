#include "support/helpbrowser.h"

#include "support/helptextbrowser.h"
#include "support/log.h"

#include <QDockWidget>
#include <QHelpContentWidget>
#include <QHelpEngine>
#include <QHelpLink>
#include <QIcon>
#include <QStandardPaths>

HelpBrowser::HelpBrowser(QWidget *parent) : QMainWindow(parent)
{
    setWindowTitle("Help");
    resize(800, 600);
    setWindowIcon(QIcon(":/images/16/help-contents.png"));
    setAttribute(Qt::WA_DeleteOnClose);
    openCollection();
    createIndexDock();
    browser = new HelpTextBrowser(helpEngine, this);
    setCentralWidget(browser);
    connect(helpEngine->contentWidget(), &QHelpContentWidget::linkActivated, browser,
            &HelpTextBrowser::loadUrl);
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
    auto *dock = new QDockWidget("Index", this);
    dock->setObjectName("indexDock");
    dock->setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    dock->setWidget(helpEngine->contentWidget());
    addDockWidget(Qt::LeftDockWidgetArea, dock);
}

void HelpBrowser::showIndexPage()
{
    const QList<QHelpLink> links = helpEngine->documentsForIdentifier("index");
    if (!links.isEmpty())
        browser->loadUrl(links.first().url);
}
