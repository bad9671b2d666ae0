#include "support/MeasuredRun.h"
#include "support/NotesLine.h"

#include <QtTest>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

using nlohmann::json;

/// Reads all dictionaries of the corpus with the command line, and compares the output with the fields that the test
/// finds in the JSON document itself.
class CSProJsonCorpusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyFileIsRead_data();
    void everyFileIsRead();

private:
    QTemporaryDir directory;
};

namespace
{

const QString corpus = QStringLiteral(VAN_CORPUS "/cspro-json");

constexpr qint64 memoryOfAByte = 60;

json member(const json &object, const char *key)
{
    return object.is_object() && object.contains(key) ? object.at(key) : json();
}

json firstOf(const json &array)
{
    return array.is_array() && !array.empty() ? array.front() : json();
}

json list(const json &object, const char *key)
{
    const json value = member(object, key);
    return value.is_array() ? value : json::array();
}

std::string text(const json &object, const char *key)
{
    const json value = member(object, key);
    return value.is_string() ? value.get<std::string>() : std::string();
}

// The files contain only whole numbers, which fit into an int.
int number(const json &object, const char *key, int otherwise)
{
    const json value = member(object, key);
    return value.is_number_integer() ? value.get<int>() : otherwise;
}

std::string label(const json &object)
{
    return text(firstOf(member(object, "labels")), "text");
}

std::string codeOf(const json &value)
{
    const json pair = firstOf(member(value, "pairs"));
    if (!member(pair, "value").is_null())
        return text(pair, "value");
    const json range = list(pair, "range");
    return range.size() == 2 ? range.at(0).get<std::string>() + ':' + range.at(1).get<std::string>() : std::string();
}

// A number as in the layout; a text that is not a number is 0.
double toNumber(const std::string &code)
{
    char *end = nullptr;
    const double value = std::strtod(code.c_str(), &end);
    return end != code.c_str() && *end == '\0' ? value : 0;
}

std::string shortest(double value)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%g", value);
    return buffer;
}

// The expected properties of a field.
struct Field {
    std::string name;
    std::string label;
    std::string type;
    std::string group;
    int length = 0;
    int start = 0;
    std::string minimum;
    std::string maximum;
    std::string valueLabels;

    QString line() const
    {
        return QString::fromStdString(name + '/' + label + '/' + type + '/' + group + '/' + std::to_string(length) + '/'
                                      + std::to_string(start) + '/' + minimum + '/' + maximum + '/' + valueLabels);
    }
};

// The expected field without its name and start.
Field describe(const json &item, const std::string &group)
{
    std::string contentType = text(item, "contentType");
    std::transform(contentType.begin(), contentType.end(), contentType.begin(),
                   [](unsigned char c) { return std::tolower(c); });
    Field field;
    field.label = label(item);
    field.group = group;
    field.length = number(item, "length", 0);
    const bool isNumeric = contentType != "alpha";
    field.type = !isNumeric ? "STRING" : field.length <= 9 ? "INTEGER" : "REAL";
    if (isNumeric) {
        field.minimum = "0";
        field.maximum = std::string(size_t(std::max(field.length, 0)), '9');
    }
    const json set = firstOf(member(item, "valueSets"));
    if (!set.is_object())
        return field;
    double lowest = 0;
    double highest = 0;
    bool isFirst = true;
    for (const json &value : list(set, "values")) {
        const std::string code = codeOf(value);
        const double codeNumber = toNumber(code);
        lowest = isFirst ? codeNumber : std::min(lowest, codeNumber);
        highest = isFirst ? codeNumber : std::max(highest, codeNumber);
        isFirst = false;
        field.valueLabels += (field.type == "INTEGER" ? shortest(codeNumber) : code) + ' ' + label(value) + '\t';
    }
    field.minimum = isNumeric ? shortest(lowest) : "0";
    if (isNumeric && !isFirst)
        field.maximum = shortest(highest);
    return field;
}

struct Expectation {
    QStringList groups;
    QStringList fields;
};

void addItems(const json &items, bool canRepeat, const std::string &group, QStringList &fields)
{
    int position = 1;
    for (const json &item : items) {
        Field field = describe(item, group);
        const std::string name = text(item, "name");
        const int start = number(item, "start", position);
        const int count = canRepeat ? number(member(item, "occurrences"), "maximum", 1) : 1;
        for (int i = 0; i < std::max(count, 1); ++i) {
            field.name = count > 1 ? name + '_' + std::to_string(i + 1) : name;
            field.start = start + i * field.length;
            fields.append(field.line());
        }
        position = start + std::max(field.length, 1) * std::max(count, 1);
    }
}

