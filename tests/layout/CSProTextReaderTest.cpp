#include "read/Reader.h"
#include "write/LayoutJson.h"

#include <QBuffer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <limits>

using namespace vanlayout;

Q_DECLARE_METATYPE(Format)

namespace
{

Layout layoutOf(QByteArray text)
{
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    return readLayout(buffer, QString());
}

QJsonObject jsonOf(const Layout &layout)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    writeLayoutJson(layout, buffer);
    return QJsonDocument::fromJson(buffer.data()).object();
}

// Sections without problems; an element under test is the last of its kind.
const QByteArray dictionaryPart = "[Dictionary]\nName=D\nPositions=Relative\n";
const QByteArray levelPart = "[Level]\nName=L\n";
const QByteArray idsPart = "[IdItems]\n[Item]\nName=ID\nStart=1\nLen=1\n";
const QByteArray recordPart = "[Record]\nName=R\n";
const QByteArray itemPart = "[Item]\nName=I\nStart=2\nLen=3\n";
const QByteArray setPart = "[ValueSet]\nName=S\n";
const QByteArray valuePart = "Value=1;One\n";
const QByteArray relationPart = "[Relation]\nName=REL\nPrimary=R\nSecondary=R\n";
const QByteArray setBegin = dictionaryPart + levelPart + idsPart + recordPart + itemPart + setPart;

// A dictionary in which the lines replace the usual lines of one section.
QByteArray dictionaryWith(const QByteArray &section, const QByteArray &lines)
{
    const QByteArray level = dictionaryPart + levelPart;
    const QByteArray record = level + idsPart + recordPart;
    if (section == "dictionary")
        return "[Dictionary]\n" + lines;
    if (section == "languages")
        return dictionaryPart + "[Languages]\n" + lines + levelPart + idsPart;
    if (section == "level")
        return dictionaryPart + "[Level]\n" + lines + idsPart;
    if (section == "record")
        return level + idsPart + "[Record]\n" + lines;
    if (section == "item")
        return record + "[Item]\n" + lines;
    if (section == "set")
        return record + itemPart + "[ValueSet]\n" + lines;
    if (section == "value")
        return setBegin + lines;
    if (section == "relation")
        return record + "[Relation]\n" + lines;
    return QByteArray();
}

QJsonObject lastOf(const QJsonObject &object, const char *list)
{
    return object.value(QLatin1String(list)).toArray().last().toObject();
}

// The element of that section in the JSON form.
QJsonObject elementOf(const QByteArray &section, const QJsonObject &layout)
{
    const QJsonObject level = lastOf(layout, "levels");
    const QJsonObject record = lastOf(level, "records");
    const QJsonObject item = lastOf(record, "items");
    const QJsonObject set = lastOf(item, "valueSets");
    if (section == "level")
        return level;
    if (section == "record")
        return record;
    if (section == "item")
        return item;
    if (section == "set")
        return set;
    if (section == "value")
        return lastOf(set, "values");
    if (section == "relation")
        return lastOf(layout, "relations");
    return layout;
}

// JSON text of a member; empty if it is omitted.
QByteArray memberOf(const QJsonObject &object, const QString &key)
{
    if (!object.contains(key))
        return QByteArray();
    const QByteArray list = QJsonDocument(QJsonArray{ object.value(key) }).toJson(QJsonDocument::Compact);
    return list.mid(1, list.size() - 2);
}

// A problem as `severity id line path`.
QStringList textsOf(const QVector<Problem> &problems)
{
    QStringList texts;
    for (const Problem &problem : problems)
        texts.append(wordOf(problem.severity) + ' ' + problem.id + ' ' + QString::number(problem.line) + ' '
                     + problem.path);
    return texts;
}

// An extra entry as `path key=value line`.
QStringList textsOf(const QVector<Extra> &extras)
{
    QStringList texts;
    for (const Extra &extra : extras)
        texts.append(extra.path + ' ' + extra.key + '=' + extra.value + ' ' + QString::number(extra.line));
    return texts;
}

// The names of levels, with their ids and their records in brackets.
QString outlineOf(const QVector<Item> &items)
{
    QStringList names;
    for (const Item &item : items) {
        QString name = item.isSubitem ? item.subitemOf + '.' + item.name : item.name;
        for (const ValueSet &set : item.valueSets)
            name += '+' + set.name;
        names.append(name);
    }
    return '(' + names.join(' ') + ')';
}

QString outlineOf(const Layout &layout)
{
    QStringList levels;
    for (const Level &level : layout.levels) {
        QString text = level.name + outlineOf(level.ids);
        for (const Record &record : level.records)
            text += ' ' + record.name + outlineOf(record.items);
        levels.append(text);
    }
    return levels.join("; ");
}

