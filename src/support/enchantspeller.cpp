#include "support/enchantspeller.h"

#include <QLocale>

namespace
{
/// Enchant calls words that are empty or hold a zero mistakes of the program.
bool isCheckable(const QString &word)
{
    return !word.isEmpty() && !word.contains(QChar(0));
}
} // namespace

EnchantSpeller::EnchantSpeller(const QStringList &languages) : broker(enchant_broker_init())
{
    for (const QString &language : languages) {
        dictionary = enchant_broker_request_dict(broker, language.toUtf8().constData());
        if (dictionary)
            break;
    }
}

EnchantSpeller::~EnchantSpeller()
{
    if (dictionary)
        enchant_broker_free_dict(broker, dictionary);
    enchant_broker_free(broker);
}

bool EnchantSpeller::isCorrect(const QString &word) const
{
    if (!dictionary || !isCheckable(word))
        return true;
    const QByteArray utf8 = word.toUtf8();
    // 0 is correct and 1 wrong; below 0 the checker itself has failed.
    return enchant_dict_check(dictionary, utf8.constData(), utf8.size()) <= 0;
}

QStringList EnchantSpeller::getSuggestions(const QString &word) const
{
    QStringList result;
    if (!dictionary || !isCheckable(word))
        return result;
    const QByteArray utf8 = word.toUtf8();
    size_t count = 0;
    char **guesses = enchant_dict_suggest(dictionary, utf8.constData(), utf8.size(), &count);
    if (!guesses)
        return result;
    for (size_t i = 0; i < count; ++i) {
        const QString guess = QString::fromUtf8(guesses[i]);
        if (guess != word)
            result.append(guess);
    }
    enchant_dict_free_string_list(dictionary, guesses);
    return result;
}

QStringList EnchantSpeller::getUserLanguages()
{
    QStringList languages = QLocale::system().uiLanguages();
    languages.replaceInStrings("-", "_");
    languages.append("en_US");
    return languages;
}
