#include "LookupCheck.h"

#include "Answer.h"
#include "Columns.h"
#include "InputFile.h"
#include "Json.h"
#include "LocaleText.h"
#include "Printable.h"
#include "Progress.h"
#include "lookup/Lookup.h"
#include "lookup/Reports.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <iterator>
#include <memory>

namespace
{

constexpr int gap = 2;                 // blanks between columns
constexpr int maxTextWidth = 60;       // columns of a text before its count
constexpr qint64 firstProgress = 1000; // milliseconds before progress is shown
constexpr qint64 progressStep = 200;   // milliseconds between two updates

// The number of a name in the library is its index in the list.
template <size_t Count> int numberOf(const char *const (&names)[Count], const std::string &name)
{
    return int(std::find(std::begin(names), std::end(names), name) - std::begin(names));
}

econsistencyCheck modeNumber(const std::string &name)
{
    static const char *const names[] = { "", "count", "errors", "both" };
    return econsistencyCheck(numberOf(names, name));
}

/// A line with the progress of a long check, shown if standard error is a terminal. It is erased when the check ends.
class ProgressLine
{
public:
    ProgressLine(TVpLookup &checkedLookup, const QString &fileName)
        : lookup(checkedLookup)
        , file(fileName)
    {
        constexpr int standardError = 2;
        if (!isTerminal(standardError))
            return;
        timer.start();
        lookup.setProgressListener([this](qint64 done, qint64 size) { show(done, size); });
    }
    ~ProgressLine()
    {
        lookup.setProgressListener(nullptr);
        if (isShown)
            std::fputs("\r\033[K", stderr);
    }
    ProgressLine(const ProgressLine &) = delete;
    ProgressLine &operator=(const ProgressLine &) = delete;

private:
    void show(qint64 done, qint64 size)
    {
        const qint64 now = timer.elapsed();
        if (now < next || size <= 0)
            return;
        next = now + progressStep;
        isShown = true;
        constexpr qint64 whole = 100;
        std::fprintf(stderr, "\r%s: %d %%", toLocale(printable(file)).constData(), int(done * whole / size));
        std::fflush(stderr);
    }

    TVpLookup &lookup;
    QString file;
    QElapsedTimer timer;
    qint64 next = firstProgress;
    bool isShown = false;
};

void printAsJson(const ReportLookup &report)
{
    printJson(stdout, vanlayout::JsonStyle::Pretty, [&](auto &json) {
        json.StartObject();
        writeJson(json, "title", report.titleReport());
        writeJson(json, "id", report.idValue());
        writeJson(json, "label", report.labelValue());
        writeJson(json, "file", report.dataFileValue());
        writeJson(json, "mode", int(report.getConsistency()));
        json.Key("errors");
        json.StartArray();
        for (const QString &error : qAsConst(*report.errorMessages()))
            writeJson(json, error);
        json.EndArray();
        json.Key("frequencies");
        json.StartArray();
        for (const auto &[text, count] : report.frequenciesTree()) {
            json.StartObject();
            writeJson(json, "text", text);
            writeJson(json, "count", *count);
            json.EndObject();
        }
        json.EndArray();
        json.EndObject();
    });
}

void printFrequencies(const std::map<QString, int *> &frequencies)
{
    const QString head = QStringLiteral("Value");
    int width = columnsOf(head);
    for (const auto &entry : frequencies)
        width = std::max(width, std::min(columnsOf(printable(entry.first)), maxTextWidth));
    printLine(stdout, paddedToColumns(head, width + gap) + QStringLiteral("Count"));
    for (const auto &[text, count] : frequencies)
        printLine(stdout, paddedToColumns(printable(text), width + gap) + QString::number(*count));
}

void printAsTable(const ReportLookup &report)
{
    const std::pair<QString, QString> lines[] = { { report.idLabel(), report.idValue() },
                                                  { report.labelLabel(), report.labelValue() },
                                                  { report.dataFileLabel(), report.dataFileValue() } };
    int width = 0;
    for (const auto &line : lines)
        width = std::max(width, columnsOf(line.first));
    printLine(stdout, report.titleReport());
    for (const auto &[caption, value] : lines)
        printLine(stdout, paddedToColumns(caption, width + gap) + printable(value));

    const QStringList &errors = *report.errorMessages();
    if (report.getConsistency() != ccFrequencies) {
        printLine(stdout, QString());
        printLine(stdout,
                  errors.isEmpty() ? QStringLiteral("No errors")
                                   : QStringLiteral("Errors: %1, each with its line").arg(errors.size()));
        for (const QString &error : errors)
            printLine(stdout, printable(error));
    }
    if (report.getConsistency() != ccErrors) {
        printLine(stdout, QString());
        printFrequencies(report.frequenciesTree());
    }
}

// One check with its results.
struct Check {
    TVpLookup lookup;
    std::map<QString, int *> frequencies;
    QStringList errors;
    ReportLookup report;
};

int check(const LookupOptions &options, const QString &file)
{
    // The check is kept until the process ends: freeing millions of entries one by one would take as long as making
    // them.
    static auto *const check = new Check;
    TVpLookup &lookup = check->lookup;
    lookup.setFfileName(file);
    lookup.setSeparator(separatorNumber(options.separator));
    lookup.setMaxMessages(options.maxMessages);
    const econsistencyCheck mode = modeNumber(options.mode);
    {
        const ProgressLine progress(lookup, file);
        lookup.consistencyCheck(mode, check->frequencies, &check->errors);
    }
    if (!lookup.getReadProblem().isEmpty())
        return noAnswerFor(file, lookup.getReadProblem());

    ReportLookup &report = check->report;
    report.setIdValue(lookup.getId());
    report.setLabelValue(lookup.getLabel());
    report.setDataFileValue(lookup.getFfileName());
    report.setConsistency(mode);
    report.setFrequenciesTree(check->frequencies);
    report.setErrorMessages(&check->errors);
    if (options.format == "json")
        printAsJson(report);
    else
        printAsTable(report);
    return check->errors.isEmpty() ? statusFine : statusFinding;
}

} // namespace

int separatorNumber(const std::string &name)
{
    static const char *const names[] = { "space", "tab", "comma", "semicolon", "colon" };
    return numberOf(names, name);
}

int checkLookup(const LookupOptions &options)
{
    const QString file = QFile::decodeName(options.file.c_str());
    QString problem = openingProblem(file);
    if (problem.isEmpty() && !QFileInfo(file).isFile())
        problem = QStringLiteral("not read from a pipe");
    if (!problem.isEmpty())
        return noAnswerFor(file, problem);
    return answerFor(file, [&] { return statusAfterOutput(check(options, file)); });
}
