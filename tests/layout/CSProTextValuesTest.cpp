#include "read/CSProTextValues_p.h"

#include <QTest>

#include <limits>

using namespace vanlayout;
using namespace vanlayout::csprotext;

namespace
{

constexpr int maxInt = std::numeric_limits<int>::max();
constexpr int minInt = std::numeric_limits<int>::min();

std::string_view viewOf(const QByteArray &bytes)
{
    return { bytes.constData(), size_t(bytes.size()) };
}

QByteArray bytesOf(std::string_view view)
{
    return QByteArray(view.data(), int(view.size()));
}

// Codes as `from` or `from..to`.
QStringList textsOf(const QVector<Range> &ranges)
{
    QStringList texts;
    for (const Range &range : ranges)
        texts.append(range.to.isEmpty() ? range.from : range.from + ".." + range.to);
    return texts;
}

// Parts as `language:text`.
QStringList textsOf(const Labels &labels)
{
    QStringList texts;
    for (const Label &part : labels.parts)
        texts.append(part.language + ':' + part.text);
    return texts;
}

const QVector<Language> englishAndFrench = { { "EN", "English" }, { "FR", "Français" } };

} // namespace

class CSProTextValuesTest : public QObject
{
    Q_OBJECT

private slots:
    void numbersAreTheLeadingDigits_data();
    void numbersAreTheLeadingDigits();
    void yesBeginsWithY_data();
    void yesBeginsWithY();
    void tokenIsTheFirstWordOrTheTextInMarks_data();
    void tokenIsTheFirstWordOrTheTextInMarks();
    void labelPartsHaveTheLanguagesInOrder_data();
    void labelPartsHaveTheLanguagesInOrder();
    void notePiecesEndInABlankOrALineFeed_data();
    void notePiecesEndInABlankOrALineFeed();
    void codesArePartedByBlanksAndColons_data();
    void codesArePartedByBlanksAndColons();
    void numericCodesAreRecognised_data();
    void numericCodesAreRecognised();
    void valueLinesAreCutAtTheFirstSemicolon_data();
    void valueLinesAreCutAtTheFirstSemicolon();
    void occurrenceLinesAreCutAtTheFirstCommaOrColon_data();
    void occurrenceLinesAreCutAtTheFirstCommaOrColon();
    void textForAMessageIsShortAndOnOneLine_data();
    void textForAMessageIsShortAndOnOneLine();
};

void CSProTextValuesTest::numbersAreTheLeadingDigits_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("value");
    QTest::addColumn<bool>("isWhole");
    const auto row = [](const char *text, int value, bool isWhole) {
        QTest::newRow(*text ? text : "nothing") << QByteArray(text) << value << isWhole;
    };
    row("0", 0, true);
    row("12", 12, true);
    row("007", 7, true);
    row("+5", 5, true);
    row("-3", -3, true);
    row("", 0, false);
    row("-", 0, false);
    row("x", 0, false);
    row("12x", 12, false);
    row("1 2", 1, false);
    row("3.5", 3, false);
    row("+-3", 0, false);
    row("2147483647", maxInt, true);
    row("2147483648", maxInt, true);
    row("-2147483648", minInt, true);
    row("-2147483649", minInt, true);
    row("99999999999999999999999999", maxInt, true);
    row("-99999999999999999999999999x", minInt, false);
}

void CSProTextValuesTest::numbersAreTheLeadingDigits()
{
    QFETCH(QByteArray, text);
    const Number number = numberOf(viewOf(text));
    QTEST(number.value, "value");
    QTEST(number.isWhole, "isWhole");
}

void CSProTextValuesTest::yesBeginsWithY_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("isYes");
    for (const char *text : { "Yes", "yes", "Y", "y", "Yellow" })
        QTest::newRow(text) << QByteArray(text) << true;
    for (const char *text : { "No", "no", "1", "true", "" })
        QTest::newRow(*text ? text : "nothing") << QByteArray(text) << false;
}

void CSProTextValuesTest::yesBeginsWithY()
{
    QFETCH(QByteArray, text);
    QTEST(isYes(viewOf(text)), "isYes");
}

void CSProTextValuesTest::tokenIsTheFirstWordOrTheTextInMarks_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("token");
    const auto row = [](const char *text, const char *token) {
        QTest::newRow(*text ? text : "nothing") << QByteArray(text) << QByteArray(token);
    };
    row("", "");
    row("A", "A");
    row("A B", "A");
    row("A,B", "A");
    row("A\tB", "A");
    row(" , ,A", "A");
    row(",", "");
    row("'A B,C'D", "A B,C");
    row("\"it's\" x", "it's");
    row("'open", "open");
    row("'  '", "  ");
    row("''", "");
    row("A'B'", "A'B'");
    row("MISSING,Special", "MISSING");
}

