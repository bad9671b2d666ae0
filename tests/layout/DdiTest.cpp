#include "layout/LayoutFiles.h"
#include "support/XmlElement.h"

#include "read/Reader.h"
#include "write/Ddi.h"
#include "write/XmlStream_p.h"

#include <QBuffer>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace vanlayout;

Q_DECLARE_METATYPE(vanlayout::Item)
Q_DECLARE_METATYPE(vanlayout::Layout)

namespace
{

QByteArray documentOf(const Layout &layout, const DdiOptions &options = {})
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return writeDdi(layout, buffer, options) ? buffer.data() : QByteArray();
}

DdiOptions ipums()
{
    DdiOptions options;
    options.profile = DdiProfile::Ipums;
    return options;
}

XmlElement ddiOf(const Layout &layout, const DdiOptions &options = {})
{
    return readXmlDocument(documentOf(layout, options));
}

Labels labelled(const QString &text, const QString &language = {})
{
    return { { { language, text } } };
}

Item numeric(const QString &name, int start = 1, int length = 2)
{
    Item item;
    item.name = name;
    item.start = start;
    item.length = length;
    return item;
}

Item text(const QString &name, int start = 1, int length = 2)
{
    Item item = numeric(name, start, length);
    item.type = itemtype::alpha();
    return item;
}

Item subitem(const QString &name, int start, int length, const QString &holder)
{
    Item item = numeric(name, start, length);
    item.isSubitem = true;
    item.subitemOf = holder;
    return item;
}

Value value(const QVector<Range> &ranges, const QString &label, Special special = Special::None)
{
    Value value;
    value.ranges = ranges;
    if (!label.isEmpty())
        value.labels = labelled(label);
    value.special = special;
    return value;
}

ValueSet setOf(const QString &name, const QVector<Value> &values)
{
    ValueSet set;
    set.name = name;
    set.values = values;
    return set;
}

Item withValues(Item item, const QVector<Value> &values)
{
    item.valueSets = { setOf(item.name + "_VS1", values) };
    return item;
}

Record record(const QString &name, const QString &type, const QVector<Item> &items)
{
    Record record;
    record.name = name;
    record.recordType = type;
    record.items = items;
    return record;
}

// A dictionary of one record whose lines have no type.
Layout dictionary(const QVector<Item> &items)
{
    Layout layout;
    layout.format = Format::CSProText;
    layout.name = "DICT";
    Level level;
    level.records = { record("REC", QString(), items) };
    layout.levels = { level };
    return layout;
}

Layout statFile(const QVector<Item> &items, Format format = Format::Spss)
{
    Layout layout = dictionary(items);
    layout.format = format;
    layout.name.clear();
    layout.levels[0].records[0].name.clear();
    return layout;
}

// Two levels; the first has two records, the second one.
Layout census()
{
    Layout layout = dictionary({});
    layout.recordType = RecordTypeColumns{ 1, 1 };
    layout.levels[0].name = "HOUSEHOLD";
    layout.levels[0].labels = { { { "EN", "Household" }, { "FR", "Ménage" } } };
    layout.levels[0].ids = { numeric("HH", 2, 3) };
    layout.levels[0].records
        = { record("HOUSE", "H", { numeric("ROOMS", 5, 2) }), record("PERSON", "P", { numeric("AGE", 5, 3) }) };
    Level trips;
    trips.ids = { numeric("DAY", 5, 2) };
    trips.records = { record("TRIP", "T", { numeric("KM", 7, 4) }) };
    layout.levels.append(trips);
    return layout;
}

QVector<XmlElement> variablesOf(const Layout &layout, const DdiOptions &options = {})
{
    return ddiOf(layout, options).all("dataDscr/var");
}

XmlElement variableOf(const Item &item, const DdiOptions &options = {})
{
    return variablesOf(dictionary({ item }), options).value(0);
}

QStringList attributesOf(const QVector<XmlElement> &elements, const QString &attribute)
{
    QStringList values;
    for (const XmlElement &element : elements)
        values.append(element[attribute]);
    return values;
}

QStringList uniqueOf(QStringList texts)
{
    texts.removeDuplicates();
    return texts;
}

QStringList textsOf(const QVector<XmlElement> &elements)
{
    QStringList texts;
    for (const XmlElement &element : elements)
        texts.append(element.text);
    return texts;
}

// `code=label`, with ` (kind)` after a missing one; `-` for a category without a code, with its ranges.
QStringList categoriesOf(const XmlElement &variable)
{
    QStringList texts;
    for (const XmlElement &category : variable.all("catgry")) {
        const bool hasCode = !category.all("catValu").isEmpty();
        QString line = (hasCode ? category.one("catValu").text : "-" + category.one("txt").text) + '='
            + category.one("labl").text;
        if (category["missing"] == "Y")
            line += " (" + category["missType"] + ')';
        texts.append(line);
    }
    return texts;
}

// `INT 5` or `REAL 1..2`; an open end is empty.
QStringList rangesIn(const XmlElement &parent)
{
    QStringList texts;
    for (const XmlElement &part : parent.children) {
        if (part.name == "item")
            texts.append((part["UNITS"] + ' ' + part["VALUE"]).trimmed());
        else if (part.name == "range")
            texts.append((part["UNITS"] + ' ' + part["min"] + ".." + part["max"]).trimmed());
    }
    return texts;
}

// The ID attributes of an element and of all elements within it.
void collectIds(const XmlElement &element, QStringList &ids)
{
    if (element.has("ID"))
        ids.append(element["ID"]);
    for (const XmlElement &child : element.children)
        collectIds(child, ids);
}

QString schema()
{
    return QStringLiteral(VAN_SCHEMAS "/ddi-codebook-2.5/codebook.xsd");
}

void verifyWithSchema(const QStringList &documents)
{
    QProcess xmllint;
    xmllint.start("xmllint", QStringList{ "--nonet", "--noout", "--schema", schema() } + documents);
    QVERIFY2(xmllint.waitForFinished(120000) && xmllint.exitStatus() == QProcess::NormalExit, "xmllint did not end");
    QVERIFY2(xmllint.exitCode() == 0, xmllint.readAllStandardError().left(2000).constData());
}

} // namespace

/// Tests the DDI document of a layout, element by element.
class DdiTest : public QObject
{
    Q_OBJECT

private slots:
    void documentsAreValid_data();
    void documentsAreValid();
    void documentOfOddTextsIsValid();
    void titleIsAskedForOrThatOfTheDictionary_data();
    void titleIsAskedForOrThatOfTheDictionary();
    void titlesInOtherLanguagesAreParallel();
    void nameOfTheFileIsNowhere();
    void notesOfTheDictionaryAreNotesOfTheStudy();
    void everyLabelHasItsLanguage();
    void textOfAnUnknownLanguageStays();
    void emptyPartsOfALabelAreNotWritten();
    void structureIsHierarchicalWhereRecordsDiffer();
    void recordsAreGroupsWithTypeAndKeys();
    void formatOfTheTypeIsNumericWhereAllTypesAreNumbers();
    void linesWithoutATypeHaveNoType_data();
    void linesWithoutATypeHaveNoType();
    void recordIsLabelledInEachLanguage();
    void lengthOfALineIsWrittenWhereItIsStated();
    void levelsAndRecordsAreGroupsOfVariables();
    void statisticalFileHasNoRecordGroups();
    void casesAreThoseThatTheFileStates();
    void charsetIsOnlyThatOfTheData_data();
    void charsetIsOnlyThatOfTheData();
    void dateIsTheLastOneOfTheFile_data();
    void dateIsTheLastOneOfTheFile();
    void idsAreOneVariableOfAllTheirRecords();
    void sharedRecordTypeIsListedOnce();
    void variablesAreInTheOrderOfTheFile();
    void locationIsExact_data();
    void locationIsExact();
    void occurrencesAreVariables();
    void subitemsAreAGroupWithTheirItemInEachOccurrence();
    void attributesIdAreUniqueNames_data();
    void attributesIdAreUniqueNames();
    void decimalsAreStated_data();
    void decimalsAreStated();
    void intervalIsStatedOnlyWithTheMeasure_data();
    void intervalIsStatedOnlyWithTheMeasure();
    void weightIsMarked();
    void codesAndRangesAreCategories_data();
    void codesAndRangesAreCategories();
    void validValuesAreThoseOfTheValueSets_data();
    void validValuesAreThoseOfTheValueSets();
    void labelsOfStatisticalFilesLimitNothing();
    void missingValuesAreInvalid_data();
    void missingValuesAreInvalid();
    void furtherValueSetsAreNotes();
    void eachValueSetIsNamedInANote();
    void valuesWithoutALabelAreInTheFirstNote();
    void notesAndImagesOfValuesAreTexts();
    void noteAndAliasesOfAnItemAreKept();
    void formatIsNumericOrCharacter_data();
    void formatIsNumericOrCharacter();
    void relationsAreNotes();
    void nothingIsInvented();
    void xmlHoldsEveryText_data();
    void xmlHoldsEveryText();
    void extractReadersFindAVariableOfTheRecordType();
    void nameOfTheRecordTypeVariableIsFree();
    void extractReadersFindEveryElement();
    void extractReadersFindACodeInEachCategory();
    void rangesAreANoteForExtractReaders();
    void refusalOfTheDeviceIsReported();
    void deviceMayTakeParts();
    void sizeGrowsOnlyWithTheLayout();
};

