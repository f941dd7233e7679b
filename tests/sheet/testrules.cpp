#include "form/formview.h"
#include "testing/sheet.h"

#include <QKeyEvent>

Q_DECLARE_METATYPE(QMessageBox::StandardButton)

class TestRules : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void refusals_data();
    void refusals();
    void refusalIsShown();
    void secondarySheetRefusesFirst();
    void roleChanges();
    void leavingAParentRole_data();
    void leavingAParentRole();
    void noSelectionIsNoStep();

    void deleteAsksForAParent_data();
    void deleteAsksForAParent();
    void deleteOnASecondarySheet();
    void deletedBoxIsFreed();

    void numberIsMoved();
    void numberIsSwapped_data();
    void numberIsSwapped();
    void numberIsKept_data();
    void numberIsKept();

    void arrowKeys_data();
    void arrowKeys();
    void keysWithoutBoxes();
    void textIsEdited();
    void oneNoteEditsAtATime();
    void editingKeys_data();
    void editingKeys();

    void selectionIsReported();
    void largeSelectionIsReportedTogether();
    void formTextReachesItsNotes();
    void fontReachesFollowers();
    void bulkChangesNeedASelection();
    void contextMenuOnTheEmptySheet();
};

void TestRules::init()
{
    QSettings().clear();
}

void TestRules::refusals_data()
{
    QTest::addColumn<QStringList>("present");
    QTest::addColumn<int>("selected");
    QTest::addColumn<QString>("role");
    QTest::addColumn<QString>("refusal");

    const QString needsBoth = "You cannot create this role type until you have identified both a "
                              "Loss and a Loss of Control event";
    const QString tooMany = "You cannot identify more than one Loss or Loss of Control per project";
    const QStringList both = {"Loss", "Loss_Of_Control"};
    QTest::newRow("factor without both") << QStringList() << 1 << "Causal_Factor" << needsBoth;
    QTest::newRow("factor without loss of control")
        << QStringList("Loss") << 1 << "Causal_Factor" << needsBoth;
    QTest::newRow("factor without loss")
        << QStringList("Loss_Of_Control") << 1 << "Causal_Factor" << needsBoth;
    QTest::newRow("factor with both") << both << 1 << "Causal_Factor" << QString();
    QTest::newRow("several factors") << both << 3 << "Causal_Factor" << QString();
    QTest::newRow("first loss") << QStringList() << 1 << "Loss" << QString();
    QTest::newRow("two losses") << QStringList() << 2 << "Loss" << tooMany;
    QTest::newRow("two losses of control") << QStringList() << 2 << "Loss_Of_Control" << tooMany;
    QTest::newRow("second loss") << both << 1 << "Loss"
                                 << "You cannot identify more than one Loss per project";
    QTest::newRow("second loss of control")
        << both << 1 << "Loss_Of_Control"
        << "You cannot identify more than one Loss of Control per project";
    QTest::newRow("loss beside a loss of control")
        << QStringList("Loss_Of_Control") << 1 << "Loss" << QString();
    QTest::newRow("condition") << QStringList() << 5 << "Condition" << QString();
}

void TestRules::refusals()
{
    QFETCH(QStringList, present);
    QFETCH(int, selected);
    QFETCH(QString, role);
    QFETCH(QString, refusal);
    Sheet sheet;
    for (const QString &type : present)
        sheet.addNote(QRectF(20, 400, 120, 120), type);
    QList<Sticky *> notes;
    for (int i = 0; i < selected; ++i)
        notes.append(sheet.addNote(QRectF(150 * i, 20, 120, 80)));

    QCOMPARE(sheet.scene.getRoleRefusal(role, notes), refusal);
}

void TestRules::refusalIsShown()
{
    Sheet sheet;
    sheet.addNote(QRectF(20, 20, 120, 80))->setSelected(true);
    sheet.addNote(QRectF(220, 20, 120, 80))->setSelected(true);
    BoxAnswer box(QMessageBox::Ok);
    QVERIFY(!sheet.scene.setSelectedNotesRole("Loss"));

    QVERIFY(box.wasAsked());
    QCOMPARE(box.title, QString("Invalid Role"));
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(box.buttons, QMessageBox::Ok);
    QCOMPARE(box.text,
             QString("You cannot identify more than one Loss or Loss of Control per project"));
    QCOMPARE(sheet.getSteps(), 0);
}

