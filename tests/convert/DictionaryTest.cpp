#include "convert/Dictionary.h"
#include "layout/MadeLayout.h"

#include <QtTest>

using namespace vanlayout;

namespace
{

Item variable(const QString &name, Storage storage = Storage::Double, int length = 8, int decimals = 0)
{
    Item item = made::item(name, length);
    item.storage = storage;
    item.decimals = decimals;
    if (storage == Storage::String)
        item.type = itemtype::alpha();
    return item;
}

Layout statistical(const QVector<Item> &variables)
{
    Layout layout;
    layout.file = QStringLiteral("data/survey 2019.sav");
    layout.format = Format::Spss;
    Level level;
    Record record;
    record.items = variables;
    level.records = { record };
    layout.levels = { level };
    return layout;
}

// The dictionary of a file with the variables ID and the given ones.
MadeDictionary dictionaryOf(const QVector<Item> &variables)
{
    return makeDictionary(statistical(QVector<Item>{ variable(QStringLiteral("ID")) } + variables),
                          { QStringLiteral("id") });
}

Item itemOf(const MadeDictionary &made, int index = 0)
{
    return made.layout.levels.value(0).records.value(0).items.value(index);
}

QStringList lossesOf(const MadeDictionary &made)
{
    QStringList lines;
    for (const Loss &loss : made.losses)
        lines.append(loss.path + QStringLiteral(": ") + loss.what);
    return lines;
}

// The codes of the first value set, with the word of a special meaning.
QStringList codesOf(const Item &item)
{
    QStringList codes;
    for (const Value &value : item.valueSets.value(0).values)
        codes.append(value.ranges.value(0).from + wordOf(value.special));
    return codes;
}

} // namespace