QByteArray contentOf(const QString &name)
{
    QFile file(QStringLiteral(VAN_TEST_DATA "/layout/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class CSProTextReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void everyKeyIsReadAndHasItsDefault_data();
    void everyKeyIsReadAndHasItsDefault();
    void everySectionHasNoProblemOfItsOwn();
    void aRepeatedKeyCountsFirstOrLast_data();
    void aRepeatedKeyCountsFirstOrLast();
    void sectionsBelongToTheLastFittingOne_data();
    void sectionsBelongToTheLastFittingOne();
    void everyFaultIsReportedWithItsPlace_data();
    void everyFaultIsReportedWithItsPlace();
    void whatHasNoMemberIsKept_data();
    void whatHasNoMemberIsKept();
    void languagesAreThoseOfTheWholeFile();
    void equalLabelsAreInMemoryOnce();
    void problemsAreInTheOrderOfTheFile();
    void aFileWithoutDictionarySectionIsNoLayout_data();
    void aFileWithoutDictionarySectionIsNoLayout();
    void aFileThatBeginsWithABracketIsRead_data();
    void aFileThatBeginsWithABracketIsRead();
    void everyCutFileIsRead_data();
    void everyCutFileIsRead();
    void everyChangedByteIsRead_data();
    void everyChangedByteIsRead();
    void manySmallElementsAreRead_data();
    void manySmallElementsAreRead();
    void aMillionProblemsAreBounded();
    void longNamesAreCutInPaths();
    void whiteSpaceInFrontMayBeLong_data();
    void whiteSpaceInFrontMayBeLong();
};

void CSProTextReaderTest::everyKeyIsReadAndHasItsDefault_data()
{
    QTest::addColumn<QByteArray>("section");
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QByteArray>("value");
    QByteArray section;
    const auto row = [&](const char *lines, const char *member, const char *value) {
        QTest::newRow((section + ": " + QByteArray(lines).replace('\n', "; ")).constData())
            << section << QByteArray(lines) + "\n"
            << member << QByteArray(value);
    };
    const auto namedRows = [&] {
        row("", "name", "\"\"");
        row("Name=house_1", "name", "\"house_1\"");
        row("", "aliases", "");
        row("Alias=A\nAlias=b", "aliases", "[\"A\",\"b\"]");
    };
    const auto labelRows = [&] {
        row("", "labels", "");
        row("Label=", "labels", "");
        row("Label=House; \"red\"", "labels", "[{\"text\":\"House; \\\"red\\\"\"}]");
        row("Label=House|Maison", "labels", "[{\"text\":\"House\"},{\"text\":\"Maison\"}]");
        row("", "note", "");
        row("Note=one", "note", "\"one\"");
        row("Note=one\\r\\n\nNote=two\nNote=three  ", "note", "\"one\\ntwo three\"");
        row("Note=\nNote=\\r\\n", "note", "");
        row("Note=~a\nNote=~b", "note", "\" a  b\"");
    };
    const auto occurrenceLabelRows = [&] {
        row("", "occurrenceLabels", "");
        row("OccurrenceLabel=1,Monday|Lundi\nOccurenceLabel=2:Tuesday", "occurrenceLabels",
            "[{\"labels\":[{\"text\":\"Monday\"},{\"text\":\"Lundi\"}],\"occurrence\":1},"
            "{\"labels\":[{\"text\":\"Tuesday\"}],\"occurrence\":2}]");
        row("OccurrenceLabel=3,", "occurrenceLabels", "[{\"labels\":[],\"occurrence\":3}]");
    };

    section = "dictionary";
    row("", "name", "");
    row("Name=house_1", "name", "\"house_1\"");
    row("Alias=A\nAlias=b", "aliases", "[\"A\",\"b\"]");
    labelRows();
    row("", "formatVersion", "");
    row("Version=CSPro 7.7", "formatVersion", "\"7.7\"");
    row("Version=CSPro  7.7.1 beta", "formatVersion", "\"7.7.1 beta\"");
    row("Version=7.7", "formatVersion", "\"7.7\"");
    row("Version=Other 1", "formatVersion", "\"Other 1\"");
    row("", "recordType", "");
    row("RecordTypeStart=3\nRecordTypeLen=2", "recordType", "{\"length\":2,\"start\":3}");
    row("RecordTypeStart=3", "recordType", "{\"length\":0,\"start\":3}");
    row("RecordTypeLen=2", "recordType", "{\"length\":2,\"start\":0}");
    row("RecordTypeStart=0\nRecordTypeLen=0", "recordType", "");
    row("", "relativePositions", "");
    row("Positions=Relative", "relativePositions", "true");
    row("positions=relative", "relativePositions", "true");
    row("Positions=Absolute", "relativePositions", "false");
    row("Positions=Other", "relativePositions", "false");
    row("", "zeroFill", "");
    row("ZeroFill=Yes", "zeroFill", "true");
    row("ZeroFill=No", "zeroFill", "");
    row("", "decimalMark", "");
    row("DecimalChar=y", "decimalMark", "true");
    row("DecimalChar=No", "decimalMark", "");
    row("", "security", "");
    row("SecurityOptions=0A1B", "security", "{\"settings\":\"0A1B\"}");
    row("SecurityOptions=", "security", "{\"settings\":\"\"}");
    row("", "valueSetImages", "");
    row("ValueSetImages=No", "valueSetImages", "\"No\"");
    row("", "editable", "");
    row("[NoEdit]", "editable", "false");
    row("", "format", "\"cspro-text\"");
    row("", "encoding", "\"utf-8\"");
    row("", "languages", "");
    row("", "levels", "[]");

    section = "languages";
    row("EN=English\nfr=Français", "languages",
        "[{\"label\":\"English\",\"name\":\"EN\"},{\"label\":\"Français\",\"name\":\"fr\"}]");
    row("EN=a=b", "languages", "[{\"label\":\"a=b\",\"name\":\"EN\"}]");
    row("EN=\nEN=again", "languages", "[{\"label\":\"\",\"name\":\"EN\"},{\"label\":\"again\",\"name\":\"EN\"}]");
    row("EN", "languages", "[{\"label\":\"\",\"name\":\"EN\"}]");
    row("", "languages", "");

    section = "level";
    namedRows();
    labelRows();

    section = "record";
    namedRows();
    labelRows();
    occurrenceLabelRows();
    row("", "recordType", "");
    row("RecordTypeValue='P'", "recordType", "\"P\"");
    row("RecordTypeValue=' P '", "recordType", "\" P \"");
    row("RecordTypeValue=\"it's\"", "recordType", "\"it's\"");
    row("RecordTypeValue=P Q", "recordType", "\"P\"");
    row("RecordTypeValue=''", "recordType", "");
    row("", "required", "");
    row("Required=Yes", "required", "");
    row("Required=No", "required", "false");
    row("Required=", "required", "false");
    row("", "maximum", "");
    row("MaxRecords=1", "maximum", "");
    row("MaxRecords=9999", "maximum", "9999");
    row("MaxRecords=20 records", "maximum", "20");
    row("MaxRecords=many", "maximum", "0");
    row("", "length", "");
    row("RecordLen=117", "length", "117");
    row("RecordLen=0", "length", "0");

    section = "item";
    namedRows();
    labelRows();
    occurrenceLabelRows();
    row("", "start", "");
    row("Start=12", "start", "12");
    row("Start=x", "start", "");
    row("", "length", "0");
    row("Len=5", "length", "5");
    row("Len=99999999999", "length", "2147483647");
    row("", "type", "\"numeric\"");
    row("DataType=Numeric", "type", "\"numeric\"");
    row("DataType=ALPHA", "type", "\"alpha\"");
    row("DataType=Image", "type", "\"image\"");
    row("DataType=Big Number", "type", "\"big number\"");
    row("", "occurrences", "");
    row("Occurrences=1", "occurrences", "");
    row("Occurrences=3", "occurrences", "3");
    row("Occurrences=none", "occurrences", "0");
    row("", "decimals", "");
    row("Decimal=2", "decimals", "2");
    row("Decimal=0", "decimals", "");
    row("DataType=Alpha\nDecimal=2", "decimals", "2");
    row("", "decimalMark", "");
    row("Decimal=2", "decimalMark", "");
    row("Decimal=2\nDecimalChar=Yes", "decimalMark", "true");
    row("DecimalChar=Yes", "decimalMark", "true");
    row("DecimalChar=Yes\nDataType=Alpha", "decimalMark", "");
    row("", "zeroFill", "");
    row("ZeroFill=Yes", "zeroFill", "true");
    row("ZeroFill=Yes\nDataType=Alpha", "zeroFill", "");
    row("ZeroFill=Yes\nDataType=Other", "zeroFill", "");
    row("", "subitemOf", "");
    row("ItemType=SubItem", "subitemOf", "");
    row("", "capture", "");
    row("CaptureType=radiobutton", "capture", "{\"type\":\"radioButton\"}");
    row("CaptureType=Unspecified", "capture", "");
    row("CaptureType=Magic", "capture", "");
    row("CaptureType=Date", "capture", "{\"type\":\"date\"}");
    row("CaptureType=Date\nCaptureDateFormat=ddmmYYYY", "capture", "{\"dateFormat\":\"DDMMYYYY\",\"type\":\"date\"}");
    row("CaptureDateFormat=DDMM\nCaptureType=Date", "capture", "{\"type\":\"date\"}");
    row("CaptureType=Date\nCaptureDateFormat=DDMM\nCaptureType=?\nCaptureType=Date", "capture",
        "{\"dateFormat\":\"DDMM\",\"type\":\"date\"}");
    row("CaptureType=TextBox\nCaptureDateFormat=DDMM", "capture", "{\"type\":\"textBox\"}");
    row("", "valueSets", "");

    section = "set";
    namedRows();
    labelRows();
    row("", "link", "");
    row("Link=0815", "link", "\"0815\"");
    row("", "values", "[]");
    row("Value=1:2 5;Some\nValue='a'", "values",
        "[{\"labels\":[{\"text\":\"Some\"}],\"ranges\":[{\"from\":\"1\",\"to\":\"2\"},{\"from\":\"5\"}]},"
        "{\"ranges\":[{\"from\":\"a\"}]}]");
    row("Value=", "values", "[{\"ranges\":[]}]");
    row("Value", "values", "[{\"ranges\":[]}]");
    row("Name=S\nValue=1\nName=MISSING", "name", "\"S\"");
    row("Value=1\nName=S", "name", "\"\"");
    row("Note=of the set\nValue=1\nNote=of the value", "note", "\"of the set\"");

    section = "value";
    row("Value=1;One", "labels", "[{\"text\":\"One\"}]");
    row("Value=1;One|Un", "labels", "[{\"text\":\"One\"},{\"text\":\"Un\"}]");
    row("Value=1;", "labels", "");
    row("Value=1", "labels", "");
    row("Value=1\nLabel=One", "labels", "");
    row("Value=1;One\nLabel=Two", "labels", "[{\"text\":\"One\"}]");
    row("Value=1", "note", "");
    row("Value=1\nNote=a\nNote=b", "note", "\"a b\"");
    row("Value=1", "image", "");
    row("Value=1\nImage=.\\a\\b.jpg", "image", "\".\\\\a\\\\b.jpg\"");
    row("Value=1", "textColor", "");
    row("Value=1\nTextColor=rgb(1,2,3)", "textColor", "\"rgb(1,2,3)\"");
    row("Value=1", "special", "");
    row("Value=9\nName=MISSING,Special", "special", "\"missing\"");
    row("Value=8\nName=refused,Special", "special", "\"refused\"");
    row("Value='  '\nName=NotAppl", "special", "\"notApplicable\"");
    row("Value='  '\nName='DEFAULT',anything", "special", "\"default\"");
    row("Value=9\nName=OTHER,Special", "special", "");
    row("Value='  '\nName=NOTAPPL,Special", "ranges", "[{\"from\":\"  \"}]");
    row("Value=0\nName=NOTAPPL,Special", "ranges", "[{\"from\":\"0\"}]");

    section = "relation";
    namedRows();
    row("", "primary", "\"\"");
    row("Primary=R", "primary", "\"R\"");
    row("", "links", "[]");
    row("Secondary=A", "links", "[{\"secondary\":\"A\"}]");
    row("PrimaryLink=X\nSecondary=A\nSecondaryLink=Y", "links",
        "[{\"primaryLink\":\"X\",\"secondary\":\"A\",\"secondaryLink\":\"Y\"}]");
    row("PrimaryLink=(occurrence)\nSecondary=A\nSecondaryLink=(occurrence)", "links", "[{\"secondary\":\"A\"}]");
    row("Secondary=A\nSecondary=B", "links", "[{\"secondary\":\"A\"},{\"secondary\":\"B\"}]");
    row("Secondary=A\nPrimaryLink=X\nSecondary=B", "links",
        "[{\"secondary\":\"A\"},{\"primaryLink\":\"X\",\"secondary\":\"B\"}]");
    row("Secondary=A\nPrimaryLink=X", "links", "[{\"secondary\":\"A\"},{\"primaryLink\":\"X\",\"secondary\":\"\"}]");
    row("SecondaryLink=Y\nSecondary=A", "links", "[{\"secondary\":\"A\",\"secondaryLink\":\"Y\"}]");
    row("Secondary=\nSecondary=B", "links", "[{\"secondary\":\"\"},{\"secondary\":\"B\"}]");
    row("Label=ignored", "labels", "");
}

void CSProTextReaderTest::everyKeyIsReadAndHasItsDefault()
{
    QFETCH(QByteArray, section);
    QFETCH(QByteArray, lines);
    QFETCH(QString, member);
    const QByteArray text = dictionaryWith(section, lines);
    QTEST(memberOf(elementOf(section, jsonOf(layoutOf(text))), member), "value");
    // Keys are recognised in any case.
    const QByteArray key = lines.left(lines.indexOf('='));
    if (!key.isEmpty() && !lines.startsWith('[') && section != "languages")
        QTEST(memberOf(
                  elementOf(section, jsonOf(layoutOf(dictionaryWith(section, key.toUpper() + lines.mid(key.size()))))),
                  member),
              "value");
}

void CSProTextReaderTest::everySectionHasNoProblemOfItsOwn()
{
    const Layout layout = layoutOf("[NoEdit]\n" + dictionaryPart + "[Languages]\nEN=English\n" + levelPart + idsPart
                                   + recordPart + itemPart + setPart + valuePart + relationPart);
    QCOMPARE(textsOf(layout.problems), QStringList());
    QCOMPARE(textsOf(layout.extras), QStringList());
}

void CSProTextReaderTest::aRepeatedKeyCountsFirstOrLast_data()
{
    QTest::addColumn<QByteArray>("section");
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("extra");
    QByteArray section;
    const auto row = [&](const char *lines, const char *member, const char *value, const char *extra) {
        QTest::newRow((section + ": " + QByteArray(lines).replace('\n', "; ")).constData())
            << section << QByteArray(lines) + "\n"
            << member << QByteArray(value) << extra;
    };
    const auto first = [&](const char *key, const char *member) {
        row((QByteArray(key) + "=5\n" + QByteArray(key) + "=6").constData(), member,
            QByteArray(member) == "labels" ? "[{\"text\":\"5\"}]" : "\"5\"",
            ("repeated " + QByteArray(key) + "=6").constData());
    };
    section = "dictionary";
    first("Label", "labels");
    first("Name", "name");
    first("ValueSetImages", "valueSetImages");
    row("Positions=Relative\nPositions=Absolute", "relativePositions", "true", "repeated Positions=Absolute");
    row("SecurityOptions=1\nSecurityOptions=2", "security", "{\"settings\":\"1\"}", "repeated SecurityOptions=2");
    row("Version=CSPro 5.0\nVersion=CSPro 6.0", "formatVersion", "\"6.0\"", "repeated Version=CSPro 5.0");
    row("RecordTypeStart=1\nRecordTypeStart=2", "recordType", "{\"length\":0,\"start\":2}",
        "repeated RecordTypeStart=1");
    row("RecordTypeLen=1\nRecordTypeLen=2", "recordType", "{\"length\":2,\"start\":0}", "repeated RecordTypeLen=1");
    row("ZeroFill=No\nZeroFill=Yes", "zeroFill", "true", "repeated ZeroFill=No");
    row("DecimalChar=No\nDecimalChar=Yes", "decimalMark", "true", "repeated DecimalChar=No");
    row("NAME=5\nname=6", "name", "\"5\"", "repeated name=6");
    section = "level";
    first("Label", "labels");
    first("Name", "name");
    section = "record";
    first("Label", "labels");
    first("Name", "name");
    first("RecordTypeValue", "recordType");
    row("RecordLen=5\nRecordLen=6", "length", "5", "repeated RecordLen=6");
    row("Required=Yes\nRequired=No", "required", "false", "repeated Required=Yes");
    row("MaxRecords=5\nMaxRecords=6", "maximum", "6", "repeated MaxRecords=5");
    section = "item";
    first("Label", "labels");
    first("Name", "name");
    row("Start=5\nStart=6", "start", "5", "repeated Start=6");
    row("Len=5\nLen=6", "length", "5", "repeated Len=6");
    row("Decimal=5\nDecimal=6", "decimals", "5", "repeated Decimal=6");
    row("DataType=Numeric\nDataType=Alpha", "type", "\"alpha\"", "repeated DataType=Numeric");
    row("Occurrences=5\nOccurrences=6", "occurrences", "6", "repeated Occurrences=5");
    row("DecimalChar=No\nDecimalChar=Yes", "decimalMark", "true", "repeated DecimalChar=No");
    row("ZeroFill=Yes\nZeroFill=No", "zeroFill", "", "repeated ZeroFill=Yes");
    row("CaptureType=Photo\nCaptureType=Audio", "capture", "{\"type\":\"audio\"}", "repeated CaptureType=Photo");
    row("CaptureType=Photo\nCaptureType=Unspecified", "capture", "", "repeated CaptureType=Photo");
    row("CaptureType=Date\nCaptureDateFormat=DDMM\nCaptureDateFormat=MMDD", "capture",
        "{\"dateFormat\":\"MMDD\",\"type\":\"date\"}", "repeated CaptureDateFormat=DDMM");
    row("CaptureType=Date\nCaptureDateFormat=DDMM\nCaptureType=Photo", "capture",
        "{\"dateFormat\":\"DDMM\",\"type\":\"photo\"}", "repeated CaptureType=Date");
    row("ItemType=Item\nItemType=SubItem", "type", "\"numeric\"", "repeated ItemType=SubItem");
    section = "set";
    first("Label", "labels");
    first("Name", "name");
    first("Link", "link");
    section = "value";
    row("Value=1\nImage=5\nImage=6", "image", "\"5\"", "repeated Image=6");
    row("Value=1\nTextColor=5\nTextColor=6", "textColor", "\"5\"", "repeated TextColor=6");
    row("Value=1\nName=MISSING\nName=REFUSED", "special", "\"missing\"", "repeated Name=REFUSED");
    row("Value=1;5\nLabel=6", "labels", "[{\"text\":\"5\"}]", "repeated Label=6");
    section = "relation";
    first("Name", "name");
    first("Primary", "primary");
    row("PrimaryLink=5\nPrimaryLink=6\nSecondary=A", "links", "[{\"primaryLink\":\"5\",\"secondary\":\"A\"}]",
        "repeated PrimaryLink=6");
    row("Secondary=A\nSecondaryLink=5\nSecondaryLink=6", "links", "[{\"secondary\":\"A\",\"secondaryLink\":\"5\"}]",
        "repeated SecondaryLink=6");
}

void CSProTextReaderTest::aRepeatedKeyCountsFirstOrLast()
{
    QFETCH(QByteArray, section);
    QFETCH(QByteArray, lines);
    QFETCH(QString, member);
    QFETCH(QString, extra);
    const Layout layout = layoutOf(dictionaryWith(section, lines));
    QTEST(memberOf(elementOf(section, jsonOf(layout)), member), "value");
    QCOMPARE(layout.extras.size(), 1);
    QCOMPARE(layout.extras.constFirst().key + '=' + layout.extras.constFirst().value, extra);
    const auto isOfTheLine = [&](const Problem &problem) {
        return problem.id == QLatin1String("repeated-key") && problem.severity == Severity::Info
            && problem.line == layout.extras.constFirst().line && problem.path == layout.extras.constFirst().path;
    };
    QCOMPARE(std::count_if(layout.problems.begin(), layout.problems.end(), isOfTheLine), 1);
}

void CSProTextReaderTest::sectionsBelongToTheLastFittingOne_data()
{
    QTest::addColumn<QByteArray>("sections");
    QTest::addColumn<QString>("outline");
    // Sections as words, with the name after a colon if they have one.
    const auto row = [](const char *name, const char *sections, const char *outline) {
        QTest::newRow(name) << QByteArray(sections) << outline;
    };
    row("usual", "Level:L IdItems Item:A Item:B Record:R Item:C ValueSet:V ValueSet:W Item:D Record:S Item:E",
        "L(A B) R(C+V+W D) S(E)");
    row("three levels", "Level:L IdItems Item:A Level:M IdItems Item:B Record:R Item:C Level:N IdItems Item:D",
        "L(A); M(B) R(C); N(D)");
    row("items after a level are ids", "Level:L Item:A Record:R Item:B Level:M Item:C", "L(A) R(B); M(C)");
    row("ids after a record", "Level:L Record:R Item:A IdItems Item:B", "L(B) R(A)");
    row("ids in two parts", "Level:L IdItems Item:A IdItems Item:B", "L(A B)");
    row("value sets of an id", "Level:L IdItems Item:A ValueSet:V Record:R", "L(A+V) R()");
    row("value set after a record", "Level:L IdItems Item:A Record:R ValueSet:V", "L(A+V) R()");
    row("value set after a level", "Level:L IdItems Item:A Level:M ValueSet:V", "L(A+V); M()");
    row("value set without an item", "Level:L ValueSet:V IdItems Item:A", "L(A)");
    row("record without a level", "Record:R Item:A", "() R(A)");
    row("item without a level", "Item:A Level:L Item:B", "(A); L(B)");
    row("ids without a level", "IdItems Item:A", "(A)");
    row("after an unknown section", "Level:L IdItems Foo:F Item:A Foo:G ValueSet:V", "L(A+V)");
    row("after a relation", "Level:L Relation:T IdItems Item:A Relation:U ValueSet:V Record:R Relation:W Item:B",
        "L(A+V) R(B)");
    row("subitems", "Level:L IdItems Record:R Item:A SubItem:B SubItem:C Item:D SubItem:E", "L() R(A A.B A.C D D.E)");
    row("subitem after a value set", "Level:L Record:R Item:A ValueSet:V SubItem:B ValueSet:W", "L() R(A+V A.B+W)");
    row("subitem of no item", "Level:L Item:X Record:R SubItem:A Item:B Record:S SubItem:C", "L(X) R(.A B) S(.C)");
    row("subitem of an id after a record", "Level:L IdItems Item:X Record:R Item:A IdItems SubItem:Y Level:M SubItem:Z",
        "L(X .Y) R(A); M(.Z)");
    row("subitem of an id", "Level:L Item:X SubItem:Y", "L(X X.Y)");
    row("names in another case", "LEVEL:L iditems item:A RECORD:R valueset:V", "L(A+V) R()");
}

void CSProTextReaderTest::sectionsBelongToTheLastFittingOne()
{
    QFETCH(QByteArray, sections);
    QByteArray text = "[Dictionary]\n";
    for (const QByteArray &section : sections.split(' ')) {
        const QByteArrayList parts = section.split(':');
        const bool isSubitem = parts.first() == "SubItem";
        text += '[' + (isSubitem ? QByteArray("Item") : parts.first()) + "]\n";
        text += parts.size() > 1 ? "Name=" + parts.last() + '\n' : QByteArray();
        text += isSubitem ? "ItemType=SubItem\n" : "";
    }
    QTEST(outlineOf(layoutOf(text)), "outline");
}

void CSProTextReaderTest::everyFaultIsReportedWithItsPlace_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("problems");
    const auto row = [](const char *name, const QByteArray &text, const QStringList &problems) {
        QTest::newRow(name) << text << problems;
    };
    const auto in = dictionaryWith;
    const QByteArray item = "Name=I\nStart=2\nLen=3\n"; // its section begins on line 13
    row("no level", dictionaryPart, { "warning no-level 0 " });
    row("dictionary without Name", "[Dictionary]\nPositions=Relative\n" + levelPart + idsPart,
        { "warning dictionary-without-name 1 " });
    row("no Positions", "[Dictionary]\nName=D\n" + levelPart + idsPart, { "warning no-positions 1 " });
    row("level without Name", in("level", "Label=a\n"), { "warning level-without-name 4 " });
    row("level without ids", dictionaryPart + levelPart, { "warning level-without-ids 4 L" });
    row("record without Name", in("record", ""), { "warning record-without-name 11 L/" });
    row("item without Name", in("item", "Start=2\nLen=3\n"), { "warning item-without-name 13 L/R/" });
    row("item without Start", in("item", "Name=I\nLen=3\n"), { "warning item-without-start 13 L/R/I" });
    row("item with Start 0", in("item", "Name=I\nStart=0\nLen=3\n"), { "warning item-without-start 13 L/R/I" });
    row("item without Len", in("item", "Name=I\nStart=2\n"), { "warning item-without-length 13 L/R/I" });
    row("item with Len 0", in("item", "Name=I\nStart=2\nLen=0\n"), { "warning item-without-length 13 L/R/I" });
    row("id without Len", dictionaryPart + levelPart + "[IdItems]\n[Item]\nName=I\nStart=1\n",
        { "warning item-without-length 7 L/(ids)/I" });
    row("unknown type", in("item", item + "DataType=Big\n"), { "warning unknown-type 17 L/R/I" });
    row("subitem without an item", in("item", item + "ItemType=SubItem\n"),
        { "warning subitem-without-item 13 L/R/I" });
    row("unknown ItemType", in("item", item + "ItemType=Sub\n"), { "warning unknown-word 17 L/R/I" });
    row("unknown CaptureType", in("item", item + "CaptureType=Sub\n"), { "warning unknown-word 17 L/R/I" });
    row("unknown Positions", "[Dictionary]\nName=D\nPositions=Other\n" + levelPart + idsPart,
        { "warning unknown-word 3 " });
    row("date format without a date", in("item", item + "CaptureDateFormat=DDMM\n"),
        { "warning unknown-key 17 L/R/I" });
    row("text in a number", in("item", "Name=I\nStart=2\nLen=3 or 4\n"), { "warning bad-number 16 L/R/I" });
    row("no number", in("item", "Name=I\nStart=2\nLen=\n"),
        { "warning item-without-length 13 L/R/I", "warning bad-number 16 L/R/I" });
    row("neither Yes nor No", in("item", item + "ZeroFill=1\n"), { "warning neither-yes-nor-no 17 L/R/I" });
    row("occurrence above the maximum", in("item", item + "Occurrences=2\nOccurrenceLabel=3,a\n"),
        { "warning label-without-occurrence 18 L/R/I" });
    row("label of the only occurrence", in("item", item + "OccurrenceLabel=1,a\n"),
        { "warning label-without-occurrence 17 L/R/I" });
    row("occurrence before the maximum", in("item", item + "OccurrenceLabel=2,a\nOccurrences=2\n"), {});
    row("occurrence of a record", in("record", "Name=R\nMaxRecords=2\nOccurrenceLabel=2,a\nOccurrenceLabel=3,b\n"),
        { "warning label-without-occurrence 15 L/R" });
    row("no occurrence", in("item", item + "OccurrenceLabel=0,a\n"), { "warning bad-occurrence 17 L/R/I" });
    row("value set without Name", in("set", "Value=1\n"), { "warning value-set-without-name 17 L/R/I/" });
    row("value without a code", in("value", "Value=;a\n"), { "info value-without-code 19 L/R/I/S/#1" });
    row("code without a number", in("value", "Value=1\nValue=a\n"), { "info code-without-number 20 L/R/I/S/#2" });
    row("blank code", in("value", "Value='   '\n"), {});
    row("unknown special word", in("value", "Value=1\nName=OTHER\n"), { "warning unknown-special 20 L/R/I/S/#1" });
    row("blank that is not applicable", in("value", "Value='n/a'\nName=NOTAPPL\n"), {});
    row("text that is missing", in("value", "Value='n/a'\nName=MISSING\n"),
        { "info code-without-number 19 L/R/I/S/#1" });
    row("text of an alpha item", in("item", item + "DataType=Alpha\n[ValueSet]\nName=S\nValue='a'\n"), {});
    row("key without an equals sign", in("value", "Value=1\nNote\n"), { "warning no-equals-sign 20 L/R/I/S/#1" });
    row("language without an equals sign", in("languages", "EN\n"), { "warning no-equals-sign 5 " });
    row("unknown key in a dictionary", "[Dictionary]\nFoo=1\nName=D\nPositions=Relative\n" + levelPart + idsPart,
        { "warning unknown-key 2 " });
    row("unknown key in a level", in("level", "Foo=1\nName=L\n"), { "warning unknown-key 5 L" });
    row("key in the ids", dictionaryPart + levelPart + "[IdItems]\nFoo=1\n[Item]\nName=I\nStart=1\nLen=1\n",
        { "warning unknown-key 7 L/(ids)" });
    row("unknown key in a record", in("record", "Foo=1\nName=R\n"), { "warning unknown-key 12 L/R" });
    row("unknown key in an item", in("item", "Foo=1\n" + item), { "warning unknown-key 14 L/R/I" });
    row("unknown key in a value set", in("set", "Foo=1\nName=S\n"), { "warning unknown-key 18 L/R/I/S" });
    row("unknown key in a value", in("value", "Value=1\nFoo=1\n"), { "warning unknown-key 20 L/R/I/S/#1" });
    row("link after a value", in("value", "Value=1\nLink=1\n"), { "warning unknown-key 20 L/R/I/S/#1" });
    row("unknown key in a relation", in("relation", "Foo=1\nName=A\nPrimary=R\nSecondary=R\n"),
        { "warning unknown-key 14 relations/A" });
    row("note of a relation", in("relation", "Note=1\nName=A\nPrimary=R\nSecondary=R\n"),
        { "warning unknown-key 14 relations/A" });
    row("label of a relation", in("relation", "Label=1\nName=A\nPrimary=R\nSecondary=R\n"),
        { "info relation-label 14 relations/A" });
    row("relation without Name", in("relation", "Primary=R\nSecondary=R\n"),
        { "warning relation-without-name 13 relations/" });
    row("relation without Primary", in("relation", "Name=A\nSecondary=R\n"),
        { "warning relation-without-primary 13 relations/A" });
    row("relation without Secondary", in("relation", "Name=A\nPrimary=R\n"),
        { "warning relation-without-secondary 13 relations/A" });
    row("key in [NoEdit]", "[NoEdit]\nFoo=1\n" + dictionaryPart + levelPart + idsPart, { "warning unknown-key 2 " });
    row("unknown section", dictionaryPart + levelPart + idsPart + "[Foo]\nBar=1\n", { "warning unknown-section 11 " });
    row("text after the bracket", dictionaryPart + levelPart + idsPart + "[Item] x\n",
        { "warning unknown-section 11 " });
    row("text after the section", dictionaryPart + levelPart + idsPart + "[Record]=x\nName=R\n",
        { "warning text-after-section 11 L/R" });
    row("value set without an item", dictionaryPart + "[ValueSet]\nName=S\n" + levelPart + idsPart,
        { "warning misplaced-section 4 " });
    row("record before the level", dictionaryPart + "[Record]\nName=R\n",
        { "warning no-level-yet 4 /R", "warning level-without-ids 4 " });
    row("second [Languages]", in("languages", "EN=a\n[Languages]\nFR=b\n"), { "warning misplaced-section 6 " });
    row("[Languages] after a level", dictionaryPart + levelPart + idsPart + "[Languages]\nEN=a\n",
        { "warning languages-after-level 11 " });
    row("[Dictionary] after a level", levelPart + idsPart + dictionaryPart, { "warning dictionary-after-level 8 " });
    row("second [Dictionary]", dictionaryPart + levelPart + idsPart + "[Dictionary]\nName=E\n",
        { "warning repeated-section 11 ", "info repeated-key 12 " });
    row("label with more parts than languages", in("level", "Name=L\nLabel=a|b\n"),
        { "info label-without-language 6 L" });
    row("dictionary's label with more parts than languages",
        "[Dictionary]\nName=D\nPositions=Relative\nLabel=a|b\n[Languages]\nEN=x\n" + levelPart + idsPart,
        { "info label-without-language 4 " });
    row("dictionary's label with as many parts as languages",
        "[Dictionary]\nName=D\nPositions=Relative\nLabel=a|b\n[Languages]\nEN=x\nFR=y\n" + levelPart + idsPart, {});
    row("carriage returns without line feeds",
        QByteArray(dictionaryPart + "Foo=1\n" + levelPart + idsPart).replace('\n', '\r'),
        { "info carriage-returns 1 ", "warning unknown-key 4 " });
    row("bytes that are no text", "\xEF\xBB\xBF" + dictionaryPart + "Label=\xFF\n" + levelPart + idsPart,
        { "warning bad-bytes 4 " });
    row("merge conflict", dictionaryPart + "<<<<<<< HEAD\n=======\n>>>>>>> a\n" + levelPart + idsPart,
        { "warning unknown-key 4 ", "warning unknown-key 5 ", "warning unknown-key 6 " });
    row("what only a check of the whole finds is none here",
        dictionaryPart + levelPart + idsPart + "[Record]\nName=R\n[Record]\nName=R\n[Item]\nName=A\nStart=1\nLen=9\n"
            + "[Item]\nName=A\nStart=1\nLen=9\n[Item]\nName=B\nItemType=SubItem\nStart=50\nLen=99\n[ValueSet]\nName=V\n"
            + "Value=9:1\nValue=123456789012\n",
        {});
}

void CSProTextReaderTest::everyFaultIsReportedWithItsPlace()
{
    QFETCH(QByteArray, text);
    const Layout layout = layoutOf(text);
    QVERIFY(layout.isRead());
    QTEST(textsOf(layout.problems), "problems");
    for (const Problem &problem : layout.problems)
        QVERIFY2(!problem.message.isEmpty() && !problem.message.contains('\n'), qPrintable(problem.message));
}

void CSProTextReaderTest::whatHasNoMemberIsKept_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("extras");
    const auto row = [](const char *name, const QByteArray &text, const QStringList &extras) {
        QTest::newRow(name) << text << extras;
    };
    const auto in = dictionaryWith;
    row("unknown keys", in("item", "Foo=1\nName=I\nfoo=a=b\nBar\n"),
        { "L/R/I Foo=1 14", "L/R/I foo=a=b 16", "L/R/I Bar= 17" });
    row("keys of different values", in("value", "Value=1\nFoo=1\nValue=2\nFoo=2\n"),
        { "L/R/I/S/#1 Foo=1 20", "L/R/I/S/#2 Foo=2 22" });
    row("unknown section", dictionaryPart + "[Foo]\nName=a\nName=b\n[Item] x\n" + levelPart,
        { " [Foo]= 4", " Name=a 5", " Name=b 6", " [Item] x= 7" });
    row("section with a value", dictionaryPart + "[Foo]=bar\n", { " [Foo]=bar 4" });
    row("misplaced section", dictionaryPart + "[ValueSet]\nName=S\nValue=1;a\n",
        { " [ValueSet]= 4", " Name=S 5", " Value=1;a 6" });
    row("second [Languages]", in("languages", "EN=a\n[Languages]\nFR=b\n"), { " [Languages]= 6", " FR=b 7" });
    row("second [Dictionary]", dictionaryPart + "[Level]\n[Dictionary]\nName=E\nPositions=Absolute\nZeroFill=Yes\n",
        { " repeated Name=E 6", " repeated Positions=Absolute 7" });
    row("unknown special word", in("value", "Value=1\nName=OTHER, Special\n"), { "L/R/I/S/#1 Name=OTHER, Special 20" });
    row("special word after an unknown one", in("value", "Value=1\nName=OTHER\nName=MISSING\n"),
        { "L/R/I/S/#1 Name=OTHER 20", "L/R/I/S/#1 repeated Name=MISSING 21" });
    row("label after a value without one", in("value", "Value=1\nLabel=a\n"), { "L/R/I/S/#1 repeated Label=a 20" });
    row("date format after another capture",
        in("item", "Name=I\nCaptureType=Date\nCaptureDateFormat=DDMM\nCaptureType=Photo\nCaptureDateFormat=MMDD\n"),
        { "L/R/I repeated CaptureType=Date 15", "L/R/I CaptureDateFormat=MMDD 18" });
    row("date format without a capture in the end",
        in("item", "Name=I\nCaptureType=Date\nCaptureDateFormat=DDMM\nCaptureType=Unspecified\n"),
        { "L/R/I repeated CaptureType=Date 15", "L/R/I CaptureDateFormat=DDMM 16" });
    row("unknown capture", in("item", "Name=I\nCaptureType=Foo\n"), { "L/R/I CaptureType=Foo 15" });
    row("no occurrence", in("record", "Name=R\nOccurrenceLabel=a,b\nOccurrenceLabel=1\n"),
        { "L/R OccurrenceLabel=a,b 13", "L/R OccurrenceLabel=1 14" });
    row("label of a relation", in("relation", "Name=A\nLabel=b\n"), { "relations/A Label=b 15" });
    row("key in the ids", dictionaryPart + levelPart + "[IdItems]\nFoo=1\n", { "L/(ids) Foo=1 7" });
}

