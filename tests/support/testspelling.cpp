#include "support/enchantspeller.h"
#include "support/qaspell.h"
#include "support/spellinghighlighter.h"
#include "testing/testmain.h"

#include <QElapsedTimer>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>

#include <limits>

class TestSpelling : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void underlinedWords_data();
    void underlinedWords();
    void underlineIsRedAndWavy();
    void typingSeparatorUnderlines();
    void typingLooksAtChangedBlockOnly();
    void suggestions();
    void firstLanguageWithDictionaryCounts();
    void userLanguageComesFirst();
    void ownWordsAreCorrect();
    void everyWordIsCorrectWithoutDictionary();
    void dictionaryThatVanishes();
    void hostileWords_data();
    void hostileWords();
    void longNoteIsFast();

private:
    static void write(const QString &path, const QByteArray &content);
    static QStringList getUnderlined(const QTextBlock &block);
    static QString getEnchantFolder();
};

void TestSpelling::write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

QString TestSpelling::getEnchantFolder()
{
    return qEnvironmentVariable("XDG_CONFIG_HOME") + "/enchant";
}

/// The underlined parts of a block's text, in order.
QStringList TestSpelling::getUnderlined(const QTextBlock &block)
{
    QStringList result;
    const auto ranges = block.layout()->formats();
    for (const QTextLayout::FormatRange &range : ranges)
        result.append(block.text().mid(range.start, range.length));
    return result;
}

void TestSpelling::initTestCase()
{
    qputenv("ENCHANT_CONFIG_DIR", QFile::encodeName(getEnchantFolder()));
    QVERIFY(QDir().mkpath(getEnchantFolder() + "/hunspell"));
    write(getEnchantFolder() + "/en_US.dic", "Hadukar\n");
    write(getEnchantFolder() + "/hunspell/zz_ZZ.aff", "SET UTF-8\nTRY abcxyz\n");
    write(getEnchantFolder() + "/hunspell/zz_ZZ.dic", "2\nabc\nxyz\n");
    QVERIFY2(EnchantSpeller({"en_US"}).hasDictionary(), "needs the package hunspell-en-us");
}

void TestSpelling::underlinedWords_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("words");

    QTest::newRow("empty block") << "" << QStringList();
    QTest::newRow("correct word") << "bridge " << QStringList();
    QTest::newRow("wrong word, then a blank") << "brigde " << QStringList("brigde");
    QTest::newRow("last word without a separator") << "brigde" << QStringList();
    QTest::newRow("only the last word is left out") << "brigde brigde" << QStringList("brigde");
    QTest::newRow("separators in a row") << "  ,brigde.. ;" << QStringList("brigde");
    QTest::newRow("apostrophe splits") << "qqzx'wwvk" << QStringList("qqzx");
    QTest::newRow("hyphen splits") << "qqzx-wwvk " << QStringList({"qqzx", "wwvk"});
    QTest::newRow("numbers are words") << "1940 " << QStringList();
    QTest::newRow("digits belong to the word") << "bri9de2x " << QStringList("bri9de2x");
    QTest::newRow("letters beyond ASCII")
        << QString::fromUtf8("brügdé ") << QStringList(QString::fromUtf8("brügdé"));
}

void TestSpelling::underlinedWords()
{
    QFETCH(QString, text);
    QFETCH(QStringList, words);
    QTextDocument document(text);
    SpellingHighlighter highlighter(&document);
    QCoreApplication::processEvents();

    QCOMPARE(getUnderlined(document.firstBlock()), words);
}

void TestSpelling::underlineIsRedAndWavy()
{
    QTextDocument document("the brigde fell");
    SpellingHighlighter highlighter(&document);
    QCoreApplication::processEvents();

    const auto formats = document.firstBlock().layout()->formats();
    QCOMPARE(formats.size(), 1);
    QCOMPARE(formats.first().start, 4);
    QCOMPARE(formats.first().length, 6);
    QCOMPARE(formats.first().format.underlineStyle(), QTextCharFormat::SpellCheckUnderline);
    QCOMPARE(formats.first().format.underlineColor(), QColor(Qt::red));
}

void TestSpelling::typingSeparatorUnderlines()
{
    QTextDocument document;
    document.documentLayout(); // without one a document reports no changes
    SpellingHighlighter highlighter(&document);
    QCoreApplication::processEvents(); // the first look comes with the event loop
    QTextCursor cursor(&document);

    cursor.insertText("brigde");
    QCOMPARE(getUnderlined(document.firstBlock()), QStringList());
    cursor.insertText(".");
    QCOMPARE(getUnderlined(document.firstBlock()), QStringList("brigde"));
    cursor.deletePreviousChar();
    QCOMPARE(getUnderlined(document.firstBlock()), QStringList());
}

void TestSpelling::typingLooksAtChangedBlockOnly()
{
    class CountingHighlighter : public SpellingHighlighter
    {
    public:
        using SpellingHighlighter::SpellingHighlighter;
        int blocks = 0;

    protected:
        void highlightBlock(const QString &text) override
        {
            ++blocks;
            SpellingHighlighter::highlightBlock(text);
        }
    };
    QTextDocument document("one \ntwo \nthree \nfour ");
    document.documentLayout();
    CountingHighlighter highlighter(&document);
    QCoreApplication::processEvents();
    QCOMPARE(highlighter.blocks, 4);

    QTextCursor cursor(document.findBlockByNumber(2));
    cursor.insertText("qqzx ");
    QCOMPARE(highlighter.blocks, 5);
    QCOMPARE(getUnderlined(document.findBlockByNumber(2)), QStringList("qqzx"));
}

