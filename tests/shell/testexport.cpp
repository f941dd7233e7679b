#include "shell/exportdialog.h"
#include "support/pageinfo.h"
#include "testing/dialogs.h"
#include "testing/window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QImageReader>

/// The window's exports, its settings and the choice of sheets. All tests share one window.
class TestExport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();
    void names_data();
    void names();
    void pagePictureBearsTheOtherEnding_data();
    void pagePictureBearsTheOtherEnding();
    void areas_data();
    void areas();
    void nothingSelected();
    void currentPageIsThatOfTheMainView();
    void document();
    void metafileIsAskedForAndNotWritten();
    void cancelled();
    void unwritableTargetIsSilent();
    void settingsReachEverySheet();
    void printFlags();

private:
    QString path(const QString &name) const { return folder->filePath(name); }
    void exportThroughDialog(const QString &format, const QString &area, const QString &name);

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<TestWindow> tw;
};

void TestExport::initTestCase()
{
    tw = std::make_unique<TestWindow>();
}

void TestExport::init()
{
    folder = std::make_unique<QTemporaryDir>();
    QSettings().clear();
    tw->empty();
}

void TestExport::cleanupTestCase()
{
    tw.reset();
}

void TestExport::exportThroughDialog(const QString &format, const QString &area,
                                     const QString &name)
{
    DialogAnswer choice([&](QWidget *widget) {
        auto *dialog = qobject_cast<ExportDialog *>(widget);
        if (!dialog)
            return false;
        dialog->findChild<QComboBox *>("formatCombo")->setCurrentText(format);
        dialog->findChild<QComboBox *>("areaCombo")->setCurrentText(area);
        dialog->accept();
        return true;
    });
    DialogAnswer answer(fileChoice(path(name)));
    tw->action("Export...")->trigger();
    QVERIFY(choice.wasAsked() && answer.wasAsked());
}

void TestExport::names_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("written");

    QTest::newRow("picture without ending") << "PNG Image"
                                            << "x"
                                            << "x.png";
    QTest::newRow("picture in capitals") << "PNG Image"
                                         << "x.PNG"
                                         << "x.PNG";
    QTest::newRow("picture with another ending") << "PNG Image"
                                                 << "x.pdf"
                                                 << "x.pdf.png";
    QTest::newRow("document without ending") << "PDF Document"
                                             << "x"
                                             << "x.pdf";
    QTest::newRow("document with its ending") << "PDF Document"
                                              << "x.pdf"
                                              << "x.pdf";
}

void TestExport::names()
{
    QFETCH(QString, format);
    QFETCH(QString, typed);
    QFETCH(QString, written);
    tw->addNote("Event", QPointF(200, 200));
    exportThroughDialog(format, "Entire Chart", typed);
    QCOMPARE(QDir(folder->path()).entryList(QDir::Files), QStringList(written));
    QCOMPARE(QSettings().value("lastExportPath").toString(), folder->path());
}

void TestExport::pagePictureBearsTheOtherEnding_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("written");

    QTest::newRow("own ending") << "x.png"
                                << "x.png.pdf";
    QTest::newRow("the other one") << "x.pdf"
                                   << "x.pdf";
}

/// The ending is that of the dialog that never came up.
void TestExport::pagePictureBearsTheOtherEnding()
{
    QFETCH(QString, typed);
    QFETCH(QString, written);
    DialogAnswer answer(fileChoice(path(typed)));
    tw->action("Save page as PNG image...")->trigger();
    QVERIFY(answer.wasAsked());
    QImageReader reader(path(written), "PNG");
    QCOMPARE(reader.size(), tw->chart()->getPageSize());
}

void TestExport::areas_data()
{
    QTest::addColumn<QString>("area");
    QTest::addColumn<QSize>("expected");
    const QSize page = tw->chart()->getPageSize();

    // A chart of two pages, its margin included.
    QTest::newRow("entire") << "Entire Chart" << QSize(2 * page.width() + 20, page.height() + 20);
    QTest::newRow("page") << "Current Page" << page;
}

void TestExport::areas()
{
    QFETCH(QString, area);
    QFETCH(QSize, expected);
    tw->addNote("Event", QPointF(tw->chart()->getPageSize().width() + 200, 200));
    tw->chart()->checkCanvasSize();
    exportThroughDialog("PNG Image", area, "x.png");
    QCOMPARE(QImageReader(path("x.png")).size(), expected);
}

