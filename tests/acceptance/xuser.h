#pragma once

#include <QApplication>
#include <QDir>
#include <QMenu>
#include <QPointer>
#include <QProcess>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <functional>

/// A user at the keyboard and the mouse of the display: events reach the
/// program through the X server and the window manager, not through Qt.
class XUser
{
public:
    /// Screenshots go to the folder in EXAMINER_SHOTS, when it is set.
    static void takeShot(const QString &name)
    {
        const QString folder = qEnvironmentVariable("EXAMINER_SHOTS");
        if (folder.isEmpty())
            return;
        QDir().mkpath(folder);
        QTest::qWait(150);
        QGuiApplication::primaryScreen()->grabWindow(0).save(folder + "/" + name + ".png");
    }

    static void moveTo(const QPoint &global) { run(move(global)); }

    static void click(const QPoint &global, int button = 1)
    {
        run(move(global) + QStringList{"click", QString::number(button)});
    }

    static void doubleClick(const QPoint &global)
    {
        run(move(global) + QStringList{"click", "--repeat", "2", "--delay", "60", "1"});
    }

    /// Presses, moves on in small steps with pauses, and releases: slow enough
    /// for a drag and drop to be taken up.
    static void drag(const QPoint &from, const QPoint &to)
    {
        QStringList script = move(from) + pause() + QStringList{"mousedown", "1"} + pause();
        script += move(from + QPoint(3, 3)) + pause() + move(from + QPoint(8, 8)) + pause();
        const int steps = 6;
        for (int i = 1; i <= steps; ++i)
            script += move(from + (to - from) * i / steps) + QStringList{"sleep", "0.03"};
        script += move(to) + pause() + QStringList{"mouseup", "1"};
        run(script);
    }

    /// Wheel steps up, or down when negative, with a modifier key held.
    static void turnWheel(const QPoint &global, int steps, const QString &modifier = QString())
    {
        QStringList script = move(global);
        if (!modifier.isEmpty())
            script += QStringList{"keydown", modifier};
        script += QStringList{"click",   "--repeat", QString::number(qAbs(steps)),
                              "--delay", "40",       steps > 0 ? "4" : "5"};
        if (!modifier.isEmpty())
            script += QStringList{"keyup", modifier};
        run(script);
    }

    static void type(const QString &text) { run({"type", "--delay", "15", text}); }
    /// In xdotool's words, such as "ctrl+z" or "Escape".
    static void press(const QString &key) { press(QStringList(key)); }
    static void press(const QStringList &keys) { run(QStringList{"key", "--delay", "15"} + keys); }

    /// Types into the dialog that the next call will open and confirms it. A
    /// dialog keeps its caller until it is answered, so the answer goes first.
    static void answerNextDialog(const QString &text)
    {
        answerNextDialog(QStringList{"key", "ctrl+a", "type", "--delay", "10", "--args", "1", text,
                                     "key", "Return"});
    }

    /// With an xdotool script. The dialog gets it once it has the keyboard; until then the
    /// result isn't null.
    static QPointer<QObject> answerNextDialog(const QStringList &script)
    {
        return answerWhen(
            [] {
                const QWidget *dialog = QApplication::activeModalWidget();
                return dialog && dialog->isActiveWindow() && QApplication::focusWidget();
            },
            [script] { return script; });
    }

    /// Clicks an entry of the menu that the next call will pop up, under the given name of a
    /// screenshot. Such a menu keeps its caller too.
    static void answerNextMenu(const QString &entry, const QString &shot)
    {
        answerWhen(
            [] { return qobject_cast<QMenu *>(QApplication::activePopupWidget()) != nullptr; },
            [entry, shot] {
                takeShot(shot);
                auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
                for (QAction *action : menu->actions()) {
                    if (action->text() == entry)
                        return move(menu->mapToGlobal(menu->actionGeometry(action).center())) +
                               QStringList{"click", "1"};
                }
                return QStringList{"key", "Escape"};
            });
    }

    static QPoint centreOf(const QWidget *widget)
    {
        return widget->mapToGlobal(widget->rect().center());
    }

private:
    static QPointer<QObject> answerWhen(const std::function<bool()> &isAsked,
                                        const std::function<QStringList()> &getScript)
    {
        auto *look = new QTimer(qApp);
        QObject::connect(look, &QTimer::timeout, look, [look, isAsked, getScript] {
            if (!isAsked())
                return;
            look->stop();
            look->deleteLater();
            QProcess::startDetached("xdotool", getScript());
        });
        look->start(20);
        return look;
    }

    static QStringList move(const QPoint &p)
    {
        return {"mousemove", QString::number(p.x()), QString::number(p.y())};
    }

    static QStringList pause() { return {"sleep", "0.1"}; }

    /// The event loop turns while the tool works, and until what it did arrived.
    static void run(const QStringList &arguments)
    {
        QProcess tool;
        tool.start("xdotool", arguments);
        QTRY_VERIFY_WITH_TIMEOUT(tool.state() == QProcess::NotRunning, 30000);
        QVERIFY2(tool.exitCode() == 0, tool.readAllStandardError().constData());
        QTest::qWait(60);
    }
};
