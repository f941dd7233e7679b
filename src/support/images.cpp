#include "support/images.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageReader>

namespace
{

constexpr qint64 MaximumPixels = 64 * 1000 * 1000;

QImage readWithin(QImageReader &reader)
{
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
    reader.setDecideFormatFromContent(true);
    return readWithin(reader);
}

QImage readImageData(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    return readWithin(reader);
}
