#include "shell/introscreen.h"
#include "testing/testmain.h"

#include <QAction>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QSignalSpy>
#include <QTableWidget>
#include <QToolButton>

class TestIntroScreen : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void controls_data();
    void controls();
    void nothingToRestore();
    void recentFiles();
    void autoSavedFiles();
    void aLowScreenShowsTheNameInsteadOfTheLogo();
    void updateButton();
    void darkRedGround();
};

namespace
{

void writeDataFile(const QString &name)
{
    QFile file(makeDataFolder() + '/' + name);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

} // namespace

void TestIntroScreen::init()
{
    QSettings().clear();
    QDir data(makeDataFolder());
    for (const QString &name : data.entryList({"*.autosave"}, QDir::Files))
        data.remove(name);
}

void TestIntroScreen::controls_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shortcut");

    QTest::newRow("newProjectButton") << "&New Project"
                                      << "Ctrl+N";
    QTest::newRow("quickStartButton") << "Quick &Start"
                                      << "Ctrl+N";
    QTest::newRow("openProjectButton") << "&Open Project"
                                       << "Ctrl+O";
    QTest::newRow("updateButton") << "Software &Update Available\nClick to Download"
                                  << "Alt+U";
}

void TestIntroScreen::controls()
{
    QFETCH(QString, text);
    QFETCH(QString, shortcut);

    IntroScreen screen(nullptr);
    const auto *button = screen.findChild<QToolButton *>(QTest::currentDataTag());
    QVERIFY(button);
    QCOMPARE(button->text(), text);
    QCOMPARE(button->shortcut(), QKeySequence(shortcut));
    QCOMPARE(button->icon().actualSize(QSize(48, 48)), QSize(48, 48));
    QCOMPARE(button->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
    QVERIFY(button->autoRaise());
}

void TestIntroScreen::nothingToRestore()
{
    IntroScreen screen(nullptr);
    QCOMPARE(screen.windowTitle(), QString("TRAC/Ex ECS"));
    QVERIFY(screen.testAttribute(Qt::WA_DeleteOnClose));
    QVERIFY(screen.findChild<QGroupBox *>("autoSaveGroup")->isHidden());
    QVERIFY(screen.findChild<QToolButton *>("updateButton")->isHidden());
    QCOMPARE(screen.findChild<QTableWidget *>("autoSaveTable")->columnCount(), 0);
    auto *open = screen.findChild<QToolButton *>("openProjectButton");
    QCOMPARE(open->popupMode(), QToolButton::DelayedPopup);
    QVERIFY(open->actions().isEmpty());

    QSignalSpy opened(&screen, &IntroScreen::openProjectClicked);
    open->click();
    QCOMPARE(opened.takeFirst(), QVariantList({QString(), true}));
}

void TestIntroScreen::recentFiles()
{
    const QStringList paths = {"/home/u/A & B.epf", "/home/u/b.epf"};
    QSettings().setValue("recentFiles", paths);
    IntroScreen screen(nullptr);
    auto *open = screen.findChild<QToolButton *>("openProjectButton");
    QCOMPARE(open->popupMode(), QToolButton::MenuButtonPopup);
    QCOMPARE(open->actions().size(), 2);

    QSignalSpy opened(&screen, &IntroScreen::openProjectClicked);
    for (const QString &path : paths) {
        open->actions().at(paths.indexOf(path))->trigger();
        QCOMPARE(opened.takeFirst(), QVariantList({path, true}));
    }
}

void TestIntroScreen::autoSavedFiles()
{
    writeDataFile("a.autosave.epf.autosave");
    IntroScreen screen(nullptr);
    QVERIFY(!screen.findChild<QGroupBox *>("autoSaveGroup")->isHidden());
    auto *table = screen.findChild<QTableWidget *>("autoSaveTable");
    QCOMPARE(table->rowCount(), 1);
    QCOMPARE(table->horizontalHeaderItem(0)->text(), QString("Name"));
    QCOMPARE(table->horizontalHeaderItem(1)->text(), QString("Saved on"));
    QCOMPARE(table->item(0, 0)->text(), QString("a.autosave.epf"));
    QCOMPARE(table->item(0, 0)->toolTip(), QString("Double click to open this auto-saved file."));
    QCOMPARE(table->item(0, 1)->flags(), Qt::ItemIsEnabled);

    QSignalSpy opened(&screen, &IntroScreen::openProjectClicked);
    emit table->itemActivated(table->item(0, 1));
    QVERIFY2(opened.isEmpty(), "the date opens nothing");
    emit table->itemActivated(table->item(0, 0));
    const QString path = makeDataFolder() + "/a.autosave.epf.autosave";
    QCOMPARE(opened.takeFirst(), QVariantList({path, false}));
}

void TestIntroScreen::aLowScreenShowsTheNameInsteadOfTheLogo()
{
    IntroScreen screen(nullptr);
    auto *logo = screen.findChild<QLabel *>("logoLabel");
    screen.fitLogo(300);
    QCOMPARE(logo->pixmap(Qt::ReturnByValue).size(), QSize(480, 200));
    screen.fitLogo(299);
    QVERIFY(logo->pixmap(Qt::ReturnByValue).isNull());
    QCOMPARE(logo->text(), QString("TRAC/Ex Examiner"));
    QCOMPARE(logo->font().pointSize(), 25);
}

void TestIntroScreen::updateButton()
{
    IntroScreen screen(nullptr);
    auto *button = screen.findChild<QToolButton *>("updateButton");
    QSignalSpy clicked(&screen, &IntroScreen::updateClicked);
    screen.showUpdateButton();
    QVERIFY(!button->isHidden());
    button->click();
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(button->text(), QString("Loading update site..."));
    QTRY_COMPARE_WITH_TIMEOUT(button->text(),
                              QString("Software Update Available\nClick to Download"), 7000);
}

void TestIntroScreen::darkRedGround()
{
    IntroScreen screen(nullptr);
    screen.resize(764, 875);
    const QImage picture = screen.grab().toImage();
    QCOMPARE(picture.pixelColor(2, 2), QColor("#951900"));
    QCOMPARE(
        screen.findChild<QToolButton *>("newProjectButton")->palette().color(QPalette::ButtonText),
        QColor(Qt::white));
}

EXAMINER_TEST_MAIN(TestIntroScreen)
#include "testintroscreen.moc"