void CSProTextReaderTest::whatHasNoMemberIsKept()
{
    QFETCH(QByteArray, text);
    QTEST(textsOf(layoutOf(text).extras), "extras");
}

void CSProTextReaderTest::languagesAreThoseOfTheWholeFile()
{
    const QByteArray languages = "[Languages]\nEN=English\nFR=Français\n";
    const QByteArray labels = dictionaryPart + "Label=a|b|c\n";
    const QByteArray elements = levelPart + "Label=a|b|c\n" + idsPart + "Label=a\n" + recordPart
        + "Label=|b\nMaxRecords=2\nOccurrenceLabel=1,a|b\n" + itemPart
        + "Label=a\nOccurrences=2\nOccurrenceLabel=2,c|d\n" + setPart + "Label=a||\nValue=1;a|b\nValue=2\n";
    Layout before = layoutOf(labels + languages + elements);
    Layout behind = layoutOf(labels + elements + languages);
    QCOMPARE(before.labels, (Labels{ { { "EN", "a" }, { "FR", "b" }, { "", "c" } } }));
    QCOMPARE(before.levels.at(0).labels, before.labels);
    QCOMPARE(before.levels.at(0).ids.at(0).labels, (Labels{ { { "EN", "a" } } }));
    const Item &item = before.levels.at(0).records.at(0).items.at(0);
    QCOMPARE(item.occurrenceLabels.at(0).labels, (Labels{ { { "EN", "c" }, { "FR", "d" } } }));
    QCOMPARE(item.valueSets.at(0).labels, (Labels{ { { "EN", "a" }, { "FR", "" }, { "", "" } } }));
    QVERIFY(item.valueSets.at(0).values.at(1).labels.isEmpty());
    behind.problems.clear();
    before.problems.clear();
    QVERIFY(before == behind);
}

