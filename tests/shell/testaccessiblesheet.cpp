#include "shell/accessiblesheet.h"
#include "shell/graphwidget.h"
#include "testing/rows.h"
#include "testing/sheet.h"

/// What a screen reader is told about a sheet of 1000 by 800 a page.
class TestAccessibleSheet : public QObject
{
    Q_OBJECT

    static QAccessibleInterface *ask(QObject *object)
    {
        return QAccessible::queryAccessibleInterface(object);
    }

    std::unique_ptr<Sheet> sheet;
    std::unique_ptr<GraphWidget> view;

private slots:
    void initTestCase() { installAccessibleSheets(); }
    void init()
    {
        sheet = std::make_unique<Sheet>(QSize(1000, 800));
        sheet->scene.setPagesGrid(2, 2);
        sheet->view.setScene(nullptr); // must not be taken for the other one
        view = std::make_unique<GraphWidget>(&sheet->scene, nullptr);
        view->resize(600, 400);
    }
    void cleanup()
    {
        view.reset();
        sheet.reset();
    }

    void notesComeInReadingOrder()
    {
        const struct {
            const char *text, *page;
            QPointF at;
        } rows[] = {{"upper", "Page A1", {100, 100}}, {"lower", "Page A1", {100, 500}},
                    {"right", "Page A1", {500, 100}}, {"A2", "Page A2", {1100, 100}},
                    {"B1", "Page B1", {100, 900}},    {"B2", "Page B2", {1000, 800}}};
        for (int i = 5; i >= 0; --i)
            sheet->addNote(QRectF(rows[i].at, QSizeF(120, 80)), "Loss_Of_Control", rows[i].text);
        sheet->addLine(QPointF(0, 0), QPointF(50, 50));
        QCOMPARE(ask(view.get())->text(QAccessible::Name), QString("ECS Chart"));
        QCOMPARE(ask(view.get())->childCount(), 6);
        for (int i = 0; i < 6; ++i) {
            const Row in(rows[i].text);
            QAccessibleInterface *child = ask(view.get())->child(i);
            QCOMPARE(child->text(QAccessible::Name), QString("Loss Of Control: ") + rows[i].text);
            QCOMPARE(child->text(QAccessible::Description), QString(rows[i].page));
            QCOMPARE(ask(view.get())->indexOfChild(child), i);
        }
        QVERIFY(!ask(view.get())->child(6) && !ask(view.get())->child(-1));
    }

    void noteIsFoundUnderAPoint()
    {
        Sticky *note = sheet->addNote(QRectF(100, 60, 120, 80));
        QVERIFY((view->show(), QTest::qWaitForWindowExposed(view.get())));
        view->setZoomScale(50);
        const QPoint corner = view->viewport()->mapToGlobal(view->mapFromScene(100, 60));
        QCOMPARE(ask(note)->rect().topLeft(), corner);
        QVERIFY(qAbs(ask(note)->rect().width() - 60) <= 1);
        QCOMPARE(ask(view.get())->childAt(corner.x() + 9, corner.y() + 9)->object(), note);
        QVERIFY(!ask(view.get())->childAt(corner.x() + 150, corner.y() + 9));
    }

    void focusActionSelectsTheNoteAndShowsIt()
    {
        Sticky *near = sheet->addNote(QRectF(100, 100, 120, 80));
        Sticky *far = sheet->addNote(QRectF(1800, 1500, 120, 80));
        QVERIFY((view->show(), QTest::qWaitForWindowExposed(view.get())));
        near->setSelected(true);
        QVERIFY(ask(far)->state().offscreen);
        ask(far)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
        QCOMPARE(sheet->scene.getSelectedNotes(), QList<Sticky *>{far});
        QVERIFY(!ask(far)->state().offscreen);
        QCOMPARE(ask(view.get())->focusChild(), ask(far));
        near->setSelected(true); // several notes are no place to be
        QVERIFY(!ask(view.get())->focusChild());
    }

    void goneNotesAreGone()
    {
        Sticky *removed = sheet->addNote(QRectF(100, 100, 120, 80), "Event", "one");
        sheet->addNote(QRectF(300, 100, 120, 80), "Event", "two");
        QAccessibleInterface *child = ask(view.get())->child(0);
        QCOMPARE(child->object(), removed);
        removed->setSelected(true);
        sheet->scene.deleteSelectedItems(); // an undo step keeps the note alive
        QVERIFY(!ask(view.get())->child(0));
        QVERIFY(child->state().invisible && !child->parent() && child->rect().isNull());
        sheet->scene.clear();
        QVERIFY(!ask(view.get())->child(1));
        QTRY_COMPARE(ask(view.get())->childCount(), 0);
    }
};

EXAMINER_TEST_MAIN(TestAccessibleSheet)
#include "testaccessiblesheet.moc"
