#include "project/rowvalues.h"

#include "chart/canvasiteminfo.h"
#include "support/fonts.h"

#include <QBuffer>
#include <QHash>
#include <QImage>
#include <QPixmap>

namespace
{

constexpr char ImageFormat[] = "JPG";

template<typename Image> QByteArray encode(const Image &image)
{
    QByteArray bytes;
    if (image.isNull())
        return bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, ImageFormat);
    return bytes;
}

} // namespace

QByteArray encodeImage(const QImage &image)
{
    return encode(image);
}

QByteArray encodeImage(const QPixmap &image)
{
    return encode(image);
}

QString textOf(const QString &text)
{
    return text.isNull() ? QString("") : text;
}

QString guidOrNull(const QString &guid)
{
    return guid.isEmpty() ? QString() : guid;
}

QString fontOf(const CanvasItemInfo &info)
{
    return info.customFont ? encodeFont(info.font) : QString("");
}

QString boolToString(bool value)
{
    return value ? "true" : "false";
}

bool stringToBool(const QString &text)
{
    return text == "true";
}

QString alignmentToString(Qt::Alignment alignment)
{
    QStringList words;
    if (alignment & Qt::AlignHCenter)
        words << "AlignHCenter";
    else if (alignment & Qt::AlignJustify)
        words << "AlignJustify";
    else if (alignment & Qt::AlignLeft)
        words << "AlignLeft";
    if (alignment & Qt::AlignVCenter)
        words << "AlignVCenter";
    else if (alignment & Qt::AlignTop)
        words << "AlignTop";
    return words.join(' ');
}

Qt::Alignment stringToAlignment(const QString &text)
{
    static const QHash<QString, Qt::AlignmentFlag> flags = {
        {"AlignHCenter", Qt::AlignHCenter}, {"AlignJustify", Qt::AlignJustify},
        {"AlignLeft", Qt::AlignLeft},       {"AlignVCenter", Qt::AlignVCenter},
        {"AlignTop", Qt::AlignTop},
    };
    Qt::Alignment alignment;
    const QStringList words = text.split(' ', Qt::SkipEmptyParts);
    for (const QString &word : words) {
        if (flags.contains(word))
            alignment |= flags.value(word);
    }
    return alignment;
}
