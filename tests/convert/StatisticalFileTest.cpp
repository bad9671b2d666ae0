#include "convert/StatisticalFile.h"
#include "compare/Diff.h"
#include "layout/MadeLayout.h"
#include "read/Reader.h"
#include "support/Corpus.h"

#include <QtTest>

Q_DECLARE_METATYPE(vanlayout::Item)

using namespace vanlayout;

namespace
{

constexpr StatisticalFormat sav = StatisticalFormat::Sav;
constexpr StatisticalFormat dta = StatisticalFormat::Dta;

// A dictionary with the id ID and these items in one record.
Layout dictionary(const QVector<Item> &items)
{
    Layout layout;
    layout.format = Format::CSProText;
    Level level;
    level.ids = { made::item(QStringLiteral("ID"), 3) };
    Record record;
    record.items = items;
    level.records = { record };
    layout.levels = { level };
    return layout;
}

struct Made {
    Layout layout; // of the file, read again
    QStringList losses;
    QString problem;

    Item item(int index = 1) const { return layout.levels.value(0).records.value(0).items.value(index); }
    QStringList names() const
    {
        QStringList list;
        for (const Item &variable : layout.levels.value(0).records.value(0).items)
            list.append(variable.name);
        return list;
    }
};

Made make(const Layout &layout, StatisticalFormat format, const QString &language = QString())
{
    StatisticalFile file = makeStatisticalFile(layout, format, language);
    QBuffer buffer(&file.bytes);
    buffer.open(QIODevice::ReadOnly);
    Made made = { readLayout(buffer, QStringLiteral("file")), {}, file.problem };
    for (const Loss &loss : file.losses)
        made.losses.append(loss.path + QStringLiteral(": ") + loss.what);
    return made;
}

Made make(const Item &item, StatisticalFormat format)
{
    return make(dictionary({ item }), format);
}

QStringList labelsOf(const Item &item)
{
    QStringList labels;
    for (const Value &value : item.valueSets.value(0).values)
        labels.append(value.ranges.value(0).from + QLatin1Char('=') + value.labels.primary());
    return labels;
}

QStringList missingOf(const Item &item)
{
    QStringList missing;
    for (const Range &range : item.missing)
        missing.append(range.to.isEmpty() ? range.from : range.from + QLatin1Char(':') + range.to);
    return missing;
}

Item text(int length, const QVector<Value> &values = {})
{
    return made::item(QStringLiteral("X"), length, values, itemtype::alpha());
}

} // namespace

