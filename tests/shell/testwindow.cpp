#include "shell/zoomwidget.h"
#include "testing/dialogs.h"
#include "testing/records.h"
#include "testing/rows.h"
#include "testing/window.h"

#include <QComboBox>
#include <QMenuBar>
#include <QToolBar>
#include <QUndoGroup>

/// The window and its commands. All tests share one window, emptied before each.
class TestWindowProgram : public QObject
{
    Q_OBJECT

    QComboBox *roleBox() const { return tw->window.findChild<QComboBox *>(); }

    void walk(const QList<QAction *> &actions, QStringList &texts)
    {
        for (QAction *action : actions) {
            QVERIFY(action->isSeparator() || !action->text().isEmpty());
            texts.append(action->text());
            if (action->menu())
                walk(action->menu()->actions(), texts);
        }
    }

    std::unique_ptr<TestWindow> tw;

private slots:
    void initTestCase() { tw = std::make_unique<TestWindow>(); }
    void init()
    {
        QSettings().clear();
        tw->empty();
    }
    void cleanupTestCase() { tw.reset(); }

    /// Every entry is worth reading, every action has its keys to itself, and what stands in no
    /// menu is meant to.
    void menus()
    {
        QStringList texts;
        walk(tw->window.menuBar()->actions(), texts);
        walk(tw->window.getSceneContextMenu()->actions(), texts);
        walk(tw->window.getLineContextMenu()->actions(), texts);
        walk(tw->window.getNoteContextMenu()->actions(), texts);
        QCOMPARE(tw->window.getNoteContextMenu(), tw->window.getNoteContextMenu());
        QSet<QString> keys;
        QStringList nowhere;
        for (QAction *action :
             tw->window.findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly)) {
            const QString key = action->shortcut().toString();
            QVERIFY2(key.isEmpty() || !keys.contains(key), qPrintable(key));
            keys.insert(key);
            if (!texts.contains(action->text()))
                nowhere.append(action->text());
        }
        QCOMPARE(nowhere, QStringList({"Export Form", "Print Form"}));
    }

    void selectionEnables()
    {
        const struct {
            const char *name, *items;
            bool canDelete, properties, toolbar, roleAndFont;
        } rows[] = {
            {"nothing", "", false, false, false, true},
            {"a note", "n", true, true, true, true},
            {"a line", "l", true, true, true, false},
            {"a picture", "p", true, false, false, true},
            {"a note and a line", "nl", true, true, true, true},
            {"a line and a picture", "lp", true, true, true, false},
        };
        auto *toolbar = tw->window.findChild<QToolBar *>("ItemToolbar");
        ProjectItem *note = tw->addNote("Event", QPointF(200, 200));
        ProjectItem *line = tw->addLine(QPointF(400, 400), QPointF(600, 400));
        ProjectItem *picture = tw->add(NewBarrierTool, QRectF(700, 200, 17, 82));
        for (const auto &row : rows) {
            const Row in(row.name);
            const QString items = row.items;
            note->setSelected(items.contains('n'));
            line->setSelected(items.contains('l'));
            picture->setSelected(items.contains('p'));
            QCoreApplication::processEvents();
            QCOMPARE(tw->action("Delete item(s)")->isEnabled(), row.canDelete);
            QCOMPARE(tw->action("Item Properties")->isEnabled(), row.properties);
            QCOMPARE(toolbar->isEnabled(), row.toolbar);
            QCOMPARE(roleBox()->isEnabledTo(toolbar), row.roleAndFont);
            QCOMPARE(tw->action("Choose Font")->isEnabled(), row.roleAndFont);
            QVERIFY(tw->action("Item Color")->isEnabled() && tw->action("Align Left")->isEnabled());
        }
    }

    void selectionShowsTheFirstNoteAndLine()
    {
        Sticky *note = tw->addNote("Loss", QPointF(200, 200));
        note->setTextAlignment(Qt::AlignJustify | Qt::AlignTop);
        note->setNotRelevant(true);
        note->setCustomFont(QFont("Arial", 14, QFont::Bold));
        Line *line = tw->addLine(QPointF(400, 400), QPointF(600, 400));
        line->setLineStyle(Qt::DashLine);
        line->setArrowStyle(Line::ArrowAtEnd);
        tw->action("Select &All")->trigger();
        QCoreApplication::processEvents();
        QCOMPARE(roleBox()->currentData().toString(), QString("Loss"));
        for (const char *text :
             {"Justify", "Align Top", "Mark not relevant", "Dashed Line", "Single Arrow"})
            QVERIFY2(tw->action(text)->isChecked(), text);
        QCOMPARE(tw->action("Choose Font")->data().value<QFont>().pointSize(), 14);
    }

    /// Each is one step, and an undo brings back what was.
    void commandsChangeTheSelection()
    {
        tw->addNote("Event", QPointF(200, 200));
        tw->addLine(QPointF(400, 400), QPointF(600, 400))->setArrowStyle(Line::ArrowAtEnd);
        const QString before = describe(*tw->chart());
        for (const char *action : {"Align Left", "Justify", "Align Top", "Dashed Line", "No Arrows",
                                   "Mark not relevant", "Delete item(s)"}) {
            const Row in(action);
            tw->chart()->clearSelection();
            tw->action("Select &All")->trigger();
            QCoreApplication::processEvents();
            tw->action(action)->trigger();
            QVERIFY(describe(*tw->chart()) != before);
            tw->chart()->getUndoStack()->undo();
            QCOMPARE(describe(*tw->chart()), before);
        }
    }

    void textEditingTakesTheKeys()
    {
        for (const bool editing : {true, false}) {
            tw->window.onToolSelectionChanged(HandTool);
            tw->window.onTextEditingChanged(editing);
            QCOMPARE(tw->view()->dragMode() == QGraphicsView::NoDrag, editing);
            for (const char *text : {"Copy", "Paste", "Undo", "Redo", "Select &All"})
                QVERIFY2(tw->action(text)->isEnabled() != editing, text);
        }
        tw->window.onEscapePressed();
        QCOMPARE(tw->view()->dragMode(), QGraphicsView::NoDrag);
    }

    void refusedRoleStaysInTheBox()
    {
        tw->addNote("Loss", QPointF(600, 200));
        Sticky *note = tw->addNote("Event", QPointF(200, 200));
        note->setSelected(true);
        QCoreApplication::processEvents();
        BoxAnswer refusal(QMessageBox::Ok);
        roleBox()->setCurrentIndex(roleBox()->findData("Loss"));
        tw->window.onRoleComboChanged(roleBox()->currentIndex());
        QVERIFY(refusal.wasAsked());
        QCOMPARE(note->getRoleType(), QString("Event"));
        QCOMPARE(roleBox()->currentData().toString(), QString("Loss"));
        QAction condition("Condition", nullptr);
        condition.setData("Condition");
        tw->window.onRoleItemTriggered(&condition);
        QCOMPARE(note->getRoleType(), QString("Condition"));
        QCOMPARE(roleBox()->currentData().toString(), QString("Condition"));
    }

    void tabsSwitchStacksPaletteAndZoom()
    {
        Sticky *note = tw->addNote("Event", QPointF(200, 200));
        tw->makeFactor(note);
        note->setSelected(true);
        auto *group = tw->window.findChild<QUndoGroup *>();
        auto *zoom = tw->window.findChild<ZoomWidget *>();
        zoom->setZoom(150);
        tw->tabs->setCurrentIndex(2);
        QTRY_COMPARE(tw->window.getCurrentScene(), tw->factorSheet());
        QVERIFY(tw->chart()->selectedItems().isEmpty());
        QCOMPARE(group->activeStack(), tw->factorSheet()->getUndoStack());
        QCOMPARE(zoom->getZoom(), 100);
        emit tw->view(2)->doZoom(false);
        emit tw->chart()->headerEditRequested();
        QTRY_COMPARE(group->activeStack(), tw->form->getUndoStack());
        QCOMPARE(tw->window.getCurrentScene(), tw->factorSheet());
        QVERIFY(tw->action("Export Form")->isVisible());
        zoom->setZoom(50);
        tw->tabs->setCurrentIndex(1);
        QTRY_COMPARE(zoom->getZoom(), 150);
        QVERIFY(!tw->action("Export Form")->isVisible());
        QCOMPARE(tw->view(2)->getZoom(), 90);
        zoom->setZoom(100);
    }

    /// What is pasted or exported next must not go to a sheet that nobody sees.
    void clearBehindTheForm()
    {
        tw->makeFactor(tw->addNote("Event", QPointF(200, 200)));
        for (const int tab : {2, 0}) {
            tw->tabs->setCurrentIndex(tab);
            QCoreApplication::processEvents();
        }
        QVERIFY(tw->window.getCurrentScene() != tw->chart());
        tw->window.clearInterface();
        tw->window.clearInterface();
        QCoreApplication::processEvents();
        QCOMPARE(tw->window.getCurrentScene(), tw->chart());
        QCOMPARE(tw->tabs->count(), 2);
        QVERIFY(!tw->file->isDirty());
    }
};

EXAMINER_TEST_MAIN(TestWindowProgram)
#include "testwindow.moc"
