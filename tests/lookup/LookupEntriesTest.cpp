#include "lookup/LookupEntries_p.h"

#include <QSet>
#include <QStringList>
#include <QtTest>

#include <algorithm>
#include <initializer_list>
#include <random>

namespace
{

using Pairs = std::map<QString, QString>;

QString textOf(std::initializer_list<ushort> units)
{
    QString text;
    for (const ushort unit : units)
        text += QChar(unit);
    return text;
}

/// Adds each key, with its position as its value, to the entries and to a standard map.
struct Filled {
    explicit Filled(const QStringList &keys)
    {
        for (int i = 0; i < keys.size(); ++i) {
            const QString value = QString::number(i);
            const bool isNew = expected.emplace(keys.at(i), value).second;
            agrees = entries.add(keys.at(i), value) == isNew && agrees;
        }
        entries.moveTo(map);
    }
    lookup::Entries entries;
    Pairs map;
    Pairs expected;
    bool agrees = true; ///< each result was that of the map
};

/// A map of the caller. It frees its ints and those that replaced them.
class CallersMap
{
public:
    ~CallersMap()
    {
        keep();
        for (const int *number : numbers)
            delete number;
    }
    int *put(const QString &text, int number)
    {
        map[text] = new int(number);
        keep();
        return map[text];
    }
    /// Counts keys and values, "key value" each, as one check.
    void count(const QStringList &pairs)
    {
        lookup::Frequencies counted(map);
        for (const QString &pair : pairs) {
            const QString key = pair.section(' ', 0, 0);
            counted.count(key, pair.section(' ', 1));
            keep();
        }
    }
    QStringList texts() const
    {
        QStringList list;
        for (const auto &entry : map)
            list.append(entry.first + '=' + QString::number(*entry.second));
        return list;
    }
    /// Returns the total number of ints that have been in the map.
    int numbersMade() const { return int(numbers.size()); }

    std::map<QString, int *> map;

private:
    void keep()
    {
        for (const auto &entry : map)
            numbers.insert(entry.second);
    }

    QSet<int *> numbers;
};

} // namespace

