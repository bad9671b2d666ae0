#include "support/NotesLine.h"
#include "support/OrdinaryUser.h"
#include "support/PseudoTerminal.h"
#include "support/Sanitizer.h"
#include "support/ToolRun.h"

#include <QtTest>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTextCodec>

#include <clocale>
#include <cstdlib>
#include <cwchar>
#include <functional>
#include <memory>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

QList<QByteArray> linesOf(const QByteArray &text)
{
    QList<QByteArray> lines = text.split('\n');
    if (lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

// A process that runs a function in the child before it executes the tool.
class PreparedProcess : public QProcess
{
public:
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    explicit PreparedProcess(std::function<void()> work)
        : prepare(std::move(work))
    {
    }

protected:
    void setupChildProcess() override
    {
        if (prepare)
            prepare();
    }

private:
    std::function<void()> prepare;
#else
    explicit PreparedProcess(const std::function<void()> &work)
    {
        if (work)
            setChildProcessModifier(work);
    }
#endif
};

using Variables = QMap<QString, QString>; // a null value unsets

Variables display(const QString &platform)
{
    return { { QStringLiteral("DISPLAY"), QString() },
             { QStringLiteral("WAYLAND_DISPLAY"), QString() },
             { QStringLiteral("QT_QPA_PLATFORM"), platform } };
}

// JSON without the blanks between its tokens.
QByteArray compact(const QByteArray &json)
{
    QByteArray result;
    bool isInText = false;
    for (int i = 0; i < json.size(); ++i) {
        const char c = json.at(i);
        if (isInText && c == '\\') {
            result += c;
            result += json.at(++i);
            continue;
        }
        if (c == '"')
            isInText = !isInText;
        if (isInText || !std::isspace(uchar(c)))
            result += c;
    }
    return result;
}

bool isUtf8(const QByteArray &bytes)
{
    QTextCodec::ConverterState state;
    QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

// The cells of a CSV file by RFC 4180.
QVector<QStringList> csvCells(const QByteArray &csv)
{
    QVector<QStringList> rows;
    QStringList row;
    QByteArray cell;
    bool isQuoted = false;
    for (int i = 0; i < csv.size(); ++i) {
        const char c = csv.at(i);
        const char next = i + 1 < csv.size() ? csv.at(i + 1) : '\0';
        if (isQuoted && c == '"' && next == '"') {
            cell += c;
            ++i;
        } else if (c == '"') {
            isQuoted = !isQuoted;
        } else if (!isQuoted && (c == ',' || (c == '\r' && next == '\n'))) {
            row.append(QString::fromUtf8(cell));
            cell.clear();
            if (c == '\r') {
                rows.append(row);
                row.clear();
                ++i;
            }
        } else {
            cell += c;
        }
    }
    return rows;
}

// The columns of a text on a terminal, by the C library.
int terminalColumns(const QString &text)
{
    int columns = 0;
    for (const uint character : text.toUcs4())
        columns += wcwidth(wchar_t(character));
    return columns;
}

QByteArray repeated(const QByteArray &text, int count)
{
    return text.repeated(count);
}

constexpr int megabyte = 1 << 20;

void limit(__rlimit_resource resource, rlim_t most)
{
    const rlimit bounds = { most, most };
    if (setrlimit(resource, &bounds) != 0)
        _exit(127);
}

// Limits the memory for the data of a process; its code does not count.
std::function<void()> memoryOf(rlim_t bytes)
{
    return [bytes] { limit(RLIMIT_DATA, bytes); };
}

// Limits the processor time of a process; a process that exceeds it ends by a signal.
std::function<void()> processorTimeOf(rlim_t seconds)
{
    return [seconds] { limit(RLIMIT_CPU, seconds); };
}

// Makes a process write its standard output to a full disk.
void writeToFullDisk()
{
    const int disk = open("/dev/full", O_WRONLY);
    if (disk < 0 || dup2(disk, STDOUT_FILENO) < 0)
        _exit(127);
}

// A pipe that contains a text and its end; the text is small enough to be written without a reader.
class FilledPipe
{
public:
    explicit FilledPipe(const QByteArray &text)
    {
        int ends[2] = {};
        if (pipe(ends) != 0 || ::write(ends[1], text.constData(), size_t(text.size())) != text.size())
            qFatal("a pipe cannot be filled");
        close(ends[1]);
        end = ends[0];
    }
    ~FilledPipe() { close(end); }
    FilledPipe(const FilledPipe &) = delete;
    FilledPipe &operator=(const FilledPipe &) = delete;

    // Makes it the standard input of a process.
    std::function<void()> asInput() const
    {
        return [from = end] { dup2(from, STDIN_FILENO); };
    }

private:
    int end = -1;
};

} // namespace

Q_DECLARE_METATYPE(Variables)

class VanlayoutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    // JSON
    void jsonHasEveryKeyInItsOrder();
    void jsonOfADictionaryWithoutRecordTypesHasNoGroupInItsFields();
    void severalFilesGiveOneJsonObjectALine();
    void controlCharactersAreEscapedInJson();
    void halfOfASurrogatePairInANameIsValidJson();
    void valueLabelsAreCutAtTabsAndTheFirstBlank_data();
    void valueLabelsAreCutAtTabsAndTheFirstBlank();
    void errorOfTheLibraryIsAnObjectWithItsLine_data();
    void errorOfTheLibraryIsAnObjectWithItsLine();
    void errorOfTheLibraryIsOneLineAmongSeveralFiles();
    void errorOfTheLibraryLeavesTheOtherFormsEmpty_data();
    void errorOfTheLibraryLeavesTheOtherFormsEmpty();

    // CSV
    void csvHasAHeaderAndALineAField();
    void csvOfSeveralFilesHasAFirstColumnFile();
    void csvQuotesWhatNeedsIt();

    // table
    void tableIsTheDefaultForm();
    void tableHeadingNamesFileTypeGroupsAndCount();
    void tableColumnsAreAligned();
    void severalTablesHaveAHeadingEach();
    void longLabelsAreCutToTheWidth_data();
    void longLabelsAreCutToTheWidth();
    void withoutAWidthLabelsAreNotCut_data();
    void withoutAWidthLabelsAreNotCut();
    void widthIsThatOfTheTerminal();
    void otherFormsAreNeverCut();
    void wideAndCombiningCharactersAreAligned_data();
    void wideAndCombiningCharactersAreAligned();
    void wideLabelsAreCutToTheWidth();
    void tableSendsNoControlCharacters();
    void otherCharactersAreShownUnchanged();
    void verboseSendsNoControlCharacters();
    void complaintSendsNoControlCharacters();

    // statuses
    void noAnswerIsStatus2AndOneLine_data();
    void noAnswerIsStatus2AndOneLine();
    void wrongUseIsStatus2AndOneLine_data();
    void wrongUseIsStatus2AndOneLine();
    void complaintNamesAWordThatIsNoCommand();
    void emptyFileNameIsShownInQuotes();
    void fileWithoutAVariableIsReportedWithItsType();
    void fileWithoutPermissionIsStatus2AndOneLine();
    void worstStatusCountsAndTheOtherFilesAreShown_data();
    void worstStatusCountsAndTheOtherFilesAreShown();
    void eachFileWithoutAnAnswerHasItsLine();
    void fullDiskIsStatus2AndOneLine_data();
    void fullDiskIsStatus2AndOneLine();
    void fullDiskIsStatus2ForHelpAndVersionToo_data();
    void fullDiskIsStatus2ForHelpAndVersionToo();

    // pipes
    void textDictionaryIsReadFromStandardInput();
    void textDictionaryIsReadFromAFifo();
    void namedPipeIsReadAsATextDictionary();
    void pipeThatIsOpenAlreadyIsSeenAsWhatItIs_data();
    void pipeThatIsOpenAlreadyIsSeenAsWhatItIs();
    void jsonDictionaryIsNotReadFromAPipe_data();
    void jsonDictionaryIsNotReadFromAPipe();

    // large inputs
    void memoryThatGivesOutIsStatus2AndOneLine();
    void memoryThatGivesOutLeavesTheOtherFiles();
    void memoryOfAFileThatIsTooLargeIsThereForTheNext();
    void tableKeepsNoRowsAndCutsItsRanges();
    void emptyLinesTakeAFewTimesTheirSize();
    void manyRecordsArePrintedInAFewSeconds();

    // types
    void statisticalFilesAreShown_data();
    void statisticalFilesAreShown();
    void failureInAStataFileIsReportedOnStandardError();
    void whatIsWrittenOfAPartOfAStataFileSaysSo();
    void failureInAnSpssFileIsOneLine();
    void statisticalFilesAreNotReadFromAPipe();
    void typeGoesByContent_data();
    void typeGoesByContent();
    void typeIgnoresTheFileName();
    void namedTypeOverrulesTheContent_data();
    void namedTypeOverrulesTheContent();

    // decimals
    void decimalsAnswersTheQuestion_data();
    void decimalsAnswersTheQuestion();
    void askWithoutADisplayIsStatus2AndOneLine();
    void askOnABogusPlatformIsStatus2AndNoCrash();
    void askShowsNoDialogWhereThereIsNoQuestion();

    // standard error and standard output
    void debugLinesNeedVerbose_data();
    void debugLinesNeedVerbose();
    void verboseLeavesStandardOutputClean_data();
    void verboseLeavesStandardOutputClean();
    void helpGoesToStandardOutput_data();
    void helpGoesToStandardOutput();
    void versionGoesToStandardOutput();

    // locale and file names
    void textsAreUtf8InEveryLocale_data();
    void textsAreUtf8InEveryLocale();
    void oldTextIsInTheEncodingOfTheLocale();
    void anyFileNameIsShown_data();
    void anyFileNameIsShown();

private:
    QString pathOf(const QString &name) const { return directory->filePath(name); }
    void write(const QString &name, const QByteArray &content) const { directory->write(name, content); }
    Run run(const QStringList &arguments, const Variables &variables = {},
            const std::function<void()> &prepare = nullptr) const;
    Run show(const QByteArray &content, const QStringList &options = {}, const Variables &variables = {}) const;
    QJsonArray fieldsOf(const QByteArray &content) const;
    QList<QByteArray> rowsOf(const QByteArray &content, const Variables &variables = {}) const;

    std::unique_ptr<ToolDirectory> directory;
};

namespace
{

const QByteArray survey = R"([Dictionary]
Version=CSPro 7.7
Label=Survey
Name=SURVEY
RecordTypeStart=1
RecordTypeLen=1
Positions=Relative

[Level]
Label=Level
Name=LEVEL

[IdItems]

[Item]
Label=Province
Name=PROVINCE
Start=2
Len=2
DataType=Numeric

[ValueSet]
Label=Provinces
Name=PROVINCE_VS1
Value=1;Artesia
Value=2;Copal
Value=15;San Durdia
Value=99;Not known
Name=MISSING ,Special
Value=98;Not asked
Name=NOTAPPL ,Special

[Record]
Label=House
Name=HOUSE
RecordTypeValue='1'

[Item]
Label=Owner, "head"
Name=OWNER
Start=4
Len=20
DataType=Alpha

[Item]
Label=Rent
Name=RENT
Start=24
Len=7
DataType=Numeric
Decimal=2

[Record]
Label=Person
Name=PERSON
RecordTypeValue='2'

[Item]
Label=Age
Name=AGE
Start=4
Len=3
Occurrences=2
)";

// A CSPro 8 JSON dictionary; its first byte is the brace.
const QByteArray survey8 = R"({
  "software": "CSPro",
  "version": 8.0,
  "name": "SURVEY",
  "recordType": { "start": 1, "length": 1 },
  "levels": [
    {
      "ids": { "items": [ { "name": "PROVINCE", "start": 2, "length": 2 } ] },
      "records": [
        {
          "name": "HOUSE",
          "recordType": "1",
          "items": [ { "name": "OWNER", "contentType": "alpha", "start": 4, "length": 20 }, { "name": "RENT", "length": 7 } ]
        }
      ]
    }
  ]
}
)";

