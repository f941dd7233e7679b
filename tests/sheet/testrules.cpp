#include "sheet/infoitem.h"
#include "testing/sheet.h"

#include <QContextMenuEvent>

class TestRules : public QObject
{
    Q_OBJECT

    std::unique_ptr<Sheet> sheet;

    /// Right clicks there and leaves the menu.
    bool askForMenu(const QPointF &p)
    {
        sheet->click(p, Qt::RightButton);
        const QPoint point = sheet->view.mapFromScene(p);
        DialogAnswer answer(cancellation());
        QContextMenuEvent event(QContextMenuEvent::Mouse, point, sheet->view.mapToGlobal(point));
        QApplication::sendEvent(sheet->view.viewport(), &event);
        return answer.wasAsked();
    }

private slots:
    void init()
    {
        QSettings().clear();
        sheet = std::make_unique<Sheet>();
        for (QMenu *menu :
             {&sheet->program.sceneMenu, &sheet->program.noteMenu, &sheet->program.lineMenu})
            menu->addAction("Paste");
        QVERIFY(sheet->show());
    }

    void refusals()
    {
        const QStringList both = {"Loss", "Loss_Of_Control"};
        const std::tuple<const char *, QStringList, int, QString, QString> rows[] = {
            {"factor without both", {}, 1, "Causal_Factor", "identified both a Loss and a"},
            {"factor without control", {"Loss"}, 1, "Causal_Factor", "identified both"},
            {"factor without loss", {"Loss_Of_Control"}, 1, "Causal_Factor", "identified both"},
            {"several factors", both, 3, "Causal_Factor", ""},
            {"first loss", {"Loss_Of_Control"}, 1, "Loss", ""},
            {"two losses", {}, 2, "Loss", "one Loss or Loss of Control per"},
            {"two losses of control", {}, 2, "Loss_Of_Control", "one Loss or Loss of Control per"},
            {"second loss", both, 1, "Loss", "one Loss per"},
            {"second loss of control", both, 1, "Loss_Of_Control", "one Loss of Control per"},
        };
        for (const auto &[name, present, selected, role, refusal] : rows) {
            const Row in(name);
            for (const QString &type : present)
                sheet->addNote(QRectF(20, 400, 120, 120), type);
            for (int i = 0; i < selected; ++i)
                sheet->addNote(QRectF(150 * i, 20, 120, 80))->setSelected(true);
            BoxAnswer box(QMessageBox::Ok);
            const bool done = sheet->scene.setSelectedNotesRole(role);
            QCOMPARE(done, refusal.isEmpty());
            QVERIFY2(box.text.contains(refusal), qPrintable(box.text));
            QCOMPARE(sheet->getSteps(), done ? 1 : 0);
            sheet->scene.clear();
        }
        QVERIFY(sheet->scene.setSelectedNotesRole("Condition"));
        QCOMPARE(sheet->getSteps(), 0); // of nothing

        ProjectScene other(&sheet->program, &sheet->group, nullptr, nullptr, QSize(400, 300),
                           sheet->addFactor(1));
        QVERIFY(other.getRoleRefusal("Causal_Factor", {}).endsWith("on a secondary sheet."));
        QCOMPARE(other.getRoleRefusal("Loss", {}), QString());
    }

    void aRoleThatIsNoChangeIsNoStep()
    {
        for (const char *role : {"Loss", "Loss_Of_Control"})
            sheet->addNote(QRectF(20, 400, 120, 120), role);
        sheet->addFactor(4);
        sheet->scene.getAllCausalFactors().first()->setSelected(true);
        const QString before = describe(sheet->scene);
        QVERIFY(sheet->scene.setSelectedNotesRole("Causal_Factor"));
        QCOMPARE(describe(sheet->scene), before);
        QCOMPARE(sheet->getSteps(), 0);

        // Another note's change leaves the factor as it is.
        sheet->addNote(QRectF(20, 200, 120, 80))->setSelected(true);
        QVERIFY(sheet->scene.setSelectedNotesRole("Causal_Factor"));
        QVERIFY(describe(sheet->scene).contains(before.section('\n', 0, 0)));
        QCOMPARE(sheet->scene.getAllCausalFactors().size(), 2);
    }

