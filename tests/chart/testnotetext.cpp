#include "chart/notetext.h"
#include "testing/dialogs.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QAction>
#include <QGraphicsScene>
#include <QGraphicsSceneContextMenuEvent>
#include <QMenu>
#include <QTextBlock>
#include <QTextDocument>

class TestNoteText : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        text = new NoteText(nullptr);
        scene.addItem(text);
        text->setPlainText("brigde open");
        text->setEditable(true);
    }
    void cleanup() { delete text; }

    void marksOnlyWhileEditable()
    {
        const auto hasMarks = [this] {
            return !text->document()->firstBlock().layout()->formats().isEmpty();
        };
        QTRY_VERIFY(hasMarks());
        QTextCursor all = text->textCursor();
        all.select(QTextCursor::Document);
        text->setTextCursor(all);
        text->setEditable(false);
        QVERIFY(!hasMarks() && !text->textCursor().hasSelection());
        QVERIFY(text->textInteractionFlags() == Qt::NoTextInteraction);
        text->setEditable(true);
        QTRY_VERIFY(hasMarks());
    }

    void menus()
    {
        const struct {
            const char *name, *before, *entry, *after;
            bool chosen;
        } rows[] = {
            {"correction", "brigde open", "bridge", "bridge open", true},
            {"dismissed", "brigde open", "bridge", "brigde open", false},
            {"no suggestions", "xqzzvkwxqj open", "No suggestions", "xqzzvkwxqj open", false},
            {"correct word", "bridge open", "Select All", "bridge open", false},
        };
        for (const auto &row : rows) {
            const Row in(row.name);
            text->setPlainText(row.before);
            bool offered = false;
            DialogAnswer answer([&](QWidget *menu) {
                for (QAction *action : menu->actions()) {
                    if (!action->text().remove('&').startsWith(row.entry))
                        continue;
                    offered = true;
                    if (row.chosen)
                        qobject_cast<QMenu *>(menu)->setActiveAction(action);
                }
                QTest::keyClick(menu, row.chosen ? Qt::Key_Return : Qt::Key_Escape);
                return true;
            });
            QGraphicsSceneContextMenuEvent event(QEvent::GraphicsSceneContextMenu);
            event.setPos(QPointF(12, 12));
            scene.sendEvent(text, &event);
            QTRY_VERIFY(answer.wasAsked());
            QVERIFY(offered);
            QCOMPARE(text->toPlainText(), QString(row.after));
        }
    }

private:
    QGraphicsScene scene;
    NoteText *text = nullptr;
};

EXAMINER_TEST_MAIN(TestNoteText)
#include "testnotetext.moc"
