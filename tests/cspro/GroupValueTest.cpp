#include "cspro/GroupValue_p.h"
#include "support/ProcessorTime.h"
#include "util/EmptyText_p.h"

#include <QRandomGenerator>
#include <QtTest>

using cspro::groupValue;

namespace
{

constexpr double patience = 20; // seconds, far more than the bounded searches take and far less than full ones

// The rule itself: every text is examined, in order.
QString firstThatContains(const QStringList &list, const QString &text)
{
    for (const QString &entry : list) {
        if (entry.contains(text, Qt::CaseSensitive))
            return entry;
    }
    return QString();
}

// The value of the text as a group of the list, or as a text that a subclass names.
QString valueOf(const QStringList &list, const QString &text)
{
    return groupValue(list, list.indexOf(text), text);
}

QString randomText(QRandomGenerator &random, const QString &alphabet, int longest)
{
    QString text;
    for (int size = random.bounded(longest + 1); size > 0; --size)
        text += alphabet.at(random.bounded(alphabet.size()));
    return text;
}

// Every part of every text, the whole and the empty one included.
QStringList partsOf(const QStringList &list)
{
    QStringList parts;
    for (const QString &text : list) {
        for (int begin = 0; begin <= text.size(); ++begin) {
            for (int size = 0; size <= text.size() - begin; ++size)
                parts.append(text.mid(begin, size));
        }
    }
    parts.removeDuplicates();
    return parts;
}

} // namespace

class GroupValueTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void firstTextThatContainsItIsFound_data()
    {
        QTest::addColumn<QStringList>("list");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");

        const QStringList endings = { "abab", "bab", "ab", "b" };
        const QStringList shortFirst = { "b", "ab", "bab", "abab" };
        const QString face = QStringLiteral("\U0001F600");
        const QString otherFace = QStringLiteral("\U0001F601"); // begins with the same half
        // clang-format off
        QTest::newRow("itself only")                << QStringList{"a=1"}                  << "a=1"  << "a=1";
        QTest::newRow("itself among others")        << QStringList{"a=1", "b=2", "c=3"}    << "b=2"  << "b=2";
        QTest::newRow("at the beginning of an earlier one") << QStringList{"a=12", "a=1"}  << "a=1"  << "a=12";
        QTest::newRow("in the middle of an earlier one") << QStringList{"xa=12", "a=1"}    << "a=1"  << "xa=12";
        QTest::newRow("at the end of an earlier one")    << QStringList{"xa=1", "a=1"}     << "a=1"  << "xa=1";
        QTest::newRow("in a later one only")        << QStringList{"a=1", "xa=12"}         << "a=1"  << "a=1";
        QTest::newRow("longer than an earlier one") << QStringList{"a=1", "xa=12"}         << "xa=12" << "xa=12";
        QTest::newRow("the first of several")       << QStringList{"q", "xa", "ya", "a"}   << "a"    << "xa";
        QTest::newRow("one in one in one")          << QStringList{"abcde", "bcd", "c"}    << "c"    << "abcde";
        QTest::newRow("the middle of these")        << QStringList{"abcde", "bcd", "c"}    << "bcd"  << "abcde";
        QTest::newRow("one in one, the outer last") << QStringList{"bcd", "c", "abcde"}    << "c"    << "bcd";
        QTest::newRow("equal texts")                << QStringList{"a", "a", "a"}          << "a"    << "a";
        QTest::newRow("equal texts after a longer one") << QStringList{"ba", "a", "a"}    << "a"    << "ba";
        QTest::newRow("equal longer texts")         << QStringList{"ab", "ab", "b"}        << "b"    << "ab";
        QTest::newRow("overlapping ends: longest")  << endings << "abab" << "abab";
        QTest::newRow("overlapping ends: second")   << endings << "bab"  << "abab";
        QTest::newRow("overlapping ends: third")    << endings << "ab"   << "abab";
        QTest::newRow("overlapping ends: shortest") << endings << "b"    << "abab";
        QTest::newRow("short ones first: shortest") << shortFirst << "b"    << "b";
        QTest::newRow("short ones first: second")   << shortFirst << "ab"   << "ab";
        QTest::newRow("short ones first: third")    << shortFirst << "bab"  << "bab";
        QTest::newRow("short ones first: longest")  << shortFirst << "abab" << "abab";
        QTest::newRow("begun in vain")              << QStringList{"aab", "ab"}            << "ab"   << "aab";
        QTest::newRow("begun in vain twice")        << QStringList{"aaab", "aac", "aab"}   << "aab"  << "aaab";
        QTest::newRow("end of a text that another begins with") << QStringList{"xab", "abc", "b"} << "b" << "xab";
        QTest::newRow("runs of one character")      << QStringList{"aa", "aaaa", "aaa"}    << "aaa"  << "aaaa";
        QTest::newRow("across two texts")           << QStringList{"a", "b", "ab"}         << "ab"   << "ab";
        QTest::newRow("case counts")                << QStringList{"A=1", "a=1"}           << "a=1"  << "a=1";
        QTest::newRow("case counts for letters beyond ASCII")
            << QStringList{QStringLiteral("\u00C4"), QStringLiteral("\u00E4")} << QStringLiteral("\u00E4") << QStringLiteral("\u00E4");
        QTest::newRow("not in the list, part of two") << QStringList{"xab", "yab"}         << "ab"   << "xab";
        QTest::newRow("not in the list, begin of one") << QStringList{"b", "abc"}          << "ab"   << "abc";
        QTest::newRow("not in the list, beginning of one and in an earlier one") << QStringList{"xab", "abc"} << "ab" << "xab";
        QTest::newRow("not in the list, longer than all") << QStringList{"a", "ab"}        << "abc"  << QString();
        QTest::newRow("not in the list, in no text") << QStringList{"a", "b"}              << "c"    << QString();
        QTest::newRow("not in the list, in another case") << QStringList{"AB"}             << "b"    << QString();
        QTest::newRow("empty list")                 << QStringList()                       << "a"    << QString();
        QTest::newRow("empty list, empty text")     << QStringList()                       << ""     << QString();
        QTest::newRow("empty text is in every text") << QStringList{"a", "b"}              << ""     << "a";
        QTest::newRow("empty text among the texts") << QStringList{"a", "", "b"}           << ""     << "a";
        QTest::newRow("after an empty text")        << QStringList{"", "b", "a"}           << "a"    << "a";
        QTest::newRow("texts that are all empty, a text") << QStringList{"", ""}           << "a"    << QString();
        QTest::newRow("blanks count")               << QStringList{"a =1", "a=1 "}         << "a=1"  << "a=1 ";
        QTest::newRow("NUL characters")
            << QStringList{QString("a") + QChar(0) + "b", "b", QString(QChar(0))} << QString(QChar(0)) << QString("a") + QChar(0) + "b";
        QTest::newRow("characters beyond 16 bits")
            << QStringList{"x" + otherFace, "x" + face + "y", face} << face << "x" + face + "y";
        QTest::newRow("half of such a character")
            << QStringList{"a", "x" + face, QString(face.at(0))} << QString(face.at(0)) << "x" + face;
        QTest::newRow("characters of one low byte")
            << QStringList{QString(QChar(0x0141)), "A"} << "A" << "A";
        QTest::newRow("last of 16 bits") << QStringList{QString(QChar(0xFFFF)) + "a", QString(QChar(0xFFFF))}
            << QString(QChar(0xFFFF)) << QString(QChar(0xFFFF)) + "a";
        // clang-format on
    }
    void firstTextThatContainsItIsFound()
    {
        QFETCH(QStringList, list);
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(valueOf(list, text), expected);
        QCOMPARE(firstThatContains(list, text), expected);
    }

    void answerIsEmptyAndNotNullWhereNoTextContainsIt()
    {
        const QList<QStringList> lists = { { "a" }, { "" }, {} };
        for (const QStringList &list : lists) {
            QVERIFY(groupValue(list, 0, "b").isEmpty());
            QVERIFY(!groupValue(list, 0, "b").isNull());
        }
    }

    void emptyTextFirstInTheListMatchesOnlyTheEmptyText()
    {
        const QStringList list = { "", "a" };
        QVERIFY(!valueOf(list, "").isNull());
        QCOMPARE(valueOf(list, ""), QString(""));
        QCOMPARE(valueOf(list, "a"), QString("a"));
    }

    void nullTextIsInEveryText() { QCOMPARE(groupValue({ "a", "b" }, 1, QString()), QString("a")); }

    void randomListsGiveTheResultsOfAScan_data()
    {
        QTest::addColumn<QString>("alphabet");
        QTest::addColumn<int>("longest");
        QTest::addColumn<int>("most");
        QTest::newRow("one character") << "a" << 7 << 6;
        QTest::newRow("two characters, short texts") << "ab" << 4 << 10;
        QTest::newRow("two characters, longer texts") << "ab" << 12 << 8;
        QTest::newRow("three characters") << "abc" << 6 << 12;
        QTest::newRow("names and types") << "A1=" << 8 << 12;
        // Halves of the characters beyond 16 bits, in and out of their pairs.
        QTest::newRow("surrogates") << QStringLiteral("a\U0001F600\U0001F601") << 6 << 8;
    }
    void randomListsGiveTheResultsOfAScan()
    {
        QFETCH(QString, alphabet);
        QFETCH(int, longest);
        QFETCH(int, most);
        constexpr int lists = 600;
        QRandomGenerator random(20240229);
        for (int i = 0; i < lists; ++i) {
            QStringList list;
            for (int size = random.bounded(most + 1); size > 0; --size)
                list.append(randomText(random, alphabet, longest));
            QStringList questions = partsOf(list);
            for (int more = 0; more < 5; ++more)
                questions.append(randomText(random, alphabet, longest + 1));
            for (const QString &text : qAsConst(questions)) {
                const QString question = list.join('|') + " asked for " + text;
                QVERIFY2(valueOf(list, text) == notNull(firstThatContains(list, text)), qPrintable(question));
            }
        }
    }

    // The search for a group ends at the bound. The search for a name that a subclass returns has no bound.
    void searchForAGroupIsBounded_data()
    {
        QTest::addColumn<int>("groupsBefore");
        QTest::addColumn<bool>("isGroup");
        QTest::addColumn<QString>("expected");
        QTest::newRow("many groups before the longer one") << 200 << true << "OLD_HOUSE=12";
        QTest::newRow("as many as no dictionary has") << 3000 << true << "OLD_HOUSE=12";
        QTest::newRow("so many that the bound is reached") << 20000 << true << "HOUSE=1";
        QTest::newRow("so many, and no group") << 20000 << false << "OLD_HOUSE=12";
    }
    void searchForAGroupIsBounded()
    {
        QFETCH(int, groupsBefore);
        QFETCH(bool, isGroup);
        QFETCH(QString, expected);
        QStringList list;
        for (int i = 0; i < groupsBefore; ++i)
            list.append(QStringLiteral("RECORD_OF_THE_SURVEY_WITH_A_LONG_NAME_%1=R").arg(i));
        list += { "OLD_HOUSE=12", "HOUSE=1" };
        QCOMPARE(groupValue(list, isGroup ? list.size() - 1 : 0, "HOUSE=1"), expected);
    }

    // Complete searches would examine half of the list on average: about 10^9 comparisons of texts.
    void longListOfEverShorterTextsIsSearchedQuickly()
    {
        constexpr int count = 100000;
        constexpr int longest = 40;
        QStringList list;
        list.reserve(count);
        for (int i = 0; i < count; ++i) {
            const QString number = QString::number(count - i).rightJustified(6, '0');
            list.append(QString(longest - number.size() - i * 30 / count, '_') + number);
        }
        QCOMPARE(list.first().size(), longest);
        QCOMPARE(list.last().size(), longest - 29);
        const ProcessorTime time;
        int found = 0;
        for (int i = 0; i < count; ++i)
            found += groupValue(list, i, list.at(i)) == list.at(i); // each has a different number
        QCOMPARE(found, count);
        QVERIFY2(time.seconds() < patience, qPrintable(QString::number(time.seconds())));
    }

    // Compared from their ends, these texts differ from each part of a longer text only in their first characters.
    void longTextsThatNearlyFitAreSearchedQuickly()
    {
        constexpr int count = 3000;
        QStringList list;
        for (int i = 0; i < count; ++i)
            list.append(QString::number(i).rightJustified(4, '0') + QString(count - i, 'a'));
        const ProcessorTime time;
        for (int i = 0; i < count; ++i)
            QCOMPARE(groupValue(list, i, list.at(i)), list.at(i));
        QVERIFY2(time.seconds() < patience, qPrintable(QString::number(time.seconds())));
    }
};

QTEST_GUILESS_MAIN(GroupValueTest)
#include "GroupValueTest.moc"
