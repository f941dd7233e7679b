#include "shell/aboutdialog.h"
#include "shell/programsettings.h"
#include "shell/settings.h"
#include "support/fonts.h"
#include "testing/dialogs.h"
#include "testing/testmain.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFontDialog>
#include <QFontInfo>
#include <QLabel>
#include <QPushButton>

class TestSettings : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void texts_data();
    void texts();
    void paperTable();
    void fontPreview_data();
    void fontPreview();
    void chosenFont();
    void badMargins_data();
    void badMargins();
    void okWritesEveryKey();
    void cancelWritesNothing();
    void unknownPaperSelectsNothing();
    void updateCheckIsHiddenAndKept();
    void chosenLogoIsSavedAtOnce_data();
    void chosenLogoIsSavedAtOnce();
    void clearedLogoIsGoneAtOnce();
    void aboutNamesTheProgram();

private:
    void chooseLogo(ProgramSettings &dialog, const QString &path);

    QTemporaryDir folder;
    QString logoPath = makeDataFolder() + "/companylogo.png";
};

void TestSettings::init()
{
    QSettings().clear();
    QFile::remove(logoPath);
}

void TestSettings::texts_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("fontLabel") << "Standard font:  ";
    QTest::newRow("fontButton") << "Choose &Font";
    QTest::newRow("label") << "&Left";
    QTest::newRow("label_2") << "&Right";
    QTest::newRow("label_3") << "&Top";
    QTest::newRow("label_4") << "&Bottom";
    QTest::newRow("paperSizeLabel") << "&Paper Size      ";
    QTest::newRow("showPageNumbers") << "Show Page Numbers";
    QTest::newRow("showLegend") << "Show Legend";
    QTest::newRow("showHeader") << "Show Header";
    QTest::newRow("okButton") << "&OK";
    QTest::newRow("cancelButton") << "&Cancel";
}

void TestSettings::texts()
{
    QFETCH(QString, text);
    Settings dialog(nullptr);
    const auto *widget = dialog.findChild<QWidget *>(QTest::currentDataTag());
    QVERIFY(widget);
    QCOMPARE(widget->property("text").toString(), text);
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        QCOMPARE(label->buddy() != nullptr, text.contains('&'));
}

void TestSettings::paperTable()
{
    Settings dialog(nullptr);
    QCOMPARE(dialog.windowTitle(), QString("Project Settings"));
    const auto *paper = dialog.findChild<QComboBox *>("paperSizeCombo");
    QStringList names;
    QList<int> numbers;
    for (int i = 0; i < paper->count(); ++i) {
        names.append(paper->itemText(i));
        numbers.append(paper->itemData(i).toInt());
    }
    const QString expected =
        "U.S. Tabloid,U.S. Letter,U.S. Legal,A0,A1,A2,A3,A4,A5,A6,A7,A8,A9,B0,B1,B2,B3,B4,B5,B6,"
        "B7,B8,B9,B10,C5E,U.S. Common 10 Envelope,U.S. DLE,U.S. Executive,U.S. Folio,U.S. Ledger";
    QCOMPARE(names.join(','), expected);
    QCOMPARE(numbers, QList<int>({29, 2,  3,  5, 6,  7,  8,  0,  9,  10, 11, 12, 13, 14, 15,
                                  17, 18, 19, 1, 20, 21, 22, 23, 16, 24, 25, 26, 4,  27, 28}));
    QCOMPARE(paper->currentText(), QString("U.S. Tabloid"));
}

void TestSettings::fontPreview_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("preview");

    QFont font("Liberation Serif", 11, QFont::Bold, true);
    QTest::newRow("bold italic") << encodeFont(font) << "Liberation Serif 11pt Bold Italic";
    font.setWeight(QFont::Normal);
    QTest::newRow("italic") << encodeFont(font) << "Liberation Serif 11pt Italic";
    QTest::newRow("no font") << "nonsense,,"
                             << "Arial 8pt";
}

