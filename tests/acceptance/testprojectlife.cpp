#include "acceptance/windowuser.h"
#include "project/projectfile.h"
#include "shell/introscreen.h"
#include "support/supportfiles.h"
#include "testing/testmain.h"

#include <QDataStream>
#include <QTableWidget>
#include <QToolButton>

#include <csignal>
#include <memory>

namespace
{

const char BeforeCrash[] = "EXAMINER_LIFE_BEFORE_CRASH";

const QPointF Factor(160, 260), Control(420, 260), LossPlace(700, 280);
const QStringList ThreeTabs = {"Investigation Form", "ECS Chart", "Causal Factor 1"};

QString homeFile(const QString &name)
{
    return QDir::homePath() + "/" + name;
}

QString getFirstName()
{
    return homeFile("deck fall.epf");
}

QString getSecondName()
{
    return homeFile("deck fall revised.epf");
}

/// What lies in the data folder for the start screen to offer.
QStringList getAutoSaves()
{
    return QDir(makeDataFolder()).entryList({"*.autosave"}, QDir::Files);
}

QStringList getKeptCopies()
{
    return QDir(makeDataFolder() + "/kept").entryList(QDir::Files);
}

QStringList getRecentFiles()
{
    QSettings settings;
    settings.sync();
    return settings.value("recentFiles").toStringList();
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// What the program knew when it died.
void leaveRecord(const QString &name, const QStringList &description)
{
    QFile file(homeFile(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QDataStream out(&file);
    out << description;
}

QStringList readRecord(const QString &name)
{
    QFile file(homeFile(name));
    QStringList description;
    if (file.open(QIODevice::ReadOnly)) {
        QDataStream in(&file);
        in >> description;
    }
    return description;
}

/// Start screen and window, as the program puts them together.
struct Program {
    Program() : screen(new IntroScreen(nullptr)), window(screen)
    {
        QObject::connect(screen, &IntroScreen::newProjectClicked, &window, &MainWindow::newProject,
                         Qt::QueuedConnection);
        QObject::connect(screen, &IntroScreen::openProjectClicked, &window,
                         &MainWindow::openProject, Qt::QueuedConnection);
        screen->showMaximized();
        QVERIFY(QTest::qWaitForWindowActive(screen, 20000));
    }

    ~Program() { delete screen; }

    template<typename Widget> Widget *onScreen(const char *name) const
    {
        return screen->findChild<Widget *>(name);
    }

    /// The start screen has made room for the window.
    void waitForWindow()
    {
        QTRY_VERIFY(!screen);
        QVERIFY(QTest::qWaitForWindowActive(&window, 20000));
        QTRY_VERIFY(window.isMaximized());
    }

    ProjectFile *file() const { return window.findChild<ProjectFile *>(); }

    QPointer<IntroScreen> screen;
    MainWindow window;
    WindowUser user{&window};
};

} // namespace

/// The first half of a project's life, which a crash ends. Runs in a process of its own.
class TestUntilCrash : public QObject
{
    Q_OBJECT

private slots:
    void aProjectIsBegun();
    void aChartIsDrawn();
    void aCausalFactorGetsItsSheet();
    void itIsSaved();
    void itIsChanged();
    void itIsSavedByTheClock();
    void theProgramDies();

private:
    std::unique_ptr<Program> program;
    const WindowUser *user = nullptr;
};

void TestUntilCrash::aProjectIsBegun()
{
    copySupportFiles();
    program = std::make_unique<Program>();
    user = &program->user;
    QVERIFY(!program->onScreen<QWidget>("autoSaveGroup")->isVisible());
    XUser::takeShot("life-01-start");
    XUser::click(XUser::centreOf(program->onScreen<QToolButton>("newProjectButton")));
    program->waitForWindow();
    QCOMPARE(user->tabTitles(), ThreeTabs.mid(0, 2));
    QCOMPARE(program->window.windowTitle(), QString("untitled[*] - TRAC/Ex Examiner"));
    QVERIFY(!program->window.isWindowModified());
    user->openTab("ECS Chart");
}

void TestUntilCrash::aChartIsDrawn()
{
    user->drop("Event", {100, 220});
    QTRY_VERIFY(program->window.isWindowModified());
    user->drop("Event", {360, 220});
    user->drop("Event", {640, 220});
    user->drawLine("Connector", {218, 260}, {362, 260});
    user->chooseRole({700, 260}, "Loss");
    user->chooseRole(Control, "Loss Of Control");
    user->typeInto(Factor, "Wind taken as steady");
    user->typeInto(Control, "The deck twists");
    user->typeInto(LossPlace, "The span falls");
    QCOMPARE(user->scene()->getProjectItems().size(), 4);
}

void TestUntilCrash::aCausalFactorGetsItsSheet()
{
    user->chooseRole(Factor, "Causal Factor");
    QTRY_COMPARE(user->tabTitles(), ThreeTabs);
    const QList<ProjectScene *> sheets = program->window.getFactorScenes();
    QCOMPARE(sheets.size(), 1);
    QCOMPARE(sheets.first()->getAllNotes().size(), 3);
    QCOMPARE(sheets.first()->getProjectItems().size(), 5);
    QCOMPARE(user->valueOf("causalFactor_text_1"), QString("Wind taken as steady"));
    QCOMPARE(user->valueOf("loss"), QString("The span falls"));
    QCOMPARE(user->valueOf("lossOfControl"), QString("The deck twists"));
    XUser::takeShot("life-02-drawn");
}

void TestUntilCrash::itIsSaved()
{
    XUser::answerNextDialog(getFirstName());
    XUser::press("ctrl+s");
    QTRY_VERIFY(!program->window.isWindowModified());
    QCOMPARE(program->window.windowTitle(), getFirstName() + "[*] - TRAC/Ex Examiner");
    QVERIFY(QFile::exists(getFirstName()));
    QCOMPARE(getRecentFiles(), QStringList(getFirstName()));
    QCOMPARE(getAutoSaves(), QStringList());
    QCOMPARE(getKeptCopies(), QStringList());
    leaveRecord("saved", user->describeProject());
}

void TestUntilCrash::itIsChanged()
{
    user->openTab("Causal Factor 1");
    user->drop("Condition", {260, 400});
    QTRY_VERIFY(program->window.isWindowModified());
    user->typeInto({320, 440}, "Tunnel tests came late");

    user->openTab("Investigation Form");
    user->typeIntoField("incidentTitle", "Fall of the deck");
    QTRY_COMPARE(user->valueOf("incidentTitle"), QString("Fall of the deck"));
    XUser::takeShot("life-03-changed");

    user->openTab("ECS Chart");
    user->beginEditing(Control);
    XUser::type("The deck twists and");
    QTRY_COMPARE(user->noteAt(Control)->getText(), QString("The deck twists and"));
}

// While a note is still under edit.
void TestUntilCrash::itIsSavedByTheClock()
{
    const QByteArray saved = readFile(getFirstName());
    auto *clock = program->file()->findChild<QTimer *>();
    QVERIFY(clock->isActive());
    QCOMPARE(clock->interval(), 180000);
    clock->setInterval(1);
    QTRY_COMPARE(getAutoSaves(), QStringList("deck fall.epf.autosave"));
    clock->setInterval(180000);
    QVERIFY(program->window.isWindowModified());
    QCOMPARE(program->window.windowTitle(), getFirstName() + "[*] - TRAC/Ex Examiner");
    QCOMPARE(readFile(getFirstName()), saved);
    QVERIFY(user->noteAt(Control)->isEditing());
    leaveRecord("changed", user->describeProject());
}

void TestUntilCrash::theProgramDies()
{
    raise(SIGKILL);
}

/// The second half: what the crash left is brought back, and the project goes on.
class TestProjectLife : public QObject
{
    Q_OBJECT

private slots:
    void theFirstHalfEndsInACrash();
    void theStartScreenBringsTheWorkBack();
    void nothingIsLost();
    void itIsSavedUnderAnotherName();
    void itIsOpenedAgain();
    void closingAsksAndSaves();
    void theNextStartKnowsTheFiles();

private:
    std::unique_ptr<Program> program;
    const WindowUser *user = nullptr;
    QStringList finalState;
};

void TestProjectLife::theFirstHalfEndsInACrash()
{
    QProcess firstHalf;
    firstHalf.setProcessChannelMode(QProcess::ForwardedChannels);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(BeforeCrash, "1");
    firstHalf.setProcessEnvironment(environment);
    firstHalf.start(QCoreApplication::applicationFilePath(), QStringList());
    QVERIFY(firstHalf.waitForFinished(120000));
    QCOMPARE(firstHalf.exitStatus(), QProcess::CrashExit);
    QCOMPARE(firstHalf.exitCode(), SIGKILL);
    QCOMPARE(getAutoSaves(), QStringList("deck fall.epf.autosave"));
    QVERIFY(!readRecord("changed").isEmpty());
    QVERIFY(readRecord("changed") != readRecord("saved"));
}

void TestProjectLife::theStartScreenBringsTheWorkBack()
{
    program = std::make_unique<Program>();
    user = &program->user;
    auto *table = program->onScreen<QTableWidget>("autoSaveTable");
    QVERIFY(table->isVisible());
    QCOMPARE(table->rowCount(), 1);
    QTableWidgetItem *item = table->item(0, 0);
    QCOMPARE(item->text(), QString("deck fall.epf"));
    XUser::takeShot("life-04-offered");
    XUser::doubleClick(table->viewport()->mapToGlobal(table->visualItemRect(item).center()));
    program->waitForWindow();
    QTRY_COMPARE(user->tabTitles(), ThreeTabs);
}

void TestProjectLife::nothingIsLost()
{
    // At once, since the file that was read is gone.
    QTRY_COMPARE(getAutoSaves(), QStringList("deck fall.epf.autosave.autosave"));
    QTRY_COMPARE(user->describeProject(), readRecord("changed"));
    QCOMPARE(getKeptCopies().size(), 1);
    QVERIFY(program->window.isWindowModified());
    QCOMPARE(program->window.windowTitle(),
             QString("deck fall.epf.autosave[*] - TRAC/Ex Examiner"));
    QCOMPARE(getRecentFiles(), QStringList(getFirstName()));
    user->openTab("Causal Factor 1");
    XUser::takeShot("life-05-restored");
    user->openTab("ECS Chart");
    user->typeInto(Control, "The deck twists and tears");
}

void TestProjectLife::itIsSavedUnderAnotherName()
{
    const QByteArray former = readFile(getFirstName());
    XUser::answerNextDialog(getSecondName());
    user->chooseFromMenu("File", "Save As...");
    QTRY_VERIFY(!program->window.isWindowModified());
    QCOMPARE(program->window.windowTitle(), getSecondName() + "[*] - TRAC/Ex Examiner");
    QCOMPARE(getRecentFiles(), QStringList({getSecondName(), getFirstName()}));
    QCOMPARE(getAutoSaves(), QStringList());
    QCOMPARE(readFile(getFirstName()), former);
    QVERIFY(program->window.isVisible());
}

void TestProjectLife::itIsOpenedAgain()
{
    finalState = user->describeProject();
    QVERIFY(finalState != readRecord("changed"));
    program->window.newProject();
    QCOMPARE(user->tabTitles(), ThreeTabs.mid(0, 2));
    XUser::answerNextDialog(getSecondName());
    XUser::press("ctrl+o");
    QTRY_COMPARE(program->window.windowTitle(), getSecondName() + "[*] - TRAC/Ex Examiner");
    QTRY_COMPARE(user->describeProject(), finalState);
    QVERIFY(!program->window.isWindowModified());
    QCOMPARE(user->tabTitles(), ThreeTabs);
    QCOMPARE(getRecentFiles(), QStringList({getSecondName(), getFirstName()}));
    XUser::takeShot("life-06-reopened");
}

void TestProjectLife::closingAsksAndSaves()
{
    user->openTab("ECS Chart");
    user->select(Factor);
    XUser::press("Down");
    QTRY_VERIFY(program->window.isWindowModified());
    finalState = user->describeProject();
    const QPointer<QObject> question = XUser::answerNextDialog({"key", "Escape"});
    XUser::press("alt+F4");
    QTRY_VERIFY(!question);
    QTRY_VERIFY(!QApplication::activeModalWidget());
    QVERIFY(program->window.isVisible());
    QVERIFY(program->window.isWindowModified());
    XUser::answerNextDialog({"key", "Return"}); // Save
    XUser::press("alt+F4");
    QTRY_VERIFY(!program->window.isVisible());
    QCOMPARE(getAutoSaves(), QStringList());
    program.reset();
}

void TestProjectLife::theNextStartKnowsTheFiles()
{
    program = std::make_unique<Program>();
    user = &program->user;
    QVERIFY(!program->onScreen<QWidget>("autoSaveGroup")->isVisible());
    auto *button = program->onScreen<QToolButton>("openProjectButton");
    QCOMPARE(button->actions().size(), 2);
    XUser::answerNextMenu(getSecondName(), "life-07-recent");
    XUser::click(button->mapToGlobal(QPoint(button->width() - 4, button->height() / 2)));
    program->waitForWindow();
    QTRY_COMPARE(program->window.windowTitle(), getSecondName() + "[*] - TRAC/Ex Examiner");
    QTRY_COMPARE(user->describeProject(), finalState);
    program.reset();
}

int main(int argc, char **argv)
{
    const bool untilCrash = qEnvironmentVariableIsSet(BeforeCrash);
    // The first half lives in the home of the second.
    const auto home = untilCrash ? nullptr : std::make_unique<TestHome>();
    prepareTestApplication();
    QApplication application(argc, argv);
    makeDataFolder();
    std::unique_ptr<QObject> test;
    if (untilCrash)
        test = std::make_unique<TestUntilCrash>();
    else
        test = std::make_unique<TestProjectLife>();
    return QTest::qExec(test.get(), argc, argv);
}

#include "testprojectlife.moc"
