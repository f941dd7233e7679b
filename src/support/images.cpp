#include "support/images.h"

#include "support/qtcompat.h"

#include <QBuffer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QIcon>
#include <QImageReader>

#include <cmath>

namespace
{

constexpr qint64 MaximumPixels = 64 * 1000 * 1000;
constexpr int MaximumMegabytes = 512; // of as many pixels, eight bytes each
constexpr qreal LeastDense = 1.2;     // pixels a unit; screens seldom tell exactly 1

/// By its content. Drawings name other files and are refused: reading one would show or wait for
/// whatever it names.
bool isRaster(QImageReader &reader)
{
    static const QList<QByteArray> formats = {"bmp", "gif", "ico", "jpeg", "jpg",  "pbm", "pgm",
                                              "png", "ppm", "tif", "tiff", "webp", "xbm", "xpm"};
    return formats.contains(reader.format());
}

qint64 countPixels(QSize size)
{
    return size.isEmpty() ? 0 : qint64(size.width()) * size.height();
}

QSize shrink(QSize size, qint64 pixels)
{
    const double factor = std::sqrt(double(pixels) / countPixels(size));
    return QSize(int(size.width() * factor), int(size.height() * factor)).expandedTo({1, 1});
}

QImage readWithin(QImageReader &reader, qint64 mostPixels)
{
    QtCompat::limitImages(MaximumMegabytes);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true); // photos upright
    if (!isRaster(reader))
        return QImage();
    const QSize size = reader.size();
    if (countPixels(size) > MaximumPixels)
        return QImage();
    if (countPixels(size) > mostPixels)
        reader.setScaledSize(shrink(size, mostPixels));
    const QImage image = reader.read();
    // Some formats tell no size before they are read.
    if (countPixels(image.size()) > MaximumPixels)
        return QImage();
    if (countPixels(image.size()) > mostPixels)
        return image.scaled(shrink(image.size(), mostPixels));
    return image;
}

} // namespace

QImage readImageFile(const QString &path)
{
    if (!QFileInfo(path).isFile())
        return QImage();
    QImageReader reader(path);
    return readWithin(reader, MaximumPixels);
}

QImage readImageData(const QByteArray &bytes, qint64 mostPixels)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    return readWithin(reader, mostPixels);
}

QPixmap loadPicture(const QString &resource)
{
    return QIcon(resource).pixmap(QImageReader(resource).size());
}

QPixmap makeIconGround(int size)
{
    const qreal ratio = qGuiApp->devicePixelRatio();
    // On dense screens an icon fills the place it is shown in, which may be larger.
    const qreal density = ratio < LeastDense ? 1 : 2 * ratio;
    QPixmap ground(QSize(size, size) * density);
    ground.setDevicePixelRatio(density);
    ground.fill(Qt::transparent);
    return ground;
}