// The output of `fields --format json survey.dcf`, without blanks between tokens.
const QByteArray surveyJson = compact(R"({
  "importer": {
    "type": "CSPRO", "id": "CSPRO_survey.dcf", "multiple": true,
    "groups": [ { "name": "HOUSE=1", "value": "HOUSE=1" }, { "name": "PERSON=2", "value": "PERSON=2" } ]
  },
  "provider": {
    "id": "CSPRO_survey.dcf", "type": "CSPRO", "layoutFile": "survey.dcf", "dataFile": "",
    "recordTypeStart": 1, "recordTypeSize": 1
  },
  "fields": [
    {
      "name": "PROVINCE", "label": "Province", "type": "INTEGER", "length": 2, "start": 2, "decimals": 0,
      "minimum": "1", "maximum": "15", "notApplicable": "98", "missing": "99",
      "group": "Common", "providerType": "CSPRO",
      "valueLabelText": "1 Artesia\t2 Copal\t15 San Durdia\t",
      "valueLabels": [
        { "code": "1", "label": "Artesia" }, { "code": "2", "label": "Copal" }, { "code": "15", "label": "San Durdia" }
      ]
    },
    {
      "name": "OWNER", "label": "Owner, \"head\"", "type": "STRING", "length": 20, "start": 4, "decimals": 0,
      "minimum": "", "maximum": "", "notApplicable": "", "missing": "",
      "group": "HOUSE", "providerType": "CSPRO", "valueLabelText": "", "valueLabels": []
    },
    {
      "name": "RENT", "label": "Rent", "type": "REAL", "length": 7, "start": 24, "decimals": 0,
      "minimum": "0", "maximum": "99999", "notApplicable": "", "missing": "",
      "group": "HOUSE", "providerType": "CSPRO", "valueLabelText": "", "valueLabels": []
    },
    {
      "name": "AGE_\u0001", "label": "Age", "type": "INTEGER", "length": 3, "start": 4, "decimals": 0,
      "minimum": "0", "maximum": "999", "notApplicable": "", "missing": "",
      "group": "PERSON", "providerType": "CSPRO", "valueLabelText": "", "valueLabels": []
    },
    {
      "name": "AGE_\u0002", "label": "Age", "type": "INTEGER", "length": 3, "start": 7, "decimals": 0,
      "minimum": "0", "maximum": "999", "notApplicable": "", "missing": "",
      "group": "PERSON", "providerType": "CSPRO", "valueLabelText": "", "valueLabels": []
    }
  ]
})");

const QByteArray csvHeader = "name,label,type,length,start,decimals,minimum,maximum,notApplicable,missing,group,"
                             "providerType,valueLabelText\r\n";

// A dictionary of one item, and one with a further line in its item.
QByteArray oneItem(const QByteArray &name, const QByteArray &label = "A label")
{
    return "[Dictionary]\nName=D\n\n[Item]\nLabel=" + label + "\nName=" + name + "\nStart=2\nLen=3\n";
}

// A dictionary of one item with a value set of the given lines.
QByteArray oneValueSet(const QByteArray &dataType, const QByteArray &valueLines)
{
    return oneItem("SIZE") + "DataType=" + dataType + "\n\n[ValueSet]\nName=SIZE_VS\n" + valueLines;
}

// A dictionary that cannot be read: the line of a range has further ranges, and another value line follows.
const QByteArray unreadableRange = R"([Dictionary]
Name=D

[Item]
Name=AGE
Start=1
Len=2

[ValueSet]
Name=AGE_VS
Value=1:5 7:9
Value=99;Other

[Item]
Name=NEXT
)";
// The empty line before the second item, counted from 0.
constexpr int unreadableRangeLine = 12;

} // namespace

// Runs the tool in the directory of the test; its errors do not include the line with the number of notes.
Run VanlayoutTest::run(const QStringList &arguments, const Variables &variables,
                       const std::function<void()> &prepare) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.remove(QStringLiteral("COLUMNS"));
    environment.remove(QStringLiteral("QT_LOGGING_RULES"));
    environment.remove(QStringLiteral("QT_MESSAGE_PATTERN"));
    for (auto variable = variables.cbegin(); variable != variables.cend(); ++variable) {
        if (variable->isNull())
            environment.remove(variable.key());
        else
            environment.insert(variable.key(), *variable);
    }

    PreparedProcess process(prepare);
    process.setProcessEnvironment(environment);
    Run result = directory->run(arguments, process);
    result.err = withoutNotesLine(result.err);
    return result;
}

// Shows the fields of a file with that content.
Run VanlayoutTest::show(const QByteArray &content, const QStringList &options, const Variables &variables) const
{
    write(QStringLiteral("survey.dcf"), content);
    return run(QStringList{ QStringLiteral("fields") } + options + QStringList{ QStringLiteral("survey.dcf") },
               variables);
}

QJsonArray VanlayoutTest::fieldsOf(const QByteArray &content) const
{
    const Run shown = show(content, { QStringLiteral("--format"), QStringLiteral("json") });
    return QJsonDocument::fromJson(shown.out).object().value(QStringLiteral("fields")).toArray();
}

// The lines of the table of that content, from the line with the names of the columns on.
QList<QByteArray> VanlayoutTest::rowsOf(const QByteArray &content, const Variables &variables) const
{
    QList<QByteArray> lines = linesOf(show(content, {}, variables).out);
    while (!lines.isEmpty() && !lines.first().startsWith("Name "))
        lines.removeFirst();
    return lines;
}

void VanlayoutTest::initTestCase()
{
    // Arguments and file names of this test are in UTF-8 in any locale; wcwidth uses the C library.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    QVERIFY(std::setlocale(LC_CTYPE, "C.UTF-8"));
}

void VanlayoutTest::init()
{
    directory = std::make_unique<ToolDirectory>();
    QVERIFY(directory->isValid());
}

void VanlayoutTest::cleanup()
{
    directory.reset();
}

void VanlayoutTest::jsonHasEveryKeyInItsOrder()
{
    const Run shown = show(survey, { "--format", "json" });
    QCOMPARE(shown.status, fine);
    QCOMPARE(shown.err, QByteArray());
    QCOMPARE(QString::fromUtf8(compact(shown.out)), QString::fromUtf8(surveyJson));
    QVERIFY(shown.out.endsWith('\n'));
}

void VanlayoutTest::jsonOfADictionaryWithoutRecordTypesHasNoGroupInItsFields()
{
    QByteArray content = survey;
    content.replace("RecordTypeLen=1", "RecordTypeLen=0");
    const Run shown = show(content, { "--format", "json" });
    QCOMPARE(shown.status, fine);
    const QJsonObject layout = QJsonDocument::fromJson(shown.out).object();
    QCOMPARE(layout.value("importer").toObject().value("multiple").toBool(true), false);
    QCOMPARE(layout.value("importer").toObject().value("groups").toArray().size(), 2);
    QCOMPARE(layout.value("provider").toObject().value("recordTypeSize").toInt(-1), 0);
    QCOMPARE(layout.value("fields").toArray().size(), 5);
    for (const QJsonValue field : layout.value("fields").toArray())
        QCOMPARE(field.toObject().value("group").toString("absent"), QString());
}

void VanlayoutTest::severalFilesGiveOneJsonObjectALine()
{
    write("survey.dcf", survey);
    write("other.dcf", oneItem("OTHER"));
    const Run shown = run({ "fields", "--format", "json", "survey.dcf", "other.dcf", "survey.dcf" });
    QCOMPARE(shown.status, fine);
    QVERIFY(shown.out.endsWith('\n'));
    const QList<QByteArray> lines = linesOf(shown.out);
    QCOMPARE(lines.size(), 3);
    QCOMPARE(compact(lines.at(0)), surveyJson);
    QCOMPARE(compact(lines.at(2)), surveyJson);
    QJsonParseError problem;
    const QJsonObject other = QJsonDocument::fromJson(lines.at(1), &problem).object();
    QCOMPARE(problem.error, QJsonParseError::NoError);
    QCOMPARE(other.value("provider").toObject().value("layoutFile").toString(), QStringLiteral("other.dcf"));
}

void VanlayoutTest::controlCharactersAreEscapedInJson()
{
    QByteArray label("a");
    for (char c = 0; c < 0x20; ++c) {
        if (c != '\n' && c != '\r') // line ends of the dictionary
            label += c;
    }
    label += "\"\\/\x7F\xC2\x85z";
    const Run shown = show(oneItem("CONTROL", label), { "--format", "json" });
    QCOMPARE(shown.status, fine);
    for (const char c : shown.out)
        QVERIFY(uchar(c) >= 0x20 || c == '\n');
    QVERIFY(isUtf8(shown.out));
    QJsonParseError problem;
    const QJsonArray fields = QJsonDocument::fromJson(shown.out, &problem).object().value("fields").toArray();
    QCOMPARE(problem.error, QJsonParseError::NoError);
    QCOMPARE(fields.at(0).toObject().value("label").toString(), QString::fromUtf8(label.constData(), label.size()));
}

