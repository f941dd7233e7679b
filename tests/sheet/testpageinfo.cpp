#include "support/pageinfo.h"

#include "testing/testmain.h"

#include <QPageSize>

class TestPageInfo : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void defaults();
    void marginsInOrder();
    void topMarginOnlyShortensThePage();
    void badMarginsCountAsNotSet_data();
    void badMarginsCountAsNotSet();
    void wordsReadAsZero();
    void paperFollowsTheSettings();
    void unknownPaperIsTabloid_data();
    void unknownPaperIsTabloid();
    void everyPaperHasAPage();
};

void TestPageInfo::init()
{
    QSettings().clear();
}

void TestPageInfo::defaults()
{
    PageInfo info;

    QCOMPARE(info.pageSize, 29);
    QCOMPARE(info.leftMargin, info.rightMargin);
    QCOMPARE(info.topMargin, info.bottomMargin);
    QCOMPARE(info.getPrintableArea().size(), QSize(1606, 1030));
}

void TestPageInfo::marginsInOrder()
{
    QSettings().setValue("margins", QStringList{"1", "2", "3.5", "4"});
    const PageInfo info;

    QCOMPARE(info.leftMargin, 1.0);
    QCOMPARE(info.rightMargin, 2.0);
    QCOMPARE(info.topMargin, 3.5);
    QCOMPARE(info.bottomMargin, 4.0);
    QCOMPARE(info.getMarginsString(), QString("1,2,3.5,4"));
}

void TestPageInfo::topMarginOnlyShortensThePage()
{
    QSettings().setValue("margins", QStringList{"0", "2", "1", "3"});
    PageInfo info;

    // At 96 to the inch 1, 2 and 3 cm are 37, 75 and 113 whole pixels.
    QCOMPARE(info.getPrintableArea(), QRect(0, 75, 1632 - 75, 1056 - 37 - 113));
}

void TestPageInfo::badMarginsCountAsNotSet_data()
{
    QTest::addColumn<QVariant>("margins");

    QTest::newRow("three") << QVariant(QStringList{"1", "2", "3"});
    QTest::newRow("five") << QVariant(QStringList{"1", "2", "3", "4", "5"});
    QTest::newRow("one text, as a project file leaves it") << QVariant("1,2,3,4");
    QTest::newRow("negative") << QVariant(QStringList{"-1", "1", "1", "1"});
    QTest::newRow("wider than the paper") << QVariant(QStringList{"30", "30", "1", "1"});
    QTest::newRow("higher than the paper") << QVariant(QStringList{"1", "1", "14", "13.9"});
    QTest::newRow("beyond any paper") << QVariant(QStringList{"1e300", "1", "1", "1"});
    QTest::newRow("infinite") << QVariant(QStringList{"1", "inf", "1", "1"});
    QTest::newRow("not a number") << QVariant(QStringList{"1", "1", "nan", "1"});
}

void TestPageInfo::badMarginsCountAsNotSet()
{
    QFETCH(QVariant, margins);
    const QString derived = PageInfo().getMarginsString();
    QSettings().setValue("margins", margins);
    PageInfo info;

    QCOMPARE(info.getMarginsString(), derived);
    QCOMPARE(info.getPrintableArea().size(), QSize(1606, 1030));
}

void TestPageInfo::wordsReadAsZero()
{
    QSettings().setValue("margins", QStringList{"wide", "1", "", "2 cm"});

    QCOMPARE(PageInfo().getMarginsString(), QString("0,1,0,0"));
}

void TestPageInfo::paperFollowsTheSettings()
{
    QSettings().setValue("margins", QStringList{"0", "0", "0", "0"});
    QSettings().setValue("pageSize", 2); // Letter
    PageInfo info;

    QCOMPARE(info.getPrintableArea(), QRect(0, 0, 1056, 816));
    QCOMPARE(info.pageSize, 2);

    // The value is a fresh one with each call.
    QSettings().setValue("pageSize", 29);
    QCOMPARE(info.getPrintableArea(), QRect(0, 0, 1632, 1056));
    QCOMPARE(info.pageSize, 29);
}

void TestPageInfo::unknownPaperIsTabloid_data()
{
    QTest::addColumn<QVariant>("number");

    QTest::newRow("negative") << QVariant(-1);
    QTest::newRow("beyond the table") << QVariant(100000);
    QTest::newRow("a size of its own") << QVariant(int(QPageSize::Custom));
}

void TestPageInfo::unknownPaperIsTabloid()
{
    QFETCH(QVariant, number);
    QSettings().setValue("pageSize", number);
    PageInfo info;

    QCOMPARE(info.getPrintableArea().size(), QSize(1606, 1030));
}

void TestPageInfo::everyPaperHasAPage()
{
    for (int number = 0; number <= QPageSize::LastPageSize; ++number) {
        QSettings().setValue("pageSize", number);
        const QRect area = PageInfo().getPrintableArea();
        QVERIFY2(area.width() >= PageInfo::MinimumPage && area.height() >= PageInfo::MinimumPage,
                 qPrintable(QString::number(number)));
    }
}

EXAMINER_TEST_MAIN(TestPageInfo)
#include "testpageinfo.moc"
