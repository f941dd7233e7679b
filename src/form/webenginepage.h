#pragma once

#include <QPointer>
#include <QUrl>
#include <QWebEnginePage>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineUrlSchemeHandler>

class QHelpEngine;
class QWebEngineProfile;

/// A profile off the record, of an engine without a network: the guard below hears neither of
/// WebRTC nor of what shared workers open, and every frame brings these along anew.
QWebEngineProfile *makeOfflineProfile(QObject *parent);

/// Serves the files of a help collection, and nothing to whoever asks otherwise than by reading.
class HelpSchemeHandler : public QWebEngineUrlSchemeHandler
{
    Q_OBJECT

public:
    static constexpr char Scheme[] = "qthelp";

    /// The engine is borrowed and may die first; its pages are then empty.
    HelpSchemeHandler(QHelpEngine *helpEngine, QObject *parent);

    void requestStarted(QWebEngineUrlRequestJob *job) override;

private:
    QPointer<QHelpEngine> helpEngine;
};

/// Lets the form's own collection through and addresses that carry their bytes themselves: no
/// network, no local files.
class FormGuard : public QWebEngineUrlRequestInterceptor
{
    Q_OBJECT

public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    void interceptRequest(QWebEngineUrlRequestInfo &info) override;
};

/// Hears what the page tells. It is all that the page's process may call.
class FormEar : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

public slots:
    void tell(const QString &message) { emit told(message); }
    /// Hides the one of every object: a page may not delete its ear.
    void deleteLater() {}

signals:
    void told(const QString &message);
};

/// A page that stays where it is: it shows its own address in its main frame and no other.
class WebEnginePage : public QWebEnginePage
{
    Q_OBJECT

public:
    /// Does not load yet.
    WebEnginePage(QWebEngineProfile *profile, const QUrl &address, QObject *parent);

    /// Does nothing for the keys of a browser: each would throw away what was typed.
    void triggerAction(WebAction action, bool checked = false) override;

signals:
    void told(const QString &message);

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;
    QWebEnginePage *createWindow(WebWindowType) override { return nullptr; }
    QStringList chooseFiles(FileSelectionMode, const QStringList &, const QStringList &) override;
    void javaScriptAlert(const QUrl &, const QString &) override {}
    bool javaScriptConfirm(const QUrl &, const QString &) override { return false; }
    bool javaScriptPrompt(const QUrl &, const QString &, const QString &, QString *) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString &message,
                                  int line, const QString &source) override;

private:
    void applySettings();

    QUrl address;
};