/// Tests the data that a check keeps while it reads: entries, their index, frequencies.
class LookupEntriesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hashIsThatOfTheCharacters()
    {
        for (int size = 0; size < 20; ++size) { // whole words of memory, and parts of one
            const QString text = QString("abcdefghijklmnopqrstuvwxyz").left(size);
            const QString other = QString(" abcdefghijklmnopqrstuvwxyz").mid(1, size); // the same text in other memory
            QCOMPARE(lookup::hashOf(text), lookup::hashOf(other));
        }
        QCOMPARE(lookup::hashOf(QString()), lookup::hashOf(QString("")));
    }

    void hashesOfLikeTextsDiffer()
    {
        QSet<quint32> hashes;
        constexpr int count = 10000;
        for (int i = 0; i < count; ++i)
            hashes.insert(lookup::hashOf(QString::number(i)));
        for (int size = 1; size <= 100; ++size)
            hashes.insert(lookup::hashOf(QString(size, QChar(ushort(0)))));
        // With 32 bits, a few of them may be equal by chance.
        QVERIFY2(hashes.size() > count + 100 - 5, qPrintable(QString::number(hashes.size())));
    }

    void emptyIndexFindsNothing()
    {
        const lookup::TextIndex index;
        for (const quint32 hash : { 0U, 1U, 1023U, 1024U, 0xFFFFFFFFU })
            QCOMPARE(index.find(hash, [](int /*number*/) { return true; }), -1);
    }

    void indexKeepsAllAsItGrows_data()
    {
        QTest::addColumn<int>("count");
        for (const int count : { 1, 511, 512, 513, 1024, 1025, 100000 }) // it grows when it is half full
            QTest::addRow("%d", count) << count;
    }
    void indexKeepsAllAsItGrows()
    {
        QFETCH(int, count);
        const auto hashOfNumber = [](int number) { return quint32(number) * 2654435761U; };
        lookup::TextIndex index;
        for (int i = 0; i < count; ++i)
            index.add(hashOfNumber(i), i);
        int found = 0;
        for (int i = 0; i < count; ++i)
            found += index.find(hashOfNumber(i), [i](int number) { return number == i; }) == i;
        QCOMPARE(found, count);
        QCOMPARE(index.find(hashOfNumber(count), [](int /*number*/) { return true; }), -1);
    }

    void indexContinuesAtItsBeginning()
    {
        lookup::TextIndex index;
        constexpr quint32 last = 0xFFFFFFFFU; // belongs to the last place at every size
        for (int i = 0; i < 400; ++i)
            index.add(last, i);
        for (int i = 0; i < 400; ++i)
            QCOMPARE(index.find(last, [i](int number) { return number == i; }), i);
        QCOMPARE(index.find(0, [](int /*number*/) { return true; }), -1); // of this hash there is none
    }

    void onlyNumbersOfTheHashAreAskedAbout()
    {
        lookup::TextIndex index;
        for (int i = 0; i < 300; ++i)
            index.add(quint32(i % 3) << 20, i); // all in one place of a small index
        int asked = 0;
        QCOMPARE(index.find(1U << 20,
                            [&](int number) {
                                ++asked;
                                return number % 3 != 1;
                            }),
                 -1);
        QCOMPARE(asked, 100);
    }

    void entriesAreOrderedAsInAMap_data()
    {
        QTest::addColumn<QStringList>("keys");
        const QString far
            = textOf({ 0xD83D, 0xDE00 }); // a pair of surrogates: less than U+E000 in the order of characters
        const QString nul = textOf({ 0 });
        QStringList numbers;
        for (int i = 0; i < 3000; ++i)
            numbers.append(QString::number(i)); // "10" is below "2": they ascend only for a while
        const QStringList falling(numbers.crbegin(), numbers.crend());
        const QString head = QString(300, 'k');

        QTest::newRow("none") << QStringList();
        QTest::newRow("one") << QStringList("a");
        QTest::newRow("empty key") << QStringList{ "", "", "a", "" };
        QTest::newRow("null and empty are one") << QStringList{ QString(), QString("") };
        QTest::newRow("ascending") << QStringList{ "a", "ab", "abc", "b" };
        QTest::newRow("ascending, the last again") << QStringList{ "a", "b", "b", "b", "c", "c" };
        QTest::newRow("ascending, an earlier again") << QStringList{ "a", "b", "a", "c", "a", "b" };
        QTest::newRow("falls at the end") << QStringList{ "b", "c", "d", "a" };
        QTest::newRow("falling") << falling;
        QTest::newRow("numbers") << numbers;
        QTest::newRow("numbers twice") << numbers + falling;
        QTest::newRow("eight characters in common") << QStringList{ "12345678z", "12345678", "12345678a", "1234567" };
        QTest::newRow("NUL and the end") << QStringList{ "a" + nul, "a", "a" + nul + nul, nul, "", "a" + nul + "b" };
        QTest::newRow("last of Latin-1") << QStringList{ textOf({ 0xFF, 'b' }), textOf({ 0xFF }), textOf({ 0xFE }),
                                                         textOf({ 'a', 0xFF }), "a" };
        QTest::newRow("first beyond Latin-1")
            << QStringList{ textOf({ 0x100 }), textOf({ 0xFF }), textOf({ 'a', 0x100 }), "ab", "a" };
        QTest::newRow("four characters in common beyond Latin-1")
            << QStringList{ textOf({ 0x3B1, 0x3B2, 0x3B3, 0x3B4, 'z' }), textOf({ 0x3B1, 0x3B2, 0x3B3, 0x3B4, 'a' }),
                            textOf({ 0x3B1, 0x3B2, 0x3B3, 0x3B4 }), textOf({ 0x3B1, 0x3B2, 0x3B3 }) };
        QTest::newRow("surrogates") << QStringList{ textOf({ 0xE000 }), far,       textOf({ 0xFFFF }),
                                                    textOf({ 0xD7FF }), far + 'a', far };
        QTest::newRow("half a pair") << QStringList{ textOf({ 0xDE00 }), textOf({ 0xD83D }), far,
                                                     textOf({ 0xD83D, 'a' }) };
        QTest::newRow("case is significant") << QStringList{ "b", "B", "a", "A", "b" };
        QTest::newRow("long") << QStringList{ head + 'b', head + 'a', head, head + 'b', QString(100000, 'k'), "k" };
    }
    void entriesAreOrderedAsInAMap()
    {
        QFETCH(QStringList, keys);
        const Filled filled(keys);
        QVERIFY(filled.agrees);
        // Compares entry by entry: a map that was filled in a wrong order would not find its own keys.
        QVERIFY(std::equal(filled.map.begin(), filled.map.end(), filled.expected.begin(), filled.expected.end()));
        for (const auto &entry : filled.expected) {
            const auto found = filled.map.find(entry.first);
            QVERIFY(found != filled.map.end());
            QCOMPARE(found->second, entry.second);
        }
    }

    void randomKeysAreOrderedAsInAMap_data()
    {
        QTest::addColumn<QString>("alphabet");
        QTest::addColumn<int>("longest");
        QTest::newRow("few short ones") << "ab" << 3;
        QTest::newRow("many alike") << "aab" << 20;
        QTest::newRow("Latin-1") << textOf({ 0, 1, 'a', 0x7F, 0x80, 0xFE, 0xFF }) << 12;
        QTest::newRow("any") << textOf({ 0, 'a', 0xFF, 0x100, 0x1FF, 0xD83D, 0xDE00, 0xE000, 0xFFFF }) << 7;
    }
    void randomKeysAreOrderedAsInAMap()
    {
        QFETCH(QString, alphabet);
        QFETCH(int, longest);
        std::mt19937 random(17); // NOLINT(cert-msc51-cpp): the same keys every time
        QStringList keys;
        for (int i = 0; i < 20000; ++i) {
            QString key;
            for (int left = int(random() % uint(longest + 1)); left > 0; --left)
                key += alphabet.at(int(random() % uint(alphabet.size())));
            keys.append(key);
        }
        const Filled filled(keys);
        QVERIFY(filled.agrees);
        QVERIFY(std::equal(filled.map.begin(), filled.map.end(), filled.expected.begin(), filled.expected.end()));
    }

    void firstValueOfAKeyStays()
    {
        lookup::Entries entries;
        QVERIFY(entries.add("a", "1"));
        QVERIFY(!entries.add("a", "2"));
        QVERIFY(entries.add("b", QString()));
        QVERIFY(!entries.add("a", "3"));
        Pairs map;
        entries.moveTo(map);
        QCOMPARE(map, (Pairs{ { "a", "1" }, { "b", "" } }));
    }

    void newValueIsEnteredWithOne()
    {
        CallersMap counted;
        counted.count({ "A x", "B y", "C z", "D " });
        QCOMPARE(counted.texts(), (QStringList{ "=1", "x=1", "y=1", "z=1" }));
    }

    void countOfAValueStaysOne()
    {
        CallersMap counted;
        counted.count({ "A x", "B x", "C x" });
        QCOMPARE(counted.texts(), QStringList("x=1"));
        QCOMPARE(counted.numbersMade(), 1); // the int that the check itself has made stays
    }

    void entryFromBeforeTheCheckIsReplacedOnce()
    {
        CallersMap counted;
        int *const former = counted.put("x", 5);
        counted.count({ "A x", "B x" });
        QVERIFY(counted.map["x"] != former);
        QCOMPARE(*former, 5);
        QCOMPARE(counted.texts(), QStringList("x=1"));
        QCOMPARE(counted.numbersMade(), 2);

        int *const ofTheFirst = counted.map["x"];
        counted.count({ "C x" }); // another check
        QVERIFY(counted.map["x"] != ofTheFirst);
        QCOMPARE(*ofTheFirst, 1);
        QCOMPARE(counted.numbersMade(), 3);
    }

    void keysOfOneHashAreDistinguished()
    {
        lookup::Entries entries([](const QString & /*text*/) { return 42U; });
        QVERIFY(entries.add("B", "b")); // from the second key on, hashes are used
        QVERIFY(entries.add("A", "a"));
        QVERIFY(entries.add("C", "c"));
        QVERIFY(!entries.add("A", "later"));
        QVERIFY(!entries.add("C", "later"));
        Pairs map;
        entries.moveTo(map);
        QCOMPARE(map, (Pairs{ { "A", "a" }, { "B", "b" }, { "C", "c" } }));
    }

    void keyThatIsAnEntryChangesNothing_data()
    {
        QTest::addColumn<QStringList>("pairs");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("the caller's") << QStringList("mine x") << QStringList("mine=7");
        QTest::newRow("its own value") << QStringList("mine mine") << QStringList("mine=7");
        QTest::newRow("an earlier value") << QStringList{ "A x", "x y" } << QStringList{ "mine=7", "x=1" };
        QTest::newRow("an earlier key is none") << QStringList{ "A x", "B A" } << QStringList{ "A=1", "mine=7", "x=1" };
        QTest::newRow("a later value is none yet")
            << QStringList{ "x y", "A x" } << QStringList{ "mine=7", "x=1", "y=1" };
        QTest::newRow("a key that is its own value") << QStringList{ "x x" } << QStringList{ "mine=7", "x=1" };
        QTest::newRow("a value that was not entered")
            << QStringList{ "A x", "x y", "y z" } << QStringList{ "mine=7", "x=1", "z=1" };
        QTest::newRow("the empty one") << QStringList{ "A ", " y" } << QStringList{ "=1", "mine=7" };
    }
    void keyThatIsAnEntryChangesNothing()
    {
        QFETCH(QStringList, pairs);
        CallersMap counted;
        int *const mine = counted.put("mine", 7);
        counted.count(pairs);
        QTEST(counted.texts(), "texts");
        QVERIFY(counted.map["mine"] == mine);
    }

    void manyValuesAreCounted()
    {
        CallersMap counted;
        constexpr int before = 3000;
        for (int i = 0; i < before; ++i)
            counted.map[QString::number(i)] = new int(i);
        QStringList pairs;
        for (int i = 0; i < 2 * before; ++i)
            pairs.append("key" + QString::number(i) + ' ' + QString::number(i));
        std::map<QString, int *> former = counted.map;
        {
            lookup::Frequencies frequencies(counted.map);
            for (const QString &pair : qAsConst(pairs)) {
                const QString key = pair.section(' ', 0, 0);
                frequencies.count(key, pair.section(' ', 1));
            }
        }
        QCOMPARE(counted.map.size(), size_t(2 * before));
        QVERIFY(
            std::all_of(counted.map.begin(), counted.map.end(), [](const auto &entry) { return *entry.second == 1; }));
        for (const auto &entry : former)
            delete entry.second; // every int has been replaced
    }
};

QTEST_APPLESS_MAIN(LookupEntriesTest)
#include "LookupEntriesTest.moc"
