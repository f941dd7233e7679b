#include "editing/commands.h"

#include "chart/svgpicture.h"
#include "chart/toolid.h"
#include "testing/fakes.h"
#include "testing/testmain.h"

#include <QSignalSpy>
#include <QUndoStack>

/// Each command on one item and on several: done, undone and done again.
class TestCommands : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void add();
    void addWhatStandsThere();
    void deleteItems_data();
    void deleteItems();
    void deleteTellsOfTheNotes();
    void deletedNoteLosesItsLines();
    void geometry_data();
    void geometry();
    void movesStaySingleSteps();
    void lineStyle_data() { counts(); }
    void lineStyle();
    void arrowStyle_data() { counts(); }
    void arrowStyle();
    void text();
    void textAlignment_data() { counts(); }
    void textAlignment();
    void role_data();
    void role();
    void transferGivesBackWhatItTook();
    void transferComesBackAsItWas();
    void property_data();
    void property();

private:
    static void counts();
    template<typename Item> QList<Item *> first(const QList<Item *> &items, int count) const
    {
        return items.mid(0, count);
    }
    Line *addLine(int index);

    std::unique_ptr<FakeHost> host;
    std::unique_ptr<FakeSheet> sheet;
    std::unique_ptr<QUndoStack> stack;
    QList<Sticky *> notes;
    QList<Line *> lines;
};

void TestCommands::init()
{
    host = std::make_unique<FakeHost>();
    sheet = std::make_unique<FakeSheet>(host.get());
    stack = std::make_unique<QUndoStack>();
    notes.clear();
    lines.clear();
    const QStringList roles = {"Event", "Condition", "Sequence_Marker"};
    for (int i = 0; i < 3; ++i) {
        notes << sheet->addNote(noteInfo(QString("{note%1}").arg(i),
                                         QRectF(100 + 200 * i, 100, 120, 80), "text", roles.at(i)));
        lines << addLine(i);
    }
}

void TestCommands::cleanup()
{
    stack.reset();
    sheet.reset();
    host.reset();
}

Line *TestCommands::addLine(int index)
{
    CanvasItemInfo info;
    info.type = ConnectorTool;
    info.guid = QString("{line%1}").arg(index);
    info.startPoint = QPointF(100, 400 + 50 * index);
    info.endPoint = QPointF(300, 420 + 50 * index);
    info.lineStyle = 1 + index; // solid, dashed, dotted
    info.arrowStyle = index % 2;
    auto *line = new Line(sheet.get(), info);
    sheet->addItem(line);
    return line;
}

void TestCommands::counts()
{
    QTest::addColumn<int>("count");
    QTest::newRow("one") << 1;
    QTest::newRow("three") << 3;
}

void TestCommands::add()
{
    CanvasItemInfo info = noteInfo("{new}", QRectF(0, 0, 80, 60));
    const auto note = std::make_unique<Sticky>(sheet.get(), info);
    stack->push(new AddCommand(note.get(), sheet.get()));
    QCOMPARE(stack->undoText(), QString("add an item"));
    QCOMPARE(note->scene(), sheet.get());
    stack->undo();
    QVERIFY(!note->scene());
    stack->redo();
    QCOMPARE(note->scene(), sheet.get());

    // The step gone, the note is still there for whoever knows it.
    stack->undo();
    stack->clear();
    QCOMPARE(note->getText(), QString());
}

void TestCommands::addWhatStandsThere()
{
    stack->push(new AddCommand(lines.first(), sheet.get()));
    QCOMPARE(lines.first()->scene(), sheet.get());
    stack->undo();
    QVERIFY(!lines.first()->scene());
    stack->redo();
    QCOMPARE(lines.first()->scene(), sheet.get());
}

void TestCommands::deleteItems_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("text");

    QTest::newRow("one") << 1 << "delete 1 item";
    QTest::newRow("three") << 3 << "delete 3 items";
}

