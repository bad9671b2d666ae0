#include "compare/Concord.h"

#include "layout/concord/DerivedRounds.h"
#include "layout/concord/MadeSurvey.h"
#include "support/ProcessorTime.h"

#include <QTest>

using namespace vanlayout;

namespace
{

Item labelled(const QString &name, const QString &label, const QVector<Value> &values = {})
{
    Item item = made::item(name, 2, values);
    item.labels = label.isEmpty() ? Labels() : made::labels(label);
    return item;
}

Layout round(const QVector<Item> &items)
{
    Layout layout = made::layout(items);
    layout.format = Format::CSProText;
    return layout;
}

using Make = Item (*)(int number);

QVector<Item> itemsOf(Make make, int count)
{
    QVector<Item> items;
    for (int i = 0; i < count; ++i)
        items.append(make(i));
    return items;
}

struct Kind {
    const char *title;
    Make make;
};

// clang-format off
const Kind kinds[] = {
    { "one name, no label", [](int) { return labelled("A", QString()); } },
    { "one name and label", [](int) { return labelled("A", "Specify"); } },
    { "one label", [](int i) { return labelled(QStringLiteral("A%1").arg(i), "Specify other"); } },
    { "one number", [](int i) { return labelled(QString(QChar('A' + i % 26)) + QChar('A' + i / 26 % 26) + "1", "Specify"); } },
    { "labels of few words", [](int i) { return labelled(QStringLiteral("A%1").arg(i), QStringLiteral("word%1 word%2").arg(i % 50).arg(i % 49)); } },
    { "no names", [](int) { return Item(); } },
};
// clang-format on

int itemsIn(const Concordance &concordance, int round)
{
    int count = 0;
    for (const ConcordVariable &variable : concordance.variables)
        count += variable.cells.at(round) ? 1 : 0;
    return count;
}

} // namespace

class ConcordLoadTest : public QObject
{
    Q_OBJECT

private slots:
    void timeIsProportionalToTheItemsWhateverTheyAre_data()
    {
        QTest::addColumn<int>("kind");
        for (int kind = 0; kind < int(std::size(kinds)); ++kind)
            QTest::newRow(kinds[kind].title) << kind;
    }
    void timeIsProportionalToTheItemsWhateverTheyAre()
    {
        QFETCH(int, kind);
        const auto run = [&](int count) {
            const Layout layout = round(itemsOf(kinds[kind].make, count));
            const Concordance concordance = concord({ layout, layout });
            QCOMPARE(itemsIn(concordance, 0), count + 1);
            QCOMPARE(itemsIn(concordance, 1), count + 1);
        };
        constexpr int times = 4;
        constexpr int few = 2000;
        const TimeRatio ratio([&] { run(times * few); }, [&] { run(few); });
        QVERIFY2(ratio.isAtMost(4 * times), ratio.inWords().c_str());
    }

    void timeIsProportionalToTheCells()
    {
        const auto run = [&](int count) {
            const derived::Rounds rounds
                = derived::derive(made::householdSurvey(), made::furtherSurvey(), count, derived::usual(), 1);
            concord(rounds.layouts);
        };
        constexpr int times = 4;
        const TimeRatio ratio([&] { run(times * 10); }, [&] { run(10); });
        QVERIFY2(ratio.isAtMost(4 * times), ratio.inWords().c_str());
    }

    void aConcordanceIsTheSameEachTime()
    {
        const derived::Rounds rounds
            = derived::derive(made::householdSurvey(), made::furtherSurvey(), 4, derived::harsh(), 3);
        const truth::Table first = truth::tableOf(concord(rounds.layouts));
        for (int i = 0; i < 3; ++i)
            QCOMPARE(truth::tableOf(concord(rounds.layouts)), first);
    }

    void longTextsAreBounded()
    {
        const QString text = QStringLiteral("word ").repeated(100000);
        const Layout layout = round({ labelled(text, text, { made::value(text, text) }) });
        QCOMPARE(concord({ layout, layout }).variables.size(), 2);
    }

    void longListsOfValuesAreBounded()
    {
        QVector<Value> values;
        for (int i = 0; i < 50000; ++i)
            values.append(made::value(QString::number(i), QStringLiteral("Place %1").arg(i)));
        const Layout layout = round({ labelled("A", "Place", values), labelled("B", "Town", values) });
        const Concordance concordance = concord({ layout, layout });
        QCOMPARE(concordance.variables.size(), 3);
        QCOMPARE(concordance.codes.size(), 100000);
    }
};

QTEST_APPLESS_MAIN(ConcordLoadTest)

#include "ConcordLoadTest.moc"
