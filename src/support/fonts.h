#pragma once

#include <QFont>
#include <QString>

class QWidget;

/// The text form of a font, as settings and project files hold it: ten fields,
/// without the style name that font dialogs add.
QString encodeFont(const QFont &font);

/// False when the text is no font; `font` is then left alone.
bool decodeFont(const QString &text, QFont &font);

/// Arial, 8 point, weight 50.
QFont getBuiltInFont();

/// The font of notes without one of their own: the settings key "font".
QFont getStandardFont();

/// Runs the font dialog on the font. False, with the font left alone, when the
/// user cancels.
bool askForFont(QFont &font, QWidget *parent);