void CSProTextValuesTest::tokenIsTheFirstWordOrTheTextInMarks()
{
    QFETCH(QByteArray, text);
    QTEST(bytesOf(tokenOf(viewOf(text))), "token");
}

void CSProTextValuesTest::labelPartsHaveTheLanguagesInOrder_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("withLanguages");
    QTest::addColumn<QStringList>("without");
    const auto row = [](const char *text, const QStringList &withLanguages, const QStringList &without) {
        QTest::newRow(*text ? text : "nothing") << QByteArray(text) << withLanguages << without;
    };
    row("House", { "EN:House" }, { ":House" });
    row("House|Maison", { "EN:House", "FR:Maison" }, { ":House", ":Maison" });
    row("a|b|c", { "EN:a", "FR:b", ":c" }, { ":a", ":b", ":c" });
    row(" a | b ", { "EN: a ", "FR: b " }, { ": a ", ": b " });
    row("", {}, {});
    row(" ", { "EN: " }, { ": " });
    row("|", { "EN:", "FR:" }, { ":", ":" });
    row("|b", { "EN:", "FR:b" }, { ":", ":b" });
    row("a||", { "EN:a", "FR:", ":" }, { ":a", ":", ":" });
    row("a|a", { "EN:a", "FR:a" }, { ":a", ":a" });
    row("a;b=c", { "EN:a;b=c" }, { ":a;b=c" });
}

void CSProTextValuesTest::labelPartsHaveTheLanguagesInOrder()
{
    QFETCH(QByteArray, text);
    QTEST(textsOf(labelsOf(viewOf(text), englishAndFrench)), "withLanguages");
    QTEST(textsOf(labelsOf(viewOf(text), {})), "without");
}

void CSProTextValuesTest::notePiecesEndInABlankOrALineFeed_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("piece");
    const auto row = [](const char *name, const char *text, const char *piece) {
        QTest::newRow(name) << QByteArray(text) << QString::fromUtf8(piece);
    };
    row("nothing", "", "");
    row("text", "a", "a ");
    row("four characters at the end", "a\\r\\n", "a\n");
    row("four characters within", "a\\r\\nb", "a\nb ");
    row("four characters at the beginning", "\\r\\na", "\na ");
    row("twice", "\\r\\n\\r\\n", "\n\n");
    row("half of them", "a\\r b\\n", "a\\r b\\n ");
    row("tilde at the beginning", "~a", " a ");
    row("only one tilde", "~~a~", " ~a~ ");
    row("tilde only", "~", "  ");
    row("tilde after the line feed", "\\r\\n~a", "\n~a ");
    row("bar is no sign here", "a|b", "a|b ");
}

void CSProTextValuesTest::notePiecesEndInABlankOrALineFeed()
{
    QFETCH(QByteArray, text);
    QTEST(notePieceOf(viewOf(text)), "piece");
}

void CSProTextValuesTest::codesArePartedByBlanksAndColons_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("codes");
    const auto row = [](const char *text, const QStringList &codes) {
        QTest::newRow(*text ? text : "nothing") << QByteArray(text) << codes;
    };
    row("1", { "1" });
    row("0:99", { "0..99" });
    row("212:213 216  218 220:235", { "212..213", "216", "218", "220..235" });
    row("-99", { "-99" });
    row("-999:999", { "-999..999" });
    row("1.00:40.00", { "1.00..40.00" });
    row("0,000:9999,000", { "0,000..9999,000" });
    row("1 : 3", { "1", "3" });
    row("1: 3", { "1", "3" });
    row("1 :3", { "1", "3" });
    row(":5", { "5" });
    row("1:2:3", { "1..2:3" });
    row("1\t2", { "1", "2" });
    row("", {});
    row(" : : ", {});
    row("''", {});
    row("'' 1", { "1" });
    row("'':5", { "..5" });
    row("'A b  '", { "A b  " });
    row("'    '", { "    " });
    row("\"it's\"", { "it's" });
    row("'say \"'", { "say \"" });
    row("'A':'C'", { "A..C" });
    row("'A':C", { "A..C" });
    row("1:'C d' 2", { "1..C d", "2" });
    row("'A''B'", { "A", "B" });
    row("'A'B", { "A", "B" });
    row("A'B'", { "A'B'" });
    row("'open end", { "open end" });
    row("'a:b'", { "a:b" });
    row("'A' 10 'C':20", { "A", "10", "C..20" });
}

