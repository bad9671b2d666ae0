#include "read/Reader.h"
#include "write/LayoutJson.h"

#include <QBuffer>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace vanlayout;

/// Tests all rules of the JSON form, one row per rule.
class CSProJsonLayoutTest : public QObject
{
    Q_OBJECT

private slots:
    void usualDictionaryIsWithoutFindings();
    void ruleOfTheFormatHolds_data();
    void ruleOfTheFormatHolds();
    void keysHaveNoOrder();
    void relationIsRead_data();
    void relationIsRead();
    void zeroFillOfNumbersFollowsTheDictionaryWhereverThatSaysIt();
    void subitemFollowsItsItem();
    void offsetThatDoesNotCountIsKept();
    void elementsTakeNothingFromThoseBefore();
    void linkedValueSetsShareTheirValues();
    void equalTextsShareTheirMemory();
    void pathsNameTheElementEvenBeforeItsName();
    void longNamesInPathsAreCutAndShared();
    void messagesAreOneShortLineWhateverTheFileSays();
    void undeclaredLanguageIsReportedOnceWhereItComesFirst();
    void fileThatIsNoDictionaryIsNamed_data();
    void fileThatIsNoDictionaryIsNamed();
    void damagedJsonIsReportedWithItsPlace_data();
    void damagedJsonIsReportedWithItsPlace();
    void everyCutFileIsDamaged();
    void depthCostsNoStack();
    void nestingHasABound();
    void manyUnknownKeysTakeLinearTime();
    void realDictionariesAreWithoutFindings();
};

namespace
{

// The element of a small dictionary of which a row changes the keys.
enum class Element { Dictionary, Level, Record, Item, ValueSet, Value };

// One rule of the format. The keys of `json` replace the usual keys of the element; those of `without` are omitted.
// `expected` are the members of the JSON form of the layout that differ from the usual ones, null for an absent one.
struct Rule {
    const char *name;
    Element element;
    const char *json;
    const char *without;
    const char *expected;
    const char *extras;   // entries "key=value", separated by blanks
    const char *problems; // ids, separated by blanks
};

using Members = QList<QPair<QByteArray, QByteArray>>;

QByteArray objectOf(const Members &usual, const Rule *rule, Element element)
{
    const bool isMeant = rule && rule->element == element;
    const QByteArray json = isMeant ? rule->json : "";
    const QJsonObject stated = QJsonDocument::fromJson('{' + json + '}').object();
    const QByteArrayList without = QByteArray(isMeant ? rule->without : "").split(' ');
    QByteArrayList members;
    for (const auto &member : usual)
        if (!without.contains(member.first) && !stated.contains(member.first))
            members.append('"' + member.first + "\":" + member.second);
    if (!json.isEmpty())
        members.append(json);
    return '{' + members.join(',') + '}';
}

QByteArray dictionaryOf(const Rule *rule = nullptr)
{
    const QByteArray labels = R"([{"text":"Label"}])";
    const QByteArray value
        = objectOf({ { "labels", labels }, { "pairs", R"([{"value":"1"}])" } }, rule, Element::Value);
    const QByteArray set = objectOf({ { "name", "\"SET\"" }, { "labels", labels }, { "values", '[' + value + ']' } },
                                    rule, Element::ValueSet);
    const QByteArray item = objectOf({ { "name", "\"ITEM\"" },
                                       { "labels", labels },
                                       { "contentType", "\"numeric\"" },
                                       { "length", "2" },
                                       { "zeroFill", "false" },
                                       { "valueSets", '[' + set + ']' } },
                                     rule, Element::Item);
    const QByteArray record = objectOf({ { "name", "\"RECORD\"" },
                                         { "labels", labels },
                                         { "recordType", "\"1\"" },
                                         { "occurrences", R"({"required":true,"maximum":1})" },
                                         { "items", '[' + item + ']' } },
                                       rule, Element::Record);
    const QByteArray ids = R"({"items":[{"name":"ID","labels":[{"text":"Id"}],"contentType":"alpha","length":3}]})";
    const QByteArray level
        = objectOf({ { "name", "\"LEVEL\"" }, { "labels", labels }, { "ids", ids }, { "records", '[' + record + ']' } },
                   rule, Element::Level);
    return objectOf({ { "software", "\"CSPro\"" },
                      { "version", "8.0" },
                      { "fileType", "\"dictionary\"" },
                      { "name", "\"DICTIONARY\"" },
                      { "labels", labels },
                      { "recordType", R"({"start":1,"length":1})" },
                      { "relativePositions", "true" },
                      { "levels", '[' + level + ']' } },
                    rule, Element::Dictionary);
}

Layout layoutOf(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return readLayout(buffer, "name");
}

QJsonObject jsonOf(const Layout &layout)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    writeLayoutJson(layout, buffer);
    return QJsonDocument::fromJson(buffer.data()).object();
}

// The object of an element: the first entry of each list that leads to it.
QJsonObject objectIn(const QJsonObject &layout, Element element)
{
    const QStringList keys = { "levels", "records", "items", "valueSets", "values" };
    QJsonObject object = layout;
    for (int depth = 0; depth < int(element); ++depth)
        object = object.value(keys.at(depth)).toArray().at(0).toObject();
    for (const QString &key :
         QStringList{ "levels", "records", "ids", "items", "valueSets", "values", "extras", "problems" })
        object.remove(key);
    return object;
}

