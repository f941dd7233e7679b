#include "output/wordxmlexport.h"
#include "testing/form.h"
#include "testing/window.h"

#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QRegularExpression>
#include <QTemporaryDir>

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

    void leavesNoTextOfTheFormBehind()
    {
        Form form;
        QVERIFY(form.waitUntilLoaded());
        form.run("addDynamicContent('causalFactor', '', 1)");
        const QStringList texts =
            form.run("all('h1, h2, h3, p, label, button, .label').map(e => e.textContent.trim())"
                     ".join('\t')")
                .toString()
                .split('\t');
        for (const QString &text : texts.filter(QRegularExpression("[A-Za-z]{2}")))
            QVERIFY2(text.contains('['), qPrintable(text));
        QVERIFY(texts.size() > 80);
        form.view.setFieldValue("reportStatus", "For review");
        const QString shown = "all('option')[1].label + byId('reportStatus').selectedIndex";
        QCOMPARE(form.run(shown).toString(), QString("[Föř řévîéw~~~]1"));
        QCOMPARE(form.view.getFieldValue("reportStatus"), QString("For review"));
    }

    void leavesNoTextOfTheReportBehind()
    {
        const QTemporaryDir folder;
        QCOMPARE(WordXMLExport().writeReport(folder.filePath("a.doc"), {}), QString());
        QFile report(folder.filePath("a.doc"));
        QVERIFY(report.open(QIODevice::ReadOnly));
        const QString written = QString::fromUtf8(report.readAll());
        QVERIFY(written.contains("[Šümmåřý~~]"));
        const auto left = QRegularExpression("<w:t[^>]*>[^<[]*[A-Za-z]{4}[^<]*<").match(written);
        QVERIFY2(!left.hasMatch(), qPrintable(left.captured()));
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
