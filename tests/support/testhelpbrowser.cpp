#include "support/helpbrowser.h"
#include "support/helpnetworkaccessmanager.h"
#include "support/helpnetworkreply.h"
#include "support/helptextbrowser.h"
#include "testing/files.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QHelpContentWidget>
#include <QHelpEngine>
#include <QLibraryInfo>
#include <QProcess>
#include <QSignalSpy>
#include <QWebElement>
#include <QWebFrame>

/// The help window and the replies that its pages come by.
class TestHelpBrowser : public QObject
{
    Q_OBJECT

    const QString folder = makeDataFolder();
    const QString collection = folder + "/helpcollection2.qhc";

private slots:
    void initTestCase()
    {
        writeBytes(folder + "/start.html",
                   "<html><head><link rel='stylesheet' href='look.css'></head>"
                   "<body><p id='p'>Hello</p></body></html>");
        writeBytes(folder + "/long.html", "<p>" + QByteArray(200000, 'x') + "</p>");
        writeBytes(folder + "/look.css", "#p { color: rgb(1, 2, 3); }");
        writeBytes(folder + "/help.qhp",
                   "<QtHelpProject version='1.0'><namespace>a.b</namespace><virtualFolder>doc"
                   "</virtualFolder><filterSection><toc><section title='S' ref='start.html'/></toc>"
                   "<keywords><keyword name='index' id='index' ref='start.html'/></keywords><files>"
                   "<file>start.html</file><file>look.css</file><file>long.html</file></files>"
                   "</filterSection></QtHelpProject>");
        writeBytes(folder + "/help.qhcp",
                   "<QHelpCollectionProject version='1.0'><docFiles><register><file>help.qch</file>"
                   "</register></docFiles></QHelpCollectionProject>");
        QDir::setCurrent(folder);
        const QString generator =
            QLibraryInfo::location(QLibraryInfo::BinariesPath) + "/qhelpgenerator";
        for (const QStringList &files :
             {QStringList{"help.qhp", "help.qch"}, QStringList{"help.qhcp", collection}})
            QCOMPARE(QProcess::execute(generator, {files.first(), "-o", files.last(), "-s"}), 0);
    }

    void repliesByAddress()
    {
        QHelpEngine engine(collection);
        HelpNetworkAccessManager manager(&engine, nullptr);
        const auto ask = [&manager](const char *url) {
            QScopedPointer<QNetworkReply> reply(manager.get(QNetworkRequest(QUrl(url))));
            return reply->header(QNetworkRequest::ContentTypeHeader).toString() + ' ' +
                   QString::number(reply->bytesAvailable());
        };
        QCOMPARE(ask("qthelp://a.b/doc/look.css"), QString("text/css 27"));
        QCOMPARE(ask("qthelp://a.b/a.png/b"), QString("text/html 0"));
        QCOMPARE(ask("file:///etc/passwd"), QString("text/html 0"));
        for (const char *remote : {"http://127.0.0.1/", "https://a/", "ftp://a/"})
            QVERIFY(!HelpNetworkAccessManager::isLocalUrl(QUrl(remote)));
    }

    void repliesEndOnce()
    {
        for (const int size : {0, 1, 511, 100000}) {
            const Row in(qPrintable(QString::number(size)));
            HelpNetworkReply reply(QNetworkRequest(), QByteArray(size, 'x'), "text/html");
            QStringList seen;
            connect(&reply, &QNetworkReply::readyRead, this, [&] { seen << "ready"; });
            connect(&reply, &QNetworkReply::finished, this, [&] { seen << "finished"; });
            if (size < 512) // nobody reads from a short one before its end
                QTRY_COMPARE(seen, QStringList({"ready", "finished"}));
            QByteArray read;
            while (read.size() < size) {
                QCOMPARE(reply.bytesAvailable(), qint64(size - read.size()));
                read += reply.read(777);
            }
            QCOMPARE(read, QByteArray(size, 'x'));
            reply.read(1);
            QTRY_COMPARE(seen, QStringList({"ready", "finished"}));
            QCoreApplication::processEvents();
            QCOMPARE(seen.count("finished"), 1);
        }
    }

    void windowShowsItsPages()
    {
        HelpBrowser window(nullptr);
        window.setAttribute(Qt::WA_DeleteOnClose, false);
        auto *view = qobject_cast<HelpTextBrowser *>(window.centralWidget());
        const QWebFrame *frame = view->page()->mainFrame();
        QTRY_COMPARE(frame->toPlainText(), QString("Hello"));
        QTRY_COMPARE(
            frame->findFirstElement("#p").styleProperty("color", QWebElement::ComputedStyle),
            QString("rgb(1, 2, 3)"));
        view->loadUrl(QUrl("qthelp://a.b/doc/long.html"));
        QTRY_COMPARE(frame->toPlainText().size(), 200000);
        auto *contents = window.findChild<QHelpContentWidget *>();
        QTRY_COMPARE(contents->model()->rowCount(), 1);
        contents->activated(contents->model()->index(0, 0));
        QTRY_COMPARE(frame->toPlainText(), QString("Hello"));
        view->loadUrl(QUrl("qthelp://a.b/doc/gone.html"));
        QTRY_COMPARE(frame->toPlainText(), QString());
    }
};

EXAMINER_TEST_MAIN(TestHelpBrowser)
#include "testhelpbrowser.moc"