QByteArray textOf(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QString extrasOf(const Layout &layout)
{
    QStringList texts;
    for (const Extra &extra : layout.extras)
        texts.append(extra.key + '=' + extra.value);
    return texts.join(' ');
}

QString problemsOf(const Layout &layout)
{
    QStringList ids;
    for (const Problem &problem : layout.problems)
        ids.append(problem.id);
    return ids.join(' ');
}

constexpr Element Top = Element::Dictionary;
constexpr Element Lev = Element::Level;
constexpr Element Rec = Element::Record;
constexpr Element Itm = Element::Item;
constexpr Element Set = Element::ValueSet;
constexpr Element Val = Element::Value;

// clang-format off
const Rule rules[] = {
    // The dictionary
    { "software CSPro",                 Top, R"("software":"CSPro")", "", "{}", "", "" },
    { "software absent",                Top, "", "software", "{}", "", "" },
    { "software of others",             Top, R"("software":"Other")", "", "{}", R"(software="Other")", "extra-key" },
    { "editable absent",                Top, "", "", "{}", "", "" },
    { "editable false",                 Top, R"("editable":false)", "", R"({"editable":false})", "", "" },
    { "editable true",                  Top, R"("editable":true)", "", "{}", "", "" },
    { "version absent",                 Top, "", "version", R"({"formatVersion":null})", "", "" },
    { "version 7.7",                    Top, R"("version":7.7)", "", R"({"formatVersion":"7.7"})", "", "" },
    { "version 8.1",                    Top, R"("version":8.1)", "", R"({"formatVersion":"8.1"})", "", "" },
    { "version without decimals",       Top, R"("version":8)", "", R"({"formatVersion":"8.0"})", "", "" },
    { "version with two decimals",      Top, R"("version":8.10)", "", R"({"formatVersion":"8.1"})", "", "" },
    { "version as text",                Top, R"("version":"8.0")", "", "{}", "", "converted-type" },
    { "version no number",              Top, R"("version":"new")", "", R"({"formatVersion":null})", R"(version="new")", "wrong-type" },
    { "version higher than known",      Top, R"("version":9.0)", "", R"({"formatVersion":"9.0"})", "", "newer-version" },
    { "fileType absent",                Top, "", "fileType", "{}", "", "" },
    { "name absent",                    Top, "", "name", R"({"name":null})", "", "missing-key" },
    { "name in small letters",          Top, R"("name":"small")", "", R"({"name":"small"})", "", "" },
    { "aliases",                        Top, R"("aliases":["B","A","B"])", "", R"({"aliases":["B","A","B"]})", "", "" },
    { "aliases: a bad entry",           Top, R"("aliases":[{},"A"])", "", R"({"aliases":["A"]})", "aliases={}", "wrong-type" },
    { "languages",                      Top, R"("languages":[{"name":"EN","label":"English"},{"name":"FR","label":"Français"}])", "",
                                             R"({"languages":[{"name":"EN","label":"English"},{"name":"FR","label":"Français"}]})", "", "" },
    { "languages empty",                Top, R"("languages":[])", "", "{}", "", "empty-languages" },
    { "languages without label",        Top, R"("languages":[{"name":"EN"}])", "", R"({"languages":[{"name":"EN","label":""}]})", "", "missing-key" },
    { "labels absent",                  Top, "", "labels", R"({"labels":null})", "", "" },
    { "note absent",                    Top, "", "", "{}", "", "" },
    { "note",                           Top, R"("note":"Two\nlines. \r\n\t")", "", R"({"note":"Two\nlines."})", "", "" },
    { "note of blanks",                 Top, R"("note":"  \n")", "", "{}", "", "" },
    { "security absent",                Top, "", "", "{}", "", "" },
    { "security",                       Top, R"("security":{"allowDataViewerModifications":true,"allowExport":false,"cachedPasswordMinutes":3,"settings":"0a"})", "",
                                             R"({"security":{"allowDataViewerModifications":true,"allowExport":false,"cachedPasswordMinutes":3,"settings":"0a"}})", "", "" },
    { "security without settings",      Top, R"("security":{"allowExport":true})", "", R"({"security":{"allowExport":true}})", "", "missing-key" },
    { "security of 8.1",                Top, R"("security":{"allowDataManagerModifications":true,"settings":"0a"})", "",
                                             R"({"security":{"settings":"0a"}})", "security.allowDataManagerModifications=true", "extra-key" },
    { "readOptimization false",         Top, R"("readOptimization":false)", "", R"({"readOptimization":false})", "", "" },
    { "readOptimization true",          Top, R"("readOptimization":true)", "", R"({"readOptimization":true})", "", "" },
    { "enableBinaryItems true",         Top, R"("enableBinaryItems":true)", "", R"({"enableBinaryItems":true})", "", "" },
    { "enableBinaryItems false",        Top, R"("enableBinaryItems":false)", "", R"({"enableBinaryItems":false})", "", "" },
    { "recordType absent",              Top, "", "recordType", R"({"recordType":null})", "", "missing-key" },
    { "recordType 0/0",                 Top, R"("recordType":{"start":0,"length":0})", "", R"({"recordType":null})", "", "" },
    { "recordType without length",      Top, R"("recordType":{"start":3})", "", R"({"recordType":{"start":3,"length":0}})", "", "missing-key" },
    { "defaults absent",                Top, "", "", "{}", "", "" },
    { "defaults.decimalMark",           Top, R"("defaults":{"decimalMark":true})", "", R"({"decimalMark":true})", "", "" },
    { "defaults.zeroFill",              Top, R"("defaults":{"zeroFill":true})", "", R"({"zeroFill":true})", "", "" },
    { "relativePositions absent",       Top, "", "relativePositions", R"({"relativePositions":null})", "", "missing-key no-start no-start" },
    { "relativePositions false",        Top, R"("relativePositions":false)", "", R"({"relativePositions":false})", "", "no-start no-start" },
    { "levels absent",                  Top, "", "levels", "{}", "", "" },
    { "levels no list",                 Top, R"("levels":{})", "", "{}", "levels={}", "wrong-type" },
    { "unknown key",                    Top, R"("attributes":{ "a" : [ 1 , null ] })", "", "{}", R"(attributes={"a":[1,null]})", "unknown-key" },
    { "key names have case",            Top, R"("Editable":false)", "", "{}", "Editable=false", "unknown-key" },
    { "key twice, the first counts",    Top, R"("editable":false,"editable":true)", "", R"({"editable":false})", "repeated editable=true", "repeated-key" },
    { "unknown key twice",              Top, R"("x":1,"x":2)", "", "{}", "x=1 repeated x=2", "unknown-key repeated-key" },
    { "null is as absent",              Top, R"("note":null,"aliases":null,"security":null,"languages":null,"relations":null,"enableBinaryItems":null)", "", "{}", "", "" },
    { "null of an unknown key",         Top, R"("x":null)", "", "{}", "x=null", "unknown-key" },
    { "null where a key must be",       Top, R"("name":null)", "", R"({"name":null})", "", "missing-key" },
    // Labels
    { "labels: one part",               Itm, R"("labels":[{"text":"Sex"}])", "", R"({"labels":[{"text":"Sex"}]})", "", "" },
    { "labels: empty",                  Itm, R"("labels":[{"text":""}])", "", R"({"labels":null})", "", "" },
    { "labels: without text",           Itm, R"("labels":[{}])", "", R"({"labels":null})", "", "" },
    { "labels: empty list",             Itm, R"("labels":[])", "", R"({"labels":null})", "", "empty-labels" },
    { "labels: list order",             Itm, R"("labels":[{"text":"b","language":"en"},{"language":"","text":"a"}])", "",
                                             R"({"labels":[{"text":"b","language":"en"},{"text":"a"}]})", "", "" },
    { "labels: one with its language",  Itm, R"("labels":[{"text":"b","language":"EN"}])", "", R"({"labels":[{"text":"b","language":"EN"}]})", "", "" },
    { "labels: empty second part",      Itm, R"("labels":[{"text":"b","language":"EN"},{"text":"","language":"En"}])", "",
                                             R"({"labels":[{"text":"b","language":"EN"},{"text":"","language":"En"}]})", "", "repeated-language" },
    { "labels: language not declared",  Itm, R"("labels":[{"text":"b","language":"FR"}])", "", R"({"labels":[{"text":"b","language":"FR"}]})", "", "undeclared-language" },
    { "labels: no list",                Itm, R"("labels":"Sex")", "", R"({"labels":null})", R"(labels="Sex")", "wrong-type" },
    { "labels: bad text",               Itm, R"("labels":[{"text":[]}])", "", R"({"labels":null})", "labels.text=[]", "wrong-type" },
    { "labels: with line feeds",        Itm, R"("labels":[{"text":"a\nb"}])", "", R"({"labels":[{"text":"a\nb"}]})", "", "" },
    // Levels
    { "level: name absent",             Lev, "", "name", R"({"name":""})", "", "missing-key" },
    { "level: aliases and note",        Lev, R"("aliases":["A"],"note":"n")", "", R"({"aliases":["A"],"note":"n"})", "", "" },
    { "level: ids absent",              Lev, "", "ids", "{}", "", "missing-key level-without-ids" },
    { "level: ids a list",              Lev, R"("ids":[{"name":"X"}])", "", "{}", R"(ids=[{"name":"X"}])", "wrong-type level-without-ids" },
    { "level: ids with a name",         Lev, R"("ids":{"name":"X","items":[]})", "", "{}", R"(name="X")", "unknown-key level-without-ids" },
    { "level: records absent",          Lev, "", "records", "{}", "", "" },
    // Records
    { "record: name absent",            Rec, "", "name", R"({"name":""})", "", "missing-key" },
    { "record: aliases and note",       Rec, R"("aliases":["A"],"note":"n")", "", R"({"aliases":["A"],"note":"n"})", "", "" },
    { "record: recordType absent",      Rec, "", "recordType", R"({"recordType":null})", "", "" },
    { "record: recordType with blanks", Rec, R"("recordType":" 1 ")", "", R"({"recordType":" 1 "})", "", "" },
    { "record: occurrences absent",     Rec, "", "occurrences", "{}", "", "missing-key" },
    { "record: required false",         Rec, R"("occurrences":{"required":false,"maximum":1})", "", R"({"required":false})", "", "" },
    { "record: required absent",        Rec, R"("occurrences":{"maximum":2})", "", R"({"maximum":2})", "", "missing-key" },
    { "record: maximum absent",         Rec, R"("occurrences":{"required":true})", "", "{}", "", "missing-key" },
    { "record: maximum",                Rec, R"("occurrences":{"required":true,"maximum":150})", "", R"({"maximum":150})", "", "" },
    { "record: occurrence labels",      Rec, R"("occurrences":{"required":true,"maximum":2,"labels":[{"occurrence":2,"labels":[{"text":"b"}]}]})", "",
                                             R"({"maximum":2,"occurrenceLabels":[{"occurrence":2,"labels":[{"text":"b"}]}]})", "", "" },
    { "record: items absent",           Rec, "", "items", "{}", "", "" },
    { "record: length is no key",       Rec, R"("length":9)", "", "{}", "length=9", "unknown-key" },
    // Items
    { "item: name absent",              Itm, "", "name", R"({"name":""})", "", "missing-key" },
    { "item: aliases and note",         Itm, R"("aliases":["A"],"note":"n")", "", R"({"aliases":["A"],"note":"n"})", "", "" },
    { "item: occurrences",              Itm, R"("occurrences":{"maximum":7})", "", R"({"occurrences":7})", "", "" },
    { "item: occurrences 1",            Itm, R"("occurrences":{"maximum":1})", "", "{}", "", "" },
    { "item: occurrences without maximum", Itm, R"("occurrences":{})", "", "{}", "", "missing-key" },
    { "item: occurrences required",     Itm, R"("occurrences":{"maximum":2,"required":true})", "", R"({"occurrences":2})", "occurrences.required=true", "unknown-key" },
    { "item: label above the maximum",  Itm, R"("occurrences":{"maximum":2,"labels":[{"occurrence":3,"labels":[{"text":"c"}]}]})", "",
                                             R"({"occurrences":2,"occurrenceLabels":[{"occurrence":3,"labels":[{"text":"c"}]}]})", "", "label-without-occurrence" },
    { "item: label of a single one",    Itm, R"("occurrences":{"maximum":1,"labels":[{"occurrence":1,"labels":[{"text":"a"}]}]})", "",
                                             R"({"occurrenceLabels":[{"occurrence":1,"labels":[{"text":"a"}]}]})", "", "label-without-occurrence" },
    { "item: label of no occurrence",   Itm, R"("occurrences":{"maximum":2,"labels":[{"occurrence":0,"labels":[]}]})", "",
                                             R"({"occurrences":2})", R"(occurrences.labels={"occurrence":0,"labels":[]})", "empty-labels bad-occurrence" },
    { "item: label without labels",     Itm, R"("occurrences":{"maximum":2,"labels":[{"occurrence":2}]})", "",
                                             R"({"occurrences":2,"occurrenceLabels":[{"occurrence":2,"labels":[]}]})", "", "missing-key" },
    { "item: contentType alpha",        Itm, R"("contentType":"alpha")", "", R"({"type":"alpha"})", "", "" },
    { "item: contentType in any case",  Itm, R"("contentType":"NUMERIC")", "", "{}", "", "" },
    { "item: contentType absent",       Itm, "", "contentType", R"({"type":""})", "", "missing-key" },
    { "item: contentType unknown",      Itm, R"("contentType":"Video")", "", R"({"type":"video"})", "", "unknown-type" },
    { "item: Document",                 Itm, R"("contentType":"Document")", "length", R"({"type":"document","length":1})", "", "" },
    { "item: Audio",                    Itm, R"("contentType":"Audio")", "length", R"({"type":"audio","length":1})", "", "" },
    { "item: Image",                    Itm, R"("contentType":"Image")", "length", R"({"type":"image","length":1})", "", "" },
    { "item: Geometry",                 Itm, R"("contentType":"Geometry","length":9)", "", R"({"type":"geometry","length":1})", "length=9", "unused-length" },
    { "item: binary as a subitem",      Itm, R"("contentType":"Image","subitem":true)", "length", R"({"type":"image","length":1})", "subitem=true", "unusable-subitem" },
    { "item: Image with its length",    Itm, R"("contentType":"Image","length":1)", "", R"({"type":"image","length":1})", "", "" },
    { "item: subitem without an item",  Itm, R"("subitem":true,"subitemOffset":2)", "", R"({"start":null})", "subitemOffset=2", "unusable-offset subitem-without-item no-start" },
    { "item: subitem false",            Itm, R"("subitem":false)", "", "{}", "", "" },
    { "item: offset with an exponent",  Itm, R"("subitemOffset":1e2)", "", "{}", "subitemOffset=1e2", "unusable-offset" },
    { "item: subitemOffset of an item", Itm, R"("subitemOffset":"2")", "", "{}", R"(subitemOffset="2")", "converted-type unusable-offset" },
    { "item: start",                    Itm, R"("start":40)", "", R"({"start":40})", "", "" },
    { "item: length absent",            Itm, "", "length", R"({"length":0})", "", "missing-key" },
    { "item: decimals with the mark",   Itm, R"("decimals":1,"decimalMark":true)", "", R"({"decimals":1,"decimalMark":true})", "", "" },
    { "item: decimals implied",         Itm, R"("decimals":1,"decimalMark":false)", "", R"({"decimals":1})", "", "" },
    { "item: decimals without the mark", Itm, R"("decimals":1)", "", R"({"decimals":1})", "", "missing-key" },
    { "item: mark without decimals",    Itm, R"("decimalMark":true)", "", "{}", "", "" },
    { "item: decimals of a text",       Itm, R"("contentType":"alpha","decimals":1,"decimalMark":true)", "", R"({"type":"alpha","decimals":1})", "", "" },
    { "item: zeroFill",                 Itm, R"("zeroFill":true)", "", R"({"zeroFill":true})", "", "" },
    { "item: zeroFill of a text",       Itm, R"("contentType":"alpha","zeroFill":true)", "", R"({"type":"alpha"})", "", "" },
    { "item: capture",                  Itm, R"("capture":{"type":"RadioButton"})", "", R"({"capture":{"type":"radioButton"}})", "", "" },
    { "item: capture null",             Itm, R"("capture":null)", "", "{}", "", "" },
    { "item: capture unspecified",      Itm, R"("capture":{"type":"Unspecified"})", "", "{}", "", "" },
    { "item: capture unknown",          Itm, R"("capture":{"type":"wheel"})", "", "{}", R"(capture.type="wheel")", "unknown-word" },
    { "item: capture without type",     Itm, R"("capture":{})", "", "{}", "", "missing-key" },
    { "item: capture of a date",        Itm, R"("capture":{"type":"date","dateFormat":"yyyymmdd"})", "", R"({"capture":{"type":"date","dateFormat":"YYYYMMDD"}})", "", "" },
    { "item: date format alone",        Itm, R"("capture":{"dateFormat":"yy\"\\"})", "", "{}", R"(capture.dateFormat="yy\"\\")", "missing-key date-without-capture" },
    { "item: valueSets no list",        Itm, R"("valueSets":{})", "", "{}", "valueSets={}", "wrong-type" },
    // Value sets
    { "value set: name absent",         Set, "", "name", R"({"name":""})", "", "missing-key" },
    { "value set: aliases and note",    Set, R"("aliases":["A"],"note":"n")", "", R"({"aliases":["A"],"note":"n"})", "", "" },
    { "value set: link of one",         Set, R"("link":"7")", "", R"({"link":"7"})", "", "" },
    { "value set: values absent",       Set, "", "values", "{}", "", "" },
    // Values
    { "value: labels absent",           Val, "", "labels", R"({"labels":null})", "", "" },
    { "value: note",                    Val, R"("note":"n\n")", "", R"({"note":"n"})", "", "" },
    { "value: image",                   Val, R"("image":"a\\b/c.jpg")", "", R"({"image":"a\\b/c.jpg"})", "", "" },
    { "value: url",                     Val, R"("url":"data:")", "", "{}", R"(url="data:")", "extra-key" },
    { "value: textColor",               Val, R"-("textColor":"rgb(1,2,3)")-", "", R"-({"textColor":"rgb(1,2,3)"})-", "", "" },
    { "value: MISSING",                 Val, R"("special":"MISSING")", "", R"({"special":"missing"})", "", "" },
    { "value: NOTAPPL",                 Val, R"("special":"NOTAPPL")", "", R"({"special":"notApplicable"})", "", "" },
    { "value: DEFAULT",                 Val, R"("special":"DEFAULT")", "", R"({"special":"default"})", "", "" },
    { "value: REFUSED in any case",     Val, R"("special":"refused")", "", R"({"special":"refused"})", "", "" },
    { "value: special unknown",         Val, R"("special":"OTHER")", "", "{}", R"(special="OTHER")", "unknown-word" },
    { "value: pairs absent",            Val, "", "pairs", R"({"ranges":[]})", "", "" },
    // Pairs
    { "pair: value",                    Val, R"("pairs":[{"value":" 01 "},{"value":""}])", "", R"({"ranges":[{"from":" 01 "},{"from":""}]})", "", "" },
    { "pair: value a number",           Val, R"("pairs":[{"value":1.50}])", "", R"({"ranges":[{"from":"1.50"}]})", "", "converted-type" },
    { "pair: range",                    Val, R"("pairs":[{"range":["0","17"]},{"range":["5","5"]}])", "", R"({"ranges":[{"from":"0","to":"17"},{"from":"5","to":"5"}]})", "", "" },
    { "pair: range of numbers",         Val, R"("pairs":[{"range":[-1,2.0]}])", "", R"({"ranges":[{"from":"-1","to":"2.0"}]})", "", "" },
    { "pair: range of one",             Val, R"("pairs":[{"range":["0"]}])", "", R"({"ranges":[]})", R"(pairs={"range":["0"]})", "bad-pair" },
    { "pair: range of three",           Val, R"("pairs":[{"range":["0","1","2"]},{"value":"3"}])", "", R"({"ranges":[{"from":"3"}]})", R"(pairs={"range":["0","1","2"]})", "bad-pair" },
    { "pair: range with a list in it",  Val, R"("pairs":[{"range":["0",["1"]]}])", "", R"({"ranges":[]})", R"(pairs={"range":["0",["1"]]})", "bad-pair" },
    { "pair: value wins",               Val, R"("pairs":[{"range":["0","1"],"value":"2"}])", "", R"({"ranges":[{"from":"2"}]})", R"(pairs.range=["0","1"])", "value-and-range" },
    { "pair: neither",                  Val, R"("pairs":[{"x":[1]}])", "", R"({"ranges":[]})", R"(pairs={"x":[1]})", "unknown-key bad-pair" },
    { "pair: no object",                Val, R"("pairs":["1"])", "", R"({"ranges":[]})", R"(pairs="1")", "wrong-type" },
    // Values of a wrong type
    { "integer as a text",              Itm, R"("length":"3")", "", R"({"length":3})", "", "converted-type" },
    { "integer with decimals that are zero", Itm, R"("length":3.0)", "", R"({"length":3})", "", "" },
    { "integer with an exponent",       Itm, R"("length":1e1)", "", R"({"length":10})", "", "" },
    { "integer with a fraction",        Itm, R"("length":2.5)", "", R"({"length":0})", "length=2.5", "wrong-type missing-key" },
    { "integer of 32 bits",             Itm, R"("start":2147483647)", "", R"({"start":2147483647})", "", "" },
    { "integer beyond 32 bits",         Itm, R"("start":2147483648)", "", R"({"start":5})", "start=2147483648", "wrong-type" },
    { "integer far beyond 64 bits",     Itm, R"("start":123456789012345678901234567890)", "", R"({"start":5})", "start=123456789012345678901234567890", "wrong-type" },
    { "integer as a text with blanks",  Itm, R"("start":" 3")", "", R"({"start":5})", R"(start=" 3")", "wrong-type" },
    { "integer as an empty text",       Itm, R"("start":"")", "", R"({"start":5})", R"(start="")", "wrong-type" },
    { "integer as true",                Itm, R"("start":true)", "", R"({"start":5})", "start=true", "wrong-type" },
    { "bool as a text",                 Itm, R"("zeroFill":"true")", "", R"({"zeroFill":true})", "", "converted-type" },
    { "bool as another text",           Itm, R"("zeroFill":"yes")", "", "{}", R"(zeroFill="yes")", "wrong-type" },
    { "bool as a number",               Itm, R"("zeroFill":1)", "", "{}", "zeroFill=1", "wrong-type" },
    { "text as a number",               Itm, R"("name":1.0)", "", R"({"name":"1.0"})", "", "converted-type" },
    { "text as a bool",                 Itm, R"("note":false)", "", "{}", "note=false", "wrong-type" },
    { "object as a text",               Itm, R"("capture":"date")", "", "{}", R"(capture="date")", "wrong-type" },
    { "object as a list",               Itm, R"("occurrences":[ 2 ])", "", "{}", "occurrences=[2]", "wrong-type" },
    { "list entry no object",           Itm, R"("valueSets":[7,null])", "", "{}", "valueSets=7 valueSets=null", "wrong-type wrong-type" },
};
// clang-format on

} // namespace

