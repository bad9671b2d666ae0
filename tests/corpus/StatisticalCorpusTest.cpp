#include "statistical/SPSSDataImport.h"
#include "statistical/STATADataImport.h"
#include "support/Corpus.h"

#include <QtTest>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <readstat.h>

#include <cstring>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

struct TestAccess {
    static const QList<TGenericField *> &opened(TDataImport &importer)
    {
        importer.openFile();
        return *importer.fields;
    }
};

namespace
{

const QString corpus = QStringLiteral(VAN_CORPUS);

// The contents of a file as found by a plain ReadStat program.
struct PlainLabel {
    readstat_type_t type;
    double number;
    std::string text;
    std::string label;
};

struct PlainVariable {
    std::string name;
    std::string label;
    std::string format;
    readstat_type_t type;
    size_t storage;
    bool hasSet;
    std::string set;
};

struct PlainFile {
    std::map<std::string, std::vector<PlainLabel>> sets;
    std::vector<PlainVariable> variables;
    readstat_error_t error = READSTAT_OK;
};

int takeLabel(const char *set, readstat_value_t value, const char *label, void *context)
{
    PlainLabel taken = { value.type, 0, "", label ? label : "" };
    if (value.type == READSTAT_TYPE_STRING) {
        // In a file that ReadStat rejects later, it may report a null text.
        if (const char *text = readstat_string_value(value))
            taken.text = text;
    } else if (value.type == READSTAT_TYPE_DOUBLE) {
        taken.number = value.v.double_value;
    } else {
        taken.number = readstat_int32_value(value);
    }
    if (label)
        static_cast<PlainFile *>(context)->sets[set].push_back(taken);
    return READSTAT_HANDLER_OK;
}

int takeVariable(int /*index*/, readstat_variable_t *variable, const char *set, void *context)
{
    static_cast<PlainFile *>(context)->variables.push_back({ variable->name, variable->label, variable->format,
                                                             variable->type, variable->storage_width, set != nullptr,
                                                             set ? set : "" });
    return READSTAT_HANDLER_OK;
}

readstat_error_t pass(const QByteArray &path, bool isStata, bool takesLabels, PlainFile &file)
{
    readstat_parser_t *parser = readstat_parser_init();
    if (takesLabels)
        readstat_set_value_label_handler(parser, takeLabel);
    else
        readstat_set_variable_handler(parser, takeVariable);
    const readstat_error_t error = isStata ? readstat_parse_dta(parser, path.constData(), &file)
                                           : readstat_parse_sav(parser, path.constData(), &file);
    readstat_parser_free(parser);
    return error;
}

// Two passes with one handler each. ReadStat names the set of a text of more than eight bytes only where both are
// installed, so such labels are not found.
PlainFile plainlyRead(const QString &path, bool isStata)
{
    PlainFile file;
    const QByteArray local = QFile::encodeName(path);
    pass(local, isStata, true, file);
    file.error = pass(local, isStata, false, file);
    return file;
}

QString decoded(const std::string &bytes, bool isStata)
{
    return isStata ? QString::fromLatin1(bytes.c_str()) : QString::fromUtf8(bytes.c_str());
}

int decimalsOf(const std::string &format)
{
    const size_t point = format.find('.');
    return point == std::string::npos ? 0 : std::atoi(format.c_str() + point + 1);
}

// One expected field, from the rules.
QStringList expectedField(const PlainVariable &variable, PlainFile &file, bool isStata)
{
    const bool isText = variable.type == READSTAT_TYPE_STRING;
    const bool isFloating = variable.type == READSTAT_TYPE_FLOAT || variable.type == READSTAT_TYPE_DOUBLE;
    const int decimals = decimalsOf(variable.format);
    const int type = isText ? 3 : isFloating && (isStata || decimals != 0) ? 2 : 1;
    int width = int(variable.storage);
    if (!isStata)
        width = variable.format.size() > 1 ? QString(QLatin1Char(variable.format[1])).toInt() : 0;
    QString minimum = isText && !isStata ? QString() : QStringLiteral("0");
    QString maximum = isText && !isStata ? QString() : QString(width, QLatin1Char('9'));
    QString labels;
    if (variable.hasSet && file.sets.count(variable.set)) {
        double lower = 999999999.0;
        double upper = -999999999.0;
        for (PlainLabel &label : file.sets[variable.set]) {
            char value[512];
            if (label.type == READSTAT_TYPE_STRING) {
                std::snprintf(value, sizeof(value), "%s", label.text.c_str());
            } else {
                if (!isStata && decimals == 0 && label.type == READSTAT_TYPE_DOUBLE && label.number != -1.0) {
                    const bool fits = label.number > -2147483649.0 && label.number < 2147483648.0;
                    label.number = fits ? int(label.number) : std::numeric_limits<int>::min();
                    label.type = READSTAT_TYPE_INT32;
                }
                if (label.number == -1.0)
                    continue;
                if (label.type == READSTAT_TYPE_DOUBLE)
                    std::snprintf(value, sizeof(value), "%f", label.number);
                else
                    std::snprintf(value, sizeof(value), "%d", int(label.number));
                if (label.number < lower)
                    lower = label.number;
                if (label.number > upper)
                    upper = label.number;
            }
            labels += decoded(value, isStata) + ' ' + decoded(label.label, isStata) + '\t';
        }
        if (!isText && lower != 999999999.0)
            minimum = QString::number(lower);
        if (!isText && upper != -999999999.0)
            maximum = QString::number(upper);
    }
    return { QString::fromUtf8(variable.name.c_str()),
             decoded(variable.label, isStata),
             QString::number(type),
             QString::number(width),
             minimum,
             maximum,
             labels };
}

QList<QStringList> expectedFields(PlainFile file, bool isStata)
{
    QList<QStringList> fields;
    for (const PlainVariable &variable : file.variables)
        fields.append(expectedField(variable, file, isStata));
    return fields;
}

template <typename Importer> QList<QStringList> importedFields(const QString &path, bool isBuffered)
{
    Importer importer(path);
    importer.setReadingBuffered(isBuffered);
    QList<QStringList> fields;
    for (const TGenericField *field : TestAccess::opened(importer)) {
        fields.append({ field->name, field->label, QString::number(int(field->type)), QString::number(field->length),
                        field->minimum, field->maximum, field->valueLabels });
    }
    return fields;
}

// The fields that the tool prints, with the type converted back to a number.
QList<QStringList> shownFields(const QString &path, bool isStata)
{
    QProcess tool;
    tool.start(QStringLiteral(VAN_TOOL),
               { "fields", "--format", "json", "--type", QLatin1String(isStata ? "stata" : "spss"), path });
    tool.waitForFinished();
    const QStringList types
        = { QString(), QStringLiteral("INTEGER"), QStringLiteral("REAL"), QStringLiteral("STRING") };
    QList<QStringList> fields;
    const QJsonObject layout = QJsonDocument::fromJson(tool.readAllStandardOutput()).object();
    const QJsonArray shown = layout[QLatin1String("fields")].toArray();
    for (const QJsonValue &value : shown) {
        const QJsonObject field = value.toObject();
        const auto text = [&](const char *key) { return field[QLatin1String(key)].toString(); };
        fields.append({ text("name"), text("label"), QString::number(types.indexOf(text("type"))),
                        QString::number(field[QLatin1String("length")].toInt()), text("minimum"), text("maximum"),
                        text("valueLabelText") });
    }
    return fields;
}

void compare(const QList<QStringList> &actual, const QList<QStringList> &expected)
{
    QCOMPARE(actual.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i)
        QCOMPARE(actual.at(i), expected.at(i));
}

} // namespace

