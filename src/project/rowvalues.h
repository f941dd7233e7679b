#pragma once

#include <QByteArray>
#include <QString>

class QImage;
class QPixmap;
struct CanvasItemInfo;

/// The bytes of a JPEG file; null for a null picture.
QByteArray encodeImage(const QImage &image);
QByteArray encodeImage(const QPixmap &image);

constexpr int ProjectVersion = 1; ///< of the file format

QString boolToString(bool value);
/// True for exactly "true".
bool stringToBool(const QString &text);
/// Words such as "AlignHCenter AlignTop", one a direction; other flags are left out.
QString alignmentToString(Qt::Alignment alignment);
/// Unknown words are passed over.
Qt::Alignment stringToAlignment(const QString &text);

/// A text as a text column holds it: never null.
QString textOf(const QString &text);
/// Null on the main sheet, as the upgrade asks for NULL.
QString guidOrNull(const QString &guid);
/// The font column of a note: empty unless the note has a font of its own.
QString fontOf(const CanvasItemInfo &info);