void TestCommands::deleteItems()
{
    QFETCH(int, count);
    QFETCH(QString, text);

    CanvasItemInfo info;
    info.type = NewBarrierTool;
    auto *barrier = new SVGPicture(":/images/newBarrier.svg", sheet.get(), info);
    sheet->addItem(barrier);
    const QList<QGraphicsItem *> items =
        first(QList<QGraphicsItem *>{notes.first(), lines.first(), barrier}, count);
    for (QGraphicsItem *item : items)
        item->setSelected(true);

    stack->push(new DeleteCommand(sheet.get(), items));
    QCOMPARE(stack->undoText(), text);
    for (int round = 0; round < 2; ++round) {
        for (QGraphicsItem *item : items) {
            QVERIFY(!item->scene());
            QVERIFY(!item->isSelected());
        }
        stack->undo();
        for (QGraphicsItem *item : items)
            QCOMPARE(item->scene(), sheet.get());
        stack->redo();
    }
    stack->undo();
}

void TestCommands::deleteTellsOfTheNotes()
{
    Sticky *factor = sheet->addNote(noteInfo("{cf}", QRectF(0, 0, 80, 60), "why", "Causal_Factor"));
    QSignalSpy deleted(factor, &Sticky::deleted);
    QSignalSpy removed(factor, &Sticky::causalFactorRemoved);
    QSignalSpy added(factor, &Sticky::causalFactorAdded);
    QSignalSpy eventRemoved(notes.first(), &Sticky::causalFactorRemoved);

    stack->push(new DeleteCommand(sheet.get(), {factor, notes.first()}));
    QCOMPARE(deleted.size(), 1);
    QCOMPARE(removed.size(), 1);
    QCOMPARE(added.size(), 0);
    stack->undo();
    QCOMPARE(added.size(), 1);
    QCOMPARE(removed.size(), 1);
    QCOMPARE(eventRemoved.size(), 0);
}

void TestCommands::deletedNoteLosesItsLines()
{
    lines.first()->setStartConnection({notes.first(), Sticky::BottomSide});
    stack->push(new DeleteCommand(sheet.get(), {notes.first()}));
    QVERIFY(!lines.first()->getStartConnection().item);
    QCOMPARE(lines.first()->scene(), sheet.get());
    stack->undo();
    QCOMPARE(notes.first()->scene(), sheet.get());
    QVERIFY(!lines.first()->getStartConnection().item);
}

void TestCommands::geometry_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QPointF>("moveDelta");
    QTest::addColumn<QSizeF>("sizeDelta");
    QTest::addColumn<QString>("text");

    QTest::newRow("move one") << 1 << QPointF(40, -20) << QSizeF(0, 0) << "move 1 item";
    QTest::newRow("move three") << 3 << QPointF(40, -20) << QSizeF(0, 0) << "move 3 items";
    QTest::newRow("by an arrow key") << 3 << QPointF(-20, 0) << QSizeF(0, 0) << "move 3 items";
    QTest::newRow("resize") << 1 << QPointF(0, 0) << QSizeF(20, -20) << "resize item";
    QTest::newRow("resize three") << 3 << QPointF(0, 0) << QSizeF(20, -20) << "resize item";
    QTest::newRow("from the top left") << 1 << QPointF(-20, 20) << QSizeF(20, -20) << "move 1 item";
}

void TestCommands::geometry()
{
    QFETCH(int, count);
    QFETCH(QPointF, moveDelta);
    QFETCH(QSizeF, sizeDelta);
    QFETCH(QString, text);

    QList<BoxItem *> boxes;
    QList<QRectF> before;
    QList<QRectF> after;
    for (Sticky *note : first(notes, count)) {
        boxes << note;
        before << note->getGeometry();
        note->setPos(note->pos() + moveDelta);
        note->setSize(note->getRect().size() + sizeDelta);
        after << note->getGeometry();
    }
    const auto geometries = [&boxes] {
        QList<QRectF> all;
        for (BoxItem *box : boxes)
            all << box->getGeometry();
        return all;
    };

    stack->push(new GeometryChangeCommand(boxes, moveDelta, sizeDelta));
    QCOMPARE(stack->undoText(), text);
    QCOMPARE(geometries(), after);
    stack->undo();
    QCOMPARE(geometries(), before);
    stack->redo();
    QCOMPARE(geometries(), after);
}

