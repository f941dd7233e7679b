#include "support/qtmaccocoaautoreleasepool.h"

#import <AppKit/AppKit.h>

QtMacCocoaAutoReleasePool::QtMacCocoaAutoReleasePool()
{
    NSApplicationLoad();
    pool = [[NSAutoreleasePool alloc] init];
}

QtMacCocoaAutoReleasePool::~QtMacCocoaAutoReleasePool()
{
    [static_cast<NSAutoreleasePool *>(pool) release];
}
