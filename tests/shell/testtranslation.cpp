#include "testing/window.h"

#include <QLabel>
#include <QMenu>
#include <QRegularExpression>

/// The program in a language that marks each of its texts with a bracket.
class TestTranslation : public QObject
{
    Q_OBJECT

private slots:
    void leavesNoTextOfMenusAndBarsBehind()
    {
        TestWindow w;
        for (QMenu *menu : {w.window.getSceneContextMenu(), w.window.getLineContextMenu()})
            QVERIFY(menu);
        QVERIFY(w.window.getNoteContextMenu());
        QStringList texts = {w.window.windowTitle(), w.tabs->tabText(0), w.tabs->tabText(1)};
        for (const QWidget *widget : QApplication::allWidgets()) {
            for (const QAction *action : widget->actions())
                texts << action->text() << action->toolTip() << action->statusTip();
            if (const auto *label = qobject_cast<const QLabel *>(widget))
                texts << label->text();
        }
        const QStringList words = texts.filter(QRegularExpression("[A-Za-z]{2}"));
        for (const QString &text : words)
            QVERIFY2(text.startsWith('['), qPrintable(text));
        QVERIFY(words.size() > 100);
    }
};

int main(int argc, char **argv)
{
    TestHome home;
    qputenv("LANGUAGE", "en_XA");
    Application application(argc, argv);
    TestTranslation test;
    return QTest::qExec(&test, argc, argv);
}

#include "testtranslation.moc"
