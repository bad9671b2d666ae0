#include "StatLayout.h"

#include "read/Formats_p.h"
#include "read/StatFileCollector_p.h"
#include "support/SpssBytes.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <clocale>
#include <cmath>
#include <cstring>
#include <memory>

using namespace vanlayout;

Q_DECLARE_METATYPE(StatFile::Kind)

namespace
{

constexpr StatFile::Kind allKinds[]
    = { StatFile::sav, StatFile::zsav, StatFile::por, StatFile::dta, StatFile::sas7bdat, StatFile::xpt };

const char *nameOf(StatFile::Kind kind)
{
    switch (kind) {
    case StatFile::sav:
        return "sav";
    case StatFile::savOfRows:
        return "sav with compressed rows";
    case StatFile::zsav:
        return "zsav";
    case StatFile::por:
        return "por";
    case StatFile::dta:
        return "dta";
    case StatFile::sas7bdat:
        return "sas7bdat";
    case StatFile::sas7bcat:
        return "sas7bcat";
    case StatFile::xpt:
        return "xpt";
    }
    return "";
}

bool isSpss(StatFile::Kind kind)
{
    return kind == StatFile::sav || kind == StatFile::savOfRows || kind == StatFile::zsav || kind == StatFile::por;
}

void addKinds(std::initializer_list<StatFile::Kind> kinds)
{
    QTest::addColumn<StatFile::Kind>("kind");
    for (const StatFile::Kind kind : kinds)
        QTest::newRow(nameOf(kind)) << kind;
}

void addAllKinds()
{
    QTest::addColumn<StatFile::Kind>("kind");
    for (const StatFile::Kind kind : allKinds)
        QTest::newRow(nameOf(kind)) << kind;
}

readstat_variable_t *addNumber(StatFile &file, const char *name = "AGE", const readstat_label_set_t *labels = nullptr)
{
    return file.variable(name, READSTAT_TYPE_DOUBLE, "", nullptr, labels);
}

Item onlyItemOf(const Layout &layout)
{
    return itemsOf(layout).size() == 1 ? itemsOf(layout).constFirst() : Item();
}

// Codes and labels of a value set: "1 Yes", "2" for a value without a label.
QStringList wordsOf(const ValueSet &set)
{
    QStringList words;
    for (const Value &value : set.values) {
        const QString code = value.ranges.size() == 1 ? value.ranges.constFirst().from : QString();
        words += value.labels.isEmpty() ? code : code + ' ' + value.labels.primary();
    }
    return words;
}

QStringList wordsOf(const QVector<Range> &ranges)
{
    QStringList words;
    for (const Range &range : ranges)
        words += range.to.isEmpty() ? range.from : range.from + " to " + range.to;
    return words;
}

QStringList wordsOf(const QVector<Extra> &extras)
{
    QStringList words;
    for (const Extra &extra : extras)
        words += QStringList{ extra.path, extra.key, extra.value, QString::number(extra.line) }.join('|');
    return words;
}

QStringList idsOf(const QVector<Problem> &problems)
{
    QStringList ids;
    for (const Problem &problem : problems)
        ids += wordOf(problem.severity) + ' ' + problem.id;
    return ids;
}

// A file on disk with these bytes; it exists while the test runs.
QString fileWith(const QByteArray &bytes, const QString &name)
{
    static const QTemporaryDir directory;
    QFile file(directory.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("%s cannot be written", qPrintable(name));
    return file.fileName();
}

QByteArray catalog()
{
    StatFile file(StatFile::sas7bcat);
    file.labels("YESNO", { { 1, "Yes" }, { -2.5, "No" } });
    return bytesOf(file, 0);
}

QByteArray dataSet(StatFile::Kind kind, std::initializer_list<const char *> formats)
{
    StatFile file(kind);
    int number = 0;
    for (const char *format : formats)
        file.variable(("V" + std::to_string(++number)).c_str(), READSTAT_TYPE_DOUBLE, "", format);
    return bytesOf(file);
}

} // namespace

class StatFileTest : public QObject
{
    Q_OBJECT

private slots:
    void nameIsThatOfASasDataSet_data();
    void nameIsThatOfASasDataSet();
    void fileLabelKeepsItsLeadingBlanks_data() { addAllKinds(); }
    void fileLabelKeepsItsLeadingBlanks();
    void aFileWithoutALabelHasNoLabels_data() { addAllKinds(); }
    void aFileWithoutALabelHasNoLabels();
    void thereIsOneLevelWithOneRecordWithoutNames_data() { addAllKinds(); }
    void thereIsOneLevelWithOneRecordWithoutNames();
    void formatAndVersionAreThoseOfTheFile_data();
    void formatAndVersionAreThoseOfTheFile();
    void encodingIsThatOfTheFile_data();
    void encodingIsThatOfTheFile();
    void createdIsTheWallClockOfTheFileInAnyZone_data();
    void createdIsTheWallClockOfTheFileInAnyZone();
    void createdOfASasDataSetIsInUtc();
    void modifiedIsAbsentWhereItIsTheSame();
    void yearsHaveFourDigits_data();
    void yearsHaveFourDigits();
    void aClockOfZeroIsAbsentInAnyZone_data() { addAllKinds(); }
    void aClockOfZeroIsAbsentInAnyZone();
    void rowsAreThoseOfTheFile_data();
    void rowsAreThoseOfTheFile();
    void rowsAreAbsentWhereAnSpssFileDoesNotStateThem();
    void rowsAreAbsentWhereASasFileHasAllBitsSet();
    void noteHasTheLinesOfTheFile_data() { addKinds({ StatFile::sav, StatFile::zsav, StatFile::por, StatFile::dta }); }
    void noteHasTheLinesOfTheFile();
    void countOfStatasNotesIsNoNote();
    void noteOfOldStataIsDecoded();
    void typeAndStorageAreThoseOfTheVariable_data();
    void typeAndStorageAreThoseOfTheVariable();
    void lengthOfATextIsItsBytes_data();
    void lengthOfATextIsItsBytes();
    void lengthOfATextWithoutAFormatIsItsWidth();
    void lengthAndDecimalsOfANumberAreThoseOfItsFormat();
    void measureIsThatOfTheFile_data();
    void measureIsThatOfTheFile();
    void alignmentOfAnSpssFileIsUnknown();
    void alignmentOfStataIsThatOfTheFormat_data();
    void alignmentOfStataIsThatOfTheFormat();
    void displayWidthHasNoSign();
    void valueSetHasTheNameOfTheLabelSet_data();
    void valueSetHasTheNameOfTheLabelSet();
    void nameOfALabelSetEndsWithItsField_data();
    void nameOfALabelSetEndsWithItsField();
    void nameOfALabelSetOfOldStataIsDecoded();
    void valuesAreInTheOrderOfTheFile_data() { addKinds({ StatFile::sav, StatFile::zsav, StatFile::por }); }
    void valuesAreInTheOrderOfTheFile();
    void labelsAreNotTrimmedAndAnEmptyOneIsNone();
    void taggedMissingValuesAreLetters();
    void systemMissingIsAPoint();
    void missingRangesAreThoseOfTheFile_data();
    void missingRangesAreThoseOfTheFile();
    void missingTextsHaveNoBlanksAtTheirEnd_data() { addKinds({ StatFile::sav, StatFile::por }); }
    void missingTextsHaveNoBlanksAtTheirEnd();
    void aLabelSetThatTheFileLacksIsKept();
    void aLabelSetThatNoVariableUsesIsKept_data();
    void aLabelSetThatNoVariableUsesIsKept();
    void aParseThatFailsAfterTheVariablesIsAWarning();
    void aParseThatFailsBeforeAnyVariableGivesNoLayout_data();
    void aParseThatFailsBeforeAnyVariableGivesNoLayout();
    void weightIsTheNameOfTheVariable_data() { addKinds({ StatFile::sav, StatFile::zsav, StatFile::por }); }
    void weightIsTheNameOfTheVariable();
    void variablesWithOneLabelSetShareItsListInMemory_data()
    {
        addKinds({ StatFile::sav, StatFile::por, StatFile::dta });
    }
    void variablesWithOneLabelSetShareItsListInMemory();
    void labelsOfLongTextsAreRead();
    void catalogGivesLabelSetsToFormats_data() { addKinds({ StatFile::sas7bdat, StatFile::xpt }); }
    void catalogGivesLabelSetsToFormats();
    void catalogOfTextsIsRead();
    void tagsOfACatalogAreSmallLetters();
    void withoutACatalogThereAreNoValueSets();
    void aSetOfACatalogThatNoVariableUsesIsKept();
    void aCatalogAloneIsNoLayout();
    void aCatalogThatCannotBeReadIsAWarning_data();
    void aCatalogThatCannotBeReadIsAWarning();
    void aCatalogIsOnlyForSasFiles();
    void fileIsRecognisedByItsBegin_data();
    void fileIsRecognisedByItsBegin();
    void remarkOfReadStatIsReported();
    void portableTextDoesNotDependOnTheLocale();
    void aFileOnDiskReadsAsOneInMemory_data() { addAllKinds(); }
    void aFileOnDiskReadsAsOneInMemory();
    void fileBeginsWhereTheDeviceIs_data() { addAllKinds(); }
    void fileBeginsWhereTheDeviceIs();
};

void StatFileTest::nameIsThatOfASasDataSet_data()
{
    QTest::addColumn<StatFile::Kind>("kind");
    QTest::addColumn<int>("version");
    QTest::addColumn<QString>("name");
    QTest::newRow("sas7bdat") << StatFile::sas7bdat << 0 << "SURVEY";
    QTest::newRow("xpt 5") << StatFile::xpt << 5 << "SURVEY";
    QTest::newRow("xpt 8") << StatFile::xpt << 8 << "SURVEY";
    QTest::newRow("sav") << StatFile::sav << 0 << "";
    QTest::newRow("por") << StatFile::por << 0 << "";
    QTest::newRow("dta") << StatFile::dta << 0 << "";
}

void StatFileTest::nameIsThatOfASasDataSet()
{
    QFETCH(StatFile::Kind, kind);
    QFETCH(int, version);
    StatFile file(kind, version);
    readstat_writer_set_table_name(file.writer(), "SURVEY");
    addNumber(file);
    QTEST(layoutOf(file).name, "name");
}

void StatFileTest::fileLabelKeepsItsLeadingBlanks()
{
    QFETCH(StatFile::Kind, kind);
    StatFile file(kind);
    readstat_writer_set_file_label(file.writer(), "  A survey");
    addNumber(file);
    const Labels labels = layoutOf(file).labels;
    QCOMPARE(labels.parts.size(), 1);
    QCOMPARE(labels.primary(), QString("  A survey"));
    QVERIFY(labels.parts.constFirst().language.isEmpty());
}

void StatFileTest::aFileWithoutALabelHasNoLabels()
{
    QFETCH(StatFile::Kind, kind);
    StatFile file(kind);
    addNumber(file);
    const Layout layout = layoutOf(file);
    QVERIFY(layout.isRead());
    QVERIFY(layout.labels.isEmpty());
    QVERIFY(onlyItemOf(layout).labels.isEmpty());
}

void StatFileTest::thereIsOneLevelWithOneRecordWithoutNames()
{
    QFETCH(StatFile::Kind, kind);
    StatFile file(kind);
    addNumber(file, "AGE");
    file.text("NAME", 5, "The name");
    const Layout layout = layoutOf(file);
    QCOMPARE(layout.file, QString("file"));
    QCOMPARE(layout.levels.size(), 1);
    const Level &level = layout.levels.constFirst();
    QVERIFY(level.name.isEmpty() && level.ids.isEmpty() && level.records.size() == 1);
    const Record &record = level.records.constFirst();
    QVERIFY(record.name.isEmpty() && record.recordType.isEmpty() && !record.length);
    QVERIFY(!layout.recordType && !layout.relativePositions);
    QCOMPARE(record.items.size(), 2);
    QCOMPARE(record.items.at(0).name, QString("AGE"));
    QCOMPARE(record.items.at(1).name, QString("NAME"));
    QCOMPARE(record.items.at(1).labels.primary(), QString("The name"));
    QCOMPARE(record.items.at(1).start, 0);
    QVERIFY2(layout.problems.isEmpty() && layout.extras.isEmpty(), qPrintable(idsOf(layout.problems).join(' ')));
}

void StatFileTest::formatAndVersionAreThoseOfTheFile_data()
{
    QTest::addColumn<StatFile::Kind>("kind");
    QTest::addColumn<int>("version");
    QTest::addColumn<QString>("words");
    QTest::newRow("sav") << StatFile::sav << 0 << "spss 2";
    QTest::newRow("sav with compressed rows") << StatFile::savOfRows << 0 << "spss 2";
    QTest::newRow("zsav") << StatFile::zsav << 0 << "spss 3";
    QTest::newRow("por") << StatFile::por << 0 << "spss-portable ";
    for (const int version : { 104, 105, 108, 110, 111, 113, 114, 115, 117, 118, 119 })
        QTest::addRow("dta %d", version) << StatFile::dta << version << QString("stata %1").arg(version);
    QTest::newRow("sas7bdat") << StatFile::sas7bdat << 0 << "sas 9";
    QTest::newRow("xpt 5") << StatFile::xpt << 5 << "sas-xport 5";
    QTest::newRow("xpt 8") << StatFile::xpt << 8 << "sas-xport 8";
}

void StatFileTest::formatAndVersionAreThoseOfTheFile()
{
    QFETCH(StatFile::Kind, kind);
    QFETCH(int, version);
    StatFile file(kind, version);
    addNumber(file);
    const Layout layout = layoutOf(file);
    QTEST(wordOf(layout.format) + ' ' + layout.formatVersion, "words");
    QCOMPARE(itemsOf(layout).size(), 1);
}

void StatFileTest::encodingIsThatOfTheFile_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("encoding");
    const auto add = [](const char *name, StatFile::Kind kind, int version, const char *encoding) {
        StatFile file(kind, version);
        addNumber(file);
        QTest::newRow(name) << bytesOf(file) << QString(encoding);
    };
    add("sav", StatFile::sav, 0, "utf-8");
    add("sas7bdat", StatFile::sas7bdat, 0, "utf-8");
    add("dta 119", StatFile::dta, 119, "utf-8");
    add("dta 118", StatFile::dta, 118, "utf-8");
    add("dta 117", StatFile::dta, 117, "");
    add("dta 105", StatFile::dta, 105, "");
    add("por", StatFile::por, 0, "");
    add("xpt", StatFile::xpt, 0, "");
    // Numbers of character sets in the record of the machine.
    enum CharacterSet { sevenBits = 2, big5 = 950, windows1252 = 1252, usAscii = 20127, latin9 = 28605 };
    const auto addSav = [](const char *name, CharacterSet set, const char *encoding) {
        StatFile file(StatFile::sav);
        addNumber(file);
        QByteArray bytes = bytesOf(file);
        SpssBytes machine;
        machine.bytes.clear();
        constexpr int machineSubtype = 3;
        constexpr int sizeOfNumber = 4;
        constexpr int numbersInRecord = 8;
        machine.numbers({ SpssBytes::extensionRecord, machineSubtype, sizeOfNumber, numbersInRecord });
        const int place = bytes.indexOf(machine.bytes) + machine.bytes.size() + (numbersInRecord - 1) * sizeOfNumber;
        qToLittleEndian<qint32>(set, bytes.data() + place);
        QTest::newRow(name) << bytes << QString(encoding);
    };
    addSav("sav, 1252", windows1252, "windows-1252");
    addSav("sav, ASCII that is none", sevenBits, "windows-1252");
    addSav("sav, 28605", latin9, "iso-8859-15");
    addSav("sav, 20127", usAscii, "us-ascii");
    addSav("sav, 950", big5, "big-5");
}

