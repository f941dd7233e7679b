#include "chart/imagepreviewdialog.h"
#include "shell/filenames.h"
#include "shell/introscreen.h"
#include "shell/itempropertiesdialog.h"
#include "shell/settings.h"
#include "shell/windowmemory.h"
#include "support/fonts.h"
#include "support/supportfiles.h"
#include "testing/files.h"
#include "testing/sheet.h"

#include <QHelpEngineCore>
#include <QHelpLink>
#include <QMainWindow>
#include <QScreen>
#include <QSvgRenderer>
#include <QToolBar>
#include <QtWidgets>

/// What dialogs take and give back, and the files that come with the program.
class TestDialogs : public QObject
{
    Q_OBJECT

    static void setMargins(Settings &dialog, const QList<double> &margins)
    {
        const QStringList names = {"leftMargin", "rightMargin", "topMargin", "bottomMargin"};
        for (int i = 0; i < 4; ++i)
            dialog.findChild<QDoubleSpinBox *>(names.at(i))->setValue(margins.at(i));
    }

    QTemporaryDir folder;

private slots:
    void init() { QSettings().clear(); }

    void settingsWriteEveryKeyOnOk()
    {
        for (const char *button : {"cancelButton", "okButton"}) {
            Settings dialog(nullptr);
            dialog.findChild<QComboBox *>("paperSizeCombo")->setCurrentText("A4");
            dialog.findChild<QCheckBox *>("showLegend")->setChecked(false);
            const auto *note = dialog.findChild<QLabel *>("marginsNote");
            setMargins(dialog, {30, 30, 1, 1});
            QVERIFY(!note->isHidden());
            setMargins(dialog, {1.25, 2, 0, 3.5});
            QVERIFY(note->isHidden());
            DialogAnswer fonts(inDialog<QFontDialog>([](QFontDialog *chooser) {
                chooser->setCurrentFont(QFont("Liberation Mono", 14, QFont::Bold));
                chooser->accept();
            }));
            dialog.findChild<QPushButton *>("fontButton")->click();
            QVERIFY(fonts.wasAsked() && QSettings().allKeys().isEmpty());
            dialog.findChild<QPushButton *>(button)->click();
        }
        const QSettings settings;
        QVERIFY(settings.contains("pageSize") && settings.value("pageSize").toInt() == 0);
        QCOMPARE(settings.value("margins").toStringList(), QStringList({"1.25", "2", "0", "3.5"}));
        QVERIFY(settings.value("showHeader").toBool() && settings.contains("showPageNumbers"));
        QVERIFY(settings.contains("showLegend") && !settings.value("showLegend").toBool());
        QCOMPARE(settings.value("font").toString().count(','), 9); // without a style's name
        QCOMPARE(getStandardFont().family(), QString("Liberation Mono"));
    }

    void titlesBecomeFileNames()
    {
        QCOMPARE(getProposal("/f/", "../A/B:\n\"crash\" ", ".pdf"), QString("/f/A B crash.pdf"));
        QCOMPARE(getProposal("/f/", QString(400, QChar(0x6e2c)), "").toUtf8().size(), 183);
    }

    void windowComesBackInSight()
    {
        const QVariant values[] = {QRect(-5000, 90000, 100000, 100000), QString("nonsense"),
                                   QStringList{"a", "b\nc"}, 100000, QRect(50, 60, 300, 200)};
        for (const QVariant &value : values) {
            for (const char *key : {"windowPlace", "toolbars", "toolbarsSum", "zoom", "tabs"})
                QSettings().setValue(key, value);
            QSettings().setValue("windowMaximized", false);
            QVERIFY(WindowMemory::getZoom() > 0 && WindowMemory::getTabs("b") != QStringList("b"));
            QMainWindow window;
            QToolBar *toolbar = window.addToolBar("tools");
            toolbar->setObjectName("tools");
            WindowMemory::show(window);
            QVERIFY(toolbar->isVisible());
            QVERIFY(window.screen()->geometry().contains(window.geometry()));
            toolbar->hide();
            WindowMemory::store(window);
            QMainWindow next;
            next.addToolBar("tools")->setObjectName("tools");
            WindowMemory::show(next);
            QVERIFY(next.findChild<QToolBar *>()->isHidden());
            QVERIFY(next.isMaximized() == window.isMaximized() &&
                    (next.isMaximized() || next.size() == window.size()));
        }
    }