void TestExport::nothingSelected()
{
    tw->addNote("Event", QPointF(200, 200));
    exportThroughDialog("PNG Image", "Selected Items", "x.png");
    QVERIFY(!QFileInfo(path("x.png")).size());

    Sticky *note = tw->addNote("Event", QPointF(400, 300));
    note->setSelected(true);
    const QSize size = note->sceneBoundingRect().adjusted(-2, -2, 2, 2).size().toSize();
    exportThroughDialog("PNG Image", "Selected Items", "y.png");
    QCOMPARE(QImageReader(path("y.png")).size(), size);
    QVERIFY(tw->chart()->selectedItems().isEmpty());
}

void TestExport::currentPageIsThatOfTheMainView()
{
    const QSize page = tw->chart()->getPageSize();
    tw->makeFactor(tw->addNote("Event", QPointF(page.width() + 200, 200)));
    tw->chart()->checkCanvasSize();
    QCoreApplication::processEvents();
    tw->view()->centerOn(page.width() * 1.5, 200);
    ProjectScene *sheet = tw->window.getFactorScenes().first();
    CanvasItemInfo red;
    red.type = NoteItemType;
    red.startPoint = QPointF(page.width() + 100, 100);
    red.size = QSizeF(120, 80);
    red.backgroundColor = Qt::red;
    sheet->loadCanvasItem(red);
    tw->tabs->setCurrentIndex(2);
    QTRY_COMPARE(tw->window.getCurrentScene(), sheet);

    exportThroughDialog("PNG Image", "Current Page", "x.png");
    QCOMPARE(QImage(path("x.png")).pixelColor(130, 110), QColor(Qt::red));
}

void TestExport::document()
{
    tw->makeFactor(tw->addNote("Event", QPointF(200, 200)));
    exportThroughDialog("PDF Document", "Entire Chart", "x.pdf");
    QFile file(path("x.pdf"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray pdf = file.readAll();
    QVERIFY(pdf.startsWith("%PDF"));
    QVERIFY(pdf.contains("/Count 2"));
}

void TestExport::metafileIsAskedForAndNotWritten()
{
    QString title;
    DialogAnswer answer([&](QWidget *widget) {
        title = widget->windowTitle();
        return fileChoice(path("x.emf"))(widget);
    });
    tw->window.onExportClicked(false, ExportDialog::EMF);
    QVERIFY(answer.wasAsked());
    QCOMPARE(title, QString("Export to Microsoft Office (EMF)..."));
    QVERIFY(QDir(folder->path()).isEmpty());
    QCOMPARE(QSettings().value("lastExportPath").toString(), folder->path());
}

void TestExport::cancelled()
{
    DialogAnswer dialog(cancellation());
    tw->action("Export...")->trigger();
    QVERIFY(dialog.wasAsked());
    DialogAnswer file(cancellation());
    tw->window.saveCurrentPagePNG();
    QVERIFY(file.wasAsked());
    QVERIFY(!QSettings().contains("lastExportPath"));
}

void TestExport::unwritableTargetIsSilent()
{
    tw->window.exportPNG(path("missing/x.png"), QRectF(0, 0, 10, 10));
    tw->window.exportPDF(path("missing/x.pdf"), QRectF());
    tw->window.exportEMF(path("x.emf"), QRectF(0, 0, 10, 10));
    QVERIFY(QDir(folder->path()).isEmpty());
    QVERIFY(!QApplication::activeModalWidget());
}

void TestExport::settingsReachEverySheet()
{
    tw->makeFactor(tw->addNote("Event", QPointF(200, 200)));
    ProjectScene *sheet = tw->window.getFactorScenes().first();
    DialogAnswer answer([](QWidget *widget) {
        auto *dialog = qobject_cast<QDialog *>(widget);
        auto *paper = widget->findChild<QComboBox *>("paperSizeCombo");
        if (!paper)
            return false;
        paper->setCurrentText("A4");
        dialog->accept();
        return true;
    });
    tw->action("&Project Settings")->trigger();
    QVERIFY(answer.wasAsked());
    const QSize size = PageInfo().getPrintableArea().size();
    QVERIFY(size.width() < 1200);
    QCOMPARE(tw->chart()->getPageSize(), size);
    QCOMPARE(sheet->getPageSize(), size);
}

void TestExport::printFlags()
{
    tw->makeFactor(tw->addNote("Event", QPointF(200, 200)));
    tw->chart()->setPrintEnabled(false);
    DialogAnswer answer([](QWidget *widget) {
        auto *box = widget->findChild<QCheckBox *>("ecsChartCheckbox");
        if (!box)
            return false;
        qobject_cast<QDialog *>(widget)->accept();
        return true;
    });
    tw->action("Print Setup")->trigger();
    QVERIFY(answer.wasAsked());
    QVERIFY(tw->chart()->isPrintEnabled());
    QVERIFY(tw->window.getFactorScenes().first()->isPrintEnabled());
}

EXAMINER_TEST_MAIN(TestExport)
#include "testexport.moc"
