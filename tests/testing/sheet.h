#pragma once

#include "sheet/projectscene.h"
#include "testing/dialogs.h"
#include "testing/fakes.h"
#include "testing/records.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QGraphicsView>
#include <QKeyEvent>
#include <QSignalSpy>
#include <QUndoGroup>

/// The main sheet of a project without file and form, in a view of its own.
struct Sheet {
    explicit Sheet(QSize pageSize = QSize(1606, 1030), ProjectFile *file = nullptr,
                   FormView *form = nullptr)
        : scene(&program, &group, file, form, pageSize)
    {
        program.sheets.append(&scene);
        view.setScene(&scene);
        view.setAlignment(Qt::AlignLeft | Qt::AlignTop);
        view.setMouseTracking(true);
        view.resize(800, 600);
    }

    /// Loaded, so without an undo step; null for an unknown type.
    ProjectItem *add(CanvasItemInfo info) { return scene.loadCanvasItem(info); }

    Sticky *addNote(const QRectF &geometry, const QString &role = "Event",
                    const QString &text = QString())
    {
        return qobject_cast<Sticky *>(add(noteInfo(QString(), geometry, text, role)));
    }

    Sticky *addFactor(int number)
    {
        CanvasItemInfo info =
            noteInfo(QString(), QRectF(140 * number, 0, 120, 80), QString(), "Causal_Factor");
        info.causalFactorNumber = number;
        info.siblings = QStringList(QString("causalFactor_text_%1").arg(number));
        return qobject_cast<Sticky *>(add(info));
    }

    Line *addLine(const QPointF &from, const QPointF &to, int type = ArrowTool)
    {
        return qobject_cast<Line *>(add(noteInfo({}, QRectF(from, to), {}, {}, type)));
    }

    ProjectItem *addBarrier(const QPointF &at)
    {
        return add(noteInfo({}, QRectF(at, QSizeF()), {}, {}, NewBarrierTool));
    }

    bool show() { return view.show(), QTest::qWaitForWindowExposed(&view); }

    using Button = Qt::MouseButton;
    void press(QPointF p, Button b = Qt::LeftButton) { send(QEvent::MouseButtonPress, p, b); }
    void move(QPointF p, Button b = Qt::LeftButton) { send(QEvent::MouseMove, p, b); }
    void release(QPointF p, Button b = Qt::LeftButton) { send(QEvent::MouseButtonRelease, p, b); }
    void click(QPointF p, Button b = Qt::LeftButton) { press(p, b), release(p, b); }
    void drag(const QPointF &from, const QPointF &to)
    {
        press(from);
        move((from + to) / 2);
        move(to);
        release(to);
    }
    void doubleClick(const QPointF &p)
    {
        click(p);
        send(QEvent::MouseButtonDblClick, p, Qt::LeftButton);
        release(p);
    }

    /// Whether the sheet took the key.
    bool pressKey(int key)
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(&scene, &event);
        return event.isAccepted();
    }

    QUndoStack *getStack() const { return scene.getUndoStack(); }
    int getSteps() const { return getStack()->count(); }

    FakeHost program;
    QUndoGroup group;
    ProjectScene scene;
    QGraphicsView view;

private:
    void send(QEvent::Type type, const QPointF &p, Button button)
    {
        sendMouse(view.viewport(), type, view.mapFromScene(p), button);
    }
};
