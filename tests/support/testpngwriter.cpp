#include "output/pngwriter.h"
#include "testing/testmain.h"

class TestPngWriter : public QObject
{
    Q_OBJECT

private slots:
    void bandsBecomeOnePicture();
    void failuresAreTold();
};

void TestPngWriter::bandsBecomeOnePicture()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("picture.png");
    QImage whole(70, 50, QImage::Format_RGB32);
    for (int y = 0; y < whole.height(); ++y) {
        for (int x = 0; x < whole.width(); ++x)
            whole.setPixel(x, y, qRgb(x * 3, y * 5, x ^ y));
    }

    PngWriter writer(path);
    QVERIFY(writer.begin(whole.size()));
    for (int top = 0; top < whole.height(); top += 20)
        QVERIFY(writer.writeRows(whole.copy(0, top, 70, qMin(20, whole.height() - top))));
    QVERIFY(writer.end());

    QImage read(path, "PNG");
    QCOMPARE(read.convertToFormat(QImage::Format_RGB32), whole);
}

void TestPngWriter::failuresAreTold()
{
    QTemporaryDir folder;
    QVERIFY(!PngWriter(folder.filePath("no/such/folder.png")).begin(QSize(10, 10)));

    QVERIFY(!PngWriter(folder.filePath("empty.png")).begin(QSize(0, 10)));
    QVERIFY(!QFile::exists(folder.filePath("empty.png")));

    // A picture that lacks rows is no success.
    PngWriter unfinished(folder.filePath("short.png"));
    QVERIFY(unfinished.begin(QSize(10, 10)));
    QVERIFY(unfinished.writeRows(QImage(10, 4, QImage::Format_RGB32)));
    QVERIFY(!unfinished.end());

    PngWriter full("/dev/full");
    QImage noise(200, 200, QImage::Format_RGB32);
    for (int y = 0; y < noise.height(); ++y) {
        for (int x = 0; x < noise.width(); ++x)
            noise.setPixel(x, y, qRgb((x * 7919 + y * 104729) % 251, x * y % 241, x * x % 239));
    }
    QVERIFY(full.begin(noise.size()));
    QVERIFY(!(full.writeRows(noise) && full.end()));
}

EXAMINER_TEST_MAIN(TestPngWriter)

#include "testpngwriter.moc"
