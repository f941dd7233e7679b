#include "support/images.h"

#include "support/qtcompat.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageReader>

namespace
{

constexpr qint64 MaximumPixels = 64 * 1000 * 1000;
constexpr int MaximumMegabytes = 512; // of as many pixels, eight bytes each

/// By its content. Drawings name other files and are refused: reading one would show or wait for
/// whatever it names.
bool isRaster(QImageReader &reader)
{
    static const QList<QByteArray> formats = {"bmp", "gif", "ico", "jpeg", "jpg",  "pbm", "pgm",
                                              "png", "ppm", "tif", "tiff", "webp", "xbm", "xpm"};
    return formats.contains(reader.format());
}

QImage readWithin(QImageReader &reader)
{
    QtCompat::limitImages(MaximumMegabytes);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true); // photos upright
    if (!isRaster(reader))
        return QImage();
    const QSize size = reader.size();
    if (size.isValid() && qint64(size.width()) * size.height() > MaximumPixels)
        return QImage();
    const QImage image = reader.read();
    // Some formats tell no size before they are read.
    if (qint64(image.width()) * image.height() > MaximumPixels)
        return QImage();
    return image;
}

} // namespace

QImage readImageFile(const QString &path)
{
    if (!QFileInfo(path).isFile())
        return QImage();
    QImageReader reader(path);
    return readWithin(reader);
}

QImage readImageData(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    return readWithin(reader);
}
