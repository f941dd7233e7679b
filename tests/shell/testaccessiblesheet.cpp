#include "shell/accessiblesheet.h"
#include "shell/graphwidget.h"
#include "testing/sheet.h"

#include <QElapsedTimer>

/// What a screen reader is told about a sheet of 1000 by 800 a page.
class TestAccessibleSheet : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void sheetIsListOfItsNotes();
    void factorSheetIsNamedByItsNumber();
    void notesComeInReadingOrder();
    void noteTellsRoleTextAndPage_data();
    void noteTellsRoleTextAndPage();
    void noteTellsItsPlaceOnScreen();
    void noteIsFoundUnderPoint();
    void focusActionSelectsNoteAndShowsIt();
    void onlySelectedNoteHasFocus();
    void deletedNoteIsGone();
    void removedNoteIsGone();
    void largeSheetIsWalkedFast();

private:
    QAccessibleInterface *getSheet() const { return QAccessible::queryAccessibleInterface(view); }
    QStringList getNames() const;

    QScopedPointer<Sheet> sheet;
    GraphWidget *view = nullptr;
};

void TestAccessibleSheet::initTestCase()
{
    installAccessibleSheets();
}

void TestAccessibleSheet::init()
{
    sheet.reset(new Sheet(QSize(1000, 800)));
    sheet->scene.setPagesGrid(2, 2);
    view = new GraphWidget(&sheet->scene, nullptr);
    view->resize(600, 400);
    // The other view of the fixture must not be taken for this one.
    sheet->view.setScene(nullptr);
}

void TestAccessibleSheet::cleanup()
{
    delete view;
    sheet.reset();
}

QStringList TestAccessibleSheet::getNames() const
{
    QStringList names;
    for (int i = 0; i < getSheet()->childCount(); ++i)
        names.append(getSheet()->child(i)->text(QAccessible::Value));
    return names;
}

void TestAccessibleSheet::sheetIsListOfItsNotes()
{
    Sticky *note = sheet->addNote(QRectF(100, 100, 120, 80), "Event", "one");
    sheet->addLine(QPointF(0, 0), QPointF(50, 50));
    sheet->addBarrier(QPointF(300, 300));

    QVERIFY(getSheet());
    QCOMPARE(getSheet()->role(), QAccessible::List);
    QCOMPARE(getSheet()->text(QAccessible::Name), QString("ECS Chart"));
    QCOMPARE(getSheet()->text(QAccessible::Description), QString("1 notes"));
    QCOMPARE(getSheet()->childCount(), 1);
    QAccessibleInterface *child = getSheet()->child(0);
    QCOMPARE(child->object(), note);
    QCOMPARE(child->role(), QAccessible::ListItem);
    QCOMPARE(child->parent(), getSheet());
    QCOMPARE(getSheet()->indexOfChild(child), 0);
    QVERIFY(!getSheet()->child(1));
    QVERIFY(!getSheet()->child(-1));
}

void TestAccessibleSheet::factorSheetIsNamedByItsNumber()
{
    Sticky *factor = sheet->addFactor(7);
    ProjectScene scene(&sheet->program, &sheet->group, nullptr, nullptr, QSize(1000, 800), factor);
    GraphWidget factorView(&scene, nullptr);

    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(&factorView);
    QCOMPARE(list->text(QAccessible::Name), QString("Causal Factor 7"));
    sheet->scene.clear();
    QCOMPARE(list->text(QAccessible::Name), QString("Causal Factor"));
}

void TestAccessibleSheet::notesComeInReadingOrder()
{
    sheet->addNote(QRectF(1100, 900, 120, 80), "Event", "B2");
    sheet->addNote(QRectF(100, 900, 120, 80), "Event", "B1");
    sheet->addNote(QRectF(1100, 100, 120, 80), "Event", "A2");
    sheet->addNote(QRectF(500, 100, 120, 80), "Event", "right");
    sheet->addNote(QRectF(100, 500, 120, 80), "Event", "lower");
    sheet->addNote(QRectF(100, 100, 120, 80), "Event", "upper");

    QCOMPARE(getNames(), QStringList({"upper", "lower", "right", "A2", "B1", "B2"}));
}

void TestAccessibleSheet::noteTellsRoleTextAndPage_data()
{
    QTest::addColumn<QString>("role");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QPointF>("place");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("page");

    QTest::newRow("event") << "Event"
                           << "a gale" << QPointF(100, 100) << "Event: a gale"
                           << "Page A1";
    QTest::newRow("role of two words")
        << "Loss_Of_Control"
        << "it twists" << QPointF(1100, 100) << "Loss Of Control: it twists"
        << "Page A2";
    QTest::newRow("without a text") << "Condition"
                                    << "" << QPointF(100, 900) << "Condition"
                                    << "Page B1";
    QTest::newRow("on the page's edge") << "Event"
                                        << "x" << QPointF(1000, 800) << "Event: x"
                                        << "Page B2";
}

