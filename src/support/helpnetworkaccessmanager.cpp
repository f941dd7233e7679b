#include "support/helpnetworkaccessmanager.h"

#include "support/helpnetworkreply.h"

#include <QHelpEngine>

HelpNetworkAccessManager::HelpNetworkAccessManager(QHelpEngine *helpEngine, QObject *parent)
    : QNetworkAccessManager(parent), helpEngine(helpEngine)
{
    mimeTypes = {
        {".png", "image/png"},   {".css", "text/css"},
        {".html", "text/html"},  {".htm", "text/html"},
        {".jpeg", "image/jpeg"}, {".jpg", "image/jpeg"},
        {".txt", "text/plain"},  {".js", "application/x-javascript"},
    };
}

bool HelpNetworkAccessManager::isLocalUrl(const QUrl &url)
{
    static const QStringList localSchemes = {"file", "qrc", "data", "qthelp", "about"};
    return url.scheme().isEmpty() || localSchemes.contains(url.scheme());
}

QNetworkReply *HelpNetworkAccessManager::createRequest(Operation operation,
                                                       const QNetworkRequest &request,
                                                       QIODevice *outgoingData)
{
    const QUrl url = request.url();
    if (!isLocalUrl(url))
        return QNetworkAccessManager::createRequest(operation, request, outgoingData);
    const QByteArray data = helpEngine ? helpEngine->fileData(url) : QByteArray();
    return new HelpNetworkReply(request, data, getMimeType(url), this);
}

QString HelpNetworkAccessManager::getMimeType(const QUrl &url) const
{
    const QString path = url.path();
    const QString extension = path.mid(path.lastIndexOf('.')).toLower();
    return mimeTypes.value(extension, "text/html");
}
