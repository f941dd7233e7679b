#include "sheet/infoitem.h"
#include "shell/graphwidget.h"
#include "testing/window.h"

#include <QUndoGroup>

/// What a causal factor brings along. All tests share one window, emptied before each.
class TestCausalFactors : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();
    void loneFactor();
    void seedsStandInPlace_data();
    void seedsStandInPlace();
    void seedsAreConnected();
    void seedsFollowTheirNotes();
    void factorHasARow();
    void removalTakesAllAway();
    void removalOfTheSheetOnShow();
    void removalEndsAnEditOnTheSheet();
    void undoneRoleTakesTheSheet();
    void changedNumberRenamesTheTab();
    void loadedFactorHasItsBoxFirst();
    void loadedItemOfAnUnknownSheet();

private:
    ProjectScene *sheet() const { return tw->window.getFactorScenes().value(0); }
    Sticky *find(const QString &role) const;

    std::unique_ptr<TestWindow> tw;
};

void TestCausalFactors::initTestCase()
{
    tw = std::make_unique<TestWindow>();
}

void TestCausalFactors::init()
{
    tw->empty();
}

void TestCausalFactors::cleanupTestCase()
{
    tw.reset();
}

/// The one note of the role on the factor's sheet; null unless there is exactly one.
Sticky *TestCausalFactors::find(const QString &role) const
{
    QList<Sticky *> found;
    for (Sticky *note : sheet()->getAllNotes()) {
        if (note->getRoleType() == role)
            found.append(note);
    }
    return found.size() == 1 ? found.first() : nullptr;
}

void TestCausalFactors::loneFactor()
{
    tw->addNote("Loss", QPointF(800, 200));
    Sticky *note = tw->addNote("Event", QPointF(200, 400));
    tw->makeFactor(note);

    QCOMPARE(tw->tabTexts().mid(2), QStringList("Causal Factor 1"));
    QCOMPARE(sheet()->getParentNote(), note);
    QCOMPARE(sheet()->getProjectItems().size(), 1);
    QCOMPARE(find("Causal_Factor")->pos(), QPointF(240, 200));
    QVERIFY(find("Causal_Factor")->getGUID() != note->getGUID());
}

void TestCausalFactors::seedsStandInPlace_data()
{
    QTest::addColumn<QSizeF>("factorSize");
    QTest::addColumn<QSizeF>("controlSize");
    QTest::addColumn<QSizeF>("lossSize");
    QTest::addColumn<QPointF>("control");
    QTest::addColumn<QPointF>("loss");

    QTest::newRow("loss 40 narrower stands centred")
        << QSizeF(120, 80) << QSizeF(160, 80) << QSizeF(120, 120) << QPointF(40, 200)
        << QPointF(60, 360);
    QTest::newRow("equal widths stand flush")
        << QSizeF(120, 80) << QSizeF(120, 80) << QSizeF(120, 120) << QPointF(40, 200)
        << QPointF(40, 360);
    QTest::newRow("other differences stand flush")
        << QSizeF(160, 80) << QSizeF(160, 100) << QSizeF(80, 80) << QPointF(0, 200)
        << QPointF(0, 380);
}

void TestCausalFactors::seedsStandInPlace()
{
    QFETCH(QSizeF, factorSize);
    QFETCH(QSizeF, controlSize);
    QFETCH(QSizeF, lossSize);
    tw->addNote("Loss", QPointF(800, 200), lossSize);
    tw->addNote("Loss_Of_Control", QPointF(500, 200), controlSize);
    tw->makeFactor(tw->addNote("Event", QPointF(200, 400), factorSize));

    QCOMPARE(find("Causal_Factor")->getGeometry(), QRectF(QPointF(240, 200), factorSize));
    QTEST(find("Loss_Of_Control")->pos(), "control");
    QTEST(find("Loss")->pos(), "loss");
    QCOMPARE(find("Loss")->getRect().size(), lossSize);
}

