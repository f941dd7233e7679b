#pragma once

#include <QByteArray>
#include <QString>

class QImage;
class QPixmap;
struct CanvasItemInfo;

/// The bytes of a JPEG file; null for a null picture.
QByteArray encodeImage(const QImage &image);
QByteArray encodeImage(const QPixmap &image);

/// A text as a text column holds it: never null.
QString textOf(const QString &text);
/// Null on the main sheet, as the upgrade asks for NULL.
QString guidOrNull(const QString &guid);
/// The font column of a note: empty unless the note has a font of its own.
QString fontOf(const CanvasItemInfo &info);
