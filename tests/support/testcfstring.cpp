#include "support/qtcfstring.h"
#include "testing/testmain.h"

namespace
{
int created = 0;
int alive = 0;
int copied = 0;

FakeString *makeString(const QString &text, bool hasPointer)
{
    auto *string = new FakeString;
    for (const QChar &character : text)
        string->characters.push_back(character.unicode());
    string->hasPointer = hasPointer;
    ++alive;
    return string;
}
} // namespace

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef, const UniChar *characters, CFIndex count)
{
    ++created;
    ++alive;
    return new FakeString{{characters, characters + count}, true};
}

CFIndex CFStringGetLength(CFStringRef string)
{
    return CFIndex(string->characters.size());
}

const UniChar *CFStringGetCharactersPtr(CFStringRef string)
{
    return string->hasPointer ? string->characters.data() : nullptr;
}

void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar *buffer)
{
    ++copied;
    const auto first = string->characters.begin() + range.location;
    std::copy(first, first + range.length, buffer);
}

void CFRelease(CFTypeRef object)
{
    --alive;
    delete static_cast<CFStringRef>(object);
}

/// The conversions between the two kinds of string, on a stand-in for macOS.
class TestCFString : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void roundTrip_data();
    void roundTrip();
    void nullReferenceGivesNullText();
    void referenceIsMadeOnce();
    void textIsMadeOnce();
    void staticConversionLeavesReference();
};

void TestCFString::init()
{
    created = alive = copied = 0;
}

void TestCFString::cleanup()
{
    QCOMPARE(alive, 0);
}

void TestCFString::roundTrip_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("hasPointer");
    QTest::addColumn<int>("copies");

    QTest::newRow("direct") << "brigde" << true << 0;
    QTest::newRow("direct, long") << QString(1000, 'a') << true << 0;
    QTest::newRow("copied") << "brigde" << false << 1;
    QTest::newRow("copied, the last that fits the stack") << QString(256, 'a') << false << 1;
    QTest::newRow("copied, the first beyond the stack") << QString(257, 'a') << false << 1;
    QTest::newRow("copied, long") << QString(100000, 'a') << false << 1;
    QTest::newRow("beyond ASCII") << QString::fromUtf8("Brücke 橋 🌉") << false << 1;
    QTest::newRow("a zero inside") << QString::fromLatin1("a\0b", 3) << false << 1;
}

void TestCFString::roundTrip()
{
    QFETCH(QString, text);
    QFETCH(bool, hasPointer);
    QFETCH(int, copies);

    const QtCFString out(text);
    const CFStringRef made = out;
    QCOMPARE(QtCFString::toQString(made), text);

    const QtCFString back(makeString(text, hasPointer));
    QCOMPARE(QString(back), text);
    QCOMPARE(copied, copies);
}

void TestCFString::nullReferenceGivesNullText()
{
    QVERIFY(QtCFString::toQString(nullptr).isNull());
    QVERIFY(QString(QtCFString()).isNull());
}

void TestCFString::referenceIsMadeOnce()
{
    const QtCFString string(QString("word"));
    QCOMPARE(created, 0);
    const CFStringRef first = string;
    const CFStringRef second = string;

    QCOMPARE(first, second);
    QCOMPARE(created, 1);
}

void TestCFString::textIsMadeOnce()
{
    const QtCFString string(makeString("word", false));
    QCOMPARE(QString(string), QString("word"));
    QCOMPARE(QString(string), QString("word"));

    QCOMPARE(copied, 1);
}

void TestCFString::staticConversionLeavesReference()
{
    const CFStringRef string = QtCFString::toCFStringRef("word");
    QtCFString::toQString(string);

    QCOMPARE(alive, 1);
    CFRelease(string);
}

EXAMINER_TEST_MAIN(TestCFString)
#include "testcfstring.moc"
