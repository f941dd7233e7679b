#pragma once

#include <QStringList>

#include <enchant.h>

/// Spelling through Enchant, in the first of some languages that it has a
/// dictionary for. Without one every word is correct.
class EnchantSpeller
{
public:
    /// Language tags such as "de_DE", in order of preference.
    explicit EnchantSpeller(const QStringList &languages);
    ~EnchantSpeller();

    /// True as well where the checker itself fails, as with text it can't read.
    bool isCorrect(const QString &word) const;
    /// In the dictionary's order, without the word itself.
    QStringList getSuggestions(const QString &word) const;

    /// The languages of the user's desktop, with American English behind them.
    static QStringList getUserLanguages();

private:
    Q_DISABLE_COPY(EnchantSpeller)

    EnchantBroker *broker; // owns the dictionary
    EnchantDict *dictionary = nullptr;
};