void VanlayoutTest::halfOfASurrogatePairInANameIsValidJson()
{
    constexpr int occurrences = 60000;
    const QByteArray content = oneItem("X") + "Occurrences=60000\n";
    const Run shown = show(content, { "--format", "json" });
    QCOMPARE(shown.status, fine);
    QVERIFY(isUtf8(shown.out));
    QJsonParseError problem;
    const QJsonArray fields = QJsonDocument::fromJson(shown.out, &problem).object().value("fields").toArray();
    QCOMPARE(problem.error, QJsonParseError::NoError);
    QCOMPARE(fields.size(), occurrences);
    for (const ushort code : { 1, 0xD7FF, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xE000, occurrences }) {
        const QString name = fields.at(code - 1).toObject().value("name").toString();
        QCOMPARE(name.size(), 3);
        QCOMPARE(name.left(2), QStringLiteral("X_"));
        QCOMPARE(name.at(2).unicode(), code);
    }
    for (const char *format : { "table", "csv" }) {
        const Run other = show(content, { "--format", format });
        QCOMPARE(other.status, fine);
        QVERIFY(isUtf8(other.out));
        QVERIFY(other.out.count('\n') > occurrences);
    }
}

void VanlayoutTest::valueLabelsAreCutAtTabsAndTheFirstBlank_data()
{
    QTest::addColumn<QByteArray>("dataType");
    QTest::addColumn<QByteArray>("values");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("labels"); // code, label, code, label

    // clang-format off
    QTest::newRow("at the first blank only")
        << QByteArray("Numeric") << QByteArray("Value=1;San  Durdia East\n")
        << "1 San  Durdia East\t" << QStringList{"1", "San  Durdia East"};
    QTest::newRow("entry of a code only")
        << QByteArray("Numeric") << QByteArray("Value=1\nValue=2;Two\n")
        << "1 \t2 Two\t" << QStringList{"1", "", "2", "Two"};
    QTest::newRow("tab in a label")
        << QByteArray("Numeric") << QByteArray("Value=1;One\tor so\nValue=2;Two\n")
        << "1 One\tor so\t2 Two\t" << QStringList{"1", "One", "or", "so", "2", "Two"};
    QTest::newRow("tab in a label, no blank after it")
        << QByteArray("Numeric") << QByteArray("Value=1;One\tuno\n")
        << "1 One\tuno\t" << QStringList{"1", "One", "uno", ""};
    QTest::newRow("blank in a code")
        << QByteArray("Alpha") << QByteArray("Value='A B';Both\n")
        << "A B' Both\t" << QStringList{"A", "B' Both"};
    QTest::newRow("label begins with a blank")
        << QByteArray("Numeric") << QByteArray("Value=1; One\n")
        << "1  One\t" << QStringList{"1", " One"};
    QTest::newRow("no labels")
        << QByteArray("Numeric") << QByteArray()
        << "" << QStringList{};
    // clang-format on
}

void VanlayoutTest::valueLabelsAreCutAtTabsAndTheFirstBlank()
{
    QFETCH(QByteArray, dataType);
    QFETCH(QByteArray, values);
    QFETCH(QString, text);
    QFETCH(QStringList, labels);

    const QJsonArray fields = fieldsOf(oneValueSet(dataType, values));
    QCOMPARE(fields.size(), 1);
    const QJsonObject field = fields.at(0).toObject();
    QCOMPARE(field.value("valueLabelText").toString("absent"), text);
    QStringList cut;
    for (const QJsonValue label : field.value("valueLabels").toArray())
        cut << label.toObject().value("code").toString("absent") << label.toObject().value("label").toString("absent");
    QCOMPARE(cut, labels);
}

void VanlayoutTest::errorOfTheLibraryIsAnObjectWithItsLine_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("line");

    QByteArray withLabel = unreadableRange;
    withLabel.replace("1:5 7:9", "1:5 7:9;Label");
    QByteArray atTheEnd = unreadableRange;
    atTheEnd.truncate(atTheEnd.indexOf("\n\n[Item]\nName=NEXT") + 1);
    // clang-format off
    QTest::newRow("ranges without a label")    << unreadableRange << unreadableRangeLine;
    QTest::newRow("ranges with a label")       << withLabel << unreadableRangeLine;
    QTest::newRow("last section of the file")  << atTheEnd << unreadableRangeLine - 1;
    QTest::newRow("thousands of lines down")   << repeated("\n", 5000) + unreadableRange << 5000 + unreadableRangeLine;
    // clang-format on
}

void VanlayoutTest::errorOfTheLibraryIsAnObjectWithItsLine()
{
    QFETCH(QByteArray, content);
    QFETCH(int, line);

    const Run shown = show(content, { "--format", "json" });
    QCOMPARE(compact(shown.out),
             "{\"error\":{\"code\":242,\"line\":" + QByteArray::number(line)
                 + ",\"cause\":\"reading ended in error 242: Invalid contents in line\"}}");
    verifyComplaint(shown, "survey.dcf: ");
}

void VanlayoutTest::errorOfTheLibraryIsOneLineAmongSeveralFiles()
{
    write("survey.dcf", survey);
    write("broken.dcf", unreadableRange);
    const Run shown = run({ "fields", "--format", "json", "survey.dcf", "broken.dcf", "survey.dcf" });
    const QList<QByteArray> lines = linesOf(shown.out);
    QCOMPARE(lines.size(), 3);
    QCOMPARE(compact(lines.at(0)), surveyJson);
    QCOMPARE(compact(lines.at(1)),
             QByteArray("{\"error\":{\"code\":242,\"line\":12,"
                        "\"cause\":\"reading ended in error 242: Invalid contents in line\"}}"));
    QCOMPARE(compact(lines.at(2)), surveyJson);
    verifyComplaint(shown, "broken.dcf: ");
}

void VanlayoutTest::errorOfTheLibraryLeavesTheOtherFormsEmpty_data()
{
    QTest::addColumn<QString>("format");
    QTest::newRow("table") << "table";
    QTest::newRow("csv") << "csv";
}

void VanlayoutTest::errorOfTheLibraryLeavesTheOtherFormsEmpty()
{
    QFETCH(QString, format);

    const Run shown = show(unreadableRange, { "--format", format });
    QCOMPARE(shown.out, QByteArray());
    verifyComplaint(shown, "survey.dcf: ");
}

void VanlayoutTest::csvHasAHeaderAndALineAField()
{
    const Run shown = show(survey, { "--format", "csv" });
    QCOMPARE(shown.status, fine);
    QCOMPARE(shown.err, QByteArray());
    QCOMPARE(shown.out,
             csvHeader
                 + "PROVINCE,Province,INTEGER,2,2,0,1,15,98,99,Common,CSPRO,1 Artesia\t2 Copal\t15 San Durdia\t\r\n"
                   "OWNER,\"Owner, \"\"head\"\"\",STRING,20,4,0,,,,,HOUSE,CSPRO,\r\n"
                   "RENT,Rent,REAL,7,24,0,0,99999,,,HOUSE,CSPRO,\r\n"
                   "AGE_\x01,Age,INTEGER,3,4,0,0,999,,,PERSON,CSPRO,\r\n"
                   "AGE_\x02,Age,INTEGER,3,7,0,0,999,,,PERSON,CSPRO,\r\n");
}

void VanlayoutTest::csvOfSeveralFilesHasAFirstColumnFile()
{
    write("one.dcf", oneItem("ONE"));
    write("two, or so.dcf", oneItem("TWO"));
    const Run shown = run({ "fields", "--format", "csv", "one.dcf", "two, or so.dcf" });
    QCOMPARE(shown.status, fine);
    QCOMPARE(shown.out,
             "file," + csvHeader
                 + "one.dcf,ONE,A label,INTEGER,3,2,0,0,999,,,Common,CSPRO,\r\n"
                   "\"two, or so.dcf\",TWO,A label,INTEGER,3,2,0,0,999,,,Common,CSPRO,\r\n");
}

void VanlayoutTest::csvQuotesWhatNeedsIt()
{
    const QByteArray label = " comma, \"quotes\"\" and a;semicolon ";
    const QString fileName = QStringLiteral("a\nb \"c\".dcf");
    write(fileName, oneItem("ODD", label) + "\n[ValueSet]\nName=VS\nValue=1;x, \"y\"\n");
    write("plain.dcf", oneItem("PLAIN"));
    const Run shown = run({ "fields", "--format", "csv", fileName, "plain.dcf" });
    QCOMPARE(shown.status, fine);
    const QVector<QStringList> rows = csvCells(shown.out);
    QCOMPARE(rows.size(), 3);
    for (const QStringList &row : rows)
        QCOMPARE(row.size(), 14);
    QCOMPARE(rows.at(1).at(0), fileName);
    QCOMPARE(rows.at(1).at(1), QStringLiteral("ODD"));
    QCOMPARE(rows.at(1).at(2), QStringLiteral(" comma, \"quotes\"\" and a;semicolon")); // lines are trimmed
    QCOMPARE(rows.at(1).at(13), QStringLiteral("1 x, \"y\"\t"));
    QCOMPARE(rows.at(2).at(0), QStringLiteral("plain.dcf"));
}

void VanlayoutTest::tableIsTheDefaultForm()
{
    const Run named = show(survey, { "--format", "table" });
    QCOMPARE(named.status, fine);
    QCOMPARE(named.err, QByteArray());
    QVERIFY(!named.out.isEmpty());
    QCOMPARE(show(survey).out, named.out);
}

void VanlayoutTest::tableHeadingNamesFileTypeGroupsAndCount()
{
    const Run shown = show(survey);
    const QByteArray heading = shown.out.left(shown.out.indexOf("\nName "));
    QVERIFY(heading.contains("survey.dcf"));
    QVERIFY(heading.contains("CSPro"));
    QVERIFY(heading.contains("HOUSE=1"));
    QVERIFY(heading.contains("PERSON=2"));
    QVERIFY(QRegularExpression("\\b5 variables\\b").match(QString::fromUtf8(heading)).hasMatch());
    QVERIFY(QRegularExpression("\\b1 variable\\b").match(QString::fromUtf8(show(oneItem("ONE")).out)).hasMatch());
}

