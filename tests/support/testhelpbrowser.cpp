#include "support/helpbrowser.h"
#include "support/helpnetworkaccessmanager.h"
#include "support/helpnetworkreply.h"
#include "support/helptextbrowser.h"
#include "testing/testmain.h"

#include <QContextMenuEvent>
#include <QDockWidget>
#include <QHelpContentWidget>
#include <QHelpEngine>
#include <QLibraryInfo>
#include <QMenu>
#include <QPointer>
#include <QProcess>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QWebElement>
#include <QWebFrame>

class TestHelpBrowser : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void localUrls_data();
    void localUrls();
    void mimeTypes_data();
    void mimeTypes();
    void replySignalsInOrder();
    void replyIsReadInPieces();
    void shortReplyEndsByItself_data();
    void shortReplyEndsByItself();
    void remoteAddressGoesToNetwork();
    void viewLoadsPageWithItsFiles();
    void viewShowsEmptyPageForMissingFile();
    void windowShowsIndexPage();
    void windowWithoutCollectionStaysBlank();

private:
    static void write(const QString &path, const QByteArray &content);
    static void runHelpGenerator(const QString &folder, const QStringList &arguments);

    QTemporaryDir source;
    QString collection;
};

void TestHelpBrowser::write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

void TestHelpBrowser::runHelpGenerator(const QString &folder, const QStringList &arguments)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(QLibraryInfo::location(QLibraryInfo::BinariesPath) + "/qhelpgenerator",
                  arguments);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
}

void TestHelpBrowser::initTestCase()
{
    write(source.filePath("start.html"),
          "<html><head><title>Start</title><link rel='stylesheet' href='look.css'>"
          "<script src='act.js'></script></head><body><p id='p'>Hello</p></body></html>");
    write(source.filePath("long.html"), "<p>" + QByteArray(200000, 'x') + "</p>");
    write(source.filePath("look.css"), "#p { color: rgb(1, 2, 3); }");
    write(source.filePath("act.js"), "window.acted = 'yes';");
    write(source.filePath("UPPER.PNG"), "no picture");
    write(source.filePath("plain"), "<b>no ending</b>");
    write(source.filePath("help.qhp"),
          "<QtHelpProject version='1.0'><namespace>test.help</namespace>"
          "<virtualFolder>doc</virtualFolder><filterSection>"
          "<toc><section title='Start' ref='start.html'/></toc>"
          "<keywords><keyword name='index' id='index' ref='start.html'/></keywords>"
          "<files><file>start.html</file><file>look.css</file><file>act.js</file>"
          "<file>long.html</file><file>UPPER.PNG</file><file>plain</file></files>"
          "</filterSection></QtHelpProject>");
    write(source.filePath("help.qhcp"),
          "<QHelpCollectionProject version='1.0'><docFiles><register><file>help.qch</file>"
          "</register></docFiles></QHelpCollectionProject>");
    runHelpGenerator(source.path(), {"help.qhp", "-o", "help.qch", "-s"});
    runHelpGenerator(source.path(), {"help.qhcp", "-o", "help.qhc", "-s"});
    collection = source.filePath("help.qhc");
}

void TestHelpBrowser::localUrls_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<bool>("local");

    QTest::newRow("no scheme") << "page.html" << true;
    QTest::newRow("file") << "file:///etc/passwd" << true;
    QTest::newRow("resource") << "qrc:/images/x.png" << true;
    QTest::newRow("data") << "data:text/plain,x" << true;
    QTest::newRow("help") << "qthelp://test.help/doc/start.html" << true;
    QTest::newRow("about") << "about:blank" << true;
    QTest::newRow("http") << "http://127.0.0.1/" << false;
    QTest::newRow("https") << "https://127.0.0.1/" << false;
    QTest::newRow("ftp") << "ftp://127.0.0.1/" << false;
}

void TestHelpBrowser::localUrls()
{
    QFETCH(QString, url);
    QFETCH(bool, local);

    QCOMPARE(HelpNetworkAccessManager::isLocalUrl(QUrl(url)), local);
}

