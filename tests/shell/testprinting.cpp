#include "output/sheetprinter.h"
#include "support/pageinfo.h"
#include "testing/sheet.h"

#include <QPainter>
#include <QPrinter>

/// Sheets on paper, without a window. A page of these charts is that of the settings.
class TestPrinting : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void pages_data();
    void pages();
    void factorSheets_data();
    void factorSheets();
    void largerFactorSheetIsCutOff();
    void textStaysText();
    void marginsPlaceThePage();
    void paperIsThatOfTheSheets_data();
    void paperIsThatOfTheSheets();
    void selectionIsClearedAndBackgroundComesBack();
    void unwritableTarget();
    void pictureOfAnArea();
    void pictureThatCannotBe();

private:
    QSize pageSize() const { return PageInfo().getPrintableArea().size(); }
    QString makePDF(ProjectScene *chart, const QList<ProjectScene *> &factors = {});
    int countPages(const QString &path) const;
    /// In the middle of a page, counted from 0.
    void addNoteOnPage(Sheet &sheet, int row, int column) const;

    std::unique_ptr<QTemporaryDir> folder;
};

void TestPrinting::init()
{
    folder = std::make_unique<QTemporaryDir>();
    QSettings().clear();
}

QString TestPrinting::makePDF(ProjectScene *chart, const QList<ProjectScene *> &factors)
{
    QPrinter printer(QPrinter::ScreenResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(folder->filePath("x.pdf"));
    SheetPrinter::setUpPage(printer);
    return SheetPrinter::paint(printer, chart, factors) ? printer.outputFileName() : QString();
}

int TestPrinting::countPages(const QString &path) const
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    return file.readAll().count("/Type /Page\n");
}

void TestPrinting::addNoteOnPage(Sheet &sheet, int row, int column) const
{
    const QPointF middle((column + 0.5) * pageSize().width(), (row + 0.5) * pageSize().height());
    sheet.addNote(QRectF(middle, QSizeF(120, 80)), "Event", "Note");
}

void TestPrinting::pages_data()
{
    using Cells = QList<QPair<int, int>>;
    QTest::addColumn<Cells>("cells");
    QTest::addColumn<int>("expected");

    QTest::newRow("an empty chart is one blank sheet") << Cells() << 1;
    QTest::newRow("one page") << Cells({{0, 0}}) << 1;
    QTest::newRow("a full row") << Cells({{0, 0}, {0, 1}}) << 2;
    QTest::newRow("an empty first page costs nothing") << Cells({{0, 1}}) << 1;
    QTest::newRow("an empty middle page costs nothing") << Cells({{0, 0}, {0, 2}}) << 2;
    QTest::newRow("an empty last cell leaves a blank sheet") << Cells({{0, 1}, {1, 0}}) << 3;
}

void TestPrinting::pages()
{
    using Cells = QList<QPair<int, int>>;
    QFETCH(Cells, cells);
    Sheet sheet(pageSize());
    for (const auto &cell : cells)
        addNoteOnPage(sheet, cell.first, cell.second);
    const QString pdf = makePDF(&sheet.scene);
    QTEST(countPages(pdf), "expected");
}

void TestPrinting::factorSheets_data()
{
    QTest::addColumn<bool>("chartOn");
    QTest::addColumn<bool>("factorOn");
    QTest::addColumn<int>("expected");

    QTest::newRow("both") << true << true << 2;
    QTest::newRow("the chart alone") << true << false << 1;
    QTest::newRow("a factor alone follows a blank sheet") << false << true << 2;
    QTest::newRow("none") << false << false << 1;
}

void TestPrinting::factorSheets()
{
    QFETCH(bool, chartOn);
    QFETCH(bool, factorOn);
    Sheet chart(pageSize());
    Sheet factor(pageSize());
    addNoteOnPage(chart, 0, 0);
    addNoteOnPage(factor, 0, 0);
    chart.scene.setPrintEnabled(chartOn);
    factor.scene.setPrintEnabled(factorOn);
    const QString pdf = makePDF(&chart.scene, {&factor.scene});
    QTEST(countPages(pdf), "expected");
}

void TestPrinting::largerFactorSheetIsCutOff()
{
    Sheet chart(pageSize());
    Sheet factor(pageSize());
    addNoteOnPage(chart, 0, 0);
    addNoteOnPage(factor, 0, 0);
    addNoteOnPage(factor, 2, 2);
    QCOMPARE(countPages(makePDF(&chart.scene, {&factor.scene})), 2);
}

