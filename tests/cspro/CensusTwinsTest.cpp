#include "cspro/CSProDataImport.h"
#include "cspro/CSProJsonDataImport.h"
#include "import/DataProvider.h"
#include "import/SourceField.h"

#include <QtTest>

#include <memory>

namespace
{

// One difference between the two forms of the census, in one column of one field.
struct Difference {
    QString field; // its name in the JSON form
    QString column;
    QString fromText;
    QString fromJson;

    QString line() const
    {
        return QStringLiteral("%1 %2: \"%3\" \"%4\"").arg(field, column, fromText, fromJson).replace('\t', '|');
    }
};

// The contents of a provider for one of the two files.
struct Layout {
    explicit Layout(std::unique_ptr<TDataImport> source)
        : importer(std::move(source))
        , names(importer->selectLayoutSource())
    {
        provider.genericGetFieldsFrom(importer.get());
    }

    const TVpSourceField &field(int index) const { return *provider.getFields()->at(index); }

    std::unique_ptr<TDataImport> importer;
    std::unique_ptr<QStringList> names;
    TVpDataProvider provider;
};

struct Column {
    const char *name;
    QString (*text)(const TVpSourceField &);
};

const Column columns[] = {
    { "name", [](const TVpSourceField &field) { return field.fieldName; } },
    { "label", [](const TVpSourceField &field) { return field.label; } },
    { "type", [](const TVpSourceField &field) { return field.FieldType; } },
    { "length", [](const TVpSourceField &field) { return QString::number(field.length); } },
    { "start", [](const TVpSourceField &field) { return QString::number(field.start); } },
    { "decimals", [](const TVpSourceField &field) { return QString::number(field.decimals); } },
    { "minimum", [](const TVpSourceField &field) { return field.minimum; } },
    { "maximum", [](const TVpSourceField &field) { return field.maximum; } },
    { "notApplicable", [](const TVpSourceField &field) { return field.notApplicable; } },
    { "missing", [](const TVpSourceField &field) { return field.missingValue; } },
    { "group", [](const TVpSourceField &field) { return field.group; } },
    { "valueLabels", [](const TVpSourceField &field) { return field.valueLabels; } },
};

// The differences in the order of fields and columns, each group with its reason.
QVector<Difference> expectedDifferences()
{
    // clang-format off
    return {
        // A range is two values in the text form, and one code that is not a number in the JSON form: it counts as 0.
        { "DISTRICT", "minimum", "1", "0" },
        { "DISTRICT", "valueLabels", "1 Rural districts\t8 Rural districts\t11 Towns\t14 Towns\t21 Capital\t",
                                     "0 Rural districts\t0 Towns\t21 Capital\t" },
        // A missing mark is a value like others in the JSON form: it has an effect on bounds and labels, and is not the
        // missing code of the field.
        { "H04_ROOMS", "minimum", "1", "0" },
        { "H04_ROOMS", "maximum", "20", "99" },
        { "H04_ROOMS", "missing", "99", "" },
        { "H04_ROOMS", "valueLabels", "1 Rooms\t20 Rooms\t", "0 Rooms\t99 Not stated\t" },
        // Here the text form has no blank after the mark, so it is a value like others there too.
        { "H05_BEDROOMS", "valueLabels", "0 Rooms\t20 Rooms\t99 Not stated\t", "0 Rooms\t99 Not stated\t" },
        // The JSON form reads no decimals: a short number is an integer whose whole length is digits.
        { "H07_RENT", "type", "REAL", "INTEGER" },
        { "H07_RENT", "maximum", "99999999", "999999999" },
        // A not-applicable mark is a value like others as well.
        { "H09_WATER_MINUTES", "maximum", "240", "999" },
        { "H09_WATER_MINUTES", "notApplicable", "997", "" },
        { "H09_WATER_MINUTES", "missing", "999", "" },
        { "H09_WATER_MINUTES", "valueLabels", "0 Minutes\t240 Minutes\t", "0 Minutes\t997 Water on the premises\t999 Not stated\t" },
        // The suffix of an occurrence is a character in the text form, and a number in the JSON form.
        { "H12_ASSET_1", "name", QStringLiteral("H12_ASSET_\u0001"), "H12_ASSET_1" },
        { "H12_ASSET_2", "name", QStringLiteral("H12_ASSET_\u0002"), "H12_ASSET_2" },
        { "H12_ASSET_3", "name", QStringLiteral("H12_ASSET_\u0003"), "H12_ASSET_3" },
        { "H12_ASSET_4", "name", QStringLiteral("H12_ASSET_\u0004"), "H12_ASSET_4" },
        { "H12_ASSET_5", "name", QStringLiteral("H12_ASSET_\u0005"), "H12_ASSET_5" },
        // no decimals
        { "H13_LAND", "type", "REAL", "INTEGER" },
        { "H13_LAND", "maximum", "9999", "999999" },
        // ranges
        { "H14_VISIT_YEAR", "minimum", "2031", "0" },
        { "H14_VISIT_YEAR", "maximum", "2032", "0" },
        { "H14_VISIT_YEAR", "valueLabels", "2031 Census years\t2032 Census years\t", "0 Census years\t" },
        { "H14_VISIT_MONTH", "minimum", "1", "0" },
        { "H14_VISIT_MONTH", "maximum", "12", "0" },
        { "H14_VISIT_MONTH", "valueLabels", "1 Month\t12 Month\t", "0 Month\t" },
        { "H14_VISIT_DAY", "minimum", "1", "0" },
        { "H14_VISIT_DAY", "maximum", "31", "0" },
        { "H14_VISIT_DAY", "valueLabels", "1 Day\t31 Day\t", "0 Day\t" },
        { "H15_PERSONS", "minimum", "1", "0" },
        { "H15_PERSONS", "maximum", "30", "0" },
        { "H15_PERSONS", "valueLabels", "1 Persons\t30 Persons\t", "0 Persons\t" },
        { "P01_LINE", "minimum", "1", "0" },
        { "P01_LINE", "maximum", "30", "0" },
        { "P01_LINE", "valueLabels", "1 Line\t30 Line\t", "0 Line\t" },
        // marks, with ranges and without
        { "P05_BIRTH_DAY", "minimum", "1", "0" },
        { "P05_BIRTH_DAY", "maximum", "31", "99" },
        { "P05_BIRTH_DAY", "missing", "99", "" },
        { "P05_BIRTH_DAY", "valueLabels", "1 Day\t31 Day\t", "0 Day\t99 Not known\t" },
        { "P05_BIRTH_MONTH", "maximum", "12", "99" },
        { "P05_BIRTH_MONTH", "missing", "99", "" },
        { "P05_BIRTH_MONTH", "valueLabels",
          "1 January\t2 February\t3 March\t4 April\t5 May\t6 June\t7 July\t8 August\t9 September\t10 October\t11 November\t12 December\t",
          "1 January\t2 February\t3 March\t4 April\t5 May\t6 June\t7 July\t8 August\t9 September\t10 October\t11 November\t12 December\t99 Not known\t" },
        { "P05_BIRTH_YEAR", "minimum", "1920", "0" },
        { "P05_BIRTH_YEAR", "maximum", "2031", "9999" },
        { "P05_BIRTH_YEAR", "missing", "9999", "" },
        { "P05_BIRTH_YEAR", "valueLabels", "1920 Year\t2031 Year\t", "0 Year\t9999 Not known\t" },
        { "P06_AGE", "maximum", "110", "999" },
        { "P06_AGE", "missing", "999", "" },
        { "P06_AGE", "valueLabels", "0 Years\t110 Years\t", "0 Years\t999 Not stated\t" },
        // Values are sorted only in the text form, and the closing apostrophe of a quoted code stays there.
        { "P08_CITIZENSHIP", "valueLabels", "ORV' Orvandia\tOTH' Other country\tSEL' Selmark\tTIR' Tirrane Islands\t",
                                            "ORV Orvandia\tSEL Selmark\tTIR Tirrane Islands\tOTH Other country\t" },
        // suffixes
        { "P11_DIFFICULTY_1", "name", QStringLiteral("P11_DIFFICULTY_\u0001"), "P11_DIFFICULTY_1" },
        { "P11_DIFFICULTY_2", "name", QStringLiteral("P11_DIFFICULTY_\u0002"), "P11_DIFFICULTY_2" },
        { "P11_DIFFICULTY_3", "name", QStringLiteral("P11_DIFFICULTY_\u0003"), "P11_DIFFICULTY_3" },
        { "P11_DIFFICULTY_4", "name", QStringLiteral("P11_DIFFICULTY_\u0004"), "P11_DIFFICULTY_4" },
        // ranges
        { "P14_GRADE", "maximum", "18", "0" },
        { "P14_GRADE", "valueLabels", "0 None\t1 Primary\t6 Primary\t7 Secondary\t12 Secondary\t13 Higher\t18 Higher\t",
                                      "0 None\t0 Primary\t0 Secondary\t0 Higher\t" },
        // quoted codes
        { "P16_OCCUPATION", "valueLabels",
          "1100' Managers\t2300' Teachers\t6100' Farmers\t6200' Fishers and net makers\t7100' Builders\t9000' Helpers\t",
          "1100 Managers\t2300 Teachers\t6100 Farmers\t6200 Fishers and net makers\t7100 Builders\t9000 Helpers\t" },
        // ranges
        { "P17_INDUSTRY", "minimum", "100", "0" },
        { "P17_INDUSTRY", "maximum", "9999", "0" },
        { "P17_INDUSTRY", "valueLabels",
          "100 Farming and fishing\t399 Farming and fishing\t1000 Manufacturing\t3399 Manufacturing\t4100 Building\t4399 Building\t4500 Services\t9999 Services\t",
          "0 Farming and fishing\t0 Manufacturing\t0 Building\t0 Services\t" },
        // ranges and marks
        { "P18_HOURS", "minimum", "1", "0" },
        { "P18_HOURS", "maximum", "98", "99" },
        { "P18_HOURS", "missing", "99", "" },
        { "P18_HOURS", "valueLabels", "1 Hours\t98 Hours\t", "0 Hours\t99 Not stated\t" },
        { "P20_CHILDREN_BORN", "maximum", "20", "98" },
        { "P20_CHILDREN_BORN", "notApplicable", "98", "" },
        { "P20_CHILDREN_BORN", "valueLabels", "0 Children\t20 Children\t", "0 Children\t98 Men and girls under 12\t" },
        { "P21_CHILDREN_ALIVE", "maximum", "20", "98" },
        { "P21_CHILDREN_ALIVE", "notApplicable", "98", "" },
        { "P21_CHILDREN_ALIVE", "valueLabels", "0 Children\t20 Children\t", "0 Children\t98 Men and girls under 12\t" },
        { "M04_AGE", "maximum", "110", "999" },
        { "M04_AGE", "missing", "999", "" },
        { "M04_AGE", "valueLabels", "0 Years\t110 Years\t", "0 Years\t999 Not stated\t" },
        { "M05_DEATH_YEAR", "minimum", "2030", "0" },
        { "M05_DEATH_YEAR", "maximum", "2032", "0" },
        { "M05_DEATH_YEAR", "valueLabels", "2030 Year\t2032 Year\t", "0 Year\t" },
        { "M05_DEATH_MONTH", "minimum", "1", "0" },
        { "M05_DEATH_MONTH", "maximum", "12", "0" },
        { "M05_DEATH_MONTH", "valueLabels", "1 Month\t12 Month\t", "0 Month\t" },
    };
    // clang-format on
}

} // namespace

