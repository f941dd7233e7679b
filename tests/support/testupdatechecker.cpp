#include "support/updatechecker.h"
#include "support/updatecheckerdialog.h"
#include "testing/testmain.h"

#include <QAction>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QLabel>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

/// Answers each request on loopback with the same reply.
class UpdateServer : public QTcpServer
{
    Q_OBJECT

public:
    UpdateServer()
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, &UpdateServer::answer);
    }

    QUrl getUrl() const { return QString("http://127.0.0.1:%1/update.txt").arg(serverPort()); }

    QByteArray status = "200 OK";
    QByteArray content;

private:
    void answer()
    {
        QTcpSocket *socket = nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
            socket->write("HTTP/1.0 " + status + "\r\nContent-Length: " +
                          QByteArray::number(content.size()) + "\r\n\r\n" + content);
            socket->disconnectFromHost();
        });
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    }
};

/// Stands in for the desktop's browser.
class UrlCatcher : public QObject
{
    Q_OBJECT

public:
    UrlCatcher() { QDesktopServices::setUrlHandler("http", this, "onUrl"); }
    ~UrlCatcher() override { QDesktopServices::unsetUrlHandler("http"); }

    QList<QUrl> urls;

public slots:
    void onUrl(const QUrl &url) { urls.append(url); }
};

class TestUpdateChecker : public QObject
{
    Q_OBJECT

private slots:
    void replies_data();
    void replies();
    void failedRequestKeepsKnownUpdate();
    void actionOpensSiteOnceUpdateIsKnown();
    void newerAnswerTakesUpdateBack();
    void staysDormant();
    void dialogStartsBusy();
    void dialogShowsResult_data();
    void dialogShowsResult();
    void dialogLinkAsksForDownload();
};

void TestUpdateChecker::replies_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("outcome"); // an error text, or "newer" or "none"

    const QString corrupt = "Got corrupt update file";
    const QString unparsed = "Failed to parse version information";
    QTest::newRow("empty file") << QByteArray() << corrupt;
    QTest::newRow("blanks only") << QByteArray("  \n ") << corrupt;
    QTest::newRow("version only") << QByteArray("3.0\n") << corrupt;
    QTest::newRow("first token is no number") << QByteArray("new http://a/") << unparsed;
    QTest::newRow("comma in the number") << QByteArray("3,0 http://a/") << unparsed;
    QTest::newRow("own version") << QByteArray("2.01 http://a/") << "none";
    QTest::newRow("older version") << QByteArray("1.99 http://a/") << "none";
    QTest::newRow("newer version") << QByteArray("2.02 http://a/") << "newer";
    QTest::newRow("compared as numbers") << QByteArray("2.1 http://a/") << "newer";
    QTest::newRow("blanks around and between") << QByteArray(" \n3   http://a/ \n") << "newer";
    QTest::newRow("further tokens") << QByteArray("3 http://a/ and more") << "newer";
    QTest::newRow("text ends at a zero byte") << QByteArray("3\0 http://a/", 13) << corrupt;
}

void TestUpdateChecker::replies()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, outcome);
    UpdateServer server;
    server.content = content;
    UpdateChecker checker;
    QStringList seen;
    connect(&checker, &UpdateChecker::updateError, this,
            [&](const QString &text) { seen << text; });
    connect(&checker, &UpdateChecker::updateAvailable, this, [&] { seen << "newer"; });
    connect(&checker, &UpdateChecker::noUpdateAvailable, this, [&] { seen << "none"; });

    checker.getNetworkManager()->get(QNetworkRequest(server.getUrl()));
    QTRY_COMPARE(seen, QStringList(outcome));
    QCOMPARE(checker.getAction()->text(),
             QString(outcome == "newer" ? "Program update available" : "Check for updates"));
}

void TestUpdateChecker::failedRequestKeepsKnownUpdate()
{
    UpdateServer server;
    server.content = "3 http://a/";
    UpdateChecker checker;
    QSignalSpy available(&checker, &UpdateChecker::updateAvailable);
    QSignalSpy errors(&checker, &UpdateChecker::updateError);
    checker.getNetworkManager()->get(QNetworkRequest(server.getUrl()));
    QTRY_COMPARE(available.count(), 1);

    server.status = "404 Not Found";
    checker.getNetworkManager()->get(QNetworkRequest(server.getUrl()));
    QTRY_COMPARE(errors.count(), 1);
    QVERIFY(errors.first().first().toString().contains("Not Found"));
    QCOMPARE(checker.getAction()->text(), QString("Program update available"));
}

