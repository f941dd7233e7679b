#include "support/enchantspeller.h"
#include "support/qaspell.h"
#include "support/spellinghighlighter.h"
#include "testing/files.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>

class TestSpelling : public QObject
{
    Q_OBJECT

    const QString folder = qEnvironmentVariable("XDG_CONFIG_HOME") + "/enchant";

    static QStringList getUnderlined(const QTextBlock &block)
    {
        QStringList words;
        for (const QTextLayout::FormatRange &range : block.layout()->formats())
            words << block.text().mid(range.start, range.length);
        return words;
    }

private slots:
    void initTestCase()
    {
        qputenv("ENCHANT_CONFIG_DIR", QFile::encodeName(folder));
        QVERIFY(QDir().mkpath(folder + "/hunspell"));
        writeBytes(folder + "/en_US.dic", "Hadukar\n");
        writeBytes(folder + "/hunspell/zz_ZZ.aff", "SET UTF-8\nTRY abcxyz\n");
        writeBytes(folder + "/hunspell/zz_ZZ.dic", "2\nabc\nxyz\n");
        QVERIFY2(EnchantSpeller({"en_US"}).hasDictionary(), "needs the package hunspell-en-us");
    }

    void underlinedWords()
    {
        const struct {
            const char *text;
            QStringList words;
        } rows[] = {
            {"bridge ", {}},
            {"brigde brigde", {"brigde"}}, // the last one may be unfinished
            {"  ,brigde.. ;", {"brigde"}},
            {"qqzx'wwvk", {"qqzx"}},
            {"qqzx-wwvk 1940 bri9de2x ", {"qqzx", "wwvk", "bri9de2x"}},
            {"br\xc3\xbcgd\xc3\xa9 ", {QString::fromUtf8("br\xc3\xbcgd\xc3\xa9")}},
        };
        for (const auto &row : rows) {
            const Row in(row.text);
            QTextDocument document(QString::fromUtf8(row.text));
            SpellingHighlighter highlighter(&document);
            QCoreApplication::processEvents();
            QCOMPARE(getUnderlined(document.firstBlock()), row.words);
        }
    }

    void typingUnderlines()
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
        const auto format = document.firstBlock().layout()->formats().first().format;
        QCOMPARE(format.underlineStyle(), QTextCharFormat::SpellCheckUnderline);
    }

    void suggestions()
    {
        QTextDocument document;
        const SpellingHighlighter highlighter(&document);
        const QASpell *spell = highlighter.getSpell();
        QCOMPARE(spell->getSuggestions("brigde").value(0), QString("bridge"));
        // The checker itself offers this one for itself.
        QVERIFY(!spell->getSuggestions("London").contains("London"));
        QVERIFY(!spell->getSuggestions("London").isEmpty());
        QVERIFY(EnchantSpeller({"en_US"}).isCorrect("Hadukar")); // the user's own
    }

    void firstLanguageWithDictionaryCounts()
    {
        const EnchantSpeller own({"xx_XX", "not a tag", "zz_ZZ", "en_US"});
        QVERIFY(own.isCorrect("xyz") && !own.isCorrect("bridge"));
        QCOMPARE(EnchantSpeller::getUserLanguages().last(), QString("en_US"));
        QVERIFY(QFile::remove(folder + "/hunspell/zz_ZZ.dic"));
        QVERIFY(QFile::remove(folder + "/hunspell/zz_ZZ.aff"));
        QVERIFY(own.isCorrect("xyz") && !own.getSuggestions("abd").contains("abd"));
        for (const QStringList &languages : {QStringList(), QStringList("zz_ZZ")}) {
            const EnchantSpeller none(languages);
            QVERIFY(none.isCorrect("qqzx") && none.getSuggestions("brigde").isEmpty());
        }
    }

    void hostileWords()
    {
        const EnchantSpeller speller({"en_US"});
        for (const QString &word : {QString(), QString::fromLatin1("ab\0cd", 5)})
            QVERIFY(speller.isCorrect(word));
        for (const QString &word : {QString(QChar(0xd800)) + "qqzx", QString(1000000, 'q')}) {
            QVERIFY(!speller.isCorrect(word));
            QVERIFY(!speller.getSuggestions(word).contains(word));
        }
    }
};

EXAMINER_TEST_MAIN(TestSpelling)
#include "testspelling.moc"
