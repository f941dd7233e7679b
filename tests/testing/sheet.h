#pragma once

#include "chart/line.h"
#include "chart/sheethost.h"
#include "chart/sticky.h"
#include "sheet/projectscene.h"
#include "testing/dialogs.h"
#include "testing/testmain.h"

#include <QGraphicsView>
#include <QMenu>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QUndoGroup>

/// A program around sheets, with values that a test sets.
class FakeProgram : public SheetHost
{
public:
    int selectedTool() const override { return tool; }
    bool isGridEnabled() const override { return gridEnabled; }
    QMenu *getSceneContextMenu() override { return &menu; }
    QMenu *getNoteContextMenu() override { return &menu; }
    QMenu *getLineContextMenu() override { return &menu; }
    void onCausalFactorChanged(Sticky *note) override { changedFactors.append(note); }
    QWidget *getDialogParent() override { return nullptr; }

    Sticky *getNoteWithGUID(const QString &guid) const override
    {
        for (ProjectScene *scene : scenes) {
            if (auto *note = qobject_cast<Sticky *>(scene->getItemWithGUID(guid)))
                return note;
        }
        return nullptr;
    }

    ChartSheet *getSceneForParent(const QString &guid) const override
    {
        for (ProjectScene *scene : scenes) {
            if (scene->getOwnerGUID() == guid)
                return scene;
        }
        return scenes.value(0);
    }

    int tool = SelectTool;
    bool gridEnabled = true;
    QMenu menu;
    QList<ProjectScene *> scenes;
    QList<Sticky *> changedFactors;
};

/// The main sheet of a project without file and form, in a view of its own.
struct Sheet {
    explicit Sheet(QSize pageSize = QSize(1606, 1030), ProjectFile *file = nullptr,
                   FormView *form = nullptr)
        : scene(&program, &group, file, form, pageSize)
    {
        program.scenes.append(&scene);
        view.setScene(&scene);
        view.setAlignment(Qt::AlignLeft | Qt::AlignTop);
        view.setFrameShape(QFrame::NoFrame);
        view.setMouseTracking(true);
        view.resize(800, 600);
    }

    Sticky *addNote(const QRectF &geometry, const QString &role = "Event",
                    const QString &text = QString())
    {
        CanvasItemInfo info;
        info.type = NoteItemType;
        info.role = Role(role);
        info.startPoint = geometry.topLeft();
        info.endPoint = geometry.bottomRight();
        info.size = geometry.size();
        info.text = text;
        return qobject_cast<Sticky *>(scene.loadCanvasItem(info));
    }

    Sticky *addFactor(int number)
    {
        CanvasItemInfo info;
        info.type = NoteItemType;
        info.role = Role("Causal_Factor");
        info.startPoint = QPointF(140 * number, 0);
        info.size = QSizeF(120, 80);
        info.causalFactorNumber = number;
        info.siblings = QStringList(QString("causalFactor_text_%1").arg(number));
        return qobject_cast<Sticky *>(scene.loadCanvasItem(info));
    }

    Line *addLine(const QPointF &from, const QPointF &to)
    {
        CanvasItemInfo info;
        info.type = ArrowTool;
        info.startPoint = from;
        info.endPoint = to;
        return qobject_cast<Line *>(scene.loadCanvasItem(info));
    }

    ProjectItem *addBarrier(const QPointF &at)
    {
        CanvasItemInfo info;
        info.type = NewBarrierTool;
        info.startPoint = at;
        return scene.loadCanvasItem(info);
    }

    bool show()
    {
        view.show();
        return QTest::qWaitForWindowExposed(&view);
    }

    void press(const QPointF &p, Qt::MouseButton button = Qt::LeftButton)
    {
        send(QEvent::MouseButtonPress, p, button, button);
    }
    void move(const QPointF &p, Qt::MouseButtons buttons = Qt::LeftButton)
    {
        send(QEvent::MouseMove, p, Qt::NoButton, buttons);
    }
    void release(const QPointF &p, Qt::MouseButton button = Qt::LeftButton)
    {
        send(QEvent::MouseButtonRelease, p, button, Qt::NoButton);
    }
    void click(const QPointF &p)
    {
        press(p);
        release(p);
    }
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
        send(QEvent::MouseButtonDblClick, p, Qt::LeftButton, Qt::LeftButton);
        release(p);
    }

    int getSteps() const { return scene.getUndoStack()->count(); }

    FakeProgram program;
    QUndoGroup group;
    ProjectScene scene;
    QGraphicsView view;

private:
    // QTest's own moves carry no buttons.
    void send(QEvent::Type type, const QPointF &scenePos, Qt::MouseButton button,
              Qt::MouseButtons buttons)
    {
        const QPoint point = view.mapFromScene(scenePos);
        QMouseEvent event(type, point, view.viewport()->mapToGlobal(point), button, buttons,
                          Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &event);
    }
};