void TestHelpBrowser::mimeTypes_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("empty");

    QTest::newRow("page") << "qthelp://test.help/doc/start.html"
                          << "text/html" << false;
    QTest::newRow("style") << "qthelp://test.help/doc/look.css"
                           << "text/css" << false;
    QTest::newRow("script") << "qthelp://test.help/doc/act.js"
                            << "application/x-javascript" << false;
    QTest::newRow("ending in capitals") << "qthelp://test.help/doc/UPPER.PNG"
                                        << "image/png" << false;
    QTest::newRow("no ending") << "qthelp://test.help/doc/plain"
                               << "text/html" << false;
    QTest::newRow("unknown ending") << "qthelp://test.help/doc/a.svg"
                                    << "text/html" << true;
    QTest::newRow("a file is not read from disk") << "file:///etc/passwd"
                                                  << "text/html" << true;
    QTest::newRow("dot in a folder only") << "qthelp://test.help/a.png/b"
                                          << "text/html" << true;
}

void TestHelpBrowser::mimeTypes()
{
    QFETCH(QString, url);
    QFETCH(QString, type);
    QFETCH(bool, empty);

    QHelpEngine engine(collection);
    HelpNetworkAccessManager manager(&engine, nullptr);
    QScopedPointer<QNetworkReply> reply(manager.get(QNetworkRequest(QUrl(url))));

    QCOMPARE(reply->header(QNetworkRequest::ContentTypeHeader).toString(), type);
    QCOMPARE(reply->bytesAvailable() == 0, empty);
    QCOMPARE(reply->header(QNetworkRequest::ContentLengthHeader).toLongLong(),
             reply->bytesAvailable());
    QCOMPARE(reply->url(), QUrl(url));
}

void TestHelpBrowser::replySignalsInOrder()
{
    const QByteArray data(2000, 'x');
    HelpNetworkReply reply(QNetworkRequest(QUrl("qthelp://a/b.txt")), data, "text/plain");
    QStringList seen;
    connect(&reply, &QNetworkReply::metaDataChanged, &reply, [&] { seen << "meta"; });
    connect(&reply, &QNetworkReply::readyRead, &reply, [&] { seen << "ready"; });
    connect(&reply, &QNetworkReply::finished, &reply, [&] { seen << "finished"; });

    QTRY_COMPARE(seen, QStringList({"meta", "ready"}));
    QVERIFY(!reply.isFinished());
    QCOMPARE(reply.readAll(), data);
    QTRY_COMPARE(seen, QStringList({"meta", "ready", "finished"}));
    QVERIFY(reply.isFinished());
}

void TestHelpBrowser::replyIsReadInPieces()
{
    QByteArray data;
    for (int i = 0; i < 100000; ++i)
        data.append(char(i * 7));
    HelpNetworkReply reply(QNetworkRequest(), data, "image/png");
    QSignalSpy finished(&reply, &QNetworkReply::finished);

    QByteArray read;
    while (read.size() < data.size()) {
        QCOMPARE(reply.bytesAvailable(), qint64(data.size() - read.size()));
        read += reply.read(777);
    }
    QCOMPARE(read, data);
    reply.read(1);
    QTRY_COMPARE(finished.count(), 1);
    QTest::qWait(10);
    QCOMPARE(finished.count(), 1);
}

void TestHelpBrowser::shortReplyEndsByItself_data()
{
    QTest::addColumn<QByteArray>("data");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("one byte") << QByteArray("x");
    QTest::newRow("one below the length that is guessed by") << QByteArray(511, 'x');
}

void TestHelpBrowser::shortReplyEndsByItself()
{
    QFETCH(QByteArray, data);
    HelpNetworkReply reply(QNetworkRequest(), data, "text/html");
    QSignalSpy finished(&reply, &QNetworkReply::finished);

    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(reply.bytesAvailable(), qint64(data.size()));
    QCOMPARE(reply.readAll(), data);
    QTest::qWait(10);
    QCOMPARE(finished.count(), 1);
}

