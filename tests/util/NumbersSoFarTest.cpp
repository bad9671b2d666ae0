#include "util/NumbersSoFar_p.h"
#include "support/CraftedKeys.h"
#include "support/ProcessorTime.h"

#include <QtTest>

#include <limits>

namespace
{

using Answers = QVector<bool>;

constexpr int count = 40000;

Answers answersTo(const QVector<double> &numbers)
{
    NumbersSoFar numbersSoFar;
    Answers answers;
    for (const double number : numbers)
        answers.append(numbersSoFar.isNew(number));
    return answers;
}

void addEach(const QVector<double> &numbers)
{
    QCOMPARE(answersTo(numbers).count(true), numbers.size());
}

} // namespace

class NumbersSoFarTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void numberIsNewOnce_data()
    {
        constexpr double none = std::numeric_limits<double>::quiet_NaN();
        QTest::addColumn<QVector<double>>("numbers");
        QTest::addColumn<Answers>("answers");
        QTest::newRow("ascending") << QVector<double>{ -1, 0, 0.5, 7 } << Answers{ true, true, true, true };
        QTest::newRow("the last again") << QVector<double>{ 1, 2, 2, 3, 3 }
                                        << Answers{ true, true, false, true, false };
        QTest::newRow("an earlier one") << QVector<double>{ 1, 2, 1, 2, 3 }
                                        << Answers{ true, true, false, false, true };
        QTest::newRow("falling") << QVector<double>{ 3, 2, 1, 3 } << Answers{ true, true, true, false };
        QTest::newRow("zero has no sign") << QVector<double>{ 1, 0.0, -0.0 } << Answers{ true, true, false };
        QTest::newRow("no number is equal to none")
            << QVector<double>{ none, none, 1, none, 1, none } << Answers{ true, true, true, true, false, true };
    }
    void numberIsNewOnce()
    {
        QFETCH(QVector<double>, numbers);
        QTEST(answersTo(numbers), "answers");
    }

    void clearedNumbersAreNewAgain()
    {
        NumbersSoFar numbers;
        for (const double number : { 1.0, 3.0, 2.0 })
            QVERIFY(numbers.isNew(number));
        numbers.clear();
        for (const double number : { 2.0, 1.0 })
            QVERIFY(numbers.isNew(number));
        QVERIFY(!numbers.isNew(2));
    }

    void craftedNumbersTakeNoLonger_data()
    {
        QTest::addColumn<QVector<double>>("numbers");
        QTest::newRow("of one checksum") << crafted::numbers(count, true);
        QTest::newRow("no numbers") << QVector<double>(count, std::numeric_limits<double>::quiet_NaN());
    }
    void craftedNumbersTakeNoLonger()
    {
        QFETCH(QVector<double>, numbers);
        const QVector<double> others = crafted::numbers(count, false);
        const TimeRatio ratio([&] { addEach(numbers); }, [&] { addEach(others); });
        QVERIFY2(ratio.isAtMost(2), ratio.inWords().c_str());
    }
};

QTEST_APPLESS_MAIN(NumbersSoFarTest)
#include "NumbersSoFarTest.moc"