void DdiTest::documentsAreValid_data()
{
    addLayoutFiles();
}

void DdiTest::documentsAreValid()
{
    QFETCH(QStringList, paths);
    if (!QFile::exists(schema()))
        QSKIP("the schema of DDI Codebook 2.5 is not available");
    if (paths.isEmpty())
        QSKIP("the corpus is not available");
    const QTemporaryDir directory;
    QStringList documents;
    for (const QString &path : qAsConst(paths)) {
        const Layout layout = readLayout(path);
        if (!layout.isRead())
            continue; // files that are damaged on purpose
        for (const DdiOptions &options : { DdiOptions(), ipums() }) {
            QFile file(
                directory.filePath(QString::number(documents.size()) + '-' + QFileInfo(path).fileName() + ".xml"));
            QVERIFY(file.open(QIODevice::WriteOnly));
            QVERIFY(writeDdi(layout, file, options));
            documents.append(file.fileName());
        }
    }
    QVERIFY(!documents.isEmpty());
    verifyWithSchema(documents);
}

void DdiTest::documentOfOddTextsIsValid()
{
    if (!QFile::exists(schema()))
        QSKIP("the schema of DDI Codebook 2.5 is not available");
    const QString odd = QStringLiteral("<&>\"'\n\t\r") + QChar(1) + QChar(0xD800) + QChar(0xFFFE) + "\u00e9";
    Layout layout = census();
    layout.note = odd;
    layout.labels = labelled(odd, "not a code");
    Item item = withValues(text(odd), { value({ { odd, "" }, { odd, "z" } }, odd, Special::Missing) });
    item.labels = labelled(odd, "e n");
    item.note = odd;
    item.aliases = QStringList{ odd };
    item.valueSets.append(item.valueSets.constFirst());
    layout.levels[0].records[1].items = { item, item, numeric("1ST"), numeric("") };
    layout.levels[0].records[1].recordType = odd;
    layout.levels[0].records[1].name = odd;
    const QTemporaryDir directory;
    for (const DdiOptions &options : { DdiOptions(), ipums() }) {
        QFile file(directory.filePath("odd.xml"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(writeDdi(layout, file, options));
        file.close();
        verifyWithSchema({ file.fileName() });
    }
}

void DdiTest::titleIsAskedForOrThatOfTheDictionary_data()
{
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("title");
    // clang-format off
    QTest::newRow("asked for") << "My title" << "Label" << "NAME" << "My title";
    QTest::newRow("label")     << ""         << "Label" << "NAME" << "Label";
    QTest::newRow("blanks around") << ""     << "  Label " << "NAME" << "Label";
    QTest::newRow("blanks only") << ""      << "  "    << "NAME" << "NAME";
    QTest::newRow("name")      << ""         << ""      << "NAME" << "NAME";
    QTest::newRow("none")      << ""         << ""      << ""     << "";
    // clang-format on
}

void DdiTest::titleIsAskedForOrThatOfTheDictionary()
{
    QFETCH(QString, wanted);
    QFETCH(QString, label);
    Layout layout = dictionary({});
    layout.file = "survey.dcf";
    QFETCH(QString, name);
    layout.name = name;
    if (!label.isEmpty())
        layout.labels = labelled(label, "EN");
    DdiOptions options;
    options.title = wanted;
    const XmlElement document = ddiOf(layout, options);
    for (const char *section : { "docDscr", "stdyDscr" }) {
        const XmlElement title = document.one(QString(section) + "/citation/titlStmt/titl");
        QCOMPARE(title.name, QString("titl"));
        QTEST(title.text, "title");
        QCOMPARE(title["xml:lang"], QString(title.text == "Label" ? "en" : ""));
    }
}

void DdiTest::titlesInOtherLanguagesAreParallel()
{
    Layout layout = dictionary({});
    layout.labels = { { { "EN", "Census" }, { "FR", "Recensement" }, { "PT", "" } } };
    const XmlElement statement = ddiOf(layout).one("stdyDscr/citation/titlStmt");
    QCOMPARE(statement.children.size(), 2);
    QCOMPARE(statement.one("titl").text, QString("Census"));
    QCOMPARE(statement.one("parTitl").text, QString("Recensement"));
    QCOMPARE(statement.one("parTitl")["xml:lang"], QString("fr"));
}

void DdiTest::nameOfTheFileIsNowhere()
{
    Layout layout = census();
    layout.file = "/data/unlikely.dcf";
    QVERIFY(!documentOf(layout).contains("unlikely"));
    QVERIFY(!documentOf(layout, ipums()).contains("unlikely"));
}

void DdiTest::notesOfTheDictionaryAreNotesOfTheStudy()
{
    Layout layout = dictionary({});
    layout.note = "First\nSecond";
    layout.aliases = QStringList{ "A", "B" };
    const QVector<XmlElement> notes = ddiOf(layout).all("stdyDscr/notes");
    QCOMPARE(textsOf(notes), QStringList({ "First\nSecond", "A, B" }));
    QCOMPARE(attributesOf(notes, "type"), QStringList({ "note", "aliases" }));
    QVERIFY(ddiOf(dictionary({})).all("stdyDscr/notes").isEmpty());
}

void DdiTest::everyLabelHasItsLanguage()
{
    Item item = withValues(numeric("SEX"), { value({ { "1", "" } }, "") });
    const Labels both{ { { "EN", "in English" }, { "FR", "en fran\u00e7ais" } } };
    item.labels = both;
    item.valueSets[0].values[0].labels = both;
    const XmlElement variable = variableOf(item);
    for (const char *path : { "labl", "catgry/labl" }) {
        const QVector<XmlElement> labels = variable.all(path);
        QCOMPARE(textsOf(labels), QStringList({ "in English", "en fran\u00e7ais" }));
        QCOMPARE(attributesOf(labels, "xml:lang"), QStringList({ "en", "fr" }));
    }
    QCOMPARE(variable.one("labl")["level"], QString("variable"));
    QVERIFY(!variable.one("catgry/labl").has("level"));
}

void DdiTest::textOfAnUnknownLanguageStays()
{
    Item item = numeric("X");
    item.labels = labelled("A label", "Kelmarian");
    const XmlElement label = variableOf(item).one("labl");
    QCOMPARE(label.text, QString("A label"));
    QVERIFY(!label.has("xml:lang"));
}

void DdiTest::emptyPartsOfALabelAreNotWritten()
{
    Item item = numeric("X");
    item.labels = { { { "EN", "A label" }, { "FR", "" } } };
    QCOMPARE(variableOf(item).all("labl").size(), 1);
    QVERIFY(variableOf(numeric("X")).all("labl").isEmpty());
}

void DdiTest::structureIsHierarchicalWhereRecordsDiffer()
{
    QCOMPARE(ddiOf(census()).one("fileDscr/fileTxt/fileStrc")["type"], QString("hierarchical"));
    QCOMPARE(ddiOf(dictionary({})).one("fileDscr/fileTxt/fileStrc")["type"], QString("rectangular"));
    QCOMPARE(ddiOf(statFile({})).one("fileDscr/fileTxt/fileStrc")["type"], QString("rectangular"));
    QCOMPARE(ddiOf(census()).all("fileDscr").size(), 1);
}

void DdiTest::recordsAreGroupsWithTypeAndKeys()
{
    const QVector<XmlElement> groups = ddiOf(census()).all("fileDscr/fileTxt/fileStrc/recGrp");
    QCOMPARE(attributesOf(groups, "rectype"), QStringList({ "H", "P", "T" }));
    QCOMPARE(attributesOf(groups, "rtypeloc"), QStringList({ "1", "1", "1" }));
    QCOMPARE(attributesOf(groups, "rtypewidth"), QStringList({ "1", "1", "1" }));
    QCOMPARE(attributesOf(groups, "rtypevtype"), QStringList({ "character", "character", "character" }));
    QCOMPARE(attributesOf(groups, "keyvar"), QStringList({ "HH", "HH", "HH DAY" }));
    QCOMPARE(attributesOf(groups, "recidvar"), QStringList({ "HH", "HH", "DAY" }));
    QStringList counts;
    for (const XmlElement &group : groups)
        counts.append(group.one("recDimnsn/varQnty").text);
    QCOMPARE(counts, QStringList({ "2", "2", "3" }));
}

void DdiTest::formatOfTheTypeIsNumericWhereAllTypesAreNumbers()
{
    Layout layout = census();
    layout.levels[0].records[0].recordType = "1";
    layout.levels[0].records[1].recordType = "2";
    const QString path = "fileDscr/fileTxt/fileStrc/recGrp";
    QCOMPARE(ddiOf(layout).one(path)["rtypevtype"], QString("character"));
    layout.levels[1].records[0].recordType = "3";
    QCOMPARE(ddiOf(layout).one(path)["rtypevtype"], QString("numeric"));
}

void DdiTest::linesWithoutATypeHaveNoType_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("length");
    QTest::newRow("no columns stated") << 0 << 0;
    QTest::newRow("no width") << 1 << 0;
    QTest::newRow("before the line") << -1 << 2;
}

void DdiTest::linesWithoutATypeHaveNoType()
{
    QFETCH(int, start);
    QFETCH(int, length);
    Layout layout = census();
    layout.recordType.reset();
    if (start != 0)
        layout.recordType = RecordTypeColumns{ start, length };
    for (const DdiOptions &options : { DdiOptions(), ipums() }) {
        const XmlElement document = ddiOf(layout, options);
        const QVector<XmlElement> groups = document.all("fileDscr/fileTxt/fileStrc/recGrp");
        QCOMPARE(groups.size(), 3);
        QVERIFY(!groups.at(0).has("rectype") && !groups.at(0).has("rtypeloc") && !groups.at(0).has("rtypewidth"));
        for (const XmlElement &variable : document.all("dataDscr/var"))
            QVERIFY(!variable.has("rectype"));
        QCOMPARE(document.all("dataDscr/var").size(), 5);
    }
}

void DdiTest::recordIsLabelledInEachLanguage()
{
    Layout layout = census();
    layout.levels[0].records[0].labels = { { { "EN", "House" }, { "FR", "Maison" } } };
    const QVector<XmlElement> groups = ddiOf(layout).all("fileDscr/fileTxt/fileStrc/recGrp");
    QCOMPARE(textsOf(groups.at(0).all("labl")), QStringList({ "House", "Maison" }));
    QCOMPARE(attributesOf(groups.at(0).all("labl"), "xml:lang"), QStringList({ "en", "fr" }));
    QCOMPARE(textsOf(groups.at(1).all("labl")), QStringList({ "PERSON" })); // its name, in no language
    QVERIFY(!groups.at(1).one("labl").has("xml:lang"));
}

void DdiTest::lengthOfALineIsWrittenWhereItIsStated()
{
    Layout layout = census();
    layout.levels[0].records[0].length = 80;
    const QVector<XmlElement> groups = ddiOf(layout).all("fileDscr/fileTxt/fileStrc/recGrp");
    QCOMPARE(groups.at(0).one("recDimnsn/logRecL").text, QString("80"));
    QVERIFY(groups.at(1).all("recDimnsn/logRecL").isEmpty());
}

void DdiTest::levelsAndRecordsAreGroupsOfVariables()
{
    Layout layout = census();
    Record &house = layout.levels[0].records[0];
    house.note = "A note";
    house.aliases = QStringList{ "DWELLING" };
    house.required = false;
    house.maximum = 4;
    house.occurrenceLabels = { { 2, labelled("Second", "EN") } };
    house.labels = labelled("House", "EN");
    const QVector<XmlElement> groups = ddiOf(layout).all("dataDscr/varGrp");
    QCOMPARE(attributesOf(groups, "type"), QStringList({ "other", "other", "record", "record", "record" }));
    QCOMPARE(groups.at(0)["otherType"], QString("level"));
    QCOMPARE(attributesOf(groups, "name"), QStringList({ "HOUSEHOLD", "", "HOUSE", "PERSON", "TRIP" }));
    QCOMPARE(attributesOf(groups, "var"), QStringList({ "HH", "DAY", "ROOMS", "AGE", "KM" }));
    QCOMPARE(groups.at(0)["varGrp"], groups.at(2)["ID"] + ' ' + groups.at(3)["ID"]);
    QCOMPARE(textsOf(groups.at(0).all("labl")), QStringList({ "Household", "M\u00e9nage" }));
    QCOMPARE(groups.at(2).one("labl")["xml:lang"], QString("en"));
    QCOMPARE(groups.at(2).one("txt").text, QString("A note"));
    QCOMPARE(textsOf(groups.at(2).all("notes")),
             QStringList({ "optional, at most 4 in a case", "Second", "DWELLING" }));
    QCOMPARE(groups.at(2).all("notes").at(1)["subject"], QString("2"));
    QCOMPARE(textsOf(groups.at(3).all("notes")), QStringList({ "required, at most 1 in a case" }));
}

void DdiTest::statisticalFileHasNoRecordGroups()
{
    const XmlElement document = ddiOf(statFile({ numeric("X", 0, 8) }));
    QVERIFY(document.one("fileDscr/fileTxt/fileStrc").children.isEmpty());
    QVERIFY(document.all("dataDscr/varGrp").isEmpty());
}

void DdiTest::casesAreThoseThatTheFileStates()
{
    Layout layout = statFile({ numeric("X", 0, 8) });
    QVERIFY(ddiOf(layout).all("fileDscr/fileTxt/dimensns/caseQnty").isEmpty());
    layout.rows = 0;
    const XmlElement dimensions = ddiOf(layout).one("fileDscr/fileTxt/dimensns");
    QCOMPARE(dimensions.one("caseQnty").text, QString("0"));
    QCOMPARE(dimensions.one("varQnty").text, QString("1"));
    QVERIFY(dimensions.all("recPrCas").isEmpty());
}

void DdiTest::charsetIsOnlyThatOfTheData_data()
{
    QTest::addColumn<Layout>("layout");
    QTest::addColumn<QString>("plain");
    QTest::addColumn<QString>("forIpums");
    const auto encoded = [](Layout layout, const QString &encoding, const QString &version) {
        layout.encoding = encoding;
        layout.formatVersion = version;
        return layout;
    };
    // clang-format off
    QTest::newRow("SPSS")                 << encoded(statFile({}), "utf-8", "3") << "utf-8" << "utf-8";
    QTest::newRow("SPSS, none stated")    << encoded(statFile({}), "", "3") << "" << "";
    QTest::newRow("dictionary")           << encoded(dictionary({}), "windows-1252", "7.7") << "" << "UTF-8";
    QTest::newRow("dictionary before 5")  << encoded(dictionary({}), "utf-8", "4.1") << "" << "windows-1252";
    QTest::newRow("dictionary, no number") << encoded(dictionary({}), "utf-8", "") << "" << "UTF-8";
    // clang-format on
}

void DdiTest::charsetIsOnlyThatOfTheData()
{
    QFETCH(Layout, layout);
    QTEST(ddiOf(layout).one("fileDscr/fileTxt/fileType")["charset"], "plain");
    QTEST(ddiOf(layout, ipums()).one("fileDscr/fileTxt/fileType")["charset"], "forIpums");
    const bool isStat = layout.format == Format::Spss;
    QCOMPARE(ddiOf(layout).one("fileDscr/fileTxt/fileType").text, QString(isStat ? "SPSS file" : ""));
}

void DdiTest::dateIsTheLastOneOfTheFile_data()
{
    QTest::addColumn<QString>("created");
    QTest::addColumn<QString>("modified");
    QTest::addColumn<QString>("date");
    QTest::newRow("none") << ""
                          << ""
                          << "";
    QTest::newRow("created") << "2020-01-02T03:04:05"
                             << ""
                             << "2020-01-02T03:04:05";
    QTest::newRow("both") << "2020-01-02T03:04:05"
                          << "2021-01-02T03:04:05"
                          << "2021-01-02T03:04:05";
}

void DdiTest::dateIsTheLastOneOfTheFile()
{
    QFETCH(QString, created);
    QFETCH(QString, modified);
    Layout layout = statFile({});
    if (!created.isEmpty())
        layout.created = created;
    if (!modified.isEmpty())
        layout.modified = modified;
    QTEST(ddiOf(layout).one("fileDscr/fileTxt/verStmt/version")["date"], "date");
}

void DdiTest::idsAreOneVariableOfAllTheirRecords()
{
    const QVector<XmlElement> variables = variablesOf(census());
    QCOMPARE(attributesOf(variables, "name").count("HH"), 1);
    QCOMPARE(attributesOf(variables, "rectype"), QStringList({ "H P T", "H", "P", "T", "T" }));
    QCOMPARE(uniqueOf(attributesOf(variables, "files")), QStringList({ "file-1" }));
}

void DdiTest::sharedRecordTypeIsListedOnce()
{
    Layout layout = census();
    layout.levels[0].records[1].recordType = "H";
    QCOMPARE(variablesOf(layout).value(0)["rectype"], QString("H T"));
    layout.levels[0].records[1].recordType.clear();
    QCOMPARE(variablesOf(layout).value(0)["rectype"], QString("H T"));
}

void DdiTest::variablesAreInTheOrderOfTheFile()
{
    QCOMPARE(attributesOf(variablesOf(census()), "name"), QStringList({ "HH", "ROOMS", "AGE", "DAY", "KM" }));
}

void DdiTest::locationIsExact_data()
{
    QTest::addColumn<Item>("item");
    QTest::addColumn<QString>("columns");
    // clang-format off
    QTest::newRow("in columns")          << numeric("X", 5, 3)          << "5 7 3";
    QTest::newRow("one column")          << text("X", 12, 1)            << "12 12 1";
    QTest::newRow("no columns")          << numeric("X", 0, 8)          << "";
    QTest::newRow("no length")           << numeric("X", 4, 0)          << "";
    QTest::newRow("beyond all integers") << numeric("X", 2147483647, 2) << "2147483647 2147483648 2";
    // clang-format on
}

void DdiTest::locationIsExact()
{
    QFETCH(Item, item);
    const XmlElement location = variableOf(item).one("location");
    QStringList columns{ location["StartPos"], location["EndPos"], location["width"] };
    columns.removeAll(QString());
    QTEST(columns.join(' '), "columns");
    QVERIFY(!location.has("RecSegNo"));
    QCOMPARE(location["fileid"], QString(columns.isEmpty() ? "" : "file-1"));
}

void DdiTest::occurrencesAreVariables()
{
    Item item = withValues(numeric("X", 5, 2), { value({ { "1", "" } }, "One") });
    item.occurrences = 3;
    item.labels = labelled("Crop", "EN");
    item.occurrenceLabels = { { 2, labelled("Barley", "EN") } };
    const XmlElement document = ddiOf(dictionary({ item }));
    const QVector<XmlElement> variables = document.all("dataDscr/var");
    QCOMPARE(attributesOf(variables, "name"), QStringList({ "X_1", "X_2", "X_3" }));
    QCOMPARE(attributesOf(document.all("dataDscr/var/location"), "StartPos"), QStringList({ "5", "7", "9" }));
    QCOMPARE(textsOf(document.all("dataDscr/var/labl")), QStringList({ "Crop (1)", "Crop (Barley)", "Crop (3)" }));
    QCOMPARE(categoriesOf(variables.at(2)), QStringList({ "1=One" }));
    const XmlElement group = document.all("dataDscr/varGrp").constLast();
    QCOMPARE(group["type"], QString("repetition"));
    QCOMPARE(group["name"], QString("X"));
    QCOMPARE(group["var"], QString("X_1 X_2 X_3"));
    QCOMPARE(group.one("labl").text, QString("Crop"));
}

void DdiTest::subitemsAreAGroupWithTheirItemInEachOccurrence()
{
    Item date = numeric("DATE", 1, 6);
    date.labels = labelled("Date", "EN");
    date.occurrences = 2;
    const XmlElement document
        = ddiOf(dictionary({ date, subitem("DAY", 1, 2, "DATE"), subitem("YEAR", 3, 4, "DATE"), numeric("Z", 13) }));
    QVector<XmlElement> groups = document.all("dataDscr/varGrp").mid(2);
    QCOMPARE(
        attributesOf(groups, "var"),
        QStringList({ "DATE_1 DATE_2", "DAY_1 DAY_2", "YEAR_1 YEAR_2", "DATE_1 DAY_1 YEAR_1", "DATE_2 DAY_2 YEAR_2" }));
    QCOMPARE(attributesOf(groups, "type"), QStringList({ "repetition", "repetition", "repetition", "other", "other" }));
    QCOMPARE(groups.at(3)["otherType"], QString("subitems"));
    QCOMPARE(groups.at(4)["name"], QString("DATE_2"));
    QCOMPARE(groups.at(4).one("labl").text, QString("Date (2)"));
    const QVector<XmlElement> variables = document.all("dataDscr/var");
    QCOMPARE(variables.at(1).one("notes")["type"], QString("subitem of"));
    QCOMPARE(variables.at(1).one("notes").text, QString("DATE"));
    QVERIFY(variables.at(0).all("notes").isEmpty());
}

void DdiTest::attributesIdAreUniqueNames_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QStringList>("ids");
    // clang-format off
    QTest::newRow("names")               << QStringList{ "X", "_Y", "a.b" }   << QStringList{ "X", "_Y", "a.b" };
    QTest::newRow("twice")               << QStringList{ "X", "X" }           << QStringList{ "X", "X_2" };
    QTest::newRow("no name of XML")      << QStringList{ "1ST", "A B", "@z" } << QStringList{ "V1", "V2", "V3" };
    QTest::newRow("letter not of ASCII") << QStringList{ "\u00c9TAT" }        << QStringList{ "V1" };
    QTest::newRow("hyphen")              << QStringList{ "file-1" }           << QStringList{ "V1" };
    QTest::newRow("number taken")        << QStringList{ "V2", "1ST" }        << QStringList{ "V2", "V2_2" };
    // clang-format on
}

