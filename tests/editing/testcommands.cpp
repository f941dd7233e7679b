#include "editing/commands.h"

#include "chart/svgpicture.h"
#include "chart/toolid.h"
#include "testing/fakes.h"
#include "testing/records.h"
#include "testing/testmain.h"

#include <QSignalSpy>
#include <QUndoStack>

/// Each command on items that differ: done, undone and done again.
class TestCommands : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        host = std::make_unique<FakeHost>();
        sheet = std::make_unique<FakeSheet>(host.get());
        stack = std::make_unique<QUndoStack>();
        notes.clear();
        lines.clear();
        for (int i = 0; i < 3; ++i) {
            CanvasItemInfo note = noteInfo(QString("{note%1}").arg(i), QRectF(200 * i, 9, 120, 80));
            note.role = Role(QStringList{"Event", "Condition", "Sequence_Marker"}[i]);
            note.text = "old";
            note.textAlignment = Qt::Alignment(1 << i);
            note.customFont = i > 0;
            note.font = QFont("Liberation Sans", 10 + i);
            note.textColor = note.backgroundColor = QColor(50 * i, 0, 0);
            note.borderLineWidth = i;
            note.notRelevant = i == 1;
            notes << sheet->addNote(note);
            CanvasItemInfo line;
            line.type = ConnectorTool;
            line.guid = QString("{line%1}").arg(i);
            line.startPoint = line.endPoint = QPointF(100, 400 + 50 * i);
            line.lineStyle = 1 + i;
            line.arrowStyle = i % 2;
            lines << new Line(sheet.get(), line);
            sheet->addItem(lines.last());
        }
        origin = describe(*sheet);
    }

    void cleanup()
    {
        stack.reset();
        sheet.reset();
        host.reset();
    }

    void eachStepGoesBothWays()
    {
        using Property = ItemPropertyChangeCommand;
        const QList<ProjectItem *> items = {notes[0], notes[1], notes[2]};
        // clang-format off
        check(new DeleteCommand(sheet.get(), {lines[0]}), "delete 1 item", "{line", 2);
        check(new DeleteCommand(sheet.get(), {notes[0], lines[0], notes[1]}), "delete 3 items", "{", 3);
        check(moveNotes(1, {40, -20}), "move 1 item", "at 40,-11 ", 1);
        check(moveNotes(3, {-20, 0}), "move 3 items", "size 120,80", 3);
        check(moveNotes(1, {}, {20, -20}), "resize item", "size 140,60", 1);
        check(moveNotes(1, {-20, 20}, {20, -20}), "move 1 item", "at -20,29 to 120,89 size 140,60", 1);
        lines[0]->setStartPoint({9, 9});
        check(new LineEndCommand(lines[0], {{100, 400}, {100, 400}, {}, {}}), "move line end", "at 9,9", 1);
        check(new LineStyleChangeCommand(lines, Qt::DashDotLine), "change line style", "line 4 ", 3);
        check(new ArrowStyleChangeCommand(lines, Line::ArrowAtEnd), "change arrow style", "arrow 1 ", 3);
        check(new TextChangeCommand(notes[0], "old", "new"), "change text", "\"new\"", 1);
        check(new TextAlignmentChangeCommand(notes, Qt::AlignBottom), "change text alignment", "align 64 ", 3);
        check(new RoleChangeCommand({notes[0]}, "Loss_Of_Control"), "change role to Loss Of Control", "lossOfControl", 1);
        check(new RoleChangeCommand(notes, "Starting_Event"), "change role to Starting Event", "Starting_Event", 3);
        check(new RoleChangeCommand(notes, "Loss"), "change role to Loss", "size 120,120", 3);
        check(new Property(items, "customFont", QFont("Serif", 7)), "change font", "Serif,7", 3);
        check(new Property(items, "textColor", QColor("lime")), "change text color", "text #00ff00", 3);
        check(new Property(items, "customBackgroundColor", QColor("lime")), "change background color", "fill #00ff00", 3);
        check(new Property(items, "borderLineWidth", 7), "change line thickness", "border 7", 3);
        check(new Property(items, "notRelevant", true), "change relevancy", "not relevant", 3);
        // clang-format on
    }

    void addedItemComesAndGoes()
    {
        CanvasItemInfo info = noteInfo("{new}", QRectF(0, 0, 80, 60));
        const auto note = std::make_unique<Sticky>(sheet.get(), info);
        stack->push(new AddCommand(note.get(), sheet.get()));
        QCOMPARE(stack->undoText(), QString("add an item"));
        QCOMPARE(note->scene(), sheet.get());
        note->setSelected(true);
        const QSignalSpy selection(note.get(), &Sticky::selectionChanged);
        stack->undo();
        QVERIFY(!note->scene());
        QCOMPARE(selection.size(), 1); // it counts as selected no more
        stack->redo();
        QVERIFY(note->scene() && !note->isSelected());
        stack->undo();
        stack->clear();
        QCOMPARE(note->getText(), QString()); // the step gone, it still lives

        static int warnings = 0; // the toolkit's, about an item that stands there already
        const auto former =
            qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &) {
                warnings += type == QtWarningMsg;
            });
        stack->push(new AddCommand(lines[0], sheet.get()));
        qInstallMessageHandler(former);
        QCOMPARE(warnings, 0);
    }

    void deletionTellsTheNotes()
    {
        Sticky *factor =
            sheet->addNote(noteInfo("{cf}", QRectF(0, 0, 80, 60), "", "Causal_Factor"));
        lines[0]->setStartConnection({factor, Sticky::BottomSide});
        const QSignalSpy removed(factor, &Sticky::causalFactorRemoved);
        const QSignalSpy added(factor, &Sticky::causalFactorAdded);
        factor->setSelected(true);
        stack->push(new DeleteCommand(sheet.get(), {factor, notes[0]}));
        QCOMPARE(QList<int>({removed.size(), added.size()}), QList<int>({1, 0}));
        stack->undo();
        QCOMPARE(QList<int>({removed.size(), added.size()}), QList<int>({1, 1}));
        QVERIFY(!factor->isSelected());
        QVERIFY(!lines[0]->getStartConnection().item); // what the deletion freed stays free
    }

    void roleGivesBackOnlyWhatItTook()
    {
        notes[0]->setText(QString());
        const QString before = describe(notes[0]);
        stack->push(new RoleChangeCommand({notes[0]}, "Transfer"));
        QCOMPARE(notes[0]->getText(), QString("A"));
        stack->undo();
        QCOMPARE(describe(notes[0]), before);
        stack->redo();
        notes[0]->setText("B"); // by a twin
        stack->undo();
        QCOMPARE(notes[0]->getText(), QString("B"));

        notes[1]->setRoleType("Transfer");
        notes[1]->setTextAlignment(Qt::AlignLeft);
        const QString transfer = describe(notes[1]);
        stack->push(new RoleChangeCommand({notes[1]}, "Event"));
        stack->undo();
        QCOMPARE(describe(notes[1]), transfer);

        stack->push(new RoleChangeCommand({notes[2]}, "Event"));
        notes[2]->setTextAlignment(Qt::AlignBottom); // by a twin
        stack->undo();
        QCOMPARE(notes[2]->getRecord().textAlignment, Qt::Alignment(Qt::AlignBottom));
    }