void CSProTextReaderTest::equalLabelsAreInMemoryOnce()
{
    const Layout layout = layoutOf(setBegin + "Value=1;Yes\nValue=2;No\n[ValueSet]\nName=T\nValue=1;Yes\n");
    const QVector<ValueSet> &sets = layout.levels.at(0).records.at(0).items.at(0).valueSets;
    const Value &first = sets.at(0).values.at(0);
    const Value &second = sets.at(1).values.at(0);
    QVERIFY(first.labels.parts.constData() == second.labels.parts.constData());
    QVERIFY(first.ranges.constData() == second.ranges.constData());
}

void CSProTextReaderTest::problemsAreInTheOrderOfTheFile()
{
    const Layout layout = layoutOf("[Dictionary]\nDecimalChar=No\nFoo=1\nDecimalChar=No\n[Level]\nBar=2\nZeroFill=No\n["
                                   "Record]\nRequired=?\nRequired=No\n"
                                   "Required=No\n[Foo]\n[Item]\nLen=?\n");
    QVERIFY(layout.problems.size() > 8);
    for (int index = 1; index < layout.problems.size(); ++index)
        QVERIFY(layout.problems.at(index - 1).line <= layout.problems.at(index).line);
    for (int index = 1; index < layout.extras.size(); ++index)
        QVERIFY(layout.extras.at(index - 1).line < layout.extras.at(index).line);
}

