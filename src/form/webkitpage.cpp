#include "form/webkitpage.h"

#include "form/pagetexts.h"
#include "support/helpnetworkreply.h"
#include "support/log.h"
#include "support/websettings.h"

#include <QNetworkRequest>
#include <QWebFrame>

QNetworkReply *FormNetworkAccessManager::createRequest(Operation operation,
                                                       const QNetworkRequest &request,
                                                       QIODevice *outgoingData)
{
    const QString scheme = request.url().scheme();
    if (scheme == "data" && operation == GetOperation)
        return QNetworkAccessManager::createRequest(operation, request, outgoingData);
    if (scheme == "qthelp")
        return HelpNetworkAccessManager::createRequest(operation, request, outgoingData);
    return new HelpNetworkReply(request, QByteArray(), "text/plain", this);
}

FormPage::FormPage(QHelpEngine *helpEngine, const QUrl &address, QObject *parent)
    : QWebPage(parent), address(address)
{
    applyWebSettings();
    setNetworkAccessManager(new FormNetworkAccessManager(helpEngine, this));
    connect(mainFrame(), &QWebFrame::javaScriptWindowObjectCleared, this,
            [this] { mainFrame()->evaluateJavaScript(getPageTextsScript()); });
}

void FormPage::triggerAction(WebAction action, bool checked)
{
    static const QList<WebAction> leaving = {Back, Forward, Stop, Reload, ReloadAndBypassCache};
    if (!leaving.contains(action))
        QWebPage::triggerAction(action, checked);
}

bool FormPage::acceptNavigationRequest(QWebFrame *frame, const QNetworkRequest &request,
                                       NavigationType)
{
    return frame == mainFrame() && request.url().matches(address, QUrl::RemoveFragment);
}

void FormPage::javaScriptConsoleMessage(const QString &message, int line, const QString &source)
{
    qCDebug(formLog) << "Form page:" << message << source << line;
}