void CSProJsonLayoutTest::usualDictionaryIsWithoutFindings()
{
    const Layout layout = layoutOf(dictionaryOf());
    QVERIFY(layout.isRead());
    QCOMPARE(layout.format, Format::CSProJson);
    QCOMPARE(layout.encoding, QString("utf-8"));
    QCOMPARE(problemsOf(layout), QString());
    QCOMPARE(extrasOf(layout), QString());
    const QJsonObject json = jsonOf(layout);
    const QByteArrayList expected = {
        R"({"encoding":"utf-8","file":"name","format":"cspro-json","formatVersion":"8.0","labels":[{"text":"Label"}],"layoutVersion":1,"name":"DICTIONARY","recordType":{"length":1,"start":1},"relativePositions":true})",
        R"({"labels":[{"text":"Label"}],"name":"LEVEL"})",
        R"({"labels":[{"text":"Label"}],"name":"RECORD","recordType":"1"})",
        R"({"labels":[{"text":"Label"}],"length":2,"name":"ITEM","start":5,"type":"numeric"})",
        R"({"labels":[{"text":"Label"}],"name":"SET"})",
        R"({"labels":[{"text":"Label"}],"ranges":[{"from":"1"}]})",
    };
    for (int element = 0; element < expected.size(); ++element)
        QCOMPARE(textOf(objectIn(json, Element(element))), expected.at(element));
}

