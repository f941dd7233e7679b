#include "chart/canvasiteminfo.h"
#include "project/projectfile.h"
#include "testing/fakes.h"
#include "testing/form.h"

#include <QHelpEngine>
#include <QHelpLink>
#include <QRegularExpression>
#include <QUrl>

/// The files that the build puts beside the program.
class TestSupportFiles : public QObject
{
    Q_OBJECT

private slots:
    void quickStartIsAChart();
    void quickStartFitsOnePage();
    void collections_data();
    void collections();
    void linksLeadSomewhere_data();
    void linksLeadSomewhere();
};

namespace
{

QList<CanvasItemInfo> readQuickStart()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("quickstart2.epf");
    QFile::copy(QCoreApplication::applicationDirPath() + "/templates/quickstart2.epf", path);
    QList<CanvasItemInfo> items;
    FakeHost host;
    FakeSheet sheet(&host);
    ProjectFile file(&host);
    QObject::connect(&file, &ProjectFile::loadedItem,
                     [&items](CanvasItemInfo &info) { items << info; });
    if (!file.openFile(path))
        qWarning() << file.getLastError();
    return items;
}

} // namespace

void TestSupportFiles::quickStartIsAChart()
{
    QHash<QString, int> roles;
    int lines = 0;
    for (const CanvasItemInfo &info : readQuickStart()) {
        if (info.type == 8)
            ++lines;
        else
            ++roles[info.role.getTypeName()];
    }
    for (const char *role : {"Starting_Event", "Loss_Of_Control", "Terminating_Event", "Loss"})
        QCOMPARE(roles.value(role), 1);
    QVERIFY(roles.value("Event") >= 2);
    QVERIFY(lines >= 6);
}

void TestSupportFiles::quickStartFitsOnePage()
{
    const QRectF page(0, 0, 1606, 1030), header(0, 0, 800, 140);
    const QRectF legend(800, 960, 806, 70);
    for (const CanvasItemInfo &info : readQuickStart()) {
        if (info.type == 8)
            continue;
        const QRectF note(info.startPoint, info.size);
        QVERIFY(page.contains(note));
        QVERIFY(!note.intersects(header) && !note.intersects(legend));
        QCOMPARE(int(note.x()) % 20 + int(note.y()) % 20, 0);
    }
}

void TestSupportFiles::collections_data()
{
    QTest::addColumn<QString>("collection");
    QTest::addColumn<QString>("help");

    QTest::newRow("form") << "/formdata.qhc"
                          << "/formdata.qch";
    QTest::newRow("help") << "/helpcollection2.qhc"
                          << "/examinerhelp2.qch";
}

void TestSupportFiles::collections()
{
    QFETCH(QString, collection);
    QFETCH(QString, help);

    copySupportFiles({help, collection});
    const auto read = [&] {
        QFile file(makeDataFolder() + collection);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    const QByteArray before = read();
    {
        QHelpEngine engine(makeDataFolder() + collection);
        QVERIFY2(engine.setupData(), qPrintable(engine.error()));
        const QList<QHelpLink> links = engine.documentsForIdentifier("index");
        QCOMPARE(links.size(), 1);
        QVERIFY(engine.fileData(links.first().url).contains("<h1>"));
    }
    // A rewritten copy would be replaced at each start, and an unregistered page stay away.
    QVERIFY(read() == before);
}

void TestSupportFiles::linksLeadSomewhere_data()
{
    collections_data();
}

void TestSupportFiles::linksLeadSomewhere()
{
    QFETCH(QString, collection);
    QFETCH(QString, help);

    copySupportFiles({help, collection});
    QHelpEngine engine(makeDataFolder() + collection);
    QVERIFY(engine.setupData());
    const QRegularExpression link("(?:href|src)=\"([^\"#]+)\"");
    const QString name = engine.registeredDocumentations().value(0);
    int pages = 0;
    for (const QUrl &page : engine.files(name, QString(), "html")) {
        ++pages;
        const QString text = QString::fromUtf8(engine.fileData(page));
        for (auto i = link.globalMatch(text); i.hasNext();) {
            const QUrl target = page.resolved(QUrl(i.next().captured(1)));
            QVERIFY2(!engine.fileData(target).isEmpty(), qPrintable(target.toString()));
        }
    }
    QVERIFY(pages > 0);
}

EXAMINER_TEST_MAIN(TestSupportFiles)

#include "testsupportfiles.moc"
