#include "Explain.h"

#include "Answer.h"
#include "Columns.h"
#include "Gravities.h"
#include "InputFile.h"
#include "Json.h"
#include "Layout.h"
#include "LookupCheck.h"
#include "Printable.h"
#include "import/ReadReport.h"
#include "lookup/Lookup.h"

#include <QFile>
#include <QStringList>

#include <algorithm>
#include <new>

namespace
{

constexpr size_t placesOfAKind = 10; // that the table shows
constexpr int mostVariableWidth = 40;
constexpr int mostTextWidth = 400; // a file can be one line
constexpr int gap = 2;             // blanks between columns

/// One file, what it was read as, and what the reading told.
struct Explanation {
    QString file;
    QString type;  ///< as --type takes it; "" where it was not found out
    QString title; ///< of that type
    QString problem;
    ReadReport report;
};

// A check that reports nothing but what it takes a line for.
void readLookup(Explanation &explanation, const ExplainOptions &options)
{
    explanation.type = QStringLiteral("lookup");
    explanation.title = QStringLiteral("lookup file");
    explanation.problem = openingProblem(explanation.file);
    if (!explanation.problem.isEmpty())
        return;
    TVpLookup lookup;
    lookup.setFfileName(explanation.file);
    lookup.setSeparator(separatorNumber(options.separator));
    lookup.setReadReport(&explanation.report);
    std::map<QString, int *> frequencies;
    lookup.consistencyCheck(ccNone, frequencies, nullptr);
    explanation.problem = lookup.getReadProblem();
}

void readLayoutFile(Explanation &explanation, const ExplainOptions &options)
{
    Layout layout = readLayout(explanation.file, fileTypeNamed(options.type), &explanation.report);
    explanation.problem = layout.problem;
    if (layout.type) {
        explanation.type = QLatin1String(layout.type->name);
        explanation.title = QLatin1String(layout.type->title);
    }
    if (options.files.size() > 1)
        releaseContents(layout);
}

/// The notes of a report, those of one kind together, the gravest first.
class NotesByKind
{
public:
    explicit NotesByKind(const ReadReport &report)
        : places(size_t(ReadReport::kinds))
    {
        for (const ReadNote &note : report.notes())
            places[size_t(note.kind)].push_back(&note);
    }
    const std::vector<const ReadNote *> &of(NoteKind kind) const { return places[size_t(kind)]; }

private:
    std::vector<std::vector<const ReadNote *>> places;
};

class ExplanationTable
{
public:
    ExplanationTable(std::FILE *file, bool everyPlace)
        : out(file)
        , showsAll(everyPlace)
    {
    }

    void print(const Explanation &explanation)
    {
        const ReadReport &report = explanation.report;
        if (!isFirst)
            printLine(out, QString());
        isFirst = false;
        const QString type = explanation.title.isEmpty() ? QString() : explanation.title + QStringLiteral(", ");
        printLine(out, QStringLiteral("%1: %2%3").arg(printable(subjectOf(explanation.file)), type, countsOf(report)));
        const NotesByKind notes(report);
        for (const NoteGravity gravity : gravities)
            printGravity(gravity, report, notes);
    }

private:
    void printGravity(NoteGravity gravity, const ReadReport &report, const NotesByKind &notes)
    {
        const int count = report.count(gravity);
        if (count == 0)
            return;
        printLine(out, QString());
        printLine(out, QStringLiteral("%1: %2").arg(ReadReport::nameOf(gravity).toUpper()).arg(count));
        for (int i = 0; i < ReadReport::kinds; ++i) {
            const auto kind = NoteKind(i);
            if (ReadReport::gravityOf(kind) == gravity && report.count(kind) > 0)
                printKind(kind, report.count(kind), notes.of(kind));
        }
    }

    void printKind(NoteKind kind, int count, const std::vector<const ReadNote *> &places)
    {
        printLine(out, QStringLiteral("  %1 (%2)").arg(ReadReport::idOf(kind)).arg(count));
        printLine(out, QStringLiteral("    ") + ReadReport::sentenceOf(kind));
        const size_t shown = showsAll ? places.size() : std::min(places.size(), placesOfAKind);
        std::vector<QStringList> rows;
        for (size_t i = 0; i < shown; ++i)
            rows.push_back(rowOf(*places[i]));
        printRows(rows);
        if (size_t(count) > shown)
            printLine(out, QStringLiteral("      and %1 more").arg(size_t(count) - shown));
    }