void StatFileTest::encodingIsThatOfTheFile()
{
    QFETCH(QByteArray, bytes);
    const Layout layout = layoutOf(bytes);
    QVERIFY(layout.isRead());
    QTEST(layout.encoding, "encoding");
}

void StatFileTest::createdIsTheWallClockOfTheFileInAnyZone_data()
{
    QTest::addColumn<StatFile::Kind>("kind");
    QTest::addColumn<int>("version");
    QTest::addColumn<int>("moment");
    QTest::addColumn<QString>("created");
    struct Clock {
        int moment;
        const char *text;
    };
    const Clock clocks[] = {
        { 1583634600, "2020-03-08T02:30" },                                     // an hour that New York skips
        { 1604197800, "2020-11-01T02:30" }, { 1325203200, "2011-12-30T00:00" }, // a day that Samoa skips
        { 1540080000, "2018-10-21T00:00" }, // an hour that Asuncion skips, at midnight
        { 978307199, "2000-12-31T23:59" },  { 18000, "1970-01-01T05:00" },
    };
    const auto add = [&](const char *name, StatFile::Kind kind, int version) {
        for (const Clock &clock : clocks) {
            const bool hasSeconds = kind != StatFile::dta;
            const int seconds = clock.moment % 60;
            const QString text = QString("%1:%2").arg(clock.text).arg(hasSeconds ? seconds : 0, 2, 10, QChar('0'));
            QTest::addRow("%s, %s", name, clock.text) << kind << version << clock.moment << text;
        }
    };
    add("sav", StatFile::sav, 0);
    add("por", StatFile::por, 0);
    add("xpt", StatFile::xpt, 0);
    add("dta 105", StatFile::dta, 105);
    add("dta 115", StatFile::dta, 115);
    add("dta 117", StatFile::dta, 117);
    add("dta 118", StatFile::dta, 118);
}

