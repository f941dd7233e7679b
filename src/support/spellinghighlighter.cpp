#include "support/spellinghighlighter.h"

#include "support/qaspell.h"

SpellingHighlighter::SpellingHighlighter(QTextDocument *document)
    : QSyntaxHighlighter(document), spell(std::make_unique<QASpell>())
{
    spell->configureSpellchecker("en_US");
    format.setUnderlineColor(Qt::red);
    format.setUnderlineStyle(QTextCharFormat::SpellCheckUnderline);
}

SpellingHighlighter::~SpellingHighlighter() = default;

void SpellingHighlighter::highlightBlock(const QString &text)
{
    int start = 0;
    for (int i = 0; i < text.length(); ++i) {
        if (text.at(i).isLetterOrNumber())
            continue;
        checkRange(text, start, i);
        start = i + 1;
    }
}

void SpellingHighlighter::checkRange(const QString &text, int start, int end)
{
    const int length = end - start;
    if (length > 0 && !spell->checkWord(text.mid(start, length)))
        setFormat(start, length, format);
}