void TestSettings::fontPreview()
{
    QFETCH(QString, stored);
    QFETCH(QString, preview);
    QSettings().setValue("font", stored);
    Settings dialog(nullptr);
    QCOMPARE(dialog.findChild<QLabel *>("fontPreviewLabel")->text(), preview);
}

void TestSettings::chosenFont()
{
    Settings dialog(nullptr);
    const auto *preview = dialog.findChild<QLabel *>("fontPreviewLabel");
    auto *button = dialog.findChild<QPushButton *>("fontButton");
    {
        DialogAnswer answer([](QWidget *widget) {
            auto *fonts = qobject_cast<QFontDialog *>(widget);
            if (!fonts || fonts->currentFont().family() != QFontInfo(QFont("Arial")).family())
                return false;
            fonts->accept();
            return true;
        });
        button->click();
        QVERIFY(answer.wasAsked());
        QCOMPARE(preview->text(), QString("Arial 8pt"));
    }
    DialogAnswer answer([](QWidget *widget) {
        auto *fonts = qobject_cast<QFontDialog *>(widget);
        fonts->setCurrentFont(QFont("Liberation Mono", 14, QFont::Bold));
        fonts->accept();
        return true;
    });
    button->click();
    QCOMPARE(preview->text(), QString("Liberation Mono 14pt Bold"));
    QVERIFY(QSettings().allKeys().isEmpty());
    dialog.accept();
    QCOMPARE(QSettings().value("font").toString().count(','), 9);
    QCOMPARE(getStandardFont().family(), QString("Liberation Mono"));
}

void TestSettings::badMargins_data()
{
    QTest::addColumn<QStringList>("margins");

    QTest::newRow("no numbers") << QStringList{"a", "nan", "inf", "-inf"};
    QTest::newRow("too many") << QStringList{"1", "2", "3", "4", "5"};
    QTest::newRow("too few") << QStringList{"1"};
    QTest::newRow("huge") << QStringList{"1e300", "-5", "1e9", "0"};
}

void TestSettings::badMargins()
{
    QFETCH(QStringList, margins);
    QSettings().setValue("margins", margins);
    Settings dialog(nullptr);
    dialog.accept();
    const QStringList written = QSettings().value("margins").toStringList();
    QCOMPARE(written.size(), 4);
    for (const QString &margin : written) {
        bool isNumber = false;
        const double value = margin.toDouble(&isNumber);
        QVERIFY2(isNumber && value >= 0 && value < 100, qPrintable(margin));
    }
}

void TestSettings::okWritesEveryKey()
{
    Settings dialog(nullptr);
    dialog.findChild<QDoubleSpinBox *>("leftMargin")->setValue(1.25);
    dialog.findChild<QDoubleSpinBox *>("rightMargin")->setValue(2);
    dialog.findChild<QDoubleSpinBox *>("topMargin")->setValue(0);
    dialog.findChild<QDoubleSpinBox *>("bottomMargin")->setValue(10.5);
    auto *paper = dialog.findChild<QComboBox *>("paperSizeCombo");
    paper->setCurrentIndex(paper->findText("A4"));
    dialog.findChild<QCheckBox *>("showLegend")->setChecked(false);
    dialog.findChild<QPushButton *>("okButton")->click();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));

    const QSettings settings;
    QCOMPARE(settings.value("font").toString(), encodeFont(getBuiltInFont()));
    QCOMPARE(settings.value("pageSize").toInt(), 0);
    QCOMPARE(settings.value("margins").toStringList(), QStringList({"1.25", "2", "0", "10.5"}));
    QCOMPARE(settings.value("showPageNumbers").toBool(), true);
    QCOMPARE(settings.value("showLegend").toBool(), false);
    QCOMPARE(settings.value("showHeader").toBool(), true);
}

void TestSettings::cancelWritesNothing()
{
    Settings dialog(nullptr);
    dialog.findChild<QCheckBox *>("showHeader")->setChecked(false);
    dialog.findChild<QPushButton *>("cancelButton")->click();
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QVERIFY(QSettings().allKeys().isEmpty());
}

