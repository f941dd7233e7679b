#include "acceptance/user.h"
#include "project/projectfile.h"
#include "support/supportfiles.h"
#include "testing/dialogs.h"
#include "testing/testmain.h"

#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTableWidget>
#include <QToolButton>
#include <QUndoStack>

#include <csignal>

namespace
{

const char FirstHalf[] = "EXAMINER_STORY_FIRST_HALF";
const QPointF Factor(160, 260), Control(420, 260), LossPlace(700, 260);

QString homeFile(const QString &name)
{
    return QDir::homePath() + '/' + name;
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString &path, const QString &text)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0);
}

QStringList getAutoSaves()
{
    return QDir(makeDataFolder()).entryList({"*.autosave"}, QDir::Files);
}

/// As the file holds it.
QString getStoredValue(const QString &path, const QString &id)
{
    QString value;
    {
        QSqlDatabase file = QSqlDatabase::addDatabase("QSQLITE", "look");
        file.setDatabaseName(path);
        file.open();
        QSqlQuery query("SELECT value FROM formdata WHERE id='" + id + "'", file);
        if (query.next())
            value = query.value(0).toString();
    }
    QSqlDatabase::removeDatabase("look");
    return value;
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
        waitFor(screen);
    }
    ~Program() { delete screen; }

    static void waitFor(QWidget *top)
    {
        QVERIFY(QTest::qWaitForWindowActive(top, 30000));
        EXPECT(top->isMaximized() && top->width() == top->screen()->size().width());
    }
    /// The start screen makes room for the window, and the form's page loads.
    void waitForWindow()
    {
        EXPECT(!screen);
        waitFor(&window);
        EXPECT(user.form()->getAllFields(true).count() > 0);
    }

    QPointer<IntroScreen> screen;
    MainWindow window;
    User user{&window};
};

} // namespace

/// The life of a project, as its user sees it: drawn, saved, lost in a crash and brought back.
class TestStory : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        if (brokenOff)
            QSKIP("The story broke off.");
    }
    void cleanup() { brokenOff |= QTest::currentTestFailed(); }

    void aProjectIsDrawnUntilACrash()
    {
        if (qEnvironmentVariableIsSet(FirstHalf)) {
            for (const auto step :
                 {&TestStory::begin, &TestStory::draw, &TestStory::undoAllAndRedoAll,
                  &TestStory::saveInMidWord, &TestStory::change}) {
                (this->*step)();
                if (QTest::currentTestFailed())
                    return;
            }
            raise(SIGKILL);
        }
        QProcess firstHalf;
        firstHalf.setProcessChannelMode(QProcess::ForwardedChannels);
        qputenv(FirstHalf, "1");
        firstHalf.start(QCoreApplication::applicationFilePath(), {"aProjectIsDrawnUntilACrash"});
        QVERIFY(firstHalf.waitForFinished(200000));
        QCOMPARE(firstHalf.exitStatus(), QProcess::CrashExit);
        QCOMPARE(firstHalf.exitCode(), SIGKILL);
    }

    void theWorkIsBroughtBack()
    {
        program = std::make_unique<Program>();
        auto *table = program->screen->findChild<QTableWidget *>("autoSaveTable");
        EXPECT_EQUAL(table->rowCount(), 1);
        QCOMPARE(table->item(0, 0)->text(), QString("deck fall.epf"));
        User::takeShot("offered");
        User::click(
            table->viewport()->mapToGlobal(table->visualItemRect(table->item(0, 0)).center()), "2");
        program->waitForWindow();
        // The window saves it anew at once, since the file that was read is gone.
        EXPECT_EQUAL(getAutoSaves(), QStringList("deck fall.epf.autosave.autosave"));
        EXPECT_EQUAL(user().describeProject(), QString(readFile(homeFile("changed"))));
        QVERIFY(program->window.isWindowModified());
        User::takeShot("restored");
    }

    void itIsSavedUnderAnotherName()
    {
        const QByteArray former = readFile(first);
        DialogAnswer name(fileChoice(second));
        User::press("alt+f");
        EXPECT(QApplication::activePopupWidget());
        User::press("a");
        EXPECT(!program->window.isWindowModified());
        QCOMPARE(program->window.windowTitle(), second + "[*] - TRAC/Ex Examiner");
        QCOMPARE(getAutoSaves(), QStringList());
        QCOMPARE(readFile(first), former);
    }

    void itIsOpenedAgain()
    {
        const QString saved = user().describeProject();
        program->window.newProject();
        EXPECT_EQUAL(user().tabs()->count(), 2);
        DialogAnswer name(fileChoice(second));
        User::press("ctrl+o");
        EXPECT_EQUAL(program->window.windowTitle(), second + "[*] - TRAC/Ex Examiner");
        EXPECT_EQUAL(user().describeProject(), saved);
        QVERIFY(!program->window.isWindowModified());
    }

    void closingInMidWordLosesNothing()
    {
        user().openTab(0);
        user().typeIntoField("lossOfControl", "Closed in mid");
        BoxAnswer save(QMessageBox::Save);
        User::press("alt+F4");
        EXPECT(!program->window.isVisible());
        QVERIFY(save.wasAsked());
        QCOMPARE(getStoredValue(second, "lossOfControl"), QString("Closed in mid"));
        program.reset();
    }

