#include "chart/imagepreviewdialog.h"
#include "shell/introscreen.h"
#include "shell/itempropertiesdialog.h"
#include "shell/settings.h"
#include "support/fonts.h"
#include "testing/records.h"
#include "testing/rows.h"
#include "testing/sheet.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFontDialog>
#include <QImageReader>
#include <QLabel>
#include <QListWidget>
#include <QRadioButton>
#include <QScreen>
#include <QTableWidget>
#include <QToolButton>

/// What dialogs take and give back.
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
        QCOMPARE(settings.allKeys().join(' '),
                 QString("font margins pageSize showHeader showLegend showPageNumbers"));
        QCOMPARE(settings.value("pageSize").toInt(), 0);
        QCOMPARE(settings.value("margins").toStringList(), QStringList({"1.25", "2", "0", "3.5"}));
        QVERIFY(settings.value("showHeader").toBool() && !settings.value("showLegend").toBool());
        QCOMPARE(settings.value("font").toString().count(','), 9); // without a style's name
        QCOMPARE(getStandardFont().family(), QString("Liberation Mono"));
    }

    void introScreenOffersFiles()
    {
        const QStringList recent = {"/home/u/A & B.epf", "/home/u/b.epf"};
        QSettings().setValue("recentFiles", recent);
        const QString left = makeDataFolder() + "/a.autosave.epf.autosave";
        QVERIFY(QFile(left).open(QIODevice::WriteOnly));
        IntroScreen screen(nullptr);
        QVERIFY(QFile::remove(left));
        QSignalSpy opened(&screen, &IntroScreen::openProjectClicked);
        auto *open = screen.findChild<QToolButton *>("openProjectButton");
        auto *table = screen.findChild<QTableWidget *>("autoSaveTable");
        QCOMPARE(table->item(0, 0)->text(), QString("a.autosave.epf"));
        open->click();
        open->actions().at(0)->trigger();
        emit table->itemActivated(table->item(0, 1)); // the date opens nothing
        emit table->itemActivated(table->item(0, 0));
        const QList<QVariantList> expected = {
            {QString(), true}, {recent.at(0), true}, {left, false}};
        QCOMPARE(QList<QVariantList>(opened), expected);
        QSettings().setValue("recentFiles", QStringList());
        screen.listRecentFiles(); // as after one that is gone
        QVERIFY(open->actions().isEmpty() && open->popupMode() == QToolButton::DelayedPopup);
    }

    void imagePreview()
    {
        const QSize limits = QGuiApplication::primaryScreen()->geometry().size() - QSize(50, 100);
        const QSize high(100, limits.height() * 2);
        QCOMPARE(ImagePreviewDialog(nullptr, QPixmap(limits)).windowTitle(),
                 QString("Image Preview"));
        QCOMPARE(ImagePreviewDialog(nullptr, QPixmap(high)).windowTitle(),
                 QString("Image Preview (50%)"));
        QVERIFY(QDir(folder.path()).mkpath("taken.jpg"));
        ImagePreviewDialog dialog(nullptr, QPixmap(300, 10));
        BoxAnswer failure(QMessageBox::Ok);
        for (const char *name : {"a.png", "b", "taken"}) {
            DialogAnswer answer(fileChoice(folder.filePath(name)));
            dialog.findChild<QPushButton *>("saveButton")->click();
            QVERIFY(answer.wasAsked());
        }
        QCOMPARE(failure.title, QString("Save failed"));
        QCOMPARE(QImageReader(folder.filePath("a.png"), "png").size(), QSize(300, 10));
        QCOMPARE(QImageReader(folder.filePath("b.jpg"), "jpeg").size(), QSize(300, 10));
    }

    /// Each change is one step for the whole selection; a refused one leaves the others.
    void itemPropertiesOfNotes()
    {
        Sheet sheet;
        Sticky *note = sheet.addNote(QRectF(100, 100, 120, 80));
        sheet.addNote(QRectF(300, 100, 120, 80), "Loss")->setSelected(true);
        note->setSelected(true);
        const QString before = describe(sheet.scene);
        ItemPropertiesDialog dialog(&sheet.scene, note, nullptr, nullptr);
        ItemPropertiesDialog(&sheet.scene, note, nullptr, nullptr).accept();
        QCOMPARE(sheet.getSteps(), 0);
        auto *roles = dialog.findChild<QListWidget *>("rolesList");
        QCOMPARE(roles->currentItem()->text(), QString("Event"));
        roles->setCurrentItem(roles->findItems("Loss", Qt::MatchExactly).first());
        dialog.findChild<QRadioButton *>("hJustifiedRadio")->setChecked(true);
        dialog.findChild<QCheckBox *>("notRelevant")->setChecked(true);
        dialog.findChild<QSpinBox *>("borderThickness")->setValue(4);
        BoxAnswer refusal(QMessageBox::Ok); // a chart has one Loss
        dialog.accept();
        QVERIFY(refusal.wasAsked());
        QCOMPARE(note->getRoleType(), QString("Event"));
        for (Sticky *each : sheet.scene.getAllNotes()) {
            QCOMPARE(each->getRecord().textAlignment, Qt::AlignVCenter | Qt::AlignJustify);
            QVERIFY(each->isNotRelevant() && each->getBorderLineWidth() == 4);
        }
        QCOMPARE(sheet.getSteps(), 3);
        for (int i = 0; i < 3; ++i)
            sheet.scene.getUndoStack()->undo();
        QCOMPARE(describe(sheet.scene), before);
    }

    /// Style and thickness are not read.
    void itemPropertiesOfALine()
    {
        Sheet sheet;
        Line *line = sheet.addLine(QPointF(400, 400), QPointF(600, 500));
        line->setSelected(true);
        line->setLineStyle(Qt::DashLine);
        line->setBorderLineWidth(8);
        line->setArrowStyle(Line::NoArrows);
        ItemPropertiesDialog dialog(&sheet.scene, nullptr, line, nullptr);
        QCOMPARE(dialog.getArrowStyle(), Line::NoArrows);
        dialog.accept();
        QCOMPARE(line->getRecord().lineStyle, int(Qt::SolidLine));
        QCOMPARE(line->getBorderLineWidth(), 2);
        QCOMPARE(sheet.getSteps(), 2);
        ItemPropertiesDialog late(&sheet.scene, nullptr, line, nullptr);
        sheet.scene.clear();
        late.accept(); // after its items are gone
        QCOMPARE(sheet.getSteps(), 0);
    }
};

EXAMINER_TEST_MAIN(TestDialogs)
#include "testdialogs.moc"