/// Tests statistical files without rows, by reading them again.
class StatisticalFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void typesAndFormats_data()
    {
        QTest::addColumn<Item>("item");
        QTest::addColumn<QString>("spss");
        QTest::addColumn<QString>("stata");
        QTest::addColumn<int>("storage");
        const auto number = [](int length, int decimals = 0) {
            Item item = made::item(QStringLiteral("X"), length);
            item.decimals = decimals;
            return item;
        };
        QTest::newRow("2 digits") << number(2) << "F2.0"
                                  << "%2.0f" << int(Storage::Int8);
        QTest::newRow("4 digits") << number(4) << "F4.0"
                                  << "%4.0f" << int(Storage::Int16);
        QTest::newRow("9 digits") << number(9) << "F9.0"
                                  << "%9.0f" << int(Storage::Int32);
        QTest::newRow("10 digits") << number(10) << "F10.0"
                                   << "%10.0f" << int(Storage::Double);
        QTest::newRow("implied decimals") << number(5, 2) << "F6.2"
                                          << "%6.2f" << int(Storage::Double);
        Item marked = number(5, 2);
        marked.decimalMark = true;
        QTest::newRow("written decimal mark") << marked << "F5.2"
                                              << "%5.2f" << int(Storage::Double);
        QTest::newRow("all decimals") << number(2, 2) << "F4.2"
                                      << "%4.2f" << int(Storage::Double);
        QTest::newRow("no length") << number(0) << "F8.2"
                                   << "%10.0g" << int(Storage::Double);
        Item whole = number(0);
        whole.storage = Storage::Int16;
        QTest::newRow("no length, 2 bytes") << whole << "F8.2"
                                            << "%8.0g" << int(Storage::Int16);
        whole.storage = Storage::Int32;
        QTest::newRow("no length, 4 bytes") << whole << "F8.2"
                                            << "%12.0g" << int(Storage::Int32);
        whole.storage = Storage::Float;
        QTest::newRow("no length, float") << whole << "F8.2"
                                          << "%9.0g" << int(Storage::Float);
        QTest::newRow("text") << text(25) << "A25"
                              << "%25s" << int(Storage::String);
        QTest::newRow("long text") << text(3000) << "A3000"
                                   << "%9s" << int(Storage::String);
    }
    void typesAndFormats()
    {
        QFETCH(Item, item);
        QTEST(make(item, sav).item().format, "spss");
        QTEST(make(item, dta).item().format, "stata");
        QTEST(int(make(item, dta).item().storage), "storage");
        if (item.storage == Storage::None)
            QCOMPARE(make(item, sav).losses, QStringList());
    }

    void textsHaveRoomForTheirCodes()
    {
        QCOMPARE(make(text(2, { made::value("éé", "a") }), sav).item().length, 4);
        QCOMPARE(make(text(2, { made::value("éé", "a") }), sav).losses, QStringList());
    }

    void lengthsThatAreNotKeptAreLost_data()
    {
        QTest::addColumn<Item>("item");
        QTest::addColumn<int>("length");
        QTest::addColumn<QStringList>("lossesOfSpss");
        QTest::addColumn<QStringList>("lossesOfStata");
        const auto number = [](int length, int decimals) {
            Item item = made::item(QStringLiteral("X"), length);
            item.decimals = decimals;
            return item;
        };
        QTest::newRow("text of unknown length")
            << text(0) << 255 << QStringList{ ": length of the text, which is now 255 bytes, of X" } << QStringList();
        QTest::newRow("long text") << text(3000) << 3000 << QStringList()
                                   << QStringList{ ": length 3000 of the text of X" };
        QTest::newRow("too long") << text(40000) << 32767
                                  << QStringList{ ": length of the text, which is now 32767 bytes, of X" }
                                  << QStringList{ ": length 40000 of the text of X" };
        QTest::newRow("decimals") << number(19, 17) << 20 << QStringList{ ": width 19.17 of X" } << QStringList();
        QTest::newRow("width") << number(50, 0) << 40 << QStringList{ ": width 50.0 of X" }
                               << QStringList{ ": width 50.0 of X" };
    }
    void lengthsThatAreNotKeptAreLost()
    {
        QFETCH(Item, item);
        QTEST(make(item, sav).item().length, "length");
        QTEST(make(item, sav).losses, "lossesOfSpss");
        QTEST(make(item, dta).losses, "lossesOfStata");
    }

    void storageOfAStataFileStays_data()
    {
        QTest::addColumn<int>("storage");
        for (const Storage storage :
             { Storage::Int8, Storage::Int16, Storage::Int32, Storage::Float, Storage::Double, Storage::String })
            QTest::newRow(qPrintable(wordOf(storage))) << int(storage);
    }
    void storageOfAStataFileStays()
    {
        QFETCH(int, storage);
        Item item = made::item(QStringLiteral("X"), 9);
        item.storage = Storage(storage);
        if (item.storage == Storage::String)
            item.type = itemtype::alpha();
        QCOMPARE(int(make(item, dta).item().storage), storage);
    }

    void formatOfTheSameProgramStays()
    {
        Item item = made::item(QStringLiteral("X"), 20);
        item.format = QStringLiteral("DATETIME20.0");
        Layout layout = dictionary({ item });
        layout.format = Format::Spss;
        QCOMPARE(make(layout, sav).item().format, QStringLiteral("DATETIME20"));
        QCOMPARE(make(layout, dta).item().format, QStringLiteral("%20.0f"));
        QCOMPARE(make(layout, dta).losses, QStringList{ ": format DATETIME20.0 of X" });
    }

    void formatOfATextInSpssHasItsWidth()
    {
        Item item = text(8);
        item.format = QStringLiteral("A16");
        Layout layout = dictionary({ item });
        layout.format = Format::Spss;
        QCOMPARE(make(layout, sav).item().format, QStringLiteral("A8"));
        QCOMPARE(make(layout, sav).losses, QStringList{ ": format A16 of X" });
        layout.levels[0].records[0].items[0].format = QStringLiteral("AHEX16");
        QCOMPARE(make(layout, sav).item().format, QStringLiteral("AHEX16"));
    }

    void lossesHaveTheNamesOfTheSource()
    {
        QCOMPARE(make(made::item("a.b", 4, { made::range("1", "5", "a") }), dta).losses,
                 (QStringList{ "a.b: the name, which is now a_b", "a.b: the label of 1 to 5: \"a\"" }));
    }

    void formatsThatShowTheSameStay_data()
    {
        QTest::addColumn<int>("source");
        QTest::addColumn<Item>("item");
        QTest::addColumn<QString>("format");
        const auto number = [](const QString &format, int length, int decimals = 0) {
            Item item = made::item(QStringLiteral("X"), length);
            item.storage = Storage::Double;
            item.decimals = decimals;
            item.format = format;
            return item;
        };
        Item letters = text(7);
        letters.storage = Storage::String;
        QTest::newRow("number of SPSS") << int(Format::Spss) << number("F8.2", 8, 2) << "%8.2f";
        QTest::newRow("number of SPSS without decimals") << int(Format::Spss) << number("F8", 8) << "%8.0f";
        QTest::newRow("commas of SPSS") << int(Format::Spss) << number("COMMA9.1", 9, 1) << "%9.1fc";
        QTest::newRow("number of Stata") << int(Format::Stata) << number("%8.2f", 8, 2) << "F8.2";
        QTest::newRow("commas of Stata") << int(Format::Stata) << number("%9.1fc", 9, 1) << "COMMA9.1";
        letters.format = "A7";
        QTest::newRow("text of SPSS") << int(Format::Spss) << letters << "%7s";
        letters.format = "%-7s";
        QTest::newRow("text of Stata") << int(Format::Stata) << letters << "A7";
        letters.format = "$CHAR7.";
        QTest::newRow("text of SAS") << int(Format::Sas) << letters << "A7";
        QTest::newRow("date of a portable file") << int(Format::SpssPortable) << number("DATE11", 11) << "DATE11";
    }
    void formatsThatShowTheSameStay()
    {
        QFETCH(int, source);
        QFETCH(Item, item);
        Layout layout = dictionary({ item });
        layout.format = Format(source);
        const Made made = make(layout, layout.format == Format::Spss ? dta : sav);
        QTEST(made.item().format, "format");
        QCOMPARE(made.losses, QStringList());
    }

    void whatOnlyTheOtherProgramHasIsLost()
    {
        Item item = made::item(QStringLiteral("X"), 8, { made::value("1", "a") });
        item.measure = Measure::Ordinal;
        item.displayWidth = 12;
        item.storage = Storage::Double;
        Layout layout = dictionary({ item });
        layout.format = Format::Spss;
        layout.weight = QStringLiteral("X");
        QCOMPARE(make(layout, dta).losses,
                 (QStringList{ ": level of measurement of X", ": display width of X", ": the weight variable X" }));
        layout.weight.clear();
        layout.format = Format::Stata;
        layout.levels[0].records[0].items[0].storage = Storage::Int8;
        layout.levels[0].records[0].items[0].valueSets[0].name = QStringLiteral("yesno");
        QCOMPARE(make(layout, sav).losses,
                 (QStringList{ ": name \"yesno\" of the value labels of X", ": storage type int8 of X" }));
        QCOMPARE(make(layout, dta).item().valueSets.at(0).name, QStringLiteral("yesno"));
        layout.name = QStringLiteral("DATASET");
        QVERIFY(make(layout, dta).losses.contains(": the name DATASET of the data set"));
    }

    void aTextIsNoWeight()
    {
        Layout layout = dictionary({ text(2) });
        layout.weight = QStringLiteral("X");
        QCOMPARE(make(layout, sav).layout.weight, QString());
        QCOMPARE(make(layout, sav).losses, QStringList{ ": the weight variable X, which is a text" });
    }

    void dateIsThatOfTheSource_data()
    {
        QTest::addColumn<QByteArray>("zone");
        for (const char *zone : { "UTC", "Asia/Tokyo", "America/Lima" })
            QTest::newRow(zone) << QByteArray(zone);
    }
    void dateIsThatOfTheSource()
    {
        QFETCH(QByteArray, zone);
        Layout layout = dictionary({});
        const QByteArray undated = makeStatisticalFile(layout, dta, {}).bytes;
        const QByteArray previous = qgetenv("TZ");
        qputenv("TZ", zone);
        layout.created = QStringLiteral("2019-05-17T13:45:00");
        const QString stated = make(layout, sav).layout.created.value_or(QString());
        layout.created.reset();
        const QByteArray undatedHere = makeStatisticalFile(layout, dta, {}).bytes;
        previous.isNull() ? qunsetenv("TZ") : qputenv("TZ", previous);
        QCOMPARE(stated, QStringLiteral("2019-05-17T13:45:00"));
        QCOMPARE(undatedHere, undated);
    }

    void propertiesStay()
    {
        Item item = made::item(QStringLiteral("X"), 8);
        item.labels = made::labels(QStringLiteral("Âge"));
        item.measure = Measure::Ordinal;
        item.displayWidth = 12;
        Layout layout = dictionary({ item });
        layout.labels = made::labels(QStringLiteral("Survey"));
        layout.weight = QStringLiteral("X");
        const Made made = make(layout, sav);
        QCOMPARE(made.item().labels.primary(), QStringLiteral("Âge"));
        QCOMPARE(made.item().measure, Measure::Ordinal);
        QCOMPARE(made.item().displayWidth, 12);
        QCOMPARE(made.layout.labels.primary(), QStringLiteral("Survey"));
        QCOMPARE(made.layout.weight, QStringLiteral("X"));
        QCOMPARE(made.layout.rows, std::optional<qint64>(0));
        QCOMPARE(make(layout, dta).item().labels.primary(), QStringLiteral("Âge"));
    }

    void bytesAreTheSameEachTime()
    {
        const Layout layout = dictionary({ made::item("X", 2, { made::value("1", "a") }) });
        QCOMPARE(makeStatisticalFile(layout, sav, {}).bytes, makeStatisticalFile(layout, sav, {}).bytes);
        QCOMPARE(makeStatisticalFile(layout, dta, {}).bytes, makeStatisticalFile(layout, dta, {}).bytes);
    }

    void variablesAreIdsThenItemsOfAllRecords()
    {
        Item repeated = made::item(QStringLiteral("CROP"), 2);
        repeated.occurrences = 2;
        Layout layout = dictionary({ repeated });
        Record second;
        second.items = { made::item(QStringLiteral("Y"), 1) };
        layout.levels[0].records.append(second);
        QCOMPARE(make(layout, sav).names(), (QStringList{ "ID", "CROP_1", "CROP_2", "Y" }));
        QCOMPARE(make(layout, sav).losses,
                 QStringList{ ": the 2 record types, whose items are variables of one file" });
        layout.levels[0].records[0].name = QStringLiteral("HOUSE");
        layout.levels[0].records[1].name = QStringLiteral("PERSON");
        QCOMPARE(make(layout, sav).losses,
                 QStringList{ ": the 2 record types HOUSE, PERSON, whose items are variables of one file" });
    }

    void idsOfEachLevelAreVariablesOnce()
    {
        Layout layout = dictionary({ made::item(QStringLiteral("X"), 1) });
        Level inner;
        inner.ids = { made::item(QStringLiteral("LINE"), 2) };
        Record record;
        record.items = { made::item(QStringLiteral("Y"), 1) };
        inner.records = { record, record };
        inner.records[1].items[0].name = QStringLiteral("Z");
        layout.levels.append(inner);
        QCOMPARE(make(layout, sav).names(), (QStringList{ "ID", "X", "LINE", "Y", "Z" }));
    }

    void twoItemsOfOneNameAreTwoVariables()
    {
        const Made made = make(dictionary({ made::item("X", 1), made::item("X", 1) }), sav);
        QCOMPARE(made.names(), (QStringList{ "ID", "X", "X_2" }));
        QCOMPARE(made.losses, QStringList{ "X_2: the name, which is now X_2" });
    }

    void aStataFileOfManyVariablesHasVersion119()
    {
        Item item = made::item(QStringLiteral("X"), 1);
        item.occurrences = 32767;
        QVERIFY(makeStatisticalFile(dictionary({ item }), dta, {}).bytes.contains("<release>119</release>"));
        item.occurrences = 32766;
        QVERIFY(makeStatisticalFile(dictionary({ item }), dta, {}).bytes.contains("<release>118</release>"));
        item.occurrences = 52252;
        QCOMPARE(makeStatisticalFile(dictionary({ item }), dta, {}).problem,
                 QStringLiteral("has 52253 variables, but a Stata file can be written with at most 52252"));
    }

    void namesAreLegalAndUnique_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("spss");
        QTest::addColumn<QString>("stata");
        QTest::newRow("plain") << "X1"
                               << "X1"
                               << "X1";
        QTest::newRow("point") << "a.b"
                               << "a.b"
                               << "a_b";
        QTest::newRow("point at the end") << "ab."
                                          << "ab_"
                                          << "ab_";
        QTest::newRow("other script") << "\u05d5\u05ea"
                                      << "\u05d5\u05ea"
                                      << "\u05d5\u05ea";
        QTest::newRow("digit first") << "1a"
                                     << "V1a"
                                     << "V1a";
        QTest::newRow("blank") << "a b"
                               << "a_b"
                               << "a_b";
        QTest::newRow("reserved") << "ALL"
                                  << "ALL_2"
                                  << "ALL";
        QTest::newRow("reserved in Stata") << "byte"
                                           << "byte"
                                           << "byte_2";
        QTest::newRow("in use but for its case") << "id"
                                                 << "id_2"
                                                 << "id";
        QTest::newRow("more than 32 characters") << QString(40, 'x') << QString(40, 'x') << QString(32, 'x');
    }
    void namesAreLegalAndUnique()
    {
        QFETCH(QString, name);
        const Made inSpss = make(made::item(name, 2), sav);
        QTEST(inSpss.item().name, "spss");
        QTEST(make(made::item(name, 2), dta).item().name, "stata");
        QCOMPARE(inSpss.losses.size(), inSpss.item().name == name ? 0 : 1);
    }

    void valueLabels_data()
    {
        QTest::addColumn<Item>("item");
        QTest::addColumn<QStringList>("spss");
        QTest::addColumn<QStringList>("stata");
        QTest::addColumn<QStringList>("lossesOfSpss");
        QTest::addColumn<QStringList>("lossesOfStata");
        const auto number = [](const Value &value) { return made::item(QStringLiteral("X"), 4, { value }); };
        const QStringList none;
        QTest::newRow("codes") << made::item("X", 4, { made::value("01", "a"), made::value("2", "b") })
                               << QStringList{ "1=a", "2=b" } << QStringList{ "1=a", "2=b" } << none << none;
        QTest::newRow("negative") << number(made::value("-9", "a")) << QStringList{ "-9=a" } << QStringList{ "-9=a" }
                                  << none << none;
        QTest::newRow("fraction") << number(made::value("1,5", "a")) << QStringList{ "1.5=a" } << none << none
                                  << QStringList{ "X: the label of 1,5: \"a\"" };
        QTest::newRow("beyond long") << number(made::value("2147483621", "a")) << QStringList{ "2147483621=a" } << none
                                     << none << QStringList{ "X: the label of 2147483621: \"a\"" };
        QTest::newRow("range") << number(made::range("1", "5", "a")) << none << none
                               << QStringList{ "X: the label of 1 to 5: \"a\"" }
                               << QStringList{ "X: the label of 1 to 5: \"a\"" };
        QTest::newRow("blank field") << number(made::value("  ", "a", Special::NotApplicable)) << none << none
                                     << QStringList{ "X: the label of   : \"a\"" }
                                     << QStringList{ "X: the label of   : \"a\"" };
        QTest::newRow("no label") << number(made::value("1")) << none << none
                                  << QStringList{ ": values without a label of X" }
                                  << QStringList{ ": values without a label of X" };
        QTest::newRow("two labels") << made::item("X", 4, { made::value("01", "a"), made::value("1", "b") })
                                    << QStringList{ "1=a" } << QStringList{ "1=a" }
                                    << QStringList{ "X: the label of 1: \"b\"" }
                                    << QStringList{ "X: the label of 1: \"b\"" };
        QTest::newRow("the same label twice") << made::item("X", 4, { made::value("01", "a"), made::value("1", "a") })
                                              << QStringList{ "1=a" } << QStringList{ "1=a" } << none << none;
        Value withoutCode;
        withoutCode.labels = made::labels(QStringLiteral("a"));
        QTest::newRow("no code") << number(withoutCode) << none << none
                                 << QStringList{ "X: the label \"a\", which has no code" }
                                 << QStringList{ "X: the label \"a\", which has no code" };
        const QStringList special = { ": the special meaning notApplicable of X" };
        QTest::newRow("not applicable") << number(made::value("97", "a", Special::NotApplicable))
                                        << QStringList{ "97=a" } << QStringList{ "97=a" } << special << special;
        QTest::newRow("texts") << text(2, { made::value("A ", "a") }) << QStringList{ "A=a" } << none << none
                               << QStringList{ "X: the value labels, because they are of texts" };
        QTest::newRow("extended missing value") << number(made::value(".a", "a")) << none << QStringList{ ".a=a" }
                                                << QStringList{ "X: the label of .a: \"a\"" } << none;
    }
    void valueLabels()
    {
        QFETCH(Item, item);
        const Made inSpss = make(item, sav);
        const Made inStata = make(item, dta);
        QTEST(labelsOf(inSpss.item()), "spss");
        QTEST(labelsOf(inStata.item()), "stata");
        QTEST(inSpss.losses, "lossesOfSpss");
        QTEST(inStata.losses, "lossesOfStata");
    }

    // Other readers ignore labels whose width is not that of the text.
    void labelsOfALongTextHaveItsWidth()
    {
        const Layout layout = dictionary({ text(10, { made::value("ABCDEFGHIJ", "a"), made::value("K", "b") }) });
        const QByteArray bytes = makeStatisticalFile(layout, sav, {}).bytes;
        const auto number = [](int value) { return QByteArray(1, char(value)) + QByteArray(3, '\0'); };
        QVERIFY(bytes.contains(number(7) + number(21) + number(1) + number(51) + number(1) + "X" + number(10)
                               + number(2) + number(10) + "ABCDEFGHIJ" + number(1) + "a" + number(10) + "K         "
                               + number(1) + "b" + number(7)));
        QCOMPARE(labelsOf(make(layout, sav).item()), (QStringList{ "ABCDEFGHIJ=a", "K=b" }));
        QCOMPARE(make(layout, sav).item().length, 10);
    }

    void shortNamesDoNotEndWithinACharacter()
    {
        Item longText = text(300);
        longText.name = QStringLiteral("abcdef\u05d1\u05d1");
        Item number = made::item(QStringLiteral("abcdefg\u05d1"), 1, { made::value("1", "a") });
        number.missing = { { QStringLiteral("9"), QString() } };
        number.labels = made::labels(QStringLiteral("Label"));
        Layout layout = dictionary({ longText, number });
        layout.note = QStringLiteral("note");
        const QByteArray bytes = makeStatisticalFile(layout, sav, {}).bytes;
        QVERIFY(bytes.contains("ABCDEFG0=abcdefg\u05d1"));
        QCOMPARE(bytes.count("ABCDEFG0"), 2);
        QCOMPARE(make(layout, sav).names(), (QStringList{ "ID", longText.name, number.name }));
        QCOMPARE(make(layout, sav).item(1).length, 300);
        QCOMPARE(missingOf(make(layout, sav).item(2)), QStringList{ "9" });
    }

    void labelsOfStataAreInTheOrderOfTheirCodes()
    {
        const QVector<Value> values
            = { made::value(".a", "t"), made::value("2147483620", "max"), made::value("3", "three"),
                made::value("-2147483647", "min"), made::value("1", "one") };
        const Made made = make(dictionary({ made::item("X", 10, values), made::item("Y", 1, { values.at(4) }) }), dta);
        QCOMPARE(labelsOf(made.item(1)),
                 (QStringList{ "-2147483647=min", "1=one", "3=three", "2147483620=max", ".a=t" }));
        QCOMPARE(labelsOf(made.item(2)), QStringList{ "1=one" });
    }

    // Stata does not show notes without their number.
    void numberOfNotesIsInAStataFile()
    {
        Layout layout = dictionary({ made::item("X", 1, { made::value("1", "one") }) });
        QVERIFY(!makeStatisticalFile(layout, dta, {}).bytes.contains("note0"));
        layout.note = QStringLiteral("first\nsecond");
        QVERIFY(makeStatisticalFile(layout, dta, {})
                    .bytes.contains("note0" + QByteArray(124, '\0') + "2" + '\0' + "</ch><ch>"));
        QCOMPARE(make(layout, dta).layout.note, layout.note);
        QCOMPARE(labelsOf(make(layout, dta).item()), QStringList{ "1=one" });
    }

    void firstValueSetWithValuesCounts()
    {
        Item item = made::item(QStringLiteral("X"), 2, { made::value("1", "a") });
        ValueSet empty;
        empty.name = QStringLiteral("E");
        ValueSet second = item.valueSets.at(0);
        second.values = { made::value("2", "b") };
        item.valueSets = { empty, item.valueSets.at(0), second };
        const Made made = make(item, sav);
        QCOMPARE(labelsOf(made.item()), QStringList{ "1=a" });
        QCOMPARE(made.losses, QStringList{ ": further value sets of X" });
    }

    void occurrencesHaveTheSameLabels()
    {
        Item item = made::item(QStringLiteral("X"), 2, { made::value("1", "a") });
        item.occurrences = 2;
        const Made made = make(item, dta);
        QCOMPARE(labelsOf(made.item(1)), QStringList{ "1=a" });
        QCOMPARE(made.item(2).valueSets.value(0).name, made.item(1).valueSets.value(0).name);
    }

    void userMissingValues_data()
    {
        QTest::addColumn<Item>("item");
        QTest::addColumn<QStringList>("missing");
        QTest::addColumn<QStringList>("losses");
        const auto special = [](const QVector<Value> &values) { return made::item(QStringLiteral("X"), 3, values); };
        const auto ofFile = [](const QVector<Range> &missing) {
            Item item = made::item(QStringLiteral("X"), 3);
            item.missing = missing;
            return item;
        };
        const QString lost = QStringLiteral("X: the user-missing value %1");
        QTest::newRow("missing and refused")
            << special({ made::value("98", "", Special::Refused), made::value("99", "", Special::Missing) })
            << QStringList{ "98", "99" } << QStringList();
        QTest::newRow("not applicable and default are no codes")
            << special({ made::value("97", "", Special::NotApplicable), made::value("96", "", Special::Default) })
            << QStringList() << QStringList{ ": values without a label of X" };
        QTest::newRow("three") << ofFile({ { "7", "" }, { "8", "" }, { "9", "" } }) << QStringList{ "7", "8", "9" }
                               << QStringList();
        QTest::newRow("a fourth") << ofFile({ { "6", "" }, { "7", "" }, { "8", "" }, { "9", "" } })
                                  << QStringList{ "6", "7", "8" } << QStringList{ lost.arg("9") };
        QTest::newRow("range and code") << ofFile({ { "90", "99" }, { "0", "" } }) << QStringList{ "90:99", "0" }
                                        << QStringList();
        QTest::newRow("range and two codes") << ofFile({ { "90", "99" }, { "0", "" }, { "1", "" } })
                                             << QStringList{ "90:99", "0" } << QStringList{ lost.arg("1") };
        QTest::newRow("two ranges") << ofFile({ { "90", "99" }, { "80", "89" } }) << QStringList{ "90:99" }
                                    << QStringList{ lost.arg("80 to 89") };
        QTest::newRow("open range") << ofFile({ { "-inf", "0" } }) << QStringList{ "-inf:0" } << QStringList();
        QTest::newRow("no number") << ofFile({ { ".a", "" } }) << QStringList() << QStringList{ lost.arg(".a") };
    }
    void userMissingValues()
    {
        QFETCH(Item, item);
        QTEST(missingOf(make(item, sav).item()), "missing");
        QTEST(make(item, sav).losses, "losses");
    }

    void userMissingTextsHaveAtMost8Bytes()
    {
        Item item = text(12);
        item.missing = { { QStringLiteral("NA"), QString() }, { QStringLiteral("not asked"), QString() } };
        const Made made = make(item, sav);
        QCOMPARE(missingOf(made.item()), QStringList{ "NA" });
        QCOMPARE(made.losses, QStringList{ "X: the user-missing value not asked" });
    }

    void stataHasNoUserMissingCodes()
    {
        Item item = made::item(QStringLiteral("X"), 3);
        item.missing = { { QStringLiteral("99"), QString() } };
        QCOMPARE(make(item, dta).losses, QStringList{ "X: the user-missing value 99" });
    }

    void longLabelsAreCut()
    {
        Item item = made::item(QStringLiteral("X"), 3, { made::value("1", QString(130, 'v')) });
        item.labels = made::labels(QString(300, QLatin1Char('x')));
        const Made inSpss = make(item, sav);
        QCOMPARE(inSpss.item().labels.primary().size(), 256);
        QCOMPARE(labelsOf(inSpss.item()).value(0).size(), 122);
        QCOMPARE(inSpss.losses,
                 (QStringList{ "X: the label after its first 256 characters",
                               "X: the label of 1 after its first 120 characters" }));
        const Made inStata = make(item, dta);
        QCOMPARE(inStata.item().labels.primary().size(), 80);
        QCOMPARE(inStata.losses, QStringList{ "X: the label after its first 80 characters" });
    }

    void labelsAreInTheLanguage()
    {
        Item item = made::item(QStringLiteral("X"), 3);
        item.labels = { { { "EN", "Age" }, { "FR", "Âge" } } };
        Layout layout = dictionary({ item });
        layout.languages = { { "EN", "" }, { "FR", "" } };
        const Made made = make(layout, sav, QStringLiteral("fr"));
        QCOMPARE(made.item().labels.primary(), QStringLiteral("Âge"));
        QCOMPARE(made.losses, QStringList{ ": the labels in more than one of the languages EN, FR" });
    }

    void notesOfAFileAreLinesOfSpss()
    {
        Layout layout = dictionary({});
        layout.note = QStringLiteral("first\nsecond ") + QString(80, QLatin1Char('x'));
        const Made made = make(layout, sav);
        QCOMPARE(made.layout.note, (QStringLiteral("first\nsecond ") + QString(73, QLatin1Char('x'))));
        QCOMPARE(made.losses, QStringList{ ": a line of the note after its first 80 characters" });
        QCOMPARE(make(layout, dta).layout.note, layout.note);
        QCOMPARE(make(layout, dta).losses, QStringList());
        layout.note = QString(70000, QLatin1Char('x'));
        QCOMPARE(make(layout, dta).losses, QStringList{ ": a line of the note after its first 67784 characters" });
    }

    void whatAStatisticalFileCannotHoldIsLost()
    {
        Item item = made::item(QStringLiteral("X"), 3);
        item.note = QStringLiteral("n");
        item.capture = Capture{ QStringLiteral("date"), QString() };
        item.aliases = QStringList{ QStringLiteral("A") };
        Layout layout = dictionary({ item, made::item(QStringLiteral("Y"), 1, {}, QStringLiteral("image")) });
        layout.relations = { Relation() };
        layout.extras = { { QStringLiteral("L"), QStringLiteral("Color"), QString(), 0 } };
        QCOMPARE(make(layout, sav).losses,
                 (QStringList{ "Y: the item, because its type is image", ": note of X", ": capture type of X",
                               ": aliases of X", ": the relations", "L: the statement \"Color\"" }));
    }

    void whatBelongsToValueSetsAndRecordsIsLost()
    {
        Item item = made::item(QStringLiteral("X"), 3, { made::value("1", "a") });
        ValueSet &set = item.valueSets[0];
        set.labels = made::labels(QStringLiteral("Set"));
        set.note = QStringLiteral("n");
        set.aliases = QStringList{ QStringLiteral("A") };
        set.link = QStringLiteral("L");
        set.values[0].note = QStringLiteral("n");
        set.values[0].image = QStringLiteral("i.png");
        set.values[0].textColor = QStringLiteral("#FF0000");
        Layout layout = dictionary({ item });
        layout.name = QStringLiteral("D");
        layout.aliases = QStringList{ QStringLiteral("E") };
        layout.levels[0].name = QStringLiteral("LEVEL");
        layout.levels[0].note = QStringLiteral("n");
        layout.levels[0].records[0].name = QStringLiteral("REC");
        layout.levels[0].records[0].aliases = QStringList{ QStringLiteral("R") };
        layout.levels[0].records[0].occurrenceLabels = { { 1, made::labels("first") } };
        QCOMPARE(
            make(layout, sav).losses,
            (QStringList{ ": label of the value set of X", ": note of the value set of X",
                          ": aliases of the value set of X", ": link of the value set of X", ": notes of values of X",
                          ": images of values of X", ": text colors of values of X",
                          ": the aliases of the dictionary D", ": the note of the level LEVEL",
                          ": the aliases of the record REC", ": the labels of the occurrences of the record REC" }));
    }

    void longNamesOfValueSetsAreCutInStata()
    {
        Item item = made::item(QStringLiteral("X"), 1, { made::value("1", "a") });
        item.valueSets[0].name = QString(33, QLatin1Char('S'));
        QCOMPARE(
            make(item, dta).losses,
            QStringList{ "X: the name " + QString(33, 'S') + " of the value set, which is now " + QString(32, 'S') });
        QCOMPARE(make(item, sav).losses, QStringList());
    }

    void aLayoutWithoutVariablesIsRefused()
    {
        Layout layout = dictionary({});
        layout.levels[0].ids.clear();
        const StatisticalFile file = makeStatisticalFile(layout, sav, QString());
        QCOMPARE(file.problem, QStringLiteral("has no variable that a statistical file can hold"));
        QVERIFY(file.bytes.isEmpty());
    }

    void aLabelEndsBeforeAZero()
    {
        Item item = made::item(QStringLiteral("X"), 3);
        item.labels = made::labels(QStringLiteral("ab") + QChar(0) + QStringLiteral("cd"));
        QCOMPARE(make(item, sav).item().labels.primary(), QStringLiteral("ab"));
        QCOMPARE(make(item, dta).losses, QStringList{ "X: the label after its first 2 characters" });
    }

    void aLayoutWithTooManyColumnsIsRefused()
    {
        Item item = made::item(QStringLiteral("X"), 1);
        item.occurrences = 2000000;
        const StatisticalFile file = makeStatisticalFile(dictionary({ item }), sav, QString());
        QVERIFY(!file.problem.isEmpty());
        QVERIFY(file.bytes.isEmpty());
    }

    void realFilesComeBackFromTheirOwnFormat_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QStringList>("changes");
        QTest::newRow("SPSS") << int(sav) << corpusFiles(QStringLiteral("spss")) << QStringList();
        QTest::newRow("Stata") << int(dta) << corpusFiles(QStringLiteral("stata")) << QStringList();
    }
    void realFilesComeBackFromTheirOwnFormat()
    {
        QFETCH(int, format);
        QFETCH(QStringList, files);
        if (files.isEmpty())
            QSKIP("the corpus is absent");
        QStringList changes;
        for (const QString &path : qAsConst(files)) {
            const Layout layout = readLayout(path);
            if (!layout.isRead())
                continue;
            const LayoutDiff diff = compare(layout, make(layout, StatisticalFormat(format)).layout);
            for (const Change &change : diff.changes)
                changes.append(QFileInfo(path).fileName() + QLatin1Char(' ') + wordOf(change.kind));
        }
        QTEST(changes, "changes");
    }
};

QTEST_APPLESS_MAIN(StatisticalFileTest)

#include "StatisticalFileTest.moc"