void VanlayoutTest::tableColumnsAreAligned()
{
    const QList<QByteArray> lines = rowsOf(survey);
    QCOMPARE(lines.size(), 6);
    // A column begins at the column of its name.
    const auto cell = [&lines](int line, const QByteArray &column) {
        const int begin = lines.first().indexOf(column);
        const QByteArray rest = lines.at(line).mid(begin);
        const int end = rest.indexOf("  ");
        return begin < 0 ? QByteArray("no column") : rest.left(end < 0 ? rest.size() : end);
    };
    const QList<QByteArray> types = { "INTEGER", "STRING", "REAL", "INTEGER", "INTEGER" };
    const QList<QByteArray> groups = { "Common", "HOUSE", "HOUSE", "PERSON", "PERSON" };
    const QList<QByteArray> starts = { "2", "4", "24", "4", "7" };
    for (int i = 0; i < types.size(); ++i) {
        // The occurrences' suffix is no ASCII character in the table: columns are counted in characters.
        if (i >= 3)
            QCOMPARE(QString::fromUtf8(lines.at(i + 1)).indexOf("INTEGER"), lines.first().indexOf("Type"));
        else
            QCOMPARE(cell(i + 1, "Type"), types.at(i));
    }
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(cell(i + 1, "Group"), groups.at(i));
        QCOMPARE(cell(i + 1, "Start"), starts.at(i));
    }
    QCOMPARE(cell(1, "Length"), QByteArray("2"));
    QVERIFY(lines.at(1).endsWith("Province"));
    QVERIFY(lines.at(2).endsWith("Owner, \"head\""));
    for (const QByteArray &line : lines)
        QVERIFY(!line.endsWith(' '));
}

void VanlayoutTest::severalTablesHaveAHeadingEach()
{
    write("survey.dcf", survey);
    write("other.dcf", oneItem("OTHER"));
    const Run shown = run({ "fields", "survey.dcf", "other.dcf" });
    QCOMPARE(shown.status, fine);
    const int first = shown.out.indexOf("survey.dcf");
    const int second = shown.out.indexOf("other.dcf");
    QVERIFY(first >= 0 && first < second);
    QVERIFY(shown.out.indexOf("PROVINCE") > first && shown.out.indexOf("PROVINCE") < second);
    QVERIFY(shown.out.lastIndexOf("OTHER") > second);
    QVERIFY(shown.out.mid(0, second).endsWith("\n\n"));
}

void VanlayoutTest::longLabelsAreCutToTheWidth_data()
{
    QTest::addColumn<int>("width");
    for (const int width : { 72, 80, 81, 132 })
        QTest::addRow("%d columns", width) << width;
}

void VanlayoutTest::longLabelsAreCutToTheWidth()
{
    QFETCH(int, width);

    const QByteArray label = repeated("0123456789", 30);
    const QByteArray content = oneItem("LONG", label) + "\n[Item]\nLabel=short\nName=SHORT\nStart=5\nLen=1\n";
    const QList<QByteArray> lines = rowsOf(content, { { "COLUMNS", QString::number(width) } });
    QCOMPARE(lines.size(), 3);
    for (const QByteArray &line : lines)
        QVERIFY2(terminalColumns(QString::fromUtf8(line)) <= width, line.constData());
    const QString cut = QString::fromUtf8(lines.at(1)).mid(lines.first().lastIndexOf("Label"));
    QVERIFY(terminalColumns(QString::fromUtf8(lines.at(1))) >= width - 1);
    QVERIFY(label.startsWith(cut.left(cut.size() - 1).toUtf8()));
    QVERIFY(lines.at(2).endsWith("short"));
}

void VanlayoutTest::withoutAWidthLabelsAreNotCut_data()
{
    QTest::addColumn<QString>("columns");
    QTest::newRow("none reported") << QString();
    QTest::newRow("empty") << "";
    QTest::newRow("zero") << "0";
    QTest::newRow("negative") << "-5";
    QTest::newRow("no number") << "wide";
}

void VanlayoutTest::withoutAWidthLabelsAreNotCut()
{
    QFETCH(QString, columns);

    const QByteArray label = repeated("0123456789", 30);
    const QList<QByteArray> lines = rowsOf(oneItem("LONG", label), { { "COLUMNS", columns } });
    QCOMPARE(lines.size(), 2);
    QVERIFY(lines.at(1).endsWith(label));
}

void VanlayoutTest::widthIsThatOfTheTerminal()
{
    constexpr ushort width = 90;
    write("survey.dcf", oneItem("LONG", repeated("0123456789", 30)));
    const PseudoTerminal terminal;
    QVERIFY2(terminal.isOpen(), "this system has no pseudo terminals");
    const int end = terminal.descriptor();
    const winsize size = { 24, width, 0, 0 };
    QCOMPARE(ioctl(end, TIOCSWINSZ, &size), 0);

    const Run shown = run({ "fields", "survey.dcf" }, { { "COLUMNS", "60" } }, [end] { dup2(end, STDOUT_FILENO); });
    const QByteArray text = terminal.taken();
    QCOMPARE(shown.status, fine);
    QVERIFY(!text.isEmpty());
    int widest = 0;
    for (const QString &line : QString::fromUtf8(text).remove('\r').split('\n'))
        widest = std::max(widest, terminalColumns(line));
    QCOMPARE(widest, int(width));
}

void VanlayoutTest::otherFormsAreNeverCut()
{
    const QByteArray label = repeated("0123456789", 30);
    for (const char *format : { "json", "csv" }) {
        const Run shown = show(oneItem("LONG", label), { "--format", format }, { { "COLUMNS", "40" } });
        QVERIFY(shown.out.contains(label));
    }
}

void VanlayoutTest::wideAndCombiningCharactersAreAligned_data()
{
    QTest::addColumn<QString>("name");

    // clang-format off
    QTest::newRow("accents")            << QStringLiteral("GR\u00D6\u00DFE");
    QTest::newRow("Chinese")            << QStringLiteral("\u57CE\u5E02\u4EBA\u53E3");
    QTest::newRow("Japanese")           << QStringLiteral("\u3072\u3089\u30AB\u30CA");
    QTest::newRow("Korean")             << QStringLiteral("\uAC00\uB098\uB2E4");
    QTest::newRow("full width")         << QStringLiteral("\uFF21\uFF22\uFF23");
    QTest::newRow("half width")         << QStringLiteral("\uFF71\uFF72");
    QTest::newRow("combining accent")   << QStringLiteral("e\u0301a\u0308");
    QTest::newRow("Arabic with marks")  << QStringLiteral("\u0645\u064F\u062D\u064E\u0645");
    QTest::newRow("zero width")         << QStringLiteral("A\u200BB\u200DC");
    QTest::newRow("beyond 16 bits")     << QStringLiteral("\U00020000\U0002A6D6");
    QTest::newRow("narrow beyond 16 bits") << QStringLiteral("\U0001D400\U0001D401");
    QTest::newRow("face")               << QStringLiteral("\U0001F600");
    QTest::newRow("rocket")             << QStringLiteral("\U0001F680");
    QTest::newRow("newer picture")      << QStringLiteral("\U0001F9D1");
    // clang-format on
}

void VanlayoutTest::wideAndCombiningCharactersAreAligned()
{
    QFETCH(QString, name);

    const QList<QByteArray> lines
        = rowsOf(oneItem(name.toUtf8()) + "\n[Item]\nLabel=short\nName=ALONGERNAME\nStart=5\nLen=1\n");
    QCOMPARE(lines.size(), 3);
    for (int i : { 1, 2 }) {
        const QString line = QString::fromUtf8(lines.at(i));
        QCOMPARE(terminalColumns(line.left(line.indexOf("INTEGER"))), lines.first().indexOf("Type"));
    }
    QVERIFY(QString::fromUtf8(lines.at(1)).startsWith(name));
}

void VanlayoutTest::wideLabelsAreCutToTheWidth()
{
    const QByteArray label = repeated("\xE5\x9F\x8E", 100);
    for (const int width : { 80, 81 }) {
        const QList<QByteArray> lines = rowsOf(oneItem("WIDE", label), { { "COLUMNS", QString::number(width) } });
        QCOMPARE(lines.size(), 2);
        QVERIFY(isUtf8(lines.at(1)));
        const int columns = terminalColumns(QString::fromUtf8(lines.at(1)));
        QVERIFY(columns <= width);
        QVERIFY(columns >= width - 2);
    }
}

static const QString bidirectionalControls
    = QStringLiteral("\u061C\u200E\u200F\u202A\u202B\u202C\u202D\u202E\u2066\u2067\u2068\u2069");

// Verifies that there is no character that a terminal interprets, except line ends.
static void verifyHarmless(const QByteArray &bytes)
{
    const QString text = QString::fromUtf8(bytes);
    for (const QChar unit : text) {
        const ushort code = unit.unicode();
        const bool isControl = (code < 0x20 && unit != QLatin1Char('\n')) || (code >= 0x7F && code < 0xA0)
            || bidirectionalControls.contains(unit);
        QVERIFY2(!isControl, qPrintable(QString::number(code, 16)));
    }
}

void VanlayoutTest::tableSendsNoControlCharacters()
{
    const QByteArray evil = "\x1B[31m\x07\x08\x7F\xC2\x9B\x0B" + bidirectionalControls.toUtf8();
    const QString fileName = QStringLiteral("a\u001B[2Jb\u009Bc\td\u202E.dcf");
    write(fileName,
          oneItem("N" + evil, "L" + evil + "\tM") + "Occurrences=3\n\n[Record]\nName=R" + evil
              + "\nRecordTypeValue='1'\n\n[Item]\nName=A\nDataType=Alpha\n\n[ValueSet]\nName=V\nValue=" + evil
              + ";x\n");
    const Run shown = run({ "fields", fileName });
    QCOMPARE(shown.status, fine);
    QVERIFY(isUtf8(shown.out));
    verifyHarmless(shown.out);
    QVERIFY(shown.out.count("INTEGER") == 3);
    for (const char *command : { "explain", "diff", "concord", "lookup", "show" }) {
        const bool comparesTwo = command == QByteArray("diff") || command == QByteArray("concord");
        const QStringList files = comparesTwo ? QStringList{ fileName, fileName } : QStringList(fileName);
        const Run other = run(QStringList(command) + files);
        QVERIFY(!other.out.isEmpty());
        verifyHarmless(other.out);
        verifyHarmless(other.err);
    }
}

void VanlayoutTest::otherCharactersAreShownUnchanged()
{
    // Characters next to the control characters, and characters that a language needs within words.
    const QString label = QStringLiteral("~\u00A0\u061B\u061D\u200B\u200C\u200D\u2010\u2029\u202F\u2065\u206Az");
    const QList<QByteArray> lines = rowsOf(oneItem("N", label.toUtf8()));
    QVERIFY(lines.at(1).endsWith(label.toUtf8()));
}

