#include "chart/notetext.h"
#include "testing/dialogs.h"
#include "testing/testmain.h"

#include <QAction>
#include <QGraphicsScene>
#include <QGraphicsSceneContextMenuEvent>
#include <QMenu>
#include <QSignalSpy>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>

/// The labels of the next menu; triggers the one asked for, or dismisses the menu.
class MenuAnswer
{
public:
    explicit MenuAnswer(const QString &choice = QString())
        : answer([this, choice](QWidget *widget) {
              auto *menu = qobject_cast<QMenu *>(widget);
              return menu && look(menu, choice);
          })
    {
    }

    bool wasAsked() const { return answer.wasAsked(); }

    QStringList labels;
    bool allDisabled = true;

private:
    bool look(QMenu *menu, const QString &choice)
    {
        QAction *chosen = nullptr;
        for (QAction *action : menu->actions()) {
            labels.append(action->text());
            allDisabled &= !action->isEnabled();
            if (action->text() == choice)
                chosen = action;
        }
        if (chosen)
            menu->setActiveAction(chosen);
        QTest::keyClick(menu, chosen ? Qt::Key_Return : Qt::Key_Escape);
        return true;
    }

    DialogAnswer answer;
};

class TestNoteText : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void marksOnlyWhileEditable();
    void keysAreToldBeforeTheyWrite();
    void correction();
    void dismissedMenu();
    void noSuggestions();
    void correctWordsHaveTheUsualMenu();
    void addWord();
    void noAction();

private:
    bool hasMarks() const { return !text->document()->firstBlock().layout()->formats().isEmpty(); }

    /// Right-clicks the first word.
    void askForMenu()
    {
        QGraphicsSceneContextMenuEvent event(QEvent::GraphicsSceneContextMenu);
        event.setPos(QPointF(12, 12));
        event.setScenePos(QPointF(12, 12));
        scene->sendEvent(text, &event);
    }

    std::unique_ptr<QGraphicsScene> scene;
    NoteText *text = nullptr;
};

void TestNoteText::init()
{
    scene = std::make_unique<QGraphicsScene>();
    QEvent activation(QEvent::WindowActivate);
    QApplication::sendEvent(scene.get(), &activation);
    text = new NoteText(nullptr);
    scene->addItem(text);
    text->setPlainText("brigde open");
    text->setEditable(true);
}

void TestNoteText::cleanup()
{
    scene.reset();
}

void TestNoteText::marksOnlyWhileEditable()
{
    QTRY_VERIFY(hasMarks());
    QVERIFY(text->textInteractionFlags() == Qt::TextEditorInteraction);
    QTextCursor all = text->textCursor();
    all.select(QTextCursor::Document);
    text->setTextCursor(all);

    text->setEditable(false);
    QVERIFY(!hasMarks());
    QVERIFY(!text->textCursor().hasSelection());
    QVERIFY(text->textInteractionFlags() == Qt::NoTextInteraction);
    text->setEditable(false);
    text->setEditable(true);
    QTRY_VERIFY(hasMarks());
}

void TestNoteText::keysAreToldBeforeTheyWrite()
{
    QString atSignal;
    connect(text, &NoteText::textChanged, this, [&] { atSignal = text->toPlainText(); });
    text->setFocus(Qt::MouseFocusReason);
    QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a");
    QApplication::sendEvent(scene.get(), &key);
    QCOMPARE(atSignal, QString("brigde open"));
    QCOMPARE(text->toPlainText(), QString("abrigde open"));
}

void TestNoteText::correction()
{
    MenuAnswer menu("bridge");
    askForMenu();
    QVERIFY(menu.wasAsked());
    QVERIFY(!menu.labels.contains("Add word"));
    QCOMPARE(text->toPlainText(), QString("bridge open"));
    QCOMPARE(text->textCursor().position(), 6);
}

void TestNoteText::dismissedMenu()
{
    MenuAnswer menu;
    askForMenu();
    QVERIFY(menu.wasAsked());
    QCOMPARE(text->toPlainText(), QString("brigde open"));
}

void TestNoteText::noSuggestions()
{
    text->setPlainText("xqzzvkwxqj open");
    MenuAnswer menu;
    askForMenu();
    QCOMPARE(menu.labels, QStringList("No suggestions"));
    QVERIFY(menu.allDisabled);
}

void TestNoteText::correctWordsHaveTheUsualMenu()
{
    text->setPlainText("bridge open");
    MenuAnswer menu;
    askForMenu();
    QTRY_VERIFY(menu.wasAsked());
    QVERIFY(menu.labels.filter("Paste").size() == 1);

    text->setPlainText(QString());
    MenuAnswer emptyMenu;
    askForMenu();
    QTRY_VERIFY(emptyMenu.wasAsked());
    QVERIFY(emptyMenu.labels.filter("Paste").size() == 1);
}

void TestNoteText::addWord()
{
    auto *addWordAction = text->findChild<QAction *>();
    QVERIFY(addWordAction);
    addWordAction->setData(8);
    text->onSpellingActionTriggered(addWordAction);
    QCOMPARE(text->toPlainText(), QString("brigde open"));
    QCOMPARE(text->textCursor().position(), 11);
}

void TestNoteText::noAction()
{
    const int position = text->textCursor().position();
    text->onSpellingActionTriggered(nullptr);
    QCOMPARE(text->toPlainText(), QString("brigde open"));
    QCOMPARE(text->textCursor().position(), position);
}

EXAMINER_TEST_MAIN(TestNoteText)
#include "testnotetext.moc"