void CSProJsonLayoutTest::ruleOfTheFormatHolds_data()
{
    QTest::addColumn<int>("index");
    for (int index = 0; index < int(std::size(rules)); ++index)
        QTest::newRow(rules[index].name) << index;
}

void CSProJsonLayoutTest::ruleOfTheFormatHolds()
{
    QFETCH(int, index);
    const Rule &rule = rules[index];
    const Layout layout = layoutOf(dictionaryOf(&rule));
    QVERIFY2(layout.isRead(), layout.error() ? qPrintable(layout.error()->message) : "");
    QJsonObject expected = objectIn(jsonOf(layoutOf(dictionaryOf())), rule.element);
    const QJsonObject changed = QJsonDocument::fromJson(rule.expected).object();
    for (auto member = changed.begin(); member != changed.end(); ++member) {
        if (member.value().isNull())
            expected.remove(member.key());
        else
            expected.insert(member.key(), member.value());
    }
    QCOMPARE(textOf(objectIn(jsonOf(layout), rule.element)), textOf(expected));
    QCOMPARE(extrasOf(layout), QString::fromUtf8(rule.extras));
    QCOMPARE(problemsOf(layout), QString(rule.problems));
    for (const Problem &problem : layout.problems)
        QVERIFY2(!problem.message.contains('\n') && !problem.message.isEmpty(), qPrintable(problem.message));
}