void VanlayoutTest::verboseSendsNoControlCharacters()
{
    const QByteArray evil = "\x1B[31m\x07\x7F\xC2\x9B\xE2\x80\xAE";
    write("survey.dcf", oneItem("N" + evil));
    const Run verbose = run({ "fields", "--verbose", "survey.dcf" });
    QVERIFY(verbose.err.contains("mySF->fieldName N"));
    verifyHarmless(verbose.err);

    const QString stata = QStringLiteral("a\u001B]0;b\u0007\nc\u202E.dta");
    write(stata, "<stata_dta>");
    for (const QStringList &options : { QStringList(), QStringList("--verbose") }) {
        const Run failed = run(QStringList("fields") + options + QStringList(stata));
        QCOMPARE(failed.status, noAnswer);
        verifyHarmless(failed.err);
        // The library prints a separate line.
        QCOMPARE(failed.err.contains("Error processing "), !options.isEmpty());
        QCOMPARE(failed.err.count("vanlayout: "), 1);
        QVERIFY(!options.isEmpty() || failed.err.count('\n') == 1);
    }
}

void VanlayoutTest::complaintSendsNoControlCharacters()
{
    const Run shown = run({ "fields", QStringLiteral("a\u001B[2Jb\u0007c.dcf") });
    QCOMPARE(shown.status, noAnswer);
    QCOMPARE(linesOf(shown.err).size(), 1);
    verifyHarmless(shown.err);
}

void VanlayoutTest::noAnswerIsStatus2AndOneLine_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("format");

    for (const char *format : { "table", "json", "csv" }) {
        QTest::addRow("%s: missing file", format) << "missing.dcf" << format;
        QTest::addRow("%s: missing directory", format) << "missing/survey.dcf" << format;
        QTest::addRow("%s: file as a directory", format) << "empty.dcf/survey.dcf" << format;
        QTest::addRow("%s: directory", format) << "directory" << format;
        QTest::addRow("%s: directory with a slash", format) << "directory/" << format;
        QTest::addRow("%s: empty file", format) << "empty.dcf" << format;
        QTest::addRow("%s: no variables", format) << "no variables.dcf" << format;
        QTest::addRow("%s: no dictionary", format) << "letter.txt" << format;
        QTest::addRow("%s: bytes", format) << "bytes.bin" << format;
    }
}

void VanlayoutTest::noAnswerIsStatus2AndOneLine()
{
    QFETCH(QString, file);
    QFETCH(QString, format);

    QVERIFY(QDir(directory->path()).mkdir("directory"));
    write("empty.dcf", QByteArray());
    write("no variables.dcf", "[Dictionary]\nName=D\n\n[Record]\nName=R\nRecordTypeValue='1'\n");
    write("letter.txt", "Dear reader,\nthere is no variable here.\n");
    write("bytes.bin", QByteArray("\xFF\xFE\x00\x80\x90\n[Item", 11));
    const Run shown = run({ "fields", "--format", format, file });
    QCOMPARE(shown.out, QByteArray());
    verifyComplaint(shown, file.toUtf8() + ": ");
}

void VanlayoutTest::wrongUseIsStatus2AndOneLine_data()
{
    QTest::addColumn<QStringList>("arguments");

    // clang-format off
    QTest::newRow("no command")             << QStringList{};
    QTest::newRow("unknown command")        << QStringList{"list", "survey.dcf"};
    QTest::newRow("file without a command") << QStringList{"survey.dcf"};
    QTest::newRow("no FILE")                << QStringList{"fields"};
    QTest::newRow("options and no FILE")    << QStringList{"fields", "--format", "json"};
    QTest::newRow("wrong option")           << QStringList{"fields", "--nonsense", "survey.dcf"};
    QTest::newRow("wrong short option")     << QStringList{"fields", "-x", "survey.dcf"};
    QTest::newRow("wrong option at the beginning") << QStringList{"--nonsense", "fields", "survey.dcf"};
    QTest::newRow("unknown format")         << QStringList{"fields", "--format", "xml", "survey.dcf"};
    QTest::newRow("empty format")           << QStringList{"fields", "--format", "", "survey.dcf"};
    QTest::newRow("format in capitals")     << QStringList{"fields", "--format", "JSON", "survey.dcf"};
    QTest::newRow("unknown type")           << QStringList{"fields", "--type", "dbf", "survey.dcf"};
    QTest::newRow("unknown decimals")       << QStringList{"fields", "--decimals", "maybe", "survey.dcf"};
    QTest::newRow("option without a value") << QStringList{"fields", "survey.dcf", "--format"};
    // clang-format on
}

void VanlayoutTest::wrongUseIsStatus2AndOneLine()
{
    QFETCH(QStringList, arguments);

    write("survey.dcf", survey);
    const Run shown = run(arguments);
    QCOMPARE(shown.out, QByteArray());
    verifyComplaint(shown, QByteArray());
}

void VanlayoutTest::complaintNamesAWordThatIsNoCommand()
{
    const Run shown = run({ "frobnicate" });
    QCOMPARE(shown.out, QByteArray());
    verifyComplaint(shown, "frobnicate: ");
    verifyComplaint(run({ "frobnicate", "survey.dcf" }), "frobnicate: ");
}

void VanlayoutTest::emptyFileNameIsShownInQuotes()
{
    const Run shown = run({ "fields", "" });
    QCOMPARE(shown.status, noAnswer);
    QCOMPARE(shown.out, QByteArray());
    QCOMPARE(shown.err, QByteArray("vanlayout: '': no such file\n"));
}

void VanlayoutTest::fileWithoutAVariableIsReportedWithItsType()
{
    const Run shown = show("Dear reader,\nthere is no variable here.\n");
    QCOMPARE(shown.status, noAnswer);
    QCOMPARE(shown.err, QByteArray("vanlayout: survey.dcf: no variable found, read as a CSPro text dictionary\n"));
}

void VanlayoutTest::fileWithoutPermissionIsStatus2AndOneLine()
{
    write("survey.dcf", survey);
    QCOMPARE(chmod(QFile::encodeName(directory->path()).constData(), 0755), 0);
    QCOMPARE(chmod(QFile::encodeName(pathOf("survey.dcf")).constData(), 0), 0);
    const Run shown = run({ "fields", "survey.dcf" }, {}, giveUpPassingOverPermissions);
    QCOMPARE(shown.out, QByteArray());
    verifyComplaint(shown, "survey.dcf: ");
}

void VanlayoutTest::worstStatusCountsAndTheOtherFilesAreShown_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QStringList>("files");

    for (const char *format : { "table", "json", "csv" }) {
        QTest::addRow("%s: bad file first", format) << format << QStringList{ "missing.dcf", "one.dcf", "two.dcf" };
        QTest::addRow("%s: in between", format) << format << QStringList{ "one.dcf", "missing.dcf", "two.dcf" };
        QTest::addRow("%s: last", format) << format << QStringList{ "one.dcf", "two.dcf", "missing.dcf" };
    }
}

void VanlayoutTest::worstStatusCountsAndTheOtherFilesAreShown()
{
    QFETCH(QString, format);
    QFETCH(QStringList, files);

    write("one.dcf", oneItem("FIRSTVARIABLE"));
    write("two.dcf", oneItem("SECONDVARIABLE"));
    const Run shown = run(QStringList{ "fields", "--format", format } + files);
    verifyComplaint(shown, "missing.dcf: ");
    QCOMPARE(shown.out.count("FIRSTVARIABLE"), 1);
    QCOMPARE(shown.out.count("SECONDVARIABLE"), 1);
    QVERIFY(shown.out.indexOf("FIRSTVARIABLE") < shown.out.indexOf("SECONDVARIABLE"));
}

void VanlayoutTest::eachFileWithoutAnAnswerHasItsLine()
{
    write("one.dcf", oneItem("ONE"));
    write("empty.dcf", QByteArray());
    const Run shown = run({ "fields", "missing.dcf", "one.dcf", "empty.dcf" });
    QCOMPARE(shown.status, noAnswer);
    QCOMPARE(linesOf(shown.err).size(), 2);
    QVERIFY(linesOf(shown.err).at(0).startsWith("vanlayout: missing.dcf: "));
    QVERIFY(linesOf(shown.err).at(1).startsWith("vanlayout: empty.dcf: "));
}

void VanlayoutTest::fullDiskIsStatus2AndOneLine_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QByteArray>("content");

    const QByteArray large = oneItem("X") + "Occurrences=20000\n"; // more than any buffer holds
    for (const char *format : { "table", "json", "csv" }) {
        QTest::addRow("%s: small", format) << format << survey;
        QTest::addRow("%s: large", format) << format << large;
    }
}

void VanlayoutTest::fullDiskIsStatus2AndOneLine()
{
    QFETCH(QString, format);
    QFETCH(QByteArray, content);

    write("survey.dcf", content);
    QVERIFY2(QFile::exists("/dev/full"), "this system has no /dev/full");
    const Run shown = run({ "fields", "--format", format, "survey.dcf" }, {}, writeToFullDisk);
    verifyComplaint(shown, "standard output: cannot be written\n"); // after its line on the notes
}

void VanlayoutTest::fullDiskIsStatus2ForHelpAndVersionToo_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("help") << QStringList{ "--help" };
    QTest::newRow("help of the command") << QStringList{ "fields", "--help" };
    QTest::newRow("version") << QStringList{ "--version" };
}

void VanlayoutTest::fullDiskIsStatus2ForHelpAndVersionToo()
{
    QFETCH(QStringList, arguments);

    verifyFullDiskIsReported(*directory, arguments);
}

void VanlayoutTest::textDictionaryIsReadFromStandardInput()
{
    const FilledPipe input(survey);
    const Run shown = run({ "fields", "--format", "json", "/dev/stdin" }, {}, input.asInput());
    QCOMPARE(shown.status, fine);
    QCOMPARE(shown.err, QByteArray());
    QByteArray expected = surveyJson;
    expected.replace("survey.dcf", "/dev/stdin");
    QCOMPARE(compact(shown.out), expected);
}

void VanlayoutTest::textDictionaryIsReadFromAFifo()
{
    QCOMPARE(mkfifo(QFile::encodeName(pathOf("fifo")).constData(), 0600), 0);
    write("survey.dcf", survey + repeated("\n", 200000)); // more than a pipe holds
    QProcess writer;
    writer.setWorkingDirectory(directory->path());
    writer.start("sh", { "-c", "exec cat survey.dcf > fifo" });
    const Run shown = run({ "fields", "--format", "json", "fifo" });
    writer.kill();
    writer.waitForFinished();
    QCOMPARE(shown.status, fine);
    QCOMPARE(shown.err, QByteArray());
    QByteArray expected = surveyJson;
    expected.replace("survey.dcf", "fifo");
    QCOMPARE(compact(shown.out), expected);
}

