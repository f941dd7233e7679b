#pragma once

#include <QHash>
#include <QNetworkAccessManager>
#include <QPointer>

class QHelpEngine;

/// Answers every local request out of a help engine's files, whatever its
/// scheme; only remote addresses go to the network.
class HelpNetworkAccessManager : public QNetworkAccessManager
{
    Q_OBJECT

public:
    HelpNetworkAccessManager(QHelpEngine *helpEngine, QObject *parent);

    static bool isLocalUrl(const QUrl &url);

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice *outgoingData) override;

private:
    QString getMimeType(const QUrl &url) const;

    QPointer<QHelpEngine> helpEngine;  // a window may delete it before its view
    QHash<QString, QString> mimeTypes; // from lower-case extension with its dot
};