void TestRules::secondarySheetRefusesFirst()
{
    Sheet main;
    Sticky *owner = main.addFactor(1);
    ProjectScene secondary(&main.program, &main.group, nullptr, nullptr, QSize(400, 300), owner);

    QCOMPARE(secondary.getRoleRefusal("Causal_Factor", {}),
             QString("You cannot create an item that spawns a new sheet on a secondary sheet."));
    QCOMPARE(secondary.getRoleRefusal("Loss", {}), QString());
}

void TestRules::roleChanges()
{
    Sheet sheet;
    Sticky *first = sheet.addNote(QRectF(20, 20, 120, 80));
    Sticky *second = sheet.addNote(QRectF(220, 20, 120, 80), "Condition");
    sheet.addLine(QPointF(100, 300), QPointF(200, 300));
    sheet.addBarrier(QPointF(300, 300));
    sheet.scene.selectAll();
    QVERIFY(sheet.scene.setSelectedNotesRole("Assumed_Event"));
    QCOMPARE(sheet.getSteps(), 1);
    QCOMPARE(first->getRoleType(), QString("Assumed_Event"));
    QCOMPARE(second->getRoleType(), QString("Assumed_Event"));

    sheet.scene.getUndoStack()->undo();
    QCOMPARE(first->getRoleType(), QString("Event"));
    QCOMPARE(second->getRoleType(), QString("Condition"));
}

void TestRules::leavingAParentRole_data()
{
    QTest::addColumn<QMessageBox::StandardButton>("button");
    QTest::addColumn<QString>("role");

    QTest::newRow("goes on") << QMessageBox::Ok << "Condition";
    QTest::newRow("stays") << QMessageBox::Cancel << "Causal_Factor";
}

void TestRules::leavingAParentRole()
{
    QFETCH(QMessageBox::StandardButton, button);
    QFETCH(QString, role);
    Sheet sheet;
    Sticky *factor = sheet.addFactor(1);
    factor->setSelected(true);
    sheet.addNote(QRectF(20, 200, 120, 80))->setSelected(true);
    QSignalSpy removed(&sheet.scene, &ProjectScene::causalFactorRemoved);
    BoxAnswer box(button);
    QCOMPARE(sheet.scene.setSelectedNotesRole("Condition"), button == QMessageBox::Ok);

    QVERIFY(box.wasAsked());
    QCOMPARE(box.title, QString("Change Role"));
    QCOMPARE(box.icon, QMessageBox::Warning);
    QCOMPARE(box.buttons, QMessageBox::Ok | QMessageBox::Cancel);
    QCOMPARE(box.defaultButton, QString("Cancel"));
    QCOMPARE(box.text,
             QString("You are about to change the role for an item which is the parent of another "
                     "sheet.\nThis will delete the associated sheet and information on that sheet "
                     "will be lost.\nThis action CANNOT BE UNDONE."));
    QCOMPARE(factor->getRoleType(), role);
    QCoreApplication::processEvents();
    QCOMPARE(removed.count(), button == QMessageBox::Ok ? 1 : 0);
}

void TestRules::noSelectionIsNoStep()
{
    Sheet sheet;
    sheet.addNote(QRectF(20, 20, 120, 80));

    QVERIFY(sheet.scene.setSelectedNotesRole("Condition"));
    QCOMPARE(sheet.getSteps(), 0);
}

void TestRules::deleteAsksForAParent_data()
{
    QTest::addColumn<QMessageBox::StandardButton>("button");
    QTest::addColumn<int>("left");

    QTest::newRow("goes on") << QMessageBox::Ok << 0;
    QTest::newRow("stays") << QMessageBox::Cancel << 2;
}

