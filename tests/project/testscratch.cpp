#include "project/projectfile.h"
#include "projecttesting.h"
#include "testmain.h"
class TestScratch : public QObject
{
    Q_OBJECT
private slots:
    void run()
    {
        QDir dir("/tmp/hp/samples");
        for (const QString &name : dir.entryList({"*.epf"})) {
            const QString path = dir.filePath(name);
            const QByteArray before = readBytes(path);
            TestProject p;
            bool ok = p.open(path);
            bool same = readBytes(path) == before;
            fprintf(stderr, "### %s open=%d items=%d records=%d form=%d untouched=%d err=%s\n",
                    qPrintable(name), ok, p.items.size(), int(p.records.size()),
                    p.formValues.size(), same, qPrintable(p.file.getLastError()));
            if (!ok)
                continue;
            QString q = "SELECT * FROM items; ";
            auto all = [&] {
                return readRows(path, "SELECT * FROM items") +
                       readRows(path, "SELECT * FROM properties WHERE guid<>'project'") +
                       readRows(path, "SELECT * FROM connections") +
                       readRows(path, "SELECT id,value FROM formdata");
            };
            QStringList a = all();
            bool saved = p.save(path);
            QStringList b = all();
            fprintf(stderr, "   saved=%d err=%s same=%d\n", saved,
                    qPrintable(p.file.getLastError()), a == b);
            if (a != b) {
                for (auto &r : a)
                    if (!b.contains(r))
                        fprintf(stderr, "   - %s\n", qPrintable(r.left(150)));
                for (auto &r : b)
                    if (!a.contains(r))
                        fprintf(stderr, "   + %s\n", qPrintable(r.left(150)));
            }
        }
    }
};
EXAMINER_TEST_MAIN(TestScratch)
#include "testscratch.moc"
