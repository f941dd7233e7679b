#include "chart/line.h"
#include "shell/chartcheck.h"
#include "shell/toolstoolbar.h"
#include "shell/zoomwidget.h"
#include "testing/dialogs.h"
#include "testing/records.h"
#include "testing/rows.h"
#include "testing/window.h"

#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QStatusBar>
#include <QStatusTipEvent>
#include <QTabBar>
#include <QToolBar>
#include <QUndoGroup>
#include <QWheelEvent>

/// The window, its commands and the sheets of its factors. All tests share one window, emptied
/// before each.
class TestWindowProgram : public QObject
{
    Q_OBJECT

    QComboBox *roleBox() const { return w.window.findChild<QComboBox *>(); }
    QUndoGroup *group() const { return w.window.findChild<QUndoGroup *>(); }

    TestWindow w;

private slots:
    void init() { w.empty(); }

    /// Every action has a text, its keys to itself and, but for one, a place where it is found;
    /// every button says what it does.
    void menus()
    {
        // Made when they are asked for.
        for (const QMenu *menu : {w.window.getSceneContextMenu(), w.window.getLineContextMenu(),
                                  w.window.getNoteContextMenu()})
            QVERIFY(!menu->isEmpty());
        QSet<QString> keys;
        for (auto *action :
             w.window.findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly)) {
            const QString key = action->shortcut().toString(), text = action->text();
            QVERIFY2(key.isEmpty() || !keys.contains(key), qPrintable(key));
            keys.insert(key);
            QVERIFY2(action->isSeparator() || !text.isEmpty(), action->metaObject()->className());
            QVERIFY2(text == "Print Form" || !action->associatedWidgets().isEmpty(),
                     qPrintable(text));
        }
        for (auto *button : w.window.findChildren<QAbstractButton *>()) {
            const auto *heard = QAccessible::queryAccessibleInterface(button);
            QVERIFY2(button->objectName() == "chartCheck" || // hidden, it has found nothing
                         !heard->text(QAccessible::Name).isEmpty(),
                     button->parent()->metaObject()->className());
        }
    }

    void selectionEnables()
    {
        const std::tuple<const char *, bool, bool, bool> rows[] = {
            // a letter an item, and what can be done: delete, properties, role and font
            {"", false, false, true},         {"note", true, true, true},
            {"line", true, true, false},      {"p", true, false, true},
            {"note, line", true, true, true}, {"line p", true, true, false},
        };
        auto *toolbar = w.window.findChild<QToolBar *>("ItemToolbar");
        ProjectItem *note = w.addNote("Event", QPointF(200, 200));
        ProjectItem *line = w.add(ConnectorTool, QRectF(400, 400, 200, 0));
        ProjectItem *picture = w.add(NewBarrierTool, QRectF(700, 200, 17, 82));
        for (const auto &[items, canDelete, properties, roleAndFont] : rows) {
            const Row in(items);
            note->setSelected(QString(items).contains("note"));
            line->setSelected(QString(items).contains("line"));
            picture->setSelected(QString(items).contains("p"));
            QCoreApplication::processEvents();
            QCOMPARE(w.action("Delete item(s)")->isEnabled(), canDelete);
            QCOMPARE(w.action("Item Properties")->isEnabled(), properties);
            QCOMPARE(toolbar->isEnabled(), properties);
            QCOMPARE(roleBox()->isEnabledTo(toolbar), roleAndFont);
            QCOMPARE(w.action("Choose Font")->isEnabled(), roleAndFont);
        }
        line->setSelected(false);
        picture->setSelected(false);
        w.addNote("Event", QPointF(200, 400))->setSelected(true);
        note->setSelected(true);
        QCoreApplication::processEvents();
        const QPoint place = w.view()->mapFromScene(note->sceneBoundingRect().center());
        QTest::mouseClick(w.view()->viewport(), Qt::LeftButton, Qt::NoModifier, place);
        QCOMPARE(w.chart()->selectedItems(), QList<QGraphicsItem *>({note}));
        QTRY_VERIFY(toolbar->isEnabled());
    }

    /// The commands show what is selected; each changes it in one step.
    void commandsChangeTheSelection()
    {
        Sticky *note = w.addNote("Loss", QPointF(200, 200));
        note->setTextAlignment(Qt::AlignJustify | Qt::AlignTop);
        note->setNotRelevant(true);
        auto *line = qobject_cast<Line *>(w.add(ConnectorTool, QRectF(400, 400, 200, 0)));
        line->setLineStyle(Qt::DashLine);
        line->setArrowStyle(Line::ArrowAtEnd);
        const QString before = describe(*w.chart());
        w.action("Select &All")->trigger();
        QCoreApplication::processEvents();
        QCOMPARE(roleBox()->currentData().toString(), QString("Loss"));
        for (const char *text :
             {"Justify", "Align Top", "Mark not relevant", "Dashed Line", "Single Arrow"})
            QVERIFY2(w.action(text)->isChecked(), text);
        for (const char *text : {"Align Left", "Center Vertically", "Mark not relevant",
                                 "Solid Line", "No Arrows", "Delete item(s)"}) {
            const Row in(text);
            w.chart()->clearSelection();
            w.action("Select &All")->trigger();
            QCoreApplication::processEvents();
            w.action(text)->trigger();
            QVERIFY(describe(*w.chart()) != before);
            w.chart()->getUndoStack()->undo();
            QCOMPARE(describe(*w.chart()), before);
        }
    }

    void textEditingTakesTheKeys()
    {
        for (const bool editing : {true, false}) {
            w.window.onToolSelectionChanged(HandTool);
            w.window.onTextEditingChanged(editing);
            QCOMPARE(w.view()->dragMode() == QGraphicsView::NoDrag, editing);
            for (const char *text : {"Copy", "Paste", "Undo", "Redo", "Select &All"})
                QVERIFY2(w.action(text)->isEnabled() != editing, text);
        }
        w.window.onEscapePressed();
        QCOMPARE(w.view()->dragMode(), QGraphicsView::NoDrag);
    }

    void refusedRoleStaysInTheBox()
    {
        w.addNote("Loss", QPointF(600, 200));
        Sticky *note = w.addNote("Event", QPointF(200, 200));
        note->setSelected(true);
        QCoreApplication::processEvents();
        BoxAnswer refusal(QMessageBox::Ok);
        roleBox()->setCurrentIndex(roleBox()->findData("Loss"));
        w.window.onRoleComboChanged(roleBox()->currentIndex());
        QVERIFY(refusal.wasAsked() && note->getRoleType() == "Event");
        QCOMPARE(roleBox()->currentData().toString(), QString("Loss"));
        QAction condition("Condition", nullptr);
        condition.setData("Condition");
        w.window.onRoleItemTriggered(&condition);
        QCOMPARE(note->getRoleType(), QString("Condition"));
        QCOMPARE(roleBox()->currentData().toString(), QString("Condition"));
        QWheelEvent passing(QPointF(9, 9), roleBox()->mapToGlobal(QPoint(9, 9)), QPoint(),
                            QPoint(0, -120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                            false);
        QApplication::sendEvent(roleBox(), &passing);
        QCOMPARE(note->getRoleType(), QString("Condition"));
    }

    void tabsSwitchStacksPaletteAndZoom()
    {
        w.makeFactor(w.addNote("Event", QPointF(200, 200)));
        w.chart()->selectAll();
        auto *zoom = w.window.findChild<ZoomWidget *>();
        zoom->setZoom(150);
        w.tabs->setCurrentIndex(2);
        QTRY_COMPARE(w.window.getCurrentScene(), w.factorSheet());
        QVERIFY(w.chart()->selectedItems().isEmpty() && zoom->getZoom() == 100);
        QCOMPARE(group()->activeStack(), w.factorSheet()->getUndoStack());
        emit w.view(2)->doZoom(false);
        emit w.chart()->headerEditRequested();
        QTRY_COMPARE(group()->activeStack(), w.form->getUndoStack());
        QVERIFY(w.action("Export Form")->isVisible() &&
                w.form->isAncestorOf(w.window.focusWidget()));
        zoom->setZoom(50);
        w.tabs->setCurrentIndex(1);
        QTRY_COMPARE(zoom->getZoom(), 150);
        QVERIFY(!w.action("Export Form")->isVisible() && w.view(2)->getZoom() == 90);
        zoom->setZoom(100);
    }

    /// What is pasted or exported next must not go to a sheet that nobody sees.
    void clearBehindTheForm()
    {
        w.makeFactor(w.addNote("Event", QPointF(200, 200)));
        for (const int tab : {2, 0}) {
            w.tabs->setCurrentIndex(tab);
            QCoreApplication::processEvents();
        }
        QVERIFY(w.window.getCurrentScene() != w.chart());
        QVERIFY(!w.action("Select &All")->isEnabled());
        w.addNote("Event", QPointF(400, 200))->setSelected(true);
        QCoreApplication::processEvents();
        for (int i = 0; i < 2; ++i)
            w.window.clearInterface();
        QCoreApplication::processEvents();
        QCOMPARE(w.window.getCurrentScene(), w.chart());
        QVERIFY(w.tabs->count() == 2 && !w.file->isDirty());
        QVERIFY(!w.action("Item Properties")->isEnabled());
    }

    void seedsStandInPlace()
    {
        const std::tuple<const char *, QSizeF, QSizeF, QSizeF> rows[] = {
            // the loss stands in the middle where it is 40 narrower
            {"Causal_Factor 240,200, Loss 60,360, Loss_Of_Control 40,200",
             {120, 80},
             {160, 80},
             {120, 120}},
            {"Causal_Factor 240,200, Loss 0,380, Loss_Of_Control 0,200",
             {160, 80},
             {160, 100},
             {80, 80}},
        };
        for (const auto &[places, factor, control, loss] : rows) {
            const Row in(places);
            w.empty();
            w.addNote("Loss", QPointF(800, 200), loss);
            w.addNote("Loss_Of_Control", QPointF(500, 200), control);
            w.makeFactor(w.addNote("Event", QPointF(200, 400), factor));
            QStringList found;
            for (ProjectItem *item : w.factorSheet()->getProjectItems()) {
                if (auto *line = qobject_cast<Line *>(item))
                    found += QString("side %1 to %2")
                                 .arg(line->getStartConnection().side)
                                 .arg(line->getEndConnection().side);
                else
                    found += item->getRecord().role.getTypeName() + ' ' + describe(item->pos());
            }
            found.sort();
            QCOMPARE(found.join(", "), QString(places) + ", side 3 to 1, side 4 to 2");
        }
        QCOMPARE(w.factorSheet()->getUndoStack()->count(), 0); // no steps of the user's
    }

    void tabsComeByNumberUntilTheyAreMoved()
    {
        Sticky *notes[4];
        for (Sticky *&note : notes)
            note = w.addNote("Event", QPointF(200, 200));
        for (int i : {0, 1, 2})
            w.makeFactor(notes[i]);
        notes[1]->setRoleType("Event");
        QTRY_COMPARE(w.tabs->count(), 4);
        w.makeFactor(notes[1]);
        notes[0]->setCausalFactorNumber(9);
        w.window.onCausalFactorChanged(notes[0]);
        QCOMPARE(w.tabTexts().join(' ').remove("Causal Factor "), QString("2 3 9"));
        w.tabs->tabBar()->moveTab(4, 2);
        w.makeFactor(notes[3]);
        QCOMPARE(w.tabTexts().join(' ').remove("Causal Factor "), QString("9 2 3 1"));
        // A factor leads to its sheet, its twin there back to it.
        emit notes[2]->followed(notes[2]);
        QTRY_COMPARE(w.window.getCurrentScene()->getParentNote(), notes[2]);
        QCOMPARE(w.tabs->currentIndex(), 4);
        Sticky *twin = w.window.getCurrentScene()->getAllNotes().first();
        emit twin->followed(twin);
        QTRY_COMPARE(w.chart()->getSelectedNotes(), QList<Sticky *>{notes[2]});
        QVERIFY(w.tabs->currentIndex() == 1 && w.action("Delete item(s)")->isEnabled());
    }

    void removalTakesAllAway()
    {
        Sticky *notes[] = {w.addNote("Event", QPointF(200, 400)),
                           w.addNote("Event", QPointF(400, 400))};
        for (Sticky *note : notes)
            w.makeFactor(note);
        const QPointer<ProjectScene> gone = w.factorSheet();
        w.tabs->setCurrentIndex(2);
        QTRY_COMPARE(w.window.getCurrentScene(), gone.data());
        notes[0]->setRoleType("Event");
        QTRY_VERIFY(!gone);
        QCOMPARE(w.tabTexts(), QStringList("Causal Factor 2"));
        QCOMPARE(w.window.getCurrentScene(), w.chart());
        QCOMPARE(w.form->getFieldValue("causalFactor_text_1"), QString());
        QCOMPARE(notes[0]->getSiblings(), QStringList());
        // An edit on a sheet ends with it, and its words reach the twins.
        Sticky *note = w.factorSheet()->getAllNotes().first();
        note->addSibling(notes[0]);
        auto *view = qobject_cast<QGraphicsView *>(w.factorSheet()->views().first());
        w.tabs->setCurrentWidget(view);
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier,
                           view->mapFromScene(note->sceneBoundingRect().center()));
        QTest::keyClicks(view->viewport(), "words");
        QVERIFY(!w.action("Paste")->isEnabled());
        notes[1]->setRoleType("Event");
        QTRY_VERIFY(w.action("Paste")->isEnabled());
        QVERIFY(notes[0]->getText().contains("words"));
    }

    /// Not seeded: only what the file holds stands there.
    void loadedItemsFindTheirSheets()
    {
        CanvasItemInfo info = noteInfo("{factor}", QRectF(0, 200, 120, 80), "", "Causal_Factor");
        w.window.onCanvasItemLoaded(info);
        for (const char *owner : {"{factor}", "{nowhere}"}) {
            info = noteInfo(QString("child of ") + owner, QRectF(0, 400, 120, 80));
            info.parent = owner;
            w.window.onCanvasItemLoaded(info);
        }
        QVERIFY(w.factorSheet()->getItemWithGUID("child of {factor}"));
        QCOMPARE(w.factorSheet()->getProjectItems().size(), 1);
        QVERIFY(w.chart()->getItemWithGUID("child of {nowhere}"));
    }

    /// In the order of the tabs, from the one that is shown; neither project nor pages learn of it.
    void findsWords()
    {
        Sticky *factor = w.addNote("Event", QPointF(200, 200));
        factor->setText("Red\npaint");
        w.makeFactor(factor);
        Sticky *below = w.addNote("Event", QPointF(200, 2900));
        below->setText("some red  paint below");
        w.form->setFieldValue("incidentTitle", "A red door");
        const int steps = w.chart()->getUndoStack()->count();
        const QImage before = w.view()->grab().toImage();
        w.action("&Find...")->trigger();
        auto *edit = w.window.findChild<QLineEdit *>("findEdit");
        const std::tuple<const char *, const char *, int> rows[] = {
            // what is typed, the count, and the tab shown
            {"RED", "3 of 5", 1},         {"red p", "2 of 4", 1},
            {"red paint b", "1 of 1", 1}, {"nowhere", "Nothing found", 1},
            {"red door", "1 of 1", 0},    {"red", "1 of 5", 0},
        };
        for (const auto &[words, count, tab] : rows) {
            const Row in(words);
            edit->setText(words);
            QCOMPARE(w.window.findChild<QLabel *>("findCount")->text(), QString(count));
            QCOMPARE(w.tabs->currentIndex(), tab);
        }
        QTest::keyClick(edit, Qt::Key_Return, Qt::ShiftModifier);
        QTRY_COMPARE(w.window.getCurrentScene(), w.factorSheet());
        w.action("Find Previous")->trigger();
        QTRY_COMPARE(w.chart()->selectedItems(), QList<QGraphicsItem *>({below}));
        QVERIFY(w.view()->viewport()->rect().contains(
            w.view()->mapFromScene(below->sceneBoundingRect()).boundingRect()));
        QTest::mouseDClick(w.view()->viewport(), Qt::LeftButton, Qt::NoModifier,
                           w.view()->mapFromScene(below->sceneBoundingRect().center()));
        QVERIFY(below->isEditing());
        w.action("Find Previous")->trigger();
        QVERIFY(!below->isEditing());
        below->setText("blue");
        below->setSelected(false);
        w.view()->centerOn(0, 0);
        QVERIFY(w.view()->grab().toImage() != before);
        QTest::keyClick(edit, Qt::Key_Escape);
        QVERIFY(!edit->isVisible());
        QCOMPARE(w.window.focusWidget(), w.view());
        QCOMPARE(w.chart()->getUndoStack()->count(), steps + 1); // of the edit
    }

    void chartCheckLeadsToEachPlace()
    {
        auto *check = w.window.findChild<ChartCheck *>();
        const QSize page = w.chart()->getPageSize();
        Sticky *notes[] = {w.addNote("Event", QPointF(200, 200)),
                           w.addNote("Event", QPointF(600, 200)),
                           w.addNote("Event", QPointF(page.width() - 60, 400))};
        notes[0]->setText(QString());
        auto *line = static_cast<Line *>(w.add(ConnectorTool, QRectF(320, 240, 280, 0)));
        line->connectStartPoint(notes[0], Sticky::RightSide);
        line->connectEndPoint(notes[2], Sticky::LeftSide);
        w.add(NewBarrierTool, QRectF(page.width() - 17, page.height() - 82, 17, 82));
        w.makeFactor(notes[1]);
        check->look();
        QCOMPARE(check->text(), QString("1 empty, 1 unconnected, 1 across a page's edge, "
                                        "factor 1 not worked"));
        for (Sticky *note : notes) {
            check->click();
            QTRY_COMPARE(w.chart()->selectedItems(), QList<QGraphicsItem *>({note}));
        }
        check->click();
        QTRY_COMPARE(w.window.getCurrentScene(), w.factorSheet());

        w.empty();
        QTRY_VERIFY(check->isHidden());
        w.addNote("Event", QPointF(200, 200));
        check->look();
        w.window.newProject();
        QTRY_VERIFY(check->isHidden());
    }

    /// The pointer is over the sheet most of the time.
    void messagesOutlastTheSheetsTip()
    {
        QStatusBar *bar = w.window.statusBar();
        const auto enter = [this] {
            QStatusTipEvent tip(GraphWidget::getZoomTip());
            QCoreApplication::sendEvent(w.view(), &tip);
        };
        bar->clearMessage();
        enter();
        QCOMPARE(bar->currentMessage(), QString("Ctrl Mouse Wheel to zoom"));
        bar->showMessage("done");
        enter();
        QCOMPARE(bar->currentMessage(), QString("done"));
        bar->clearMessage();
        enter();
        auto *palette = w.window.findChild<ToolsToolBar *>();
        emit palette->toolSelectionChanged(ConnectorTool);
        enter();
        QCOMPARE(bar->currentMessage(), QString());
        QVERIFY(!w.window.findChild<QLabel *>("toolHint")->text().isEmpty());
        emit palette->toolSelectionChanged(SelectTool);
    }
};

EXAMINER_TEST_MAIN(TestWindowProgram)
#include "testwindow.moc"
