#pragma once

#include <QGraphicsTextItem>

class QAction;
class QASpell;
class QMenu;
class SpellingHighlighter;

/// The plain text in a note: a passive label, or an editor that underlines
/// misspelt words and offers corrections.
class NoteText : public QGraphicsTextItem
{
    Q_OBJECT

public:
    explicit NoteText(QGraphicsItem *parent);

    void setEditable(bool editable);
    void setFocus(Qt::FocusReason reason);
    /// Takes the focus too.
    void moveCursorTo(const QPointF &scenePos);

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

signals:
    /// A key is about to change the text.
    void textChanged();

public slots:
    /// Null when the menu was dismissed.
    void onSpellingActionTriggered(QAction *act);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QGraphicsSceneContextMenuEvent *event) override;

private:
    void refuseRichText();
    void redo();
    void pastePageText();
    void offerPageText();
    int getPositionAt(const QPointF &p) const;
    QTextCursor getWordAt(int position) const;
    void fillSuggestionsMenu(QMenu *menu, const QString &word, int position) const;

    SpellingHighlighter *highlighter = nullptr; // only while the text is editable
    QAction *addWordAction;
};