void VanlayoutTest::namedPipeIsReadAsATextDictionary()
{
    // A named pipe is not examined: when it is opened again, it may have no writer left.
    const QString fifo = pathOf("fifo");
    QCOMPARE(mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    QProcess writer;
    writer.start("sh", { "-c", "echo '{ \"software\": \"CSPro\", \"levels\": [] }' >\"$0\"", fifo });
    const Run shown = run({ "fields", "--type", "auto", fifo });
    QVERIFY(writer.waitForFinished(patience));
    QCOMPARE(shown.status, noAnswer);
    QCOMPARE(shown.out, QByteArray());
    const QByteArray problem
        = "no variable found, read as a CSPro text dictionary: --type states the format of a pipe\n";
    QCOMPARE(shown.err, "vanlayout: " + fifo.toUtf8() + ": " + problem);
}

void VanlayoutTest::pipeThatIsOpenAlreadyIsSeenAsWhatItIs_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("type"); // of the file that is not read from a pipe
    QTest::newRow("JSON") << survey8 << QByteArray("CSPro 8 JSON dictionary");
    QTest::newRow("SPSS") << QByteArray("$FL2@(#) SPSS DATA FILE") << QByteArray("SPSS file");
    QTest::newRow("Stata") << QByteArray("<stata_dta><header>") << QByteArray("Stata file");
    QTest::newRow("old Stata") << QByteArray("\x72\x01\x01") << QByteArray("Stata file");
    QTest::newRow("text") << survey << QByteArray();
    QTest::newRow("nothing") << QByteArray() << QByteArray();
}

void VanlayoutTest::pipeThatIsOpenAlreadyIsSeenAsWhatItIs()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, type);

    const FilledPipe input(content);
    const Run shown = run({ "fields", "--format", "json", "/dev/stdin" }, {}, input.asInput());
    if (content == survey) {
        QCOMPARE(shown.status, fine);
        QCOMPARE(QJsonDocument::fromJson(shown.out).object().value("fields").toArray().size(), 5);
        return;
    }
    const QByteArray problem = type.isEmpty() ? QByteArray("no variable found") : type + ": not read from a pipe\n";
    verifyComplaint(shown, "/dev/stdin: " + problem);
}

void VanlayoutTest::jsonDictionaryIsNotReadFromAPipe_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("standard input") << "/dev/stdin";
    QTest::newRow("FIFO that nobody writes to") << "fifo"; // opening it would never end
}

void VanlayoutTest::jsonDictionaryIsNotReadFromAPipe()
{
    QFETCH(QString, file);

    QCOMPARE(mkfifo(QFile::encodeName(pathOf("fifo")).constData(), 0600), 0);
    const FilledPipe input("{ \"name\": 1 }");
    const Run shown = run({ "fields", "--type", "cspro8", file }, {}, input.asInput());
    QCOMPARE(shown.status, noAnswer);
    QCOMPARE(shown.out, QByteArray());
    QCOMPARE(shown.err, "vanlayout: " + file.toUtf8() + ": CSPro 8 JSON dictionary: not read from a pipe\n");
}

// A million variables with a bound of a hundred nines: more than a gigabyte.
static const QByteArray millionOfVariables = "[Item]\nName=A\nLen=100\nOccurrences=1000000\n";

void VanlayoutTest::memoryThatGivesOutIsStatus2AndOneLine()
{
    if (sanitizesMemory)
        QSKIP("a sanitizer needs more memory than the bound");
    write("survey.dcf", millionOfVariables);
    const Run shown = run({ "fields", "survey.dcf" }, {}, memoryOf(700 * megabyte));
    QCOMPARE(shown.status, noAnswer);
    QCOMPARE(shown.out, QByteArray());
    QCOMPARE(shown.err, QByteArray("vanlayout: survey.dcf: not enough memory\n"));
}

void VanlayoutTest::memoryThatGivesOutLeavesTheOtherFiles()
{
    if (sanitizesMemory)
        QSKIP("a sanitizer needs more memory than the bound");
    write("large.dcf", millionOfVariables);
    write("one.dcf", oneItem("ONE"));
    const Run shown = run({ "fields", "--format", "csv", "one.dcf", "large.dcf" }, {}, memoryOf(700 * megabyte));
    QCOMPARE(shown.status, noAnswer);
    QCOMPARE(shown.out, "file," + csvHeader + "one.dcf,ONE,A label,INTEGER,3,2,0,0,999,,,Common,CSPRO,\r\n");
    QCOMPARE(shown.err, QByteArray("vanlayout: large.dcf: not enough memory\n"));
}

void VanlayoutTest::memoryOfAFileThatIsTooLargeIsThereForTheNext()
{
    // Limits do not apply under a sanitizer, so only a small file is read.
    const int count = sanitizesMemory ? 300 : 300000;
    write("large.dcf", sanitizesMemory ? oneItem("ONE") : millionOfVariables);
    write("next.dcf", "[Item]\nName=A\nLen=100\nOccurrences=" + QByteArray::number(count) + '\n');
    const Run shown = run({ "fields", "--format", "csv", "large.dcf", "next.dcf" }, {},
                          sanitizesMemory ? std::function<void()>() : memoryOf(700 * megabyte));
    QCOMPARE(shown.out.count("\nnext.dcf,"), count);
    QVERIFY(sanitizesMemory || shown.err == "vanlayout: large.dcf: not enough memory\n");
}

void VanlayoutTest::tableKeepsNoRowsAndCutsItsRanges()
{
    constexpr int count = 100000;
    write("survey.dcf", "[Item]\nName=A\nLen=10000\nOccurrences=100000\n");
    // The layout takes most of the memory; the rows would take another third, whole ranges two gigabytes. Each text
    // takes more memory with Qt 6.
    const int allowed = QT_VERSION < QT_VERSION_CHECK(6, 0, 0) ? 170 : 300;
    const auto bound = sanitizesMemory ? nullptr : memoryOf(allowed * megabyte);
    const Run shown = run({ "fields", "survey.dcf" }, {}, bound);
    QCOMPARE(shown.err, QByteArray());
    QCOMPARE(shown.status, fine);
    const QList<QByteArray> lines = linesOf(shown.out);
    QCOMPARE(lines.size(), 3 + count);
    const QString range = "0 to " + QString(34, '9') + QChar(0x2026);
    QCOMPARE(range.size(), 40);
    QCOMPARE(shown.out.count("  " + range.toUtf8() + "  "), count);
}

void VanlayoutTest::emptyLinesTakeAFewTimesTheirSize()
{
    constexpr int size = 30000000;
    write("survey.dcf", oneItem("ONE") + repeated("\n", size));
    const auto bound = sanitizesMemory ? nullptr : memoryOf(rlim_t(size) * 4);
    const Run shown = run({ "fields", "--format", "csv", "survey.dcf" }, {}, bound);
    QCOMPARE(shown.err, QByteArray());
    QCOMPARE(shown.status, fine);
    QCOMPARE(shown.out, csvHeader + "ONE,A label,INTEGER,3,2,0,0,999,,,Common,CSPRO,\r\n");
}

void VanlayoutTest::manyRecordsArePrintedInAFewSeconds()
{
    constexpr int count = 30000;
    constexpr rlim_t fewSeconds = 30; // visiting all entries for each one would take more than a minute
    QByteArray content = oneItem("ONE");
    for (int i = 0; i < count; ++i) {
        const QByteArray number = QByteArray::number(i).rightJustified(6, '0');
        content += "[Record]\nName=R" + number + "\nRecordTypeValue='" + number + "'\n";
    }
    write("survey.dcf", content);
    const Run shown = run({ "fields", "--format", "json", "survey.dcf" }, {}, processorTimeOf(fewSeconds));
    QCOMPARE(shown.status, fine);
    const QJsonArray groups
        = QJsonDocument::fromJson(shown.out).object().value("importer").toObject().value("groups").toArray();
    QCOMPARE(groups.size(), count);
    for (int i : { 0, 1, 17777, count - 1 }) {
        const QByteArray number = QByteArray::number(i).rightJustified(6, '0');
        const QString entry = QString::fromLatin1('R' + number + '=' + number);
        QCOMPARE(groups.at(i).toObject().value("name").toString(), entry);
        QCOMPARE(groups.at(i).toObject().value("value").toString(), entry);
    }
}

void VanlayoutTest::statisticalFilesAreShown_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("first");
    QTest::addColumn<int>("count");
    QTest::newRow("sav") << "types.sav"
                         << "SPSS"
                         << "F80" << 10;
    QTest::newRow("zsav") << "types.zsav"
                          << "SPSS"
                          << "F80" << 10;
    QTest::newRow("dta, tagged") << "types-118.dta"
                                 << "STATA"
                                 << "tiny" << 9;
    QTest::newRow("dta, older") << "types-114.dta"
                                << "STATA"
                                << "tiny" << 8;
}

// The name of the file does not matter.
void VanlayoutTest::statisticalFilesAreShown()
{
    QFETCH(QString, file);
    QFETCH(QString, type);
    QFETCH(QString, first);
    QFETCH(int, count);
    QVERIFY(QFile::copy(QStringLiteral(VAN_MADE_DATA "/") + file, directory->filePath("a.dcf")));
    const Run json = run({ "fields", "--format", "json", "a.dcf" });
    QCOMPARE(json.status, fine);
    QCOMPARE(json.err, QByteArray());
    const QJsonObject layout = QJsonDocument::fromJson(json.out).object();
    QCOMPARE(layout.value("importer").toObject().value("type").toString(), type);
    QCOMPARE(layout.value("importer").toObject().value("id").toString(), type + "_a.dcf");
    QCOMPARE(layout.value("importer").toObject().value("multiple").toBool(true), false);
    const QJsonArray fields = layout.value("fields").toArray();
    QCOMPARE(fields.size(), count);
    QCOMPARE(fields.at(0).toObject().value("name").toString(), first);
    QCOMPARE(csvCells(run({ "fields", "--format", "csv", "a.dcf" }).out).size(), count + 1);
    const Run table = run({ "fields", "a.dcf" });
    QVERIFY(linesOf(table.out).at(0).startsWith("a.dcf: " + QByteArray(type == "SPSS" ? "SPSS file, " : "Stata file, ")
                                                + QByteArray::number(count) + " variables"));
}

// The library writes this line to standard output; here it belongs to standard error.
void VanlayoutTest::failureInAStataFileIsReportedOnStandardError()
{
    QFile whole(QStringLiteral(VAN_MADE_DATA "/types-114.dta"));
    QVERIFY(whole.open(QIODevice::ReadOnly));
    const QByteArray bytes = whole.readAll();
    // The file ends after the variables, which are nevertheless shown.
    write("cut.dta", bytes.left(bytes.size() - 20));
    const Run cut = run({ "fields", "--format", "json", "cut.dta" });
    QCOMPARE(cut.status, fine);
    QCOMPARE(QJsonDocument::fromJson(cut.out).object().value("fields").toArray().size(), 8);
    QVERIFY(!cut.out.contains("Error processing"));
    write("head.dta", bytes.left(200));
    const Run head = run({ "fields", "--format", "csv", "head.dta" });
    QCOMPARE(head.status, noAnswer);
    QCOMPARE(head.out, QByteArray());
    QCOMPARE(head.err,
             QByteArray("vanlayout: head.dta: no variable found, read as a Stata file: Unable to read from file\n"));
}