void DdiTest::attributesIdAreUniqueNames()
{
    QFETCH(QStringList, names);
    QVector<Item> items;
    for (const QString &name : qAsConst(names))
        items.append(numeric(name));
    const XmlElement document = ddiOf(dictionary(items));
    QTEST(attributesOf(document.all("dataDscr/var"), "ID"), "ids");
    QStringList all;
    collectIds(document, all);
    QCOMPARE(uniqueOf(all), all);
    if (uniqueOf(names) == names)
        QCOMPARE(attributesOf(document.all("dataDscr/var"), "name"), names);
}

void DdiTest::decimalsAreStated_data()
{
    QTest::addColumn<Layout>("layout");
    QTest::addColumn<QString>("plain");
    QTest::addColumn<QString>("forIpums");
    QTest::addColumn<QString>("format");
    const auto with = [](int decimals, bool mark, bool zeroFill = false) {
        Item item = numeric("X", 1, 6);
        item.decimals = decimals;
        item.decimalMark = mark;
        item.zeroFill = zeroFill;
        return dictionary({ item });
    };
    const auto stored = [](const QString &format, int decimals, Storage storage, Format file) {
        Item item = numeric("X", 0, 8);
        item.format = format;
        item.decimals = decimals;
        item.storage = storage;
        return statFile({ item }, file);
    };
    // clang-format off
    QTest::newRow("none")         << with(0, false) << "0" << "0" << "";
    QTest::newRow("implied")      << with(2, false) << "2" << "2" << "2 decimals, decimal mark implied";
    QTest::newRow("written")      << with(2, true)  << "2" << "0" << "2 decimals, decimal mark written in the data";
    QTest::newRow("one")          << with(1, false) << "1" << "1" << "1 decimal, decimal mark implied";
    QTest::newRow("zeros")        << with(0, false, true) << "0" << "0" << "padded with zeros";
    QTest::newRow("zeros, too")   << with(1, false, true) << "1" << "1" << "1 decimal, decimal mark implied; padded with zeros";
    QTest::newRow("text")         << dictionary({ text("X") }) << "" << "0" << "";
    QTest::newRow("SPSS fixed")   << stored("F8.2", 2, Storage::Double, Format::Spss) << "2" << "2" << "double";
    QTest::newRow("SPSS whole")   << stored("F8.0", 0, Storage::Double, Format::Spss) << "0" << "0" << "double";
    QTest::newRow("SPSS date")    << stored("DATE11", 0, Storage::Double, Format::Spss) << "" << "0" << "double";
    QTest::newRow("Stata fixed")  << stored("%9.0f", 0, Storage::Double, Format::Stata) << "0" << "0" << "double";
    QTest::newRow("Stata general") << stored("%9.0g", 0, Storage::Double, Format::Stata) << "" << "0" << "double";
    QTest::newRow("Stata stored whole") << stored("%9.0g", 0, Storage::Int16, Format::Stata) << "0" << "0" << "int16";
    // clang-format on
}

