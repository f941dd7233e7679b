#include "form/webenginepage.h"

#include "form/pagetexts.h"
#include "support/log.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QFontInfo>
#include <QHelpEngine>
#include <QMimeDatabase>
#include <QQuickWindow>
#include <QWebChannel>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlScheme>

namespace
{

/// The engine takes schemes only before there is an application.
void registerScheme()
{
    QWebEngineUrlScheme scheme(HelpSchemeHandler::Scheme);
    scheme.setSyntax(QWebEngineUrlScheme::Syntax::Host);
    QWebEngineUrlScheme::registerScheme(scheme);
}
Q_CONSTRUCTOR_FUNCTION(registerScheme)

/// A page of fields is painted by the processor: otherwise the whole window, with its charts, would
/// be put together by OpenGL for its sake.
void paintWithoutOpenGL()
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}
Q_CONSTRUCTOR_FUNCTION(paintWithoutOpenGL)

/// All names are unknown, and bare addresses are reached by way of an unknown name only.
const char NoNetwork[] = " --proxy-server=socks5://none --proxy-bypass-list=<-loopback>"
                         " --host-resolver-rules=\"MAP * ~NOTFOUND\""
                         " --force-webrtc-ip-handling-policy=disable_non_proxied_udp";

/// Where it can't be written to, as in a bare container, the engine ends the whole program.
const char SharedMemory[] = "/dev/shm";
const char NoSharedMemory[] = " --disable-dev-shm-usage"; // but files in the folder for them

QWebEngineScript makeAdapter()
{
    QFile file(":/form/webengine_adapter.js");
    if (!file.open(QIODevice::ReadOnly))
        qFatal("The form's adapter is missing");
    QWebEngineScript script;
    script.setSourceCode(QString::fromUtf8(file.readAll()) + getPageTextsScript());
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setRunsOnSubFrames(true); // there it closes what it closes here
    return script;
}

} // namespace

QWebEngineProfile *makeOfflineProfile(QObject *parent)
{
    const char variable[] = "QTWEBENGINE_CHROMIUM_FLAGS"; // the engine reads it once
    const QByteArray own = qgetenv(variable);
    qputenv(variable,
            own + NoNetwork + (QFileInfo(SharedMemory).isWritable() ? "" : NoSharedMemory));
    auto *profile = new QWebEngineProfile(parent);
    // What the program opens, as a browser, may have the same engine.
    if (own.isEmpty())
        qunsetenv(variable);
    else
        qputenv(variable, own);
    return profile;
}

HelpSchemeHandler::HelpSchemeHandler(QHelpEngine *helpEngine, QObject *parent)
    : QWebEngineUrlSchemeHandler(parent), helpEngine(helpEngine)
{
}

void HelpSchemeHandler::requestStarted(QWebEngineUrlRequestJob *job)
{
    const QUrl url = job->requestUrl();
    const QByteArray data = helpEngine && job->requestMethod() == "GET"
                                ? helpEngine->fileData(url.adjusted(QUrl::RemoveFragment))
                                : QByteArray();
    if (data.isEmpty()) {
        job->fail(QWebEngineUrlRequestJob::UrlNotFound);
        return;
    }
    auto *buffer = new QBuffer(job);
    buffer->setData(data);
    const QMimeType type =
        QMimeDatabase().mimeTypeForFile(url.path(), QMimeDatabase::MatchExtension);
    job->reply(type.name().toLatin1(), buffer);
}

void FormGuard::interceptRequest(QWebEngineUrlRequestInfo &info)
{
    const QString scheme = info.requestUrl().scheme();
    const bool isOwn = scheme == HelpSchemeHandler::Scheme || scheme == "data";
    if (!isOwn || info.requestMethod() != "GET")
        info.block(true);
}

WebEnginePage::WebEnginePage(QWebEngineProfile *profile, const QUrl &address, QObject *parent)
    : QWebEnginePage(profile, parent), address(address)
{
    applySettings();
    auto *ear = new FormEar(this);
    connect(ear, &FormEar::told, this, &WebEnginePage::told);
    auto *channel = new QWebChannel(this);
    channel->registerObject("page", ear);
    setWebChannel(channel);
    scripts().insert(makeAdapter());
}

void WebEnginePage::applySettings()
{
    const QString family = QFontInfo(QFont("Arial")).family();
    settings()->setFontFamily(QWebEngineSettings::StandardFont, family);
    settings()->setFontFamily(QWebEngineSettings::SansSerifFont, family);
    const QWebEngineSettings::WebAttribute unused[] = {
        QWebEngineSettings::PluginsEnabled,
        QWebEngineSettings::JavascriptCanOpenWindows,
        QWebEngineSettings::JavascriptCanAccessClipboard,
        QWebEngineSettings::LocalStorageEnabled,
        QWebEngineSettings::LocalContentCanAccessRemoteUrls,
        QWebEngineSettings::LocalContentCanAccessFileUrls,
        QWebEngineSettings::AllowRunningInsecureContent,
        QWebEngineSettings::DnsPrefetchEnabled,
        QWebEngineSettings::ErrorPageEnabled,
        QWebEngineSettings::FullScreenSupportEnabled,
        QWebEngineSettings::HyperlinkAuditingEnabled,
        QWebEngineSettings::NavigateOnDropEnabled,
        QWebEngineSettings::PdfViewerEnabled,
        QWebEngineSettings::ScreenCaptureEnabled,
        QWebEngineSettings::WebGLEnabled,
    };
    for (QWebEngineSettings::WebAttribute attribute : unused)
        settings()->setAttribute(attribute, false);
    settings()->setAttribute(QWebEngineSettings::WebRTCPublicInterfacesOnly, true);
}

void WebEnginePage::triggerAction(WebAction action, bool checked)
{
    static const QList<WebAction> leaving = {
        Back, Forward, Stop, Reload, ReloadAndBypassCache, ViewSource, SavePage};
    if (!leaving.contains(action))
        QWebEnginePage::triggerAction(action, checked);
}

bool WebEnginePage::acceptNavigationRequest(const QUrl &url, NavigationType, bool isMainFrame)
{
    return isMainFrame && url.matches(address, QUrl::RemoveFragment);
}

QStringList WebEnginePage::chooseFiles(FileSelectionMode, const QStringList &, const QStringList &)
{
    return {};
}

bool WebEnginePage::javaScriptPrompt(const QUrl &, const QString &, const QString &, QString *)
{
    return false;
}

void WebEnginePage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString &message,
                                             int line, const QString &source)
{
    qCDebug(formLog) << "Form page:" << message << source << line;
}
