#pragma once

#include <QStringList>

/// Spelling as the program sees it, whatever checker the platform has.
class QASpell
{
public:
    QASpell();
    ~QASpell();

    /// The platform chooses the language: the argument has no effect.
    bool configureSpellchecker(const char *language);
    /// Does nothing: the program adds no words to the user's dictionaries.
    void addWord(const QString &word) const;
    /// Whether the word is correct.
    bool checkWord(const QString &word) const;
    /// Best first; empty if the checker knows nothing better.
    QStringList getSuggestions(const QString &word) const;
};