void DdiTest::decimalsAreStated()
{
    QFETCH(Layout, layout);
    const XmlElement variable = variablesOf(layout).value(0);
    QTEST(variable["dcml"], "plain");
    QTEST(variablesOf(layout, ipums()).value(0)["dcml"], "forIpums");
    QTEST(variable.one("varFormat").text, "format");
}

void DdiTest::intervalIsStatedOnlyWithTheMeasure_data()
{
    QTest::addColumn<int>("measure");
    QTest::addColumn<QString>("interval");
    QTest::addColumn<QString>("nature");
    QTest::newRow("none") << int(Measure::None) << ""
                          << "";
    QTest::newRow("nominal") << int(Measure::Nominal) << "discrete"
                             << "nominal";
    QTest::newRow("ordinal") << int(Measure::Ordinal) << "discrete"
                             << "ordinal";
    QTest::newRow("scale") << int(Measure::Scale) << "contin"
                           << "";
}

void DdiTest::intervalIsStatedOnlyWithTheMeasure()
{
    QFETCH(int, measure);
    Item item = numeric("X", 0, 8);
    item.measure = Measure(measure);
    const XmlElement variable = variablesOf(statFile({ item })).value(0);
    QTEST(variable["intrvl"], "interval");
    QTEST(variable["nature"], "nature");
}