void TestSettings::unknownPaperSelectsNothing()
{
    QSettings().setValue("pageSize", 999);
    Settings dialog(nullptr);
    QCOMPARE(dialog.findChild<QComboBox *>("paperSizeCombo")->currentIndex(), -1);
    dialog.accept();
    QVERIFY(!QSettings().value("pageSize").isValid());
}

void TestSettings::updateCheckIsHiddenAndKept()
{
    QSettings().setValue("checkUpdates", false);
    ProgramSettings dialog(nullptr);
    QCOMPARE(dialog.windowTitle(), QString("Program Settings"));
    QVERIFY(dialog.findChild<QCheckBox *>("updateCheck")->isHidden());
    QSettings().remove("checkUpdates");
    dialog.accept();
    QCOMPARE(QSettings().value("checkUpdates", true).toBool(), false);
}

void TestSettings::chooseLogo(ProgramSettings &dialog, const QString &path)
{
    DialogAnswer answer(fileChoice(path));
    dialog.findChild<QPushButton *>("chooseLogo")->click();
    QVERIFY(answer.wasAsked());
}

void TestSettings::chosenLogoIsSavedAtOnce_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QSize>("size"); // of the logo afterwards

    QTest::newRow("picture") << "logo.bmp" << QSize(30, 20);
    QTest::newRow("no picture keeps the old logo") << "text.png" << QSize(5, 5);
}

void TestSettings::chosenLogoIsSavedAtOnce()
{
    QFETCH(QString, name);
    QFETCH(QSize, size);
    QImage old(5, 5, QImage::Format_RGB32);
    old.fill(Qt::red);
    QVERIFY(old.save(logoPath));
    QVERIFY(old.scaled(30, 20).save(folder.filePath("logo.bmp")));
    QFile text(folder.filePath("text.png"));
    QVERIFY(text.open(QIODevice::WriteOnly) && text.write("not a picture") > 0);
    text.close();
    QSettings().setValue("lastImagePath", "kept");

    ProgramSettings dialog(nullptr);
    chooseLogo(dialog, folder.filePath(name));
    dialog.reject();
    QCOMPARE(QImage(logoPath, "PNG").size(), size);
    QCOMPARE(dialog.findChild<QLabel *>("label")->pixmap(Qt::ReturnByValue).size(), size);
    QCOMPARE(QSettings().value("lastImagePath").toString(), QString("kept"));
}

void TestSettings::clearedLogoIsGoneAtOnce()
{
    ProgramSettings without(nullptr);
    auto *clear = without.findChild<QPushButton *>("clearButton");
    QVERIFY(!clear->isEnabled());
    QImage logo(8, 8, QImage::Format_RGB32);
    QVERIFY(logo.save(folder.filePath("logo.png")));
    chooseLogo(without, folder.filePath("logo.png"));
    QVERIFY(QFile::exists(logoPath));
    QVERIFY2(!clear->isEnabled(), "until the dialog is opened again");

    ProgramSettings with(nullptr);
    clear = with.findChild<QPushButton *>("clearButton");
    QVERIFY(clear->isEnabled());
    clear->click();
    QVERIFY(!clear->isEnabled());
    QVERIFY(with.findChild<QLabel *>("label")->pixmap(Qt::ReturnByValue).isNull());
    QVERIFY(!QFile::exists(logoPath));
}

void TestSettings::aboutNamesTheProgram()
{
    AboutDialog dialog(nullptr);
    QCOMPARE(dialog.windowTitle(), QString("About TRAC/Ex Examiner"));
    QCOMPARE(dialog.findChild<QLabel *>("titleText")->text(), QString("TRAC/Ex Examiner 2.01"));
    const QString about = dialog.findChild<QLabel *>("aboutText")->text();
    QVERIFY(about.contains("TRAC/Ex Examiner") && !about.contains("$("));
    dialog.show();
    dialog.findChild<QPushButton *>("closeButton")->click();
    QVERIFY(!dialog.isVisible());
}

EXAMINER_TEST_MAIN(TestSettings)
#include "testsettings.moc"