    void aTwinKeepsItsFactorsNumber()
    {
        sheet->addFactor(1);
        Sticky *owner = sheet->addFactor(2);
        ProjectScene other(&sheet->program, &sheet->group, nullptr, nullptr, QSize(400, 300),
                           owner);
        sheet->program.sheets.append(&other);
        CanvasItemInfo info = owner->getCanvasItemInfo();
        info.guid = "twin";
        info.siblings = QStringList{owner->getGUID(), "causalFactor_text_2"};
        ProjectItem *twin = other.loadCanvasItem(info);
        twin->setSelected(true);
        BoxAnswer box(QMessageBox::Ok);
        QVERIFY(other.setSelectedNotesRole("Event"));
        other.getUndoStack()->undo();
        QCOMPARE(twin->getCanvasItemInfo().causalFactorNumber, 2);
        QCOMPARE(owner->getCausalFactorNumber(), 2);

        DialogAnswer number(numberChoice(1));
        BoxAnswer swap(QMessageBox::Ok);
        sheet->scene.onRequestCausalFactorNumberChange(owner);
        QCOMPARE(twin->getRecord().siblings, QStringList(owner->getGUID()));

        BoxAnswer question(QMessageBox::Ok);
        other.deleteSelectedItems();
        QVERIFY(!question.wasAsked());
        QVERIFY(other.getProjectItems().isEmpty());
    }

    void sheetsGoOnlyWhenAsked()
    {
        const std::tuple<const char *, bool, QMessageBox::StandardButton, QString> rows[] = {
            {"role, goes on", false, QMessageBox::Ok, "Change Role"},
            {"role, stays", false, QMessageBox::Cancel, "Change Role"},
            {"deletion, goes on", true, QMessageBox::Ok, "Delete Parent Item"},
            {"deletion, stays", true, QMessageBox::Cancel, "Delete Parent Item"},
        };
        for (const auto &[name, deletes, button, title] : rows) {
            const Row in(name);
            sheet->addFactor(1);
            sheet->addNote(QRectF(20, 200, 120, 80), "Condition");
            sheet->scene.selectAll();
            const QString before = describe(sheet->scene);
            QSignalSpy removed(&sheet->scene, &ProjectScene::causalFactorRemoved);
            BoxAnswer box(button);
            if (deletes)
                sheet->scene.deleteSelectedItems();
            else
                sheet->scene.setSelectedNotesRole("Event");
            QCoreApplication::processEvents();
            QCOMPARE(box.title, title);
            QCOMPARE(box.defaultButton, QString("Cancel"));
            const int done = button == QMessageBox::Ok ? 1 : 0;
            QCOMPARE(sheet->getSteps(), done);
            QCOMPARE(removed.count(), done);
            QCOMPARE(describe(sheet->scene) == before, !done);
            sheet->scene.clear();
        }
    }

    void deletedBoxIsFreed()
    {
        auto *box = new InfoItem;
        sheet->scene.addItem(box);
        box->setSelected(true);
        sheet->scene.deleteSelectedItems();
        sheet->getStack()->undo();
        QCOMPARE(box->scene(), &sheet->scene);
        sheet->getStack()->redo(); // the leak checker looks on
    }

