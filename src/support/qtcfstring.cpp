#include "support/qtcfstring.h"

#include <QVarLengthArray>

QtCFString::QtCFString(const QString &text) : text(text) {}

QtCFString::QtCFString(CFStringRef reference) : reference(reference) {}

QtCFString::~QtCFString()
{
    if (reference)
        CFRelease(reference);
}

CFStringRef QtCFString::toCFStringRef(const QString &text)
{
    return CFStringCreateWithCharacters(nullptr, reinterpret_cast<const UniChar *>(text.unicode()),
                                        text.length());
}

QString QtCFString::toQString(CFStringRef reference)
{
    if (!reference)
        return QString();
    const auto length = int(CFStringGetLength(reference));
    if (const UniChar *characters = CFStringGetCharactersPtr(reference))
        return QString(reinterpret_cast<const QChar *>(characters), length);
    QVarLengthArray<UniChar, 256> buffer(length);
    CFStringGetCharacters(reference, CFRangeMake(0, length), buffer.data());
    return QString(reinterpret_cast<const QChar *>(buffer.constData()), length);
}

QtCFString::operator CFStringRef() const
{
    if (!reference)
        reference = toCFStringRef(text);
    return reference;
}

QtCFString::operator QString() const
{
    if (text.isEmpty() && reference)
        text = toQString(reference);
    return text;
}
