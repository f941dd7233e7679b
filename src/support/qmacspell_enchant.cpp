#include "support/enchantspeller.h"
#include "support/qmacspell.h"

namespace
{
/// A dictionary takes long to read, so the process has one checker.
const EnchantSpeller &getSharedSpeller()
{
    static const EnchantSpeller speller(EnchantSpeller::getUserLanguages());
    return speller;
}
} // namespace

bool QMacSpell::checkWord(const QString &word)
{
    return getSharedSpeller().isCorrect(word);
}

QStringList QMacSpell::getSuggestions(const QString &word)
{
    return getSharedSpeller().getSuggestions(word);
}
