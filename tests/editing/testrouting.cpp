#include "chart/routing.h"

#include "testing/testmain.h"

Q_DECLARE_METATYPE(Sticky::Side)

class TestRouting : public QObject
{
    Q_OBJECT

private slots:
    void sideOffset();
    void closestAngleIsTheShorterWayRound();
    void route_data();
    void route();
    void straightLineIgnoresSides();
    void stubsAtOnePoint();
    void arrowHead_data();
    void arrowHead();
    void arrowHeadNeedsADirection();
};

static void compare(const QPolygonF &actual, const QPolygonF &expected)
{
    QCOMPARE(actual.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i)
        QCOMPARE(actual.at(i), expected.at(i));
}

void TestRouting::sideOffset()
{
    QCOMPARE(getSideOffset(Sticky::LeftSide), QPointF(-20, 0));
    QCOMPARE(getSideOffset(Sticky::TopSide), QPointF(0, -20));
    QCOMPARE(getSideOffset(Sticky::RightSide), QPointF(20, 0));
    QCOMPARE(getSideOffset(Sticky::BottomSide), QPointF(0, 20));
    QCOMPARE(getSideOffset(Sticky::NoSide), QPointF());
    QCOMPARE(getSideOffset(Sticky::AutoSide), QPointF());
}

void TestRouting::closestAngleIsTheShorterWayRound()
{
    const QLineF right(0, 0, 10, 0);
    QCOMPARE(closestAngle(right, QLineF(5, 5, 5, 0)), 90.0);
    QCOMPARE(closestAngle(right, QLineF(5, 5, 5, 10)), 90.0);
    QCOMPARE(closestAngle(right, QLineF(3, 3, 0, 3)), 180.0);
    QCOMPARE(closestAngle(right, QLineF(0, 0, 1, 1)), 45.0);
    QCOMPARE(closestAngle(right, right), 0.0);
    QCOMPARE(closestAngle(right, QLineF(4, 4, 4, 4)), 0.0);
}

void TestRouting::route_data()
{
    QTest::addColumn<QPointF>("start");
    QTest::addColumn<Sticky::Side>("startSide");
    QTest::addColumn<QPointF>("end");
    QTest::addColumn<Sticky::Side>("endSide");
    QTest::addColumn<QPolygonF>("between"); // start and end

    const auto free = Sticky::NoSide;
    const auto left = Sticky::LeftSide;
    const auto top = Sticky::TopSide;
    const auto right = Sticky::RightSide;
    const auto bottom = Sticky::BottomSide;
    const auto row = [](const char *name, QPointF start, Sticky::Side startSide, QPointF end,
                        Sticky::Side endSide, const QVector<QPointF> &between) {
        QTest::newRow(name) << start << startSide << end << endSide << QPolygonF(between);
    };

    row("both ends at one point", {100, 100}, free, {100, 100}, free, {});
    row("40 runs straight", {0, 0}, free, {20, 20}, free, {});
    row("40 runs straight also between notes", {0, 0}, right, {40, 0}, left, {});
    row("41 is routed", {0, 0}, free, {20, 21}, free, {{0, 10.5}, {20, 10.5}});
    row("40 counts after rounding", {0, 0}, free, {20.4, 20.4}, free, {});
    row("41 counts after rounding", {0, 0}, free, {20.75, 20.25}, free,
        {{10.375, 0}, {10.375, 20.25}});
    row("a half rounds up", {0.5, 0}, free, {41, 0}, free, {});
    row("a half below zero rounds up too", {-0.5, 0}, free, {40, 0}, free, {});

    row("free and wide bends halfway across", {0, 0}, free, {100, 40}, free, {{50, 0}, {50, 40}});
    row("free and tall bends halfway down", {0, 0}, free, {40, 100}, free, {{0, 50}, {40, 50}});
    row("free as wide as tall bends halfway down", {0, 0}, free, {50, -50}, free,
        {{0, -25}, {50, -25}});
    row("free and backwards", {100, 40}, free, {0, 0}, free, {{50, 40}, {50, 0}});
    row("the halfway point has single precision", {0, 0}, free, {100.1, 300.3}, free,
        {{0, 150.149993896484375}, {100.1, 150.149993896484375}});
    row("a tie in single precision is a tie", {0, 0}, free, {100.000001, 100}, free,
        {{0, 50}, {100.000001, 50}});

    row("a free end has no stub", {80, 30}, right, {200, 130}, free,
        {{100, 30}, {150, 30}, {150, 130}});
    row("a free start has no stub", {0, 0}, free, {30, 100}, top, {{0, 40}, {30, 40}, {30, 80}});
    row("the axis follows the ends, not the stubs", {80, 30}, right, {190, 130}, free,
        {{100, 30}, {145, 30}, {145, 130}});
    row("a stub may point away from the free end", {200, 30}, right, {100, 80}, free,
        {{220, 30}, {160, 30}, {160, 80}});

    row("facing at one height", {80, 30}, right, {200, 30}, left, {{100, 30}, {180, 30}});
    row("facing at one height from the right", {200, 30}, left, {80, 30}, right,
        {{180, 30}, {100, 30}});
    row("facing at different heights", {80, 30}, right, {200, 130}, left,
        {{100, 30}, {140, 30}, {140, 130}, {180, 130}});
    row("facing above each other", {100, 100}, bottom, {200, 300}, top,
        {{100, 120}, {100, 200}, {200, 200}, {200, 280}});
    row("the target lies behind", {400, 30}, right, {100, 130}, left,
        {{420, 30}, {420, 80}, {80, 80}, {80, 130}});
    row("the target lies behind and above", {100, 300}, bottom, {200, 40}, top,
        {{100, 320}, {150, 320}, {150, 20}, {200, 20}});
    row("the target lies straight behind", {300, 30}, right, {100, 30}, left,
        {{320, 30}, {320, 30}, {80, 30}, {80, 30}});
    row("a right angle between the stubs is obtuse", {80, 30}, right, {120, 130}, left,
        {{100, 30}, {100, 30}, {100, 130}, {100, 130}});

    row("across the corner", {80, 30}, right, {240, 200}, top, {{100, 30}, {240, 30}, {240, 180}});
    row("across the corner from below", {240, 200}, top, {80, 30}, right,
        {{240, 180}, {240, 30}, {100, 30}});
    row("the other corner avoids doubling back", {80, 30}, right, {240, 200}, bottom,
        {{100, 30}, {100, 220}, {240, 220}});
    row("both right, the end further right", {80, 30}, right, {280, 230}, right,
        {{100, 30}, {300, 30}, {300, 230}});
    row("both right, the start further right", {280, 30}, right, {80, 230}, right,
        {{300, 30}, {300, 230}, {100, 230}});
    row("a tie takes the corner beside the first stub", {80, 30}, right, {80, 230}, right,
        {{100, 30}, {100, 30}, {100, 230}});
}

