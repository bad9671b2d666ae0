#include "compare/Concord.h"

#include "layout/MadeLayout.h"

#include <QTest>

using namespace vanlayout;

Q_DECLARE_METATYPE(ConcordDecision)

namespace
{

Item labelled(const QString &name, const QString &label, const QVector<Value> &values = {})
{
    Item item = made::item(name, 2, values);
    item.labels = made::labels(label);
    return item;
}

Layout round(const QString &file, const QVector<Item> &items)
{
    Layout layout = made::layout(items);
    layout.format = Format::CSProText;
    layout.file = file;
    return layout;
}

// The variables as text: the names of the items of each round, `-` for none.
QStringList namesOf(const Concordance &concordance)
{
    QStringList rows;
    for (const ConcordVariable &variable : concordance.variables) {
        QStringList names;
        for (const std::optional<ConcordCell> &cell : variable.cells)
            names.append(cell ? cell->item : QStringLiteral("-"));
        rows.append(names.join(QLatin1Char(' ')));
    }
    return rows;
}

ConcordDecision decision(int one, const QString &item, int other, const QString &otherItem, bool isSame = true)
{
    ConcordDecision made;
    made.one = { one, QString(), QString(), item };
    made.other = { other, QString(), QString(), otherItem };
    made.isSame = isSame;
    return made;
}

Concordance concordOf(const QVector<Layout> &rounds, const QVector<ConcordDecision> &decisions)
{
    ConcordOptions options;
    options.decisions = decisions;
    return concord(rounds, options);
}

QStringList changesOf(const Concordance &concordance, int variable, int round)
{
    QStringList words;
    for (const ConcordChange change : concordance.variables.at(variable).cells.at(round)->changes)
        words.append(wordOf(change));
    return words;
}

// The codes as text: `variable from-to: labels: change`.
QStringList codesOf(const Concordance &concordance)
{
    QStringList rows;
    for (const ConcordCode &code : concordance.codes) {
        QStringList labels;
        for (const std::optional<QString> &label : code.cells)
            labels.append(label.value_or(QStringLiteral("-")));
        rows.append(QStringLiteral("%1 %2%3: %4: %5")
                        .arg(code.variable)
                        .arg(code.from, code.to.isEmpty() ? QString() : QLatin1Char('-') + code.to,
                             labels.join(QLatin1Char('|')), wordOf(code.change)));
    }
    return rows;
}

} // namespace

class ConcordTest : public QObject
{
    Q_OBJECT

private slots:
    void anItemThatALaterRoundAddsFollowsItsNeighbour()
    {
        const Concordance concordance = concord(
            { round("a", { labelled("SEX", "Sex"), labelled("AGE", "Age") }),
              round("b", { labelled("SEX", "Sex"), labelled("FAITH", "Religion"), labelled("AGE", "Age") }) });
        QCOMPARE(concordance.rounds, QStringList({ "a", "b" }));
        QCOMPARE(namesOf(concordance), QStringList({ "ID ID", "SEX SEX", "- FAITH", "AGE AGE" }));
    }

    void noRoundsHaveNoVariables()
    {
        const Concordance concordance = concord({});
        QVERIFY(concordance.rounds.isEmpty());
        QVERIFY(concordance.variables.isEmpty());
        QVERIFY(concordance.codes.isEmpty());
    }

    void eachItemOfOneRoundIsAVariable()
    {
        QCOMPARE(namesOf(concord({ round("a", { labelled("SEX", "Sex"), labelled("SEX", "Sex") }) })),
                 QStringList({ "ID", "SEX", "SEX" }));
    }

    void anEqualNameWithAnotherLabelIsAnotherVariable()
    {
        const Concordance concordance
            = concord({ round("a", { labelled("P308", "Religion"), labelled("P309", "Mother's line number") }),
                        round("b",
                              { labelled("P308", "Ethnic group"), labelled("P309", "Religion"),
                                labelled("P310", "Line number of the mother") }) });
        QCOMPARE(namesOf(concordance), QStringList({ "ID ID", "- P308", "P308 P309", "P309 P310" }));
    }

    void itemsWithoutLabelsMatchByName()
    {
        QCOMPARE(namesOf(concord({ round("a", { made::item("A1"), made::item("B1") }),
                                   round("b", { made::item("B1"), made::item("a1") }) })),
                 QStringList({ "ID ID", "A1 a1", "B1 B1" }));
    }

