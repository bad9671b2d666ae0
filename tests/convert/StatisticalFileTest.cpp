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
        QTest::newRow("decimals") << number(5, 2) << "F5.2"
                                  << "%5.2f" << int(Storage::Double);
        QTest::newRow("all decimals") << number(2, 2) << "F4.2"
                                      << "%4.2f" << int(Storage::Double);
        QTest::newRow("no length") << number(0) << "F1.0"
                                   << "%1.0f" << int(Storage::Int8);
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
        QCOMPARE(make(item, sav).losses, QStringList());
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
        QTest::newRow("no label") << number(made::value("1")) << none << none << none << none;
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
            << QStringList() << QStringList();
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
        QCOMPARE(made.losses, QStringList{ ": the labels in further languages" });
    }

    void notesOfAFileAreLinesOfSpss()
    {
        Layout layout = dictionary({});
        layout.note = QStringLiteral("first\nsecond ") + QString(80, QLatin1Char('x'));
        const Made made = make(layout, sav);
        QCOMPARE(made.layout.note, (QStringLiteral("first\nsecond ") + QString(73, QLatin1Char('x'))));
        QCOMPARE(made.losses, QStringList{ ": a line of the note after its first 80 characters" });
        QCOMPARE(make(layout, dta).losses, QStringList{ ": the note of the file" });
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
        QTest::newRow("Stata") << int(dta) << corpusFiles(QStringLiteral("stata"))
                               << QStringList{ "foreign-mllabelswithnoteschar.dta dictionary-note" };
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
