#include "support/fonts.h"

#include "support/projectsettings.h"

#include <QFontDialog>
#include <QFontInfo>

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
    // Every note of a project asks, and making settings and fonts is the dear part.
    static const ProjectSettings settings;
    static QString text;
    static QFont font;
    const QString current = settings.getFont();
    if (text != current) {
        text = current;
        font = getBuiltInFont();
        decodeFont(text, font);
    }
    return font;
}

bool askForFont(QFont &font, QWidget *parent)
{
    // On a family that is not installed the dialog would silently pick any other.
    const QString substitute = QFontInfo(font).family();
    QFont shown = font;
    shown.setFamily(substitute);
    bool accepted = false;
    QFont chosen = QFontDialog::getFont(&accepted, shown, parent);
    if (!accepted)
        return false;
    chosen.setStyleName(QString());
    if (chosen.family() == substitute)
        chosen.setFamily(font.family());
    font = chosen;
    return true;
}
