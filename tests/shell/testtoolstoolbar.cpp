#include "chart/toolid.h"
#include "shell/toolbutton.h"
#include "shell/toolstoolbar.h"
#include "testing/testmain.h"

#include <QMainWindow>
#include <QMenu>
#include <QSignalSpy>
#include <QTimer>

class TestToolsToolBar : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void tools_data();
    void tools();
    void aMenuToolBecomesTheButtonsFace();
    void clickingTheCheckedToolLeavesItChecked();
    void onlyOneToolIsChecked();
    void pressAndMove_data();
    void pressAndMove();
    void formButtonsReplaceTools();

private:
    ToolButton *buttonOf(int tool) const;
    QAction *actionOf(int tool) const;
    void pick(int tool);
    void pressMoveRelease(ToolButton *button, const QPoint &by);

    QMainWindow *window = nullptr;
    ToolsToolBar *palette = nullptr;
};

void TestToolsToolBar::init()
{
    qRegisterMetaType<QAction *>();
    window = new QMainWindow;
    palette = new ToolsToolBar(window);
    window->addToolBar(palette);
    window->resize(1600, 200);
    window->show();
}

void TestToolsToolBar::cleanup()
{
    delete window;
}

ToolButton *TestToolsToolBar::buttonOf(int tool) const
{
    for (ToolButton *button : palette->findChildren<ToolButton *>()) {
        const QList<QAction *> choices =
            button->menu() ? button->menu()->actions() : button->actions();
        for (QAction *action : choices) {
            if (action->data().toInt() == tool)
                return button;
        }
    }
    return nullptr;
}

QAction *TestToolsToolBar::actionOf(int tool) const
{
    for (QAction *action : palette->findChildren<QAction *>()) {
        if (action->data().isValid() && action->data().toInt() == tool)
            return action;
    }
    return nullptr;
}

/// As a user does: a tool that isn't its button's face is taken from the menu.
void TestToolsToolBar::pick(int tool)
{
    ToolButton *button = buttonOf(tool);
    QAction *action = actionOf(tool);
    if (button->defaultAction() == action) {
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(15, 15));
        return;
    }
    QTimer::singleShot(0, button->menu(), [button, action] {
        button->menu()->setActiveAction(action);
        QTest::keyClick(button->menu(), Qt::Key_Return);
    });
    button->showMenu();
}

void TestToolsToolBar::pressMoveRelease(ToolButton *button, const QPoint &by)
{
    const QPoint from(15, 15);
    QTest::mousePress(button, Qt::LeftButton, Qt::NoModifier, from);
    QMouseEvent move(QEvent::MouseMove, from + by, button->mapToGlobal(from + by), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(button, &move);
    QTest::mouseRelease(button, Qt::LeftButton, Qt::NoModifier, from + by);
}

void TestToolsToolBar::tools_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("toolTip");
    QTest::addColumn<int>("sharesButtonWith");

    QTest::newRow("select") << 0 << "Select"
                            << "Select and move notes" << -1;
    QTest::newRow("hand") << 512 << "Hand"
                          << "Move around the canvas" << -1;
    QTest::newRow("event") << 1 << "Event"
                           << "Drag to insert an Event" << -1;
    QTest::newRow("condition") << 2 << "Condition"
                               << "Drag to insert a Condition" << -1;
    QTest::newRow("marker") << 5 << "Sequence Marker"
                            << "Drag to insert a Sequence Marker" << -1;
    QTest::newRow("image") << 4 << "Image"
                           << "Drag to insert an Image" << -1;
    QTest::newRow("connector") << 8 << "Connector"
                               << "Connect two items with a connector line" << -1;
    QTest::newRow("arrow") << 16 << "Arrow"
                           << "Connect two items with an arrow" << 16;
    QTest::newRow("straight") << 256 << "Straight Line"
                              << "Connect two items with a straight line" << 16;
    QTest::newRow("failed") << 32 << "Failed Barrier"
                            << "Insert a failed barrier" << 32;
    QTest::newRow("new") << 128 << "New Barrier"
                         << "Insert a new barrier" << 32;
    QTest::newRow("improved") << 64 << "Improved Barrier"
                              << "Insert an improved barrier" << 32;
    QTest::newRow("worked") << 1024 << "Barrier that worked"
                            << "Insert a barrier that worked" << 32;
}

