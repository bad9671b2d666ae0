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
                          { QStringLiteral("ID") });
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

// A DDI document with two record types and no id items. HH is in columns 2 to 4 of both.
Layout lines()
{
    Layout layout;
    layout.format = Format::Ddi;
    layout.name = QStringLiteral("HOUSES_DICT");
    layout.recordType = RecordTypeColumns{ 1, 1 };
    Item household = made::item(QStringLiteral("hh"), 3);
    household.start = 2;
    Item rooms = made::item(QStringLiteral("ROOMS"), 2, { made::value("98", "Unknown", Special::Missing) });
    rooms.start = 5;
    rooms.decimals = 1;
    rooms.format = QStringLiteral("F3.1");
    Record houses;
    houses.name = QStringLiteral("HOUSE");
    houses.recordType = QStringLiteral("1");
    houses.items = { household, rooms };
    Item parts = made::item(QStringLiteral("BIRTH DATE"), 4);
    parts.start = 5;
    parts.occurrences = 2;
    Item part = made::item(QStringLiteral("YEAR"), 2);
    part.start = 5;
    part.isSubitem = true;
    part.subitemOf = parts.name;
    Record persons;
    persons.name = QStringLiteral("PERSON");
    persons.recordType = QStringLiteral("2");
    persons.items = { household, parts, part };
    Level level;
    level.records = { houses, persons };
    layout.levels = { level };
    return layout;
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
            { "c", "A" });
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
        QCOMPARE(makeDictionary(statistical({ variable("A") }), { "B", "A", "C" }).problem,
                 QStringLiteral("has no variable \"B\", \"C\", which --ids names"));
        QCOMPARE(makeDictionary(statistical({ variable("A") }), { "A", "a" }).problem,
                 QStringLiteral("has one variable \"A\", which --ids names twice"));
        const Layout cases = statistical({ variable("id"), variable("Id") });
        QCOMPARE(makeDictionary(cases, { "ID" }).problem,
                 QStringLiteral("has several variables \"ID\", which differ in case; --ids must name one exactly"));
        QCOMPARE(makeDictionary(cases, { "Id" }).layout.levels.value(0).ids.value(0).name, QStringLiteral("ID_2"));
    }

    void anIdItemHasNoDecimals()
    {
        const MadeDictionary made = makeDictionary(statistical({ variable("A", Storage::Double, 8, 2) }), { "A" });
        QCOMPARE(made.layout.levels.at(0).ids.at(0).decimals, 0);
        QCOMPARE(made.layout.levels.at(0).ids.at(0).decimalMark, false);
        QCOMPARE(made.layout.levels.at(0).ids.at(0).length, 8);
        QCOMPARE(lossesOf(made), QStringList{ "//A: the decimals, which an id item cannot have" });
    }

    void linesKeepTheirRecordsAndColumns()
    {
        const MadeDictionary made = makeDictionary(lines(), { "HH" });
        QCOMPARE(made.problem, QString());
        const Layout &layout = made.layout;
        QCOMPARE(layout.name, QStringLiteral("HOUSES_DICT"));
        QCOMPARE(layout.relativePositions, std::optional<bool>(false));
        QCOMPARE(layout.recordType, std::optional<RecordTypeColumns>(RecordTypeColumns{ 1, 1 }));
        const Level level = layout.levels.value(0);
        QCOMPARE(level.ids.size(), 1);
        QCOMPARE(level.ids.at(0).name, QStringLiteral("HH"));
        QCOMPARE(level.ids.at(0).start, 2);
        QCOMPARE(level.records.at(1).recordType, QStringLiteral("2"));
        const Item rooms = level.records.at(0).items.value(0);
        QCOMPARE(rooms.start, 5);
        QCOMPARE(rooms.decimals, 1);
        QCOMPARE(rooms.valueSets.at(0).values.at(0).special, Special::Missing);
        const QVector<Item> items = level.records.at(1).items;
        QCOMPARE(items.at(0).name, QStringLiteral("BIRTH_DATE"));
        QCOMPARE(items.at(0).occurrences, 2);
        QCOMPARE(items.at(1).subitemOf, QStringLiteral("BIRTH_DATE"));
        QCOMPARE(lossesOf(made),
                 (QStringList{ "//hh: the name, which is now HH", "//BIRTH DATE: the name, which is now BIRTH_DATE",
                               ": format of ROOMS" }));
    }

    void recordsOfUnknownNumberAreOptionalAndManyInACase()
    {
        Layout source = lines();
        QCOMPARE(makeDictionary(source, { "HH" }).layout.levels.value(0).records.value(1).maximum, 1);
        source.levels[0].records[1].required = false;
        source.levels[0].records[1].maximum = 0;
        const Record persons = makeDictionary(source, { "HH" }).layout.levels.value(0).records.value(1);
        QCOMPARE(persons.maximum, 9999);
        QVERIFY(!persons.required);
    }

    void linesThatAreNoDictionary_data()
    {
        QTest::addColumn<QStringList>("ids");
        QTest::addColumn<QString>("problem");
        QTest::newRow("no ids") << QStringList()
                                << "has no id items, which a dictionary must have; name them with --ids";
        QTest::newRow("unknown") << QStringList{ "X" } << "has no variable \"X\", which --ids names";
        QTest::newRow("in one record") << QStringList{
            "ROOMS"
        } << "has no variable \"ROOMS\" in the same columns of all records, which --ids names";
    }
    void linesThatAreNoDictionary()
    {
        QFETCH(QStringList, ids);
        QTEST(makeDictionary(lines(), ids).problem, "problem");
    }

    void idsOfLinesAreStatedOnce()
    {
        Layout layout = lines();
        layout.levels[0].ids = { layout.levels.at(0).records.at(0).items.at(0) };
        for (Record &record : layout.levels[0].records)
            record.items.removeFirst();
        QCOMPARE(makeDictionary(layout, {}).layout.levels.value(0).ids.value(0).name, QStringLiteral("HH"));
        QCOMPARE(makeDictionary(layout, { "HH" }).problem,
                 QStringLiteral("has id items already; --ids is for files without"));
        layout.recordType.reset();
        QCOMPARE(makeDictionary(layout, {}).problem,
                 QStringLiteral("has 2 records without a record type, which a dictionary must have"));
        layout.levels.append(Level());
        QCOMPARE(makeDictionary(layout, {}).problem,
                 QStringLiteral("has several levels, not all of which have id items"));
    }

    void idsOfLinesDoNotRepeat()
    {
        Layout layout = lines();
        layout.levels[0].records.removeFirst();
        QCOMPARE(makeDictionary(layout, { "BIRTH DATE" }).problem,
                 QStringLiteral("cannot have the id item \"BIRTH DATE\", which repeats, or is or has a subitem"));
    }

    void languagesAreNames()
    {
        Layout layout = lines();
        layout.languages = { { "fr", "" }, { "pt-BR", "Brazil" } };
        const Labels both = { { { "fr", "a" }, { "pt-BR", "b" }, { "", "c" } } };
        Record &person = layout.levels[0].records[1];
        layout.labels = layout.levels[0].labels = person.labels = person.items[1].labels = both;
        person.items[1].occurrenceLabels = { { 1, both } };
        person.items[2].valueSets = { { "S", both, {}, {}, {}, { made::value("1") } } };
        person.items[2].valueSets[0].values[0].labels = both;
        const Layout made = makeDictionary(layout, { QStringLiteral("HH") }).layout;
        const Labels named = { { { "FR", "a" }, { "PT_BR", "b" }, { "", "c" } } };
        QCOMPARE(made.languages, (QVector<Language>{ { "FR", "fr" }, { "PT_BR", "Brazil" } }));
        QCOMPARE(made.labels, named);
        QCOMPARE(made.levels.at(0).labels, named);
        const Record record = made.levels.at(0).records.at(1);
        QCOMPARE(record.labels, named);
        QCOMPARE(record.items.at(0).labels, named);
        QCOMPARE(record.items.at(0).occurrenceLabels.at(0).labels, named);
        QCOMPARE(record.items.at(1).valueSets.at(0).labels, named);
        QCOMPARE(record.items.at(1).valueSets.at(0).values.at(0).labels, named);
    }

    // French and other settings of Windows write a decimal comma.
    void codesMayHaveADecimalComma()
    {
        Layout layout = lines();
        layout.levels[0].records[0].items[1].valueSets = { { "S", {}, {}, {}, {}, { made::range("0,5", "9,5") } } };
        const MadeDictionary made = makeDictionary(layout, { QStringLiteral("HH") });
        QCOMPARE(codesOf(itemOf(made)), QStringList{ "0,5" });
    }

    void variablesWithoutColumnsAreLaidOut()
    {
        Layout layout = lines();
        layout.levels[0].records[1].items[1].start = 0;
        const MadeDictionary made = makeDictionary(layout, { "ROOMS" });
        QCOMPARE(made.layout.relativePositions, std::optional<bool>(true));
        QCOMPARE(made.layout.levels.at(0).records.size(), 1);
        QVERIFY(lossesOf(made).contains(QStringLiteral(": the 2 record types, whose items are in one record")));
    }

    void variablesKeepTheirNamesBeforeMadeOnes()
    {
        const MadeDictionary made = makeDictionary(
            statistical({ variable("X", Storage::Int8, 2), variable("X_VS1"), variable("SURVEY_2019_REC") }), { "X" });
        QCOMPARE(itemOf(made, 0).name, QStringLiteral("X_VS1"));
        QCOMPARE(itemOf(made, 1).name, QStringLiteral("SURVEY_2019_REC"));
        QCOMPARE(made.layout.levels.at(0).records.at(0).name, QStringLiteral("SURVEY_2019_REC_2"));
    }

    void itemsThatDoNotFitInARecordAreInFurtherOnes()
    {
        QVector<Item> variables;
        for (int i = 0; i < 33; ++i)
            variables.append(variable(QStringLiteral("T%1").arg(i), Storage::String, 999));
        const MadeDictionary made = dictionaryOf(variables);
        const Level level = made.layout.levels.at(0);
        QCOMPARE(level.records.size(), 2);
        QCOMPARE(made.layout.recordType, std::optional<RecordTypeColumns>(RecordTypeColumns{ 1, 3 }));
        QCOMPARE(level.ids.at(0).start, 4);
        QCOMPARE(level.records.at(0).recordType, QStringLiteral("001"));
        QCOMPARE(level.records.at(1).recordType, QStringLiteral("002"));
        QCOMPARE(level.records.at(1).name, QStringLiteral("SURVEY_2019_REC_2"));
        QCOMPARE(level.records.at(1).items.at(0).start, 12);
        QVERIFY(
            lossesOf(made).contains(QStringLiteral(": one record of more than 32000 columns; there are 2 records")));
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
        QTest::newRow("two underscores") << "a__b. c"
                                         << "A__B_C";
        QTest::newRow("at the ends") << "@a_"
                                     << "A";
        QTest::newRow("digit") << "1a"
                               << "V1A";
        QTest::newRow("other script") << "\u05d5\u05ea"
                                      << "VARIABLE";
        QTest::newRow("word of CSPro") << "group"
                                       << "GROUP_2";
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
        QTest::newRow("of a code with its decimals") << number << 4 << 2 << "-99"
                                                     << "6.2" << false;
        QTest::newRow("of the decimals of a code") << number << 4 << 0 << "1.25"
                                                   << "4.2" << true;
        QTest::newRow("decimals that leave room for the codes") << number << 20 << 9 << "1234567"
                                                                << "15.7" << true;
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
        QTest::newRow("unknown") << 0 << 255
                                 << QStringList{ "//X: the length of the text, which is now 255 characters" };
    }
    void widthOfAText()
    {
        QFETCH(int, length);
        const MadeDictionary made = dictionaryOf({ variable(QStringLiteral("X"), Storage::String, length) });
        QTEST(itemOf(made).length, "width");
        QTEST(lossesOf(made), "losses");
    }

    void widthHasRoomForUserMissingValues()
    {
        Item number = variable(QStringLiteral("X"), Storage::Double, 2);
        number.missing = { { QStringLiteral("-9"), QString() }, { QStringLiteral("990"), QStringLiteral("9999") } };
        QCOMPARE(itemOf(dictionaryOf({ number })).length, 4);
    }

    void userMissingTextsAreOrdinaryValues()
    {
        Item text = variable(QStringLiteral("X"), Storage::String, 1);
        text.missing = { { QStringLiteral("NA"), QString() } };
        const MadeDictionary made = dictionaryOf({ text });
        QCOMPARE(codesOf(itemOf(made)), QStringList{ "NA" });
        QCOMPARE(itemOf(made).length, 2);
        QVERIFY(lossesOf(made).contains(QStringLiteral(": user-missing texts of X")));
    }

    void aValueSetWithoutValuesIsNotMade()
    {
        Item number = variable(QStringLiteral("X"));
        number.valueSets = { made::valueSet({ made::value(".a", "a") }) };
        QCOMPARE(itemOf(dictionaryOf({ number })).valueSets.size(), 0);
    }

    void namesOfLabelSetsAndStorageTypesAreLost()
    {
        Item number = variable(QStringLiteral("X"), Storage::Int16, 3);
        number.valueSets = { made::valueSet({ made::value("1", "a") }) };
        number.valueSets[0].name = QStringLiteral("yesno");
        Layout layout = statistical({ variable("ID"), number });
        layout.format = Format::Stata;
        QCOMPARE(lossesOf(makeDictionary(layout, { "ID" })),
                 (QStringList{ ": name \"yesno\" of the value labels of X", ": storage type int16 of X" }));
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
