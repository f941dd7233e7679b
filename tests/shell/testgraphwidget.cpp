#include "sheet/sheettesting.h"
#include "shell/graphwidget.h"

class TestGraphWidget : public QObject
{
    Q_OBJECT

private slots:
    void numbersStayVisibleUnderADarkTheme();
};

void TestGraphWidget::numbersStayVisibleUnderADarkTheme()
{
    const QPalette themed = QApplication::palette();
    QPalette dark(Qt::black);
    dark.setColor(QPalette::WindowText, Qt::white);
    dark.setColor(QPalette::Text, Qt::white);
    QApplication::setPalette(dark);

    Sheet sheet;
    sheet.addNote(QRectF(100, 100, 80, 60), "Causal_Factor", "x");
    GraphWidget view(&sheet.scene, nullptr);
    view.resize(400, 400);
    const QImage shown = view.grab().toImage();
    QApplication::setPalette(themed);

    const QPoint circle = view.mapFromScene(QPointF(176.68, 103.34)); // its centre
    int darkPixels = 0;
    for (int x = circle.x() - 9; x <= circle.x() + 9; ++x)
        darkPixels += shown.pixelColor(x, circle.y()).lightness() < 128;
    QVERIFY(darkPixels > 0);
}

EXAMINER_TEST_MAIN(TestGraphWidget)
#include "testgraphwidget.moc"