    void aVariableCanBeAbsentInARound()
    {
        const Layout with
            = round("a", { labelled("SEX", "Sex"), labelled("FAITH", "Religion"), labelled("AGE", "Age") });
        const Layout without = round("b", { labelled("SEX", "Sex"), labelled("AGE", "Age") });
        QCOMPARE(namesOf(concord({ with, without, with })),
                 QStringList({ "ID ID ID", "SEX SEX SEX", "FAITH - FAITH", "AGE AGE AGE" }));
    }

    void namesOfAnotherPrefixWithTheSameNumberCorrespond()
    {
        const Concordance concordance
            = concord({ round("a",
                              { labelled("HV009", "Number of household members"), labelled("HV010", "Number of women"),
                                labelled("HV011", "Number of men") }),
                        round("b",
                              { labelled("V009", "Number of household members"), labelled("V010", "Number of women"),
                                labelled("V011", "Number of men") }) });
        QCOMPARE(namesOf(concordance), QStringList({ "ID ID", "HV009 V009", "HV010 V010", "HV011 V011" }));
    }

    void labelsAreComparedInALanguageOfBothRounds()
    {
        Item one = made::item("Q1");
        one.labels.parts = { { "EN", "Religion" }, { "FR", "Culte" } };
        Item other = made::item("Q7");
        other.labels.parts = { { "fr", "Culte" } };
        QCOMPARE(namesOf(concord({ round("a", { one }), round("b", { other }) })), QStringList({ "ID ID", "Q1 Q7" }));
    }

    void labelsOfRoundsInDifferentLanguagesAreNoEvidenceAgainstAName()
    {
        const auto inLanguage = [](const QString &language, const QString &label, const QString &code) {
            Item item = made::item("FAITH", 2, { made::value("1", code) });
            item.labels.parts = { { language, label } };
            item.valueSets[0].values[0].labels.parts = { { language, code } };
            Layout layout = round(language, { item });
            layout.languages = { { language, language } };
            return layout;
        };
        QCOMPARE(namesOf(concord({ inLanguage("EN", "Religion", "Muslim"), inLanguage("FR", "Croyance", "Musulman") })),
                 QStringList({ "ID ID", "FAITH FAITH" }));
        QCOMPARE(
            namesOf(concord({ inLanguage("", "Household income", "Low"), inLanguage("", "Croyance", "Musulman") })),
            QStringList({ "ID ID", "- FAITH", "FAITH -" }));
    }

    void aRepeatingItemIsTheVariableOfItsFirstOccurrence()
    {
        Item repeating = labelled("CROP", "Crop");
        repeating.occurrences = 2;
        Layout file = round("b", { labelled("crop_1", "Crop"), labelled("crop_2", "Crop") });
        file.format = Format::Stata;
        QCOMPARE(namesOf(concord({ round("a", { repeating }), file })),
                 QStringList({ "ID ID", "CROP crop_1", "- crop_2" }));
    }

    void recordsOfAStatisticalFileAreNotCompared()
    {
        Layout file = round("b", { labelled("AGE", "Age") });
        file.format = Format::Spss;
        file.levels[0].records[0].name = "OTHER";
        file.levels[0].records[0].items[0].length = 0;
        const Concordance concordance = concord({ round("a", { labelled("AGE", "Age") }), file });
        QCOMPARE(changesOf(concordance, 1, 1), QStringList());
    }

    void aNumberOfTheLabelThatRepeatsTheNameIsIgnored()
    {
        QCOMPARE(namesOf(concord(
                     { round("a", { labelled("P309", "309 Religion") }),
                       round("b", { labelled("P309", "309 Mothers line no"), labelled("P207", "Q207. Religion") }) })),
                 QStringList({ "ID ID", "- P309", "P309 P207" }));
    }

    void theChangesOfAVariableAreThoseSinceTheRoundBeforeThatHasIt()
    {
        Layout first = round(
            "a", { labelled("FAITH", "Religion", { made::value("1", "Muslim"), made::value("2", "Christian") }) });
        Layout second = round("b", {});
        Layout third = first;
        Item &item = third.levels[0].records[0].items[0];
        item.name = "RELIGION";
        item.length = 3;
        item.labels = made::labels("The religion");
        item.valueSets[0].values[0] = made::value("1", "Islam");
        third.levels[0].records[0].name = "PERSON";
        first.levels[0].records[0].items.append(labelled("AGE", "Age"));
        second.levels[0].records[0].items.append(labelled("AGE", "Age"));
        third.levels[0].records.append(made::record("R", { labelled("AGE", "Age") }));
        const Concordance concordance = concord({ first, second, third });
        QCOMPARE(namesOf(concordance), QStringList({ "ID ID ID", "FAITH - RELIGION", "AGE AGE AGE" }));
        QCOMPARE(changesOf(concordance, 1, 0), QStringList());
        QCOMPARE(changesOf(concordance, 1, 2), QStringList({ "renamed", "moved", "width", "label", "values" }));
        QCOMPARE(changesOf(concordance, 2, 2), QStringList());
    }