void TestRouting::route()
{
    QFETCH(QPointF, start);
    QFETCH(Sticky::Side, startSide);
    QFETCH(QPointF, end);
    QFETCH(Sticky::Side, endSide);
    QFETCH(QPolygonF, between);

    const QPolygonF expected(QVector<QPointF>{start} + between + QVector<QPointF>{end});
    compare(routeLine({start, startSide}, {end, endSide}, false), expected);
}

void TestRouting::straightLineIgnoresSides()
{
    const RouteEnd start{QPointF(80, 30), Sticky::RightSide};
    const RouteEnd end{QPointF(200, 130), Sticky::LeftSide};
    compare(routeLine(start, end, true), QPolygonF(QVector<QPointF>{start.point, end.point}));
}

void TestRouting::stubsAtOnePoint()
{
    // The continuations have no length, so both crossings stay at the origin.
    QPolygonF points;
    QVERIFY(intersectionMove(QLineF(0, 0, 20, 0), QLineF(40, 0, 20, 0), points));
    compare(points, QPolygonF(QVector<QPointF>{QPointF(10, 0), QPointF(10, 0)}));

    points.clear();
    QVERIFY(intersectionMove(QLineF(0, 0, 20, 0), QLineF(20, 20, 20, 0), points));
    compare(points, QPolygonF(QVector<QPointF>{QPointF(20, 0)}));
}

void TestRouting::arrowHead_data()
{
    QTest::addColumn<QLineF>("segment");
    QTest::addColumn<QPolygonF>("expected");

    const auto row = [](const char *name, const QLineF &segment, const QVector<QPointF> &points) {
        QTest::newRow(name) << segment << QPolygonF(points);
    };
    row("to the right", {0, 0, 100, 0}, {{91, -4.5}, {91, 4.5}, {100, 0}});
    row("downwards", {50, 0, 50, 30}, {{54.5, 21}, {45.5, 21}, {50, 30}});
    row("to the left", {100, 7, 40, 7}, {{49, 11.5}, {49, 2.5}, {40, 7}});
    row("slanted", {0, 0, 30, 40}, {{28.2, 30.1}, {21, 35.5}, {30, 40}});
    row("a short segment doesn't clip it", {0, 0, 3, 0}, {{-6, -4.5}, {-6, 4.5}, {3, 0}});
}

void TestRouting::arrowHead()
{
    QFETCH(QLineF, segment);
    QFETCH(QPolygonF, expected);

    compare(getArrowHead(segment, 9), expected);
}

void TestRouting::arrowHeadNeedsADirection()
{
    QVERIFY(getArrowHead(QLineF(5, 5, 5, 5), 9).isEmpty());
}

EXAMINER_TEST_MAIN(TestRouting)
#include "testrouting.moc"
