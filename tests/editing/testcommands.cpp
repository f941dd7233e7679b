#include "editing/commands.h"

#include "chart/toolid.h"
#include "testing/sheet.h"

#include <QUndoStack>

/// Each command on items that differ: done, undone and done again.
class TestCommands : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        stack.clear();
        sheet.scene.clear();
        notes.clear();
        lines.clear();
        for (int i = 0; i < 3; ++i) {
            CanvasItemInfo note = noteInfo(QString("{note%1}").arg(i), QRectF(200 * i, 9, 120, 80));
            note.role = Role(QStringList{"Event", "Condition", "Transfer"}[i]);
            note.text = i == 1 ? "" : "old";
            note.textAlignment = Qt::Alignment(1 << i);
            note.font = QFont("Liberation Sans", 10 + i);
            note.textColor = note.backgroundColor = QColor(50 * i, 0, 0);
            note.borderLineWidth = i;
            note.customFont = note.notRelevant = i > 0;
            notes << qobject_cast<Sticky *>(sheet.add(note));
            CanvasItemInfo line;
            line.type = ConnectorTool;
            line.guid = QString("{line%1}").arg(i);
            line.startPoint = line.endPoint = QPointF(100, 400 + 50 * i);
            line.lineStyle = 1 + i;
            line.arrowStyle = i % 2;
            lines << qobject_cast<Line *>(sheet.add(line));
        }
        origin = describe(sheet.scene);
    }

    void eachStepGoesBothWays()
    {
        using Property = ItemPropertyChangeCommand;
        const QList<ProjectItem *> items = {notes[0], notes[1], notes[2]};
        // clang-format off
        check(new DeleteCommand(&sheet.scene, {notes[0], lines[0], notes[1]}), "delete 3 items", "{", 3);
        check(moveNotes(3, {-20, 0}), "move 3 items", "size 120,80", 3);
        check(moveNotes(1, {}, {20, -20}), "resize item", "size 140,60", 1);
        check(moveNotes(1, {-20, 20}, {20, -20}), "move 1 item", "at -20,29 to 120,89 size 140,60", 1);
        lines[0]->setStartPoint({9, 9});
        check(new LineEndCommand(lines[0], {{100, 400}, {100, 400}, {}, {}}), "move line end", "at 9,9", 1);
        check(new LineStyleChangeCommand(lines, Qt::DashDotLine), "change line style", "line 4 ", 3);
        check(new ArrowStyleChangeCommand(lines, Line::ArrowAtEnd), "change arrow style", "arrow 1 ", 3);
        check(new TextChangeCommand(notes[0], "old", "new"), "change text", "\"new\"", 1);
        check(new TextAlignmentChangeCommand(notes, Qt::AlignBottom), "change text alignment", "align 64 ", 3);
        check(new RoleChangeCommand(notes, "Starting_Event"), "change role to Starting Event", "Starting_Event", 3);
        check(new RoleChangeCommand({notes[1]}, "Transfer"), "change role to Transfer", "\"A\"", 1);
        check(new RoleChangeCommand(notes, "Loss"), "change role to Loss", "size 120,120", 3);
        check(new Property(items, "customFont", QFont("Serif", 7)), "change font", "Serif,7", 3);
        check(new Property(items, "customBackgroundColor", QColor("lime")), "change background color", "fill #00ff00", 3);
        check(new Property(items, "borderLineWidth", 7), "change line thickness", "border 7", 3);
        check(new Property(items, "notRelevant", true), "change relevancy", "not relevant", 3);
        // clang-format on
    }

    void wordsWrittenBesideTheStepsComeBack()
    {
        stack.push(new TextChangeCommand(notes[0], "old", "new"));
        notes[0]->setText("new, and the form's");
        stack.undo();
        notes[0]->setText("old, and the form's");
        stack.redo();
        QCOMPARE(notes[0]->getText(), "new, and the form's");
        stack.undo();
        QCOMPARE(notes[0]->getText(), "old, and the form's");
    }

    void itemsComeAndGo()
    {
        static int told = 0; // the toolkit warns of an item that stands there already
        const auto former = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &) { ++told; });
        stack.push(new AddCommand(lines[0], &sheet.scene));
        qInstallMessageHandler(former);
        QCOMPARE(told, 0);
        lines[0]->setSelected(true);
        stack.undo();
        QVERIFY(!lines[0]->scene());
        stack.redo();
        QVERIFY(lines[0]->scene() && !lines[0]->isSelected());

        // The notes are told of a deletion.
        notes[0]->setRoleType("Causal_Factor");
        lines[0]->setStartConnection({notes[0], Sticky::BottomSide});
        const QSignalSpy removed(notes[0], &Sticky::causalFactorRemoved);
        const QSignalSpy added(notes[0], &Sticky::causalFactorAdded);
        notes[0]->setSelected(true);
        stack.push(new DeleteCommand(&sheet.scene, {notes[0], notes[1]}));
        stack.undo();
        QVERIFY(removed.size() == 1 && added.size() == 1 && !notes[0]->isSelected());
        QVERIFY(!lines[0]->getStartConnection().item); // what the deletion freed stays free
    }

    void roleGivesBackOnlyWhatItTook()
    {
        stack.push(new RoleChangeCommand({notes[1]}, "Transfer"));
        notes[1]->setText("B"); // by a twin
        stack.undo();
        QCOMPARE(notes[1]->getText(), QString("B"));
        stack.push(new RoleChangeCommand({notes[0]}, "Condition"));
        notes[0]->setTextAlignment(Qt::AlignBottom); // by a twin
        stack.undo();
        QCOMPARE(notes[0]->getRecord().textAlignment, Qt::Alignment(Qt::AlignBottom));
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
        stack.push(step);
        const QString after = describe(sheet.scene);
        QVERIFY2(after.count(part) == times, qPrintable(text + '\n' + after));
        QCOMPARE(stack.undoText(), text);
        stack.undo();
        QVERIFY2(describe(sheet.scene) == origin, qPrintable(text + '\n' + describe(sheet.scene)));
        stack.redo();
        QVERIFY2(describe(sheet.scene) == after, qPrintable(text + '\n' + describe(sheet.scene)));
        stack.undo();
    }

    Sheet sheet;
    QUndoStack stack;
    QList<Sticky *> notes;
    QList<Line *> lines;
    QString origin;
};

EXAMINER_TEST_MAIN(TestCommands)
#include "testcommands.moc"
