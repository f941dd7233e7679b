#include "acceptance/xuser.h"
#include "dialogs.h"
#include "form/formview.h"
#include "shell/graphwidget.h"
#include "shell/mainwindow.h"
#include "shell/supportfiles.h"
#include "testmain.h"

#include <QClipboard>
#include <QTabBar>
#include <QWebElement>
#include <QWebFrame>
#include <QWebView>

/// Somebody fills in the form of the sample with mouse and keyboard, beside its charts.
class TestFillForm : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void typingShowsOnEverySheet();
    void tabLeadsThroughTheCard();
    void noteShowsOnTheForm();
    void factorsTradeNumbers();
    void everyByteIsSavedAndRead();

private:
    void show(int tab);
    QPoint fieldAt(const QString &id) const;
    void typeInto(const QString &id, const QString &text);
    QPoint at(const QPointF &scenePos) const;
    Sticky *noteWithRole(const QString &role) const;
    Sticky *factor(int number) const;
    QStringList textsOfTwins(Sticky *note) const;
    QString value(const QString &id) const { return form->getFieldValue(id); }

    QTemporaryDir folder;
    MainWindow *window = nullptr;
    FormView *form = nullptr;
    QWebView *web = nullptr;
    QTabWidget *tabs = nullptr;
};

void TestFillForm::initTestCase()
{
    copySupportFiles();
    const QString path = folder.filePath("sample.epf");
    QVERIFY(QFile::copy(QCoreApplication::applicationDirPath() + "/sample.epf", path));
    window = new MainWindow(nullptr);
    window->openProject(path, false);
    QVERIFY(QTest::qWaitForWindowActive(window));
    QTest::qWait(500); // the window manager maximizes
    form = window->findChild<FormView *>();
    web = form->findChild<QWebView *>();
    tabs = window->findChild<QTabWidget *>();
    QTRY_VERIFY(!form->getAllFields(true).toList().isEmpty());
    QTRY_COMPARE(value("incidentTitle"), QString("Rack collapse in cold store 2"));
}

void TestFillForm::cleanupTestCase()
{
    delete window;
}

void TestFillForm::show(int tab)
{
    QTabBar *bar = tabs->tabBar();
    XUser::click(bar->mapToGlobal(bar->tabRect(tab).center()));
    QTRY_COMPARE(tabs->currentIndex(), tab);
}

/// A place inside the field's left edge, once it has been scrolled into view.
QPoint TestFillForm::fieldAt(const QString &id) const
{
    QWebFrame *frame = web->page()->mainFrame();
    QWebElement field = frame->findFirstElement("#" + id);
    field.evaluateJavaScript("window.scrollBy(0, this.getBoundingClientRect().top - 300)");
    const QRect place = field.geometry().translated(-frame->scrollPosition());
    return web->mapToGlobal(QPoint(place.left() + 8, place.center().y()));
}

void TestFillForm::typeInto(const QString &id, const QString &text)
{
    XUser::click(fieldAt(id));
    XUser::press("ctrl+a");
    XUser::type(text);
}

QPoint TestFillForm::at(const QPointF &scenePos) const
{
    auto *view = qobject_cast<GraphWidget *>(tabs->currentWidget());
    view->centerOn(scenePos);
    return view->viewport()->mapToGlobal(view->mapFromScene(scenePos));
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

/// What the copies of a note on the factors' sheets say.
QStringList TestFillForm::textsOfTwins(Sticky *note) const
{
    QStringList texts;
    for (const QString &id : note->getCanvasItemInfo().siblings) {
        if (Sticky *twin = window->getNoteWithGUID(id))
            texts << twin->getText();
    }
    return texts;
}

void TestFillForm::typingShowsOnEverySheet()
{
    show(0);
    Sticky *loss = noteWithRole("Loss");
    QVERIFY(!window->isWindowModified());
    typeInto("loss", "A foot is \"crushed\"");
    QTRY_COMPARE(loss->getText(), QString("A foot is \"crushed\""));
    QCOMPARE(textsOfTwins(loss), QStringList({loss->getText(), loss->getText(), loss->getText()}));
    QVERIFY(window->isWindowModified());

    typeInto("causalFactor_text_2", "It's dented");
    XUser::press("Return");
    XUser::type("since July");
    QTRY_COMPARE(factor(2)->getText(), QString("It's dented\nsince July"));
    QCOMPARE(textsOfTwins(factor(2)), QStringList("It's dented\nsince July"));
    XUser::takeShot("form-1-typed");
}

void TestFillForm::tabLeadsThroughTheCard()
{
    typeInto("causalFactor_text_3", "Driven out");
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

void TestFillForm::noteShowsOnTheForm()
{
    show(1);
    Sticky *note = factor(1);
    XUser::doubleClick(at(note->sceneBoundingRect().center()));
    QTRY_VERIFY(note->isEditing());
    XUser::press("ctrl+a");
    XUser::type("The beam was lowered");
    XUser::press("Escape");
    QTRY_COMPARE(value("causalFactor_text_1"), QString("The beam was lowered"));
    show(0);
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

    show(1);
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
    XUser::doubleClick(at(place.topRight() + QPointF(-3, 3)));
    QTRY_VERIFY(question.wasAsked());
    QVERIFY(number.wasAsked());
    QTRY_COMPARE(note->getCausalFactorNumber(), 3);
    QCOMPARE(readCard(3), first);
    QCOMPARE(readCard(1), third);
    XUser::takeShot("form-4-traded");
}

void TestFillForm::everyByteIsSavedAndRead()
{
    // In long lines, as the engine is slow at pasting short ones by the thousand.
    const QString words = QString::fromUtf8("\"quotes\" 'single' \\ <tag> &amp; \t "
                                            "\u7d50\u679c \u05e9\u05dc\u05d5\u05dd \U0001F525 ");
    const QString text = (words.repeated(20) + "\n").repeated(100);
    QVERIFY(text.toUtf8().size() > 100000);
    show(0);
    QApplication::clipboard()->setText(text);
    XUser::click(fieldAt("evidence"));
    XUser::press("ctrl+a");
    XUser::press("ctrl+v");
    QTRY_VERIFY_WITH_TIMEOUT(value("evidence") == text, 20000);

    XUser::press("ctrl+s");
    QTRY_VERIFY_WITH_TIMEOUT(!window->isWindowModified(), 20000);
    const FormValues saved = form->getAllFieldValues();
    window->openProject(folder.filePath("sample.epf"), false);
    QTRY_COMPARE(form->getAllFieldValues().size(), saved.size());
    QTRY_VERIFY(value("evidence") == text);
    const FormValues read = form->getAllFieldValues();
    for (auto field = saved.cbegin(); field != saved.cend(); ++field)
        QVERIFY2(read.value(field.key()).value == field->value, qPrintable(field.key()));
    XUser::takeShot("form-5-reopened");
}

EXAMINER_TEST_MAIN(TestFillForm)

#include "testfillform.moc"