// Tests the census of the examples in its two forms: equal results and differences.
class CensusTwinsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const QString directory = QStringLiteral(VAN_EXAMPLES "/");
        text = std::make_unique<Layout>(std::make_unique<TCSProDataImport>(directory + "census.dcf"));
        json = std::make_unique<Layout>(std::make_unique<TCSProJsonDataImport>(directory + "census8.dcf"));
    }

    void bothHaveTheSameFieldsInTheSameOrder()
    {
        QCOMPARE(text->provider.getFields()->size(), 63);
        QCOMPARE(json->provider.getFields()->size(), 63);
        QCOMPARE(text->names->size(), 63);
        for (int i = 0; i < 63; ++i) {
            QCOMPARE(json->field(i).label, text->field(i).label);
            QCOMPARE(json->field(i).start, text->field(i).start);
            QCOMPARE(json->field(i).length, text->field(i).length);
        }
    }

    void fieldsDifferOnlyAsTheTableSays()
    {
        QStringList expected;
        for (const Difference &difference : expectedDifferences())
            expected.append(difference.line());
        QStringList found;
        for (int i = 0; i < json->provider.getFields()->size(); ++i) {
            for (const Column &column : columns) {
                const Difference difference = { json->field(i).fieldName, column.name, column.text(text->field(i)),
                                                column.text(json->field(i)) };
                if (difference.fromText != difference.fromJson)
                    found.append(difference.line());
            }
        }
        for (int i = 0; i < qMin(found.size(), expected.size()); ++i)
            QCOMPARE(found.at(i), expected.at(i));
        QCOMPARE(found, expected);
    }

    void groupsAndRecordTypesAreTheSame()
    {
        for (const Layout *layout : { text.get(), json.get() }) {
            TDataImport &importer = *layout->importer;
            QVERIFY(importer.isMultiple());
            QCOMPARE(importer.getGroupCount(), 3);
            QCOMPARE(importer.getGroupName(0), QString("HOUSING=H"));
            QCOMPARE(importer.getGroupName(1), QString("POPULATION=P"));
            QCOMPARE(importer.getGroupName(2), QString("MORTALITY=M"));
            QCOMPARE(importer.getGroupValue(2), QString("MORTALITY=M"));
            QCOMPARE(importer.getRecordTypeIndex("P"), 1);
            QCOMPARE(layout->provider.getRecordTypeStart(), 1);
            QCOMPARE(layout->provider.getRecordTypeSize(), 1);
        }
    }

    void providerTypeIsKnownOnlyForTheTextForm()
    {
        QCOMPARE(text->provider.getDataProviderType(), QString("CSPRO"));
        QCOMPARE(json->provider.getDataProviderType(), QString());
        QCOMPARE(text->provider.getDataProviderId(), "CSPRO_" + text->importer->getSourceName());
        QCOMPARE(json->provider.getDataProviderId(), "CSPRO8_" + json->importer->getSourceName());
        for (int i = 0; i < 63; ++i) {
            QCOMPARE(text->field(i).DataProviderType, QString("CSPRO"));
            QCOMPARE(json->field(i).DataProviderType, QString());
        }
    }

private:
    std::unique_ptr<Layout> text;
    std::unique_ptr<Layout> json;
};

QTEST_GUILESS_MAIN(CensusTwinsTest)
#include "CensusTwinsTest.moc"
