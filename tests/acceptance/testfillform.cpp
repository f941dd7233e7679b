#include "acceptance/windowuser.h"
#include "support/supportfiles.h"
#include "testing/dialogs.h"
#include "testing/testmain.h"

#include <QClipboard>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>

namespace
{

const QString Foreign =
    QString::fromUtf8("\u7d50\u679c \u05e9\u05dc\u05d5\u05dd \U0001F525 \"\u00df\"");

} // namespace

/// Somebody fills in the form of the sample with mouse and keyboard, beside its charts.
class TestFillForm : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void typingShowsOnEverySheet();
    void tabLeadsThroughTheCard();
    void notesShowOnTheForm();
    void factorsTradeNumbers();
    void leavingTheTabLosesNothing();
    void savingInMidWordLosesNothing();
    void everyByteIsSavedAndRead();
    void closingInMidWordLosesNothing();

private:
    Sticky *noteWithRole(const QString &role) const;
    Sticky *factor(int number) const;
    QPointF centreOf(Sticky *note) const;
    QStringList twinsOf(Sticky *note) const;
    QStringList textsOfTwins(Sticky *note) const;
    QString value(const QString &id) const { return user->valueOf(id); }
    QString storedValue(const QString &id) const;
    QString path() const { return folder.filePath("sample.epf"); }

    QTemporaryDir folder;
    std::unique_ptr<MainWindow> window;
    std::unique_ptr<WindowUser> user;
    FormView *form = nullptr;
};

void TestFillForm::initTestCase()
{
    copySupportFiles();
    QVERIFY(QFile::copy(QCoreApplication::applicationDirPath() + "/sample.epf", path()));
    window = std::make_unique<MainWindow>(nullptr);
    user = std::make_unique<WindowUser>(window.get());
    window->openProject(path(), false);
    QVERIFY(QTest::qWaitForWindowActive(window.get(), 20000));
    QTest::qWait(500); // the window manager maximizes
    form = user->form();
    QTRY_VERIFY(!form->getAllFields(true).toList().isEmpty());
    QTRY_COMPARE(value("incidentTitle"), QString("Rack collapse in cold store 2"));
}

void TestFillForm::cleanupTestCase()
{
    window.reset();
}

Sticky *TestFillForm::noteWithRole(const QString &role) const
{
    for (Sticky *note : window->getMainScene()->getAllNotes()) {
        if (note->getRoleType() == role)
            return note;
    }
    return nullptr;
}

Sticky *TestFillForm::factor(int number) const
{
    for (Sticky *note : window->getMainScene()->getAllNotes()) {
        if (note->getRoleType() == "Causal_Factor" && note->getCausalFactorNumber() == number)
            return note;
    }
    return nullptr;
}

/// In view, so that the mouse reaches it.
QPointF TestFillForm::centreOf(Sticky *note) const
{
    const QPointF centre = note->mapRectToScene(note->getRect()).center();
    user->view()->centerOn(centre);
    return centre;
}

/// The copies of a note on the factors' sheets.
QStringList TestFillForm::twinsOf(Sticky *note) const
{
    QStringList twins;
    for (const QString &id : note->getSiblings()) {
        if (window->getNoteWithGUID(id))
            twins << id;
    }
    return twins;
}

QStringList TestFillForm::textsOfTwins(Sticky *note) const
{
    QStringList texts;
    for (const QString &id : twinsOf(note))
        texts << window->getNoteWithGUID(id)->getText();
    return texts;
}

/// As the file holds it.
QString TestFillForm::storedValue(const QString &id) const
{
    QString value;
    {
        QSqlDatabase file = QSqlDatabase::addDatabase("QSQLITE", "look");
        file.setDatabaseName(path());
        file.open();
        QSqlQuery query(file);
        if (query.exec("SELECT value FROM formdata WHERE id = '" + id + "'") && query.next())
            value = query.value(0).toString();
    }
    QSqlDatabase::removeDatabase("look");
    return value;
}

void TestFillForm::typingShowsOnEverySheet()
{
    user->openTab("Investigation Form");
    Sticky *loss = noteWithRole("Loss");
    QVERIFY(!window->isWindowModified());
    user->typeIntoField("loss", "A foot is \"crushed\"");
    QTRY_COMPARE(loss->getText(), QString("A foot is \"crushed\""));
    QCOMPARE(textsOfTwins(loss), QStringList({loss->getText(), loss->getText(), loss->getText()}));
    QVERIFY(window->isWindowModified());

    user->typeIntoField("causalFactor_text_2", "It's dented");
    XUser::press("Return");
    XUser::type("since July");
    QTRY_COMPARE(factor(2)->getText(), QString("It's dented\nsince July"));
    QCOMPARE(textsOfTwins(factor(2)), QStringList("It's dented\nsince July"));
    XUser::takeShot("form-1-typed");
}

void TestFillForm::tabLeadsThroughTheCard()
{
    user->typeIntoField("causalFactor_text_3", "Driven out");
    XUser::press("Tab");
    XUser::press("ctrl+a");
    XUser::type("Seen daily");
    XUser::press("Tab");
    XUser::press("Right"); // from Yes to No
    XUser::press("Tab");
    XUser::press("ctrl+a");
    XUser::type("A travel limit");
    XUser::press("Tab");
    XUser::type("Fleet");
    XUser::press("Tab");
    XUser::type("May");
    QTRY_COMPARE(value("causalFactor_dueDate_3"), QString("May"));
    QCOMPARE(value("causalFactor_description_3"), QString("Seen daily"));
    QCOMPARE(value("causalFactor_worthFixing-Yes_3"), QString("false"));
    QCOMPARE(value("causalFactor_worthFixing-No_3"), QString("true"));
    QCOMPARE(value("causalFactor_correctiveAction_3"), QString("A travel limit"));
    QCOMPARE(value("causalFactor_responsible_3"), QString("Fleet"));
    XUser::takeShot("form-2-card");
}