    void introScreenOffersFiles()
    {
        const QString recent = "/home/u/A & B.epf", left = makeDataFolder() + "/a.epf.autosave";
        QSettings().setValue("recentFiles", QStringList(recent));
        writeBytes(left, "x");
        IntroScreen screen(nullptr);
        QVERIFY(QFile::remove(left));
        QSignalSpy opened(&screen, &IntroScreen::openProjectClicked);
        auto *open = screen.findChild<QToolButton *>("openProjectButton");
        auto *table = screen.findChild<QTableWidget *>("autoSaveTable");
        open->setFocus();
        QTest::keyClick(open, Qt::Key_Return);
        open->actions().at(0)->trigger();
        emit table->itemActivated(table->item(0, 1)); // the date opens nothing
        emit table->itemActivated(table->item(0, 0));
        const QList<QVariantList> expected = {{QString(), true}, {recent, true}, {left, false}};
        QCOMPARE(QList<QVariantList>(opened), expected);
        QSettings().setValue("recentFiles", QStringList());
        screen.listRecentFiles(); // as after one that is gone
        QVERIFY(open->actions().isEmpty() && open->popupMode() == QToolButton::DelayedPopup);
    }

    void dialogsFitTheScreen()
    {
        QDialog dialog;
        dialog.resize(9999, 9999);
        dialog.show();
        QVERIFY(dialog.screen()->availableGeometry().contains(QRect(QPoint(), dialog.size())));
    }

    void imagePreview()
    {
        const QSize limits = QGuiApplication::primaryScreen()->geometry().size() - QSize(50, 100);
        QVERIFY(!ImagePreviewDialog(nullptr, QPixmap(limits)).windowTitle().contains('%'));
        const QPixmap high(100, limits.height() * 2);
        QVERIFY(ImagePreviewDialog(nullptr, high).windowTitle().endsWith("(50%)"));
        ImagePreviewDialog dialog(nullptr, QPixmap(300, 10));
        BoxAnswer failure(QMessageBox::Ok);
        for (const char *name : {"a.png", "b", "gone/c"}) {
            DialogAnswer answer(fileChoice(folder.filePath(name)));
            dialog.findChild<QPushButton *>("saveButton")->click();
            QCOMPARE(failure.wasAsked(), QString(name) == "gone/c");
        }
        QCOMPARE(QImageReader(folder.filePath("a.png"), "png").size(), QSize(300, 10));
        QCOMPARE(QImageReader(folder.filePath("b.jpg"), "jpeg").size(), QSize(300, 10));
    }

