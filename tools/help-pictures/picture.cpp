#include "picture.h"

#include <QHash>
#include <QImageWriter>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace
{

constexpr int MarkSize = 20;      // pixels across
constexpr int MostColors = 256;   // of a palette
constexpr int ColorDistance = 12; // below it two colours count as one
constexpr QRgb MarkColor = 0xff9c1c00;
constexpr QRgb FrameColor = 0xffb9c2cc;

int getDistance(QRgb one, QRgb two)
{
    return qAbs(qRed(one) - qRed(two)) + qAbs(qGreen(one) - qGreen(two)) +
           qAbs(qBlue(one) - qBlue(two));
}

QRgb getClosest(const QVector<QRgb> &colors, QRgb wanted)
{
    return *std::min_element(colors.cbegin(), colors.cend(), [wanted](QRgb one, QRgb two) {
        return getDistance(one, wanted) < getDistance(two, wanted);
    });
}

/// The colours used most, leaving out those that can hardly be told from one before.
QVector<QRgb> choosePalette(const QImage &image)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ++counts[image.pixel(x, y)];
    }
    QVector<std::pair<int, QRgb>> order;
    for (auto count = counts.cbegin(); count != counts.cend(); ++count)
        order.append({count.value(), count.key()});
    std::sort(order.rbegin(), order.rend());
    QVector<QRgb> colors;
    for (const auto &entry : qAsConst(order)) {
        if (colors.size() == MostColors)
            break;
        if (counts.size() <= MostColors || colors.isEmpty() ||
            getDistance(getClosest(colors, entry.second), entry.second) >= ColorDistance)
            colors.append(entry.second);
    }
    return colors;
}

QImage reduce(const QImage &image)
{
    const QVector<QRgb> colors = choosePalette(image);
    QHash<QRgb, int> known;
    QImage reduced(image.size(), QImage::Format_Indexed8);
    reduced.setColorTable(colors);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb color = image.pixel(x, y);
            if (!known.contains(color))
                known.insert(color, colors.indexOf(getClosest(colors, color)));
            reduced.setPixel(x, y, uint(known.value(color)));
        }
    }
    return reduced;
}

} // namespace

Picture &Picture::fit(int width)
{
    if (image.width() > width)
        image = image.scaledToWidth(width, Qt::SmoothTransformation)
                    .convertToFormat(QImage::Format_RGB32);
    return *this;
}

Picture &Picture::number(const QList<QPoint> &points)
{
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QFont font("Liberation Sans");
    font.setPixelSize(12);
    font.setBold(true);
    painter.setFont(font);
    for (int i = 0; i < points.size(); ++i) {
        const QRect circle(points.at(i) - QPoint(MarkSize / 2, MarkSize / 2),
                           QSize(MarkSize, MarkSize));
        painter.setPen(QPen(Qt::white, 2));
        painter.setBrush(QColor(MarkColor));
        painter.drawEllipse(circle);
        painter.drawText(circle, Qt::AlignCenter, QString::number(i + 1));
    }
    return *this;
}

Picture &Picture::frame()
{
    QPainter painter(&image);
    painter.setPen(QColor(FrameColor));
    painter.drawRect(image.rect().adjusted(0, 0, -1, -1));
    return *this;
}

void Picture::write(const QString &path) const
{
    QImageWriter writer(path, "png");
    writer.setCompression(100);
    if (!writer.write(reduce(image)))
        qFatal("%s: %s", qPrintable(path), qPrintable(writer.errorString()));
}
