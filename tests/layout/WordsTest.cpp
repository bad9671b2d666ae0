#include "text/Words_p.h"

#include <QTest>

using namespace vanlayout;

namespace
{

bool hasWordWithPrefix(const QString &words, const QString &prefix)
{
    for (int place = 0; place < words.size(); ++place) {
        if (isWordBegin(words, place) && words.mid(place).startsWith(prefix))
            return true;
    }
    return false;
}

} // namespace

class WordsTest : public QObject
{
    Q_OBJECT

private slots:
    void caseAndAccentsAreIgnored_data();
    void caseAndAccentsAreIgnored();
    void punctuationIsKeptInTheFoldedText();
    void wordsAreSeparatedByOneBlank_data();
    void wordsAreSeparatedByOneBlank();
    void underscoreAndApostropheSeparateWords();
    void wordsAreFoundFromTheirBeginning_data();
    void wordsAreFoundFromTheirBeginning();
    void loneSurrogatesAreNoPartOfWords();
    void aLongTextOfMarksIsFoldedInOnePass();
};

void WordsTest::caseAndAccentsAreIgnored_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("folded");
    // clang-format off
    QTest::newRow("case")                    << "ReLigion"                        << "religion";
    QTest::newRow("accents")                 << "\u00c9l\u00e8ve no\u00ebl \u00c7a \u00f1" << "eleve noel ca n";
    QTest::newRow("accents of their own")    << "E\u0301leve n\u0303"             << "eleve n";
    QTest::newRow("several accents")         << "Vi\u1ec7t Nam \u1ea4"            << "viet nam a";
    QTest::newRow("letters with a stroke")   << "\u00d8\u0141\u0110\u0126\u0166"  << "oldht";
    QTest::newRow("sharp s")                 << "Stra\u00dfe \u1e9e"              << "strasse ss";
    QTest::newRow("ligatures")               << "\u00c6\u0153\ufb01"              << "aeoefi";
    QTest::newRow("Icelandic")               << "\u00de\u00f0"                    << "thd";
    QTest::newRow("Turkish")                 << "\u0130I\u0131\u015e"             << "iiis";
    QTest::newRow("letters with a hook")     << "\u0253\u0257\u0199\u014b\u0254\u025b" << "bdknoe";
    QTest::newRow("Cyrillic")                << "\u0420\u0415\u041b\u0418\u0413\u0418\u042f \u0451" << "\u0440\u0435\u043b\u0438\u0433\u0438\u044f \u0435";
    QTest::newRow("Greek final sigma")       << "\u039b\u03cc\u03b3\u03bf\u03c2"  << "\u03bb\u03bf\u03b3\u03bf\u03c3";
    QTest::newRow("Arabic points")           << "\u0639\u064f\u0645\u064f\u0631"  << "\u0639\u0645\u0631";
    QTest::newRow("Arabic alef with hamza")  << "\u0623\u0628"                    << "\u0627\u0628";
    QTest::newRow("wide Arabic word")        << "\u0639\u0640\u0640\u0645"        << "\u0639\u0645";
    QTest::newRow("Hebrew points")           << "\u05d2\u05bc\u05b4\u05d9\u05dc"  << "\u05d2\u05d9\u05dc";
    QTest::newRow("vowel signs of Hindi")    << "\u0927\u0930\u094d\u092e \u0909\u092e\u094d\u0930" << "\u0927\u0930\u094d\u092e \u0909\u092e\u094d\u0930";
    QTest::newRow("Hangul syllable")         << "\uac01"                          << "\uac01";
    QTest::newRow("wide forms")              << "\uff21\uff19"                    << "a9";
    QTest::newRow("Arabic digits")           << "\u0669\u0668 \u06f5"             << "98 5";
    QTest::newRow("digits beyond the BMP")   << QString::fromUtf8("\xf0\x9d\x9f\x97") << "9";
    QTest::newRow("letters beyond the BMP")  << QString::fromUtf8("\xf0\x90\x90\x80") << QString::fromUtf8("\xf0\x90\x90\xa8");
    QTest::newRow("typographic apostrophes") << "l\u2019eau \u2018a\u02bc `b\u00b4 \uff07" << "l'eau 'a' 'b' '";
    QTest::newRow("invisible characters")    << "re\u00adli\u200bgion\ufeff\u200f" << "religion";
    QTest::newRow("empty")                   << ""                                << "";
    // clang-format on
}

void WordsTest::caseAndAccentsAreIgnored()
{
    QFETCH(QString, text);
    QFETCH(QString, folded);
    QCOMPARE(foldedText(text), folded);
}

void WordsTest::punctuationIsKeptInTheFoldedText()
{
    QCOMPARE(foldedText(QStringLiteral("< 5, (A-B)  \u00ab\u00c9\u00bb_\u201cx\u201d")),
             QStringLiteral("< 5, (a-b)  \u00abe\u00bb_\u201cx\u201d"));
}