void TestRules::deleteAsksForAParent()
{
    QFETCH(QMessageBox::StandardButton, button);
    QFETCH(int, left);
    Sheet sheet;
    sheet.addFactor(1);
    sheet.addNote(QRectF(20, 200, 120, 80));
    sheet.scene.selectAll();
    BoxAnswer box(button);
    sheet.scene.deleteSelectedItems();

    QVERIFY(box.wasAsked());
    QCOMPARE(box.title, QString("Delete Parent Item"));
    QCOMPARE(box.icon, QMessageBox::Warning);
    QCOMPARE(box.defaultButton, QString("Cancel"));
    QCOMPARE(box.text,
             QString("You are about to delete an item which is the parent of another sheet.\nThis "
                     "will delete the associated sheet and information on that sheet will be lost."
                     "\nThis action CANNOT BE UNDONE."));
    QCOMPARE(sheet.scene.getProjectItems().size(), left);
    QCOMPARE(sheet.getSteps(), left == 0 ? 1 : 0);
}

void TestRules::deleteOnASecondarySheet()
{
    Sheet main;
    Sticky *owner = main.addFactor(1);
    ProjectScene secondary(&main.program, &main.group, nullptr, nullptr, QSize(400, 300), owner);
    CanvasItemInfo info = owner->getCanvasItemInfo();
    info.guid.clear();
    secondary.loadCanvasItem(info);
    secondary.selectAll();
    secondary.deleteSelectedItems(); // without a question

    QVERIFY(secondary.getProjectItems().isEmpty());
    secondary.getUndoStack()->undo();
    QCOMPARE(secondary.getProjectItems().size(), 1);
}

void TestRules::deletedBoxIsFreed()
{
    Sheet sheet;
    auto *extra = new QGraphicsRectItem(0, 0, 100, 100);
    extra->setFlag(QGraphicsItem::ItemIsSelectable);
    sheet.scene.addItem(extra);
    extra->setSelected(true);
    sheet.scene.deleteSelectedItems();
    QVERIFY(!extra->scene());
    sheet.scene.getUndoStack()->undo();
    QCOMPARE(extra->scene(), &sheet.scene);
    sheet.scene.getUndoStack()->redo();
    sheet.scene.clear(); // the leak checker looks on
    QCOMPARE(sheet.getSteps(), 0);
}

void TestRules::numberIsMoved()
{
    Sheet sheet;
    Sticky *note = sheet.addFactor(1);
    sheet.addFactor(2);
    DialogAnswer number(numberChoice(7));
    sheet.scene.onRequestCausalFactorNumberChange(note);

    QVERIFY(number.wasAsked());
    QCOMPARE(note->getCausalFactorNumber(), 7);
    QCOMPARE(note->getSiblings(), QStringList({"causalFactor_text_1", "causalFactor_text_7"}));
    QCOMPARE(sheet.program.changedFactors, QList<Sticky *>({note}));
    QCOMPARE(sheet.getSteps(), 0);
}

void TestRules::numberIsSwapped_data()
{
    QTest::addColumn<QMessageBox::StandardButton>("button");
    QTest::addColumn<int>("number");

    QTest::newRow("swapped") << QMessageBox::Ok << 2;
    QTest::newRow("kept") << QMessageBox::Cancel << 1;
}

void TestRules::numberIsSwapped()
{
    QFETCH(QMessageBox::StandardButton, button);
    QFETCH(int, number);
    Sheet sheet;
    Sticky *note = sheet.addFactor(1);
    Sticky *other = sheet.addFactor(2);
    DialogAnswer dialog(numberChoice(2));
    BoxAnswer box(button);
    sheet.scene.onRequestCausalFactorNumberChange(note);

    QVERIFY(box.wasAsked());
    QCOMPARE(box.title, QString("Causal Factor already exists"));
    QCOMPARE(box.icon, QMessageBox::Question);
    QCOMPARE(box.buttons, QMessageBox::Ok | QMessageBox::Cancel);
    QCOMPARE(box.text,
             QString("The Causal Factor 2 already exists.\nWould you like to swap numbers "
                     "with this Causal Factor?"));
    QCOMPARE(note->getCausalFactorNumber(), number);
    QCOMPARE(other->getCausalFactorNumber(), 3 - number);
    QCOMPARE(note->getSiblings(), QStringList(QString("causalFactor_text_%1").arg(number)));
    QCOMPARE(other->getSiblings(), QStringList(QString("causalFactor_text_%1").arg(3 - number)));
    if (button == QMessageBox::Ok)
        QCOMPARE(sheet.program.changedFactors, QList<Sticky *>({other, note}));
    else
        QVERIFY(sheet.program.changedFactors.isEmpty());
}