private:
    const User &user() const { return program->user; }

    void begin()
    {
        copySupportFiles();
        program = std::make_unique<Program>();
        QVERIFY(!program->screen->findChild<QWidget *>("autoSaveGroup")->isVisible());
        User::click(User::centreOf(program->screen->findChild<QToolButton *>("newProjectButton")));
        program->waitForWindow();
        user().openTab(1);
    }

    void draw()
    {
        for (const QPointF &place : {Factor, Control, LossPlace})
            user().drop("Event", place);
        user().drawLine("Connector", Factor + QPointF(58, 0), Control - QPointF(58, 0));
        user().chooseRole(LossPlace, "Loss");
        user().chooseRole(Control, "Loss Of Control");
        user().typeInto(Factor, "Wind taken as steady");
        user().typeInto(Control, "The deck twists");
        user().typeInto(LossPlace, "The span falls");
        user().chooseRole(Factor, "Causal Factor");
        EXPECT_EQUAL(user().tabs()->count(), 3);
        EXPECT_EQUAL(user().form()->getFieldValue("causalFactor_text_1"),
                     QString("Wind taken as steady"));
        QCOMPARE(user().form()->getFieldValue("loss"), QString("The span falls"));
        QCOMPARE(program->window.getFactorScenes().first()->getProjectItems().size(), 5);
        User::takeShot("drawn");
    }

    /// A factor's sheet that comes back may have new twins of the same notes.
    QString describeChart() const
    {
        return describe(*user().sheet()).replace(QRegularExpression("siblings \\S*"), "siblings");
    }

    void undoAllAndRedoAll()
    {
        const QString drawn = describeChart();
        const QUndoStack *stack = user().sheet()->getUndoStack();
        User::press("ctrl+z", stack->count());
        EXPECT_EQUAL(stack->index(), 0);
        QCOMPARE(describeChart(), QString());
        EXPECT_EQUAL(user().tabs()->count(), 2);
        User::press("ctrl+shift+z", stack->count());
        EXPECT_EQUAL(stack->index(), stack->count());
        EXPECT_EQUAL(user().tabs()->count(), 3);
        QCOMPARE(describeChart(), drawn);
    }

    void saveInMidWord()
    {
        user().openTab(0);
        user().typeIntoField("incidentTitle", "Fall of");
        DialogAnswer name(fileChoice(first));
        User::press("ctrl+s");
        EXPECT(!program->window.isWindowModified());
        QCOMPARE(getStoredValue(first, "incidentTitle"), QString("Fall of"));
        User::type(" the deck");
        EXPECT_EQUAL(user().form()->getFieldValue("incidentTitle"), QString("Fall of the deck"));
        EXPECT(program->window.isWindowModified());
    }

    /// While a note is still under edit.
    void change()
    {
        user().openTab(2);
        user().drop("Condition", {320, 440});
        user().openTab(1);
        user().typeInto(Control, "The deck twists and");
        auto *clock = program->window.findChild<ProjectFile *>()->findChild<QTimer *>();
        QVERIFY(clock->isActive());
        const QByteArray saved = readFile(first);
        clock->setInterval(1);
        EXPECT_EQUAL(getAutoSaves(), QStringList("deck fall.epf.autosave"));
        clock->setInterval(180000);
        QVERIFY(user().noteAt(Control)->isEditing());
        QCOMPARE(readFile(first), saved);
        writeFile(homeFile("changed"), user().describeProject());
    }

    const QString first = homeFile("deck fall.epf");
    const QString second = homeFile("deck fall revised.epf");
    std::unique_ptr<Program> program;
    bool brokenOff = false;
};

int main(int argc, char **argv)
{
    // The first half lives in the home of the second.
    const auto home = qEnvironmentVariableIsSet(FirstHalf) ? nullptr : std::make_unique<TestHome>();
    prepareTestApplication();
    QApplication application(argc, argv);
    makeDataFolder();
    TestStory test;
    return QTest::qExec(&test, argc, argv);
}

#include "teststory.moc"