void TestPrinting::textStaysText()
{
    Sheet sheet(pageSize());
    addNoteOnPage(sheet, 0, 0);
    QFile file(makePDF(&sheet.scene));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray pdf = file.readAll();
    QVERIFY(pdf.contains("/Type /Font"));
    QVERIFY(!pdf.contains("/Subtype /Image"));
}

/// The place below the top edge is that of the right margin.
void TestPrinting::marginsPlaceThePage()
{
    QSettings().setValue("margins", QStringList({"1", "3", "2", "2"}));
    Sheet sheet(pageSize());
    sheet.addNote(QRectF(0, 0, 120, 80))->setCustomBackgroundColor(Qt::red);
    QPrinter printer(QPrinter::ScreenResolution);
    SheetPrinter::setUpPage(printer);
    const QSize paper = printer.pageLayout().fullRectPixels(printer.resolution()).size();
    QImage image(paper, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    SheetPrinter::paintScene(&sheet.scene, painter, printer, 1, 1);
    painter.end();

    const int left = int(1 / 2.54 * printer.resolution());
    const int top = int(3 / 2.54 * printer.resolution());
    QCOMPARE(image.pixelColor(left + 30, top + 10), QColor(Qt::red));
    QCOMPARE(image.pixelColor(left - 3, top + 10), QColor(Qt::white));
    QCOMPARE(image.pixelColor(left + 30, top - 3), QColor(Qt::white));
}

void TestPrinting::paperIsThatOfTheSheets_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("A3") << 8;
    QTest::newRow("no paper has the number") << 999;
    QTest::newRow("a size without a size") << int(QPageSize::Custom);
    QTest::newRow("negative") << -1;
}

/// On smaller paper the last pages of the grid would be missing.
void TestPrinting::paperIsThatOfTheSheets()
{
    QFETCH(int, number);
    QSettings().setValue("pageSize", number);
    QSettings().setValue("margins", QStringList({"0", "0", "0", "0"}));
    QPrinter printer(QPrinter::ScreenResolution);
    SheetPrinter::setUpPage(printer);
    QCOMPARE(printer.pageLayout().fullRectPixels(printer.resolution()).size(), pageSize());
}

void TestPrinting::selectionIsClearedAndBackgroundComesBack()
{
    Sheet sheet(pageSize());
    addNoteOnPage(sheet, 0, 0);
    sheet.scene.selectAll();
    QVERIFY(!makePDF(&sheet.scene).isEmpty());
    QVERIFY(sheet.scene.selectedItems().isEmpty());
    int footers = 0;
    for (QGraphicsItem *item : sheet.scene.items())
        footers += item->type() == ProjectItem::FooterType && item->isVisible();
    QCOMPARE(footers, 1);
}

void TestPrinting::unwritableTarget()
{
    Sheet sheet(pageSize());
    QPrinter printer(QPrinter::ScreenResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(folder->filePath("missing/x.pdf"));
    QVERIFY(!SheetPrinter::paint(printer, &sheet.scene, {}));
}

void TestPrinting::pictureOfAnArea()
{
    Sheet sheet(pageSize());
    sheet.addNote(QRectF(100, 100, 120, 80))->setCustomBackgroundColor(Qt::red);
    const QString path = folder->filePath("x.png");
    QVERIFY(SheetPrinter::writePNG(&sheet.scene, QRectF(90.4, 90.4, 199.6, 100.4), path));
    const QImage image(path);
    QCOMPARE(image.size(), QSize(200, 100));
    QCOMPARE(image.pixelColor(40, 20), QColor(Qt::red));
    // Neither the grid nor the page's frame.
    QCOMPARE(image.pixelColor(195, 95), QColor(Qt::white));
}

void TestPrinting::pictureThatCannotBe()
{
    Sheet sheet(pageSize());
    QVERIFY(!SheetPrinter::writePNG(&sheet.scene, QRectF(), folder->filePath("x.png")));
    QVERIFY(
        !SheetPrinter::writePNG(&sheet.scene, QRectF(0, 0, 10, 10), folder->filePath("no/x.png")));
}

EXAMINER_TEST_MAIN(TestPrinting)
#include "testprinting.moc"