void StatFileTest::createdIsTheWallClockOfTheFileInAnyZone()
{
    QFETCH(StatFile::Kind, kind);
    QFETCH(int, version);
    QFETCH(int, moment);
    QFETCH(QString, created);
    QByteArray bytes;
    {
        const TimeZone writers("UTC");
        StatFile file(kind, version);
        readstat_writer_set_file_timestamp(file.writer(), moment);
        readstat_writer_set_file_label(file.writer(), "Label <timestamp> 1 Jan 2020 00:00");
        addNumber(file);
        bytes = bytesOf(file);
    }
    for (const char *zone : { "UTC", "Asia/Kolkata", "America/New_York", "Pacific/Apia", "America/Asuncion" }) {
        const TimeZone readers(zone);
        const Layout layout = layoutOf(bytes);
        QVERIFY2(layout.created, zone);
        QVERIFY2(*layout.created == created, qPrintable(zone + QString(": ") + *layout.created));
        QVERIFY2(!layout.modified, zone);
    }
}

void StatFileTest::createdOfASasDataSetIsInUtc()
{
    StatFile file(StatFile::sas7bdat);
    readstat_writer_set_file_timestamp(file.writer(), 1583634600);
    addNumber(file);
    const QByteArray bytes = bytesOf(file);
    for (const char *zone : { "UTC", "Asia/Kolkata", "America/New_York" }) {
        const TimeZone readers(zone);
        QCOMPARE(layoutOf(bytes).created.value_or("none"), QString("2020-03-08T02:30:00"));
    }
}

void StatFileTest::modifiedIsAbsentWhereItIsTheSame()
{
    StatFile file(StatFile::sas7bdat);
    readstat_writer_set_file_timestamp(file.writer(), 1583634600);
    addNumber(file);
    QByteArray bytes = bytesOf(file);
    QVERIFY(!layoutOf(bytes).modified);
    double seconds = 1583634600 + 3653 * 86400.0; // from 1960 on
    const QByteArray clock(reinterpret_cast<const char *>(&seconds), sizeof(seconds));
    seconds += 61;
    bytes.replace(bytes.indexOf(clock) + int(sizeof(seconds)), int(sizeof(seconds)),
                  QByteArray(reinterpret_cast<const char *>(&seconds), sizeof(seconds)));
    const Layout layout = layoutOf(bytes);
    QCOMPARE(layout.created.value_or("none"), QString("2020-03-08T02:30:00"));
    QCOMPARE(layout.modified.value_or("none"), QString("2020-03-08T02:31:01"));
}

void StatFileTest::yearsHaveFourDigits_data()
{
    QTest::addColumn<double>("days");
    QTest::addColumn<QString>("created");
    QTest::newRow("999") << -350633.0 << "none";
    QTest::newRow("1000") << -350632.0 << "1000-01-01T00:00:00";
    QTest::newRow("9999") << 2936549.0 << "9999-12-31T00:00:00";
    QTest::newRow("10000") << 2936550.0 << "none";
}

void StatFileTest::yearsHaveFourDigits()
{
    StatFile file(StatFile::sas7bdat);
    readstat_writer_set_file_timestamp(file.writer(), 1583634600);
    addNumber(file);
    QByteArray bytes = bytesOf(file);
    const double written = 1583634600 + 3653 * 86400.0; // from 1960 on
    QFETCH(double, days);
    const double changed = days * 86400.0;
    bytes.replace(QByteArray(reinterpret_cast<const char *>(&written), sizeof(written)),
                  QByteArray(reinterpret_cast<const char *>(&changed), sizeof(changed)));
    const Layout layout = layoutOf(bytes);
    QVERIFY(layout.isRead());
    QTEST(layout.created.value_or("none"), "created");
}

void StatFileTest::aClockOfZeroIsAbsentInAnyZone()
{
    QFETCH(StatFile::Kind, kind);
    QByteArray bytes;
    {
        const TimeZone writers("UTC");
        StatFile file(kind);
        addNumber(file);
        bytes = bytesOf(file);
    }
    for (const char *zone : { "UTC", "Asia/Kolkata", "America/New_York" }) {
        const TimeZone readers(zone);
        const Layout layout = layoutOf(bytes);
        QVERIFY2(!layout.created && !layout.modified, zone);
    }
}

void StatFileTest::rowsAreThoseOfTheFile_data()
{
    QTest::addColumn<StatFile::Kind>("kind");
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("expected");
    for (const StatFile::Kind kind : allKinds) {
        const bool isKnown = kind != StatFile::por && kind != StatFile::xpt;
        for (const int rows : { 0, 7 })
            QTest::addRow("%s, %d", nameOf(kind), rows) << kind << rows << (isKnown ? rows : -1);
    }
}

