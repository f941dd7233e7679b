#include "testing/rows.h"
#include "testing/window.h"

#include <QUndoGroup>

/// What a causal factor brings along. All tests share one window, emptied before each.
class TestFactors : public QObject
{
    Q_OBJECT

    /// The one note of the role on the factor's sheet; null unless there is exactly one.
    Sticky *find(const QString &role) const
    {
        QList<Sticky *> found;
        for (Sticky *note : tw->factorSheet()->getAllNotes()) {
            if (note->getRoleType() == role)
                found.append(note);
        }
        return found.size() == 1 ? found.first() : nullptr;
    }

    QString describeLine(const Line *line) const
    {
        const ConnectionInfo from = line->getStartConnection(), to = line->getEndConnection();
        return QString("%1 %2 %3 %4")
            .arg(from.item->getRoleType())
            .arg(from.side)
            .arg(to.item->getRoleType())
            .arg(to.side);
    }

    std::unique_ptr<TestWindow> tw;

private slots:
    void initTestCase() { tw = std::make_unique<TestWindow>(); }
    void init() { tw->empty(); }
    void cleanupTestCase() { tw.reset(); }

    void seedsStandInPlace()
    {
        const struct {
            const char *name;
            QSizeF factor, control, loss;
            QPointF controlAt, lossAt;
        } rows[] = {
            {"loss 40 narrower stands centred",
             {120, 80},
             {160, 80},
             {120, 120},
             {40, 200},
             {60, 360}},
            {"equal widths stand flush", {120, 80}, {120, 80}, {120, 120}, {40, 200}, {40, 360}},
            {"others stand flush", {160, 80}, {160, 100}, {80, 80}, {0, 200}, {0, 380}},
        };
        for (const auto &row : rows) {
            const Row in(row.name);
            tw->empty();
            tw->addNote("Loss", QPointF(800, 200), row.loss);
            tw->addNote("Loss_Of_Control", QPointF(500, 200), row.control);
            tw->makeFactor(tw->addNote("Event", QPointF(200, 400), row.factor));
            QCOMPARE(find("Causal_Factor")->getGeometry(), QRectF(QPointF(240, 200), row.factor));
            QCOMPARE(find("Loss_Of_Control")->getGeometry(), QRectF(row.controlAt, row.control));
            QCOMPARE(find("Loss")->getGeometry(), QRectF(row.lossAt, row.loss));
        }
        QStringList lines;
        for (ProjectItem *item : tw->factorSheet()->getProjectItems()) {
            if (auto *line = qobject_cast<Line *>(item))
                lines.append(describeLine(line));
        }
        lines.sort();
        QCOMPARE(lines,
                 QStringList({"Loss_Of_Control 3 Causal_Factor 1", "Loss_Of_Control 4 Loss 2"}));
        QCOMPARE(tw->factorSheet()->getUndoStack()->count(), 0); // no steps of the user's
    }

    void seedsFollowTheirNotesAndTheForm()
    {
        Sticky *loss = tw->addNote("Loss", QPointF(800, 200));
        Sticky *control = tw->addNote("Loss_Of_Control", QPointF(500, 200));
        Sticky *note = tw->addNote("Event", QPointF(200, 400));
        tw->makeFactor(note);
        for (Sticky *original : {loss, control, note}) {
            const Row in(qPrintable(original->getRoleType()));
            Sticky *twin = find(original->getRoleType());
            original->setText("down");
            QCOMPARE(twin->getText(), QString("down"));
            twin->setText("up");
            QCOMPARE(original->getText(), QString("up"));
        }
        QCOMPARE(tw->form->getFieldValue("causalFactor_text_1"), QString("up"));
        delete find("Loss"); // a twin that goes leaves its note's list
        QCOMPARE(loss->getSiblings(), QStringList());
    }

    void removalTakesAllAway()
    {
        Sticky *note = tw->addNote("Event", QPointF(200, 400));
        tw->makeFactor(note);
        tw->makeFactor(tw->addNote("Event", QPointF(400, 400)));
        const QPointer<ProjectScene> gone = tw->factorSheet();
        tw->tabs->setCurrentIndex(2);
        QTRY_COMPARE(tw->window.getCurrentScene(), gone.data());
        auto *group = tw->window.findChild<QUndoGroup *>();
        const int stacks = group->stacks().size();
        note->setRoleType("Event");
        QTRY_VERIFY(!gone);
        QCOMPARE(tw->tabTexts(), QStringList("Causal Factor 2"));
        QCOMPARE(group->stacks().size(), stacks - 1);
        QCOMPARE(tw->window.getCurrentScene(), tw->chart());
        QCOMPARE(tw->form->getFieldValue("causalFactor_text_1"), QString());
        QCOMPARE(note->getSiblings(), QStringList());
    }

    void removalEndsAnEditOnTheSheet()
    {
        Sticky *note = tw->addNote("Event", QPointF(200, 400));
        tw->makeFactor(note);
        const QPointer<ProjectScene> gone = tw->factorSheet();
        gone->onEditingStarted(find("Causal_Factor"));
        QVERIFY(!tw->action("Paste")->isEnabled());
        note->setRoleType("Event");
        QTRY_VERIFY(!gone);
        QVERIFY(tw->action("Paste")->isEnabled());
    }

    void undoneRoleTakesTheSheet()
    {
        Sticky *note = tw->addNote("Event", QPointF(200, 400));
        tw->makeFactor(note);
        tw->chart()->getUndoStack()->undo();
        QTRY_COMPARE(tw->tabs->count(), 2);
        tw->chart()->getUndoStack()->redo();
        QTRY_COMPARE(tw->tabTexts(), QStringList("Causal Factor 1"));
        tw->chart()->getUndoStack()->push(new DeleteCommand(tw->chart(), {note}));
        QTRY_COMPARE(tw->tabs->count(), 2);
        tw->chart()->getUndoStack()->undo();
        QTRY_COMPARE(tw->tabs->count(), 3);
        note->setCausalFactorNumber(7);
        tw->window.onCausalFactorChanged(note);
        QCOMPARE(tw->tabTexts(), QStringList("Causal Factor 7"));
    }

    /// Not seeded: only what the file holds stands there, and the box.
    void loadedItemsFindTheirSheets()
    {
        CanvasItemInfo info;
        info.type = NoteItemType;
        info.role = Role("Causal_Factor");
        info.causalFactorNumber = 12;
        info.guid = "{factor}";
        tw->window.onCanvasItemLoaded(info);
        QCOMPARE(tw->tabTexts(), QStringList("Causal Factor 12"));
        info.role = Role("Event");
        for (const char *owner : {"{factor}", "{nowhere}"}) {
            info.parent = owner;
            info.guid = QString("{child of %1}").arg(owner);
            tw->window.onCanvasItemLoaded(info);
        }
        QVERIFY(tw->factorSheet()->getItemWithGUID("{child of {factor}}"));
        QCOMPARE(tw->factorSheet()->getProjectItems().size(), 1);
        QVERIFY(tw->chart()->getItemWithGUID("{child of {nowhere}}"));
        const QList<QGraphicsItem *> items = tw->factorSheet()->items(QPointF(110, 30));
        QVERIFY(std::any_of(items.begin(), items.end(),
                            [](auto *item) { return item->type() == ProjectItem::InfoType; }));
    }
};

EXAMINER_TEST_MAIN(TestFactors)
#include "testfactors.moc"
