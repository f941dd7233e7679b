#include "support/helptextbrowser.h"

#include "support/helpnetworkaccessmanager.h"

HelpTextBrowser::HelpTextBrowser(QHelpEngine *helpEngine, QWidget *parent) : QWebView(parent)
{
    page()->setNetworkAccessManager(new HelpNetworkAccessManager(helpEngine, this));
    setContextMenuPolicy(Qt::PreventContextMenu);
}

void HelpTextBrowser::loadUrl(QUrl url)
{
    setUrl(url);
}