void StatFileTest::rowsAreThoseOfTheFile()
{
    QFETCH(StatFile::Kind, kind);
    QFETCH(int, rows);
    StatFile file(kind);
    addNumber(file);
    QTEST(int(layoutOf(file, rows).rows.value_or(-1)), "expected");
}

void StatFileTest::rowsAreAbsentWhereAnSpssFileDoesNotStateThem()
{
    StatFile file(StatFile::sav);
    addNumber(file);
    QByteArray bytes = bytesOf(file, 3);
    constexpr int rowsAt = 80;
    qToLittleEndian<qint32>(-1, bytes.data() + rowsAt);
    const Layout layout = layoutOf(bytes);
    QVERIFY(layout.isRead() && layout.problems.isEmpty());
    QVERIFY(!layout.rows);
}

// ReadStat passes on the 32 bits unchanged.
void StatFileTest::rowsAreAbsentWhereASasFileHasAllBitsSet()
{
    QBuffer device;
    const ReadOptions options;
    const Input input = { device, QString(), QByteArray(), options };
    for (const qint64 rows : { qint64(4294967295), qint64(4294967294) }) {
        Layout layout;
        layout.format = Format::Sas;
        Diagnostics diagnostics(layout);
        stat::Collector collector(input, layout, diagnostics);
        const std::unique_ptr<readstat_parser_t, void (*)(readstat_parser_t *)> parser(readstat_parser_init(),
                                                                                       readstat_parser_free);
        collector.attachTo(parser.get());
        readstat_metadata_t metadata = {};
        metadata.row_count = rows;
        parser->handlers.metadata(&metadata, &collector);
        QCOMPARE(layout.rows.has_value(), rows != 4294967295);
    }
}

void StatFileTest::noteHasTheLinesOfTheFile()
{
    QFETCH(StatFile::Kind, kind);
    StatFile file(kind);
    for (const char *line : { "First", "", " Third", "", "" })
        readstat_add_note(file.writer(), line);
    addNumber(file);
    QCOMPARE(layoutOf(file).note, QString("First\n\n Third"));
}

void StatFileTest::countOfStatasNotesIsNoNote()
{
    // Stata stores the number of notes as note 0. The writer of ReadStat omits it.
    StatFile file(StatFile::dta, 115);
    readstat_add_note(file.writer(), "2");
    readstat_add_note(file.writer(), "A note");
    addNumber(file);
    QByteArray bytes = bytesOf(file);
    QCOMPARE(layoutOf(bytes).note, QString("2\nA note"));
    bytes.replace("note1", "note0");
    QCOMPARE(layoutOf(bytes).note, QString("A note"));
}

void StatFileTest::noteOfOldStataIsDecoded()
{
    StatFile old(StatFile::dta, 115);
    readstat_add_note(old.writer(), "caf\xE9 \x80");
    addNumber(old);
    QCOMPARE(layoutOf(old).note, QString("café €"));
    StatFile file(StatFile::dta, 118);
    readstat_add_note(file.writer(), "caf\xC3\xA9 \xFF");
    addNumber(file);
    QCOMPARE(layoutOf(file).note, QString("café \uFFFD"));
}

void StatFileTest::typeAndStorageAreThoseOfTheVariable_data()
{
    QTest::addColumn<StatFile::Kind>("kind");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("words");
    const auto add = [](const char *name, StatFile::Kind kind, readstat_type_t type, const char *words) {
        QTest::newRow(name) << kind << int(type) << QString(words);
    };
    add("dta byte", StatFile::dta, READSTAT_TYPE_INT8, "numeric int8");
    add("dta int", StatFile::dta, READSTAT_TYPE_INT16, "numeric int16");
    add("dta long", StatFile::dta, READSTAT_TYPE_INT32, "numeric int32");
    add("dta float", StatFile::dta, READSTAT_TYPE_FLOAT, "numeric float");
    add("dta double", StatFile::dta, READSTAT_TYPE_DOUBLE, "numeric double");
    add("dta text", StatFile::dta, READSTAT_TYPE_STRING, "alpha string");
    add("dta strL", StatFile::dta, READSTAT_TYPE_STRING_REF, "alpha string");
    for (const StatFile::Kind kind : { StatFile::sav, StatFile::por, StatFile::sas7bdat, StatFile::xpt }) {
        QTest::addRow("%s number", nameOf(kind)) << kind << int(READSTAT_TYPE_DOUBLE) << "numeric double";
        QTest::addRow("%s text", nameOf(kind)) << kind << int(READSTAT_TYPE_STRING) << "alpha string";
    }
}

void StatFileTest::typeAndStorageAreThoseOfTheVariable()
{
    QFETCH(StatFile::Kind, kind);
    QFETCH(int, type);
    StatFile file(kind, kind == StatFile::dta ? 118 : 0);
    if (type == READSTAT_TYPE_STRING_REF)
        readstat_add_string_ref(file.writer(), "a long text");
    file.variable("V", readstat_type_t(type), "", nullptr, nullptr, 5);
    const Item item = onlyItemOf(layoutOf(file));
    QTEST(item.type + ' ' + wordOf(item.storage), "words");
}

void StatFileTest::lengthOfATextIsItsBytes_data()
{
    QTest::addColumn<StatFile::Kind>("kind");
    QTest::addColumn<int>("width");
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<int>("length");
    const auto add = [](const char *name, StatFile::Kind kind, int width, const char *format, int length) {
        QTest::newRow(name) << kind << width << QByteArray(format) << length;
    };
    add("dta, one less than ReadStat has room for", StatFile::dta, 5, "%9s", 5);
    add("dta, longest", StatFile::dta, 2045, "%9s", 2045);
    add("dta, strL", StatFile::dta, 0, "%9s", 0);
    add("sav, not rounded up to 8", StatFile::sav, 3, "A3", 3);
    add("sav, format wider than the text", StatFile::sav, 5, "A20", 8);
    add("sav, more than 8", StatFile::sav, 20, "A20", 20);
    add("sav, very long", StatFile::sav, 600, "A600", 600);
    add("por", StatFile::por, 3, "A3", 3);
    add("por, format wider than the text", StatFile::por, 5, "A20", 5);
    add("por, longest", StatFile::por, 255, "A255", 255);
    add("sas7bdat", StatFile::sas7bdat, 5, "$CHAR9", 5);
    add("xpt", StatFile::xpt, 5, "$CHAR9", 5);
}

void StatFileTest::lengthOfATextIsItsBytes()
{
    QFETCH(StatFile::Kind, kind);
    QFETCH(int, width);
    QFETCH(QByteArray, format);
    StatFile file(kind, kind == StatFile::dta ? 118 : 0);
    if (width == 0) {
        readstat_add_string_ref(file.writer(), "a long text");
        file.variable("V", READSTAT_TYPE_STRING_REF, "", format.constData());
    } else {
        file.text("V", size_t(width), "", format.constData());
    }
    const Item item = onlyItemOf(layoutOf(file));
    QCOMPARE(item.type, itemtype::alpha());
    QTEST(item.length, "length");
    QCOMPARE(item.decimals, 0);
}

void StatFileTest::lengthOfATextWithoutAFormatIsItsWidth()
{
    StatFile file(StatFile::sav);
    file.text("V", 5, "", "A5");
    QByteArray bytes = bytesOf(file);
    constexpr int formatsSize = 8; // two of them, before the name
    const int formats = bytes.indexOf("V       ") - formatsSize;
    QVERIFY(formats > 0);
    bytes.replace(formats, formatsSize, QByteArray(formatsSize, '\0'));
    const Item item = onlyItemOf(layoutOf(bytes));
    QCOMPARE(item.format, QString());
    QCOMPARE(item.length, 8);
}

