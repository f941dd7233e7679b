#include "chart/notetext.h"

#include "support/log.h"
#include "support/qaspell.h"
#include "support/spellinghighlighter.h"

#include <QAbstractTextDocumentLayout>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QGraphicsSceneContextMenuEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMenu>
#include <QMimeData>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>

namespace
{

const QKeySequence OtherRedo("Ctrl+Y"); // the toolkit gives it to other desktops alone

/// The editor takes nothing from a clipboard that holds nothing but HTML.
bool holdsOnlyPage()
{
    const QMimeData *data = QApplication::clipboard()->mimeData();
    return data && !data->hasText() && data->hasHtml();
}

} // namespace

NoteText::NoteText(QGraphicsItem *parent)
    : QGraphicsTextItem(parent), addWordAction(new QAction(tr("Add word"), this))
{
}

void NoteText::setEditable(bool editable)
{
    if (editable == (highlighter != nullptr))
        return;
    if (editable) {
        highlighter = new SpellingHighlighter(document());
        setTextInteractionFlags(Qt::TextEditorInteraction);
        refuseRichText();
        return;
    }
    delete highlighter;
    highlighter = nullptr;
    QTextCursor cursor = textCursor();
    cursor.clearSelection(); // a passive label would still draw it
    setTextCursor(cursor);
    setTextInteractionFlags(Qt::NoTextInteraction);
}

void NoteText::setFocus(Qt::FocusReason reason)
{
    qCDebug(chartLog) << "Note text takes the focus, enabled:" << isEnabled()
                      << "focusable:" << bool(flags() & ItemIsFocusable)
                      << "focused:" << hasFocus();
    QGraphicsItem::setFocus(reason);
}

// What is pasted or dropped comes as plain text. The item offers no such choice itself, but
// the editor in it has it as a property.
void NoteText::refuseRichText()
{
    for (QObject *child : children()) {
        if (child->inherits("QWidgetTextControl"))
            child->setProperty("acceptRichText", false);
    }
}

void NoteText::moveCursorTo(const QPointF &scenePos)
{
    setFocus(Qt::MouseFocusReason);
    QTextCursor cursor = textCursor();
    cursor.setPosition(getPositionAt(mapFromScene(scenePos)));
    setTextCursor(cursor);
}

int NoteText::getPositionAt(const QPointF &p) const
{
    return document()->documentLayout()->hitTest(p, Qt::FuzzyHit);
}

// A passive label has no cursor, no selection and nothing beyond its bounds: without the
// editor's clip and palette a chart paints sooner, and a PDF of it is smaller.
void NoteText::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget)
{
    if (highlighter) {
        QGraphicsTextItem::paint(painter, option, widget);
        return;
    }
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette.setColor(QPalette::Text, defaultTextColor());
    document()->documentLayout()->draw(painter, context);
}

void NoteText::keyPressEvent(QKeyEvent *event)
{
    emit textChanged();
    if (event->matches(QKeySequence::Paste) && highlighter && holdsOnlyPage())
        pastePageText();
    else if (highlighter && QKeySequence(event->key() | int(event->modifiers())) == OtherRedo)
        redo();
    else
        QGraphicsTextItem::keyPressEvent(event);
}

void NoteText::redo()
{
    QTextCursor cursor = textCursor();
    document()->redo(&cursor);
    setTextCursor(cursor);
}

void NoteText::pastePageText()
{
    const QString html = QApplication::clipboard()->mimeData()->html();
    textCursor().insertText(QTextDocumentFragment::fromHtml(html).toPlainText());
}

/// The editor's own entry takes nothing of that, and is off.
void NoteText::offerPageText()
{
    const QWidget *menu = QApplication::activePopupWidget();
    auto *paste = menu ? menu->findChild<QAction *>("edit-paste") : nullptr;
    if (!paste || !holdsOnlyPage())
        return;
    paste->setEnabled(true);
    connect(paste, &QAction::triggered, this, [this] {
        emit textChanged();
        pastePageText();
    });
}

void NoteText::contextMenuEvent(QGraphicsSceneContextMenuEvent *event)
{
    const int position = getPositionAt(event->pos());
    const QString word = getWordAt(position).selectedText();
    if (word.isEmpty() || highlighter->getSpell()->checkWord(word)) {
        QGraphicsTextItem::contextMenuEvent(event);
        offerPageText();
        return;
    }

    QMenu menu;
    fillSuggestionsMenu(&menu, word, position);
    addWordAction->setData(position);
    onSpellingActionTriggered(menu.exec(event->screenPos()));
}

void NoteText::onSpellingActionTriggered(QAction *act)
{
    if (!act)
        return;
    QTextCursor cursor = getWordAt(act->data().toInt());
    if (act == addWordAction) {
        const QString word = cursor.selectedText();
        highlighter->getSpell()->addWord(word);
        cursor.insertText(word); // has the highlighter look at it again
    } else {
        cursor.insertText(act->text());
    }
    setTextCursor(cursor);
}

QTextCursor NoteText::getWordAt(int position) const
{
    QTextCursor cursor = textCursor();
    cursor.setPosition(position);
    cursor.select(QTextCursor::WordUnderCursor);
    return cursor;
}

void NoteText::fillSuggestionsMenu(QMenu *menu, const QString &word, int position) const
{
    const QStringList suggestions = highlighter->getSpell()->getSuggestions(word);
    if (suggestions.isEmpty())
        menu->addAction(tr("No suggestions"))->setEnabled(false);
    for (const QString &suggestion : suggestions)
        menu->addAction(suggestion)->setData(position);
}