void VanlayoutTest::whatIsWrittenOfAPartOfAStataFileSaysSo()
{
    // The file ends within the descriptions of the variables.
    QFile whole(QStringLiteral(VAN_MADE_DATA "/types-118.dta"));
    QVERIFY(whole.open(QIODevice::ReadOnly));
    const QByteArray bytes = whole.readAll();
    write("cut.dta", bytes.left(bytes.size() - 600));
    const Run part = run({ "export", "--to", "ddi", "cut.dta" });
    QCOMPARE(part.status, fine);
    QCOMPARE(part.err,
             QByteArray("vanlayout: cut.dta: reading ended after the variables, so value labels and notes may be "
                        "missing: Unable to read from file\n"));
}

void VanlayoutTest::failureInAnSpssFileIsOneLine()
{
    write("head.sav", "$FL2 and no more");
    const Run shown = run({ "fields", "head.sav" });
    QCOMPARE(shown.status, noAnswer);
    QCOMPARE(shown.out, QByteArray());
    QCOMPARE(shown.err,
             QByteArray("vanlayout: head.sav: no variable found, read as an SPSS file: Unable to read from file\n"));
}

void VanlayoutTest::statisticalFilesAreNotReadFromAPipe()
{
    for (const char *type : { "spss", "stata" }) {
        const FilledPipe input("$FL2");
        const Run shown = run({ "fields", "--type", type, "/dev/stdin" }, {}, input.asInput());
        QCOMPARE(shown.status, noAnswer);
        QVERIFY2(shown.err.endsWith(": not read from a pipe\n"), shown.err.constData());
    }
}

void VanlayoutTest::typeGoesByContent_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QByteArray>("kind"); // empty for a text dictionary

    // A text dictionary follows each head, so that the file could be read as one.
    // clang-format off
    QTest::newRow("brace")                          << QByteArray("{") << QByteArray("JSON");
    QTest::newRow("white space and a brace")        << QByteArray(" \t\r\n {") << QByteArray("JSON");
    QTest::newRow("brace as the sixteenth byte")    << repeated(" ", 15) + "{" << QByteArray("JSON");
    QTest::newRow("brace as the seventeenth byte")  << repeated(" ", 16) + "{" << QByteArray();
    QTest::newRow("brace after a letter")           << QByteArray("a{") << QByteArray();
    QTest::newRow("bracket")                        << QByteArray("[{") << QByteArray();
    QTest::newRow("$FL2")                           << QByteArray("$FL2") << QByteArray("SPSS");
    QTest::newRow("$FL3")                           << QByteArray("$FL3@(#)") << QByteArray("SPSS");
    QTest::newRow("$FL1")                           << QByteArray("$FL1") << QByteArray();
    QTest::newRow("$FL4")                           << QByteArray("$FL4") << QByteArray();
    QTest::newRow("$FL2 after a blank")             << QByteArray(" $FL2") << QByteArray();
    QTest::newRow("$fl2")                           << QByteArray("$fl2") << QByteArray();
    QTest::newRow("<stata_dta>")                    << QByteArray("<stata_dta><header>") << QByteArray("Stata");
    QTest::newRow("<stata_dta")                     << QByteArray("<stata_dta ") << QByteArray();
    QTest::newRow("<STATA_DTA>")                    << QByteArray("<STATA_DTA>") << QByteArray();
    QTest::newRow("version 104, byte order 1")      << QByteArray("\x68\x01") << QByteArray("Stata");
    QTest::newRow("version 104, byte order 2")      << QByteArray("\x68\x02") << QByteArray("Stata");
    QTest::newRow("version 110, byte order 1")      << QByteArray("\x6E\x01") << QByteArray("Stata");
    QTest::newRow("version 115, byte order 2")      << QByteArray("\x73\x02") << QByteArray("Stata");
    QTest::newRow("version 103")                    << QByteArray("\x67\x01") << QByteArray();
    QTest::newRow("version 116")                    << QByteArray("\x74\x01") << QByteArray();
    QTest::newRow("byte order 0")                   << QByteArray("\x72\x00", 2) << QByteArray();
    QTest::newRow("byte order 3")                   << QByteArray("\x72\x03") << QByteArray();
    QTest::newRow("nothing before the dictionary")  << QByteArray() << QByteArray();
    QTest::newRow("byte-order mark")                << QByteArray("\xEF\xBB\xBF") << QByteArray();
    // clang-format on
}

void VanlayoutTest::typeGoesByContent()
{
    QFETCH(QByteArray, head);
    QFETCH(QByteArray, kind);

    if (kind == "JSON") {
        const QByteArray content = head.chopped(1) + survey8;
        const Run shown = show(content, { "--format", "json" });
        QCOMPARE(shown.status, fine);
        QCOMPARE(show(content, { "--format", "json", "--type", "auto" }).out, shown.out);
        const QJsonObject layout = QJsonDocument::fromJson(shown.out).object();
        QCOMPARE(layout.value("importer").toObject().value("type").toString(), QString("CSPRO8"));
        QCOMPARE(layout.value("fields").toArray().size(), 3);
        // A text dictionary with a leading brace is no longer read as one.
        const Run broken = show(head + '\n' + survey, { "--format", "csv" });
        QCOMPARE(broken.out, QByteArray());
        verifyComplaint(broken, "survey.dcf: no variable found");
        return;
    }
    const QByteArray content = head + '\n' + survey;
    const Run shown = show(content, { "--format", "csv" });
    QCOMPARE(show(content, { "--format", "csv", "--type", "auto" }).out, shown.out);
    if (kind.isEmpty()) {
        QCOMPARE(shown.status, fine);
        QCOMPARE(csvCells(shown.out).size(), 6);
    } else {
        QCOMPARE(shown.out, QByteArray());
        QCOMPARE(shown.status, noAnswer);
        QVERIFY2(linesOf(shown.err).last().startsWith("vanlayout: survey.dcf: no variable found"),
                 shown.err.constData());
        QVERIFY2(linesOf(shown.err).last().contains(kind), shown.err.constData());
    }
}

void VanlayoutTest::typeIgnoresTheFileName()
{
    for (const char *name : { "a.json", "a.dta", "a.sav", "a" }) {
        write(name, survey);
        QCOMPARE(run({ "fields", name }).status, fine);
    }
    for (const char *name : { "b.dcf", "b.json", "b.sav", "b" }) {
        write(name, survey8);
        const Run shown = run({ "fields", "--format", "json", name });
        QCOMPARE(shown.status, fine);
        QVERIFY(shown.out.contains("\"CSPRO8\""));
    }
    write("a.dcf", "{ \"name\": 1 }");
    QCOMPARE(run({ "fields", "a.dcf" }).status, noAnswer);
}

void VanlayoutTest::namedTypeOverrulesTheContent_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("rows"); // 0 for no answer

    // clang-format off
    QTest::newRow("JSON head as cspro") << "cspro"  << "{\n" + survey           << 6;
    QTest::newRow("SPSS as cspro")      << "cspro"  << "$FL2\n" + survey        << 6;
    QTest::newRow("Stata as cspro")     << "cspro"  << "<stata_dta>\n" + survey << 6;
    QTest::newRow("cspro as cspro")     << "cspro"  << survey                   << 6;
    QTest::newRow("JSON as cspro8")     << "cspro8" << survey8                  << 4;
    QTest::newRow("JSON as cspro")      << "cspro"  << survey8                  << 0;
    QTest::newRow("cspro as cspro8")    << "cspro8" << survey                   << 0;
    QTest::newRow("cspro as stata")     << "stata"  << survey                   << 0;
    QTest::newRow("cspro as spss")      << "spss"   << survey                   << 0;
    QTest::newRow("JSON as stata")      << "stata"  << survey8                  << 0;
    QTest::newRow("JSON as spss")       << "spss"   << survey8                  << 0;
    // clang-format on
}

void VanlayoutTest::namedTypeOverrulesTheContent()
{
    QFETCH(QString, type);
    QFETCH(QByteArray, content);
    QFETCH(int, rows);

    const Run shown = show(content, { "--format", "csv", "--type", type });
    QCOMPARE(csvCells(shown.out).size(), rows);
    if (rows > 0) {
        QCOMPARE(shown.status, fine);
    } else {
        QCOMPARE(shown.out, QByteArray());
        QCOMPARE(shown.status, noAnswer);
        QVERIFY(linesOf(shown.err).last().startsWith("vanlayout: survey.dcf: "));
        QCOMPARE(linesOf(shown.err).size(), 1);
    }
}

void VanlayoutTest::decimalsAnswersTheQuestion_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("maximum");

    // A code that is not an integer becomes 0; a set that is not converted is omitted.
    // clang-format off
    QTest::newRow("No to All by default") << QStringList{}                      << "" << "999";
    QTest::newRow("no")                   << QStringList{"--decimals", "no"}    << "" << "999";
    QTest::newRow("yes")                  << QStringList{"--decimals", "yes"}   << "0 One and a half\t2 Two\t" << "2";
    QTest::newRow("yes in one word")      << QStringList{"--decimals=yes"}      << "0 One and a half\t2 Two\t" << "2";
    // clang-format on
}

void VanlayoutTest::decimalsAnswersTheQuestion()
{
    QFETCH(QStringList, options);
    QFETCH(QString, text);
    QFETCH(QString, maximum);

    // There are two sets; the answer applies to all of them.
    const QByteArray values = "\n[ValueSet]\nName=VS\nValue=2;Two\nValue=1.5;One and a half\n";
    const QByteArray content = oneItem("SIZE") + values + "\n[Item]\nName=WIDTH\nStart=5\nLen=3\n" + values;
    const Run shown = show(content, QStringList{ "--format", "json" } + options, display(QString()));
    QCOMPARE(shown.status, fine);
    QCOMPARE(shown.err, QByteArray());
    const QJsonArray fields = QJsonDocument::fromJson(shown.out).object().value("fields").toArray();
    QCOMPARE(fields.size(), 2);
    for (const QJsonValue field : fields) {
        QCOMPARE(field.toObject().value("valueLabelText").toString("absent"), text);
        QCOMPARE(field.toObject().value("minimum").toString(), QStringLiteral("0"));
        QCOMPARE(field.toObject().value("maximum").toString(), maximum);
    }
}