void StatFileTest::lengthAndDecimalsOfANumberAreThoseOfItsFormat()
{
    StatFile file(StatFile::sav);
    file.variable("A", READSTAT_TYPE_DOUBLE, "", "F8.2");
    file.variable("B", READSTAT_TYPE_DOUBLE, "", "DATETIME20");
    StatFile stata(StatFile::dta);
    stata.variable("A", READSTAT_TYPE_DOUBLE, "", "%-12.3f");
    stata.variable("B", READSTAT_TYPE_DOUBLE, "", "%td");
    QStringList words;
    for (const Layout &layout : { layoutOf(file), layoutOf(stata) }) {
        for (const Item &item : itemsOf(layout))
            words += QString("%1 %2 %3").arg(item.format).arg(item.length).arg(item.decimals);
    }
    QCOMPARE(words, QStringList({ "F8.2 8 2", "DATETIME20 20 0", "%-12.3f 12 3", "%td 0 0" }));
}

void StatFileTest::measureIsThatOfTheFile_data()
{
    QTest::addColumn<int>("measure");
    QTest::addColumn<QString>("word");
    QTest::newRow("unknown") << int(READSTAT_MEASURE_UNKNOWN) << "";
    QTest::newRow("nominal") << int(READSTAT_MEASURE_NOMINAL) << "nominal";
    QTest::newRow("ordinal") << int(READSTAT_MEASURE_ORDINAL) << "ordinal";
    QTest::newRow("scale") << int(READSTAT_MEASURE_SCALE) << "scale";
}

void StatFileTest::measureIsThatOfTheFile()
{
    QFETCH(int, measure);
    StatFile file(StatFile::sav);
    readstat_variable_set_measure(addNumber(file), readstat_measure_t(measure));
    QTEST(wordOf(onlyItemOf(layoutOf(file)).measure), "word");
}

void StatFileTest::alignmentOfAnSpssFileIsUnknown()
{
    StatFile file(StatFile::sav);
    readstat_variable_set_alignment(addNumber(file), READSTAT_ALIGNMENT_CENTER);
    QCOMPARE(onlyItemOf(layoutOf(file)).alignment, Alignment::None);
}

void StatFileTest::alignmentOfStataIsThatOfTheFormat_data()
{
    QTest::addColumn<QString>("word");
    QTest::newRow("%-9s") << "left";
    QTest::newRow("%~9s") << "center";
    QTest::newRow("%9s") << "right";
}

void StatFileTest::alignmentOfStataIsThatOfTheFormat()
{
    StatFile file(StatFile::dta);
    file.text("V", 5, "", QTest::currentDataTag());
    QTEST(wordOf(onlyItemOf(layoutOf(file)).alignment), "word");
}

void StatFileTest::displayWidthHasNoSign()
{
    StatFile file(StatFile::dta);
    file.text("V", 5, "", "%-12s");
    file.text("W", 5, "", "%12s");
    const Layout layout = layoutOf(file);
    QCOMPARE(itemsOf(layout).at(0).displayWidth, 12);
    QCOMPARE(itemsOf(layout).at(1).displayWidth, 12);
    QCOMPARE(itemsOf(layout).at(0).format, QString("%-12s"));
}

void StatFileTest::valueSetHasTheNameOfTheLabelSet_data()
{
    QTest::addColumn<StatFile::Kind>("kind");
    QTest::addColumn<QString>("name");
    QTest::newRow("sav") << StatFile::sav << "labels0";
    QTest::newRow("zsav") << StatFile::zsav << "labels0";
    QTest::newRow("por") << StatFile::por << "labels0";
    QTest::newRow("dta") << StatFile::dta << "yesno";
}

void StatFileTest::valueSetHasTheNameOfTheLabelSet()
{
    QFETCH(StatFile::Kind, kind);
    StatFile file(kind);
    addNumber(file, "A", file.labels("yesno", { { 1, "Yes" }, { 2, "No" } }));
    addNumber(file, "B");
    const Layout layout = layoutOf(file);
    QCOMPARE(itemsOf(layout).at(0).valueSets.size(), 1);
    const ValueSet &set = itemsOf(layout).at(0).valueSets.constFirst();
    QTEST(set.name, "name");
    QVERIFY(set.link.isEmpty() && set.labels.isEmpty());
    QVERIFY(itemsOf(layout).at(1).valueSets.isEmpty());
}

void StatFileTest::nameOfALabelSetEndsWithItsField_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<int>("size");
    QTest::newRow("105") << 105 << 9;
    QTest::newRow("108") << 108 << 9;
    QTest::newRow("110") << 110 << 33;
    QTest::newRow("115") << 115 << 33;
    QTest::newRow("117") << 117 << 33;
    QTest::newRow("118") << 118 << 129;
    QTest::newRow("119") << 119 << 129;
}

void StatFileTest::nameOfALabelSetEndsWithItsField()
{
    QFETCH(int, version);
    QFETCH(int, size);
    StatFile file(StatFile::dta, version);
    const std::string name(size_t(size), 'n');
    file.variable("v", READSTAT_TYPE_INT16, "V", "%8.0g", file.intLabels(name.c_str(), { { 1, "Yes" } }));
    const Item item = onlyItemOf(layoutOf(file));
    QCOMPARE(item.valueSets.size(), 1);
    QCOMPARE(item.valueSets.constFirst().name, QString::fromStdString(name));
    QCOMPARE(wordsOf(item.valueSets.constFirst()), QStringList("1 Yes"));
}

void StatFileTest::nameOfALabelSetOfOldStataIsDecoded()
{
    StatFile file(StatFile::dta, 115);
    file.variable("v", READSTAT_TYPE_INT16, "V", "%8.0g",
                  file.intLabels("ann\xE9"
                                 "e",
                                 { { 1, "Yes" } }));
    const Item item = onlyItemOf(layoutOf(file));
    QCOMPARE(item.valueSets.size(), 1);
    QCOMPARE(item.valueSets.constFirst().name, QString("année"));
}

void StatFileTest::valuesAreInTheOrderOfTheFile()
{
    QFETCH(StatFile::Kind, kind);
    StatFile file(kind);
    addNumber(file, "A", file.labels("set", { { 9, "Nine" }, { -1, "Minus one" }, { 0, "Zero" } }));
    QCOMPARE(wordsOf(onlyItemOf(layoutOf(file)).valueSets.value(0)),
             QStringList({ "9 Nine", "-1 Minus one", "0 Zero" }));
}

void StatFileTest::labelsAreNotTrimmedAndAnEmptyOneIsNone()
{
    StatFile file(StatFile::sav);
    addNumber(file, "A", file.labels("set", { { 1, "  Yes" }, { 2.5, "" }, { 100000, "caf\xC3\xA9" } }));
    QCOMPARE(wordsOf(onlyItemOf(layoutOf(file)).valueSets.value(0)), QStringList({ "1   Yes", "2.5", "100000 café" }));
}

void StatFileTest::taggedMissingValuesAreLetters()
{
    StatFile file(StatFile::dta, 118);
    readstat_label_set_t *set = file.intLabels("set", { { 1, "Yes" } });
    readstat_label_tagged_value(set, 'a', "Refused");
    readstat_label_tagged_value(set, 'z', "Unknown");
    file.variable("V", READSTAT_TYPE_INT32, "", nullptr, set);
    const ValueSet values = onlyItemOf(layoutOf(file)).valueSets.value(0);
    QCOMPARE(wordsOf(values), QStringList({ "1 Yes", ".a Refused", ".z Unknown" }));
    for (const Value &value : values.values)
        QCOMPARE(value.special, Special::None);
}

