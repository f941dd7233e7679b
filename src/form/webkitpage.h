#pragma once

#include "support/helpnetworkaccessmanager.h"

#include <QUrl>
#include <QWebPage>

/// Serves the form's own collection and nothing else: no network, no local files. Data
/// addresses carry their bytes themselves and are let through, for the picture's preview.
class FormNetworkAccessManager : public HelpNetworkAccessManager
{
    Q_OBJECT

public:
    using HelpNetworkAccessManager::HelpNetworkAccessManager;

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice *outgoingData) override;
};

/// A page that stays where it is: it shows its own address in its main frame and no other.
class FormPage : public QWebPage
{
    Q_OBJECT

public:
    FormPage(QHelpEngine *helpEngine, const QUrl &address, QObject *parent);

    /// Does nothing for the keys of a browser: each would throw away what was typed.
    void triggerAction(WebAction action, bool checked = false) override;

protected:
    bool acceptNavigationRequest(QWebFrame *frame, const QNetworkRequest &request,
                                 NavigationType type) override;
    void javaScriptConsoleMessage(const QString &message, int line, const QString &source) override;

private:
    QUrl address;
};
