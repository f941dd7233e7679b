#include "chart/role.h"
#include "testing/testmain.h"

class TestRole : public QObject
{
    Q_OBJECT

private slots:
    void table_data();
    void table();
    void orderOfLists();
    void causalFactor();
    void unknownRoles_data();
    void unknownRoles();
    void namesToTypes();
    void words_data();
    void words();
    void icons();
};

void TestRole::table_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("shape");
    QTest::addColumn<QColor>("fill");
    QTest::addColumn<Qt::PenStyle>("line");

    const QColor sand("#F6C47A");
    const auto row = [](const char *type, const char *name, int shape, const QColor &fill,
                        Qt::PenStyle line = Qt::SolidLine) {
        QTest::newRow(type) << QString(name) << shape << fill << line;
    };
    row("Assumed_Condition", "Assumed Condition", RoleInfo::Oval, Qt::white, Qt::DashLine);
    row("Assumed_Event", "Assumed Event", RoleInfo::Rectangle, Qt::white, Qt::DashLine);
    row("Causal_Factor", "Causal Factor", RoleInfo::Oval, Qt::white);
    row("Condition", "Condition", RoleInfo::Oval, Qt::white);
    row("Event", "Event", RoleInfo::Rectangle, QColor(255, 255, 224));
    row("Loss", "Loss", RoleInfo::Ellipse, Qt::white);
    row("Loss_Of_Control", "Loss Of Control", RoleInfo::Rectangle, sand);
    row("Sequence_Marker", "Sequence Marker", RoleInfo::Oval, sand);
    row("Starting_Event", "Starting Event", RoleInfo::Rectangle, QColor("#9ACD9A"));
    row("Terminating_Event", "Terminating Event", RoleInfo::Rectangle, QColor("#F4B7A5"));
    row("Transfer", "Transfer", RoleInfo::Plate, Qt::white);
}

void TestRole::table()
{
    QFETCH(QString, name);
    QFETCH(int, shape);
    QFETCH(QColor, fill);
    QFETCH(Qt::PenStyle, line);

    const QString type = QTest::currentDataTag();
    const RoleInfo info = Role(type).getInfo();
    QCOMPARE(info.typeName, type);
    QCOMPARE(info.displayName, name);
    QCOMPARE(info.shape, shape);
    QCOMPARE(info.brush.color(), fill);
    QCOMPARE(info.pen.style(), line);
    QCOMPARE(info.pen.color(), QColor(Qt::black));
    QCOMPARE(info.pen.width(), 1);
    QVERIFY(!info.icon.isNull());
}

void TestRole::orderOfLists()
{
    const Role role;
    QCOMPARE(Role::rolesList.size(), 11);
    QCOMPARE(Role::rolesList.first().displayName, QString("Assumed Condition"));
    QCOMPARE(Role::rolesList.last().displayName, QString("Transfer"));
}

void TestRole::causalFactor()
{
    const Role causalFactor("Causal_Factor");
    QVERIFY(causalFactor.isParentItem());
    QCOMPARE(causalFactor.getCircleDecoratorType(), QString("numerals"));
    for (const RoleInfo &row : qAsConst(Role::rolesList)) {
        const bool isCausalFactor = row.typeName == "Causal_Factor";
        QCOMPARE(row.parentItem, isCausalFactor);
        QCOMPARE(row.circleDecoratorType.isEmpty(), !isCausalFactor);
    }
}

void TestRole::unknownRoles_data()
{
    QTest::addColumn<QString>("type");

    QTest::newRow("no such role") << "Underlying_Factor";
    QTest::newRow("other case") << "loss";
    QTest::newRow("display name") << "Loss Of Control";
    QTest::newRow("nothing") << "";
}

void TestRole::unknownRoles()
{
    QFETCH(QString, type);

    Role role("Causal_Factor");
    role.setType(type);
    QCOMPARE(role.getTypeName(), QString("Event"));
    QCOMPARE(role.getInfo().brush.color(), QColor(Qt::white));
    QVERIFY(role.getInfo().icon.isNull());
    QVERIFY(!role.isParentItem());
    QVERIFY(role.getCircleDecoratorType().isEmpty());
}

void TestRole::namesToTypes()
{
    QCOMPARE(Role::typeFromName("Loss Of Control"), QString("Loss_Of_Control"));
    QCOMPARE(Role::typeFromName("Loss_Of_Control"), QString("Event"));
    QCOMPARE(Role::typeFromName("Transfer"), QString("Transfer"));
}

void TestRole::words_data()
{
    QTest::addColumn<QString>("lineStyle");
    QTest::addColumn<QString>("shapeWord");
    QTest::addColumn<Qt::PenStyle>("line");
    QTest::addColumn<int>("shape");

    QTest::newRow("capitals") << "DASHED"
                              << "Ellipse" << Qt::DashLine << 3;
    QTest::newRow("as in the table") << "solid"
                                     << "plate" << Qt::SolidLine << 2;
    QTest::newRow("unknown words") << "dotted"
                                   << "cloud" << Qt::SolidLine << 0;
}

void TestRole::words()
{
    QFETCH(QString, lineStyle);
    QFETCH(QString, shapeWord);
    QFETCH(Qt::PenStyle, line);
    QFETCH(int, shape);

    const RoleInfo info = Role::makeRoleInfo("X", "An X", "RED", "Blue", lineStyle, shapeWord);
    QCOMPARE(info.pen.style(), line);
    QCOMPARE(info.shape, shape);
    QCOMPARE(info.brush.color(), QColor(Qt::red));
    QCOMPARE(info.pen.color(), QColor(Qt::blue));
}

void TestRole::icons()
{
    const auto icon = [](const QString &type) {
        return Role(type).getInfo().icon.pixmap(16, 16).toImage();
    };
    QCOMPARE(icon("Loss_Of_Control").pixelColor(7, 7), QColor("#F6C47A"));
    QCOMPARE(icon("Loss_Of_Control").pixelColor(2, 2), QColor("#F6C47A"));
    QCOMPARE(icon("Transfer").pixelColor(2, 2).alpha(), 0);
    QCOMPARE(icon("Transfer").pixelColor(7, 7), QColor(Qt::white));
    QCOMPARE(icon("Loss").pixelColor(15, 15).alpha(), 0);
}

EXAMINER_TEST_MAIN(TestRole)
#include "testrole.moc"
