#include "support/enchantspeller.h"
#include "support/fonts.h"
#include "support/helpbrowser.h"
#include "support/helpnetworkaccessmanager.h"
#include "support/helpnetworkreply.h"
#include "support/helptextbrowser.h"
#include "support/pageinfo.h"
#include "support/qaspell.h"
#include "support/spellinghighlighter.h"
#include "support/updatechecker.h"
#include "testing/files.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QAction>
#include <QDesktopServices>
#include <QHelpContentWidget>
#include <QHelpEngine>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

/// The help and the replies that its pages come by, spelling and the look for updates.
class TestSupport : public QObject
{
    Q_OBJECT

    const QString collection = makeDataFolder() + "/helpcollection2.qhc";
    const QString folder = qEnvironmentVariable("XDG_CONFIG_HOME") + "/enchant";
    QList<QUrl> opened; // instead of the desktop's browser

public slots:
    void onUrl(const QUrl &url) { opened << url; }

private slots:
    void initTestCase()
    {
        QDir::setCurrent(makeDataFolder());
        writeBytes("start.html", "<p>Hello</p>");
        writeBytes("long.html", QByteArray(200000, 'x'));
        writeBytes("look.css", "#p { color: rgb(1, 2, 3); }");
        writeBytes("help.qhp",
                   "<QtHelpProject version='1.0'><namespace>a.b</namespace><virtualFolder>doc"
                   "</virtualFolder><filterSection><toc><section title='S' ref='start.html'/></toc>"
                   "<keywords><keyword name='index' id='index' ref='start.html'/></keywords><files>"
                   "<file>start.html</file><file>look.css</file><file>long.html</file></files>"
                   "</filterSection></QtHelpProject>");
        writeBytes("help.qhcp",
                   "<QHelpCollectionProject version='1.0'><docFiles><register><file>help.qch</file>"
                   "</register></docFiles></QHelpCollectionProject>");
        QCOMPARE(QProcess::execute(QHELPGENERATOR, {"help.qhp", "-o", "help.qch", "-s"}), 0);
        QCOMPARE(QProcess::execute(QHELPGENERATOR, {"help.qhcp", "-o", collection, "-s"}), 0);
        qputenv("ENCHANT_CONFIG_DIR", QFile::encodeName(folder));
        QVERIFY(QDir().mkpath(folder + "/hunspell"));
        writeBytes(folder + "/en_US.dic", "Hadukar\n");
        writeBytes(folder + "/hunspell/zz_ZZ.aff", "SET UTF-8\nTRY abcxyz\n");
        writeBytes(folder + "/hunspell/zz_ZZ.dic", "2\nabc\nxyz\n");
    }

    /// Their texts and numbers are those of every toolkit that ever wrote a file.
    void filesKeepFontsAndPapers()
    {
        for (int weight = 0; weight < 100; ++weight) {
            const QString text = QString("Arial,8.5,-1,5,%1,1,0,1,0,0").arg(weight);
            QFont font;
            QVERIFY(decodeFont(text, font));
            QCOMPARE(encodeFont(font), text);
        }
        QFont font("Arial", 8, QFont::Bold);
        QCOMPARE(encodeFont(font), QString("Arial,8,-1,5,75,0,0,0,0,0"));
        QVERIFY(!decodeFont("Arial,8,-1,5,700,0,0,0,0,0,0,0,0,0,0,1", font));
        QVERIFY(font.bold());
        QStringList papers;
        for (int number : {-1, 0, 2, 16, 28, 29, 30, 31, 32, 118, 119})
            papers << getPaperSize(number).key();
        QCOMPARE(papers, QStringList({"", "A4", "Letter", "ISOB10", "Ledger", "Tabloid", "", "A10",
                                      "A3Extra", "EnvYou4", ""}));
    }