    /// Each change is one step for the whole selection; a refused one leaves the others. Style and
    /// thickness of a line are not read.
    void itemProperties()
    {
        Sheet sheet;
        Sticky *note = sheet.addNote(QRectF(100, 100, 120, 80));
        sheet.addNote(QRectF(300, 100, 120, 80), "Loss");
        Line *line = sheet.addLine(QPointF(400, 400), QPointF(600, 500));
        line->setLineStyle(Qt::DashLine);
        line->setBorderLineWidth(8);
        line->setArrowStyle(Line::NoArrows);
        sheet.scene.selectAll();
        const QString before = describe(sheet.scene);
        ItemPropertiesDialog(&sheet.scene, note, nullptr, nullptr).accept();
        QCOMPARE(sheet.getSteps(), 0);
        ItemPropertiesDialog dialog(&sheet.scene, note, line, nullptr);
        auto *roles = dialog.findChild<QListWidget *>("rolesList");
        QCOMPARE(roles->currentItem()->text(), QString("Event"));
        roles->setCurrentItem(roles->findItems("Loss", Qt::MatchExactly).first());
        dialog.findChild<QRadioButton *>("hJustifiedRadio")->setChecked(true);
        dialog.findChild<QCheckBox *>("notRelevant")->setChecked(true);
        dialog.findChild<QSpinBox *>("borderThickness")->setValue(4);
        BoxAnswer refusal(QMessageBox::Ok); // a chart has one Loss
        dialog.accept();
        QVERIFY(refusal.wasAsked() && note->getRoleType() == "Event");
        for (Sticky *each : sheet.scene.getAllNotes()) {
            QCOMPARE(each->getRecord().textAlignment, Qt::AlignVCenter | Qt::AlignJustify);
            QVERIFY(each->isNotRelevant() && each->getBorderLineWidth() == 4);
        }
        const CanvasItemInfo &now = line->getRecord();
        QVERIFY(now.lineStyle == Qt::SolidLine && now.borderLineWidth == 2 && !now.arrowStyle);
        QCOMPARE(sheet.getSteps(), 5);
        sheet.getStack()->setIndex(0);
        QCOMPARE(describe(sheet.scene), before);
        ItemPropertiesDialog late(&sheet.scene, note, line, nullptr);
        sheet.scene.clear();
        late.accept(); // after its items are gone
        QCOMPARE(sheet.getSteps(), 0);
    }

    void copyKeepsTheTime()
    {
        const QDateTime noon(QDate(2020, 5, 1), QTime(12, 0));
        const QTemporaryDir own;
        const QString source = own.filePath("a"), copy = own.filePath("b");
        copyIfNeeded(source, copy); // nothing to copy
        QVERIFY(!QFile::exists(copy));
        const auto write = [](const QString &path, const QByteArray &bytes, const QDateTime &time) {
            writeBytes(path, bytes);
            QFile file(path);
            QVERIFY(file.open(QIODevice::Append) &&
                    file.setFileTime(time, QFileDevice::FileModificationTime));
        };
        write(source, "new", noon);
        QVERIFY(QFile::setPermissions(source, QFile::ReadOwner));
        for (int seconds : {-1, 1, 0}) { // an older one, a newer one, and one of the same time
            QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
            write(copy, "old", noon.addSecs(seconds));
            copyIfNeeded(source, copy);
            QCOMPARE(readBytes(copy), QByteArray(seconds ? "new" : "old"));
            QVERIFY(QFileInfo(copy).lastModified() == noon && QFileInfo(copy).isWritable());
        }
        QCOMPARE(QDir(own.path()).entryList(QDir::Files), QStringList({"a", "b"}));
    }

    void theManualIsWhole()
    {
        copySupportFiles();
        const QRegularExpression link("(?:href|src)=\"([^\"#]+)\"");
        for (const char *collection : {"/formdata.qhc", "/helpcollection2.qhc"}) {
            const QString path = makeDataFolder() + collection;
            const QByteArray before = readBytes(path);
            QHelpEngineCore engine(path);
            QCOMPARE(engine.documentsForIdentifier("index").size(), 1);
            const QString name = engine.registeredDocumentations().value(0);
            for (const QUrl &page : engine.files(name, QString(), "html")) {
                for (auto i = link.globalMatch(engine.fileData(page)); i.hasNext();) {
                    const QUrl target = page.resolved(QUrl(i.next().captured(1)));
                    QVERIFY2(!engine.fileData(target).isEmpty(), qPrintable(target.toString()));
                }
            }
            // A rewritten copy would be replaced at each start, and an unregistered page stay away.
            QVERIFY(readBytes(path) == before);
        }
    }

    void compiledInPicturesDecode()
    {
        QDirIterator walk(":/images", QDir::Files, QDirIterator::Subdirectories);
        QVERIFY(walk.hasNext());
        while (walk.hasNext()) {
            const QString name = walk.next();
            QVERIFY2(name.endsWith("svg") ? QSvgRenderer(name).isValid() : !QImage(name).isNull(),
                     qPrintable(name));
        }
    }
};

EXAMINER_TEST_MAIN(TestDialogs)
#include "testdialogs.moc"