void TestHelpBrowser::remoteAddressGoesToNetwork()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    connect(&server, &QTcpServer::newConnection, &server, [&server] {
        QTcpSocket *socket = server.nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, socket, [socket] {
            socket->write("HTTP/1.0 200 OK\r\nContent-Length: 6\r\n\r\nremote");
            socket->disconnectFromHost();
        });
    });
    QHelpEngine engine(collection);
    HelpNetworkAccessManager manager(&engine, nullptr);
    const QUrl url(QString("http://127.0.0.1:%1/page.html").arg(server.serverPort()));
    QScopedPointer<QNetworkReply> reply(manager.get(QNetworkRequest(url)));

    QTRY_VERIFY(reply->isFinished());
    QCOMPARE(reply->readAll(), QByteArray("remote"));
}

void TestHelpBrowser::viewLoadsPageWithItsFiles()
{
    QHelpEngine engine(collection);
    HelpTextBrowser browser(&engine, nullptr);
    QSignalSpy loaded(&browser, &QWebView::loadFinished);
    browser.loadUrl(QUrl("qthelp://test.help/doc/start.html"));

    QTRY_COMPARE(loaded.count(), 1);
    QWebFrame *frame = browser.page()->mainFrame();
    QCOMPARE(frame->evaluateJavaScript("window.acted").toString(), QString("yes"));
    QCOMPARE(frame->findFirstElement("#p").styleProperty("color", QWebElement::ComputedStyle),
             QString("rgb(1, 2, 3)"));
    QCOMPARE(browser.contextMenuPolicy(), Qt::PreventContextMenu);

    browser.loadUrl(QUrl("qthelp://test.help/doc/long.html"));
    QTRY_COMPARE(loaded.count(), 2);
    QCOMPARE(frame->toPlainText().size(), 200000);
}

void TestHelpBrowser::viewShowsEmptyPageForMissingFile()
{
    QHelpEngine engine(collection);
    HelpTextBrowser browser(&engine, nullptr);
    QSignalSpy loaded(&browser, &QWebView::loadFinished);
    browser.loadUrl(QUrl("qthelp://test.help/doc/gone.html"));

    QTRY_COMPARE(loaded.count(), 1);
    QCOMPARE(browser.page()->mainFrame()->toPlainText(), QString());
}

void TestHelpBrowser::windowShowsIndexPage()
{
    const QString data = makeDataFolder();
    QVERIFY(QFile::copy(collection, data + "/helpcollection2.qhc"));
    QVERIFY(QFile::copy(source.filePath("help.qch"), data + "/help.qch"));
    QPointer<HelpBrowser> window = new HelpBrowser(nullptr);
    window->show();

    QCOMPARE(window->windowTitle(), QString("Help"));
    auto *dock = window->findChild<QDockWidget *>();
    QCOMPARE(dock->windowTitle(), QString("Index"));
    auto *contents = qobject_cast<QHelpContentWidget *>(dock->widget());
    QTRY_COMPARE(contents->model()->rowCount(), 1);
    auto *view = qobject_cast<HelpTextBrowser *>(window->centralWidget());
    QTRY_COMPARE(view->page()->mainFrame()->toPlainText(), QString("Hello"));

    view->loadUrl(QUrl("about:blank"));
    QTRY_COMPARE(view->page()->mainFrame()->toPlainText(), QString());
    contents->activated(contents->model()->index(0, 0));
    QTRY_COMPARE(view->page()->mainFrame()->toPlainText(), QString("Hello"));

    window->close();
    QTRY_VERIFY(window.isNull());
}

void TestHelpBrowser::windowWithoutCollectionStaysBlank()
{
    const QString data = makeDataFolder();
    QFile::remove(data + "/helpcollection2.qhc");
    write(data + "/helpcollection2.qhc", "this is no collection");
    HelpBrowser window(nullptr);
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    window.show();

    auto *view = qobject_cast<HelpTextBrowser *>(window.centralWidget());
    QTest::qWait(50);
    QCOMPARE(view->url(), QUrl());
    QCOMPARE(view->page()->mainFrame()->toPlainText(), QString());
}

EXAMINER_TEST_MAIN(TestHelpBrowser)
#include "testhelpbrowser.moc"
