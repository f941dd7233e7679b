#include "sheet/infoitem.h"

#include "testing/testmain.h"

#include <QGraphicsTextItem>

class TestInfo : public QObject
{
    Q_OBJECT

private slots:
    void explainsTheSheet();
};

void TestInfo::explainsTheSheet()
{
    const InfoItem info;

    QCOMPARE(info.rect(), QRectF(0, 0, 190, 160));
    QCOMPARE(info.type(), 65543);
    QVERIFY(info.flags() & QGraphicsItem::ItemIsMovable);
    QVERIFY(info.flags() & QGraphicsItem::ItemIsSelectable);
    QStringList texts;
    for (QGraphicsItem *child : info.childItems()) {
        QVERIFY(info.rect().contains(child->mapRectToParent(child->boundingRect())));
        if (auto *text = qgraphicsitem_cast<QGraphicsTextItem *>(child))
            texts.append(text->toPlainText());
        else
            QVERIFY(!static_cast<QGraphicsPixmapItem *>(child)->pixmap().isNull());
    }
    QCOMPARE(texts, QStringList({"Observed\nSubstandard\nBehaviour or\nCondition",
                                 "Facts that\nexplain why\nthe effect is\npresent"}));
}

EXAMINER_TEST_MAIN(TestInfo)
#include "testinfo.moc"