void TestCommands::movesStaySingleSteps()
{
    BoxItem *note = notes.first();
    for (int i = 0; i < 2; ++i) {
        note->setPos(note->pos() + QPointF(20, 0));
        stack->push(new GeometryChangeCommand({note}, QPointF(20, 0), QSizeF(0, 0)));
    }
    QCOMPARE(stack->count(), 2);
    stack->undo();
    QCOMPARE(note->pos(), QPointF(120, 100));
}

void TestCommands::lineStyle()
{
    QFETCH(int, count);

    const auto styles = [this] {
        QList<int> all;
        for (Line *line : qAsConst(lines))
            all << line->getRecord().lineStyle;
        return all;
    };
    const QList<int> before = styles();
    QList<int> after = before;
    for (int i = 0; i < count; ++i)
        after[i] = Qt::DashLine;

    stack->push(new LineStyleChangeCommand(first(lines, count), Qt::DashLine));
    QCOMPARE(stack->undoText(), QString("change line style"));
    QCOMPARE(styles(), after);
    stack->undo();
    QCOMPARE(styles(), before);
    stack->redo();
    QCOMPARE(styles(), after);
}

void TestCommands::arrowStyle()
{
    QFETCH(int, count);

    const auto styles = [this] {
        QList<int> all;
        for (Line *line : qAsConst(lines))
            all << line->getRecord().arrowStyle;
        return all;
    };
    QList<int> after = {0, 1, 0};
    for (int i = 0; i < count; ++i)
        after[i] = Line::ArrowAtEnd;

    stack->push(new ArrowStyleChangeCommand(first(lines, count), Line::ArrowAtEnd));
    QCOMPARE(stack->undoText(), QString("change arrow style"));
    QCOMPARE(styles(), after);
    stack->undo();
    QCOMPARE(styles(), QList<int>({0, 1, 0}));
    stack->redo();
    QCOMPARE(styles(), after);
}

void TestCommands::text()
{
    Sticky *note = notes.first();
    note->setText("after");
    stack->push(new TextChangeCommand(note, "before", "after"));
    QCOMPARE(stack->undoText(), QString("change text"));
    QCOMPARE(note->getText(), QString("after"));
    stack->undo();
    QCOMPARE(note->getText(), QString("before"));
    stack->redo();
    QCOMPARE(note->getText(), QString("after"));
}

void TestCommands::textAlignment()
{
    QFETCH(int, count);

    notes.at(0)->setTextAlignment(Qt::AlignRight);
    notes.at(1)->setTextAlignment(Qt::AlignJustify | Qt::AlignVCenter);
    const auto alignments = [this] {
        QList<Qt::Alignment> all;
        for (Sticky *note : qAsConst(notes))
            all << note->getRecord().textAlignment;
        return all;
    };
    const QList<Qt::Alignment> before = alignments();
    QList<Qt::Alignment> after = before;
    for (int i = 0; i < count; ++i)
        after[i] = Qt::AlignLeft;

    stack->push(new TextAlignmentChangeCommand(first(notes, count), Qt::AlignLeft));
    QCOMPARE(stack->undoText(), QString("change text alignment"));
    QCOMPARE(alignments(), after);
    stack->undo();
    QCOMPARE(alignments(), before);
    stack->redo();
    QCOMPARE(alignments(), after);
}

void TestCommands::role_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("role");
    QTest::addColumn<QString>("text");

    QTest::newRow("one") << 1 << "Loss_Of_Control"
                         << "change role to Loss Of Control";
    QTest::newRow("three of different roles") << 3 << "Starting_Event"
                                              << "change role to Starting Event";
    QTest::newRow("a square one") << 1 << "Loss"
                                  << "change role to Loss";
}