Expectation expectationOf(const json &dictionary)
{
    Expectation expected;
    const bool hasRecordTypes = number(member(dictionary, "recordType"), "length", 0) > 0;
    const json levels = list(dictionary, "levels");
    for (const json &level : levels)
        addItems(list(member(level, "ids"), "items"), false, hasRecordTypes ? "Common" : "", expected.fields);
    for (const json &level : levels) {
        for (const json &record : list(level, "records")) {
            const std::string name = text(record, "name");
            expected.groups.append(QString::fromStdString(name + '=' + text(record, "recordType")));
            addItems(list(record, "items"), true, hasRecordTypes ? name : "", expected.fields);
        }
    }
    return expected;
}

QStringList groupsOf(const json &layout)
{
    QStringList groups;
    for (const json &group : list(member(layout, "importer"), "groups"))
        groups.append(QString::fromStdString(text(group, "name")));
    return groups;
}

QStringList fieldsOf(const json &layout)
{
    QStringList fields;
    for (const json &value : list(layout, "fields")) {
        Field field;
        field.name = text(value, "name");
        field.label = text(value, "label");
        field.type = text(value, "type");
        field.group = text(value, "group");
        field.length = number(value, "length", -1);
        field.start = number(value, "start", -1);
        field.minimum = text(value, "minimum");
        field.maximum = text(value, "maximum");
        field.valueLabels = text(value, "valueLabelText");
        fields.append(field.line());
    }
    return fields;
}

} // namespace

void CSProJsonCorpusTest::initTestCase()
{
    if (!QFileInfo(corpus).isDir())
        QSKIP("the corpus is not available");
    QVERIFY(directory.isValid());
    QVERIFY(QFileInfo(QStringLiteral(VAN_TOOL)).isExecutable());
    qputenv("LC_ALL", "C.UTF-8");
    qunsetenv("QT_LOGGING_RULES");
}

void CSProJsonCorpusTest::everyFileIsRead_data()
{
    QTest::addColumn<QString>("fileName");
    const QFileInfoList files = QDir(corpus).entryInfoList(QDir::Files);
    QVERIFY(!files.isEmpty());
    for (const QFileInfo &file : files)
        QTest::newRow(qPrintable(file.fileName())) << file.filePath();
}

void CSProJsonCorpusTest::everyFileIsRead()
{
    QFETCH(QString, fileName);

    const QByteArray bytes = contentOf(fileName);
    const json document = json::parse(bytes.constData(), bytes.constData() + bytes.size(), nullptr, false);
    QVERIFY(document.is_object());
    const MeasuredRun run = showAsJson(fileName, directory);
    QVERIFY2(run.isInTime, "took too long");
    QVERIFY2(WIFEXITED(run.status), run.err.constData());
    if (measuresMemory) {
        const qint64 limit = memoryOfAnyRun + memoryOfAByte * bytes.size();
        QVERIFY2(run.peakMemory <= limit, qPrintable(QString::number(run.peakMemory)));
    }
    QCOMPARE(withoutNotesLine(run.err), QByteArray());
    QCOMPARE(WEXITSTATUS(run.status), 0);

    const Expectation expected = expectationOf(document);
    QVERIFY(!expected.fields.isEmpty());
    const json layout = json::parse(run.out.constData(), run.out.constData() + run.out.size(), nullptr, false);
    QVERIFY(layout.is_object());
    const json importer = member(layout, "importer");
    QCOMPARE(text(importer, "type"), std::string("CSPRO8"));
    QCOMPARE(text(importer, "id"), "CSPRO8_" + fileName.toStdString());
    QCOMPARE(member(importer, "multiple"), json(number(member(document, "recordType"), "length", 0) > 0));
    QCOMPARE(groupsOf(layout), expected.groups);
    const QStringList fields = fieldsOf(layout);
    QCOMPARE(fields.size(), expected.fields.size());
    for (int i = 0; i < fields.size(); ++i)
        QCOMPARE(fields.at(i), expected.fields.at(i));
}

QTEST_GUILESS_MAIN(CSProJsonCorpusTest)
#include "CSProJsonCorpusTest.moc"