private:
    QUndoCommand *moveNotes(int count, const QPointF &by, const QSizeF &grown = QSizeF(0, 0))
    {
        QList<BoxItem *> boxes;
        for (Sticky *note : notes.mid(0, count)) {
            note->setPos(note->pos() + by);
            note->setSize(note->getRect().size() + grown);
            boxes << note;
        }
        return new GeometryChangeCommand(boxes, by, grown);
    }

    /// The step leads from what stood there at first to a sheet with the part so often.
    void check(QUndoCommand *step, const QString &text, const char *part, int times)
    {
        stack->push(step);
        const QString after = describe(*sheet);
        QVERIFY2(after.count(part) == times, qPrintable(text + '\n' + after));
        QCOMPARE(stack->undoText(), text);
        stack->undo();
        QVERIFY2(describe(*sheet) == origin, qPrintable(text + '\n' + describe(*sheet)));
        stack->redo();
        QVERIFY2(describe(*sheet) == after, qPrintable(text + '\n' + describe(*sheet)));
        stack->undo();
    }

    std::unique_ptr<FakeHost> host;
    std::unique_ptr<FakeSheet> sheet;
    std::unique_ptr<QUndoStack> stack;
    QList<Sticky *> notes;
    QList<Line *> lines;
    QString origin;
};

EXAMINER_TEST_MAIN(TestCommands)
#include "testcommands.moc"
