#include "chart/role.h"
#include "sheet/footeritem.h"

#include "testing/testmain.h"

#include <QGraphicsGridLayout>
#include <QGraphicsProxyWidget>
#include <QGraphicsScene>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

class TestFooter : public QObject
{
    Q_OBJECT

private slots:
    void pageName_data();
    void pageName();
    void pageNameIsPlainText();
    void legendFillsTwoRowsColumnByColumn();
    void nothingToShow();
    void legendStandsOnWhiteInDarkThemes();
    void clicksPassThrough();
};

static QList<QWidget *> getWidgets(const FooterItem &footer)
{
    QList<QWidget *> widgets;
    for (QGraphicsItem *item : footer.childItems())
        widgets.append(static_cast<QGraphicsProxyWidget *>(item)->widget());
    return widgets;
}

void TestFooter::pageName_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("name");

    QTest::newRow("first page") << 0 << 0 << "Plant - A1";
    QTest::newRow("to its right") << 0 << 1 << "Plant - A2";
    QTest::newRow("below it") << 1 << 0 << "Plant - B1";
    QTest::newRow("twelfth column") << 2 << 11 << "Plant - C12";
    QTest::newRow("behind Z") << 26 << 0 << "Plant - [1";
}

void TestFooter::pageName()
{
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(QString, name);
    FooterItem footer(row, column);
    footer.showFooter(true, "Plant", false);

    const QList<QWidget *> widgets = getWidgets(footer);
    QCOMPARE(widgets.size(), 1);
    QCOMPARE(qobject_cast<QLabel *>(widgets.first())->text(), name);
}

void TestFooter::pageNameIsPlainText()
{
    FooterItem footer(0, 0);
    footer.showFooter(true, "<b>Plant</b>", false);

    QCOMPARE(qobject_cast<QLabel *>(getWidgets(footer).first())->textFormat(), Qt::PlainText);
}

void TestFooter::legendFillsTwoRowsColumnByColumn()
{
    FooterItem footer(0, 0);
    footer.showFooter(true, "Plant", true);
    footer.resize(footer.effectiveSizeHint(Qt::PreferredSize));

    const QList<RoleInfo> roles = Role::rolesList.values();
    const QList<QGraphicsItem *> children = footer.childItems();
    QCOMPARE(children.size(), roles.size() + 1);
    for (int i = 0; i < roles.size(); ++i) {
        auto *button = qobject_cast<QPushButton *>(
            static_cast<QGraphicsProxyWidget *>(children.at(i))->widget());
        QVERIFY(button);
        QCOMPARE(button->text(), roles.at(i).displayName);
        QVERIFY(!button->icon().isNull());
        if (i % 2 == 1) { // below its neighbour
            QCOMPARE(children.at(i)->x(), children.at(i - 1)->x());
            QVERIFY(children.at(i)->y() > children.at(i - 1)->y());
        } else if (i > 0) {
            QVERIFY(children.at(i)->x() > children.at(i - 1)->x());
        }
    }
    QVERIFY(children.last()->x() > children.at(roles.size() - 1)->x());
    QVERIFY(children.last()->y() > children.first()->y());
}

void TestFooter::nothingToShow()
{
    FooterItem footer(0, 0);
    footer.showFooter(false, "Plant", false);

    QVERIFY(footer.childItems().isEmpty());
}

void TestFooter::legendStandsOnWhiteInDarkThemes()
{
    QApplication::setPalette(QPalette(Qt::white, Qt::black));
    QGraphicsScene scene;
    scene.setBackgroundBrush(Qt::darkBlue);
    auto *footer = new FooterItem(0, 0);
    footer->showFooter(true, "Plant", true);
    footer->resize(footer->effectiveSizeHint(Qt::PreferredSize));
    scene.addItem(footer);

    QImage image(footer->size().toSize(), QImage::Format_RGB32);
    QPainter painter(&image);
    scene.render(&painter, image.rect(), footer->sceneBoundingRect());
    painter.end();
    QApplication::setPalette(QPalette());

    QCOMPARE(image.pixelColor(3, 3), QColor(Qt::white));
    int dark = 0;
    int blue = 0;
    for (int y = 2; y < image.height() - 2; ++y) {
        for (int x = 2; x < image.width() - 2; ++x) {
            dark += qGray(image.pixel(x, y)) < 60;
            blue += image.pixelColor(x, y) == QColor(Qt::darkBlue);
        }
    }
    QVERIFY(dark > 200); // the letters
    QCOMPARE(blue, 0);
}

void TestFooter::clicksPassThrough()
{
    FooterItem footer(0, 0);
    footer.showFooter(true, "Plant", true);

    QCOMPARE(footer.acceptedMouseButtons(), Qt::NoButton);
    for (QGraphicsItem *item : footer.childItems())
        QCOMPARE(item->acceptedMouseButtons(), Qt::NoButton);
}

EXAMINER_TEST_MAIN(TestFooter)
#include "testfooter.moc"