    void numbers()
    {
        const std::tuple<const char *, int, QMessageBox::StandardButton, int, int, QString, int>
            rows[] = {
                {"a free one", 7, QMessageBox::NoButton, 7, 2, "1+7", 1},
                {"beyond the last", 100, QMessageBox::NoButton, 99, 2, "1+99", 1},
                {"its own", 1, QMessageBox::NoButton, 1, 2, "1", 0},
                {"swapped", 2, QMessageBox::Ok, 2, 1, "2", 2},
                {"not swapped", 2, QMessageBox::Cancel, 1, 2, "1", 0},
            };
        for (const auto &[name, wanted, button, number, other, fields, news] : rows) {
            const Row in(name);
            Sticky *note = sheet->addFactor(1);
            Sticky *second = sheet->addFactor(2);
            DialogAnswer dialog(numberChoice(wanted));
            BoxAnswer box(button);
            sheet->scene.onRequestCausalFactorNumberChange(note);
            QVERIFY(dialog.wasAsked());
            QCOMPARE(box.wasAsked(), button != QMessageBox::NoButton);
            QCOMPARE(note->getCausalFactorNumber(), number);
            QCOMPARE(second->getCausalFactorNumber(), other);
            QCOMPARE(note->getSiblings().join('+').remove("causalFactor_text_"), fields);
            QCOMPARE(second->getSiblings().join('+'), QString("causalFactor_text_%1").arg(other));
            QCOMPARE(sheet->program.changedFactors.size(), news);
            QCOMPARE(sheet->getStack()->isClean(), news == 0); // whatever is undone
            sheet->program.changedFactors.clear();
            sheet->scene.clear();
        }
        for (int number : {4, 2, 1})
            sheet->addFactor(number);
        QCOMPARE(sheet->scene.getFirstUnusedCFNumber(), 3);
    }

    void arrowKeys()
    {
        const std::tuple<const char *, int, QPointF, QPointF, QPointF> rows[] = {
            {"left", Qt::Key_Left, {100, 100}, {80, 100}, {280, 300}},
            {"right", Qt::Key_Right, {100, 100}, {120, 100}, {320, 300}},
            {"up", Qt::Key_Up, {100, 100}, {100, 80}, {300, 280}},
            {"down", Qt::Key_Down, {100, 100}, {100, 120}, {300, 320}},
            {"at the left edge", Qt::Key_Left, {0, 100}, {0, 100}, {280, 300}},
            {"at the top edge", Qt::Key_Up, {100, 0}, {100, 0}, {300, 280}},
            {"up to the edge", Qt::Key_Left, {7, 100}, {0, 100}, {280, 300}},
        };
        for (const auto &[name, key, from, to, moved] : rows) {
            const Row in(name);
            Sticky *note = sheet->addNote(QRectF(from, QSizeF(120, 80)));
            ProjectItem *barrier = sheet->addBarrier(QPointF(300, 300));
            QVERIFY(!sheet->pressKey(key));
            sheet->scene.selectAll();
            const QString before = describe(sheet->scene);
            QVERIFY(sheet->pressKey(key));
            QVERIFY(!sheet->pressKey(Qt::Key_X));
            QCOMPARE(note->getGeometry(), QRectF(to, QSizeF(120, 80)));
            QCOMPARE(barrier->pos(), moved);
            QCOMPARE(sheet->getSteps(), 1);
            sheet->getStack()->undo();
            QCOMPARE(describe(sheet->scene), before);
            sheet->scene.clear();
        }
        sheet->addNote(QRectF(0, 0, 120, 80))->setSelected(true);
        QVERIFY(sheet->pressKey(Qt::Key_Left));
        QCOMPARE(sheet->getSteps(), 0);
    }

    void textIsEdited()
    {
        Sticky *note = sheet->addNote(QRectF(100, 200, 120, 80), "Event", "Pump ");
        Sticky *other = sheet->addNote(QRectF(300, 200, 120, 80));
        QSignalSpy editing(&sheet->scene, &ProjectScene::textEditingChanged);
        QKeyEvent undo(QEvent::ShortcutOverride, Qt::Key_Z, Qt::ControlModifier);
        QKeyEvent save(QEvent::ShortcutOverride, Qt::Key_S, Qt::ControlModifier);
        QVERIFY(!sheet->scene.handleEditingCommand(&undo));
        sheet->doubleClick(QPointF(140, 240));
        QCOMPARE(editing.takeLast().first().toBool(), true);
        QVERIFY(sheet->scene.handleEditingCommand(&undo));
        QVERIFY(!sheet->scene.handleEditingCommand(&save));

        QVERIFY(sheet->getStack()->isClean());
        QTest::keyClicks(sheet->view.viewport(), "ran dry");
        QVERIFY(!sheet->getStack()->isClean());
        sheet->pressKey(Qt::Key_Left);
        QCOMPARE(note->pos(), QPointF(100, 200));
        emit other->editingStarted(other); // one edits at a time
        QCOMPARE(sheet->getStack()->undoText(), QString("change text"));
        QCOMPARE(editing.takeLast().first().toBool(), true);
        sheet->click(QPointF(500, 500));
        QCOMPARE(editing.takeLast().first().toBool(), false);
        sheet->scene.finishEditing();
        QVERIFY(editing.isEmpty());
        QCOMPARE(note->getText(), QString("Pump ran dry"));
        QCOMPARE(sheet->getSteps(), 2);
        sheet->getStack()->setIndex(0);
        QCOMPARE(note->getText(), QString("Pump "));
    }