void WordsTest::wordsAreSeparatedByOneBlank_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("words");
    // clang-format off
    QTest::newRow("punctuation")               << "  Water - (piped,\tnot shared)?" << "water piped not shared";
    QTest::newRow("underscore")                << "HH_SIZE _x"                 << "hh_size _x";
    QTest::newRow("apostrophe in a word")      << "Source de l\u2019eau"       << "source de l'eau";
    QTest::newRow("apostrophe at the end")     << "parents' age"               << "parents age";
    QTest::newRow("words in quotes")           << "'yes' or \u2018no\u2019"    << "yes or no";
    QTest::newRow("two apostrophes")           << "a''b"                       << "a b";
    QTest::newRow("apostrophe and underscore") << "a_'b'_c"                    << "a_ b _c";
    QTest::newRow("control characters")        << "a\u001b[31mb"        << "a 31mb";
    QTest::newRow("line break")                << "a\nb\u2028c"                << "a b c";
    QTest::newRow("only punctuation")          << "?! -- '"                    << "";
    QTest::newRow("fraction")                  << "1\u00bd"                    << "11 2";
    QTest::newRow("Arabic")                    << "\u0627\u0644\u062f\u064a\u0646\u061f \u0646\u0639\u0645\u060c" << "\u0627\u0644\u062f\u064a\u0646 \u0646\u0639\u0645";
    // clang-format on
}

void WordsTest::wordsAreSeparatedByOneBlank()
{
    QFETCH(QString, text);
    QFETCH(QString, words);
    QCOMPARE(foldedWords(text), words);
}

void WordsTest::underscoreAndApostropheSeparateWords()
{
    QCOMPARE(wordsOf(QStringLiteral("l\u2019\u00c9t\u00e9_2, Q_")), QStringList({ "l", "ete", "2", "q" }));
    QCOMPARE(wordsOf(QStringLiteral(" - ")), QStringList());
}

void WordsTest::wordsAreFoundFromTheirBeginning_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<bool>("isFound");
    // clang-format off
    QTest::newRow("whole word")                << "Mother tongue"   << "tongue"  << true;
    QTest::newRow("beginning of a word")       << "Mother tongue"   << "tong"    << true;
    QTest::newRow("middle of a word")          << "Mother tongue"   << "other"   << false;
    QTest::newRow("middle, then beginning")    << "Another other"   << "other"   << true;
    QTest::newRow("longer than the word")      << "Mother"          << "mothers" << false;
    QTest::newRow("part of a name")            << "HH_SIZE"         << "siz"     << true;
    QTest::newRow("whole name")                << "HH_SIZE"         << "hh_si"   << true;
    QTest::newRow("digit after a letter")      << "P309"            << "309"     << false;
    QTest::newRow("after an apostrophe")       << "Source d'eau"    << "eau"     << true;
    QTest::newRow("with the apostrophe")       << "Source d\u2019eau" << "d'e"   << true;
    QTest::newRow("Chinese")                   << "\u60a8\u7684\u5b97\u6559\u4fe1\u4ef0" << "\u5b97\u6559" << true;
    QTest::newRow("Chinese after a letter")    << "Q\u5b97\u6559"   << "\u5b97"  << true;
    QTest::newRow("letter after Chinese")      << "\u5b97q"         << "q"       << true;
    QTest::newRow("Thai")                      << "\u0e28\u0e32\u0e2a\u0e19\u0e32\u0e02\u0e2d\u0e07\u0e04\u0e38\u0e13" << "\u0e02\u0e2d\u0e07" << true;
    QTest::newRow("middle of a Cyrillic word") << "\u0440\u0435\u043b\u0438\u0433\u0438\u044f" << "\u043b\u0438\u0433" << false;
    QTest::newRow("middle of a Korean word")   << "\uc885\uad50"    << "\uad50"  << false;
    QTest::newRow("letter beyond the BMP")     << QString::fromUtf8("\xf0\x90\x90\xa8x") << "x" << false;
    // clang-format on
}

void WordsTest::wordsAreFoundFromTheirBeginning()
{
    QFETCH(QString, text);
    QFETCH(QString, prefix);
    QFETCH(bool, isFound);
    QCOMPARE(hasWordWithPrefix(foldedWords(text), prefix), isFound);
}

void WordsTest::loneSurrogatesAreNoPartOfWords()
{
    const QString text = QStringLiteral("a") + QChar(0xD800) + QStringLiteral("b") + QChar(0xDC00);
    QCOMPARE(foldedWords(text), QStringLiteral("a b"));
    QCOMPARE(foldedText(text).size(), 4);
}

void WordsTest::aLongTextOfMarksIsFoldedInOnePass()
{
    QString text(QStringLiteral("a"));
    for (int i = 0; i < 200000; ++i)
        text += QChar(i % 2 == 0 ? 0x0301 : 0x0323);
    QCOMPARE(foldedWords(text), QStringLiteral("a"));
}

QTEST_APPLESS_MAIN(WordsTest)
#include "WordsTest.moc"