void TestRules::numberIsKept_data()
{
    QTest::addColumn<bool>("accept");

    QTest::newRow("same number") << true;
    QTest::newRow("cancelled") << false;
}

void TestRules::numberIsKept()
{
    QFETCH(bool, accept);
    Sheet sheet;
    Sticky *note = sheet.addFactor(5);
    QString title;
    QString label;
    QPair<int, int> range;
    DialogAnswer answer([&](QWidget *widget) {
        auto *dialog = qobject_cast<QInputDialog *>(widget);
        title = dialog->windowTitle();
        label = dialog->labelText();
        range = {dialog->intMinimum(), dialog->intMaximum()};
        if (!accept)
            dialog->setIntValue(9);
        dialog->done(accept ? QDialog::Accepted : QDialog::Rejected);
        return true;
    });
    sheet.scene.onRequestCausalFactorNumberChange(note);

    QCOMPARE(title, QString("Set Causal Factor Number"));
    QCOMPARE(label, QString("Causal Factor Number:"));
    QCOMPARE(range, qMakePair(1, 99));
    QCOMPARE(note->getCausalFactorNumber(), 5);
    QVERIFY(sheet.program.changedFactors.isEmpty());
}

static bool pressKey(ProjectScene &scene, int key)
{
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(&scene, &event);
    return event.isAccepted();
}

void TestRules::arrowKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QPointF>("step");

    QTest::newRow("left") << int(Qt::Key_Left) << QPointF(-20, 0);
    QTest::newRow("right") << int(Qt::Key_Right) << QPointF(20, 0);
    QTest::newRow("up") << int(Qt::Key_Up) << QPointF(0, -20);
    QTest::newRow("down") << int(Qt::Key_Down) << QPointF(0, 20);
}

void TestRules::arrowKeys()
{
    QFETCH(int, key);
    QFETCH(QPointF, step);
    Sheet sheet;
    Sticky *note = sheet.addNote(QRectF(100, 100, 120, 80));
    ProjectItem *barrier = sheet.addBarrier(QPointF(300, 100));
    sheet.scene.selectAll();

    QVERIFY(pressKey(sheet.scene, key));
    QCOMPARE(note->getGeometry(), QRectF(QPointF(100, 100) + step, QSizeF(120, 80)));
    QCOMPARE(barrier->pos(), QPointF(300, 100) + step);
    QCOMPARE(sheet.getSteps(), 1);
    QCOMPARE(sheet.scene.getUndoStack()->undoText(), QString("move 2 items"));
    sheet.scene.getUndoStack()->undo();
    QCOMPARE(note->getGeometry(), QRectF(100, 100, 120, 80));
    QCOMPARE(barrier->pos(), QPointF(300, 100));
}

void TestRules::keysWithoutBoxes()
{
    Sheet sheet;
    sheet.addLine(QPointF(100, 100), QPointF(200, 200))->setSelected(true);
    Sticky *note = sheet.addNote(QRectF(100, 100, 120, 80));

    QVERIFY(!pressKey(sheet.scene, Qt::Key_Left));
    QVERIFY(!pressKey(sheet.scene, Qt::Key_X));
    QCOMPARE(note->pos(), QPointF(100, 100));
    QCOMPARE(sheet.getSteps(), 0);
}

void TestRules::textIsEdited()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    Sticky *note = sheet.addNote(QRectF(100, 200, 120, 80), "Event", "Pump ");
    QSignalSpy editing(&sheet.scene, &ProjectScene::textEditingChanged);
    sheet.doubleClick(QPointF(140, 240));
    QCOMPARE(editing.takeLast().first().toBool(), true);

    QTest::keyClicks(sheet.view.viewport(), "ran dry");
    pressKey(sheet.scene, Qt::Key_Left);
    QCOMPARE(note->pos(), QPointF(100, 200));
    sheet.click(QPointF(500, 500));
    QCOMPARE(editing.takeLast().first().toBool(), false);
    QCOMPARE(note->getText(), QString("Pump ran dry"));
    QCOMPARE(sheet.getSteps(), 1);
    QCOMPARE(sheet.scene.getUndoStack()->undoText(), QString("change text"));
    sheet.scene.getUndoStack()->undo();
    QCOMPARE(note->getText(), QString("Pump "));
}