void DdiTest::weightIsMarked()
{
    Layout layout = statFile({ numeric("X", 0, 8), numeric("W", 0, 8) });
    QCOMPARE(attributesOf(variablesOf(layout), "wgt"), QStringList({ "", "" }));
    layout.weight = "W";
    QCOMPARE(attributesOf(variablesOf(layout), "wgt"), QStringList({ "", "wgt" }));
}

void DdiTest::codesAndRangesAreCategories_data()
{
    QTest::addColumn<Item>("item");
    QTest::addColumn<QStringList>("categories");
    Item missing = withValues(
        numeric("X", 0, 8),
        { value({ { "1", "" } }, "Yes"), value({ { "98", "" } }, "Unknown"), value({ { "-1", "" } }, "None") });
    missing.storage = Storage::Double;
    missing.missing = { { "97", "99" }, { "-1", "" }, { "-2", "" } };
    Item tagged = withValues(numeric("X", 0, 8),
                             { value({ { ".", "" } }, "System"), value({ { ".a", "" } }, "Refused"),
                               value({ { "._", "" } }, "Other"), value({ { ".5", "" } }, "Half") });
    tagged.storage = Storage::Int8;
    Item word
        = withValues(text("X", 0, 8), { value({ { "unknown", "" } }, "Not known"), value({ { ".a", "" } }, "A") });
    word.storage = Storage::String;
    word.missing = { { "unknown", "" }, { "none", "" } };
    Item lowest = withValues(numeric("X", 0, 8), { value({ { "-5", "" } }, "Low"), value({ { "0", "" } }, "Zero") });
    lowest.storage = Storage::Double;
    lowest.missing = { { "-inf", "-1" } };
    const auto row = [](const char *name, const Item &item, const QStringList &categories) {
        QTest::newRow(name) << item << categories;
    };
    const auto values = [](const QVector<Value> &list) { return withValues(numeric("X", 1, 3), list); };
    // clang-format off
    row("code", values({ value({ { "1", "" } }, "Yes") }), { "1=Yes" });
    row("several codes of a value", values({ value({ { "1", "" }, { "3", "" } }, "Odd") }), { "1=Odd", "3=Odd" });
    row("range", values({ value({ { "0", "110" } }, "Years") }), { "-0 to 110=Years" });
    row("ranges", values({ value({ { "0", "4" }, { "6", "9" } }, "Some") }), { "-0 to 4, 6 to 9=Some" });
    row("ranges and a code", values({ value({ { "0", "4" }, { "9", "" } }, "Some") }), { "9=Some", "-0 to 4=Some" });
    row("range of one code", values({ value({ { "5", "5" } }, "Five") }), { "5=Five" });
    row("without a code", values({ value({}, "Nothing") }), { "-=Nothing" });
    row("without a label", values({ value({ { "7", "" } }, "") }), { "7=" });
    row("code of blanks", values({ value({ { "  ", "" } }, "Blank", Special::NotApplicable) }), { "  =Blank (not applicable)" });
    row("same code twice", values({ value({ { "1", "" } }, "Yes"), value({ { "1", "" } }, "Oui") }), { "1=Yes", "1=Oui" });
    row("special values", values({ value({ { "7", "" } }, "R", Special::Refused), value({ { "8", "" } }, "D", Special::Default),
                                   value({ { "9", "" } }, "M", Special::Missing), value({ { "90", "95" } }, "N", Special::Missing) }),
        { "7=R (refused)", "8=D (default)", "9=M (missing)", "-90 to 95=N (missing)" });
    row("user-missing", missing, { "1=Yes", "98=Unknown (user-missing)", "-1=None (user-missing)", "-2= (user-missing)" });
    row("lowest value", lowest, { "-5=Low (user-missing)", "0=Zero" });
    row("extended missing", tagged, { ".=System (system missing)", ".a=Refused (extended missing)", "._=Other (extended missing)", ".5=Half" });
    row("texts", word, { "unknown=Not known (user-missing)", ".a=A", "none= (user-missing)" });
    row("code with a point in a dictionary", values({ value({ { ".a", "" } }, "A") }), { ".a=A" });
    // clang-format on
}