void TestSpelling::suggestions()
{
    QTextDocument document;
    const SpellingHighlighter highlighter(&document);
    const QASpell *spell = highlighter.getSpell();

    QVERIFY(spell->checkWord("bridge"));
    QVERIFY(!spell->checkWord("brigde"));
    QCOMPARE(spell->getSuggestions("brigde").value(0), QString("bridge"));
    // The checker itself offers this one for itself.
    QVERIFY(!spell->getSuggestions("London").contains("London"));
    QVERIFY(!spell->getSuggestions("London").isEmpty());
    QCOMPARE(spell->getSuggestions("qqqqqqqqqqqqqqqqqqqqqqqqqqqqqq"), QStringList());

    spell->addWord("brigde");
    QVERIFY(!spell->checkWord("brigde"));
}

void TestSpelling::firstLanguageWithDictionaryCounts()
{
    const EnchantSpeller own({"xx_XX", "zz_ZZ", "en_US"});
    QVERIFY(own.isCorrect("xyz"));
    QVERIFY(!own.isCorrect("bridge"));
    QCOMPARE(own.getSuggestions("abcc"), QStringList("abc"));

    const EnchantSpeller fallback({"xx_XX", "not a tag", "en_US"});
    QVERIFY(fallback.isCorrect("bridge"));
    QVERIFY(!fallback.isCorrect("xyz"));
}

void TestSpelling::userLanguageComesFirst()
{
    const QStringList languages = EnchantSpeller::getUserLanguages();

    QCOMPARE(languages.last(), QString("en_US"));
    const QString first = QLocale::system().uiLanguages().first();
    QCOMPARE(languages.first(), QString(first).replace("-", "_"));
}

void TestSpelling::ownWordsAreCorrect()
{
    const EnchantSpeller speller({"en_US"});

    QVERIFY(speller.isCorrect("Hadukar"));
    QVERIFY(!speller.isCorrect("Hadukir"));
}

void TestSpelling::everyWordIsCorrectWithoutDictionary()
{
    for (const QStringList &languages : {QStringList(), QStringList("xx_XX")}) {
        const EnchantSpeller speller(languages);
        QVERIFY(!speller.hasDictionary());
        QVERIFY(speller.isCorrect("qqzx"));
        QVERIFY(speller.isCorrect(""));
        QCOMPARE(speller.getSuggestions("brigde"), QStringList());
    }
}

void TestSpelling::dictionaryThatVanishes()
{
    const EnchantSpeller before({"zz_ZZ"});
    QVERIFY(!before.isCorrect("abd"));
    QVERIFY(QFile::remove(getEnchantFolder() + "/hunspell/zz_ZZ.dic"));
    QVERIFY(QFile::remove(getEnchantFolder() + "/hunspell/zz_ZZ.aff"));

    QVERIFY(before.isCorrect("abc"));
    QVERIFY(!before.isCorrect("abd"));
    QVERIFY(!before.getSuggestions("abd").contains("abd"));
    const EnchantSpeller after({"zz_ZZ"});
    QVERIFY(after.isCorrect("abd"));
}

void TestSpelling::hostileWords_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<bool>("correct");

    QTest::newRow("empty") << QString("") << true;
    QTest::newRow("null") << QString() << true;
    QTest::newRow("zero character") << QString::fromLatin1("ab\0cd", 5) << true;
    QTest::newRow("half a surrogate pair") << QString(QChar(0xd800)) + "qqzx" << false;
    QTest::newRow("beyond the basic plane") << QString::fromUtf8("𝔟𝔯𝔦𝔤𝔡𝔢") << false;
    QTest::newRow("very long") << QString(1000000, 'q') << false;
}

void TestSpelling::hostileWords()
{
    QFETCH(QString, word);
    QFETCH(bool, correct);
    const EnchantSpeller speller({"en_US"});

    QCOMPARE(speller.isCorrect(word), correct);
    QVERIFY(!speller.getSuggestions(word).contains(word));
}

void TestSpelling::longNoteIsFast()
{
    QString text;
    for (int i = 1; i <= 2000; ++i)
        text += QString(i % 7 ? "bridge" : "brigde") + (i % 100 ? " " : " \n");
    QTextDocument document(text);
    document.documentLayout();
    SpellingHighlighter highlighter(&document);
    QCoreApplication::processEvents();
    QTextCursor cursor(document.findBlockByNumber(10));

    qint64 best = std::numeric_limits<qint64>::max();
    for (int i = 0; i < 20; ++i) {
        QElapsedTimer timer;
        timer.start();
        cursor.insertText("x");
        best = qMin(best, timer.nsecsElapsed());
    }
    qDebug() << "a key in a note of 2000 words takes" << best / 1e6 << "ms";
    QVERIFY(best < 10000000);
}

EXAMINER_TEST_MAIN(TestSpelling)
#include "testspelling.moc"
