#include "support/datatexts.h"

#include <QCoreApplication>

QHash<QString, QString> getDataTexts(const QString &context)
{
    QHash<QString, QString> texts;
    for (const DataText *text = AllDataTexts; text->context; ++text) {
        if (context != text->context)
            continue;
        const QString english = QString::fromUtf8(text->text);
        const QString translated = QCoreApplication::translate(text->context, text->text);
        if (translated != english)
            texts.insert(english, translated);
    }
    return texts;
}