/// Compares the fields of all Stata and SPSS files of the corpus with the contents that a plain ReadStat program finds.
class StatisticalCorpusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!QDir(corpus).exists())
            QSKIP("the corpus is not available");
    }

    void everyFileIsRead_data()
    {
        QTest::addColumn<QString>("path");
        for (const QString &directory : { QStringLiteral("spss"), QStringLiteral("stata") }) {
            const QStringList files = corpusFiles(directory);
            QVERIFY(!files.isEmpty());
            for (const QString &file : files)
                QTest::newRow(qPrintable(directory + '/' + QFileInfo(file).fileName())) << file;
        }
    }
    void everyFileIsRead()
    {
        QFETCH(QString, path);
        const bool isStata = path.endsWith(QLatin1String(".dta"));
        const PlainFile file = plainlyRead(path, isStata);
        const QList<QStringList> expected = expectedFields(file, isStata);
        QCOMPARE(int(file.error), refused().value(QFileInfo(path).fileName(), int(READSTAT_OK)));
        QCOMPARE(expected.isEmpty(), file.error != READSTAT_OK);
        for (const bool isBuffered : { false, true }) {
            compare(isStata ? importedFields<TSTATADataImport>(path, isBuffered)
                            : importedFields<TSPSSDataImport>(path, isBuffered),
                    expected);
        }
        if (!expected.isEmpty())
            compare(shownFields(path, isStata), expected);
    }

private:
    /// The files that ReadStat rejects, with its error code.
    static QHash<QString, int> refused()
    {
        return {
            { QStringLiteral("polars-stata4-102.dta"), int(READSTAT_ERROR_UNSUPPORTED_FILE_FORMAT_VERSION) },
            { QStringLiteral("polars-stata4-103.dta"), int(READSTAT_ERROR_UNSUPPORTED_FILE_FORMAT_VERSION) },
            { QStringLiteral("tiamo-data12.sav"), int(READSTAT_ERROR_CONVERT_BAD_STRING) },
        };
    }
};

QTEST_APPLESS_MAIN(StatisticalCorpusTest)
#include "StatisticalCorpusTest.moc"