void VanlayoutTest::askWithoutADisplayIsStatus2AndOneLine()
{
    const Run shown = show(survey, { "--decimals", "ask" }, display(QString()));
    QCOMPARE(shown.out, QByteArray());
    verifyComplaint(shown, QByteArray());
}

void VanlayoutTest::askOnABogusPlatformIsStatus2AndNoCrash()
{
    const Run shown = show(survey, { "--decimals", "ask" }, display("nonsense"));
    QCOMPARE(shown.out, QByteArray());
    verifyComplaint(shown, QByteArray()); // Qt's own notes need --verbose
}

void VanlayoutTest::askShowsNoDialogWhereThereIsNoQuestion()
{
    const Run shown = show(survey, { "--decimals", "ask", "--format", "json" }, display("offscreen"));
    QCOMPARE(shown.status, fine);
    QCOMPARE(compact(shown.out), surveyJson);
}

void VanlayoutTest::debugLinesNeedVerbose_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("rules");
    QTest::addColumn<bool>("isReported");

    // clang-format off
    QTest::newRow("without it")               << QStringList{"fields", "survey.dcf"} << QString() << false;
    QTest::newRow("rules do not replace it") << QStringList{"fields", "survey.dcf"} << "*.debug=true" << false;
    QTest::newRow("all rules do not either")  << QStringList{"fields", "survey.dcf"} << "*=true" << false;
    QTest::newRow("before the command")       << QStringList{"--verbose", "fields", "survey.dcf"} << QString() << true;
    QTest::newRow("after the command")        << QStringList{"fields", "--verbose", "survey.dcf"} << QString() << true;
    QTest::newRow("after the file")           << QStringList{"fields", "survey.dcf", "--verbose"} << QString() << true;
    // clang-format on
}

void VanlayoutTest::debugLinesNeedVerbose()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, rules);
    QFETCH(bool, isReported);

    write("survey.dcf", survey);
    const Run shown = run(arguments, { { "QT_LOGGING_RULES", rules } });
    QCOMPARE(shown.status, fine);
    if (!isReported) {
        QCOMPARE(shown.err, QByteArray());
        return;
    }
    const QList<QByteArray> lines = linesOf(shown.err);
    QCOMPARE(lines.mid(0, 6),
             QList<QByteArray>({ "TCSProDataImport Constructor", "TCSProDataImport - selectLayoutSource",
                                 "DataImport - selectLayoutSource", "getDictionary FIELDS", "mySF->fieldName PROVINCE",
                                 "mySF->FieldType INTEGER" }));
}

void VanlayoutTest::verboseLeavesStandardOutputClean_data()
{
    QTest::addColumn<QString>("format");
    for (const char *format : { "table", "json", "csv" })
        QTest::newRow(format) << format;
}

void VanlayoutTest::verboseLeavesStandardOutputClean()
{
    QFETCH(QString, format);

    const Run silent = show(survey, { "--format", format });
    const Run verbose = show(survey, { "--format", format, "--verbose" });
    QVERIFY(!silent.out.isEmpty());
    QCOMPARE(verbose.out, silent.out);
    QVERIFY(!verbose.err.isEmpty());
}

void VanlayoutTest::helpGoesToStandardOutput_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("words");

    // clang-format off
    QTest::newRow("of the tool")     << QStringList{"--help"}
                                     << QStringList{"--help", "--version", "--verbose", "fields"};
    QTest::newRow("of the command")  << QStringList{"fields", "--help"}
                                     << QStringList{"--format", "table", "json", "csv", "--type", "auto", "cspro",
                                                    "cspro8", "stata", "spss", "--decimals", "ask", "yes", "no", "FILE"};
    // clang-format on
}

void VanlayoutTest::helpGoesToStandardOutput()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, words);

    const Run shown = run(arguments);
    QCOMPARE(shown.status, fine);
    QCOMPARE(shown.err, QByteArray());
    for (const QString &word : words)
        QVERIFY2(shown.out.contains(word.toUtf8()), qPrintable(word));
}

void VanlayoutTest::versionGoesToStandardOutput()
{
    const Run shown = run({ "--version" });
    QCOMPARE(shown.status, fine);
    QCOMPARE(shown.err, QByteArray());
    QCOMPARE(shown.out, QByteArray("vanlayout " VAN_VERSION "\n"));
}

void VanlayoutTest::textsAreUtf8InEveryLocale_data()
{
    QTest::addColumn<Variables>("locale");

    const auto localeOf = [](const QString &all, const QString &language) {
        return Variables{ { "LC_ALL", all }, { "LANG", language }, { "LC_CTYPE", QString() } };
    };
    QTest::newRow("C.UTF-8") << localeOf("C.UTF-8", QString());
    QTest::newRow("C") << localeOf("C", QString());
    QTest::newRow("POSIX") << localeOf("POSIX", QString());
    QTest::newRow("C by language") << localeOf(QString(), "C");
    QTest::newRow("none") << localeOf(QString(), QString());
    QTest::newRow("unknown") << localeOf("xx_YY", QString());
}

void VanlayoutTest::textsAreUtf8InEveryLocale()
{
    QFETCH(Variables, locale);

    const QString fileName = QStringLiteral("gr\u00F6\u00DFe \u65E5\u672C \U0001F600.dcf");
    const QString label = QStringLiteral("Gr\u00F6\u00DFe \u65E5\u672C \U0001F600");
    write(fileName, oneItem("SIZE", label.toUtf8()));
    write("old.dcf",
          oneItem("SIZE",
                  "Gr\xF6\xDF"
                  "e"));

    const Run json = run({ "fields", "--format", "json", fileName }, locale);
    QCOMPARE(json.status, fine);
    QCOMPARE(json.err, QByteArray());
    const QJsonObject layout = QJsonDocument::fromJson(json.out).object();
    QCOMPARE(layout.value("importer").toObject().value("id").toString(), "CSPRO_" + fileName);
    QCOMPARE(layout.value("provider").toObject().value("layoutFile").toString(), fileName);
    QCOMPARE(layout.value("fields").toArray().at(0).toObject().value("label").toString(), label);
    QVERIFY(json.out.contains(label.toUtf8()));

    const Run table = run({ "fields", fileName }, locale);
    QCOMPARE(table.status, fine);
    QVERIFY(table.out.contains(fileName.toUtf8()));
    QVERIFY(table.out.contains(label.toUtf8()));

    const Run csv = run({ "fields", "--format", "csv", "old.dcf" }, locale);
    QVERIFY(csv.out.contains("Gr\xC3\xB6\xC3\x9F"
                             "e"));

    verifyComplaint(run({ "fields", "not " + fileName }, locale), "not " + fileName.toUtf8() + ": ");
}

void VanlayoutTest::oldTextIsInTheEncodingOfTheLocale()
{
    const QString locale = QStringLiteral("tr_TR.ISO-8859-9");
    QVERIFY2(QDir(QStringLiteral(VAN_LOCALES)).exists(locale),
             "needs localedef and its sources: Debian's package locales");
    const Variables turkish = { { "LOCPATH", VAN_LOCALES }, { "LC_ALL", locale } };
    const QString text = QStringLiteral("\u0131\u011F"); // FD F0; other letters in Windows-1252
    write("old.dcf", oneItem("SIZE", "\xFD\xF0"));
    write("old.txt", "AA \xFD\xF0\n");

    QVERIFY(run({ "fields", "--format", "csv", "old.dcf" }, turkish).out.contains("SIZE," + text.toUtf8() + ','));
    QVERIFY(run({ "lookup", "--format", "json", "old.txt" }, turkish).out.contains('"' + text.toUtf8() + '"'));
    // A text in UTF-8 is read as UTF-8 in any locale.
    write("new.dcf", oneItem("SIZE", text.toUtf8()));
    QVERIFY(run({ "fields", "--format", "csv", "new.dcf" }, turkish).out.contains("SIZE," + text.toUtf8() + ','));
    // The name of a file is in the encoding of the locale, too; with Qt 6 it is UTF-8 in every locale.
    const QString name = QT_VERSION < QT_VERSION_CHECK(6, 0, 0) ? R"('\375\360')" : R"('\304\261\304\237')";
    const Run shown = runShell(*directory,
                               "name=$(printf " + name
                                   + R"().dcf; mv new.dcf "$name"; )"
                                     R"(LOCPATH=')" VAN_LOCALES
                                     R"(' LC_ALL=tr_TR.ISO-8859-9 "$0" fields --format csv "$name" old.dcf)");
    QVERIFY2(shown.out.contains('\n' + text.toUtf8() + ".dcf,SIZE,"), shown.out.constData());
}

void VanlayoutTest::anyFileNameIsShown_data()
{
    QTest::addColumn<QString>("fileName");

    // clang-format off
    QTest::newRow("blanks")          << " two  blanks .dcf ";
    QTest::newRow("newline")         << "line one\nline two.dcf";
    QTest::newRow("carriage return") << "line one\rline two.dcf";
    QTest::newRow("tab")             << "a\tb.dcf";
    QTest::newRow("quotes")          << "\"a\" 'b' `c`.dcf";
    QTest::newRow("percent signs")   << "%1 %2 %s %n.dcf";
    QTest::newRow("backslash")       << "a\\b.dcf";
    QTest::newRow("comma and colon") << "a,b:c;d.dcf";
    QTest::newRow("hidden")          << ".dcf";
    // clang-format on
}

void VanlayoutTest::anyFileNameIsShown()
{
    QFETCH(QString, fileName);

    write(fileName, survey);
    const Run json = run({ "fields", "--format", "json", fileName });
    QCOMPARE(json.status, fine);
    QCOMPARE(json.err, QByteArray());
    const QJsonObject layout = QJsonDocument::fromJson(json.out).object();
    QCOMPARE(layout.value("importer").toObject().value("id").toString(), "CSPRO_" + fileName);
    QCOMPARE(layout.value("provider").toObject().value("layoutFile").toString(), fileName);

    const Run table = run({ "fields", fileName });
    QCOMPARE(table.status, fine);
    QVERIFY(linesOf(table.out).first().contains("variables"));
    if (!fileName.contains(QRegularExpression("[\\n\\r\\t]")))
        QVERIFY(linesOf(table.out).first().contains(fileName.toUtf8()));

    // The error message is one line for any name.
    const Run missing = run({ "fields", "not " + fileName });
    QCOMPARE(missing.status, noAnswer);
    QCOMPARE(linesOf(missing.err).size(), 1);
    QVERIFY(!missing.err.contains('\r'));
    QVERIFY(missing.err.startsWith("vanlayout: not "));
}

QTEST_GUILESS_MAIN(VanlayoutTest)
#include "VanlayoutTest.moc"
