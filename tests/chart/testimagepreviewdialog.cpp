#include "chart/imagepreviewdialog.h"
#include "testing/dialogs.h"
#include "testing/testmain.h"

#include <QClipboard>
#include <QImageReader>
#include <QLabel>
#include <QPushButton>
#include <QScreen>

class TestImagePreviewDialog : public QObject
{
    Q_OBJECT

private slots:
    void titleTellsTheScale_data();
    void titleTellsTheScale();
    void copyTakesTheFullPicture();
    void save_data();
    void save();
    void failedSaveIsTold();
    void closeAccepts();

private:
    void saveAs(ImagePreviewDialog &dialog, const QString &path);

    QTemporaryDir folder;
};

namespace
{

QPixmap makePicture(QSize size)
{
    QPixmap picture(size);
    picture.fill(Qt::darkCyan);
    return picture;
}

QSize getLimits()
{
    return QGuiApplication::primaryScreen()->geometry().size() - QSize(50, 100);
}

} // namespace

void TestImagePreviewDialog::titleTellsTheScale_data()
{
    const QSize limits = getLimits();
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("shown");
    QTest::addColumn<QString>("title");

    QTest::newRow("fits") << limits << limits << "Image Preview";
    QTest::newRow("a pixel too wide")
        << limits + QSize(1, -300) << QSize(limits.width(), limits.height() - 300)
        << "Image Preview (99%)";
    QTest::newRow("too high") << QSize(100, limits.height() * 2) << QSize(50, limits.height())
                              << "Image Preview (50%)";
}

void TestImagePreviewDialog::titleTellsTheScale()
{
    QFETCH(QSize, size);
    QFETCH(QSize, shown);
    QFETCH(QString, title);

    ImagePreviewDialog dialog(nullptr, makePicture(size));
    QCOMPARE(dialog.windowTitle(), title);
    const QSize found = dialog.findChild<QLabel *>("imageLabel")->pixmap(Qt::ReturnByValue).size();
    QVERIFY(qAbs(found.width() - shown.width()) <= 1 && qAbs(found.height() - shown.height()) <= 1);
}

void TestImagePreviewDialog::copyTakesTheFullPicture()
{
    const QSize size = getLimits() * 2;
    ImagePreviewDialog dialog(nullptr, makePicture(size));
    auto *copy = dialog.findChild<QPushButton *>("copyButton");
    QCOMPARE(copy->text(), QString("Copy to clipboard"));
    QVERIFY(!copy->icon().isNull());
    copy->click();
    QCOMPARE(QGuiApplication::clipboard()->pixmap().size(), size);
}

void TestImagePreviewDialog::saveAs(ImagePreviewDialog &dialog, const QString &path)
{
    DialogAnswer answer(fileChoice(path));
    dialog.findChild<QPushButton *>("saveButton")->click();
    QVERIFY(answer.wasAsked());
}

void TestImagePreviewDialog::save_data()
{
    QTest::addColumn<QString>("saved");
    QTest::addColumn<QByteArray>("format");

    QTest::newRow("plain.png") << "plain.png" << QByteArray("png");
    QTest::newRow("photo.jpg") << "photo.jpg" << QByteArray("jpeg");
    QTest::newRow("none") << "none.jpg" << QByteArray("jpeg");
    QTest::newRow("upper.PNG") << "upper.PNG.jpg" << QByteArray("jpeg");
    QTest::newRow("Brücke.jpeg") << "Brücke.jpeg.jpg" << QByteArray("jpeg");
}

void TestImagePreviewDialog::save()
{
    QFETCH(QString, saved);
    QFETCH(QByteArray, format);

    const QSize size = getLimits() + QSize(200, 0);
    ImagePreviewDialog dialog(nullptr, makePicture(size));
    saveAs(dialog, folder.filePath(QString::fromUtf8(QTest::currentDataTag())));
    QImageReader reader(folder.filePath(saved));
    reader.setDecideFormatFromContent(true);
    QCOMPARE(reader.format(), format);
    QCOMPARE(reader.size(), size);
}

void TestImagePreviewDialog::failedSaveIsTold()
{
    ImagePreviewDialog dialog(nullptr, makePicture(QSize(10, 10)));
    QVERIFY(QDir(folder.path()).mkpath("taken.jpg"));
    BoxAnswer box(QMessageBox::Ok);
    saveAs(dialog, folder.filePath("taken"));
    QCOMPARE(box.title, QString("Save failed"));
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(box.text, QString("Saving the image failed.\n"
                               "Check if you have write permissions to this folder."));
}

void TestImagePreviewDialog::closeAccepts()
{
    ImagePreviewDialog dialog(nullptr, makePicture(QSize(10, 10)));
    QCOMPARE(dialog.findChild<QPushButton *>("saveButton")->text(), QString("Save image as..."));
    dialog.findChild<QPushButton *>("closeButton")->click();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

EXAMINER_TEST_MAIN(TestImagePreviewDialog)
#include "testimagepreviewdialog.moc"
