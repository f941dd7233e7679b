#include "support/helpnetworkreply.h"

#include <QTimer>

#include <cstring>

HelpNetworkReply::HelpNetworkReply(const QNetworkRequest &request, const QByteArray &data,
                                   const QString &mimeType)
    : data(data), origLen(data.length())
{
    setRequest(request);
    setUrl(request.url());
    setOperation(QNetworkAccessManager::GetOperation);
    open(QIODevice::ReadOnly);
    setHeader(QNetworkRequest::ContentTypeHeader, mimeType);
    setHeader(QNetworkRequest::ContentLengthHeader, origLen);
    // The receiver connects after the constructor has returned.
    QTimer::singleShot(0, this, &HelpNetworkReply::metaDataChanged);
    QTimer::singleShot(0, this, &HelpNetworkReply::readyRead);
    // Nobody reads a reply without bytes, and only a read ends it.
    if (origLen == 0)
        QTimer::singleShot(0, this, [this] { read(1); });
}

void HelpNetworkReply::abort() {}

qint64 HelpNetworkReply::bytesAvailable() const
{
    return data.length() + QNetworkReply::bytesAvailable();
}

qint64 HelpNetworkReply::readData(char *buffer, qint64 maxlen)
{
    const int count = int(qMin<qint64>(data.length(), maxlen));
    std::memcpy(buffer, data.constData(), size_t(count));
    data.remove(0, count);
    if (data.isEmpty())
        scheduleFinished();
    return count;
}

void HelpNetworkReply::scheduleFinished()
{
    if (finishScheduled)
        return;
    finishScheduled = true;
    QTimer::singleShot(0, this, [this] {
        setFinished(true);
        emit finished();
    });
}