void CSProTextReaderTest::aFileWithoutDictionarySectionIsNoLayout_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("another section") << QByteArray("[General]\nName=1\n");
    QTest::newRow("bracket only") << QByteArray("[");
    QTest::newRow("item first") << QByteArray("[Item]\nName=1\nFoo=1\n[Level]\n");
    QTest::newRow("[NoEdit] alone") << QByteArray("[NoEdit]\n");
    QTest::newRow("text after [Dictionary]") << QByteArray("[Dictionary] x\n[Level]\n");
    QTest::newRow("in UTF-16") << QByteArray("\xFF\xFE[\0a\0]\0", 8);
}

void CSProTextReaderTest::aFileWithoutDictionarySectionIsNoLayout()
{
    QFETCH(QByteArray, text);
    const Layout layout = layoutOf(text);
    QVERIFY(!layout.isRead());
    QCOMPARE(textsOf(layout.problems), QStringList{ "error no-dictionary 1 " });
    QVERIFY(layout.levels.isEmpty());
    QVERIFY(layout.extras.isEmpty());
}

void CSProTextReaderTest::aFileThatBeginsWithABracketIsRead_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("isRead");
    QTest::newRow("at once") << QByteArray("[Dictionary]") << true;
    QTest::newRow("after white space") << QByteArray(" \t\r\n\v\f\n[Dictionary]") << true;
    QTest::newRow("after a mark") << QByteArray("\xEF\xBB\xBF[Dictionary]") << true;
    QTest::newRow("after a mark and white space") << QByteArray("\xEF\xBB\xBF\n [Dictionary]") << true;
    QTest::newRow("after [NoEdit]") << QByteArray("[NoEdit]\n[Dictionary]") << true;
    QTest::newRow("after another section") << QByteArray("[Foo]\n[dictionary]") << true;
    QTest::newRow("UTF-16, low byte first") << QByteArray("\xFF\xFE[\0D\0i\0c\0t\0i\0o\0n\0a\0r\0y\0]\0", 26) << true;
    QTest::newRow("UTF-16, high byte first") << QByteArray("\xFE\xFF\0[\0D\0i\0c\0t\0i\0o\0n\0a\0r\0y\0]", 26) << true;
    QTest::newRow("after a comment") << QByteArray(".a\n[Dictionary]") << false;
    QTest::newRow("after a key") << QByteArray("a=b\n[Dictionary]") << false;
    QTest::newRow("UTF-16 without a mark") << QByteArray("[\0D\0i\0c\0t\0i\0o\0n\0a\0r\0y\0]\0", 24) << false;
}

