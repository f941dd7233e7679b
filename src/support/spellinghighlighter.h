#pragma once

#include <QSyntaxHighlighter>
#include <QTextCharFormat>

#include <memory>

class QASpell;

/// Underlines the words of a document that the spell checker rejects. A word
/// at the very end of a block is looked at once a separator follows it.
class SpellingHighlighter : public QSyntaxHighlighter
{
    Q_OBJECT

public:
    explicit SpellingHighlighter(QTextDocument *document);
    ~SpellingHighlighter() override;

    /// Never null; lives as long as the highlighter.
    const QASpell *getSpell() const { return spell.get(); }

protected:
    void highlightBlock(const QString &text) override;

private:
    void checkRange(const QString &text, int start, int end);

    std::unique_ptr<QASpell> spell;
    QTextCharFormat format; // of a rejected word
};