void TestRules::oneNoteEditsAtATime()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    Sticky *first = sheet.addNote(QRectF(100, 200, 120, 80));
    Sticky *second = sheet.addNote(QRectF(300, 200, 120, 80));
    emit first->editingStarted(first);
    QSignalSpy editing(&sheet.scene, &ProjectScene::textEditingChanged);
    emit second->editingStarted(second);

    // The sheet stays in editing.
    QCOMPARE(editing.count(), 1);
    QCOMPARE(editing.first().first().toBool(), true);
    QCOMPARE(sheet.getSteps(), 1);
    sheet.scene.finishEditing();
    QCOMPARE(editing.count(), 2);
    sheet.scene.finishEditing();
    QCOMPARE(editing.count(), 2);
    QCOMPARE(sheet.getSteps(), 2);
}

void TestRules::editingKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<bool>("taken");

    QTest::newRow("delete") << int(Qt::Key_Delete) << 0 << true;
    QTest::newRow("backspace") << int(Qt::Key_Backspace) << 0 << true;
    QTest::newRow("cut") << int(Qt::Key_X) << int(Qt::ControlModifier) << true;
    QTest::newRow("copy") << int(Qt::Key_C) << int(Qt::ControlModifier) << true;
    QTest::newRow("paste") << int(Qt::Key_V) << int(Qt::ControlModifier) << true;
    QTest::newRow("undo") << int(Qt::Key_Z) << int(Qt::ControlModifier) << true;
    QTest::newRow("redo") << int(Qt::Key_Z) << int(Qt::ControlModifier | Qt::ShiftModifier) << true;
    QTest::newRow("select all") << int(Qt::Key_A) << int(Qt::ControlModifier) << true;
    QTest::newRow("save") << int(Qt::Key_S) << int(Qt::ControlModifier) << false;
    QTest::newRow("letter") << int(Qt::Key_A) << 0 << false;
}

void TestRules::editingKeys()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(bool, taken);
    Sheet sheet;
    Sticky *note = sheet.addNote(QRectF(100, 200, 120, 80));
    QKeyEvent event(QEvent::ShortcutOverride, key, Qt::KeyboardModifiers(modifiers));

    QVERIFY(!sheet.scene.handleEditingCommand(&event));
    sheet.scene.onEditingStarted(note);
    QCOMPARE(sheet.scene.handleEditingCommand(&event), taken);
    sheet.scene.finishEditing();
    QVERIFY(!sheet.scene.handleEditingCommand(&event));
}

void TestRules::selectionIsReported()
{
    Sheet sheet;
    Sticky *note = sheet.addNote(QRectF(100, 200, 120, 80));
    ProjectItem *barrier = sheet.addBarrier(QPointF(300, 200));
    Line *line = sheet.addLine(QPointF(100, 400), QPointF(200, 400));
    QSignalSpy changed(&sheet.scene, &ProjectScene::selectionChanged);
    const auto getLast = [&changed] {
        return changed.last().first().value<QList<QGraphicsItem *>>();
    };

    note->setSelected(true);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(getLast(), QList<QGraphicsItem *>({note}));
    barrier->setSelected(true);
    QCOMPARE(getLast().size(), 2);
    line->setSelected(true);
    QCOMPARE(changed.count(), 2);
    QCoreApplication::processEvents();
    QCOMPARE(changed.count(), 3);
    QCOMPARE(getLast().size(), 3);
    QCOMPARE(sheet.scene.getSelectedProjectItems().size(), 3);
    QCOMPARE(sheet.scene.getSelectedBoxes().size(), 2);
}

