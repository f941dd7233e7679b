#include "shell/projecttabwidget.h"
#include "shell/zoomwidget.h"
#include "testing/testmain.h"

#include <QAction>
#include <QLabel>
#include <QSignalSpy>
#include <QTabBar>

class TestZoomWidget : public QObject
{
    Q_OBJECT

private slots:
    void steps_data();
    void steps();
    void theWheelMovesInTens();
    void theLabelIsThreeDigitsWide();
    void aSingleTabHasNoBar();
};

void TestZoomWidget::steps_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("in");
    QTest::addColumn<int>("out");

    QTest::newRow("lowest") << 10 << 25 << 10;
    QTest::newRow("between steps") << 110 << 150 << 100;
    QTest::newRow("actual size") << 100 << 150 << 75;
    QTest::newRow("highest") << 200 << 200 << 150;
}

void TestZoomWidget::steps()
{
    QFETCH(int, from);
    QFETCH(int, in);
    QFETCH(int, out);

    ZoomWidget widget;
    widget.setZoom(from);
    widget.getZoomInAction()->trigger();
    QCOMPARE(widget.getZoom(), in);
    widget.setZoom(from);
    widget.getZoomOutAction()->trigger();
    QCOMPARE(widget.getZoom(), out);
    widget.getActualSizeAction()->trigger();
    QCOMPARE(widget.getZoom(), 100);
}

void TestZoomWidget::theWheelMovesInTens()
{
    ZoomWidget widget;
    QSignalSpy changed(&widget, &ZoomWidget::zoomChanged);
    widget.stepZoom(true);
    QCOMPARE(widget.getZoom(), 110);
    widget.setZoom(195);
    widget.stepZoom(true);
    QCOMPARE(widget.getZoom(), 200);
    widget.stepZoom(true);
    QCOMPARE(changed.count(), 3); // nothing at the limit
    widget.setZoom(-5);
    QCOMPARE(widget.getZoom(), 10);
    widget.setZoom(33);
    QCOMPARE(widget.getZoom(), 33);
}

void TestZoomWidget::theLabelIsThreeDigitsWide()
{
    ZoomWidget widget;
    auto *label = widget.findChild<QLabel *>();
    QCOMPARE(label->text(), QString("100%"));
    widget.setZoom(50);
    QCOMPARE(label->text(), QString(" 50%"));
}

void TestZoomWidget::aSingleTabHasNoBar()
{
    ProjectTabWidget tabs;
    tabs.show();
    tabs.addTab(new QWidget, "One");
    QVERIFY(tabs.documentMode());
    QVERIFY(!tabs.tabBar()->isVisible());
    tabs.addTab(new QWidget, "Two");
    QVERIFY(!tabs.documentMode());
    QVERIFY(tabs.tabBar()->isVisible());
    tabs.removeTab(0);
    QVERIFY(tabs.documentMode());
    QVERIFY(!tabs.tabBar()->isVisible());
}

EXAMINER_TEST_MAIN(TestZoomWidget)

#include "testzoomwidget.moc"