void StatFileTest::systemMissingIsAPoint()
{
    StatFile file(StatFile::sav);
    addNumber(file, "A", file.labels("set", { { std::nan(""), "None" } }));
    QCOMPARE(wordsOf(onlyItemOf(layoutOf(file)).valueSets.value(0)), QStringList(". None"));
    StatFile stata(StatFile::dta, 118);
    constexpr int systemMissing = 2147483621;
    stata.variable("V", READSTAT_TYPE_INT32, "", nullptr, stata.intLabels("set", { { systemMissing, "None" } }));
    QCOMPARE(wordsOf(onlyItemOf(layoutOf(stata)).valueSets.value(0)), QStringList(". None"));
}

void StatFileTest::missingRangesAreThoseOfTheFile_data()
{
    QTest::addColumn<StatFile::Kind>("kind");
    QTest::addColumn<QVector<double>>("ends");
    QTest::addColumn<QStringList>("words");
    using Ends = QVector<double>;
    for (const StatFile::Kind kind : { StatFile::sav, StatFile::por }) {
        const auto add = [kind](const char *name, const Ends &ends, const QStringList &words) {
            QTest::addRow("%s, %s", nameOf(kind), name) << kind << ends << words;
        };
        add("none", {}, {});
        add("one code", { 9, 9 }, { "9" });
        add("three codes", { 9, 9, -1, -1, 0.5, 0.5 }, { "9", "-1", "0.5" });
        add("range", { 7, 9 }, { "7 to 9" });
        add("from the lowest", { -HUGE_VAL, -1 }, { "-inf to -1" });
        add("up to the highest", { 97, HUGE_VAL }, { "97 to inf" });
        add("a range before the code", { 7, 9, 99, 99 }, { "7 to 9", "99" });
    }
}

void StatFileTest::missingRangesAreThoseOfTheFile()
{
    QFETCH(StatFile::Kind, kind);
    QFETCH(QVector<double>, ends);
    StatFile file(kind);
    readstat_variable_t *variable = addNumber(file);
    for (int i = 0; i < ends.size(); i += 2) {
        const bool isCode = ends.at(i) == ends.at(i + 1);
        QCOMPARE(int(isCode ? readstat_variable_add_missing_double_value(variable, ends.at(i))
                            : readstat_variable_add_missing_double_range(variable, ends.at(i), ends.at(i + 1))),
                 int(READSTAT_OK));
    }
    QTEST(wordsOf(onlyItemOf(layoutOf(file)).missing), "words");
}

void StatFileTest::missingTextsHaveNoBlanksAtTheirEnd()
{
    QFETCH(StatFile::Kind, kind);
    StatFile file(kind);
    readstat_variable_t *variable = file.text("V", 5);
    readstat_variable_add_missing_string_value(variable, "NA  ");
    readstat_variable_add_missing_string_value(variable, " X");
    QCOMPARE(wordsOf(onlyItemOf(layoutOf(file)).missing), QStringList({ "NA", " X" }));
}

void StatFileTest::aLabelSetThatTheFileLacksIsKept()
{
    StatFile file(StatFile::dta, 118);
    addNumber(file, "A", file.labels("yesno", { { 1, "Yes" } }));
    QByteArray bytes = bytesOf(file);
    bytes.replace(bytes.indexOf("yesno"), 5, "other"); // with the variable, before the set itself
    const Layout layout = layoutOf(bytes);
    QVERIFY(onlyItemOf(layout).valueSets.isEmpty());
    QCOMPARE(wordsOf(layout.extras), QStringList({ "//A|valueLabels|other|0", "|valueLabels|yesno|0" }));
    QVERIFY(layout.problems.isEmpty());
}

void StatFileTest::aLabelSetThatNoVariableUsesIsKept_data()
{
    QTest::addColumn<StatFile::Kind>("kind");
    QTest::addColumn<QStringList>("words");
    QTest::newRow("dta") << StatFile::dta << QStringList({ "|valueLabels|unused|0", "|valueLabels|another|0" });
}

void StatFileTest::aLabelSetThatNoVariableUsesIsKept()
{
    QFETCH(StatFile::Kind, kind);
    StatFile file(kind);
    file.labels("unused", { { 1, "Yes" } });
    addNumber(file, "A", file.labels("used", { { 1, "Yes" } }));
    file.labels("another", { { 1, "Yes" } });
    const Layout layout = layoutOf(file);
    QTEST(wordsOf(layout.extras), "words");
    QCOMPARE(onlyItemOf(layout).valueSets.value(0).name, QString("used"));
}

void StatFileTest::aParseThatFailsAfterTheVariablesIsAWarning()
{
    StatFile file(StatFile::dta, 118);
    addNumber(file, "A", file.labels("yesno", { { 1, "Yes" } }));
    QByteArray bytes = bytesOf(file);
    const QByteArray strls("<strls>");
    bytes.replace(bytes.indexOf(strls), strls.size(), "<strlx>");
    const Layout layout = layoutOf(bytes);
    QVERIFY(layout.isRead());
    QCOMPARE(itemsOf(layout).size(), 1);
    QCOMPARE(idsOf(layout.problems), QStringList("warning reading-ended"));
    QVERIFY(layout.problems.constFirst().message.endsWith(
        QString::fromLatin1(readstat_error_message(READSTAT_ERROR_PARSE))));
}

void StatFileTest::aParseThatFailsBeforeAnyVariableGivesNoLayout_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("message");
    const auto made = [](StatFile::Kind kind, int version = 0) {
        StatFile file(kind, version);
        readstat_writer_set_file_label(file.writer(), "The label");
        addNumber(file);
        return bytesOf(file);
    };
    const QString cannot = " that cannot be read: ";
    const QString version = readstat_error_message(READSTAT_ERROR_UNSUPPORTED_FILE_FORMAT_VERSION);
    QTest::newRow("dta 102") << QByteArray("\x66\0\1\0\5\0\x0a\0", 8) + QByteArray(200, '\0') << "unsupported-version"
                             << "the file is a Stata file of version 102" + cannot + version;
    QTest::newRow("dta 103") << QByteArray("\x67\2\1\0\5\0\x0a\0", 8) + QByteArray(200, '\0') << "unsupported-version"
                             << "the file is a Stata file of version 103" + cannot + version;
    QTest::newRow("dta 120") << made(StatFile::dta, 119).replace("<release>119", "<release>120")
                             << "unsupported-version"
                             << "the file is a Stata file of version 120" + cannot + version;
    QTest::newRow("dta of no version") << QByteArray("<stata_dta><header>") << "damaged-file"
                                       << "the file is a Stata file" + cannot
            + QString(readstat_error_message(READSTAT_ERROR_READ));
    QTest::newRow("cut dta") << made(StatFile::dta, 118).left(60) << "damaged-file"
                             << "the file is a Stata file of version 118" + cannot
            + readstat_error_message(READSTAT_ERROR_READ);
    QTest::newRow("cut sav") << made(StatFile::sav).left(300) << "damaged-file"
                             << "the file is an SPSS file" + cannot + readstat_error_message(READSTAT_ERROR_READ);
    QTest::newRow("wrong encoding") << made(StatFile::sav).replace("The label", "The lab\xE9l") << "wrong-encoding"
                                    << "the file is an SPSS file" + cannot
            + readstat_error_message(READSTAT_ERROR_CONVERT_BAD_STRING);
    QTest::newRow("cut por") << made(StatFile::por).left(500) << "damaged-file"
                             << "the file is an SPSS portable file" + cannot
            + readstat_error_message(READSTAT_ERROR_PARSE);
    QTest::newRow("por, a number that is none")
        << made(StatFile::por).replace("SPSSPORTA8/", "SPSSPORTA!/") << "damaged-file"
        << "the file is an SPSS portable file" + cannot + readstat_error_message(READSTAT_ERROR_PARSE);
    QTest::newRow("cut sas7bdat") << made(StatFile::sas7bdat).left(500) << "damaged-file"
                                  << "the file is a SAS data set" + cannot
            + QString(readstat_error_message(READSTAT_ERROR_READ));
    QTest::newRow("cut xpt") << made(StatFile::xpt).left(500) << "damaged-file"
                             << "the file is a SAS transport file" + cannot
            + readstat_error_message(READSTAT_ERROR_READ);
}

