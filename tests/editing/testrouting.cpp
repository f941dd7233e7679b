#include "chart/routing.h"

#include "testing/rows.h"
#include "testing/testmain.h"

class TestRouting : public QObject
{
    Q_OBJECT

private slots:
    void route()
    {
        constexpr auto free = Sticky::NoSide, left = Sticky::LeftSide, top = Sticky::TopSide,
                       right = Sticky::RightSide, bottom = Sticky::BottomSide;
        const std::tuple<const char *, QPointF, Sticky::Side, QPointF, Sticky::Side,
                         QVector<QPointF>>
            rows[] = {
                // clang-format off
            {"40 runs straight", {0, 0}, free, {20, 20}, free, {}},
            {"41 is routed", {0, 0}, free, {20, 21}, free, {{0, 10.5}, {20, 10.5}}},
            {"41 counts after rounding", {0, 0}, free, {20.75, 20.25}, free, {{10.375, 0}, {10.375, 20.25}}},
            {"a half rounds up", {0.5, 0}, free, {41, 0}, free, {}},
            {"a half below zero rounds up too", {-0.5, 0}, free, {40, 0}, free, {}},

            {"free and wide bends halfway across", {0, 0}, free, {100, 40}, free, {{50, 0}, {50, 40}}},
            {"free and tall bends halfway down", {0, 0}, free, {40, 100}, free, {{0, 50}, {40, 50}}},
            {"free as wide as tall bends halfway down", {0, 0}, free, {50, -50}, free, {{0, -25}, {50, -25}}},
            {"the halfway point has single precision", {0, 0}, free, {100.1, 300.3}, free, {{0, 150.149993896484375}, {100.1, 150.149993896484375}}},
            {"a tie in single precision is a tie", {0, 0}, free, {100.000001, 100}, free, {{0, 50}, {100.000001, 50}}},

            {"a free end has no stub", {80, 30}, right, {200, 130}, free, {{100, 30}, {150, 30}, {150, 130}}},
            {"a free start has no stub", {0, 0}, free, {30, 100}, top, {{0, 40}, {30, 40}, {30, 80}}},
            {"the axis follows the ends, not the stubs", {80, 30}, right, {190, 130}, free, {{100, 30}, {145, 30}, {145, 130}}},
            {"a stub may point away from the free end", {200, 30}, right, {100, 80}, free, {{220, 30}, {160, 30}, {160, 80}}},

            {"facing at one height", {80, 30}, right, {200, 30}, left, {{100, 30}, {180, 30}}},
            {"facing at different heights", {80, 30}, right, {200, 130}, left, {{100, 30}, {140, 30}, {140, 130}, {180, 130}}},
            {"facing above each other", {100, 100}, bottom, {200, 300}, top, {{100, 120}, {100, 200}, {200, 200}, {200, 280}}},
            {"the target lies behind", {400, 30}, right, {100, 130}, left, {{420, 30}, {420, 80}, {80, 80}, {80, 130}}},
            {"the target lies straight behind", {300, 30}, right, {100, 30}, left, {{320, 30}, {320, 30}, {80, 30}, {80, 30}}},
            {"a right angle between the stubs is obtuse", {80, 30}, right, {120, 130}, left, {{100, 30}, {100, 30}, {100, 130}, {100, 130}}},

            {"across the corner", {80, 30}, right, {240, 200}, top, {{100, 30}, {240, 30}, {240, 180}}},
            {"the other corner avoids doubling back", {80, 30}, right, {240, 200}, bottom, {{100, 30}, {100, 220}, {240, 220}}},
            {"both right, the end further right", {80, 30}, right, {280, 230}, right, {{100, 30}, {300, 30}, {300, 230}}},
            {"a tie takes the corner beside the first stub", {80, 30}, right, {80, 230}, right, {{100, 30}, {100, 30}, {100, 230}}},
                // clang-format on
            };
        for (const auto &[name, from, fromSide, to, toSide, between] : rows) {
            const Row in(name);
            QCOMPARE(routeLine({from, fromSide}, {to, toSide}, false),
                     QPolygonF(QVector<QPointF>{from} + between + QVector<QPointF>{to}));
            QCOMPARE(routeLine({from, fromSide}, {to, toSide}, true),
                     QPolygonF(QVector<QPointF>{from, to}));
        }
    }

    void closestPoint()
    {
        const QPolygonF route(QVector<QPointF>{{0, 0}, {100, 0}, {100, 0}, {100, 100}});
        QCOMPARE(getClosestPoint(route, {30, 5}), QPointF(30, 0));
        QCOMPARE(getClosestPoint(route, {98, 60}), QPointF(100, 60));
        QCOMPARE(getClosestPoint(route, {-4, -3}), QPointF(0, 0));
    }

    void arrowHead()
    {
        QCOMPARE(getArrowHead({0, 0, 30, 40}, 9), QPolygonF({{28.2, 30.1}, {21, 35.5}, {30, 40}}));
        QCOMPARE(getArrowHead({0, 0, 3, 0}, 9),
                 QPolygonF({{-6, -4.5}, {-6, 4.5}, {3, 0}})); // not clipped
        QCOMPARE(getArrowHead({5, 5, 5, 5}, 9), QPolygonF());
    }
};

EXAMINER_TEST_MAIN(TestRouting)
#include "testrouting.moc"
