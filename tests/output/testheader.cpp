#include "sheet/headeritem.h"

#include "testing/testmain.h"

#include <QGraphicsScene>
#include <QGraphicsView>
#include <QSignalSpy>
#include <QWebElement>
#include <QWebFrame>
#include <QWebPage>

class TestHeader : public QObject
{
    Q_OBJECT

private slots:
    void takesTheSizeOfItsTable();
    void valuesAreShownAsPlainText();
    void growsWithAnEditAndShrinksBack();
    void unknownIdsArePassedOver_data();
    void unknownIdsArePassedOver();
    void missingTemplateLeavesItEmpty();
    void doubleClickAsksForTheForm();
};

static const char Template[] = ":/formdata/header_template.html";

static QString getShown(HeaderItem &header, const QString &id)
{
    return header.page()->mainFrame()->findFirstElement("#" + id).toPlainText();
}

void TestHeader::takesTheSizeOfItsTable()
{
    HeaderItem header;
    QCOMPARE(header.size(), QSizeF(800, 300));
    header.loadTemplate(Template);

    QTRY_VERIFY(header.size() != QSizeF(800, 300));
    const QWebElement table = header.page()->mainFrame()->findFirstElement("#contentElement");
    QCOMPARE(header.size(), QSizeF(table.geometry().size()));
    QVERIFY(header.size().width() > 300);
    QVERIFY(header.size().height() > 50);
}

void TestHeader::valuesAreShownAsPlainText()
{
    HeaderItem header;
    header.loadTemplate(Template);
    const QStringList ids = {"incidentTitle", "incidentDate", "fileNumber",
                             "mrph",          "incidentType", "examinerName"};
    for (const QString &id : ids) {
        header.setHeaderValue(id, "<i>5 < 6</i> & " + id);
        QCOMPARE(getShown(header, id), "<i>5 < 6</i> & " + id);
    }
    header.setHeaderValue("mrph", QString());
    QCOMPARE(getShown(header, "mrph"), QString());
}

void TestHeader::growsWithAnEditAndShrinksBack()
{
    HeaderItem header;
    header.loadTemplate(Template);
    QTRY_VERIFY(header.size() != QSizeF(800, 300));
    const QSizeF empty = header.size();

    header.setHeaderValue("incidentTitle", QString("A long way down ").repeated(20));
    QTRY_VERIFY(header.size().height() > empty.height());
    header.setHeaderValue("incidentTitle", QString());
    QTRY_COMPARE(header.size(), empty);
    // A size that its own scroll bars eat into would go on shrinking.
    header.setHeaderValue("mrph", QString());
    QTest::qWait(150);
    QCOMPARE(header.size(), empty);
}

void TestHeader::unknownIdsArePassedOver_data()
{
    QTest::addColumn<QString>("id");

    QTest::newRow("a field of the form") << "lossOfControl";
    QTest::newRow("empty") << "";
    QTest::newRow("no name") << "1'\"]<>";
}

void TestHeader::unknownIdsArePassedOver()
{
    QFETCH(QString, id);
    HeaderItem header;
    header.loadTemplate(Template);
    const QString before = header.page()->mainFrame()->toHtml();
    header.setHeaderValue(id, "text");

    QCOMPARE(header.page()->mainFrame()->toHtml(), before);
}

void TestHeader::missingTemplateLeavesItEmpty()
{
    HeaderItem header;
    header.loadTemplate(":/no/such/template.html");
    header.setHeaderValue("incidentTitle", "text");
    QTest::qWait(120);

    QCOMPARE(header.size(), QSizeF(800, 300));
}

void TestHeader::doubleClickAsksForTheForm()
{
    QGraphicsScene scene;
    auto *header = new HeaderItem;
    scene.addItem(header);
    QGraphicsView view(&scene);
    view.resize(900, 400);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QSignalSpy asked(header, &HeaderItem::editRequested);
    const QPoint point = view.mapFromScene(50, 50);

    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, point);
    QCOMPARE(asked.count(), 0);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, point);
    QCOMPARE(asked.count(), 1);
    QVERIFY(!header->hasFocus());
}

EXAMINER_TEST_MAIN(TestHeader)
#include "testheader.moc"