    void helpRepliesByAddress()
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
        QVERIFY(!HelpNetworkAccessManager::isLocalUrl(QUrl("http://127.0.0.1/")));
    }

    void helpRepliesEndOnce()
    {
        for (const int size : {0, 511, 100000}) {
            HelpNetworkReply reply(QNetworkRequest(), QByteArray(size, 'x'), "text/html");
            QStringList seen;
            connect(&reply, &QNetworkReply::readyRead, this, [&] { seen << "ready"; });
            connect(&reply, &QNetworkReply::finished, this, [&] { seen << "finished"; });
            if (size < 512) // nobody reads from a short one before its end
                QTRY_COMPARE(seen, QStringList({"ready", "finished"}));
            QCOMPARE(reply.read(777).size(), qMin(size, 777));
            QCOMPARE(reply.bytesAvailable(), qint64(qMax(0, size - 777)));
            QCOMPARE(reply.readAll().size(), qMax(0, size - 777));
            QTRY_VERIFY(seen.contains("finished"));
            QCoreApplication::processEvents();
            QCOMPARE(seen, QStringList({"ready", "finished"}));
        }
    }

    void helpShowsItsPages()
    {
        HelpBrowser window(nullptr);
        auto *view = qobject_cast<HelpTextBrowser *>(window.centralWidget());
        QTRY_COMPARE(view->toPlainText(), QString("Hello"));
        view->loadUrl(QUrl("qthelp://a.b/doc/long.html"));
        QTRY_COMPARE(view->toPlainText().size(), 200000);
        auto *contents = window.findChild<QHelpContentWidget *>();
        QTRY_COMPARE(contents->model()->rowCount(), 1);
        contents->clicked(contents->model()->index(0, 0));
        QTRY_COMPARE(view->toPlainText(), QString("Hello"));
        view->loadUrl(QUrl("qthelp://a.b/doc/gone.html"));
        QTRY_COMPARE(view->toPlainText(), QString());
        window.menuBar()->actions().first()->menu()->actions().last()->trigger();
        auto *words = window.findChild<QLineEdit *>();
        words->setText("lo ell");
        words->returnPressed();
        QTRY_COMPARE(view->textCursor().selectedText(), QString("lo"));
    }

    void underlinedWords()
    {
        const QPair<const char *, QStringList> rows[] = {
            {"bridge brigde brigde", {"brigde"}}, // the last one may be unfinished
            {"  ,brigde.. ;", {"brigde"}},
            {"qqzx-wwvk 1940 bri9de2x ", {"qqzx", "wwvk", "bri9de2x"}},
            {"br\xc3\xbcgd\xc3\xa9 ", {QString::fromUtf8("br\xc3\xbcgd\xc3\xa9")}},
        };
        for (const auto &[text, wrong] : rows) {
            QTextDocument document(QString::fromUtf8(text));
            const SpellingHighlighter highlighter(&document);
            QCoreApplication::processEvents();
            QStringList words;
            for (const auto &range : document.firstBlock().layout()->formats())
                words << document.toPlainText().mid(range.start, range.length);
            QCOMPARE(words, wrong);
            QCOMPARE(highlighter.getSpell()->getSuggestions("brigde").value(0), QString("bridge"));
        }
    }

    void dictionaries()
    {
        const EnchantSpeller own({"xx_XX", "not a tag", "zz_ZZ", "en_US"});
        QVERIFY(own.isCorrect("xyz") && !own.isCorrect("bridge"));
        QVERIFY(QFile::remove(folder + "/hunspell/zz_ZZ.dic"));
        QVERIFY(QFile::remove(folder + "/hunspell/zz_ZZ.aff"));
        QVERIFY(own.isCorrect("xyz") && !own.getSuggestions("abd").contains("abd"));
        const EnchantSpeller none({"zz_ZZ"});
        QVERIFY(none.isCorrect("qqzx") && none.getSuggestions("brigde").isEmpty());

        const EnchantSpeller speller({"en_US"});
        for (const QString &word :
             {QString(), QString::fromLatin1("ab\0cd", 5), QString("Hadukar")})
            QVERIFY(speller.isCorrect(word));
        for (const QString &word : {QString(QChar(0xd800)) + "qqzx", QString(1000000, 'q')})
            QVERIFY(!speller.isCorrect(word) && !speller.getSuggestions(word).contains(word));
        QVERIFY(!speller.getSuggestions("London").contains("London")); // its own first guess
    }

    void updateReplies()
    {
        const QPair<const char *, const char *> rows[] = {
            {"", "Got corrupt update file"},
            {"3.0%0A", "Got corrupt update file"},
            {"3%00 a", "Got corrupt update file"},
            {"3,0 a", "Failed to parse version information"},
            {"2.01 a", "none"},
            {"2.02 a", "newer"},
            {" %0A3   http://b/ %0A", "newer"},
        };
        QDesktopServices::setUrlHandler("http", this, "onUrl");
        UpdateChecker checker;
        QStringList seen;
        connect(&checker, &UpdateChecker::updateError, [&](const QString &text) { seen << text; });
        connect(&checker, &UpdateChecker::updateAvailable, this, [&] { seen << "newer"; });
        connect(&checker, &UpdateChecker::noUpdateAvailable, this, [&] { seen << "none"; });
        auto *net = checker.getNetworkManager();
        for (const auto &[content, outcome] : rows) {
            const Row in(content);
            seen.clear();
            net->get(QNetworkRequest(QUrl(QString("data:text/plain,") + content)));
            QTRY_COMPARE(seen, QStringList(outcome));
            QCOMPARE(checker.getAction()->text().endsWith("available"), seen.contains("newer"));
        }
        net->get(QNetworkRequest(QUrl("data:nonsense"))); // fails, and what is known stays known
        QTRY_COMPARE(seen.size(), 2);
        checker.getAction()->trigger();
        QTRY_COMPARE(opened, QList<QUrl>{QUrl("http://b/")});
    }
};

EXAMINER_TEST_MAIN(TestSupport)
#include "testsupport.moc"
