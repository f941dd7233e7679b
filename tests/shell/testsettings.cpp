                                  17, 18, 19, 1, 20, 21, 22, 23, 16, 24, 25, 26, 4,  27, 28}));
                             << "Arial 8pt";
                return false;
            auto *fonts = qobject_cast<QFontDialog *>(widget);
            fonts->accept();
            if (!fonts || fonts->currentFont().family() != QFontInfo(QFont("Arial")).family())
            return true;
        "B7,B8,B9,B10,C5E,U.S. Common 10 Envelope,U.S. DLE,U.S. Executive,U.S. Folio,U.S. Ledger";
        "U.S. Tabloid,U.S. Letter,U.S. Legal,A0,A1,A2,A3,A4,A5,A6,A7,A8,A9,B0,B1,B2,B3,B4,B5,B6,"
        DialogAnswer answer([](QWidget *widget) {
        QCOMPARE(label->buddy() != nullptr, text.contains('&'));
        QCOMPARE(preview->text(), QString("Arial 8pt"));
        QVERIFY(answer.wasAsked());
        QVERIFY2(isNumber && value >= 0 && value < 100, qPrintable(margin));
        auto *fonts = qobject_cast<QFontDialog *>(widget);
        bool isNumber = false;
        button->click();
        const double value = margin.toDouble(&isNumber);
        fonts->accept();
        fonts->setCurrentFont(QFont("Liberation Mono", 14, QFont::Bold));
        names.append(paper->itemText(i));
        numbers.append(paper->itemData(i).toInt());
        return true;
        });
    AboutDialog dialog(nullptr);
    DialogAnswer answer([](QWidget *widget) {
    DialogAnswer answer(fileChoice(path));
    ProgramSettings dialog(nullptr);
    ProgramSettings with(nullptr);
    ProgramSettings without(nullptr);
    QCOMPARE(QImage(logoPath, "PNG").size(), size);
    QCOMPARE(QSettings().value("checkUpdates", true).toBool(), false);
    QCOMPARE(QSettings().value("font").toString().count(','), 9);
    QCOMPARE(QSettings().value("lastImagePath").toString(), QString("kept"));
    QCOMPARE(dialog.findChild<QComboBox *>("paperSizeCombo")->currentIndex(), -1);
    QCOMPARE(dialog.findChild<QLabel *>("fontPreviewLabel")->text(), preview);
    QCOMPARE(dialog.findChild<QLabel *>("label")->pixmap(Qt::ReturnByValue).size(), size);
    QCOMPARE(dialog.findChild<QLabel *>("titleText")->text(), QString("TRAC/Ex Examiner 2.01"));
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(dialog.windowTitle(), QString("About TRAC/Ex Examiner"));
    QCOMPARE(dialog.windowTitle(), QString("Program Settings"));
    QCOMPARE(dialog.windowTitle(), QString("Project Settings"));
    QCOMPARE(getStandardFont().family(), QString("Liberation Mono"));
    QCOMPARE(names.join(','), expected);
    QCOMPARE(numbers, QList<int>({29, 2,  3,  5, 6,  7,  8,  0,  9,  10, 11, 12, 13, 14, 15,
    QCOMPARE(paper->currentText(), QString("U.S. Tabloid"));
    QCOMPARE(preview->text(), QString("Liberation Mono 14pt Bold"));
    QCOMPARE(settings.value("font").toString(), encodeFont(getBuiltInFont()));
    QCOMPARE(settings.value("margins").toStringList(), QStringList({"1.25", "2", "0", "10.5"}));
    QCOMPARE(settings.value("pageSize").toInt(), 0);
    QCOMPARE(settings.value("showHeader").toBool(), true);
    QCOMPARE(settings.value("showLegend").toBool(), false);
    QCOMPARE(settings.value("showPageNumbers").toBool(), true);
    QCOMPARE(widget->property("text").toString(), text);
    QCOMPARE(written.size(), 4);
    QFETCH(QSize, size);
    QFETCH(QString, name);
    QFETCH(QString, preview);
    QFETCH(QString, stored);
    QFETCH(QString, text);
    QFETCH(QStringList, margins);
    QFile text(folder.filePath("text.png"));
    QFile::remove(logoPath);
    QFont font("Liberation Serif", 11, QFont::Bold, true);
    QImage logo(8, 8, QImage::Format_RGB32);
    QImage old(5, 5, QImage::Format_RGB32);
    QList<int> numbers;
    QSettings().clear();
    QSettings().remove("checkUpdates");
    QSettings().setValue("checkUpdates", false);
    QSettings().setValue("font", stored);
    QSettings().setValue("lastImagePath", "kept");
    QSettings().setValue("margins", margins);
    QSettings().setValue("pageSize", 999);
    QString logoPath = makeDataFolder() + "/companylogo.png";
    QStringList names;
    QTemporaryDir folder;
    QTest::addColumn<QSize>("size"); // of the logo afterwards
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("preview");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("margins");
    QTest::newRow("bold italic") << encodeFont(font) << "Liberation Serif 11pt Bold Italic";
    QTest::newRow("cancelButton") << "&Cancel";
    QTest::newRow("fontButton") << "Choose &Font";
    QTest::newRow("fontLabel") << "Standard font:  ";
    QTest::newRow("huge") << QStringList{"1e300", "-5", "1e9", "0"};
    QTest::newRow("italic") << encodeFont(font) << "Liberation Serif 11pt Italic";
    QTest::newRow("label") << "&Left";
    QTest::newRow("label_2") << "&Right";
    QTest::newRow("label_3") << "&Top";
    QTest::newRow("label_4") << "&Bottom";
    QTest::newRow("no font") << "nonsense,,"
    QTest::newRow("no numbers") << QStringList{"a", "nan", "inf", "-inf"};
    QTest::newRow("no picture keeps the old logo") << "text.png" << QSize(5, 5);
    QTest::newRow("okButton") << "&OK";
    QTest::newRow("paperSizeLabel") << "&Paper Size      ";
    QTest::newRow("picture") << "logo.bmp" << QSize(30, 20);
    QTest::newRow("showHeader") << "Show Header";
    QTest::newRow("showLegend") << "Show Legend";
    QTest::newRow("showPageNumbers") << "Show Page Numbers";
    QTest::newRow("too few") << QStringList{"1"};
    QTest::newRow("too many") << QStringList{"1", "2", "3", "4", "5"};
    QVERIFY(!QFile::exists(logoPath));
    QVERIFY(!QSettings().value("pageSize").isValid());
    QVERIFY(!clear->isEnabled());
    QVERIFY(!dialog.isVisible());
    QVERIFY(QFile::exists(logoPath));
    QVERIFY(QSettings().allKeys().isEmpty());
    QVERIFY(about.contains("TRAC/Ex Examiner") && !about.contains("$("));
    QVERIFY(answer.wasAsked());
    QVERIFY(clear->isEnabled());
    QVERIFY(dialog.findChild<QCheckBox *>("updateCheck")->isHidden());
    QVERIFY(logo.save(folder.filePath("logo.png")));
    QVERIFY(old.save(logoPath));
    QVERIFY(old.scaled(30, 20).save(folder.filePath("logo.bmp")));
    QVERIFY(text.open(QIODevice::WriteOnly) && text.write("not a picture") > 0);
    QVERIFY(widget);
    QVERIFY(with.findChild<QLabel *>("label")->pixmap(Qt::ReturnByValue).isNull());
    QVERIFY2(!clear->isEnabled(), "until the dialog is opened again");
    Q_OBJECT
    Settings dialog(nullptr);
    auto *button = dialog.findChild<QPushButton *>("fontButton");
    auto *clear = without.findChild<QPushButton *>("clearButton");
    auto *paper = dialog.findChild<QComboBox *>("paperSizeCombo");
    button->click();
    chooseLogo(dialog, folder.filePath(name));
    chooseLogo(without, folder.filePath("logo.png"));
    clear = with.findChild<QPushButton *>("clearButton");
    clear->click();
    const QSettings settings;
    const QString about = dialog.findChild<QLabel *>("aboutText")->text();
    const QString expected =
    const QStringList written = QSettings().value("margins").toStringList();
    const auto *paper = dialog.findChild<QComboBox *>("paperSizeCombo");
    const auto *preview = dialog.findChild<QLabel *>("fontPreviewLabel");
    const auto *widget = dialog.findChild<QWidget *>(QTest::currentDataTag());
    dialog.accept();
    dialog.findChild<QCheckBox *>("showHeader")->setChecked(false);
    dialog.findChild<QCheckBox *>("showLegend")->setChecked(false);
    dialog.findChild<QDoubleSpinBox *>("bottomMargin")->setValue(10.5);
    dialog.findChild<QDoubleSpinBox *>("leftMargin")->setValue(1.25);
    dialog.findChild<QDoubleSpinBox *>("rightMargin")->setValue(2);
    dialog.findChild<QDoubleSpinBox *>("topMargin")->setValue(0);
    dialog.findChild<QPushButton *>("cancelButton")->click();
    dialog.findChild<QPushButton *>("chooseLogo")->click();
    dialog.findChild<QPushButton *>("closeButton")->click();
    dialog.findChild<QPushButton *>("okButton")->click();
    dialog.reject();
    dialog.show();
    font.setWeight(QFont::Normal);
    for (const QString &margin : written) {
    for (int i = 0; i < paper->count(); ++i) {
    if (const auto *label = qobject_cast<const QLabel *>(widget))
    old.fill(Qt::red);
    paper->setCurrentIndex(paper->findText("A4"));
    text.close();
    void aboutNamesTheProgram();
    void badMargins();
    void badMargins_data();
    void cancelWritesNothing();
    void chooseLogo(ProgramSettings &dialog, const QString &path);
    void chosenFont();
    void chosenLogoIsSavedAtOnce();
    void chosenLogoIsSavedAtOnce_data();
    void clearedLogoIsGoneAtOnce();
    void fontPreview();
    void fontPreview_data();
    void init();
    void okWritesEveryKey();
    void paperTable();
    void texts();
    void texts_data();
    void unknownPaperSelectsNothing();
    void updateCheckIsHiddenAndKept();
    {
    }
    });
#include "dialogs.h"
#include "shell/aboutdialog.h"
#include "shell/programsettings.h"
#include "shell/settings.h"
#include "support/fonts.h"
#include "testmain.h"
#include "testsettings.moc"
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFontDialog>
#include <QFontInfo>
#include <QLabel>
#include <QPushButton>
EXAMINER_TEST_MAIN(TestSettings)
class TestSettings : public QObject
private slots:
private:
void TestSettings::aboutNamesTheProgram()
void TestSettings::badMargins()
void TestSettings::badMargins_data()
void TestSettings::cancelWritesNothing()
void TestSettings::chooseLogo(ProgramSettings &dialog, const QString &path)
void TestSettings::chosenFont()
void TestSettings::chosenLogoIsSavedAtOnce()
void TestSettings::chosenLogoIsSavedAtOnce_data()
void TestSettings::clearedLogoIsGoneAtOnce()
void TestSettings::fontPreview()
void TestSettings::fontPreview_data()
void TestSettings::init()
void TestSettings::okWritesEveryKey()
void TestSettings::paperTable()
void TestSettings::texts()
void TestSettings::texts_data()
void TestSettings::unknownPaperSelectsNothing()
void TestSettings::updateCheckIsHiddenAndKept()
{
}
};