    void anItemOfARenamedRecordIsNotMoved()
    {
        const Layout first
            = round("a", { labelled("AGE", "Age"), labelled("SEX", "Sex"), labelled("FAITH", "Religion") });
        Layout second = first;
        second.levels[0].records[0].name = "PERSON";
        QCOMPARE(changesOf(concord({ first, second }), 1, 1), QStringList());
        Record other = made::record("EXTRA", { second.levels[0].records[0].items.takeLast() });
        second.levels[0].records.append(other);
        const Concordance split = concord({ first, second });
        QCOMPARE(changesOf(split, 1, 1), QStringList());
        QCOMPARE(changesOf(split, 3, 1), QStringList({ "moved" }));
    }

    void anotherTypeIsAChange()
    {
        Item text = labelled("AGE", "Age");
        text.type = itemtype::alpha();
        const Concordance concordance = concord({ round("a", { labelled("AGE", "Age") }), round("b", { text }) });
        QCOMPARE(changesOf(concordance, 1, 1), QStringList({ "type" }));
    }

    void otherDecimalsAreAChange()
    {
        Item number = labelled("AGE", "Age");
        number.decimals = 1;
        const Concordance concordance = concord({ round("a", { labelled("AGE", "Age") }), round("b", { number }) });
        QCOMPARE(changesOf(concordance, 1, 1), QStringList({ "decimals" }));
    }

    void blanksAroundALabelAreNoChange()
    {
        const Concordance concordance = concord(
            { round("a", { labelled("AGE", "Age  in years ") }), round("b", { labelled("AGE", "Age in years") }) });
        QCOMPARE(changesOf(concordance, 1, 1), QStringList());
    }

    void aCodeHasItsLabelInEachRoundAndTheClassOfItsChange()
    {
        const auto faith = [](const QVector<Value> &values) { return labelled("FAITH", "Religion", values); };
        const Concordance concordance = concord(
            { round("a",
                    { faith({ made::value("01", "Moslem"), made::value("2", "Christian"), made::value("3", "None"),
                              made::value("4", "Catholic") }) }),
              round("b",
                    { faith({ made::value("1", "Moslem"), made::value("2", "CHRISTIAN"), made::value("4", "Bahai"),
                              made::value("5", "Hindu"), made::value("9", "Missing", Special::Missing) }) }) });
        QCOMPARE(codesOf(concordance),
                 QStringList({ "1 1: Moslem|Moslem: none", "1 2: Christian|CHRISTIAN: spelling", "1 3: None|-: removed",
                               "1 4: Catholic|Bahai: meaning", "1 5: -|Hindu: added", "1 9: -|Missing: added" }));
        QCOMPARE(concordance.codes.at(5).special, Special::Missing);
    }

    void aRangeIsACodeOfItsOwn()
    {
        const auto age = [](const Value &value) { return labelled("AGE", "Age", { value }); };
        const Concordance concordance = concord({ round("a", { age(made::range("0", "14", "Child")) }),
                                                  round("b", { age(made::range("00", "14", "Children")) }),
                                                  round("c", { age(made::range("0", "17", "Child")) }) });
        QCOMPARE(codesOf(concordance),
                 QStringList({ "1 0-17: -|-|Child: added", "1 0-14: Child|Children|-: removed" }));
    }

    void anotherMeaningPrecedesAnAddedOrRemovedCode()
    {
        const auto faith
            = [](const QString &label) { return labelled("FAITH", "Religion", { made::value("1", label) }); };
        const Concordance concordance = concord({ round("a", { faith("Muslim") }), round("b", { faith("Hindu") }),
                                                  round("c", { labelled("FAITH", "Religion") }) });
        QCOMPARE(codesOf(concordance), QStringList({ "1 1: Muslim|Hindu|-: meaning" }));
    }

    void theCodesOfATextAreTexts()
    {
        const auto crop = [](const QString &code) {
            Item item = labelled("CROP", "Crop", { made::value(code, "Maize") });
            item.type = itemtype::alpha();
            return item;
        };
        QCOMPARE(codesOf(concord({ round("a", { crop("01") }), round("b", { crop("1") }) })),
                 QStringList({ "1 1: -|Maize: added", "1 01: Maize|-: removed" }));
    }

