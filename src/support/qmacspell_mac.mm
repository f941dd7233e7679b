#include "support/qmacspell.h"
#include "support/qtcfstring.h"
#include "support/qtmaccocoaautoreleasepool.h"

#import <AppKit/AppKit.h>

namespace {
/// Borrowed: lives as long as the text that it views.
NSString *toNSString(const QtCFString &text)
{
    return (NSString *)CFStringRef(text);
}
} // namespace

bool QMacSpell::checkWord(const QString &word)
{
    const QtMacCocoaAutoReleasePool pool;
    const QtCFString text(word);
    const NSRange range =
        [[NSSpellChecker sharedSpellChecker] checkSpellingOfString:toNSString(text) startingAt:0];
    return range.length == 0;
}

QStringList QMacSpell::getSuggestions(const QString &word)
{
    const QtMacCocoaAutoReleasePool pool;
    const QtCFString text(word);
    QStringList suggestions;
    NSArray *guesses = [[NSSpellChecker sharedSpellChecker] guessesForWord:toNSString(text)];
    for (NSUInteger i = 0; i < [guesses count]; ++i) { // nil counts 0
        const QString guess = QtCFString::toQString((CFStringRef)[guesses objectAtIndex:i]);
        if (guess != word)
            suggestions.append(guess);
    }
    return suggestions;
}