void DdiTest::codesAndRangesAreCategories()
{
    QFETCH(Item, item);
    QTEST(categoriesOf(variableOf(item)), "categories");
}

void DdiTest::validValuesAreThoseOfTheValueSets_data()
{
    QTest::addColumn<Item>("item");
    QTest::addColumn<QStringList>("valid");
    Item wage = withValues(numeric("X", 1, 6), { value({ { "0.5", "" } }, ""), value({ { "1", "20" } }, "") });
    wage.decimals = 2;
    Item two = withValues(numeric("X", 1, 3), { value({ { "0", "110" } }, "") });
    two.valueSets.append(setOf("X_VS2", { value({ { "0", "4" } }, ""), value({ { "9", "" } }, "", Special::Missing) }));
    Item onlySpecial = withValues(numeric("X"), { value({ { "9", "" } }, "", Special::Missing) });
    // clang-format off
    QTest::newRow("codes") << withValues(numeric("X"), { value({ { "1", "" } }, ""), value({ { "2", "" } }, "") }) << QStringList{ "INT 1", "INT 2" };
    QTest::newRow("range and codes") << withValues(numeric("X"), { value({ { "0", "9" }, { "11", "" } }, "") }) << QStringList{ "INT 0..9", "INT 11" };
    QTest::newRow("without the special ones") << withValues(numeric("X"), { value({ { "1", "" } }, ""), value({ { "9", "" } }, "", Special::Missing) }) << QStringList{ "INT 1" };
    QTest::newRow("special ones only") << onlySpecial << QStringList{};
    QTest::newRow("decimals") << wage << QStringList{ "REAL 0.5", "REAL 1..20" };
    QTest::newRow("code with a decimal comma") << withValues(numeric("X"), { value({ { "0,5", "" } }, "") }) << QStringList{ "REAL 0,5" };
    QTest::newRow("code with decimals") << withValues(numeric("X"), { value({ { "0.5", "" }, { "1", "2.5" } }, "") }) << QStringList{ "REAL 0.5", "REAL 1..2.5" };
    QTest::newRow("texts") << withValues(text("X"), { value({ { "M", "" }, { "A", "F" } }, "") }) << QStringList{ "M", "A..F" };
    QTest::newRow("two value sets") << two << QStringList{ "INT 0..110", "INT 0..4" };
    QTest::newRow("no value set") << numeric("X") << QStringList{};
    // clang-format on
}

void DdiTest::validValuesAreThoseOfTheValueSets()
{
    QFETCH(Item, item);
    const QVector<XmlElement> ranges = variableOf(item).all("valrng");
    QStringList valid;
    for (const XmlElement &range : ranges)
        valid += rangesIn(range);
    QTEST(valid, "valid");
    if (ranges.size() > 1)
        QCOMPARE(ranges.at(1).one("notes").text, QString("X_VS2"));
    else if (!ranges.isEmpty())
        QVERIFY(ranges.at(0).all("notes").isEmpty());
}

void DdiTest::labelsOfStatisticalFilesLimitNothing()
{
    Item item = withValues(numeric("X", 0, 8), { value({ { "1", "" } }, "Yes") });
    item.storage = Storage::Double;
    const XmlElement variable = variablesOf(statFile({ item })).value(0);
    QVERIFY(variable.all("valrng").isEmpty());
    QCOMPARE(categoriesOf(variable), QStringList({ "1=Yes" }));
}

void DdiTest::missingValuesAreInvalid_data()
{
    QTest::addColumn<Item>("item");
    QTest::addColumn<QStringList>("invalid");
    const auto missing = [](Item item, const QVector<Range> &ranges, Storage storage) {
        item.missing = ranges;
        item.storage = storage;
        return item;
    };
    const Item special = withValues(numeric("X"),
                                    { value({ { "1", "" } }, "Yes"), value({ { "9", "" } }, "", Special::Missing),
                                      value({ { "90", "95" } }, "", Special::Refused) });
    Item sets = special;
    sets.valueSets.append(setOf(
        "X_VS2", { value({ { "9", "" } }, "", Special::Missing), value({ { "8", "" } }, "", Special::NotApplicable) }));
    const Item tagged = withValues(numeric("X", 0, 8), { value({ { ".a", "" } }, "A"), value({ { "1", "" } }, "B") });
    const Item labelled = withValues(numeric("X", 0, 8), { value({ { "98", "" } }, "A") });
    // clang-format off
    QTest::newRow("none")            << numeric("X") << QStringList{};
    QTest::newRow("special values")  << special << QStringList{ "INT 9", "INT 90..95" };
    QTest::newRow("of all sets")     << sets << QStringList{ "INT 9", "INT 90..95", "INT 8" };
    QTest::newRow("user-missing")    << missing(numeric("X", 0, 8), { { "97", "99" }, { "-1", "" } }, Storage::Double) << QStringList{ "REAL 97..99", "REAL -1" };
    QTest::newRow("lowest")          << missing(numeric("X", 0, 8), { { "-inf", "-1" } }, Storage::Double) << QStringList{ "REAL ..-1" };
    QTest::newRow("highest")         << missing(numeric("X", 0, 8), { { "97", "inf" } }, Storage::Double) << QStringList{ "REAL 97.." };
    QTest::newRow("labelled")        << missing(labelled, { { "97", "99" } }, Storage::Double) << QStringList{ "REAL 97..99" };
    QTest::newRow("extended")        << missing(tagged, {}, Storage::Int8) << QStringList{ "INT .a" };
    QTest::newRow("text")            << missing(text("X", 0, 8), { { "none", "" } }, Storage::String) << QStringList{ "none" };
    // clang-format on
}

void DdiTest::missingValuesAreInvalid()
{
    QFETCH(Item, item);
    const QVector<XmlElement> ranges = variableOf(item).all("invalrng");
    QVERIFY(ranges.size() <= 1);
    QTEST(rangesIn(ranges.value(0)), "invalid");
}

void DdiTest::furtherValueSetsAreNotes()
{
    Item item = withValues(numeric("AGE"), { value({ { "1", "" } }, "One") });
    item.valueSets[0].labels = { { { "EN", "Ages" }, { "FR", "\u00c2ges" } } };
    item.valueSets[0].note = "By years";
    item.valueSets[0].aliases = QStringList{ "AGES" };
    ValueSet groups
        = setOf("AGE_VS2", { value({ { "0", "4" }, { "6", "" } }, ""), value({ { "9", "" } }, "", Special::Missing) });
    groups.values[0].labels = { { { "EN", "Young" }, { "FR", "Jeune" } } };
    item.valueSets.append(groups);
    const XmlElement variable = variableOf(item);
    QCOMPARE(categoriesOf(variable), QStringList({ "1=One" }));
    const QVector<XmlElement> notes = variable.all("notes");
    QCOMPARE(
        textsOf(notes),
        QStringList({ "Ages", "\u00c2ges", "By years", "AGES", "0 to 4, 6: Young\n9 [missing]", "0 to 4, 6: Jeune" }));
    QCOMPARE(attributesOf(notes, "xml:lang"), QStringList({ "en", "fr", "", "", "en", "fr" }));
    QCOMPARE(attributesOf(notes, "subject"), QStringList({ "AGE_VS1", "AGE_VS1", "", "", "AGE_VS2", "AGE_VS2" }));
    QCOMPARE(notes.at(0)["type"], QString("value set"));
}