void CSProJsonLayoutTest::keysHaveNoOrder()
{
    const QByteArray inOrder
        = R"({"name":"D","labels":[{"text":"a","language":"EN"},{"text":"b","language":"FR"}],"languages":[{"name":"EN","label":"E"},{"name":"FR","label":"F"}],
              "recordType":{"start":1,"length":2},"defaults":{"zeroFill":true},"relativePositions":true,"levels":[{"name":"L","ids":{"items":[
              {"name":"I","contentType":"numeric","length":3}]},"records":[{"name":"R","occurrences":{"required":false,"maximum":2,"labels":[
              {"occurrence":1,"labels":[{"text":"x"}]}]},"items":[{"name":"A","contentType":"numeric","occurrences":{"maximum":2},"length":4,"decimals":1,"decimalMark":true},
              {"name":"B","contentType":"numeric","subitem":true,"subitemOffset":1,"length":2,"valueSets":[{"name":"V","values":[{"special":"MISSING","pairs":[{"value":"9"}]}]}]}]}]}]})";
    const QByteArray otherOrder
        = R"({"levels":[{"records":[{"items":[{"decimalMark":true,"decimals":1,"length":4,"occurrences":{"maximum":2},"contentType":"numeric","name":"A"},
              {"valueSets":[{"values":[{"pairs":[{"value":"9"}],"special":"MISSING"}],"name":"V"}],"length":2,"subitemOffset":1,"subitem":true,"contentType":"numeric","name":"B"}],
              "occurrences":{"labels":[{"labels":[{"text":"x"}],"occurrence":1}],"maximum":2,"required":false},"name":"R"}],"ids":{"items":[
              {"length":3,"contentType":"numeric","name":"I"}]},"name":"L"}],"relativePositions":true,"defaults":{"zeroFill":true},"recordType":{"length":2,"start":1},
              "languages":[{"label":"E","name":"EN"},{"label":"F","name":"FR"}],"labels":[{"language":"EN","text":"a"},{"language":"FR","text":"b"}],"name":"D"})";
    const Layout layout = layoutOf(inOrder);
    QVERIFY(layout.isRead());
    QCOMPARE(problemsOf(layout), QString());
    QVERIFY(layout == layoutOf(otherOrder));
    QCOMPARE(layout.levels.at(0).records.at(0).items.at(1).start, 7);
    QVERIFY(layout.levels.at(0).records.at(0).items.at(1).zeroFill);
}