void CSProTextReaderTest::aFileThatBeginsWithABracketIsRead()
{
    QFETCH(QByteArray, text);
    const Layout layout = layoutOf(text);
    QTEST(layout.isRead(), "isRead");
    QCOMPARE(layout.format, layout.isRead() ? Format::CSProText : Format::None);
}

void CSProTextReaderTest::everyCutFileIsRead_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : { "usual.dcf", "lines.dcf", "relations.dcf", "utf-16le.dcf", "utf-8-damage.dcf" })
        QTest::newRow(name) << name;
}

void CSProTextReaderTest::everyCutFileIsRead()
{
    QFETCH(QString, name);
    const QByteArray whole = contentOf(name);
    QVERIFY(!whole.isEmpty());
    int read = 0;
    for (int size = 0; size < whole.size(); ++size) {
        const Layout layout = layoutOf(whole.left(size));
        read += layout.isRead() ? 1 : 0;
        QVERIFY(!jsonOf(layout).isEmpty());
        QVERIFY(layout.isRead() || layout.problems.size() == 1);
    }
    QVERIFY(read > whole.size() / 2);
}

void CSProTextReaderTest::everyChangedByteIsRead_data()
{
    QTest::addColumn<char>("change");
    QTest::newRow("other bits") << '\xFF';
    QTest::newRow("one bit") << '\x01';
    QTest::newRow("highest bit") << '\x80';
}

