#include "shell/accessiblesheet.h"
#include "shell/graphwidget.h"
#include "testing/sheet.h"

/// What a screen reader is told about a sheet of 1000 by 800 a page.
class TestAccessibleSheet : public QObject
{
    Q_OBJECT

    static auto ask(QObject *object) { return QAccessible::queryAccessibleInterface(object); }

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
        view->show();
    }
    void cleanup() { view.reset(); }

    void notesComeInReadingOrder()
    {
        const QList<QPointF> places = {{100, 100},  {100, 500}, {500, 100},
                                       {1100, 100}, {100, 900}, {1000, 800}};
        for (int i = 5; i >= 0; --i)
            sheet->addNote(QRectF(places[i], QSizeF(120, 80)), "Event", QString::number(i));
        sheet->addLine(QPointF(0, 0), QPointF(50, 50));
        QStringList read;
        for (int i = 0; i < ask(view.get())->childCount(); ++i) {
            QAccessibleInterface *child = ask(view.get())->child(i);
            QCOMPARE(ask(view.get())->indexOfChild(child), i);
            read += child->text(QAccessible::Name) + child->text(QAccessible::Description);
        }
        QVERIFY(read[6].contains("Loss Of Control") && read[6].endsWith(" - A1")); // the legend
        read.removeAt(6);
        QCOMPARE(read.join(' ').remove("Event: ").remove("Page "),
                 QString("0A1 1A1 2A1 3A2 4B1 5B2  - A2  - B1  - B2"));
        QVERIFY(!ask(view.get())->child(10) && !ask(view.get())->child(-1));
    }

    void noteIsFoundUnderAPoint()
    {
        Sticky *note = sheet->addNote(QRectF(100, 60, 120, 80));
        view->setZoomScale(50);
        const QRect place(view->viewport()->mapToGlobal(view->mapFromScene(100, 60)),
                          QSize(60, 40));
        QCOMPARE(ask(note)->rect().topLeft(), place.topLeft());
        QVERIFY(qAbs(ask(note)->rect().width() - 60) <= 1);
        QCOMPARE(ask(view.get())->childAt(place.center().x(), place.center().y()), ask(note));
        QVERIFY(!ask(view.get())->childAt(place.right() + 90, place.center().y()));
    }

    void focusActionSelectsTheNoteAndShowsIt()
    {
        Sticky *near = sheet->addNote(QRectF(100, 100, 120, 80));
        Sticky *far = sheet->addNote(QRectF(1800, 1500, 120, 80));
        near->setSelected(true);
        QVERIFY(ask(far)->state().offscreen);
        ask(far)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
        QCOMPARE(sheet->scene.getSelectedNotes(), QList<Sticky *>{far});
        QVERIFY(!ask(far)->state().offscreen && ask(view.get())->focusChild() == ask(far));
        near->setSelected(true); // several notes are no place to be
        QVERIFY(!ask(view.get())->focusChild());
    }

    void goneNotesAreGone()
    {
        sheet->addNote(QRectF(100, 100, 120, 80))->setSelected(true);
        sheet->addNote(QRectF(300, 100, 120, 80));
        QAccessibleInterface *child = ask(view.get())->child(0);
        sheet->scene.deleteSelectedItems(); // an undo step keeps the note alive
        QVERIFY(!ask(view.get())->child(0));
        QVERIFY(child->state().invisible && !child->parent() && child->rect().isNull());
        sheet->scene.clear();
        QVERIFY(!ask(view.get())->child(1));
        QTRY_COMPARE(ask(view.get())->childCount(), 1); // the corner of an empty page
    }
};

EXAMINER_TEST_MAIN(TestAccessibleSheet)
#include "testaccessiblesheet.moc"