    void selectionIsReported()
    {
        QSignalSpy changed(&sheet->scene, &ProjectScene::selectionChanged);
        const auto getLast = [&changed] {
            return changed.last().first().value<QList<QGraphicsItem *>>().size();
        };
        sheet->addNote(QRectF(100, 200, 120, 80))->setSelected(true);
        QCOMPARE(changed.count(), 1);
        sheet->addBarrier(QPointF(300, 200))->setSelected(true);
        QCOMPARE(getLast(), 2);
        sheet->addLine(QPointF(100, 400), QPointF(200, 400))->setSelected(true);
        QCOMPARE(changed.count(), 2);
        QTRY_COMPARE(getLast(), 3);
        QCOMPARE(sheet->scene.getSelectedBoxes().size(), 2);

        for (int i = 0; i < 100; ++i)
            sheet->addNote(QRectF(20 * i, 200, 120, 80));
        changed.clear();
        sheet->scene.selectAll();
        QTRY_COMPARE(getLast(), 103);
        QVERIFY(changed.count() <= 12);
        sheet->click(QPointF(700, 500)); // beside them all
        QTRY_COMPARE(getLast(), 0);
    }

    void menusWorkOnTheSelection()
    {
        Sticky *note = sheet->addNote(QRectF(100, 200, 120, 80));
        Sticky *other = sheet->addNote(QRectF(300, 200, 120, 80));
        Line *line = sheet->addLine(QPointF(100, 400), QPointF(200, 400));
        note->setSelected(true);
        QVERIFY(askForMenu(QPointF(340, 240)));
        QVERIFY(other->isSelected() && !note->isSelected());
        QVERIFY(askForMenu(QPointF(150, 400)));
        QVERIFY(line->isSelected() && !other->isSelected());
        note->setSelected(true);
        for (const QPointF &p : {QPointF(150, 400), QPointF(140, 240)}) {
            QVERIFY(askForMenu(p));
            QVERIFY(line->isSelected() && note->isSelected());
        }
        sheet->program.tool = EventTool; // whose landing place is no item
        sheet->move(QPointF(500, 400), Qt::NoButton);
        QVERIFY(askForMenu(QPointF(500, 400)));
        QCOMPARE(sheet->scene.getLastContextMenuPos(), QPointF(500, 400));
    }

    void changesNeedASelection()
    {
        sheet->addNote(QRectF(100, 200, 120, 80));
        sheet->addLine(QPointF(100, 400), QPointF(200, 400));
        sheet->scene.deleteSelectedItems();
        for (int steps : {0, 5}) {
            sheet->scene.setSelectedNotesAlignment(Qt::AlignRight);
            sheet->scene.setSelectedNotesProperty(Sticky::PROPERTY_NOT_RELEVANT, true);
            sheet->scene.setSelectedLinesProperty(ProjectItem::PROPERTY_LINE_WIDTH, 4);
            sheet->scene.setSelectedLinesArrowStyle(Line::ArrowAtEnd);
            sheet->scene.setSelectedLinesStyle(Qt::DashLine);
            QCOMPARE(sheet->getSteps(), steps);
            sheet->scene.selectAll();
        }
    }
};

EXAMINER_TEST_MAIN(TestRules)
#include "testrules.moc"
