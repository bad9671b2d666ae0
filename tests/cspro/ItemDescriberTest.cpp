#include "cspro/CSProDataImport.h"
#include "cspro/CSProImportBody_p.h"
#include "cspro/CSProNotes_p.h"
#include "cspro/ValueSet_p.h"

#include <QtTest>

#include <initializer_list>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace
{

struct Value {
    QString code;
    QString name;
    bool special = false;
};

// A value set that frees its values.
class HandMadeSet
{
public:
    HandMadeSet(std::initializer_list<Value> list)
    {
        for (const Value &value : list) {
            values.push_back(std::make_unique<TValueSetItem>());
            values.back()->code = value.code;
            values.back()->name = value.name;
            values.back()->special = value.special;
            set.addItem(values.back().get());
        }
    }
    operator TCSProValueSet *() { return &set; }

private:
    TCSProValueSet set;
    std::vector<std::unique_ptr<TValueSetItem>> values;
};

// The parts of a field that come from the value sets of its item.
struct Outcome {
    QString minimum;
    QString maximum;
    QString valueLabels;

    bool operator==(const Outcome &other) const
    {
        return minimum == other.minimum && maximum == other.maximum && valueLabels == other.valueLabels;
    }
};

char *toString(const Outcome &outcome)
{
    const QString text = QStringLiteral("%1 to %2: %3").arg(outcome.minimum, outcome.maximum, outcome.valueLabels);
    return QTest::toString(text);
}

enum Kind { integer, real, text };

std::unique_ptr<TCSProItem> makeItem(Kind kind, const QList<TCSProValueSet *> &sets, int length = 0)
{
    const int lengths[] = { 3, 10, 4 };
    auto item = std::make_unique<TCSProItem>();
    item->dataType = kind == text ? 1 : 0;
    item->length = length ? length : lengths[kind];
    *item->valueSets = sets;
    return item;
}

Outcome described(cspro::ItemDescriber &describer, const TCSProItem &item)
{
    TCSProVariable field(nullptr, nullptr);
    describer.describe(item, field);
    return { field.minimum, field.maximum, field.valueLabels };
}

Outcome described(cspro::ItemDescriber &describer, Kind kind, const QList<TCSProValueSet *> &sets, int length = 0)
{
    return described(describer, *makeItem(kind, sets, length));
}

Outcome describedAlone(Kind kind, const QList<TCSProValueSet *> &sets, int length = 0)
{
    cspro::ItemDescriber describer;
    return described(describer, kind, sets, length);
}

QString tenNines()
{
    return QStringLiteral("9999999999");
}

} // namespace

class ItemDescriberTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void oneSetOnItemsOfDifferentTypeIsReadForEachType()
    {
        HandMadeSet set{ { "05", "Five" }, { "07", "Seven" } };
        const Outcome asInteger = { "5", "7", "5 Five\t7 Seven\t" };
        const Outcome asReal = { "5", "7", "05 Five\t07 Seven\t" };
        const Outcome asText = { "0", "", "05 Five\t07 Seven\t" };

        cspro::ItemDescriber describer;
        QCOMPARE(described(describer, integer, { set }), asInteger);
        QCOMPARE(described(describer, integer, { set }), asInteger);
        QCOMPARE(described(describer, real, { set }), asReal);
        QCOMPARE(described(describer, text, { set }), asText);
        QCOMPARE(described(describer, real, { set }), asReal);
        QCOMPARE(described(describer, integer, { set }), asInteger);
        QCOMPARE(described(describer, text, { set }), asText);
        QCOMPARE(described(describer, text, { set }), asText);
    }

    void neighboursWithDifferentSetsKeepTheirOwn()
    {
        HandMadeSet first{ { "1", "One" } };
        HandMadeSet second{ { "2", "Two" } };
        cspro::ItemDescriber describer;
        QCOMPARE(described(describer, integer, { first }), (Outcome{ "1", "1", "1 One\t" }));
        QCOMPARE(described(describer, integer, { second }), (Outcome{ "2", "2", "2 Two\t" }));
        QCOMPARE(described(describer, integer, {}), (Outcome{ "0", "999", "" }));
        QCOMPARE(described(describer, integer, { second }), (Outcome{ "2", "2", "2 Two\t" }));
        QCOMPARE(described(describer, integer, { first }), (Outcome{ "1", "1", "1 One\t" }));
    }

    void neighboursWhoseSetsDifferOnlyInAMarkKeepTheirOwn()
    {
        HandMadeSet plain{ { "1", "One" }, { "5", "Five" }, { "7", "Seven" } };
        HandMadeSet marked{ { "1", "One" }, { "5", "Five", true }, { "7", "Seven" } };
        cspro::ItemDescriber describer;
        QCOMPARE(described(describer, integer, { plain }), (Outcome{ "1", "7", "1 One\t5 Five\t7 Seven\t" }));
        QCOMPARE(described(describer, integer, { marked }), (Outcome{ "1", "7", "1 One\t7 Seven\t" }));
        QCOMPARE(described(describer, integer, { plain }), (Outcome{ "1", "7", "1 One\t5 Five\t7 Seven\t" }));
    }

    void fieldKeepsItsDescriptionWhileOthersFollow()
    {
        HandMadeSet first{ { "1", "One" }, { "2", "Two" } };
        HandMadeSet second{ { "8", "Eight" }, { "9", "Nine" } };
        cspro::ItemDescriber describer;
        const Outcome former = described(describer, integer, { first });
        const Outcome same = described(describer, integer, { first });
        const Outcome later = described(describer, integer, { second });
        QCOMPARE(former, (Outcome{ "1", "2", "1 One\t2 Two\t" }));
        QCOMPARE(same, former);
        QCOMPARE(later, (Outcome{ "8", "9", "8 Eight\t9 Nine\t" }));
    }

    void setAloneAndSetWithOthersDiffer()
    {
        HandMadeSet first{ { "3", "Three" } };
        HandMadeSet second{ { "8", "Eight" } };
        const Outcome alone = { "3", "3", "3 Three\t" };
        const Outcome both = { "3", "8", "3 Three\t8 Eight\t" };
        const Outcome swapped = { "3", "8", "8 Eight\t3 Three\t" };

        cspro::ItemDescriber describer;
        QCOMPARE(described(describer, integer, { first }), alone);
        QCOMPARE(described(describer, integer, { first, second }), both);
        QCOMPARE(described(describer, integer, { first }), alone);
        QCOMPARE(described(describer, integer, { second, first }), swapped);
        QCOMPARE(described(describer, integer, { first, second }), both);
        QCOMPARE(described(describer, integer, { first, nullptr }), alone);
    }

    void nullSetAmongOthersIsPassedOver()
    {
        HandMadeSet set{ { "5", "Five" }, { "7", "Seven" } };
        const Outcome alone = { "5", "7", "5 Five\t7 Seven\t" };
        // Without a first set there is no range: the lowest code is compared with 0, and the bound of nines stays.
        const Outcome behindNull = { "0", "999", "5 Five\t7 Seven\t" };
        const Outcome onlyNull = { "0", "999", "" };

        cspro::ItemDescriber describer;
        QCOMPARE(described(describer, integer, { set }), alone);
        QCOMPARE(described(describer, integer, { nullptr }), onlyNull);
        QCOMPARE(described(describer, integer, { nullptr, set }), behindNull);
        QCOMPARE(described(describer, integer, { set, nullptr }), alone);
        QCOMPARE(described(describer, integer, { nullptr }), onlyNull);
        QCOMPARE(described(describer, text, { nullptr }), (Outcome{ "0", "", "" }));
        QCOMPARE(described(describer, integer, { nullptr, nullptr }), onlyNull);
    }

    void emptyFirstSetGivesNoRangeWhateverFollows()
    {
        HandMadeSet empty{};
        HandMadeSet set{ { "-4", "Below" }, { "7", "Seven" } };
        QCOMPARE(describedAlone(integer, { empty }), (Outcome{ "0", "999", "" }));
        QCOMPARE(describedAlone(integer, { empty, set }), (Outcome{ "-4", "999", "-4 Below\t7 Seven\t" }));
        QCOMPARE(describedAlone(real, { empty }), (Outcome{ "0", tenNines(), "" }));
        QCOMPARE(describedAlone(text, { empty }), (Outcome{ "0", "", "" }));
    }

    void emptySetKeepsTheNinesOfTheWholeLengthOnANumberWithDecimals()
    {
        HandMadeSet empty{};
        auto item = makeItem(real, { empty }, 5);
        item->decimals = 2;
        cspro::ItemDescriber describer;
        QCOMPARE(described(describer, *item), (Outcome{ "0", "99999", "" }));
        item->valueSets->clear();
        QCOMPARE(described(describer, *item), (Outcome{ "0", "999", "" }));
    }

    void boundsAreScannedInASetOfAnyOrder()
    {
        HandMadeSet set{ { "7", "G" }, { "1", "A" }, { "9", "I" }, { "3", "C" } };
        QCOMPARE(describedAlone(integer, { set }), (Outcome{ "1", "9", "7 G\t1 A\t9 I\t3 C\t" }));
        HandMadeSet down{ { "9", "I" }, { "1", "A" } };
        QCOMPARE(describedAlone(integer, { down }), (Outcome{ "1", "9", "9 I\t1 A\t" }));
    }

    void boundsOfAllSetsCountOnceTheFirstHasValues()
    {
        HandMadeSet first{ { "5", "E" }, { "6", "F" } };
        HandMadeSet second{ { "2", "B" }, { "8", "H" } };
        QCOMPARE(describedAlone(integer, { first, second }), (Outcome{ "2", "8", "5 E\t6 F\t2 B\t8 H\t" }));
    }

    void boundsWithoutZeroDoNotBeginAtZero()
    {
        HandMadeSet above{ { "5", "E" }, { "6", "F" } };
        QCOMPARE(describedAlone(integer, { above }), (Outcome{ "5", "6", "5 E\t6 F\t" }));
        HandMadeSet below{ { "-6", "F" }, { "-5", "E" } };
        QCOMPARE(describedAlone(integer, { below }), (Outcome{ "-6", "-5", "-6 F\t-5 E\t" }));
    }

    void specialValueHasNoLabelAndIsNotScanned()
    {
        HandMadeSet set{ { "1", "One" }, { "99", "Not stated", true }, { "5", "Five" } };
        QCOMPARE(describedAlone(integer, { set }), (Outcome{ "1", "5", "1 One\t5 Five\t" }));
        QCOMPARE(describedAlone(real, { set }), (Outcome{ "1", "5", "1 One\t5 Five\t" }));
        QCOMPARE(describedAlone(text, { set }), (Outcome{ "0", "", "1 One\t5 Five\t" }));
    }

    // The first and the last code of the first set begin the bounds, whatever they are.
    void specialValueAtAnEndIsABoundAllTheSame()
    {
        HandMadeSet atTheEnd{ { "1", "One" }, { "5", "Five" }, { "99", "Not stated", true } };
        QCOMPARE(describedAlone(integer, { atTheEnd }), (Outcome{ "1", "99", "1 One\t5 Five\t" }));
        HandMadeSet atTheFront{ { "-9", "Not stated", true }, { "1", "One" }, { "5", "Five" } };
        QCOMPARE(describedAlone(integer, { atTheFront }), (Outcome{ "-9", "5", "1 One\t5 Five\t" }));
        HandMadeSet alone{ { "99", "Not stated", true } };
        QCOMPARE(describedAlone(integer, { alone }), (Outcome{ "99", "99", "" }));
    }

    void codeThatIsNoNumberCountsAsZero()
    {
        HandMadeSet word{ { "abc", "Word" }, { "3", "Three" } };
        QCOMPARE(describedAlone(integer, { word }), (Outcome{ "0", "3", "0 Word\t3 Three\t" }));
        QCOMPARE(describedAlone(real, { word }), (Outcome{ "0", "3", "abc Word\t3 Three\t" }));
        HandMadeSet huge{ { "1e999", "Huge" } };
        QCOMPARE(describedAlone(integer, { huge }), (Outcome{ "0", "0", "0 Huge\t" }));
        HandMadeSet nothing{ { "", "Nothing" } };
        QCOMPARE(describedAlone(integer, { nothing }), (Outcome{ "0", "0", "0 Nothing\t" }));
    }

    void decimalCodeIsANumber()
    {
        HandMadeSet set{ { "1.50", "Some" }, { "2.5", "More" } };
        QCOMPARE(describedAlone(integer, { set }), (Outcome{ "1.5", "2.5", "1.5 Some\t2.5 More\t" }));
        QCOMPARE(describedAlone(real, { set }), (Outcome{ "1.5", "2.5", "1.50 Some\t2.5 More\t" }));
    }

    void boundOfNinesFollowsTheLengthOfEachItem()
    {
        cspro::ItemDescriber describer;
        QCOMPARE(described(describer, integer, {}, 2), (Outcome{ "0", "99", "" }));
        QCOMPARE(described(describer, integer, {}, 5), (Outcome{ "0", "99999", "" }));
        QCOMPARE(described(describer, integer, {}, 2), (Outcome{ "0", "99", "" }));
        QCOMPARE(described(describer, real, {}), (Outcome{ "0", tenNines(), "" }));
        QCOMPARE(described(describer, text, {}, 5), (Outcome{ "", "", "" }));
    }

    // Same as a set that has no values: values that cannot be described are skipped.
    void setWithoutAListIsPassedOver_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("maximum");
        QTest::newRow("integer") << int(integer) << "999";
        QTest::newRow("real") << int(real) << tenNines();
        QTest::newRow("text") << int(text) << "";
    }
    void setWithoutAListIsPassedOver()
    {
        QFETCH(int, kind);
        QFETCH(QString, maximum);
        const Outcome nothing = { "0", maximum, "" };
        const QString labels = kind == integer ? QStringLiteral("5 Five\t") : QStringLiteral("05 Five\t");
        TCSProValueSet without;
        delete std::exchange(without.items, nullptr);
        HandMadeSet set{ { "05", "Five" } };
        QCOMPARE(describedAlone(Kind(kind), { &without }), nothing);
        QCOMPARE(describedAlone(Kind(kind), { &without, set }), (Outcome{ "0", maximum, labels }));
        QCOMPARE(describedAlone(Kind(kind), { set, &without }), describedAlone(Kind(kind), { set }));
        cspro::ItemDescriber describer;
        QCOMPARE(described(describer, Kind(kind), { set }), describedAlone(Kind(kind), { set }));
        QCOMPARE(described(describer, Kind(kind), { &without }), nothing);
        QCOMPARE(described(describer, Kind(kind), { &without }), nothing);
        QCOMPARE(described(describer, Kind(kind), { set }), describedAlone(Kind(kind), { set }));
    }

    // If the first or the last value is null, the bounds of the set are unknown and those of the item stay.
    void nullValueIsPassedOver_data()
    {
        QTest::addColumn<QStringList>("codes");
        QTest::addColumn<QString>("minimum");
        QTest::addColumn<QString>("maximum");
        QTest::addColumn<QString>("valueLabels");
        QTest::newRow("first") << QStringList{ QString(), "5", "7" } << "0"
                               << "999"
                               << "5 L\t7 L\t";
        QTest::newRow("in the middle") << QStringList{ "5", QString(), "7" } << "5"
                                       << "7"
                                       << "5 L\t7 L\t";
        QTest::newRow("last") << QStringList{ "-5", "7", QString() } << "-5"
                              << "999"
                              << "-5 L\t7 L\t";
        QTest::newRow("alone") << QStringList{ QString() } << "0"
                               << "999"
                               << "";
    }
    void nullValueIsPassedOver()
    {
        QFETCH(QStringList, codes);
        QFETCH(QString, minimum);
        QFETCH(QString, maximum);
        QFETCH(QString, valueLabels);
        TCSProValueSet set;
        for (const QString &code : codes) {
            auto *value = code.isNull() ? nullptr : new TValueSetItem;
            if (value) {
                value->code = code;
                value->name = QStringLiteral("L");
            }
            set.addItem(value);
        }
        cspro::ItemDescriber describer;
        for (int i = 0; i < 2; ++i) // first from the set, then from the stored labels
            QCOMPARE(described(describer, integer, { &set }), (Outcome{ minimum, maximum, valueLabels }));
        qDeleteAll(*set.items);
    }

    void setsThatDifferInANullValueAreDifferent()
    {
        TCSProValueSet withNull;
        withNull.addItem(nullptr);
        HandMadeSet set{ { "5", "Five" } };
        cspro::ItemDescriber describer;
        QCOMPARE(described(describer, integer, { set }).valueLabels, QString("5 Five\t"));
        QCOMPARE(described(describer, integer, { &withNull }).valueLabels, QString());
        QCOMPARE(described(describer, integer, { set }).valueLabels, QString("5 Five\t"));
    }

    void notesAreMadeOfTheRestWhereAValueOrAListIsMissing()
    {
        TCSProValueSet without;
        delete std::exchange(without.items, nullptr);
        TCSProValueSet withNull;
        TValueSetItem value;
        value.name = QStringLiteral("parted\tlabel");
        withNull.addItem(nullptr);
        withNull.addItem(&value);
        const auto item = makeItem(integer, { nullptr, &without, &withNull });
        TCSProVariable field(nullptr, item.get());
        cspro::ItemDescriber().describe(*item, field);
        ReadReport report;
        cspro::reportDescription(report, *item, nullptr, field);
        QCOMPARE(report.count(NoteKind::labelEntryParted), 1);
    }

    // The rest of a dictionary is freed as usual.
    void dictionaryWithASetWithoutAListIsFreed()
    {
        CSProDictionary dictionary;
        auto item = std::make_unique<TCSProItem>();
        auto set = std::make_unique<TCSProValueSet>();
        delete std::exchange(set->items, nullptr);
        item->addValueSet(set.release());
        dictionary.items->append(item.release());
        cspro::freeContents(dictionary);
        QCOMPARE(dictionary.items, nullptr);
    }

    void ninesAreBounded_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("decimals");
        QTest::addColumn<bool>("decimalChar");
        QTest::addColumn<int>("nines");

        const int most = Nines::maxWidth;
        const int highest = std::numeric_limits<int>::max();
        const int lowest = std::numeric_limits<int>::min();
        // clang-format off
        QTest::newRow("one below the bound")             << most - 1 << 0       << false << most - 1;
        QTest::newRow("the bound")                       << most     << 0       << false << most;
        QTest::newRow("one above the bound")             << most + 1 << 0       << false << most;
        QTest::newRow("the longest")                     << highest  << 0       << false << most;
        QTest::newRow("the longest, some decimals")      << highest  << 2       << false << most;
        QTest::newRow("the longest, with a character")   << highest  << 2       << true  << most;
        QTest::newRow("the bound and decimals above it") << most + 3 << 3       << false << most;
        QTest::newRow("no length")                       << 0        << 0       << false << 0;
        QTest::newRow("a negative length")               << -1       << 0       << false << 0;
        QTest::newRow("the lowest")                      << lowest   << 0       << false << 0;
        QTest::newRow("the lowest, most decimals")       << lowest   << highest << false << 0;
        QTest::newRow("the lowest, with a character")    << lowest   << 1       << true  << 0;
        // clang-format on
    }
    void ninesAreBounded()
    {
        QFETCH(int, length);
        QFETCH(int, decimals);
        QFETCH(bool, decimalChar);
        QFETCH(int, nines);
        TCSProItem item;
        item.length = length;
        item.decimals = decimals;
        item.decimalChar = decimalChar;
        cspro::ItemDescriber describer;
        const Outcome outcome = described(describer, item);
        QCOMPARE(outcome.minimum, QStringLiteral("0"));
        QCOMPARE(outcome.maximum.size(), nines);
        QCOMPARE(outcome.maximum.count(QLatin1Char('9')), nines);
    }

    void groupAndValueOfTheFieldStay()
    {
        TCSProItem item;
        item.name = QStringLiteral("AGE");
        TCSProVariable field(nullptr, &item);
        field.group = QStringLiteral("PERSON");
        field.intValue = 4;
        cspro::ItemDescriber describer;
        describer.describe(item, field);
        QCOMPARE(field.name, QStringLiteral("AGE"));
        QCOMPARE(field.group, QStringLiteral("PERSON"));
        QCOMPARE(field.intValue, 4.0);
        QVERIFY(field.hasDecimalChar);
    }
};

QTEST_GUILESS_MAIN(ItemDescriberTest)
#include "ItemDescriberTest.moc"
