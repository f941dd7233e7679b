#include "acceptance/user.h"
#include "project/projectfile.h"
#include "support/supportfiles.h"
#include "testing/dialogs.h"
#include "testing/files.h"
#include "testing/testmain.h"

#include <QTableWidget>
#include <QToolButton>

#include <csignal>

namespace
{

const char FirstHalf[] = "EXAMINER_STORY_FIRST_HALF";
const QPointF Factor(160, 260), Control(420, 260), LossPlace(700, 260);

QStringList getAutoSaves()
{
    return QDir(makeDataFolder()).entryList({"*.autosave"}, QDir::Files);
}

} // namespace

/// The life of a project, as its user sees it: drawn, saved, lost in a crash and brought back.
class TestStory : public QObject
{
    Q_OBJECT

private slots:
    void aProjectIsDrawnUntilACrash()
    {
        if (qEnvironmentVariableIsSet(FirstHalf)) {
            drawUntilTheCrash();
            return;
        }
        QProcess firstHalf;
        firstHalf.setProcessChannelMode(QProcess::ForwardedChannels);
        qputenv(FirstHalf, "1");
        firstHalf.start(QCoreApplication::applicationFilePath(), {"aProjectIsDrawnUntilACrash"});
        QVERIFY(firstHalf.waitForFinished(200000));
        QCOMPARE(firstHalf.exitStatus(), QProcess::CrashExit);
        QCOMPARE(firstHalf.exitCode(), SIGKILL);
    }

    void theWorkIsBroughtBackAndClosedInMidWord()
    {
        const QByteArray former = readBytes(first);
        User user;
        auto *table = user.screen->findChild<QTableWidget *>("autoSaveTable");
        EXPECT_EQUAL(table->rowCount(), 1);
        QCOMPARE(table->item(0, 0)->text(), QString("deck fall.epf"));
        changed.sync();
        User::click(
            table->viewport()->mapToGlobal(table->visualItemRect(table->item(0, 0)).center()), "2");
        user.waitForWindow();
        // The window saves it anew at once, since the file that was read is gone.
        EXPECT_EQUAL(getAutoSaves(), QStringList("deck fall.epf.autosave.autosave"));
        EXPECT_EQUAL(user.describeProject(), changed.value("all").toString());

        user.openTab(0);
        user.typeIntoField("lossOfControl", "Closed in mid");
        DialogAnswer name(fileChoice(second));
        BoxAnswer save(QMessageBox::Save);
        User::press("alt+F4");
        EXPECT(!user.window.isVisible());
        QVERIFY(readBytes(second).contains("Closed in mid"));
        QCOMPARE(readBytes(first), former);
        QCOMPARE(getAutoSaves(), QStringList());
    }

private:
    void drawUntilTheCrash()
    {
        copySupportFiles();
        User user;
        User::click(User::centreOf(user.screen->findChild<QToolButton *>("newProjectButton")));
        user.waitForWindow();
        user.openTab(1);
        for (const QPointF &place : {Factor, Control, LossPlace})
            user.drop("Event", place);
        user.chooseRole(LossPlace, "Loss");
        user.chooseRole(Control, "Loss Of Control");
        user.typeInto(Factor, "Wind taken as steady");
        user.chooseRole(Factor, "Causal Factor");
        EXPECT_EQUAL(user.tabs()->count(), 3);
        EXPECT_EQUAL(user.form()->getFieldValue("causalFactor_text_1"),
                     QString("Wind taken as steady"));
        QCOMPARE(user.window.getFactorScenes().first()->getProjectItems().size(), 5);

        user.openTab(0);
        user.typeIntoField("incidentTitle", "Fall of");
        DialogAnswer name(fileChoice(first));
        User::press("ctrl+s");
        EXPECT(!user.window.isWindowModified());
        const QByteArray saved = readBytes(first);
        QVERIFY(saved.contains("Fall of"));
        User::type(" the deck");
        EXPECT_EQUAL(user.form()->getFieldValue("incidentTitle"), QString("Fall of the deck"));
        EXPECT(user.window.isWindowModified());

        user.openTab(2);
        user.drop("Condition", {320, 440});
        user.openTab(1);
        user.typeInto(Control, "The deck twists and");
        auto *clock = user.window.findChild<ProjectFile *>()->findChild<QTimer *>();
        QVERIFY(clock->isActive());
        clock->setInterval(1);
        EXPECT_EQUAL(getAutoSaves(), QStringList("deck fall.epf.autosave"));
        clock->setInterval(180000);
        QVERIFY(user.noteAt(Control)->isEditing());
        QCOMPARE(readBytes(first), saved);
        changed.setValue("all", user.describeProject());
        changed.sync();
        if (!QTest::currentTestFailed())
            raise(SIGKILL);
    }

    const QString first = QDir::homePath() + "/deck fall.epf";
    const QString second = QDir::homePath() + "/deck fall revised.epf";
    QSettings changed{QDir::homePath() + "/changed.ini", QSettings::IniFormat}; // by the first half
};

int main(int argc, char **argv)
{
    // The first half lives in the home of the second.
    const auto home = qEnvironmentVariableIsSet(FirstHalf) ? nullptr : std::make_unique<TestHome>();
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    Application application(argc, argv);
    makeDataFolder();
    TestStory test;
    return QTest::qExec(&test, argc, argv);
}

#include "teststory.moc"
