#include "model/Layout.h"
#include "read/CSProTextValues_p.h"
#include "read/MadeOnce_p.h"

#include <QtTest>

#include <string>

using namespace vanlayout;

/// Tests the cache of objects that are made from bytes.
class MadeOnceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objectsOfEqualKeysShareTheirMemory()
    {
        MadeOnce<Labels> labels;
        int count = 0;
        const auto make = [&](std::string_view text) {
            ++count;
            return csprotext::labelsOf(text, {});
        };
        const std::string first = "Yes";
        const std::string second = "Yes";
        const Labels one = labels.of(first, make);
        const Labels other = labels.of(second, make);
        QCOMPARE(count, 1);
        QCOMPARE(one.primary(), QString("Yes"));
        QVERIFY(one.parts.constData() == other.parts.constData());
        labels.clear();
        labels.of(first, make);
        QCOMPARE(count, 2);
    }

    void objectOfALongKeyIsNotKept_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("made");
        QTest::newRow("empty") << 0 << 1;
        QTest::newRow("longest that is kept") << 64 << 1;
        QTest::newRow("longer") << 65 << 2;
        QTest::newRow("long") << 100000 << 2;
    }
    void objectOfALongKeyIsNotKept()
    {
        QFETCH(int, size);
        const std::string key(size_t(size), 'x');
        MadeOnce<int> sizes;
        int made = 0;
        const auto make = [&](std::string_view text) {
            ++made;
            return int(text.size());
        };
        QCOMPARE(sizes.of(key, make), size);
        QCOMPARE(sizes.of(key, make), size);
        QTEST(made, "made");
    }

    void keyMayChangeAfterwards()
    {
        MadeOnce<std::string> texts;
        const auto make = [](std::string_view text) { return std::string(text); };
        std::string key = "01";
        QCOMPARE(texts.of(key, make), std::string("01"));
        key[0] = 'x';
        QCOMPARE(texts.of("01", make), std::string("01"));
        QCOMPARE(texts.of(key, make), std::string("x1"));
    }

    void keyMayHaveAnyBytes()
    {
        MadeOnce<size_t> sizes;
        const auto make = [](std::string_view text) { return text.size(); };
        for (size_t size = 0; size < 8; ++size)
            QCOMPARE(sizes.of(std::string(size, '\0'), make), size);
    }

    void moreKeysThanPlacesHaveTheirOwnObjects()
    {
        MadeOnce<int> numbers;
        const auto make = [](std::string_view text) { return std::stoi(std::string(text)); };
        for (int round = 0; round < 2; ++round) {
            for (int number = 0; number < 10000; ++number)
                QCOMPARE(numbers.of(std::to_string(number), make), number);
        }
    }
};

QTEST_APPLESS_MAIN(MadeOnceTest)
#include "MadeOnceTest.moc"