void CSProJsonLayoutTest::relationIsRead_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<QString>("problems");
    const auto add = [](const char *name, const char *json, const char *expected, const char *problems) {
        QTest::newRow(name) << QByteArray(json) << QByteArray(expected) << problems;
    };
    // clang-format off
    add("by items", R"({"name":"R","aliases":["Q"],"primary":"P","links":[{"primaryLink":"A","secondary":"S","secondaryLink":"B"}]})",
        R"({"aliases":["Q"],"links":[{"primaryLink":"A","secondary":"S","secondaryLink":"B"}],"name":"R","primary":"P"})", "");
    add("by occurrence, as written",
        R"-({"name":"R","primary":"P","links":[{"primaryLink":"(occurrence)","secondary":"S","secondaryLink":"(occurrence)"}]})-",
        R"({"links":[{"secondary":"S"}],"name":"R","primary":"P"})", "");
    add("by occurrence, absent", R"({"name":"R","primary":"P","links":[{"secondary":"S"}]})",
        R"({"links":[{"secondary":"S"}],"name":"R","primary":"P"})", "");
    add("without links", R"({"name":"R","primary":"P"})", R"({"links":[],"name":"R","primary":"P"})", "");
    add("without primary and secondary", R"({"name":"R","links":[{}]})", R"({"links":[{"secondary":""}],"name":"R","primary":""})",
        "missing-key missing-key");
    add("without name", R"({"primary":"P"})", R"({"links":[],"name":"","primary":"P"})", "missing-key");
    // clang-format on
}

void CSProJsonLayoutTest::relationIsRead()
{
    QFETCH(QByteArray, json);
    const Rule rule = { "", Top, "", "", "", "", "" };
    QByteArray dictionary = dictionaryOf(&rule);
    dictionary.chop(1);
    const Layout layout = layoutOf(dictionary + ",\"relations\":[" + json + "]}");
    QTEST(textOf(jsonOf(layout).value("relations").toArray().at(0).toObject()), "expected");
    QTEST(problemsOf(layout), "problems");
}

void CSProJsonLayoutTest::zeroFillOfNumbersFollowsTheDictionaryWhereverThatSaysIt()
{
    const QByteArray items = R"([{"name":"A","contentType":"numeric","length":1},
        {"name":"B","contentType":"numeric","length":1,"zeroFill":false},{"name":"C","contentType":"alpha","length":1}])";
    const QByteArray levels = R"("levels":[{"name":"L","ids":{"items":)" + items
        + R"(},"records":[{"name":"R","occurrences":{"required":true,"maximum":1},"items":)" + items + "}]}]";
    const QByteArray defaults = R"("defaults":{"zeroFill":true})";
    for (const QByteArray &keys : { levels + ',' + defaults, defaults + ',' + levels }) {
        const Layout layout = layoutOf('{' + keys + '}');
        QVERIFY(layout.isRead());
        for (const QVector<Item> &list : { layout.levels.at(0).ids, layout.levels.at(0).records.at(0).items }) {
            QVERIFY(list.at(0).zeroFill);
            QVERIFY(!list.at(1).zeroFill);
            QVERIFY(!list.at(2).zeroFill);
        }
    }
}

void CSProJsonLayoutTest::subitemFollowsItsItem()
{
    const Layout layout = layoutOf(
        R"({"relativePositions":true,"levels":[{"name":"L","ids":{"items":[]},"records":[{"name":"R","occurrences":{"required":true,"maximum":1},"items":[
            {"name":"A","contentType":"alpha","length":5},{"name":"B","contentType":"alpha","length":1,"subitem":true,"subitemOffset":2},
            {"name":"C","contentType":"alpha","length":1,"subitem":true,"subitemOffset":0},{"name":"D","contentType":"Image"},
            {"name":"E","contentType":"alpha","length":1,"subitem":true,"start":3}]}]}]})");
    const QVector<Item> items = layout.levels.at(0).records.at(0).items;
    QCOMPARE(items.at(1).subitemOf, QString("A"));
    QCOMPARE(items.at(2).subitemOf, QString("A"));
    QCOMPARE(items.at(4).subitemOf, QString("D"));
    QVERIFY(items.at(4).isSubitem && !items.at(3).isSubitem);
    QCOMPARE(items.at(1).start, 3);
    QCOMPARE(items.at(4).start, 3);
}

void CSProJsonLayoutTest::offsetThatDoesNotCountIsKept()
{
    const Layout layout = layoutOf(
        R"({"relativePositions":false,"levels":[{"name":"L","ids":{"items":[]},"records":[{"name":"R","occurrences":{"required":true,"maximum":1},"items":[
            {"name":"A","contentType":"alpha","length":5,"start":3},{"name":"B","contentType":"alpha","length":1,"subitem":true,"subitemOffset":2,"start":5},
            {"name":"C","contentType":"alpha","length":1,"subitem":true,"subitemOffset":2,"start":4},
            {"name":"D","contentType":"alpha","length":5},{"name":"E","contentType":"alpha","length":1,"subitem":true,"subitemOffset":2}]}]}]})");
    QCOMPARE(extrasOf(layout), QString("subitemOffset=2 subitemOffset=2"));
    QCOMPARE(layout.extras.at(0).path, QString("L/R/C"));
    QCOMPARE(layout.extras.at(1).path, QString("L/R/E"));
    QVERIFY(problemsOf(layout).endsWith("unused-offset no-start unused-offset no-start"));
}

void CSProJsonLayoutTest::elementsTakeNothingFromThoseBefore()
{
    const QByteArray value
        = R"({"special":"MISSING","note":"n","image":"i","textColor":"red","labels":[{"text":"t","language":"EN"}],
        "pairs":[{"value":"1"},{"range":["1",[2]]},{"range":["1","2"]}]})";
    const QByteArray set = R"({"name":"V","link":"k","aliases":["W"],"note":"n","values":[)" + value + ",{}]}";
    const QByteArray item
        = R"({"name":"I","aliases":["J"],"note":"n","contentType":"numeric","length":9,"decimals":2,"decimalMark":true,
        "zeroFill":true,"start":7,"occurrences":{"maximum":3},"capture":{"type":"date","dateFormat":"DD"},"valueSets":[)"
        + set + ",{}]}";
    const QByteArray record
        = R"({"name":"R","aliases":["S"],"note":"n","recordType":"1","occurrences":{"required":false,"maximum":9},"items":[)"
        + item + ",{}]}";
    const QByteArray relation
        = R"({"name":"X","aliases":["Y"],"primary":"P","links":[{"primaryLink":"A","secondary":"B","secondaryLink":"C"},{}]})";
    const Layout layout = layoutOf(R"({"relativePositions":false,"levels":[{"name":"L","note":"n","records":[)" + record
                                   + R"(,{}]},{}],"relations":[)" + relation + ",{}]}");
    const Level &level = layout.levels.at(0);
    const Record &first = level.records.at(0);
    Item noItem;
    noItem.type.clear();
    QCOMPARE(layout.levels.at(1), Level());
    QCOMPARE(level.records.at(1), Record());
    QCOMPARE(first.items.at(1), noItem);
    QCOMPARE(first.items.at(0).valueSets.at(1), ValueSet());
    const QVector<Value> &values = first.items.at(0).valueSets.at(0).values;
    QCOMPARE(values.at(1), Value());
    QCOMPARE(values.at(0).ranges, (QVector<Range>{ { "1", "" }, { "1", "2" } }));
    QCOMPARE(layout.relations.at(1), Relation());
    QCOMPARE(layout.relations.at(0).links.at(1), RelationLink());
}

