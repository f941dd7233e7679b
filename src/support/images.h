#pragma once

#include <QPixmap>

/// The picture in the file, upright; null when it is none or a drawing, is no regular file, or
/// is above 64 megapixels by its header.
QImage readImageFile(const QString &path);

/// The picture in the bytes, format by detection; null as above. What has more pixels than the
/// most allowed is made smaller.
QImage readImageData(const QByteArray &bytes, qint64 mostPixels);

/// One of the program's own pictures by its resource path, as dense as the densest screen.
QPixmap loadPicture(const QString &resource);

/// Transparent, of so many pixels a side on any screen, to draw an icon on.
QPixmap makeIconGround(int size);
