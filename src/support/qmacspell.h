#pragma once

#include <QStringList>

/// The platform's spell checker, in the user's language.
class QMacSpell
{
public:
    /// Whether the word is correct; without a dictionary every word is.
    static bool checkWord(const QString &word);
    /// In the checker's order, without the word itself.
    static QStringList getSuggestions(const QString &word);
};
