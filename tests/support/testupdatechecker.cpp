#include "support/updatechecker.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QAction>
#include <QDesktopServices>
#include <QNetworkAccessManager>
#include <QNetworkReply>

class TestUpdateChecker : public QObject
{
    Q_OBJECT

    QList<QUrl> opened; // instead of the desktop's browser

public slots:
    void onUrl(const QUrl &url) { opened << url; }

private slots:
    void replies()
    {
        const char corrupt[] = "Got corrupt update file";
        const char unparsed[] = "Failed to parse version information";
        const struct {
            const char *content;
            const char *outcome; // an error text, or "newer" or "none"
        } rows[] = {
            {"", corrupt},
            {"  %0A ", corrupt},
            {"3.0%0A", corrupt},
            {"3%00 a", corrupt},
            {"new a", unparsed},
            {"3,0 a", unparsed},
            {"3 a", "newer"},
            {"2.01 a", "none"},
            {"1.99 a", "none"},
            {"2.02 a", "newer"},
            {"2.1 a", "newer"},
            {" %0A3   a %0A", "newer"},
            {"3 http://b/", "newer"},
        };
        QDesktopServices::setUrlHandler("http", this, "onUrl");
        UpdateChecker checker;
        QStringList seen;
        connect(&checker, &UpdateChecker::updateError, this,
                [&](const QString &text) { seen << text; });
        connect(&checker, &UpdateChecker::updateAvailable, this, [&] { seen << "newer"; });
        connect(&checker, &UpdateChecker::noUpdateAvailable, this, [&] { seen << "none"; });
        const auto ask = [&checker](const QUrl &url) {
            checker.getNetworkManager()->get(QNetworkRequest(url));
        };
        for (const auto &row : rows) {
            const Row in(row.content);
            seen.clear();
            ask(QUrl(QString("data:text/plain,") + row.content));
            QTRY_COMPARE(seen, QStringList(row.outcome));
            if (seen.first() != "newer" && seen.first() != "none")
                continue;
            QCOMPARE(checker.getAction()->text(),
                     QString(seen.first() == "newer" ? "Program update available"
                                                     : "Check for updates"));
        }
        ask(QUrl("data:nonsense")); // fails, and what is known stays known
        QTRY_COMPARE(seen.size(), 2);
        checker.getAction()->trigger();
        QVERIFY(opened.isEmpty()); // the connection is queued
        QTRY_COMPARE(opened, QList<QUrl>{QUrl("http://b/")});
        QDesktopServices::unsetUrlHandler("http");
    }

    void staysDormant()
    {
        UpdateChecker checker;
        checker.checkForUpdates(true);
        QVERIFY(checker.getNetworkManager()->findChildren<QNetworkReply *>().isEmpty());
        checker.getAction()->trigger();
        QCoreApplication::processEvents();
        QCOMPARE(opened.size(), 1);
    }
};

EXAMINER_TEST_MAIN(TestUpdateChecker)
#include "testupdatechecker.moc"