void CSProTextReaderTest::everyChangedByteIsRead()
{
    QFETCH(char, change);
    const QByteArray whole = contentOf("usual.dcf");
    for (int index = 0; index < whole.size(); ++index) {
        QByteArray changed = whole;
        changed[index] = char(changed.at(index) ^ change);
        const Layout layout = layoutOf(changed);
        QVERIFY(!jsonOf(layout).isEmpty());
        QVERIFY(layout.isRead() || layout.problems.size() == 1);
    }
}

void CSProTextReaderTest::manySmallElementsAreRead_data()
{
    QTest::addColumn<QByteArray>("begin");
    QTest::addColumn<QByteArray>("part");
    const QByteArray dictionary = "[Dictionary]\n";
    QTest::newRow("levels") << dictionary << QByteArray("[Level]\n");
    QTest::newRow("records") << dictionary + "[Level]\n" << QByteArray("[Record]\n");
    QTest::newRow("items") << dictionary + "[Level]\n" << QByteArray("[Item]\n");
    QTest::newRow("subitems") << dictionary + "[Level]\n[Item]\n" << QByteArray("[Item]\nItemType=SubItem\n");
    QTest::newRow("value sets") << dictionary + "[Level]\n[Item]\n" << QByteArray("[ValueSet]\n");
    QTest::newRow("values") << dictionary + "[Level]\n[Item]\n[ValueSet]\n" << QByteArray("Value=\n");
    QTest::newRow("codes") << dictionary + "[Level]\n[Item]\n[ValueSet]\nValue=" << QByteArray("1 ");
    QTest::newRow("label parts") << dictionary + "Label=" << QByteArray("|");
    QTest::newRow("note pieces") << dictionary << QByteArray("Note=a\n");
    QTest::newRow("aliases") << dictionary << QByteArray("Alias=\n");
    QTest::newRow("repeated keys") << dictionary << QByteArray("ZeroFill=\n");
    QTest::newRow("continued lines") << dictionary + "Name=" << QByteArray("a&\n");
    QTest::newRow("continued keys") << dictionary << QByteArray("a&\nb\n");
    QTest::newRow("unknown sections") << dictionary << QByteArray("[\n");
    QTest::newRow("dictionaries") << dictionary << dictionary;
    QTest::newRow("languages") << dictionary + "[Languages]\n" << QByteArray("=\n");
    QTest::newRow("relations") << dictionary << QByteArray("[Relation]\n");
    QTest::newRow("parts of a relation") << dictionary + "[Relation]\n" << QByteArray("Secondary=\n");
    QTest::newRow("occurrence labels") << dictionary + "[Level]\n[Record]\n" << QByteArray("OccurrenceLabel=1,\n");
    QTest::newRow("linked sets") << dictionary + "[Level]\n[Item]\n[ValueSet]\nLink=1\nValue=1\n"
                                 << QByteArray("[ValueSet]\nLink=1\n");
    QTest::newRow("NULs") << dictionary << QByteArray("\0\n", 2);
    QTest::newRow("line feeds") << dictionary << QByteArray("\n");
}