/// Tests dictionaries that are made from statistical files.
class DictionaryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDictionaryHasOneLevelAndOneRecord()
    {
        const MadeDictionary made = dictionaryOf({ variable(QStringLiteral("Age"), Storage::Double, 3) });
        QCOMPARE(made.problem, QString());
        QCOMPARE(made.layout.name, QStringLiteral("SURVEY_2019_DICT"));
        QCOMPARE(made.layout.labels, made::labels(QStringLiteral("SURVEY_2019")));
        QCOMPARE(made.layout.format, Format::CSProJson);
        QCOMPARE(made.layout.relativePositions, std::optional<bool>(true));
        QCOMPARE(made.layout.levels.size(), 1);
        const Level level = made.layout.levels.at(0);
        QCOMPARE(level.name, QStringLiteral("SURVEY_2019_LEVEL"));
        QCOMPARE(level.ids.size(), 1);
        QCOMPARE(level.ids.at(0).start, 1);
        QCOMPARE(level.records.size(), 1);
        QCOMPARE(level.records.at(0).name, QStringLiteral("SURVEY_2019_REC"));
        QCOMPARE(itemOf(made).name, QStringLiteral("AGE"));
        QCOMPARE(itemOf(made).start, 9);
    }

    void namedFileGivesItsName()
    {
        Layout layout = statistical({ variable(QStringLiteral("ID")) });
        layout.name = QStringLiteral("Écoles");
        layout.labels = made::labels(QStringLiteral("Schools"));
        const MadeDictionary made = makeDictionary(layout, { QStringLiteral("ID") });
        QCOMPARE(made.layout.name, QStringLiteral("ECOLES_DICT"));
        QCOMPARE(made.layout.labels, layout.labels);
        layout.name = QStringLiteral("???");
        QCOMPARE(makeDictionary(layout, { QStringLiteral("ID") }).layout.name, QStringLiteral("SURVEY_DICT"));
    }

    void idsAreInTheOrderOfTheirNames()
    {
        const MadeDictionary made = makeDictionary(
            statistical({ variable("A", Storage::Double, 2), variable("B"), variable("C", Storage::Double, 4) }),
            { "c", "A", "C" });
        const QVector<Item> ids = made.layout.levels.at(0).ids;
        QCOMPARE(ids.size(), 2);
        QCOMPARE(ids.at(0).name, QStringLiteral("C"));
        QCOMPARE(ids.at(1).start, 5);
        QCOMPARE(itemOf(made).name, QStringLiteral("B"));
    }

    void thereIsNoDictionaryWithoutIds()
    {
        QCOMPARE(makeDictionary(statistical({ variable("A") }), {}).problem,
                 QStringLiteral("has no id items, which a dictionary must have; name them with --ids"));
        QCOMPARE(makeDictionary(statistical({ variable("A") }), { "B" }).problem,
                 QStringLiteral("has no variable \"B\", which --ids names"));
    }

    void namesAreThoseOfCSPro_data()
    {
        QTest::addColumn<QString>("variable");
        QTest::addColumn<QString>("item");
        QTest::newRow("case") << "age"
                              << "AGE";
        QTest::newRow("accents") << "\u00c2ge_\u00e9t\u00e9"
                                 << "AGE_ETE";
        QTest::newRow("other characters") << "a.b$c"
                                          << "A_B_C";
        QTest::newRow("at the ends") << "@a_"
                                     << "A";
        QTest::newRow("digit") << "1a"
                               << "V1A";
        QTest::newRow("other script") << "\u05d5\u05ea"
                                      << "VARIABLE";
        QTest::newRow("in use") << "id"
                                << "ID_2";
    }
    void namesAreThoseOfCSPro()
    {
        QFETCH(QString, variable);
        const MadeDictionary made = dictionaryOf({ ::variable(variable) });
        QTEST(itemOf(made).name, "item");
        QCOMPARE(lossesOf(made).value(0), "//" + variable + ": the name, which is now " + itemOf(made).name);
    }

    void widthOfANumber_data()
    {
        QTest::addColumn<int>("storage");
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("decimals");
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("width");
        QTest::addColumn<bool>("isLost");
        const int number = int(Storage::Double);
        QTest::newRow("of the format") << number << 8 << 2 << ""
                                       << "8.2" << false;
        QTest::newRow("of a byte") << int(Storage::Int8) << 0 << 0 << ""
                                   << "4.0" << false;
        QTest::newRow("of two bytes") << int(Storage::Int16) << 0 << 0 << ""
                                      << "6.0" << false;
        QTest::newRow("of four bytes") << int(Storage::Int32) << 0 << 0 << ""
                                       << "11.0" << false;
        QTest::newRow("of a double") << number << 0 << 0 << ""
                                     << "15.0" << false;
        QTest::newRow("of the longest code") << number << 2 << 0 << "12345"
                                             << "5.0" << false;
        QTest::newRow("at most 15") << number << 20 << 2 << ""
                                    << "15.2" << true;
        QTest::newRow("at most 9 decimals") << number << 15 << 12 << ""
                                            << "15.9" << true;
    }
    void widthOfANumber()
    {
        QFETCH(int, storage);
        QFETCH(int, length);
        QFETCH(int, decimals);
        QFETCH(QString, code);
        QFETCH(bool, isLost);
        Item number = variable(QStringLiteral("X"), Storage(storage), length, decimals);
        if (!code.isEmpty())
            number.valueSets = { made::valueSet({ made::value(code, QStringLiteral("label")) }) };
        const MadeDictionary made = dictionaryOf({ number });
        const Item item = itemOf(made);
        QTEST(QStringLiteral("%1.%2").arg(item.length).arg(item.decimals), "width");
        QCOMPARE(item.decimalMark, item.decimals > 0);
        QCOMPARE(lossesOf(made).filter(QStringLiteral("the width")).size(), isLost ? 1 : 0);
    }

    void widthOfAText_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("width");
        QTest::addColumn<QStringList>("losses");
        QTest::newRow("of the file") << 20 << 20 << QStringList();
        QTest::newRow("at most 999") << 2000 << 999
                                     << QStringList{ "//X: the length of the text, which is now 999 characters" };
        QTest::newRow("unknown") << 0 << 1 << QStringList{ "//X: the length of the text, which is now 1 characters" };
    }
    void widthOfAText()
    {
        QFETCH(int, length);
        const MadeDictionary made = dictionaryOf({ variable(QStringLiteral("X"), Storage::String, length) });
        QTEST(itemOf(made).length, "width");
        QTEST(lossesOf(made), "losses");
    }

    void decimalsOfAGeneralFormatAreUnknown()
    {
        Item number = variable(QStringLiteral("X"), Storage::Double, 9);
        number.format = QStringLiteral("%9.0g");
        QVERIFY(lossesOf(dictionaryOf({ number }))
                    .contains(QStringLiteral(": decimals, which the format does not state, of X")));
    }

    void valueLabelsAreAValueSet()
    {
        Item number = variable(QStringLiteral("X"));
        number.labels = made::labels(QStringLiteral("Sex"));
        number.valueSets = { made::valueSet({ made::value("1", "Male"), made::value("2", "Female") }) };
        const Item item = itemOf(dictionaryOf({ number }));
        QCOMPARE(item.valueSets.at(0).name, QStringLiteral("X_VS1"));
        QCOMPARE(item.valueSets.at(0).labels, number.labels);
        QCOMPARE(item.valueSets.at(0).values, number.valueSets.at(0).values);
    }

    void userMissingCodesAreSpecialOnce_data()
    {
        QTest::addColumn<QStringList>("missing");
        QTest::addColumn<QStringList>("codes");
        QTest::addColumn<bool>("isLost");
        QTest::newRow("none") << QStringList() << QStringList{ "1", "9" } << false;
        QTest::newRow("labelled") << QStringList{ "9" } << QStringList{ "1", "9missing" } << false;
        QTest::newRow("without a label") << QStringList{ "8" } << QStringList{ "1", "9", "8missing" } << false;
        QTest::newRow("two") << QStringList{ "9", "8" } << QStringList{ "1", "9missing", "8" } << true;
    }
    void userMissingCodesAreSpecialOnce()
    {
        QFETCH(QStringList, missing);
        QFETCH(bool, isLost);
        Item number = variable(QStringLiteral("X"));
        number.valueSets = { made::valueSet({ made::value("1", "a"), made::value("9", "b") }) };
        for (const QString &code : missing)
            number.missing.append({ code, QString() });
        const MadeDictionary made = dictionaryOf({ number });
        QTEST(codesOf(itemOf(made)), "codes");
        QCOMPARE(lossesOf(made).contains(QStringLiteral(": further user-missing values of X")), isLost);
    }

    void rangesOfMissingValuesAreOrdinaryValues()
    {
        Item number = variable(QStringLiteral("X"));
        number.missing = { { QStringLiteral("97"), QStringLiteral("99") } };
        const MadeDictionary made = dictionaryOf({ number });
        QCOMPARE(codesOf(itemOf(made)), QStringList{ "97" });
        QVERIFY(lossesOf(made).contains(QStringLiteral(": further user-missing values of X")));
    }

    void codesThatAreNoNumbersOfCSProAreLost_data()
    {
        QTest::addColumn<QString>("code");
        QTest::newRow("extended missing value") << ".a";
        QTest::newRow("open end") << "-inf";
        QTest::newRow("exponent") << "1e+20";
        QTest::newRow("more than 15 characters") << "1234567890123456";
    }
    void codesThatAreNoNumbersOfCSProAreLost()
    {
        QFETCH(QString, code);
        Item number = variable(QStringLiteral("X"));
        number.valueSets = { made::valueSet({ made::value(code, "a"), made::value("1", "b") }) };
        const MadeDictionary made = dictionaryOf({ number });
        QCOMPARE(codesOf(itemOf(made)), QStringList{ "1" });
        QVERIFY(lossesOf(made).contains("//X: the value " + code + ", which no number of 15 characters is"));
    }

    void propertiesOfStatisticalVariablesAreLost()
    {
        Item number = variable(QStringLiteral("X"));
        number.format = QStringLiteral("F8.0");
        number.measure = Measure::Scale;
        number.alignment = Alignment::Left;
        number.displayWidth = 9;
        Item other = number;
        other.name = QStringLiteral("Y");
        Layout layout = statistical({ variable("ID"), number, other });
        layout.weight = QStringLiteral("Y");
        layout.extras = { { QStringLiteral("//X"), QStringLiteral("valueLabels"), QStringLiteral("v"), 0 } };
        QCOMPARE(lossesOf(makeDictionary(layout, { "ID" })),
                 (QStringList{ ": format of X, Y", ": level of measurement of X, Y", ": alignment of X, Y",
                               ": display width of X, Y", ": the weight variable Y",
                               "//X: the statement \"valueLabels\": v" }));
    }
};

QTEST_APPLESS_MAIN(DictionaryTest)

#include "DictionaryTest.moc"
