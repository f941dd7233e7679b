#pragma once

#include <QString>

#include <CoreFoundation/CoreFoundation.h>

/// One text as a QString and as the platform's string, each made from the
/// other when it is first asked for.
class QtCFString
{
public:
    explicit QtCFString(const QString &text);
    /// Takes over the reference, which may be null.
    explicit QtCFString(CFStringRef reference = nullptr);
    ~QtCFString();

    /// The caller releases the result.
    static CFStringRef toCFStringRef(const QString &text);
    /// Leaves the reference with the caller; null gives a null text.
    static QString toQString(CFStringRef reference);

    /// Lives as long as this object.
    operator CFStringRef() const;
    operator QString() const;

private:
    Q_DISABLE_COPY(QtCFString)

    mutable QString text;
    mutable CFStringRef reference = nullptr;
};