void StatFileTest::aParseThatFailsBeforeAnyVariableGivesNoLayout()
{
    QFETCH(QByteArray, bytes);
    const Layout layout = layoutOf(bytes);
    QCOMPARE(layout.problems.size(), 1);
    QVERIFY(layout.error() && layout.levels.isEmpty());
    QCOMPARE(layout.file, QString("file"));
    QTEST(layout.error()->id, "id");
    QTEST(layout.error()->message, "message");
}

void StatFileTest::weightIsTheNameOfTheVariable()
{
    QFETCH(StatFile::Kind, kind);
    StatFile file(kind);
    addNumber(file, "AGE");
    file.text("NAME", 20);
    readstat_writer_set_fweight_variable(file.writer(), addNumber(file, "WEIGHT"));
    QCOMPARE(layoutOf(file).weight, QString("WEIGHT"));
    StatFile without(kind);
    addNumber(without);
    QVERIFY(layoutOf(without).weight.isEmpty());
}

void StatFileTest::variablesWithOneLabelSetShareItsListInMemory()
{
    QFETCH(StatFile::Kind, kind);
    StatFile file(kind);
    const auto *set = file.labels("yesno", { { 1, "Yes" }, { 2, "No" } });
    for (const char *name : { "A", "B", "C" })
        addNumber(file, name, set);
    const Layout layout = layoutOf(file);
    QCOMPARE(itemsOf(layout).size(), 3);
    const ValueSet first = itemsOf(layout).at(0).valueSets.value(0);
    QCOMPARE(wordsOf(first), QStringList({ "1 Yes", "2 No" }));
    for (const Item &item : itemsOf(layout)) {
        QCOMPARE(item.valueSets.value(0), first);
        QVERIFY(item.valueSets.constFirst().values.constData() == first.values.constData());
    }
}

void StatFileTest::labelsOfLongTextsAreRead()
{
    StatFile file(StatFile::sav);
    file.text("SHORT", 4, "", "A4", file.textLabels("short", { { "M", "Male" }, { "F", "Female" } }));
    file.text("A_LONG_NAME_OF_A_TEXT", 20, "", "A20",
              file.textLabels("long", { { "a text of twenty byte", "First" }, { "another", "" } }));
    file.text("VERY", 600, "", "A600", file.textLabels("very", { { "a third", "Third" } }));
    const Layout layout = layoutOf(file);
    QCOMPARE(itemsOf(layout).size(), 3);
    QCOMPARE(wordsOf(itemsOf(layout).at(0).valueSets.value(0)), QStringList({ "M Male", "F Female" }));
    QCOMPARE(itemsOf(layout).at(1).name, QString("A_LONG_NAME_OF_A_TEXT"));
    QCOMPARE(wordsOf(itemsOf(layout).at(1).valueSets.value(0)),
             QStringList({ "a text of twenty byte First", "another" }));
    QCOMPARE(wordsOf(itemsOf(layout).at(2).valueSets.value(0)), QStringList("a third Third"));
    QVERIFY(layout.extras.isEmpty() && layout.problems.isEmpty());
}

void StatFileTest::catalogGivesLabelSetsToFormats()
{
    QFETCH(StatFile::Kind, kind);
    const ReadOptions options = { fileWith(catalog(), "formats.sas7bcat") };
    const Layout layout = layoutOf(dataSet(kind, { "YESNO", "YESNO8.2", "BEST12", "YESNO1" }), options);
    QStringList words;
    for (const Item &item : itemsOf(layout)) {
        const ValueSet set = item.valueSets.value(0);
        words += item.format + ": " + set.name + ' ' + wordsOf(set).join(',');
    }
    QCOMPARE(words,
             QStringList({ "YESNO: YESNO 1 Yes,-2.5 No", "YESNO8.2: YESNO 1 Yes,-2.5 No",
                           "BEST12:  ", "YESNO1: YESNO 1 Yes,-2.5 No" }));
    QVERIFY(layout.extras.isEmpty() && layout.problems.isEmpty());
}

void StatFileTest::catalogOfTextsIsRead()
{
    StatFile texts(StatFile::sas7bcat);
    texts.textLabels("$SEX", { { "M", "Male" }, { "F", "Female" } });
    const ReadOptions options = { fileWith(bytesOf(texts, 0), "texts.sas7bcat") };
    StatFile file(StatFile::sas7bdat);
    file.text("SEX", 1, "", "$SEX");
    const ValueSet set = onlyItemOf(layoutOf(bytesOf(file), options)).valueSets.value(0);
    QCOMPARE(set.name, QString("$SEX"));
    QCOMPARE(wordsOf(set), QStringList({ "M Male", "F Female" }));
}

void StatFileTest::tagsOfACatalogAreSmallLetters()
{
    // The bytes of a missing value: FF, its letter and 0000FFFFFFFF, in the byte order of the format.
    QByteArray bytes = catalog();
    double number = -2.5 * -1;
    QByteArray code(sizeof(number), '\0');
    quint64 bits = 0;
    std::memcpy(&bits, &number, sizeof(bits));
    qToBigEndian(bits, code.data());
    const int place = bytes.indexOf(code);
    QVERIFY(place > 0);
    const auto labelsWith = [&](const char *missing) {
        bytes.replace(place, code.size(), QByteArray::fromHex(missing));
        const ReadOptions options = { fileWith(bytes, "tags.sas7bcat") };
        return wordsOf(onlyItemOf(layoutOf(dataSet(StatFile::sas7bdat, { "YESNO" }), options)).valueSets.value(0));
    };
    QCOMPARE(labelsWith("000041FFFFFFFFFF"), QStringList({ "1 Yes", ".a No" }));
    QCOMPARE(labelsWith("00005FFFFFFFFFFF"), QStringList({ "1 Yes", "._ No" }));
    QCOMPARE(labelsWith("00002EFFFFFFFFFF"), QStringList({ "1 Yes", ". No" }));
}

void StatFileTest::withoutACatalogThereAreNoValueSets()
{
    const Layout layout = layoutOf(dataSet(StatFile::sas7bdat, { "YESNO" }));
    QVERIFY(onlyItemOf(layout).valueSets.isEmpty());
    QVERIFY(layout.extras.isEmpty());
}

void StatFileTest::aSetOfACatalogThatNoVariableUsesIsKept()
{
    const ReadOptions options = { fileWith(catalog(), "formats.sas7bcat") };
    const Layout layout = layoutOf(dataSet(StatFile::sas7bdat, { "BEST12" }), options);
    QCOMPARE(wordsOf(layout.extras), QStringList("|valueLabels|YESNO|0"));
}