void TestRules::largeSelectionIsReportedTogether()
{
    Sheet sheet;
    for (int i = 0; i < 100; ++i)
        sheet.addNote(QRectF(20 * i, 200, 120, 80));
    QSignalSpy changed(&sheet.scene, &ProjectScene::selectionChanged);
    sheet.scene.selectAll();
    QVERIFY(changed.count() <= 10);
    QTRY_COMPARE(changed.last().first().value<QList<QGraphicsItem *>>().size(), 100);
    sheet.scene.clearSelection();
    QTRY_VERIFY(changed.last().first().value<QList<QGraphicsItem *>>().isEmpty());
    QVERIFY(changed.count() <= 22);
}

void TestRules::formTextReachesItsNotes()
{
    Sheet sheet;
    Sticky *note = sheet.addFactor(1);
    Sticky *other = sheet.addFactor(2);
    sheet.scene.onFormValueChanged("causalFactor_text_1", "Valve stuck");

    QCOMPARE(note->getText(), QString("Valve stuck"));
    QCOMPARE(other->getText(), QString());
    QCOMPARE(sheet.getSteps(), 0);
}

void TestRules::fontReachesFollowers()
{
    Sheet sheet;
    Sticky *follower = sheet.addNote(QRectF(100, 200, 120, 80));
    Sticky *loner = sheet.addNote(QRectF(300, 200, 120, 80));
    const QFont own("Arial", 14);
    loner->setCustomFont(own);
    const QFont font("Arial", 11);
    sheet.scene.setItemsFont(font);

    QCOMPARE(follower->getFont().pointSize(), 11);
    QCOMPARE(loner->getFont().pointSize(), 14);
    QCOMPARE(sheet.scene.getDefaultFont(), font);
}

void TestRules::bulkChangesNeedASelection()
{
    Sheet sheet;
    Sticky *note = sheet.addNote(QRectF(100, 200, 120, 80));
    Line *line = sheet.addLine(QPointF(100, 400), QPointF(200, 400));
    const auto changeAll = [&sheet] {
        sheet.scene.setSelectedNotesAlignment(Qt::AlignRight);
        sheet.scene.setSelectedNotesProperty(Sticky::PROPERTY_NOT_RELEVANT, true);
        sheet.scene.setSelectedLinesProperty(ProjectItem::PROPERTY_LINE_WIDTH, 4);
        sheet.scene.setSelectedLinesArrowStyle(Line::ArrowAtEnd);
        sheet.scene.setSelectedLinesStyle(Qt::DashLine);
    };
    changeAll();
    QCOMPARE(sheet.getSteps(), 0);

    sheet.scene.selectAll();
    changeAll();
    QCOMPARE(sheet.getSteps(), 5);
    QCOMPARE(note->getRecord().textAlignment, Qt::Alignment(Qt::AlignRight));
    QVERIFY(note->isNotRelevant());
    QCOMPARE(line->getRecord().borderLineWidth, 4);
    QCOMPARE(line->getRecord().arrowStyle, 1);
    QCOMPARE(line->getRecord().lineStyle, int(Qt::DashLine));
}

void TestRules::contextMenuOnTheEmptySheet()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    sheet.program.menu.addAction("Paste");
    const QPoint point = sheet.view.mapFromScene(QPointF(400, 400));
    DialogAnswer answer([&sheet](QWidget *widget) {
        const bool isMenu = widget == &sheet.program.menu;
        widget->close();
        return isMenu;
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, point, sheet.view.mapToGlobal(point));
    QApplication::sendEvent(sheet.view.viewport(), &event);

    QVERIFY(answer.wasAsked());
    QCOMPARE(sheet.scene.getLastContextMenuPos(), QPointF(400, 400));

    // The landing place of a tool is no item.
    sheet.program.tool = EventTool;
    const QPoint other = sheet.view.mapFromScene(QPointF(500, 400));
    sheet.move(QPointF(500, 400), Qt::NoButton);
    DialogAnswer again(cancellation());
    QContextMenuEvent second(QContextMenuEvent::Mouse, other, sheet.view.mapToGlobal(other));
    QApplication::sendEvent(sheet.view.viewport(), &second);
    QVERIFY(again.wasAsked());
    QCOMPARE(sheet.scene.getLastContextMenuPos(), QPointF(500, 400));
}

EXAMINER_TEST_MAIN(TestRules)
#include "testrules.moc"