void TestCausalFactors::seedsAreConnected()
{
    tw->addNote("Loss", QPointF(800, 200));
    tw->addNote("Loss_Of_Control", QPointF(500, 200));
    tw->makeFactor(tw->addNote("Event", QPointF(200, 400)));
    QSet<QPair<Sticky *, Sticky *>> connections;
    for (ProjectItem *item : sheet()->getProjectItems()) {
        if (auto *line = qobject_cast<Line *>(item)) {
            QCOMPARE(line->getRecord().type, int(ConnectorTool));
            connections.insert({line->getStartConnection().item, line->getEndConnection().item});
            const bool down = line->getEndConnection().item == find("Loss");
            QCOMPARE(line->getStartConnection().side,
                     down ? Sticky::BottomSide : Sticky::RightSide);
            QCOMPARE(line->getEndConnection().side, down ? Sticky::TopSide : Sticky::LeftSide);
        }
    }
    const QSet<QPair<Sticky *, Sticky *>> expected = {
        {find("Loss_Of_Control"), find("Causal_Factor")}, {find("Loss_Of_Control"), find("Loss")}};
    QCOMPARE(connections, expected);
    // Seeds are no steps of the user's.
    QCOMPARE(sheet()->getUndoStack()->count(), 0);
}

void TestCausalFactors::seedsFollowTheirNotes()
{
    Sticky *loss = tw->addNote("Loss", QPointF(800, 200));
    Sticky *control = tw->addNote("Loss_Of_Control", QPointF(500, 200));
    Sticky *note = tw->addNote("Event", QPointF(200, 400));
    tw->makeFactor(note);

    const QList<QPair<Sticky *, QString>> pairs = {
        {loss, "Loss"}, {control, "Loss_Of_Control"}, {note, "Causal_Factor"}};
    for (const auto &pair : pairs) {
        Sticky *clone = find(pair.second);
        QVERIFY(pair.first->getSiblings().contains(clone->getGUID()));
        QVERIFY(clone->getSiblings().contains(pair.first->getGUID()));
        pair.first->setText("down to " + pair.second);
        QCOMPARE(clone->getText(), "down to " + pair.second);
        clone->setText("up from " + pair.second);
        QCOMPARE(pair.first->getText(), "up from " + pair.second);
    }
    // A clone that goes leaves its note's list.
    delete find("Loss");
    QCOMPARE(loss->getSiblings(), QStringList());
}

void TestCausalFactors::factorHasARow()
{
    Sticky *note = tw->addNote("Event", QPointF(200, 400));
    note->setText("The valve stuck");
    tw->makeFactor(note);

    QVERIFY(note->getSiblings().contains("causalFactor_text_1"));
    QCOMPARE(tw->form->getFieldValue("causalFactor_text_1"), QString("The valve stuck"));
    note->setText("The valve froze");
    QCOMPARE(tw->form->getFieldValue("causalFactor_text_1"), QString("The valve froze"));
    // The clone took its list before the row was there.
    QVERIFY(!find("Causal_Factor")->getSiblings().contains("causalFactor_text_1"));
}

void TestCausalFactors::removalTakesAllAway()
{
    Sticky *note = tw->addNote("Event", QPointF(200, 400));
    tw->makeFactor(note);
    tw->makeFactor(tw->addNote("Event", QPointF(400, 400)));
    QPointer<ProjectScene> gone = sheet();
    auto *group = tw->window.findChild<QUndoGroup *>();
    const int stacks = group->stacks().size();

    note->setRoleType("Event");
    QTRY_VERIFY(!gone);
    QCOMPARE(tw->tabTexts().mid(2), QStringList("Causal Factor 2"));
    QCOMPARE(group->stacks().size(), stacks - 1);
    QCOMPARE(tw->form->getFieldValue("causalFactor_text_1"), QString());
    QCOMPARE(note->getSiblings(), QStringList());
}