void StatFileTest::aCatalogAloneIsNoLayout()
{
    const Layout layout = layoutOf(catalog());
    QVERIFY(layout.error());
    QCOMPARE(layout.error()->id, QString("catalog-alone"));
    QVERIFY(layout.error()->message.startsWith("the file is a SAS catalog"));
}

void StatFileTest::aCatalogThatCannotBeReadIsAWarning_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("part");
    QTest::newRow("absent") << "/no/such/file"
                            << "cannot be opened";
    QTest::newRow("no catalog") << fileWith("text", "text.sas7bcat") << "is not a SAS catalog";
    QTest::newRow("data set") << fileWith(dataSet(StatFile::sas7bdat, { "BEST12" }), "data.sas7bdat")
                              << "is not a SAS catalog";
    QTest::newRow("no regular file") << "/dev/null"
                                     << "is not a regular file";
    QTest::newRow("cut") << fileWith(catalog().left(2000), "cut.sas7bcat")
                         << readstat_error_message(READSTAT_ERROR_READ);
}

void StatFileTest::aCatalogThatCannotBeReadIsAWarning()
{
    QFETCH(QString, path);
    QFETCH(QString, part);
    const Layout layout = layoutOf(dataSet(StatFile::sas7bdat, { "YESNO" }), { path });
    QCOMPARE(itemsOf(layout).size(), 1);
    QCOMPARE(idsOf(layout.problems), QStringList("warning catalog-not-read"));
    const QString message = layout.problems.constFirst().message;
    QVERIFY2(message.contains(path) && message.contains(part), qPrintable(message));
}

void StatFileTest::aCatalogIsOnlyForSasFiles()
{
    StatFile file(StatFile::sav);
    addNumber(file);
    const Layout layout = layoutOf(bytesOf(file), { fileWith(catalog(), "formats.sas7bcat") });
    QCOMPARE(idsOf(layout.problems), QStringList("info catalog-not-used"));
}

void StatFileTest::fileIsRecognisedByItsBegin_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("isStatistical");
    const QByteArray rest(200, ' ');
    const auto add = [&](const char *name, const QByteArray &begin, bool isStatistical) {
        QTest::newRow(name) << begin + rest << isStatistical;
    };
    add("$FL2", "$FL2", true);
    add("$FL3", "$FL3", true);
    add("$FL4", "$FL4", false);
    for (int version = 100; version <= 120; ++version) {
        const bool isKnown = version >= 102 && version <= 115;
        for (const int order : { 1, 2 })
            QTest::addRow("version %d, byte order %d", version, order)
                << QByteArray(1, char(version)) + char(order) + QByteArray(2, '\0') + rest << isKnown;
        QTest::addRow("version %d, no byte order", version)
            << QByteArray(1, char(version)) + QByteArray(5, '\0') + rest << (version == 102);
        QTest::addRow("version %d, text", version) << QByteArray(1, char(version)) + rest << false;
    }
    add("tag of Stata", "<stata_dta><header>", true);
    add("tag of Stata with a version that is none", "<stata_dta><header><release>abc", true);
    add("XML", "<?xml version", false);
    const QByteArray magic = QByteArray::fromHex("000000000000000000000000c2ea8160b31411cfbd92080009c7318c181f1011");
    add("SAS data set", magic, true);
    add("SAS catalog", QByteArray(magic).replace('\x60', '\x63'), true);
    add("SAS file of another kind", QByteArray(magic).replace('\x60', '\x61'), false);
    add("cut magic of SAS", magic.left(31), false);
    add("XPORT 5", "HEADER RECORD*******LIBRARY HEADER RECORD!!!!!!!", true);
    add("XPORT 8", "HEADER RECORD*******LIBV8   HEADER RECORD!!!!!!!", true);
    add("other header", "HEADER RECORD*******MEMBER", false);
    add("portable", QByteArray(40, 'x') + "ASCII SPSS PORT FILE", true);
    add("portable without its name", QByteArray(456, '0') + "SPSSPORT", true);
    add("name of portable files too far from the beginning", QByteArray(512, '0') + "SPSSPORT", false);
    add("dictionary with the name of portable files", "[Dictionary]\nLabel=SPSS PORT FILE\n", false);
    add("dictionary with a mark at the beginning", "\xEF\xBB\xBF\n [Dictionary]\nLabel=SPSS PORT FILE\n", false);
    add("JSON with the name of portable files", "{\"label\": \"SPSSPORT\"", false);
    QTest::newRow("one byte") << QByteArray("f") << false;
    QTest::newRow("one byte of Stata") << QByteArray("s") << false;
}

void StatFileTest::fileIsRecognisedByItsBegin()
{
    QFETCH(QByteArray, head);
    QTEST(isStatFile(head), "isStatistical");
}

void StatFileTest::remarkOfReadStatIsReported()
{
    StatFile file(StatFile::dta, 115);
    addNumber(file);
    QByteArray bytes = bytesOf(file);
    constexpr int clockAt = 91;
    bytes.replace(clockAt, 17, "08\x1bMar\n2020 02:30");
    const Layout layout = layoutOf(bytes);
    QVERIFY(layout.isRead() && !layout.created);
    QCOMPARE(idsOf(layout.problems), QStringList("info reader-remark"));
    QCOMPARE(layout.problems.constFirst().message,
             QString("while the file was read: Invalid timestamp string (length=17): 08\uFFFDMar 2020 02:30"));
}

void StatFileTest::portableTextDoesNotDependOnTheLocale()
{
    StatFile file(StatFile::por);
    file.variable("AGE", READSTAT_TYPE_DOUBLE, "The age");
    QByteArray bytes = bytesOf(file);
    // The character set of the file has a cent sign after the backslash.
    const QByteArray brackets("{}\\");
    bytes[bytes.indexOf(brackets) + brackets.size()] = '\xA2';
    bytes.replace("The age", "The \xA2ge");
    const QByteArray before = std::setlocale(LC_ALL, nullptr);
    for (const char *locale : { "C", "C.UTF-8" }) {
        QVERIFY(std::setlocale(LC_ALL, locale));
        QCOMPARE(onlyItemOf(layoutOf(bytes)).labels.primary(), QString("The ¢ge"));
    }
    std::setlocale(LC_ALL, before.constData());
}

void StatFileTest::aFileOnDiskReadsAsOneInMemory()
{
    QFETCH(StatFile::Kind, kind);
    StatFile file(kind);
    addNumber(file, "A");
    file.text("B", 12, "The label");
    const QByteArray bytes = bytesOf(file, 3);
    const Layout inMemory = layoutOf(bytes);
    QVERIFY(inMemory.isRead());
    Layout onDisk = readLayout(fileWith(bytes, nameOf(kind)));
    onDisk.file = inMemory.file;
    QCOMPARE(onDisk, inMemory);
}

void StatFileTest::fileBeginsWhereTheDeviceIs()
{
    QFETCH(StatFile::Kind, kind);
    StatFile file(kind);
    addNumber(file, "A", isSpss(kind) || kind == StatFile::dta ? file.labels("set", { { 1, "Yes" } }) : nullptr);
    QByteArray bytes = bytesOf(file, 3);
    const Layout expected = layoutOf(bytes);
    bytes.prepend("something else");
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    buffer.seek(14);
    QCOMPARE(readLayout(buffer, "file"), expected);
    QVERIFY(expected.isRead() && itemsOf(expected).size() == 1);
}

QTEST_APPLESS_MAIN(StatFileTest)
#include "StatFileTest.moc"