void TestUpdateChecker::actionOpensSiteOnceUpdateIsKnown()
{
    UrlCatcher catcher;
    UpdateServer server;
    server.content = "3 http://site.invalid/get?a=1";
    UpdateChecker checker;
    checker.getAction()->trigger();
    QCoreApplication::processEvents();
    QCOMPARE(catcher.urls, QList<QUrl>());

    QSignalSpy available(&checker, &UpdateChecker::updateAvailable);
    checker.getNetworkManager()->get(QNetworkRequest(server.getUrl()));
    QTRY_COMPARE(available.count(), 1);
    checker.getAction()->trigger();
    QCOMPARE(catcher.urls, QList<QUrl>()); // the connection is queued
    QTRY_COMPARE(catcher.urls, QList<QUrl>{QUrl("http://site.invalid/get?a=1")});
}

void TestUpdateChecker::newerAnswerTakesUpdateBack()
{
    UrlCatcher catcher;
    UpdateServer server;
    server.content = "3 http://a/";
    UpdateChecker checker;
    QSignalSpy available(&checker, &UpdateChecker::updateAvailable);
    QSignalSpy none(&checker, &UpdateChecker::noUpdateAvailable);
    checker.getNetworkManager()->get(QNetworkRequest(server.getUrl()));
    QTRY_COMPARE(available.count(), 1);

    server.content = "2.01 http://a/";
    checker.getNetworkManager()->get(QNetworkRequest(server.getUrl()));
    QTRY_COMPARE(none.count(), 1);
    QCOMPARE(checker.getAction()->text(), QString("Check for updates"));
    checker.performUpdate();
    QCOMPARE(catcher.urls, QList<QUrl>());
}

void TestUpdateChecker::staysDormant()
{
    UpdateChecker checker;
    int finished = 0;
    connect(checker.getNetworkManager(), &QNetworkAccessManager::finished, this,
            [&] { ++finished; });
    checker.checkForUpdates(true);
    checker.checkForUpdates(false);

    QCOMPARE(checker.getNetworkManager()->findChildren<QNetworkReply *>().size(), 0);
    QTest::qWait(20);
    QCOMPARE(finished, 0);
    QCOMPARE(checker.getAction()->text(), QString("Check for updates"));
}

void TestUpdateChecker::dialogStartsBusy()
{
    UpdateCheckerDialog dialog;
    dialog.show();
    auto *buttons = dialog.findChild<QDialogButtonBox *>();
    auto *bar = dialog.findChild<QProgressBar *>();

    QCOMPARE(dialog.windowTitle(), QString("Check for updates"));
    QCOMPARE(dialog.findChild<QLabel *>("textLabel")->text(), QString("Checking for updates..."));
    QVERIFY(bar->isVisible());
    QCOMPARE(bar->maximum(), 0);
    QVERIFY(!buttons->button(QDialogButtonBox::Close)->isVisible());
    buttons->button(QDialogButtonBox::Cancel)->click();
    QVERIFY(!dialog.isVisible());
}

void TestUpdateChecker::dialogShowsResult_data()
{
    QTest::addColumn<int>("result");
    QTest::addColumn<QString>("text");

    QTest::newRow("update") << 0
                            << "<h2>Update Available</h2>An application update is available.  "
                               "Click <a href=\"updatesite\">here</a> to open the download site.";
    QTest::newRow("none") << 1
                          << "<h2>No Update Available</h2>Your version of the application is the "
                             "current version.";
    QTest::newRow("error") << 2
                           << "<h2>Cannot connect to the update site</h2>There was an error "
                              "connecting to the update site.<br>Ensure you are connected to the "
                              "internet and try again later.<br>  The error message is: broken";
}

void TestUpdateChecker::dialogShowsResult()
{
    QFETCH(int, result);
    QFETCH(QString, text);
    UpdateCheckerDialog dialog;
    dialog.show();
    if (result == 0)
        dialog.onUpdateAvailable();
    else if (result == 1)
        dialog.onNoUpdateAvailable();
    else
        dialog.onUpdateError("broken");

    auto *buttons = dialog.findChild<QDialogButtonBox *>();
    QCOMPARE(dialog.findChild<QLabel *>("textLabel")->text(), text);
    const QLabel *label = dialog.findChild<QLabel *>("textLabel");
    QTRY_VERIFY(label->height() >= label->heightForWidth(label->width()));
    QVERIFY(!dialog.findChild<QProgressBar *>()->isVisible());
    QVERIFY(!buttons->button(QDialogButtonBox::Cancel)->isVisible());
    buttons->button(QDialogButtonBox::Close)->click();
    QVERIFY(!dialog.isVisible());
}

void TestUpdateChecker::dialogLinkAsksForDownload()
{
    UpdateCheckerDialog dialog;
    QSignalSpy clicked(&dialog, &UpdateCheckerDialog::downloadClicked);
    dialog.onUpdateAvailable();
    emit dialog.findChild<QLabel *>("textLabel")->linkActivated("updatesite");

    QCOMPARE(clicked.count(), 1);
}

EXAMINER_TEST_MAIN(TestUpdateChecker)
#include "testupdatechecker.moc"