void TestCausalFactors::removalOfTheSheetOnShow()
{
    Sticky *note = tw->addNote("Event", QPointF(200, 400));
    tw->makeFactor(note);
    tw->tabs->setCurrentIndex(2);
    QTRY_COMPARE(tw->window.getCurrentScene(), sheet());
    note->setRoleType("Event");
    QTRY_COMPARE(tw->tabs->count(), 2);
    QCOMPARE(tw->window.getCurrentScene(), tw->chart());
    tw->action("Paste")->trigger();
    QVERIFY(tw->chart()->getProjectItems().contains(note));
}

void TestCausalFactors::removalEndsAnEditOnTheSheet()
{
    Sticky *note = tw->addNote("Event", QPointF(200, 400));
    tw->makeFactor(note);
    QPointer<ProjectScene> gone = sheet();
    gone->onEditingStarted(find("Causal_Factor"));
    QVERIFY(!tw->action("Paste")->isEnabled());
    note->setRoleType("Event");
    QTRY_VERIFY(!gone);
    QVERIFY(tw->action("Paste")->isEnabled());
}

void TestCausalFactors::undoneRoleTakesTheSheet()
{
    Sticky *note = tw->addNote("Event", QPointF(200, 400));
    tw->makeFactor(note);
    tw->chart()->getUndoStack()->undo();
    QTRY_COMPARE(tw->tabs->count(), 2);
    tw->chart()->getUndoStack()->redo();
    QTRY_COMPARE(tw->tabTexts().mid(2), QStringList("Causal Factor 1"));
    note->setSelected(true);
    tw->chart()->getUndoStack()->push(new DeleteCommand(tw->chart(), {note}));
    QTRY_COMPARE(tw->tabs->count(), 2);
    tw->chart()->getUndoStack()->undo();
    QTRY_COMPARE(tw->tabs->count(), 3);
}

void TestCausalFactors::changedNumberRenamesTheTab()
{
    Sticky *note = tw->addNote("Event", QPointF(200, 400));
    tw->makeFactor(note);
    note->setCausalFactorNumber(7);
    tw->window.onCausalFactorChanged(note);
    QCOMPARE(tw->tabTexts().mid(2), QStringList("Causal Factor 7"));
    tw->window.onCausalFactorChanged(tw->addNote("Event", QPointF(600, 400)));
    QCOMPARE(tw->tabTexts().mid(2), QStringList("Causal Factor 7"));
}

void TestCausalFactors::loadedFactorHasItsBoxFirst()
{
    CanvasItemInfo info;
    info.type = NoteItemType;
    info.role = Role("Causal_Factor");
    info.causalFactorNumber = 12;
    info.guid = "{factor}";
    info.size = QSizeF(120, 80);
    tw->window.onCanvasItemLoaded(info);
    QCOMPARE(tw->tabTexts().mid(2), QStringList("Causal Factor 12"));

    CanvasItemInfo child;
    child.type = NoteItemType;
    child.guid = "{child}";
    child.parent = "{factor}";
    tw->window.onCanvasItemLoaded(child);
    QVERIFY(sheet()->getItemWithGUID("{child}"));
    QVERIFY(!tw->chart()->getItemWithGUID("{child}"));

    QList<QPointF> boxes;
    for (QGraphicsItem *item : sheet()->items()) {
        if (item->type() == ProjectItem::InfoType)
            boxes.append(item->pos());
    }
    QCOMPARE(boxes, QList<QPointF>({QPointF(100, 20)}));
    // Not seeded: only what the file holds stands there.
    QCOMPARE(sheet()->getProjectItems().size(), 1);
}

void TestCausalFactors::loadedItemOfAnUnknownSheet()
{
    CanvasItemInfo info;
    info.type = NoteItemType;
    info.guid = "{orphan}";
    info.parent = "{nowhere}";
    tw->window.onCanvasItemLoaded(info);
    QVERIFY(tw->chart()->getItemWithGUID("{orphan}"));
}

EXAMINER_TEST_MAIN(TestCausalFactors)
#include "testcausalfactors.moc"