void DdiTest::eachValueSetIsNamedInANote()
{
    Item item = withValues(numeric("AGE"), { value({ { "1", "" } }, "One") });
    item.labels = labelled("Age", "EN");
    item.valueSets[0].values[0].labels = labelled("One", "EN");
    const QVector<XmlElement> names = variableOf(item).all("notes");
    QCOMPARE(textsOf(names), QStringList({ "" }));
    QCOMPARE(attributesOf(names, "subject"), QStringList({ "AGE_VS1" }));
    item.valueSets[0].labels = item.labels;
    QCOMPARE(textsOf(variableOf(item).all("notes")), QStringList({ "Age" }));
    item.valueSets.append(item.valueSets.at(0));
    QCOMPARE(textsOf(variableOf(item).all("notes")), QStringList({ "Age", "Age\n1: One" }));
    item.valueSets = { setOf(QString(), item.valueSets.at(0).values) };
    QVERIFY(variableOf(item).all("notes").isEmpty());
}

void DdiTest::valuesWithoutALabelAreInTheFirstNote()
{
    ValueSet set
        = setOf("S", { value({ { "1", "" } }, ""), value({ { "2", "" } }, "Two"), value({ { "3", "" } }, "") });
    set.values[1].labels = { { { "EN", "Two" }, { "", "II" }, { "FR", "Deux" } } };
    Item item = withValues(numeric("X"), {});
    item.valueSets.append(set);
    const QVector<XmlElement> notes = variableOf(item).all("notes");
    QCOMPARE(textsOf(notes), QStringList({ "", "1\n2: Two\n3", "2: II", "2: Deux" }));
    QCOMPARE(attributesOf(notes, "xml:lang"), QStringList({ "", "en", "", "fr" }));
}

void DdiTest::notesAndImagesOfValuesAreTexts()
{
    Item item = withValues(numeric("X"), { value({ { "1", "" } }, "Yes") });
    item.valueSets[0].values[0].note = "A note";
    item.valueSets[0].values[0].image = "yes.png";
    QCOMPARE(textsOf(variableOf(item).all("catgry/txt")), QStringList({ "A note", "Image: yes.png" }));
}

void DdiTest::noteAndAliasesOfAnItemAreKept()
{
    Item item = numeric("X");
    item.note = "Of the head";
    item.aliases = QStringList{ "OLD_X", "X0" };
    const XmlElement variable = variableOf(item);
    QCOMPARE(variable.one("txt").text, QString("Of the head"));
    QCOMPARE(variable.one("notes")["type"], QString("aliases"));
    QCOMPARE(variable.one("notes").text, QString("OLD_X, X0"));
    QVERIFY(variableOf(numeric("X")).all("txt").isEmpty());
}

void DdiTest::formatIsNumericOrCharacter_data()
{
    QTest::addColumn<Layout>("layout");
    QTest::addColumn<QString>("format");
    const auto stored = [](const QString &format, Format file) {
        Item item = numeric("X", 0, 8);
        item.format = format;
        item.storage = Storage::Double;
        return statFile({ item }, file);
    };
    Item date = numeric("X", 1, 8);
    date.capture = Capture{ "date", "YYYYMMDD" };
    Item button = numeric("X");
    button.capture = Capture{ "radioButton", QString() };
    Item photo = numeric("X");
    photo.type = "image";
    Item words = text("X", 0, 8);
    words.storage = Storage::String;
    words.format = "A8";
    // clang-format off
    QTest::newRow("number")  << dictionary({ numeric("X") }) << "numeric/////";
    QTest::newRow("text")    << dictionary({ text("X") }) << "character/////";
    QTest::newRow("date")    << dictionary({ date }) << "numeric/YYYYMMDD/other/CSPro/date/";
    QTest::newRow("capture") << dictionary({ button }) << "numeric/////";
    QTest::newRow("image")   << dictionary({ photo }) << "/////image";
    QTest::newRow("SPSS")    << stored("F8.2", Format::Spss) << "numeric/F8.2/SPSS///";
    QTest::newRow("document") << stored("F8.2", Format::Ddi) << "numeric/F8.2/other///";
    QTest::newRow("portable") << stored("F8.2", Format::SpssPortable) << "numeric/F8.2/SPSS///";
    QTest::newRow("SPSS date") << stored("DATE11", Format::Spss) << "numeric/DATE11/SPSS//date/";
    QTest::newRow("Stata date") << stored("%td", Format::Stata) << "numeric/%td/other/Stata/date/";
    QTest::newRow("Stata")   << stored("%9.0g", Format::Stata) << "numeric/%9.0g/other/Stata//";
    QTest::newRow("SAS")     << stored("BEST12", Format::Sas) << "numeric/BEST12/SAS///";
    QTest::newRow("XPORT")   << stored("BEST12", Format::SasXport) << "numeric/BEST12/SAS///";
    QTest::newRow("words")   << statFile({ words }) << "character/A8/SPSS///";
    QTest::newRow("none")    << stored("", Format::Spss) << "numeric/////";
    // clang-format on
}

void DdiTest::formatIsNumericOrCharacter()
{
    QFETCH(Layout, layout);
    const XmlElement variable = variablesOf(layout).value(0);
    const XmlElement format = variable.one("varFormat");
    const QStringList parts{ format["type"],        format["formatname"], format["schema"],
                             format["otherSchema"], format["category"],   variable.one("notes").text };
    QTEST(parts.join('/'), "format");
}

void DdiTest::relationsAreNotes()
{
    Layout layout = census();
    Relation relation;
    relation.name = "R";
    relation.primary = "PERSON";
    relation.links = { { "LINE", "TRIP", "WHO" }, { "", "HOUSE", "" } };
    layout.relations = { relation };
    const XmlElement note = ddiOf(layout).one("dataDscr/notes");
    QCOMPARE(note["subject"], QString("R"));
    QCOMPARE(note.text,
             QString("PERSON, LINE = TRIP, WHO\n"
                     "PERSON, (occurrence number) = HOUSE, (occurrence number)"));
}

void DdiTest::nothingIsInvented()
{
    Layout layout = census();
    for (Level &level : layout.levels) {
        for (Record &record : level.records) {
            for (Item &item : record.items)
                item = withValues(item, { value({ { "1", "" } }, "One") });
        }
    }
    for (const DdiOptions &options : { DdiOptions(), ipums() }) {
        const QByteArray document = documentOf(layout, options);
        for (const char *word : { "qstn", "RecSegNo", "sumStat", "catStat", "intrvl", "recPrCas", "caseQnty" })
            QVERIFY2(!document.contains(word), word);
    }
    const QByteArray plain = documentOf(layout);
    for (const char *word : { "RECTYPE", "filePlac", "<format>", "charset", "fixed length", "fileType", "concept",
                              "fileCont", "IDNo", "serName", "useStmt" })
        QVERIFY2(!plain.contains(word), word);
}

void DdiTest::xmlHoldsEveryText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    const QString pair = QString::fromUtf8("\xF0\x9D\x84\x9E");
    // clang-format off
    QTest::newRow("signs of XML")   << "<a b='&'>\"]]>" << "<a b='&'>\"]]>";
    QTest::newRow("control")        << QString(QChar(1)) + "x" << QString("\u2401x");
    QTest::newRow("nil")            << QString(QChar(0)) + "x" << QString("\u2400x");
    QTest::newRow("return")         << "a\r\nb" << QString("a\u240D\nb");
    QTest::newRow("tab, line feed") << "a\tb\nc" << "a\tb\nc";
    QTest::newRow("lone high half") << QString(QChar(0xD834)) + "x" << QString("\uFFFDx");
    QTest::newRow("lone low half")  << QString("x") + QChar(0xDD1E) << QString("x\uFFFD");
    QTest::newRow("two high halves") << QString(2, QChar(0xD834)) + QChar(0xDD1E) << "\uFFFD" + pair;
    QTest::newRow("pair")           << pair << pair;
    QTest::newRow("no character")   << QString(QChar(0xFFFE)) + QChar(0xFFFF) << QString("\uFFFD\uFFFD");
    QTest::newRow("blanks around")  << " a  b " << " a  b ";
    // clang-format on
}

