#include "support/qaspell.h"

#include "support/qmacspell.h"

QASpell::QASpell() = default;

QASpell::~QASpell() = default;

bool QASpell::configureSpellchecker(const char *)
{
    return true;
}

void QASpell::addWord(const QString &) const {}

bool QASpell::checkWord(const QString &word) const
{
    return QMacSpell::checkWord(word);
}

QStringList QASpell::getSuggestions(const QString &word) const
{
    return QMacSpell::getSuggestions(word);
}
