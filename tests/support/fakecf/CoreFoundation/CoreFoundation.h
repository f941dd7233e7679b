#pragma once

#include <vector>

// The few names of macOS that the string conversions use, standing on a vector,
// so that they can be tested on other platforms.

using UniChar = unsigned short;
using CFIndex = long;
using CFAllocatorRef = const void *;
using CFTypeRef = const void *;

struct FakeString {
    std::vector<UniChar> characters;
    bool hasPointer = true; // whether the characters can be reached directly
};
using CFStringRef = const FakeString *;

struct CFRange {
    CFIndex location;
    CFIndex length;
};

inline CFRange CFRangeMake(CFIndex location, CFIndex length)
{
    return {location, length};
}

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef, const UniChar *characters, CFIndex count);
CFIndex CFStringGetLength(CFStringRef string);
const UniChar *CFStringGetCharactersPtr(CFStringRef string);
void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar *buffer);
void CFRelease(CFTypeRef object);
