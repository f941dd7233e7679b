#include "testing/testmain.h"

#include <QFile>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

/// Every compiled-in path that the program names, with its size in pixels.
class TestResources : public QObject
{
    Q_OBJECT

private slots:
    void picture_data();
    void picture();
    void actionIcon_data();
    void actionIcon();
    void barrier_data();
    void barrier();
    void headerTemplate();
};

/// How much of a picture is drawn, from 0 (empty) to 1 (every pixel opaque).
static double getCoverage(const QImage &picture)
{
    qint64 alpha = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            alpha += qAlpha(picture.pixel(x, y));
    return alpha / (255.0 * picture.width() * picture.height());
}

void TestResources::picture_data()
{
    QTest::addColumn<QSize>("size");

    for (const char *name :
         {"document-new", "tools_wizard", "document-open", "system-software-update"})
        QTest::addRow(":/images/48/%s.png", name) << QSize(48, 48);
    for (const char *name : {"hand", "note", "note-small", "sequence", "image-png", "failedBarrier",
                             "newBarrier", "improvedBarrier", "barrierWorked"})
        QTest::addRow(":/images/32/%s.png", name) << QSize(32, 32);
    for (const char *name : {"arrow", "line", "arrowtool", "straightline"})
        QTest::addRow(":/images/%s.png", name) << QSize(32, 32);
    QTest::newRow(":/images/16/icon_16.png") << QSize(16, 16);
    QTest::newRow(":/images/icon_48.png") << QSize(48, 48);
    QTest::newRow(":/images/tracexlogo.png") << QSize(300, 100);
    QTest::newRow(":/images/tracexlogo2.png") << QSize(480, 200);
    QTest::newRow(":/images/why.png") << QSize(100, 75);
}

void TestResources::picture()
{
    QFETCH(QSize, size);
    const QImage picture(QTest::currentDataTag());

    QCOMPARE(picture.size(), size);
    QVERIFY(picture.hasAlphaChannel());
    QVERIFY(getCoverage(picture) > 0.03);

    const QString dense = QString(QTest::currentDataTag()).replace(".png", "@2x.png");
    QCOMPARE(QImage(dense).size(), size * 2);
}

void TestResources::actionIcon_data()
{
    QTest::addColumn<QString>("name");

    for (const char *name : {"document-new",
                             "document-open",
                             "tools_wizard",
                             "document-save",
                             "document-save-as",
                             "document-print",
                             "document-export",
                             "image-png",
                             "application-exit",
                             "edit-undo",
                             "edit-redo",
                             "edit-copy",
                             "edit-paste",
                             "edit-delete",
                             "configure",
                             "decrypted",
                             "encrypted",
                             "help-contents",
                             "choose-font",
                             "choose-item-color",
                             "choose-text-color",
                             "format-justify-left",
                             "format-justify-center",
                             "format-justify-fill",
                             "format-justify-vcenter",
                             "format-justify-top",
                             "word-icon",
                             "zoom-original",
                             "zoom-in",
                             "zoom-out"})
        QTest::newRow(name) << name;
}

void TestResources::actionIcon()
{
    QFETCH(QString, name);
    for (int size : {16, 22, 32}) {
        const QString path = QString(":/images/%1/%2.png").arg(size).arg(name);
        const QImage picture(path);
        QCOMPARE(picture.size(), QSize(size, size));
        QVERIFY2(getCoverage(picture) > 0.1, qPrintable(path));
    }
}

void TestResources::barrier_data()
{
    QTest::addColumn<QColor>("color");

    QTest::newRow("failedBarrier") << QColor("#EB2627");
    QTest::newRow("improvedBarrier") << QColor("#45B649");
    QTest::newRow("newBarrier") << QColor("#374B9D");
    QTest::newRow("barrierWorked") << QColor("#1D7F86");
}

void TestResources::barrier()
{
    QFETCH(QColor, color);
    QSvgRenderer renderer(QString(":/images/%1.svg").arg(QTest::currentDataTag()));
    QVERIFY(renderer.isValid());
    QVERIFY(qAbs(renderer.viewBoxF().width() - 13.8) < 0.1);
    QVERIFY(qAbs(renderer.viewBoxF().height() - 60.6) < 0.1);

    QImage drawn(17, 82, QImage::Format_ARGB32_Premultiplied);
    drawn.fill(Qt::transparent);
    QPainter painter(&drawn);
    renderer.render(&painter);
    painter.end();
    // A place that no break, stripe or mark touches.
    QCOMPARE(drawn.pixelColor(5, 5), color);
    const bool isBroken = drawn.pixelColor(8, 41).alpha() == 0;
    QCOMPARE(isBroken, QByteArray(QTest::currentDataTag()) == "failedBarrier");
}

void TestResources::headerTemplate()
{
    QFile file(":/formdata/header_template.html");
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray html = file.readAll();
    for (const char *id : {"contentElement", "incidentTitle", "incidentDate", "fileNumber", "mrph",
                           "incidentType", "examinerName"})
        QVERIFY2(html.count(QByteArray("id=\"") + id + '"') == 1, id);

    const QImage blank(":/images/blank.png");
    QCOMPARE(blank.size(), QSize(16, 16));
    QCOMPARE(getCoverage(blank), 0.0);
}

EXAMINER_TEST_MAIN(TestResources)
#include "testresources.moc"