void TestCommands::role()
{
    QFETCH(int, count);
    QFETCH(QString, role);
    QFETCH(QString, text);

    const auto state = [this] {
        QStringList all;
        for (Sticky *note : qAsConst(notes)) {
            all << note->getRoleType() << note->getSiblings()
                << QString::number(note->getRect().height());
        }
        return all;
    };
    const QStringList before = state();
    stack->push(new RoleChangeCommand(first(notes, count), role));
    QCOMPARE(stack->undoText(), text);
    const QStringList after = state();
    QVERIFY(after != before);
    for (Sticky *note : first(notes, count))
        QCOMPARE(note->getRoleType(), role);

    stack->undo();
    QCOMPARE(state(), before);
    stack->redo();
    QCOMPARE(state(), after);
}

void TestCommands::transferGivesBackWhatItTook()
{
    Sticky *note = notes.first();
    note->setText(QString());
    note->setTextAlignment(Qt::AlignLeft);
    stack->push(new RoleChangeCommand({note}, "Transfer"));
    QCOMPARE(note->getText(), QString("A"));
    QCOMPARE(note->getRect().size(), QSizeF(120, 120));
    stack->undo();
    QCOMPARE(note->getText(), QString());
    QCOMPARE(note->getRect().size(), QSizeF(120, 80));
    QCOMPARE(note->getRecord().textAlignment, Qt::Alignment(Qt::AlignLeft));

    // What came from elsewhere in the meantime stays.
    stack->redo();
    note->setText("B");
    stack->undo();
    QCOMPARE(note->getText(), QString("B"));
}

void TestCommands::transferComesBackAsItWas()
{
    Sticky *note = notes.first();
    note->setRoleType("Transfer");
    note->setText(QString());
    note->setTextAlignment(Qt::AlignLeft);
    stack->push(new RoleChangeCommand({note}, "Event"));
    stack->undo();
    QCOMPARE(note->getText(), QString());
    QCOMPARE(note->getRecord().textAlignment, Qt::Alignment(Qt::AlignLeft));
}

void TestCommands::property_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariantList>("before"); // of the three notes
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");

    const QFont small("Liberation Sans", 7);
    const QFont large("Liberation Sans", 20);
    QTest::newRow("font") << Sticky::PROPERTY_CUSTOM_FONT << QVariantList{small, small, large}
                          << QVariant(QFont("Liberation Serif", 11)) << "change font";
    QTest::newRow("text color") << Sticky::PROPERTY_TEXT_COLOR
                                << QVariantList{QColor(Qt::red), QColor(), QColor(Qt::blue)}
                                << QVariant(QColor(Qt::green)) << "change text color";
    QTest::newRow("background") << ProjectItem::PROPERTY_BACKGROUND_COLOR
                                << QVariantList{QColor(), QColor(Qt::red), QColor(Qt::blue)}
                                << QVariant(QColor(Qt::green)) << "change background color";
    QTest::newRow("width") << ProjectItem::PROPERTY_LINE_WIDTH << QVariantList{0, 4, 20}
                           << QVariant(7) << "change line thickness";
    QTest::newRow("relevance") << Sticky::PROPERTY_NOT_RELEVANT << QVariantList{false, true, false}
                               << QVariant(true) << "change relevancy";
}

void TestCommands::property()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariantList, before);
    QFETCH(QVariant, value);
    QFETCH(QString, text);

    QList<ProjectItem *> items;
    for (int i = 0; i < 3; ++i) {
        notes.at(i)->setProperty(property, before.at(i));
        items << notes.at(i);
    }
    const auto values = [&] {
        QVariantList all;
        for (ProjectItem *item : qAsConst(items))
            all << item->property(property);
        return all;
    };
    const QVariantList after = {value, value, value};

    stack->push(new ItemPropertyChangeCommand(items, property, value));
    QCOMPARE(stack->undoText(), text);
    QCOMPARE(values(), after);
    stack->undo();
    QCOMPARE(values(), before);
    stack->redo();
    QCOMPARE(values(), after);
}

EXAMINER_TEST_MAIN(TestCommands)
#include "testcommands.moc"
