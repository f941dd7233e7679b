#include "support/fonts.h"

#include <QSettings>

QString encodeFont(QFont font)
{
    font.setStyleName(QString());
    return font.toString();
}

bool decodeFont(const QString &text, QFont &font)
{
    QFont decoded;
    if (!decoded.fromString(text))
        return false;
    font = decoded;
    return true;
}

QFont getBuiltInFont()
{
    return QFont("Arial", 8, QFont::Normal, false);
}

QFont getStandardFont()
{
    QFont font = getBuiltInFont();
    decodeFont(QSettings().value("font", encodeFont(font)).toString(), font);
    return font;
}