void CSProJsonLayoutTest::linkedValueSetsShareTheirValues()
{
    const Layout layout = layoutOf(
        R"({"relativePositions":true,"levels":[{"name":"L","ids":{"items":[{"name":"I","contentType":"alpha","length":1,"valueSets":[{"name":"V0","link":"k"}]}]},
            "records":[{"name":"R","occurrences":{"required":true,"maximum":1},"items":[{"name":"A","contentType":"alpha","length":1,"valueSets":[
            {"name":"V1","link":"k","values":[{"pairs":[{"value":"1"}]}]},{"name":"V2","link":"k","values":[]},{"name":"V3","link":"other"},
            {"name":"V4","link":"k","values":[{"pairs":[{"value":"2"}]},{"pairs":[{"value":"3"}]}]}]}]}]}]})");
    const QVector<ValueSet> sets = layout.levels.at(0).records.at(0).items.at(0).valueSets;
    QCOMPARE(layout.levels.at(0).ids.at(0).valueSets.at(0).values, sets.at(3).values);
    QCOMPARE(sets.at(0).values.size(), 1);
    QCOMPARE(sets.at(1).values.constData(), sets.at(3).values.constData());
    QVERIFY(sets.at(2).values.isEmpty());
    QCOMPARE(sets.at(2).link, QString("other"));
}

void CSProJsonLayoutTest::equalTextsShareTheirMemory()
{
    const Layout layout = layoutOf(
        R"({"relativePositions":true,"levels":[{"name":"L","ids":{"items":[{"name":"I","contentType":"alpha","length":1,"valueSets":[{"name":"V0","values":[
            {"labels":[{"text":"Same"}],"pairs":[{"value":"Same"}]},{"labels":[{"text":"Même"}],"pairs":[{"value":"Même"}]}]}]}]}}]})");
    for (const Value &value : layout.levels.at(0).ids.at(0).valueSets.at(0).values)
        QCOMPARE(value.labels.parts.at(0).text.constData(), value.ranges.at(0).from.constData());
}

void CSProJsonLayoutTest::pathsNameTheElementEvenBeforeItsName()
{
    const Layout layout = layoutOf(
        R"({"x":1,"relativePositions":true,"relations":[{"x":2,"links":[{"x":3,"secondary":"S"}],"primary":"P","name":"REL"}],
            "levels":[{"x":4,"ids":{"x":5,"items":[{"x":6,"contentType":"alpha","length":1,"name":"I"}]},"records":[{"x":7,"occurrences":{"required":true,"maximum":1,"x":8},
            "items":[{"x":9,"contentType":"alpha","length":1,"valueSets":[{"x":10,"values":[{},{"x":11,"labels":[{"x":12}],"pairs":[{"x":13,"value":"1"}]}],"name":"V"}],
            "name":"A"}],"name":"R"}],"name":"L"}]})");
    QStringList places;
    for (const Extra &extra : layout.extras)
        places.append(extra.path + ':' + extra.key + '=' + extra.value);
    QCOMPARE(places,
             (QStringList{ ":x=1", "relations/REL:x=2", "relations/REL:links.x=3", "L:x=4", "L/(ids):x=5",
                           "L/(ids)/I:x=6", "L/R:x=7", "L/R:occurrences.x=8", "L/R/A:x=9", "L/R/A/V:x=10",
                           "L/R/A/V/#2:x=11", "L/R/A/V/#2:labels.x=12", "L/R/A/V/#2:pairs.x=13" }));
    for (int index = 0; index < layout.extras.size(); ++index)
        QCOMPARE(layout.problems.at(index).path, layout.extras.at(index).path);
}

void CSProJsonLayoutTest::longNamesInPathsAreCutAndShared()
{
    const QByteArray name(5000, 'L');
    const Layout layout = layoutOf("{\"levels\":[{\"name\":\"" + name + R"(","x":1,"ids":{"items":[{"x":2,"name":")"
                                   + name + R"("}]}}],"relations":[{"x":3,"name":")" + name + "\"}]}");
    const QString cut(200, 'L');
    QCOMPARE(layout.extras.at(0).path, cut);
    QCOMPARE(layout.extras.at(1).path, cut + "/(ids)/" + cut);
    QCOMPARE(layout.extras.at(2).path, "relations/" + cut);
    QCOMPARE(layout.levels.at(0).name, QString(5000, 'L'));
    const Layout keys = layoutOf(R"({"levels":[{"name":"L","a":1,"b":2,"records":[{"name":"R","a":3}]}]})");
    QCOMPARE(keys.extras.at(0).path.constData(), keys.extras.at(1).path.constData());
    QCOMPARE(keys.extras.at(2).path, QString("L/R"));
}

void CSProJsonLayoutTest::messagesAreOneShortLineWhateverTheFileSays()
{
    const QByteArray text = "\"a\\nb\\r" + QByteArray(5000, 'x') + '"';
    const Layout layout
        = layoutOf("{\"fileType\":\"dictionary\",\"levels\":[{\"labels\":[{\"text\":\"l\",\"language\":" + text
                   + "}],\"ids\":{\"items\":[{\"contentType\":" + text + "}]}," + text + ":1," + text + ":2}]}");
    QVERIFY(layout.isRead());
    QVERIFY(problemsOf(layout).contains("unknown-type"));
    QVERIFY(problemsOf(layout).contains("undeclared-language"));
    QVERIFY(problemsOf(layout).contains("unknown-key repeated-key"));
    const Layout other = layoutOf("{\"fileType\":" + text + '}');
    for (const Problem &problem : layout.problems + other.problems) {
        QVERIFY2(!problem.message.contains('\n') && !problem.message.contains('\r'), qPrintable(problem.message));
        QVERIFY2(problem.message.size() < 200, qPrintable(problem.message));
    }
}

void CSProJsonLayoutTest::undeclaredLanguageIsReportedOnceWhereItComesFirst()
{
    const Layout layout = layoutOf(
        R"({"labels":[{"text":"a","language":"en"},{"text":"b","language":"FR"}],"relativePositions":true,"recordType":{"start":0,"length":0},"name":"D",
            "levels":[{"name":"L","labels":[{"text":"c","language":"SW"},{"text":"d","language":"fr"}],"ids":{"items":[{"name":"I","contentType":"alpha","length":1,
            "labels":[{"text":"e","language":"sw"}]}]}}],"languages":[{"name":"FR","label":"F"},{"name":"EN","label":"E"}]})");
    QCOMPARE(problemsOf(layout), QString("undeclared-language"));
    QCOMPARE(layout.problems.at(0).path, QString("L"));
    QVERIFY(layout.problems.at(0).message.contains("\"SW\""));
}

