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
        const std::tuple<QStringList, int, const char *, QString> rows[] = {
            {{"Loss"}, 1, "Causal_Factor", "identified both a Loss and a"},
            {{"Loss_Of_Control"}, 1, "Causal_Factor", "identified both"},
            {both, 3, "Causal_Factor", ""},
            {{"Loss_Of_Control"}, 1, "Loss", ""},
            {{}, 2, "Loss", "one Loss or Loss of Control per"},
            {{}, 2, "Loss_Of_Control", "one Loss or Loss of Control per"},
            {both, 1, "Loss", "one Loss per"},
            {both, 1, "Loss_Of_Control", "one Loss of Control per"},
        };
        for (const auto &[present, selected, role, refusal] : rows) {
            const Row in(role);
            for (const QString &type : present)
                sheet->addNote(QRectF(20, 400, 120, 120), type);
            for (int i = 0; i < selected; ++i)
                sheet->addNote(QRectF(150 * i, 20, 120, 80))->setSelected(true);
            BoxAnswer box(QMessageBox::Ok);
            QCOMPARE(sheet->scene.setSelectedNotesRole(role), refusal.isEmpty());
            QVERIFY2(box.text.contains(refusal), qPrintable(box.text));
            QCOMPARE(sheet->getSteps(), refusal.isEmpty() ? 1 : 0);
            sheet->scene.clear();
        }
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
        info.siblings = QStringList(owner->getGUID());
        auto *twin = qobject_cast<Sticky *>(other.loadCanvasItem(info));
        twin->setSelected(true);
        BoxAnswer box(QMessageBox::Ok);
        QVERIFY(other.setSelectedNotesRole("Event"));
        other.getUndoStack()->undo();
        QCOMPARE(twin->getCanvasItemInfo().causalFactorNumber, 2);
        QCOMPARE(owner->getCausalFactorNumber(), 2);

        owner->addSibling(twin);
        twin->addSibling("causalFactor_text_2"); // as files hold it
        DialogAnswer number(numberChoice(1));
        BoxAnswer swap(QMessageBox::Ok);
        sheet->scene.onRequestCausalFactorNumberChange(owner);
        QCOMPARE(twin->getSiblings(), QStringList(owner->getGUID()));

        BoxAnswer question(QMessageBox::Ok);
        other.deleteSelectedItems();
        QVERIFY(!question.wasAsked());
        QVERIFY(other.getRoleRefusal("Causal_Factor", {}).endsWith("on a secondary sheet."));
    }

    void sheetsGoOnlyWhenAsked()
    {
        for (int row = 0; row < 4; ++row) {
            const bool deletes = row & 1, done = row & 2;
            sheet->addFactor(1);
            sheet->addNote(QRectF(20, 200, 120, 80), "Condition");
            sheet->scene.selectAll();
            const QString before = describe(sheet->scene);
            QSignalSpy removed(&sheet->scene, &ProjectScene::causalFactorRemoved);
            BoxAnswer box(done ? QMessageBox::Ok : QMessageBox::Cancel);
            deletes ? sheet->scene.deleteSelectedItems()
                    : void(sheet->scene.setSelectedNotesRole("Event"));
            QCoreApplication::processEvents();
            QCOMPARE(box.title + box.defaultButton,
                     QString(deletes ? "Delete Parent ItemCancel" : "Change RoleCancel"));
            QCOMPARE(sheet->getSteps(), int(done));
            QCOMPARE(removed.count(), int(done));
            QCOMPARE(describe(sheet->scene) == before, !done);
            sheet->scene.clear();
        }
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
            {"left", Qt::Key_Left, {7, 100}, {0, 100}, {280, 300}}, // up to the edge
            {"right", Qt::Key_Right, {100, 100}, {120, 100}, {320, 300}},
            {"up", Qt::Key_Up, {100, 0}, {100, 0}, {300, 280}},
            {"down", Qt::Key_Down, {100, 100}, {100, 120}, {300, 320}},
        };
        for (const auto &[name, key, from, to, moved] : rows) {
            const Row in(name);
            Sticky *note = sheet->addNote(QRectF(from, QSizeF(120, 80)));
            ProjectItem *barrier = sheet->addBarrier(QPointF(300, 300));
            QVERIFY(!sheet->pressKey(key));
            sheet->scene.selectAll();
            const QString before = describe(sheet->scene);
            QVERIFY(sheet->pressKey(key) && !sheet->pressKey(Qt::Key_X));
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
        QVERIFY(sheet->scene.handleEditingCommand(&undo));
        QVERIFY(!sheet->scene.handleEditingCommand(&save));
        QTest::keyClicks(sheet->view.viewport(), "ran dry");
        QVERIFY(!sheet->getStack()->isClean());
        sheet->pressKey(Qt::Key_Left);
        emit other->editingStarted(other); // one edits at a time
        QCOMPARE(sheet->getStack()->undoText(), QString("change text"));
        QCOMPARE(editing.takeLast().first().toBool(), true);
        sheet->click(QPointF(500, 500));
        QCOMPARE(editing.takeLast().first().toBool(), false);
        QCOMPARE(note->getText(), QString("Pump ran dry"));
        QCOMPARE(note->pos(), QPointF(100, 200));
        sheet->getStack()->setIndex(0);
        QCOMPARE(note->getText(), QString("Pump "));
    }

    void selectionIsReported()
    {
        QSignalSpy changed(&sheet->scene, &ProjectScene::selectionChanged);
        for (int i = 0; i < 100; ++i)
            sheet->addNote(QRectF(20 * i, 200, 120, 80));
        for (bool selected : {true, false}) {
            selected ? sheet->scene.selectAll() : sheet->scene.clearSelection();
            QTRY_COMPARE(changed.last().first().value<QList<QGraphicsItem *>>().size(),
                         selected ? 100 : 0);
        }
        QVERIFY(changed.count() <= 24); // not one for each
    }

    void menusWorkOnTheSelection()
    {
        Sticky *note = sheet->addNote(QRectF(100, 200, 120, 80));
        Line *line = sheet->addLine(QPointF(100, 400), QPointF(200, 400));
        note->setSelected(true);
        QVERIFY(askForMenu(QPointF(150, 400)));
        QVERIFY(line->isSelected() && !note->isSelected());
        note->setSelected(true);
        QVERIFY(askForMenu(QPointF(140, 240)));
        QVERIFY(line->isSelected() && note->isSelected());
        sheet->program.tool = EventTool; // whose landing place is no item
        sheet->move(QPointF(500, 400), Qt::NoButton);
        QVERIFY(askForMenu(QPointF(500, 400)));
        QCOMPARE(sheet->scene.getLastContextMenuPos(), QPointF(500, 400));
    }
};

EXAMINER_TEST_MAIN(TestRules)
#include "testrules.moc"