// There are so many of each that the test would run for minutes if the time grew with the square of their number.
void CSProTextReaderTest::manySmallElementsAreRead()
{
    QFETCH(QByteArray, begin);
    QFETCH(QByteArray, part);
    constexpr int count = 100'000;
    const Layout layout = layoutOf(begin + part.repeated(count));
    QVERIFY(layout.isRead());
    const Layout copy = layout;
    QVERIFY(copy == layout);
}

void CSProTextReaderTest::aMillionProblemsAreBounded()
{
    const Layout layout = layoutOf("[Dictionary]\n" + QByteArray("a\n").repeated(1'000'100));
    QVERIFY(layout.problems.size() < 100'010);
    QCOMPARE(layout.extras.size(), 1'000'000);
    const auto hasProblem = [&](const char *id) {
        return std::any_of(layout.problems.begin(), layout.problems.end(),
                           [id](const Problem &problem) { return problem.id == QLatin1String(id); });
    };
    QVERIFY(hasProblem("too-many-problems"));
}

void CSProTextReaderTest::longNamesAreCutInPaths()
{
    const QByteArray name(5000, 'N');
    const QByteArray keys = "\nName=" + name + "\nX=1\n";
    const Layout layout = layoutOf("[Dictionary]" + keys + "[Level]" + keys + "[IdItems]\nX=1\n[Level]\n[Record]" + keys
                                   + "[Item]" + keys + "[ValueSet]" + keys + "Value=1\nX=1\n[Relation]" + keys);
    const QString cut(200, 'N');
    const QString item = '/' + cut + '/' + cut;
    QStringList paths;
    for (const Extra &extra : layout.extras)
        paths.append(extra.path);
    QCOMPARE(paths,
             (QStringList{ "", cut, cut + "/(ids)", '/' + cut, item, item + '/' + cut, item + '/' + cut + "/#1",
                           "relations/" + cut }));
    QCOMPARE(layout.problems.at(2).path, cut);
    QCOMPARE(layout.levels.at(0).name, QString::fromLatin1(name));
}

void CSProTextReaderTest::whiteSpaceInFrontMayBeLong_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Format>("format");
    const QByteArray text = "[Dictionary]\nName=D\n";
    const QByteArray json = R"({"name":"D","levels":[]})";
    const QByteArray mark = "\xEF\xBB\xBF";
    QTest::newRow("text after lines") << QByteArray("\r\n").repeated(511) + text << Format::CSProText;
    QTest::newRow("text after 1,024 lines") << QByteArray(1024, '\n') + text << Format::CSProText;
    QTest::newRow("text after all white space")
        << QByteArray(" \t\v\f\r\n").repeated(50'000) + text << Format::CSProText;
    QTest::newRow("text after a mark and blanks") << mark + QByteArray(3000, ' ') + text << Format::CSProText;
    QTest::newRow("text in UTF-16") << "\xFF\xFE" + QByteArray(" \0", 2).repeated(2000)
            + QByteArray("[\0D\0i\0c\0t\0i\0o\0n\0a\0r\0y\0]\0", 24)
                                    << Format::CSProText;
    QTest::newRow("JSON after all white space") << QByteArray(" \t\r\n") + json << Format::CSProJson;
    QTest::newRow("JSON after lines") << QByteArray(5000, '\n') + json << Format::CSProJson;
    QTest::newRow("JSON after a mark and blanks") << mark + QByteArray(3000, ' ') + json << Format::CSProJson;
    QTest::newRow("JSON after a comment") << "/*" + QByteArray(3000, '*') + "*/" + json << Format::CSProJson;
    QTest::newRow("JSON after a line's comment") << "//" + QByteArray(3000, 'x') + "\n" + json << Format::CSProJson;
    QTest::newRow("nothing after it") << QByteArray(5000, ' ') << Format::None;
    QTest::newRow("comment without end") << "/*" + QByteArray(3000, ' ') << Format::None;
    QTest::newRow("list after it") << QByteArray(5000, ' ') + "[{}]" << Format::None;
    QTest::newRow("more than the bound") << QByteArray(17 << 20, ' ') + text << Format::None;
}

void CSProTextReaderTest::whiteSpaceInFrontMayBeLong()
{
    QFETCH(QByteArray, bytes);
    const Layout layout = layoutOf(bytes);
    QTEST(layout.format, "format");
    QCOMPARE(layout.isRead(), layout.format != Format::None);
    QVERIFY(layout.isRead() || layout.error()->id == "unknown-format" || layout.error()->id == "no-dictionary");
}

QTEST_APPLESS_MAIN(CSProTextReaderTest)
#include "CSProTextReaderTest.moc"
