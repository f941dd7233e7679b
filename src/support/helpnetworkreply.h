#pragma once

#include <QNetworkReply>

/// A reply whose bytes are all there from the start.
class HelpNetworkReply : public QNetworkReply
{
    Q_OBJECT

public:
    /// Goes with its parent, the manager that hears of its end.
    HelpNetworkReply(const QNetworkRequest &request, const QByteArray &data,
                     const QString &mimeType, QObject *parent = nullptr);

    qint64 bytesAvailable() const override;

public slots:
    void abort() override;

protected:
    qint64 readData(char *buffer, qint64 maxlen) override;

private:
    void scheduleFinished();

    QByteArray data; // the bytes not yet read
    qint64 origLen;
    bool finishScheduled = false;
};
