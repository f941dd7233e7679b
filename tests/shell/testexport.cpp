#include "shell/exportdialog.h"
#include "support/pageinfo.h"
#include "testing/dialogs.h"
#include "testing/rows.h"
#include "testing/window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QImageReader>

/// What leaves the window. All tests share one window, emptied before each.
class TestExport : public QObject
{
    Q_OBJECT

    QString path(const QString &name) const { return folder->filePath(name); }
    QStringList files() const { return QDir(folder->path()).entryList(QDir::Files); }
    QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void exportThroughDialog(const QString &format, const QString &area, const QString &name)
    {
        DialogAnswer choice(inDialog<ExportDialog>([&](ExportDialog *dialog) {
            dialog->findChild<QComboBox *>("formatCombo")->setCurrentText(format);
            dialog->findChild<QComboBox *>("areaCombo")->setCurrentText(area);
            dialog->accept();
        }));
        DialogAnswer answer(fileChoice(path(name)));
        tw->action("Export...")->trigger();
        QVERIFY(choice.wasAsked() && answer.wasAsked());
    }

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<TestWindow> tw;

private slots:
    void initTestCase() { tw = std::make_unique<TestWindow>(); }
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        QSettings().clear();
        tw->empty();
    }
    void cleanupTestCase() { tw.reset(); }

    void names()
    {
        const struct {
            const char *format, *typed, *written;
        } rows[] = {
            {"PNG Image", "x", "x.png"},         {"PNG Image", "x.PNG", "x.PNG"},
            {"PNG Image", "x.pdf", "x.pdf.png"}, {"PDF Document", "x", "x.pdf"},
            {"PDF Document", "x.pdf", "x.pdf"},
        };
        for (const auto &row : rows) {
            const Row in(row.typed);
            folder = std::make_unique<QTemporaryDir>();
            exportThroughDialog(row.format, "Entire Chart", row.typed);
            QCOMPARE(files(), QStringList(row.written));
            QCOMPARE(QSettings().value("lastExportPath").toString(), folder->path());
            const bool picture = QString(row.format).startsWith("PNG");
            QVERIFY(read(row.written).startsWith(picture ? "\x89PNG" : "%PDF"));
        }
    }

    /// Its ending is that of the dialog that never came up.
    void pageAsAPicture()
    {
        DialogAnswer answer(fileChoice(path("x.png")));
        tw->action("Save page as PNG image...")->trigger();
        QVERIFY(answer.wasAsked());
        QCOMPARE(QImageReader(path("x.png.pdf"), "PNG").size(), tw->chart()->getPageSize());
        DialogAnswer metafile(fileChoice(path("y")));
        tw->window.onExportClicked(false, ExportDialog::EMF);
        QCOMPARE(files(), QStringList("x.png.pdf")); // a metafile exists in name only
    }

    void areas()
    {
        const QSize page = tw->chart()->getPageSize();
        Sticky *note = tw->addNote("Event", QPointF(page.width() + 200, 200));
        tw->chart()->checkCanvasSize();
        const QSize whole(2 * page.width() + 20, page.height() + 20); // with its margin
        const QSize alone = note->sceneBoundingRect().adjusted(-2, -2, 2, 2).size().toSize();
        const struct {
            const char *area;
            QSize size;
        } rows[] = {{"Entire Chart", whole}, {"Current Page", page}, {"Selected Items", alone}};
        for (const auto &row : rows) {
            const Row in(row.area);
            note->setSelected(true);
            exportThroughDialog("PNG Image", row.area, row.area);
            QCOMPARE(QImageReader(path(row.area) + ".png").size(), row.size);
            QVERIFY(tw->chart()->selectedItems().isEmpty());
        }
    }

    void currentPageIsThatOfTheMainView()
    {
        const QSize page = tw->chart()->getPageSize();
        tw->makeFactor(tw->addNote("Event", QPointF(page.width() + 200, 200)));
        tw->chart()->checkCanvasSize();
        QCoreApplication::processEvents();
        tw->view()->centerOn(page.width() * 1.5, 200);
        CanvasItemInfo red;
        red.type = NoteItemType;
        red.startPoint = QPointF(page.width() + 100, 100);
        red.size = QSizeF(120, 80);
        red.backgroundColor = Qt::red;
        tw->factorSheet()->loadCanvasItem(red);
        tw->tabs->setCurrentIndex(2);
        QTRY_COMPARE(tw->window.getCurrentScene(), tw->factorSheet());
        exportThroughDialog("PNG Image", "Current Page", "x.png");
        QCOMPARE(QImage(path("x.png")).pixelColor(130, 110), QColor(Qt::red));
    }

    /// Without a box, and what stood there stays.
    void failureShowsInTheStatusBar()
    {
        for (const char *target : {"missing/x", "folder"}) {
            const Row in(target);
            QDir(folder->path()).mkpath("folder/x");
            tw->window.statusBar()->clearMessage();
            tw->window.exportPNG(path(target), QRectF(0, 0, 10, 10));
            QVERIFY(!tw->window.statusBar()->currentMessage().isEmpty());
            tw->window.statusBar()->clearMessage();
            tw->window.exportPDF(path(target), QRectF());
            QVERIFY(!tw->window.statusBar()->currentMessage().isEmpty());
        }
        QVERIFY(files().isEmpty());
    }

    void settingsAndPrintFlagsReachEverySheet()
    {
        tw->makeFactor(tw->addNote("Event", QPointF(200, 200)));
        DialogAnswer settings(inDialog<QDialog>([](QDialog *dialog) {
            dialog->findChild<QComboBox *>("paperSizeCombo")->setCurrentText("A4");
            dialog->accept();
        }));
        tw->action("&Project Settings")->trigger();
        QVERIFY(settings.wasAsked());
        const QSize size = PageInfo().getPrintableArea().size();
        QVERIFY(size.width() < 1200);
        tw->chart()->setPrintEnabled(false);
        DialogAnswer setup(inDialog<QDialog>([](QDialog *dialog) { dialog->accept(); }));
        tw->action("Print Setup")->trigger();
        QVERIFY(setup.wasAsked());
        for (ProjectScene *sheet : {tw->chart(), tw->factorSheet()}) {
            QCOMPARE(sheet->getPageSize(), size);
            QVERIFY(sheet->isPrintEnabled());
        }
    }
};

EXAMINER_TEST_MAIN(TestExport)
#include "testexport.moc"