void CSProJsonLayoutTest::fileThatIsNoDictionaryIsNamed_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("part");
    QTest::newRow("application") << QByteArray(R"({"software":"CSPro","fileType":"application","levels":[]})")
                                 << "\"application\"";
    QTest::newRow("GeoJSON") << QByteArray(R"({"type":"FeatureCollection","name":"x","features":[{"levels":[]}]})")
                             << "none of the keys";
    QTest::newRow("package description") << QByteArray(R"({"name":"x","version":"1.0.0"})") << "none of the keys";
    QTest::newRow("list of objects") << QByteArray("[ {\"levels\":[]} ]") << "a JSON list";
    QTest::newRow("list of numbers after a comment") << QByteArray("// x\n[1]") << "a JSON list";
    QTest::newRow("empty list") << QByteArray("\xef\xbb\xbf []") << "a JSON list";
    QTest::newRow("empty object") << QByteArray("{}") << "none of the keys";
    QTest::newRow("levels that are no list") << QByteArray(R"({"levels":3})") << "none of the keys";
}

void CSProJsonLayoutTest::fileThatIsNoDictionaryIsNamed()
{
    QFETCH(QByteArray, bytes);
    const Layout layout = layoutOf(bytes);
    QVERIFY(!layout.isRead());
    QCOMPARE(layout.error()->id, QString("no-dictionary"));
    QFETCH(QString, part);
    QVERIFY2(layout.error()->message.contains(part), qPrintable(layout.error()->message));
    QCOMPARE(layout.problems.size(), 1);
}

void CSProJsonLayoutTest::damagedJsonIsReportedWithItsPlace_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("message");
    const auto add = [](const char *name, const QByteArray &bytes, int line, const char *message) {
        QTest::newRow(name) << bytes << line << message;
    };
    add("no comma", "{\n  \"name\": \"A\"\n  \"levels\": []\n}", 3,
        "damaged JSON at byte 18: missing a comma or '}' after an object member");
    add("comma after the last", "{\"levels\":[],}", 1, "damaged JSON at byte 13: missing a name for object member");
    add("comma after the last entry", "{\"levels\":[1,]}", 1, "damaged JSON at byte 13: invalid value");
    add("after a mark", "\xef\xbb\xbf{\n x}", 2, "damaged JSON at byte 6: missing a name for object member");
    add("bytes after it", "{\"levels\":[]}\n\nmore", 3,
        "damaged JSON at byte 15: the document root must not be followed by other values");
    add("a second object", "{\"levels\":[]}{}", 1,
        "damaged JSON at byte 13: the document root must not be followed by other values");
    add("NUL after it", QByteArray("{\"levels\":[]}\n\0", 15), 2,
        "damaged JSON at byte 14: a NUL character follows the document");
    add("NUL in a text", QByteArray("{\"a\":\"\0\"}", 9), 1,
        "damaged JSON at byte 6: a text has no closing quotation mark");
    add("tab in a text", "{\"a\":\"\t\"}", 1, "damaged JSON at byte 6: a control character in a text is not escaped");
    add("unknown escape", "{\"a\":\"\\x\"}", 1, "damaged JSON at byte 6: invalid escape character in string");
    add("half an escape", "{\"a\":\"\\u12\"}", 1,
        "damaged JSON at byte 6: incorrect hex digit after \\u escape in string");
    add("number beyond all bounds", "{\"a\":1e999}", 1,
        "damaged JSON at byte 5: number too big to be stored in double");
    add("comment without end", "{/*", 1, "damaged JSON at byte 3: a comment is incomplete");
    add("single quotes", "{'a':1}", 1, "damaged JSON at byte 1: missing a name for object member");
}

void CSProJsonLayoutTest::damagedJsonIsReportedWithItsPlace()
{
    QFETCH(QByteArray, bytes);
    const Layout layout = layoutOf(bytes);
    QVERIFY(!layout.isRead());
    QCOMPARE(layout.error()->id, QString("damaged-json"));
    QTEST(layout.error()->message, "message");
    QTEST(layout.error()->line, "line");
    QVERIFY(layout.levels.isEmpty());
}

void CSProJsonLayoutTest::everyCutFileIsDamaged()
{
    const QByteArray whole = dictionaryOf();
    for (int size = 1; size < whole.size(); ++size)
        QCOMPARE(layoutOf(whole.left(size)).error()->id, QString("damaged-json"));
}

void CSProJsonLayoutTest::depthCostsNoStack()
{
    constexpr int depth = 500'000;
    const QByteArray nested = QByteArray(depth, '[') + QByteArray(depth, ']');
    const Layout layout = layoutOf("{\"levels\":[],\"x\":" + nested + ",\"y\":" + QByteArray("{\"a\":").repeated(depth)
                                   + '1' + QByteArray(depth, '}') + '}');
    QVERIFY(layout.isRead());
    QCOMPARE(layout.extras.at(0).value, QString::fromLatin1(nested));
    QCOMPARE(layout.extras.at(1).key, QString("y"));
}

void CSProJsonLayoutTest::nestingHasABound()
{
    const Layout layout = layoutOf("{\"levels\":[],\"x\":" + QByteArray(1'000'001, '['));
    QCOMPARE(layout.error()->id, QString("damaged-json"));
    QVERIFY2(layout.error()->message.endsWith("more than 1000000 levels of nesting"),
             qPrintable(layout.error()->message));
}

void CSProJsonLayoutTest::manyUnknownKeysTakeLinearTime()
{
    constexpr int count = 200'000;
    QByteArray json = "{\"levels\":[]";
    for (int key = 0; key < count; ++key)
        json += ",\"k" + QByteArray::number(key) + "\":" + QByteArray::number(key);
    const Layout layout = layoutOf(json + '}');
    QCOMPARE(layout.extras.size(), count);
    QCOMPARE(layout.extras.constLast().value, QString::number(count - 1));
}

void CSProJsonLayoutTest::realDictionariesAreWithoutFindings()
{
    const QDir directory(QStringLiteral(VAN_CORPUS "/cspro-json"));
    if (!directory.exists())
        QSKIP("the corpus is not available");
    const QStringList names = directory.entryList({ "*.dcf" });
    QVERIFY(names.size() >= 24);
    for (const QString &name : names) {
        const Layout layout = readLayout(directory.filePath(name));
        QVERIFY2(layout.isRead(), qPrintable(name));
        QVERIFY2(layout.problems.isEmpty(), qPrintable(name + ": " + problemsOf(layout)));
        QVERIFY2(layout.extras.isEmpty(), qPrintable(name + ": " + extrasOf(layout)));
    }
}

QTEST_APPLESS_MAIN(CSProJsonLayoutTest)
#include "CSProJsonLayoutTest.moc"
