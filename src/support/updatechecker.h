#pragma once

#include <QObject>

class QAction;
class QNetworkAccessManager;
class QNetworkReply;

/// Compares the version named in a small text file with the program's own.
/// Dormant: nothing asks for that file.
class UpdateChecker : public QObject
{
    Q_OBJECT

public:
    explicit UpdateChecker(QObject *parent = nullptr);

    QAction *getAction() const { return action; }
    QNetworkAccessManager *getNetworkManager() const { return networkManager; }

    /// Does nothing: there is no site to ask.
    void checkForUpdates(bool);

public slots:
    /// Opens the download site, if an update is known.
    void performUpdate();

signals:
    void updateError(QString text);
    void updateAvailable();
    void noUpdateAvailable();

private slots:
    void gotUpdateInfo(QNetworkReply *reply);

private:
    void compareVersion(double version);

    QNetworkAccessManager *networkManager;
    bool updateAvailableFlag = false;
    QString updateUrl;
    QAction *action;
};
