#include "output/pngwriter.h"
#include "output/sheetprinter.h"
#include "output/wordxmlexport.h"
#include "sheet/footeritem.h"
#include "sheet/headeritem.h"
#include "shell/pagesetupdialog.h"
#include "support/pageinfo.h"
#include "testing/rows.h"
#include "testing/sheet.h"

#include <QCheckBox>
#include <QGraphicsProxyWidget>
#include <QLabel>
#include <QListWidget>
#include <QPrinter>
#include <QWebElement>
#include <QWebFrame>
#include <QWebPage>

#include <csignal>
#include <memory>
#include <sys/resource.h>

/// Sheets, header and footer on paper and in pictures.
class TestPaper : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QSettings().clear();
        folder = std::make_unique<QTemporaryDir>();
    }

    void badMarginsCountAsNotSet()
    {
        const QString derived = PageInfo().getMarginsString();
        QCOMPARE(PageInfo().getPrintableArea().size(), QSize(1606, 1030));
        const QStringList rows[] = {{"1", "2", "3"},          {"-1", "1", "1", "1"},
                                    {"30", "30", "1", "1"},   {"1", "1", "14", "13.9"},
                                    {"1e300", "1", "1", "1"}, {"1", "inf", "1", "1"},
                                    {"1", "1", "nan", "1"}};
        for (const QStringList &margins : rows) {
            QSettings().setValue("margins", margins);
            QCOMPARE(PageInfo().getMarginsString(), derived);
        }
        QSettings().setValue("margins", QStringList({"0", "2", "1", "3"}));
        // At 96 to the inch 1, 2 and 3 cm are 37, 75 and 113 whole pixels.
        QCOMPARE(PageInfo().getPrintableArea(), QRect(0, 75, 1632 - 75, 1056 - 37 - 113));
    }

    void paperIsThatOfTheSheets()
    {
        QSettings().setValue("margins", QStringList({"0", "0", "0", "0"}));
        for (int number : {8, 2, 999, -1, int(QPageSize::Custom)}) {
            QSettings().setValue("pageSize", number);
            QPrinter printer(QPrinter::ScreenResolution);
            SheetPrinter::setUpPage(printer);
            QCOMPARE(printer.pageLayout().fullRectPixels(printer.resolution()).size(), pageSize());
        }
    }

    void pages()
    {
        const struct {
            const char *name;
            QList<QPoint> filled; // column and row
            int expected;
        } rows[] = {
            {"an empty chart is one blank sheet", {}, 1},
            {"a full row", {{0, 0}, {1, 0}}, 2},
            {"an empty first page costs nothing", {{1, 0}}, 1},
            {"an empty middle page costs nothing", {{0, 0}, {2, 0}}, 2},
            {"an empty last cell leaves a blank sheet", {{1, 0}, {0, 1}}, 3},
        };
        for (const auto &row : rows) {
            const Row in(row.name);
            Sheet sheet(pageSize());
            fill(sheet, row.filled);
            QCOMPARE(countPages(sheet.scene, {}), row.expected);
        }
    }

    void factorSheets()
    {
        const struct {
            const char *name;
            bool chart, factor;
            int expected;
        } rows[] = {
            {"cut off at the main sheet's pages", true, true, 2},
            {"the chart alone", true, false, 1},
            {"a factor alone follows a blank sheet", false, true, 2},
            {"none", false, false, 1},
        };
        Sheet chart(pageSize()), factor(pageSize());
        fill(chart, {{0, 0}});
        fill(factor, {{0, 0}, {2, 2}});
        for (const auto &row : rows) {
            const Row in(row.name);
            chart.scene.setPrintEnabled(row.chart);
            factor.scene.setPrintEnabled(row.factor);
            QCOMPARE(countPages(chart.scene, {&factor.scene}), row.expected);
        }

        // The box of the main sheet opens checked, the list shows the flags.
        chart.scene.setPrintEnabled(false);
        PageSetupDialog dialog(&chart.program);
        Sheet owner;
        ProjectScene listed(&chart.program, &chart.group, nullptr, nullptr, pageSize(),
                            owner.addFactor(3));
        chart.program.scenes.append(&listed);
        listed.setPrintEnabled(false);
        dialog.setCausalFactorCharts({&listed});
        QListWidgetItem *item = dialog.findChild<QListWidget *>()->item(0);
        QCOMPARE(item->text(), QString("Causal Factor 3"));
        QCOMPARE(item->checkState(), Qt::Unchecked);
        item->setCheckState(Qt::Checked);
        dialog.accept();
        QVERIFY(listed.isPrintEnabled() && chart.scene.isPrintEnabled());
    }

    /// The place below the top edge is that of the right margin.
    void marginsPlaceThePage()
    {
        QSettings().setValue("margins", QStringList({"1", "3", "2", "2"}));
        Sheet sheet(pageSize());
        sheet.addNote(QRectF(0, 0, 120, 80))->setCustomBackgroundColor(Qt::red);
        sheet.scene.selectAll();
        QPrinter printer(QPrinter::ScreenResolution);
        SheetPrinter::setUpPage(printer);
        QImage image(printer.pageLayout().fullRectPixels(printer.resolution()).size(),
                     QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        SheetPrinter::paintScene(&sheet.scene, painter, printer, 1, 1);
        const int left = int(1 / 2.54 * printer.resolution());
        const int top = int(3 / 2.54 * printer.resolution());
        QCOMPARE(image.pixelColor(left + 30, top + 10), QColor(Qt::red));
        QCOMPARE(image.pixelColor(left - 3, top + 10), QColor(Qt::white));
        QCOMPARE(image.pixelColor(left + 30, top - 3), QColor(Qt::white));
        QVERIFY(sheet.scene.selectedItems().isEmpty());
    }

    void pictures()
    {
        // Higher than two bands, with a line across where they meet.
        Sheet sheet(pageSize());
        sheet.addNote(QRectF(100, 300, 400, 700))->setCustomBackgroundColor(Qt::red);
        const QString path = folder->filePath("x.png");
        QCOMPARE(SheetPrinter::writePNG(&sheet.scene, QRectF(90.4, 90.4, 199.6, 1100.4), path),
                 QString());
        const QImage image(path);
        QCOMPARE(image.size(), QSize(200, 1100));
        for (int y : {300, 511, 512, 800})
            QCOMPARE(image.pixelColor(100, y), QColor(Qt::red));
        QCOMPARE(image.pixelColor(100, 1090), QColor(Qt::white)); // neither grid nor frame

        // One that lacks rows is no success.
        PngWriter writer(folder->filePath("short.png"));
        QVERIFY(writer.begin(QSize(10, 10)) && writer.writeRows(QImage(10, 4, image.format())));
        QVERIFY(!writer.end());
    }

    void whatCanNotBeWrittenWholeLeavesTheFile()
    {
        Sheet sheet(pageSize());
        fill(sheet, {{0, 0}});
        const QRectF bound(0, 0, 2000, 2000);
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit former;
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &former), 0);
        const rlimit small = {4000, former.rlim_max};
        QFile file(folder->filePath("x"));
        QVERIFY(file.open(QIODevice::ReadWrite) && file.write("former") == 6 && file.flush());
        const QString path = file.fileName();
        const QRectF large(0, 0, 20001, 20000);
        QVERIFY(SheetPrinter::writePNG(&sheet.scene, large, path).contains("400 megapixels"));
        QVERIFY(!SheetPrinter::writePNG(&sheet.scene, QRectF(), path).isEmpty());
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
        const QString reasons[] = {SheetPrinter::writePNG(&sheet.scene, bound, path),
                                   SheetPrinter::writePDF(&sheet.scene, {}, path),
                                   WordXMLExport().writeReport(path, FormValues())};
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &former), 0);
        for (const QString &reason : reasons)
            QVERIFY2(reason.contains("File too large"), qPrintable(reason));
        QVERIFY(file.seek(0));
        QCOMPARE(file.readAll(), QByteArray("former"));
        QCOMPARE(QFileInfo(path).size(), 6);
        QCOMPARE(QDir(folder->path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
    }

    void headerShowsPlainText()
    {
        HeaderItem header;
        header.loadTemplate(":/formdata/header_template.html");
        QTRY_VERIFY(header.size() != QSizeF(800, 300));
        const QSizeF empty = header.size();
        const QString text = QString("<i>5 < 6</i> & so on ").repeated(20).trimmed();
        for (const char *id : {"incidentTitle", "incidentDate", "fileNumber", "mrph",
                               "incidentType", "examinerName", "no field", "1'\"]<>"})
            header.setHeaderValue(id, text);
        QWebFrame *frame = header.page()->mainFrame();
        QCOMPARE(frame->findAllElements("span").count(), 6);
        for (const QWebElement &span : frame->findAllElements("span"))
            QCOMPARE(span.toPlainText(), text);
        QTRY_VERIFY(header.size().height() > empty.height());
        for (const QWebElement &span : frame->findAllElements("span"))
            header.setHeaderValue(span.attribute("id"), QString());
        QTRY_COMPARE(header.size(), empty);
    }

    void footerNamesThePage()
    {
        const struct {
            int row, column;
            const char *name;
        } rows[] = {{0, 0, "<b>Plant - A1"}, {2, 11, "<b>Plant - C12"}, {26, 0, "<b>Plant - [1"}};
        for (const auto &row : rows) {
            FooterItem footer(row.row, row.column);
            footer.showFooter(true, "<b>Plant", false);
            auto *proxy = static_cast<QGraphicsProxyWidget *>(footer.childItems().value(0));
            const auto *label = qobject_cast<QLabel *>(proxy->widget());
            QCOMPARE(label->text(), QString(row.name));
            QCOMPARE(label->textFormat(), Qt::PlainText);
        }
    }

    void legendIsTheSameInADarkTheme()
    {
        const QImage legend = drawLegend();
        QApplication::setPalette(QPalette(Qt::white, Qt::black));
        const QImage dark = drawLegend();
        QApplication::setPalette(QPalette());
        QCOMPARE(dark, legend);
    }

private:
    static QSize pageSize() { return PageInfo().getPrintableArea().size(); }

    static QImage drawLegend()
    {
        QGraphicsScene scene;
        auto *footer = new FooterItem(0, 0);
        footer->showFooter(true, "Plant", true);
        footer->resize(footer->effectiveSizeHint(Qt::PreferredSize));
        scene.addItem(footer);
        QImage image(footer->size().toSize(), QImage::Format_RGB32);
        image.fill(Qt::darkBlue);
        QPainter painter(&image);
        scene.render(&painter, image.rect(), footer->sceneBoundingRect());
        return image;
    }

    static void fill(Sheet &sheet, const QList<QPoint> &pages)
    {
        for (const QPoint &page : pages)
            sheet.addNote(QRectF((page.x() + 0.5) * pageSize().width(),
                                 (page.y() + 0.5) * pageSize().height(), 120, 80));
    }

    int countPages(ProjectScene &chart, const QList<ProjectScene *> &factors) const
    {
        QFile file(folder->filePath("x.pdf"));
        if (!SheetPrinter::writePDF(&chart, factors, file.fileName()).isEmpty() ||
            !file.open(QIODevice::ReadOnly))
            return -1;
        return file.readAll().count("/Type /Page\n");
    }

    std::unique_ptr<QTemporaryDir> folder;
};

EXAMINER_TEST_MAIN(TestPaper)
#include "testpaper.moc"
