#include "shell/exportdialog.h"
#include "support/pageinfo.h"
#include "testing/dialogs.h"
#include "testing/files.h"
#include "testing/rows.h"
#include "testing/window.h"

#include <QComboBox>
#include <QImageReader>
#include <QStatusBar>

/// What leaves the window. All tests share one window, emptied before each.
class TestExport : public QObject
{
    Q_OBJECT

    QString path(const QString &name) const { return folder->filePath(name); }
    QStringList files() const { return QDir(folder->path()).entryList(QDir::Files); }
    void exportThroughDialog(const QString &format, const QString &area, const QString &name)
    {
        DialogAnswer choice(inDialog<ExportDialog>([&](ExportDialog *dialog) {
            dialog->findChild<QComboBox *>("formatCombo")->setCurrentText(format);
            dialog->findChild<QComboBox *>("areaCombo")->setCurrentText(area);
            dialog->accept();
        }));
        DialogAnswer answer(fileChoice(path(name)));
        w.action("Export...")->trigger();
        QVERIFY(choice.wasAsked() && answer.wasAsked());
    }

    std::unique_ptr<QTemporaryDir> folder;
    TestWindow w;

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        w.empty();
    }

    void names()
    {
        const std::tuple<QString, const char *, const char *> rows[] = {
            {"PNG Image", "x", "x.png"},
            {"PNG Image", "x.PNG", "x.PNG"},
            {"PNG Image", "x.pdf", "x.pdf.png"},
            {"PDF Document", "x", "x.pdf"},
        };
        for (const auto &[format, typed, written] : rows) {
            const Row in(written);
            folder = std::make_unique<QTemporaryDir>();
            exportThroughDialog(format, "Entire Chart", typed);
            QCOMPARE(files(), QStringList(written));
            QCOMPARE(readBytes(path(written)).mid(1, 3), format.left(3).toLatin1());
        }
        QCOMPARE(QSettings().value("lastExportPath").toString(), folder->path());
        DialogAnswer metafile(fileChoice(path("y")));
        w.window.onExportClicked(false, ExportDialog::EMF);
        QCOMPARE(files(), QStringList("x.pdf")); // a metafile exists in name only
        // A page's ending is that of the dialog that never came up.
        DialogAnswer answer(fileChoice(path("x.png")));
        w.action("Save page as PNG image...")->trigger();
        QCOMPARE(QImageReader(path("x.png.pdf"), "PNG").size(), w.chart()->getPageSize());
    }

    /// The current page is that of the main view, whatever sheet is shown.
    void areas()
    {
        const QSize page = w.chart()->getPageSize();
        w.makeFactor(w.addNote("Event", QPointF(page.width() + 200, 200)));
        w.chart()->checkCanvasSize();
        QCoreApplication::processEvents();
        w.view()->centerOn(page.width() * 1.5, 200);
        w.tabs->setCurrentIndex(2);
        QTRY_COMPARE(w.window.getCurrentScene(), w.factorSheet());
        CanvasItemInfo info = noteInfo("{red}", QRectF(page.width() + 100, 100, 120, 80));
        info.backgroundColor = Qt::red;
        ProjectItem *note = w.factorSheet()->loadCanvasItem(info);
        w.factorSheet()->checkCanvasSize();
        const QSize whole(2 * page.width() + 20, page.height() + 20); // with its margin
        const QSize alone = note->sceneBoundingRect().adjusted(-2, -2, 2, 2).size().toSize();
        const QPair<const char *, QSize> rows[] = {
            {"Entire Chart", whole}, {"Current Page", page}, {"Selected Items", alone}};
        for (const auto &[area, size] : rows) {
            const Row in(area);
            note->setSelected(true);
            exportThroughDialog("PNG Image", area, area);
            QCOMPARE(QImageReader(path(area) + ".png").size(), size);
            QVERIFY(w.factorSheet()->selectedItems().isEmpty());
        }
        QCOMPARE(QImage(path("Current Page.png")).pixelColor(130, 110), QColor(Qt::red));
    }

    /// Without a box, and what stood there stays.
    void failureShowsInTheStatusBar()
    {
        QStatusBar *bar = w.window.statusBar();
        for (const char *target : {"missing/x", "folder"}) {
            const Row in(target);
            QDir(folder->path()).mkpath("folder/x");
            for (const bool png : {true, false}) {
                bar->clearMessage();
                png ? w.window.exportPNG(path(target), QRectF(0, 0, 10, 10))
                    : w.window.exportPDF(path(target), QRectF());
                QVERIFY(!bar->currentMessage().isEmpty());
            }
        }
        QVERIFY(files().isEmpty());
    }

    void settingsAndPrintFlagsReachEverySheet()
    {
        w.makeFactor(w.addNote("Event", QPointF(200, 200)));
        w.chart()->setPrintEnabled(false);
        for (const char *text : {"&Project Settings", "Print Setup"}) {
            DialogAnswer answer(inDialog<QDialog>([](QDialog *dialog) {
                if (auto *paper = dialog->findChild<QComboBox *>("paperSizeCombo"))
                    paper->setCurrentText("A4");
                dialog->accept();
            }));
            w.action(text)->trigger();
        }
        const QSize size = PageInfo().getPrintableArea().size();
        QVERIFY(size.width() < 1200 && w.chart()->isPrintEnabled());
        QCOMPARE(w.chart()->getPageSize(), size);
        QCOMPARE(w.factorSheet()->getPageSize(), size);
    }
};

EXAMINER_TEST_MAIN(TestExport)
#include "testexport.moc"
