#include "form/pagetexts.h"

#include "support/datatexts.h"

#include <QJsonDocument>
#include <QJsonObject>

QString getPageTextsScript()
{
    QJsonObject texts;
    const QHash<QString, QString> translations = getDataTexts("FormPage");
    for (auto text = translations.cbegin(); text != translations.cend(); ++text)
        texts.insert(text.key(), *text);
    if (texts.isEmpty())
        return QString();
    const QString map = QString::fromUtf8(QJsonDocument(texts).toJson(QJsonDocument::Compact));
    return QString("window.formTexts = %1;\n").arg(map);
}