    void labelsAreThoseOfTheLanguage()
    {
        Item item = made::item("SEX", 1, { made::value("1") });
        item.labels.parts = { { "EN", "Sex" }, { "FR", "Sexe" } };
        item.valueSets[0].values[0].labels.parts = { { "EN", "Male" }, { "FR", "Homme" } };
        ConcordOptions options;
        options.language = "fr";
        const Concordance concordance = concord({ round("a", { item }) }, options);
        QCOMPARE(concordance.variables.at(1).cells.at(0)->label, QStringLiteral("Sexe"));
        QCOMPARE(codesOf(concordance), QStringList({ "1 1: Homme: none" }));
    }

    void aDecisionMakesTwoItemsTheSame()
    {
        const QVector<Layout> rounds = { round("a", { labelled("A", "Religion"), labelled("B", "Colour") }),
                                         round("b", { labelled("A", "Religion"), labelled("B", "Colour") }) };
        QCOMPARE(namesOf(concord(rounds)), QStringList({ "ID ID", "A A", "B B" }));
        const Concordance decided = concordOf(rounds, { decision(0, "a", 1, "B") });
        QCOMPARE(namesOf(decided), QStringList({ "ID ID", "- A", "A B", "B -" }));
        QVERIFY(decided.problems.isEmpty());
    }

    void aDecisionSeparatesTwoItems()
    {
        const QVector<Layout> rounds
            = { round("a", { labelled("A", "Religion") }), round("b", { labelled("A", "Religion") }) };
        QCOMPARE(namesOf(concordOf(rounds, { decision(1, "A", 0, "A", false) })),
                 QStringList({ "ID ID", "- A", "A -" }));
    }

    void decisionsHoldOverRounds()
    {
        const Layout layout = round("a", { labelled("A", "Religion"), labelled("B", "Colour") });
        // A of the first round is B of the last one, so A of the second round cannot also be A of the last one and of
        // the first one.
        QCOMPARE(namesOf(concordOf({ layout, layout, layout }, { decision(0, "A", 2, "B"), decision(1, "A", 2, "A") })),
                 QStringList({ "ID ID ID", "A - B", "- A A", "B B -" }));
    }

    void aDecisionThatCannotBeFollowedIsReported_data()
    {
        QTest::addColumn<QVector<ConcordDecision>>("decisions");
        QTest::addColumn<QString>("problem");
        QTest::newRow("no round") << QVector<ConcordDecision>{ decision(0, "A", 5, "A") } << "there is no round 6";
        QTest::newRow("no item") << QVector<ConcordDecision>{ decision(0, "A", 1, "Z") } << "b has no item Z";
        QTest::newRow("several items") << QVector<ConcordDecision>{ decision(0, "C", 1, "A") }
                                       << "a has several items C";
        QTest::newRow("one round") << QVector<ConcordDecision>{ decision(0, "A", 0, "B") }
                                   << "two items of a would be one variable";
        QTest::newRow("one round through another")
            << QVector<ConcordDecision>{ decision(0, "A", 1, "A"), decision(0, "B", 1, "A") }
            << "1: with the decisions before it, two items of a";
        QTest::newRow("both") << QVector<ConcordDecision>{ decision(0, "A", 1, "A", false), decision(0, "A", 1, "A") }
                              << "0: other decisions make the two items the same";
    }
    void aDecisionThatCannotBeFollowedIsReported()
    {
        QFETCH(QVector<ConcordDecision>, decisions);
        QFETCH(QString, problem);
        const Concordance concordance = concordOf(
            { round("a",
                    { labelled("A", "Religion"), labelled("B", "Colour"), labelled("C", "Age"), labelled("C", "Sex") }),
              round("b", { labelled("A", "Religion") }) },
            decisions);
        QCOMPARE(concordance.problems.size(), 1);
        const ConcordProblem &found = concordance.problems.at(0);
        const QString text = QString::number(found.decision) + ": " + found.message;
        QVERIFY2(text.contains(problem), qPrintable(text));
    }

    void theRecordOfADecisionSelectsOneOfSeveralItems()
    {
        Layout first = round("a", { labelled("A", "Religion") });
        first.levels[0].records.append(made::record("S", { labelled("A", "Colour") }));
        const Layout second = round("b", { labelled("X", "Weight") });
        ConcordDecision made = decision(0, "A", 1, "X");
        made.one.record = "s";
        const Concordance concordance = concordOf({ first, second }, { made });
        QVERIFY(concordance.problems.isEmpty());
        QCOMPARE(namesOf(concordance), QStringList({ "ID ID", "A -", "A X" }));
    }
};

QTEST_APPLESS_MAIN(ConcordTest)

#include "ConcordTest.moc"
