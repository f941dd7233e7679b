#include "support/helpnetworkreply.h"

#include <QTimer>

#include <cstring>

namespace
{
constexpr int GUESS_LENGTH = 512; // bytes that the view wants to see before it believes a type
}

HelpNetworkReply::HelpNetworkReply(const QNetworkRequest &request, const QByteArray &data,
                                   const QString &mimeType, QObject *parent)
    : QNetworkReply(parent), data(data), origLen(data.length())
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
    // Only a read ends a reply, but a view reads nothing from an empty one, and from one too short
    // to guess its type it reads only after its end. The bytes stay in the device's buffer.
    if (origLen < GUESS_LENGTH)
        QTimer::singleShot(0, this, [this] { peek(1); });
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
