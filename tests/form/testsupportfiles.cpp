#include "support/supportfiles.h"
#include "testing/files.h"
#include "testing/testmain.h"

#include <QHelpEngine>
#include <QHelpLink>
#include <QRegularExpression>
#include <QUrl>

/// The collections that the build puts beside the program.
class TestSupportFiles : public QObject
{
    Q_OBJECT

private slots:
    void linksLeadSomewhere()
    {
        copySupportFiles();
        for (const char *collection : {"/formdata.qhc", "/helpcollection2.qhc"}) {
            const QString path = makeDataFolder() + collection;
            const QByteArray before = readBytes(path);
            {
                QHelpEngine engine(path);
                QVERIFY2(engine.setupData(), qPrintable(engine.error()));
                QCOMPARE(engine.documentsForIdentifier("index").size(), 1);
                const QRegularExpression link("(?:href|src)=\"([^\"#]+)\"");
                const QString name = engine.registeredDocumentations().value(0);
                for (const QUrl &page : engine.files(name, QString(), "html")) {
                    const QString text = QString::fromUtf8(engine.fileData(page));
                    for (auto i = link.globalMatch(text); i.hasNext();) {
                        const QUrl target = page.resolved(QUrl(i.next().captured(1)));
                        QVERIFY2(!engine.fileData(target).isEmpty(), qPrintable(target.toString()));
                    }
                }
            }
            // A rewritten copy would be replaced at each start, and an unregistered page stay away.
            QVERIFY(readBytes(path) == before);
        }
    }
};

EXAMINER_TEST_MAIN(TestSupportFiles)

#include "testsupportfiles.moc"