void CSProTextValuesTest::codesArePartedByBlanksAndColons()
{
    QFETCH(QByteArray, text);
    QTEST(textsOf(codesOf(viewOf(text)).ranges), "codes");
}

void CSProTextValuesTest::numericCodesAreRecognised_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("areNumbers");
    for (const char *text : { "1", "01", "-99", "1.5", "1,5", ".5", "5.", "-999:999", "'  '", "' 1 '", "1 2 3:4", "" })
        QTest::newRow(*text ? text : "nothing") << QByteArray(text) << true;
    for (const char *text : { "a", "1a", "1.5.5", "1,5.5", "+1", "1e3", "-", ".", "1:a", "a:1", "1 a", "'1 2'", "'?'" })
        QTest::newRow(text) << QByteArray(text) << false;
}

void CSProTextValuesTest::numericCodesAreRecognised()
{
    QFETCH(QByteArray, text);
    QTEST(codesOf(viewOf(text)).areNumbers, "areNumbers");
}

void CSProTextValuesTest::valueLinesAreCutAtTheFirstSemicolon_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("codes");
    QTest::addColumn<QByteArray>("label");
    const auto row = [](const char *text, const char *codes, const char *label) {
        QTest::newRow(*text ? text : "nothing") << QByteArray(text) << QByteArray(codes) << QByteArray(label);
    };
    row("", "", "");
    row("1", "1", "");
    row("1;Yes", "1", "Yes");
    row("1;a;b", "1", "a;b");
    row("1; a", "1", " a");
    row(";a", "", "a");
    row("'A;B';c", "'A", "B';c");
}

void CSProTextValuesTest::valueLinesAreCutAtTheFirstSemicolon()
{
    QFETCH(QByteArray, text);
    const ValueLine line = valueLineOf(viewOf(text));
    QTEST(bytesOf(line.codes), "codes");
    QTEST(bytesOf(line.label), "label");
}

void CSProTextValuesTest::occurrenceLinesAreCutAtTheFirstCommaOrColon_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("occurrence");
    QTest::addColumn<QByteArray>("label");
    const auto row = [](const char *text, int occurrence, const char *label) {
        QTest::newRow(*text ? text : "nothing") << QByteArray(text) << occurrence << QByteArray(label);
    };
    row("1,Monday|Lundi", 1, "Monday|Lundi");
    row("12:Monday, early", 12, "Monday, early");
    row("3,", 3, "");
    row("2, a", 2, " a");
    row("2 ,a", 2, "a");
    row("3", 0, "");
    row("", 0, "");
    row("0,a", 0, "a");
    row("x,a", 0, "a");
    row("-1,a", -1, "a");
    row(",1,a", 0, "");
    row(",1", 0, "");
    row("99999999999,a", maxInt, "a");
}

void CSProTextValuesTest::occurrenceLinesAreCutAtTheFirstCommaOrColon()
{
    QFETCH(QByteArray, text);
    const OccurrenceLine line = occurrenceLineOf(viewOf(text));
    QTEST(line.occurrence, "occurrence");
    if (line.occurrence >= 1)
        QTEST(bytesOf(line.label), "label");
}

void CSProTextValuesTest::textForAMessageIsShortAndOnOneLine_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("shownText");
    QTest::newRow("nothing") << QByteArray() << "\"\"";
    QTest::newRow("control characters") << QByteArray("a\tb\0c\rd", 7) << "\"a b c d\"";
    QTest::newRow("40 characters") << QByteArray(40, 'x') << "\"" + QString(40, 'x') + "\"";
    QTest::newRow("41 characters") << QByteArray(41, 'x') << "\"" + QString(40, 'x') + "...\"";
    QTest::newRow("half a pair is not left") << QByteArray("x") + QByteArray("\xF0\x9D\x84\x9E").repeated(40)
                                             << "\"x" + QString::fromUtf8("\xF0\x9D\x84\x9E").repeated(19) + "...\"";
    QTest::newRow("of several bytes") << QByteArray("é").repeated(1000) << "\"" + QString(40, QChar(0xE9)) + "...\"";
}

void CSProTextValuesTest::textForAMessageIsShortAndOnOneLine()
{
    QFETCH(QByteArray, text);
    QTEST(shown(viewOf(text)), "shownText");
}

QTEST_APPLESS_MAIN(CSProTextValuesTest)
#include "CSProTextValuesTest.moc"
