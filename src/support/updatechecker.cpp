#include "support/updatechecker.h"

#include "support/log.h"
#include "support/version.h"

#include <QAction>
#include <QDesktopServices>
#include <QIcon>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QUrl>

UpdateChecker::UpdateChecker(QObject *parent)
    : QObject(parent), networkManager(new QNetworkAccessManager(this)),
      action(new QAction(QIcon(":/images/48/system-software-update.png"), tr("Check for updates"),
                         this))
{
    connect(networkManager, &QNetworkAccessManager::finished, this, &UpdateChecker::gotUpdateInfo);
    connect(action, &QAction::triggered, this, &UpdateChecker::performUpdate, Qt::QueuedConnection);
}

void UpdateChecker::checkForUpdates(bool) {}

void UpdateChecker::performUpdate()
{
    if (!updateAvailableFlag)
        return;
    const bool opened = QDesktopServices::openUrl(QUrl(updateUrl));
    qCDebug(supportLog) << "Opened update site:" << opened;
}

void UpdateChecker::gotUpdateInfo(QNetworkReply *reply)
{
    reply->deleteLater();
    if (reply->error() != QNetworkReply::NoError) {
        emit updateError(reply->errorString());
        return;
    }
    // A char pointer ends the text at its first zero byte.
    const QString text = QString::fromUtf8(reply->readAll().constData()).trimmed();
    const QStringList parts = text.split(' ', Qt::SkipEmptyParts);
    if (parts.size() < 2) {
        emit updateError(tr("Got corrupt update file"));
        return;
    }
    bool ok = false;
    const double version = parts.at(0).toDouble(&ok);
    if (!ok) {
        emit updateError(tr("Failed to parse version information"));
        return;
    }
    updateUrl = parts.at(1);
    compareVersion(version);
}

void UpdateChecker::compareVersion(double version)
{
    updateAvailableFlag = version > ProgramVersion && !updateUrl.isEmpty();
    action->setText(updateAvailableFlag ? tr("Program update available") : tr("Check for updates"));
    if (updateAvailableFlag)
        emit updateAvailable();
    else
        emit noUpdateAvailable();
}