    static QStringList rowOf(const ReadNote &note)
    {
        const QString line = note.line > 0 ? QStringLiteral("line %1").arg(note.line) : QString();
        const QString text = note.text == note.variable
            ? QString()
            : cutToColumns(printable(note.text.left(mostTextWidth + 1)), mostTextWidth);
        return { line, cutToColumns(printable(note.variable), mostVariableWidth), text };
    }

    void printRows(const std::vector<QStringList> &rows)
    {
        int lineWidth = 0;
        int variableWidth = 0;
        for (const QStringList &row : rows) {
            lineWidth = std::max(lineWidth, columnsOf(row.at(0)));
            variableWidth = std::max(variableWidth, columnsOf(row.at(1)));
        }
        const auto padded
            = [](const QString &text, int width) { return width > 0 ? paddedToColumns(text, width + gap) : QString(); };
        for (const QStringList &row : rows) {
            QString line = padded(row.at(0), lineWidth) + padded(row.at(1), variableWidth) + row.at(2);
            while (line.endsWith(QLatin1Char(' ')))
                line.chop(1);
            printLine(out, QStringLiteral("      ") + line);
        }
    }

    std::FILE *out;
    bool showsAll;
    bool isFirst = true;
};

void printAsJson(const Explanation &explanation, bool isOneOfSeveral)
{
    const ReadReport &report = explanation.report;
    printJson(stdout, isOneOfSeveral, [&](auto &json) {
        json.StartObject();
        writeJson(json, "file", explanation.file);
        writeJson(json, "type", explanation.type);
        for (const NoteGravity gravity : gravities)
            writeJson(json, ReadReport::nameOf(gravity).toLatin1().constData(), report.count(gravity));
        json.Key("notes");
        json.StartArray();
        for (const ReadNote &note : report.notes()) {
            json.StartObject();
            writeJson(json, "kind", note.id());
            writeJson(json, "gravity", ReadReport::nameOf(note.gravity()));
            writeJson(json, "line", note.line);
            writeJson(json, "variable", note.variable);
            writeJson(json, "text", note.text);
            writeJson(json, "sentence", note.sentence());
            json.EndObject();
        }
        json.EndArray();
        json.EndObject();
    });
}

// The report of a file that gave no layout tells why, so it is printed too.
int explainFile(const std::string &name, const ExplainOptions &options, ExplanationTable &table)
{
    flushOutput();
    Explanation explanation;
    explanation.file = QFile::decodeName(name.c_str());
    try {
        if (options.type == "lookup")
            readLookup(explanation, options);
        else
            readLayoutFile(explanation, options);
    } catch (const std::bad_alloc &) {
        explanation.problem = QStringLiteral("not enough memory");
    }
    const bool hasAnswer = explanation.problem.isEmpty();
    if (!hasAnswer && explanation.report.count(NoteGravity::lost) == 0)
        explanation.report.add(NoteKind::fileNotRead, explanation.problem);
    if (options.format == "json")
        printAsJson(explanation, options.files.size() > 1);
    else
        table.print(explanation);
    if (!hasAnswer)
        return noAnswerFor(explanation.file, explanation.problem);
    return explanation.report.count(NoteGravity::lost) > 0 ? statusFinding : statusFine;
}

} // namespace

QString countsOf(const ReadReport &report)
{
    QStringList counts;
    int all = 0;
    for (const NoteGravity gravity : gravities) {
        if (const int count = report.count(gravity)) {
            counts.append(QStringLiteral("%1 %2").arg(count).arg(ReadReport::nameOf(gravity)));
            all += count;
        }
    }
    if (all == 0)
        return QStringLiteral("no note");
    const QString notes = all == 1 ? QStringLiteral("1 note") : QStringLiteral("%1 notes").arg(all);
    return QStringLiteral("%1 (%2)").arg(notes, counts.join(QStringLiteral(", ")));
}

int explain(const ExplainOptions &options)
{
    answerDecimalQuestions(options.decimals);
    ExplanationTable table(stdout, options.showsAll);
    int status = statusFine;
    for (const std::string &file : options.files)
        status = std::max(status, explainFile(file, options, table));
    return statusAfterOutput(status);
}