void TestToolsToolBar::tools()
{
    QFETCH(int, id);
    QFETCH(QString, text);
    QFETCH(QString, toolTip);
    QFETCH(int, sharesButtonWith);

    QAction *action = actionOf(id);
    QVERIFY(action);
    QCOMPARE(action->text(), text);
    QCOMPARE(action->toolTip(), toolTip);
    QVERIFY(!action->icon().pixmap(32, 32).isNull());
    ToolButton *button = buttonOf(id);
    QVERIFY(button);
    if (sharesButtonWith < 0) {
        QVERIFY(!button->menu());
        QCOMPARE(button->actions().size(), 1);
    } else {
        QVERIFY(button->menu()->actions().contains(action));
        QCOMPARE(button->defaultAction()->data().toInt(), sharesButtonWith);
    }
}

void TestToolsToolBar::aMenuToolBecomesTheButtonsFace()
{
    QSignalSpy selected(palette, &ToolsToolBar::toolSelectionChanged);
    ToolButton *button = buttonOf(StraightLineTool);
    QSignalSpy dragged(button, &ToolButton::dragStarting);

    pick(StraightLineTool);
    QCOMPARE(palette->getSelectedTool(), int(StraightLineTool));
    QCOMPARE(button->defaultAction(), actionOf(StraightLineTool));
    QCOMPARE(selected.last().first().toInt(), int(StraightLineTool));

    palette->cancelActiveTool();
    QCOMPARE(button->defaultAction(), actionOf(StraightLineTool));
    pressMoveRelease(button, QPoint(5, 0));
    QCOMPARE(dragged.first().first().value<QAction *>()->data().toInt(), int(StraightLineTool));
}

void TestToolsToolBar::clickingTheCheckedToolLeavesItChecked()
{
    QSignalSpy selected(palette, &ToolsToolBar::toolSelectionChanged);
    for (int click = 0; click < 3; ++click) {
        QTest::mouseClick(buttonOf(EventTool), Qt::LeftButton);
        QVERIFY(actionOf(EventTool)->isChecked());
        QCOMPARE(palette->getSelectedTool(), int(EventTool));
    }
    QCOMPARE(selected.count(), 1);
}

void TestToolsToolBar::onlyOneToolIsChecked()
{
    const QList<int> picks = {EventTool, ArrowTool, NewBarrierTool, HandTool, SelectTool};
    for (int picked : picks) {
        pick(picked);
        for (int tool : {0, 512, 1, 2, 5, 4, 8, 16, 256, 32, 128, 64, 1024})
            QCOMPARE(actionOf(tool)->isChecked(), tool == picked);
    }
    pick(ArrowTool);
    QSignalSpy selected(palette, &ToolsToolBar::toolSelectionChanged);
    palette->cancelActiveTool();
    QVERIFY(actionOf(SelectTool)->isChecked());
    QVERIFY(!actionOf(ArrowTool)->isChecked());
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.first().first().toInt(), 0);
}

void TestToolsToolBar::pressAndMove_data()
{
    QTest::addColumn<QPoint>("by");
    QTest::addColumn<bool>("drags");

    QTest::newRow("four is a click") << QPoint(2, 2) << false;
    QTest::newRow("five is a drag") << QPoint(3, 2) << true;
    QTest::newRow("backwards too") << QPoint(-3, -2) << true;
}

void TestToolsToolBar::pressAndMove()
{
    QFETCH(QPoint, by);
    QFETCH(bool, drags);

    ToolButton *button = buttonOf(SelectTool); // which itself can't be dragged away
    QSignalSpy dragged(button, &ToolButton::dragStarting);
    pressMoveRelease(button, by);
    QCOMPARE(dragged.count(), drags ? 1 : 0);
    QCOMPARE(palette->getSelectedTool(), int(SelectTool));
}

void TestToolsToolBar::formButtonsReplaceTools()
{
    QAction exportForm("Export Form");
    palette->setFormActions({&exportForm});
    QVERIFY(!exportForm.isVisible());
    pick(ArrowTool);

    palette->setActiveButtons(ToolsToolBar::FormButtons);
    QVERIFY(exportForm.isVisible());
    QTRY_VERIFY(!buttonOf(EventTool)->isVisible());
    QVERIFY(!actionOf(EventTool)->isVisible());
    QCOMPARE(palette->getSelectedTool(), int(ArrowTool));

    palette->setActiveButtons(ToolsToolBar::ToolButtons);
    QVERIFY(!exportForm.isVisible());
    QTRY_VERIFY(buttonOf(EventTool)->isVisible());
    QVERIFY(actionOf(ArrowTool)->isChecked());

    exportForm.setVisible(true);
    palette->setActiveButtons(ToolsToolBar::ToolButtons);
    QVERIFY(exportForm.isVisible()); // the same value again does nothing
}

EXAMINER_TEST_MAIN(TestToolsToolBar)

#include "testtoolstoolbar.moc"
