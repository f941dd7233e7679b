#pragma once

#include "shell/graphwidget.h"
#include "shell/introscreen.h"
#include "shell/mainwindow.h"
#include "shell/toolbutton.h"
#include "testing/form.h"
#include "testing/records.h"

#include <QComboBox>
#include <QProcess>
#include <QTabBar>
#include <QTest>

// What is waited for comes at its own time; the limit is for what never comes.
#define EXPECT(fact) QTRY_VERIFY_WITH_TIMEOUT(fact, 30000)
#define EXPECT_EQUAL(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, 30000)

/// Somebody at the mouse and the keyboard of the display: what is done goes through the display's
/// server and its window manager, not through the toolkit. Each deed waits for what comes of it.
/// Start screen and window stand as the program puts them together.
class User
{
public:
    User()
    {
        QObject::connect(screen, &IntroScreen::newProjectClicked, &window, &MainWindow::newProject,
                         Qt::QueuedConnection);
        QObject::connect(screen, &IntroScreen::openProjectClicked, &window,
                         &MainWindow::openProject, Qt::QueuedConnection);
        screen->showMaximized();
        QVERIFY(QTest::qWaitForWindowActive(screen, 30000));
    }
    ~User() { delete screen; }

    /// The start screen makes room for the window, and the form's page loads.
    void waitForWindow()
    {
        EXPECT(!screen);
        QVERIFY(QTest::qWaitForWindowActive(&window, 30000));
        EXPECT(window.isMaximized() && form()->isReady());
    }

    static void type(const QString &text) { run({"type", "--delay", "15", text}); }
    static void press(const QString &key) { run({"key", "--delay", "15", key}); }
    static void click(const QPoint &place, const char *repeat = "1")
    {
        run(move(place) + QStringList{"click", "--repeat", repeat, "--delay", "60", "1"});
    }
    static QPoint centreOf(const QWidget *w) { return w->mapToGlobal(w->rect().center()); }

    FormView *form() const { return window.findChild<FormView *>(); }
    QTabWidget *tabs() const { return window.findChild<QTabWidget *>(); }
    ProjectScene *sheet() const { return window.getCurrentScene(); }
    Sticky *noteAt(const QPointF &place) const { return sheet()->getNoteAt(place); }

    void openTab(int index) const
    {
        click(tabs()->tabBar()->mapToGlobal(tabs()->tabBar()->tabRect(index).center()));
        EXPECT_EQUAL(tabs()->currentIndex(), index);
        EXPECT(!view() || sheet() == view()->getProjectScene());
    }

    /// Out of the palette, with the pauses of a hand: a drag and drop takes some time to begin.
    void drop(const QString &tool, const QPointF &centre) const
    {
        const int before = sheet()->getProjectItems().size();
        const QPoint from = centreOf(buttonOf(tool)), to = at(centre);
        QStringList script = move(from) + QStringList{"mousedown", "1", "sleep", "0.1"};
        for (int i = 1; i <= 8; ++i)
            script += move(from + (to - from) * i / 8) + QStringList{"sleep", "0.05"};
        run(script + QStringList{"mouseup", "1"});
        EXPECT_EQUAL(sheet()->getProjectItems().size(), before + 1);
        EXPECT_EQUAL(window.selectedTool(), int(SelectTool));
    }

    /// Leaves the note under edit.
    void typeInto(const QPointF &place, const QString &text) const
    {
        click(at(place), "2");
        EXPECT(noteAt(place)->isEditing());
        press("ctrl+a");
        type(text);
        EXPECT_EQUAL(noteAt(place)->getText(), text);
    }

    void chooseRole(const QPointF &place, const QString &role) const
    {
        click(at(place));
        auto *combo = window.findChild<QComboBox *>();
        EXPECT(noteAt(place)->isSelected() && combo->isEnabled());
        click(centreOf(combo));
        EXPECT(QApplication::activePopupWidget());
        press("Home");
        for (int i = combo->findText(role); i > 0; --i)
            press("Down");
        press("Return");
        EXPECT_EQUAL(noteAt(place)->getRoleType(), Role::typeFromName(role));
    }

    /// Leaves the field in mid-word. A page that still settles moves its fields about, so the
    /// click is made again until it has met.
    void typeIntoField(const QString &id, const QString &text) const
    {
        auto *web = form()->findChild<WebView *>();
        const auto hasFocus = [&] {
            return form()->isAncestorOf(QApplication::focusWidget()) &&
                   runInPage(web, "document.activeElement.id").toString() == id;
        };
        for (int tries = 0; tries < 50 && !QTest::qWaitFor(hasFocus, tries ? 500 : 0); ++tries) {
            const QString script("var e = document.getElementById('%1');"
                                 "scrollBy(0, e.getBoundingClientRect().top - 300);"
                                 "var r = e.getBoundingClientRect();"
                                 "Math.round(r.left + 8) + ' ' + Math.round(r.top + r.height / 2)");
            const QString place = runInPage(web, script.arg(id)).toString();
            click(web->mapToGlobal(
                QPoint(place.section(' ', 0, 0).toInt(), place.section(' ', 1).toInt())));
        }
        QVERIFY(hasFocus());
        press("ctrl+a");
        type(text);
        EXPECT_EQUAL(form()->getFieldValue(id), text);
    }

    /// All that the project holds, in an order that doesn't depend on the session.
    QString describeProject() const
    {
        QStringList lines;
        const QList<ProjectScene *> sheets = window.getFactorScenes() << window.getMainScene();
        for (const ProjectScene *sheet : sheets)
            lines.append(describe(*sheet));
        const FormValues values = form()->getAllFieldValues();
        for (auto field = values.cbegin(); field != values.cend(); ++field)
            lines.append(field.key() + "=" + field->value);
        lines.sort();
        return lines.join('\n');
    }

    QPointer<IntroScreen> screen{new IntroScreen(nullptr)};
    MainWindow window{screen};

private:
    /// In xdotool's words. The event loop turns meanwhile.
    static void run(const QStringList &script)
    {
        QProcess tool;
        tool.start("xdotool", script);
        EXPECT(tool.state() == QProcess::NotRunning);
        QVERIFY2(tool.exitCode() == 0, tool.readAllStandardError().constData());
    }
    static QStringList move(const QPoint &place)
    {
        return {"mousemove", QString::number(place.x()), QString::number(place.y())};
    }
    GraphWidget *view() const { return qobject_cast<GraphWidget *>(tabs()->currentWidget()); }
    QPoint at(const QPointF &place) const
    {
        return view()->viewport()->mapToGlobal(view()->mapFromScene(place));
    }
    ToolButton *buttonOf(const QString &tool) const
    {
        for (ToolButton *button : window.findChildren<ToolButton *>()) {
            if (button->defaultAction()->text() == tool)
                return button;
        }
        qFatal("There is no tool %s", qPrintable(tool));
    }
};