void TestAccessibleSheet::noteTellsRoleTextAndPage()
{
    QFETCH(QString, role);
    QFETCH(QString, text);
    QFETCH(QPointF, place);
    QFETCH(QString, name);
    QFETCH(QString, page);
    Sticky *note = sheet->addNote(QRectF(place, QSizeF(120, 120)), role, text);
    QAccessibleInterface *child = QAccessible::queryAccessibleInterface(note);

    QCOMPARE(child->text(QAccessible::Name), name);
    QCOMPARE(child->text(QAccessible::Description), page);

    note->setNotRelevant(true);
    QVERIFY(child->text(QAccessible::Name).contains(", not relevant"));
}

void TestAccessibleSheet::noteTellsItsPlaceOnScreen()
{
    Sticky *note = sheet->addNote(QRectF(100, 60, 120, 80));
    QVERIFY((view->show(), QTest::qWaitForWindowExposed(view)));
    QAccessibleInterface *child = QAccessible::queryAccessibleInterface(note);

    const QPoint topLeft = view->viewport()->mapToGlobal(view->mapFromScene(100, 60));
    QCOMPARE(child->rect().topLeft(), topLeft);
    QVERIFY(!child->state().offscreen);
    QVERIFY(!child->state().invisible);

    view->setZoomScale(50);
    QVERIFY(qAbs(child->rect().width() - 60) <= 1);
}

void TestAccessibleSheet::noteIsFoundUnderPoint()
{
    Sticky *note = sheet->addNote(QRectF(100, 60, 120, 80));
    QVERIFY((view->show(), QTest::qWaitForWindowExposed(view)));
    const auto childAt = [this](const QPointF &scenePos) {
        const QPoint p = view->viewport()->mapToGlobal(view->mapFromScene(scenePos));
        QAccessibleInterface *found = getSheet()->childAt(p.x(), p.y());
        return found ? found->object() : nullptr;
    };

    QCOMPARE(childAt(QPointF(150, 90)), note);
    QVERIFY(!childAt(QPointF(400, 300)));
    QVERIFY(!childAt(QPointF(-500, 90)));
}

void TestAccessibleSheet::focusActionSelectsNoteAndShowsIt()
{
    Sticky *near = sheet->addNote(QRectF(100, 100, 120, 80));
    Sticky *far = sheet->addNote(QRectF(1800, 1500, 120, 80));
    QVERIFY((view->show(), QTest::qWaitForWindowExposed(view)));
    near->setSelected(true);
    QAccessibleInterface *child = QAccessible::queryAccessibleInterface(far);
    QVERIFY(child->state().offscreen);

    QVERIFY(child->actionInterface());
    QCOMPARE(child->actionInterface()->actionNames(),
             QStringList(QAccessibleActionInterface::setFocusAction()));
    child->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    QCOMPARE(sheet->scene.getSelectedNotes(), QList<Sticky *>{far});
    QVERIFY(child->state().selected);
    QVERIFY(!child->state().offscreen);
    QCOMPARE(getSheet()->focusChild(), child);
}

void TestAccessibleSheet::onlySelectedNoteHasFocus()
{
    Sticky *one = sheet->addNote(QRectF(100, 100, 120, 80), "Event", "one");
    Sticky *two = sheet->addNote(QRectF(300, 100, 120, 80), "Event", "two");
    QVERIFY(!getSheet()->focusChild());

    one->setSelected(true);
    QCOMPARE(getSheet()->focusChild()->object(), one);
    two->setSelected(true); // several notes are no place to be
    QVERIFY(!getSheet()->focusChild());
    one->setSelected(false);
    QCOMPARE(getSheet()->focusChild()->object(), two);
}

void TestAccessibleSheet::deletedNoteIsGone()
{
    sheet->addNote(QRectF(100, 100, 120, 80), "Event", "one");
    sheet->addNote(QRectF(300, 100, 120, 80), "Event", "two");
    QCOMPARE(getSheet()->childCount(), 2);
    sheet->scene.clear();

    QVERIFY(!getSheet()->child(0));
    QVERIFY(!getSheet()->child(1));
    QTRY_COMPARE(getSheet()->childCount(), 0);
}

void TestAccessibleSheet::removedNoteIsGone()
{
    Sticky *note = sheet->addNote(QRectF(100, 100, 120, 80), "Event", "one");
    QAccessibleInterface *child = getSheet()->child(0);
    QVERIFY(child);
    note->setSelected(true);
    sheet->scene.deleteSelectedItems(); // an undo step keeps the note alive

    QVERIFY(!getSheet()->child(0));
    QVERIFY(child->state().invisible);
    QVERIFY(!child->parent());
    QCOMPARE(child->rect(), QRect());
    QCOMPARE(child->text(QAccessible::Description), QString());
    QTRY_COMPARE(getSheet()->childCount(), 0);
}

void TestAccessibleSheet::largeSheetIsWalkedFast()
{
    for (int i = 0; i < 1000; ++i)
        sheet->addNote(QRectF(140 * (i % 30), 100 * (i / 30), 120, 80), "Event",
                       QString::number(i));
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(getNames().size(), 1000);

    // A walk over all items for each child takes minutes here.
    QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
}

EXAMINER_TEST_MAIN(TestAccessibleSheet)
#include "testaccessiblesheet.moc"
