#pragma once

#include <QFont>
#include <QString>

/// The text form of a font, as settings and project files hold it: ten fields,
/// without the style name that font dialogs add.
QString encodeFont(QFont font);

/// False when the text is no font; `font` is then left alone.
bool decodeFont(const QString &text, QFont &font);

/// Arial, 8 point, weight 50.
QFont getBuiltInFont();

/// The font of notes without one of their own: the settings key "font".
QFont getStandardFont();