void DdiTest::xmlHoldsEveryText()
{
    QFETCH(QString, text);
    QTEST(xmlText(text), "shown");
    Item item = withValues(numeric(text), { value({ { text, "" } }, text) });
    item.labels = labelled(text);
    Layout layout = dictionary({ item });
    layout.labels = labelled(text);
    const XmlElement document = ddiOf(layout);
    QFETCH(QString, shown);
    QCOMPARE(document.one("stdyDscr/citation/titlStmt/titl").text, shown.trimmed());
    const XmlElement variable = document.one("dataDscr/var");
    QTEST(variable["name"], "shown");
    QTEST(variable.one("labl").text, "shown");
    QTEST(variable.one("catgry/catValu").text, "shown");
    QTEST(variable.one("valrng/item")["VALUE"], "shown");
}

void DdiTest::extractReadersFindAVariableOfTheRecordType()
{
    Layout layout = census();
    layout.levels[0].records[0].labels = labelled("House", "EN");
    const XmlElement document = ddiOf(layout, ipums());
    const QVector<XmlElement> variables = document.all("dataDscr/var");
    QCOMPARE(variables.size(), 6);
    const XmlElement &type = variables.at(0);
    QCOMPARE(type["name"], QString("RECTYPE"));
    QCOMPARE(type["ID"], QString("RECTYPE"));
    QCOMPARE(type["rectype"], QString("H P T"));
    QCOMPARE(type["dcml"], QString("0"));
    QCOMPARE(type.one("location")["StartPos"], QString("1"));
    QCOMPARE(type.one("location")["EndPos"], QString("1"));
    QCOMPARE(type.one("varFormat")["type"], QString("character"));
    QCOMPARE(categoriesOf(type), QStringList({ "H=House", "P=PERSON", "T=TRIP" }));
    QCOMPARE(type.one("catgry/labl")["xml:lang"], QString("en"));
    const QVector<XmlElement> groups = document.all("fileDscr/fileTxt/fileStrc/recGrp");
    QCOMPARE(attributesOf(groups, "recidvar"), QStringList({ "RECTYPE", "RECTYPE", "RECTYPE" }));
    QCOMPARE(attributesOf(groups, "keyvar"), QStringList({ "HH", "HH", "HH DAY" }));
    QCOMPARE(document.one("fileDscr/fileTxt/dimensns/varQnty").text, QString("6"));
    QCOMPARE(variablesOf(dictionary({ numeric("X") }), ipums()).size(), 1);
}

void DdiTest::nameOfTheRecordTypeVariableIsFree()
{
    Layout layout = census();
    layout.levels[0].records[0].items.append(numeric("RECTYPE", 9, 1));
    const XmlElement document = ddiOf(layout, ipums());
    QCOMPARE(attributesOf(document.all("dataDscr/var"), "name"),
             QStringList({ "RECTYPE_2", "HH", "ROOMS", "RECTYPE", "AGE", "DAY", "KM" }));
    QCOMPARE(document.one("fileDscr/fileTxt/fileStrc/recGrp")["recidvar"], QString("RECTYPE_2"));
}

void DdiTest::extractReadersFindEveryElement()
{
    Item photo = numeric("PHOTO");
    photo.type = "image";
    const XmlElement document = ddiOf(dictionary({ numeric("X"), text("Y"), photo }), ipums());
    const XmlElement file = document.one("fileDscr/fileTxt");
    QCOMPARE(file.one("format").text, QString("fixed length fields"));
    for (const char *name : { "fileName", "fileCont", "fileStrc", "fileType", "filePlac" })
        QCOMPARE(file.all(name).size(), 1);
    const XmlElement study = document.one("stdyDscr");
    for (const char *path : { "citation/titlStmt/IDNo", "citation/serStmt/serName", "dataAccs/useStmt/citReq",
                              "dataAccs/useStmt/conditions" }) {
        const QString name = QString(path).section('/', -1);
        const QVector<XmlElement> found = study.one(QString(path).section('/', 0, -2)).all(name);
        QVERIFY2(found.size() == 1 && found.at(0).text.isEmpty(), path);
    }
    for (const XmlElement &variable : document.all("dataDscr/var")) {
        QVERIFY(variable.has("dcml"));
        for (const char *name : { "location", "labl", "txt", "concept", "varFormat" })
            QCOMPARE(variable.all(name).size(), 1);
        QCOMPARE(variable.one("concept").text, QString());
    }
    QCOMPARE(document.all("dataDscr/var").at(2).one("varFormat")["type"], QString("character"));
    QCOMPARE(ddiOf(statFile({}), ipums()).one("fileDscr/fileTxt/format").text, QString("SPSS file"));
}

void DdiTest::extractReadersFindACodeInEachCategory()
{
    const Item item = withValues(numeric("X"), { value({ { "0", "9" } }, "Years"), value({ { "98", "" } }, "") });
    const XmlElement variable = variableOf(item, ipums());
    QCOMPARE(categoriesOf(variable), QStringList({ "98=" }));
    QCOMPARE(variable.all("catgry/labl").size(), 1);
    QCOMPARE(rangesIn(variable.one("valrng")), QStringList({ "INT 0..9", "INT 98" }));
}

void DdiTest::rangesAreANoteForExtractReaders()
{
    const Item ranged = withValues(numeric("X"), { value({ { "0", "9" } }, "Years"), value({ { "98", "" } }, "None") });
    QCOMPARE(textsOf(variableOf(ranged, ipums()).all("notes")), QStringList({ "0 to 9: Years\n98: None" }));
    const Item coded = withValues(numeric("X"), { value({ { "98", "" } }, "None") });
    QCOMPARE(textsOf(variableOf(coded, ipums()).all("notes")), QStringList({ "" }));
}

void DdiTest::refusalOfTheDeviceIsReported()
{
    class FullDevice : public QIODevice
    {
    protected:
        qint64 readData(char *, qint64) override { return -1; }
        qint64 writeData(const char *, qint64) override { return -1; }
    };
    FullDevice device;
    QVERIFY(device.open(QIODevice::WriteOnly));
    QVERIFY(!writeDdi(census(), device));
}

void DdiTest::deviceMayTakeParts()
{
    class SlowDevice : public QIODevice
    {
    public:
        QByteArray bytes;

    protected:
        qint64 readData(char *, qint64) override { return -1; }
        qint64 writeData(const char *data, qint64 size) override
        {
            bytes.append(data, int(qMin(size, qint64(1000))));
            return qMin(size, qint64(1000));
        }
    };
    QVector<Item> items;
    for (int i = 0; i < 500; ++i)
        items.append(numeric("ITEM" + QString::number(i), i + 1, 1));
    SlowDevice device;
    QVERIFY(device.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    QVERIFY(writeDdi(dictionary(items), device));
    QVERIFY(device.bytes.size() > 1 << 16);
    QVERIFY(device.bytes == documentOf(dictionary(items)));
}

void DdiTest::sizeGrowsOnlyWithTheLayout()
{
    const auto sizeOf = [](int items) {
        QVector<Item> list;
        for (int i = 0; i < items; ++i)
            list.append(withValues(numeric("ITEM" + QString::number(i), i + 1, 1), { value({ { "1", "" } }, "One") }));
        return documentOf(dictionary(list)).size();
    };
    const int small = sizeOf(200);
    const int large = sizeOf(2000);
    QVERIFY2(large < 11 * small, qPrintable(QString::number(double(large) / small)));
}

QTEST_APPLESS_MAIN(DdiTest)
#include "DdiTest.moc"
