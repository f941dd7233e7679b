#pragma once

#include <QtGlobal>

/// Frees what Cocoa calls leave behind when its scope ends.
class QtMacCocoaAutoReleasePool
{
public:
    QtMacCocoaAutoReleasePool();
    ~QtMacCocoaAutoReleasePool();

private:
    Q_DISABLE_COPY(QtMacCocoaAutoReleasePool)

    void *pool; // an NSAutoreleasePool, which plain C++ can't name
};