void TestFillForm::notesShowOnTheForm()
{
    user->openTab("ECS Chart");
    Sticky *note = factor(1);
    user->typeInto(centreOf(note), "The beam was lowered");
    QTRY_COMPARE(value("causalFactor_text_1"), QString("The beam was lowered"));
    QCOMPARE(textsOfTwins(note), QStringList("The beam was lowered"));

    // From a factor's own sheet, in letters that no key of this display has.
    user->openTab("Causal Factor 1");
    Sticky *twin = window->getNoteWithGUID(twinsOf(note).first());
    QApplication::clipboard()->setText(Foreign);
    user->beginEditing(centreOf(twin));
    XUser::press("ctrl+v");
    XUser::press("Escape");
    QTRY_COMPARE(value("causalFactor_text_1"), Foreign);
    QCOMPARE(note->getText(), Foreign);

    user->openTab("Investigation Form");
    XUser::takeShot("form-3-note");
}

void TestFillForm::factorsTradeNumbers()
{
    static const char *const names[] = {"guid",           "text",
                                        "description",    "worthFixing-Yes",
                                        "worthFixing-No", "correctiveAction",
                                        "responsible",    "dueDate"};
    const auto readCard = [this](int number) {
        QStringList card;
        for (const char *name : names)
            card << value(QString("causalFactor_%1_%2").arg(name).arg(number));
        return card;
    };
    const QStringList first = readCard(1), third = readCard(3);
    QVERIFY(first != third);
    QCOMPARE(first.filter(QRegularExpression("^$")), QStringList());
    QCOMPARE(third.filter(QRegularExpression("^$")), QStringList());

    user->openTab("ECS Chart");
    Sticky *note = factor(1);
    const QRectF place(note->scenePos(), note->getRect().size());
    // The number's dialog is answered by one timer, the question after it by another.
    DialogAnswer question([](QWidget *widget) {
        auto *box = qobject_cast<QMessageBox *>(widget);
        if (box)
            box->button(QMessageBox::Ok)->click();
        return box != nullptr;
    });
    DialogAnswer number([](QWidget *widget) {
        auto *dialog = qobject_cast<QInputDialog *>(widget);
        if (dialog) {
            dialog->setIntValue(3);
            dialog->accept();
        }
        return dialog != nullptr;
    });
    user->view()->centerOn(place.center());
    XUser::doubleClick(user->at(place.topRight() + QPointF(-3, 3)));
    QTRY_VERIFY(question.wasAsked());
    QVERIFY(number.wasAsked());
    QTRY_COMPARE(note->getCausalFactorNumber(), 3);
    QCOMPARE(readCard(3), first);
    QCOMPARE(readCard(1), third);
    XUser::takeShot("form-4-traded");
}

void TestFillForm::leavingTheTabLosesNothing()
{
    user->openTab("Investigation Form");
    user->typeIntoField("causalFactor_text_2", "Left in mid");
    user->openTab("ECS Chart");
    QCOMPARE(factor(2)->getText(), QString("Left in mid"));
    QCOMPARE(value("causalFactor_text_2"), QString("Left in mid"));
}

void TestFillForm::savingInMidWordLosesNothing()
{
    user->openTab("Investigation Form");
    user->typeIntoField("lossOfControl", "Saved in mid");
    XUser::press("ctrl+s");
    QTRY_VERIFY(!window->isWindowModified());
    XUser::type(" word");
    QTRY_COMPARE(noteWithRole("Loss_Of_Control")->getText(), QString("Saved in mid word"));
    QVERIFY(window->isWindowModified());
    QCOMPARE(storedValue("lossOfControl"), QString("Saved in mid"));
}

void TestFillForm::everyByteIsSavedAndRead()
{
    // In long lines, as the engine is slow at pasting short ones by the thousand.
    const QString words = QString::fromUtf8("\"quotes\" 'single' \\ <tag> &amp; \t "
                                            "\u7d50\u679c \u05e9\u05dc\u05d5\u05dd \U0001F525 ");
    const QString text = (words.repeated(20) + "\n").repeated(100);
    QVERIFY(text.toUtf8().size() > 100000);
    user->openTab("Investigation Form");
    QApplication::clipboard()->setText(text);
    XUser::click(user->fieldAt("evidence"));
    XUser::press("ctrl+a");
    XUser::press("ctrl+v");
    QTRY_VERIFY_WITH_TIMEOUT(value("evidence") == text, 20000);

    XUser::press("ctrl+s");
    QTRY_VERIFY_WITH_TIMEOUT(!window->isWindowModified(), 20000);
    const FormValues saved = form->getAllFieldValues();
    window->openProject(path(), false);
    QTRY_COMPARE(form->getAllFieldValues().size(), saved.size());
    QTRY_VERIFY(value("evidence") == text);
    const FormValues read = form->getAllFieldValues();
    for (auto field = saved.cbegin(); field != saved.cend(); ++field)
        QVERIFY2(read.value(field.key()).value == field->value, qPrintable(field.key()));
    XUser::takeShot("form-5-reopened");
}

void TestFillForm::closingInMidWordLosesNothing()
{
    user->typeIntoField("causalFactor_text_2", "Closed in mid");
    XUser::answerNextDialog({"key", "Return"}); // Save
    XUser::press("alt+F4");
    QTRY_VERIFY(!window->isVisible());
    QCOMPARE(storedValue("causalFactor_text_2"), QString("Closed in mid"));
    QCOMPARE(factor(2)->getText(), QString("Closed in mid"));
}

EXAMINER_TEST_MAIN(TestFillForm)

#include "testfillform.moc"
