#include "Explain.h"

#include "Answer.h"
#include "Columns.h"
#include "ExactItems.h"
#include "FileCount.h"
#include "Severities.h"
#include "InputFile.h"
#include "Json.h"
#include "Layout.h"
#include "LookupCheck.h"
#include "Printable.h"
#include "Progress.h"
#include "import/ReadReport.h"
#include "lookup/Lookup.h"
#include "read/Reader.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <new>

namespace
{

constexpr size_t placesOfAKind = 10; // places of a kind that the table shows
constexpr int maxVariableWidth = 40;
constexpr int maxTextWidth = 400; // a file can be one line
constexpr int gap = 2;            // blanks between columns

/// One file, its type, and its report.
struct Explanation {
    QString file;
    QString type;  ///< value of --type; "" if it is unknown
    QString title; ///< title of that type
    QString problem;
    ReadReport report;
    vanlayout::Layout layout; ///< exact layout; only of a file that can be read twice
};

// Checks a lookup file only for its notes.
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
    Layout layout = readLayout(explanation.file, fileTypeNamed(options.type), decimalAnswer(options.decimals),
                               &explanation.report);
    explanation.problem = layout.problem;
    if (layout.type) {
        explanation.type = QLatin1String(layout.type->name);
        explanation.title = QLatin1String(layout.type->title);
    }
    if (options.files.size() > 1)
        releaseContents(layout);
    if (!explanation.report.isEmpty() && !options.isSummary && QFileInfo(explanation.file).isFile())
        explanation.layout = vanlayout::readLayout(explanation.file);
}

bool isFailure(const ReadReport &report, const std::string &failure)
{
    if (failure == "lost" || failure == "changed")
        return report.count(NoteSeverity::lost) > 0
            || (failure == "changed" && report.count(NoteSeverity::changed) > 0);
    for (int i = 0; i < ReadReport::kinds; ++i) {
        if (failure == ReadReport::idOf(NoteKind(i)).toStdString())
            return report.count(NoteKind(i)) > 0;
    }
    return false;
}

/// The notes that are printed: each note, or one line for the notes of one kind and one variable, and only the first
/// lines of each kind.
enum class NoteLines { every, first };

/// The notes of one kind and one variable, which are printed on one line.
struct Place {
    const ReadNote *first;
    int count;
};

/// The notes of a report by kind.
class NotesByKind
{
public:
    NotesByKind(const ReadReport &report, NoteLines lines)
        : places(size_t(ReadReport::kinds))
    {
        std::vector<KeyedMap<QString, size_t>> known(places.size());
        for (const ReadNote &note : report.notes()) {
            std::vector<Place> &ofKind = places[size_t(note.kind)];
            if (lines == NoteLines::first && !note.variable.isEmpty()) {
                const auto [place, isNew] = known[size_t(note.kind)].emplace(note.variable, ofKind.size());
                if (!isNew) {
                    ++ofKind[place->second].count;
                    continue;
                }
            }
            ofKind.push_back({ &note, 1 });
        }
    }
    const std::vector<Place> &of(NoteKind kind) const { return places[size_t(kind)]; }

private:
    std::vector<std::vector<Place>> places;
};

QString headOf(const Explanation &explanation)
{
    const QString type = explanation.title.isEmpty() ? QString() : explanation.title + QStringLiteral(", ");
    return QStringLiteral("%1: %2%3").arg(printable(subjectOf(explanation.file)), type, countsOf(explanation.report));
}

/// Prints the reports, wrapped to the width of the terminal.
class ExplanationTable
{
public:
    ExplanationTable(std::FILE *file, NoteLines lines)
        : out(file)
        , width(terminalWidth())
        , printedLines(lines)
    {
    }

    void print(const Explanation &explanation)
    {
        const ReadReport &report = explanation.report;
        if (!isFirst)
            printLine(out, QString());
        isFirst = false;
        printWrapped(QString(), headOf(explanation));
        const NotesByKind notes(report, printedLines);
        ExactItems items(explanation.layout);
        for (const NoteSeverity severity : severities)
            printSeverity(severity, report, notes, items);
    }

private:
    struct Row {
        QString line;
        QString variable;
        QString text;
        QString instead; ///< what the file states instead; empty if unknown
    };

    void printSeverity(NoteSeverity severity, const ReadReport &report, const NotesByKind &notes, ExactItems &items)
    {
        const int count = report.count(severity);
        if (count == 0)
            return;
        printLine(out, QString());
        printLine(out, QStringLiteral("%1: %2").arg(ReadReport::nameOf(severity).toUpper()).arg(count));
        for (int i = 0; i < ReadReport::kinds; ++i) {
            const auto kind = NoteKind(i);
            if (ReadReport::severityOf(kind) == severity && report.count(kind) > 0)
                printKind(kind, report.count(kind), notes.of(kind), items);
        }
    }

    void printKind(NoteKind kind, int count, const std::vector<Place> &places, ExactItems &items)
    {
        printLine(out, QStringLiteral("  %1 (%2)").arg(ReadReport::idOf(kind)).arg(count));
        printWrapped(QStringLiteral("    "), ReadReport::messageOf(kind));
        const size_t shown = printedLines == NoteLines::every ? places.size() : std::min(places.size(), placesOfAKind);
        std::vector<Row> rows;
        int rest = count;
        for (size_t i = 0; i < shown; ++i) {
            rows.push_back(rowOf(places[i], items));
            rest -= places[i].count;
        }
        printRows(rows);
        if (rest > 0)
            printLine(out, QStringLiteral("      and %1 more").arg(rest));
    }

    static Row rowOf(const Place &place, ExactItems &items)
    {
        const ReadNote &note = *place.first;
        Row row;
        row.line = note.line > 0 ? QStringLiteral("line %1").arg(note.line) : QString();
        row.variable = cutToColumns(printable(note.variable), maxVariableWidth);
        if (note.text != note.variable)
            row.text = cutToColumns(printable(note.text.left(maxTextWidth + 1)), maxTextWidth);
        if (place.count > 1)
            row.text
                += QLatin1String(row.text.isEmpty() ? "" : " ") + QStringLiteral("(and %1 more)").arg(place.count - 1);
        const QString instead = items.insteadOf(note);
        if (instead != note.text)
            row.instead = printable(instead);
        return row;
    }

    void printRows(const std::vector<Row> &rows)
    {
        int lineWidth = 0;
        int variableWidth = 0;
        for (const Row &row : rows) {
            lineWidth = std::max(lineWidth, columnsOf(row.line));
            variableWidth = std::max(variableWidth, columnsOf(row.variable));
        }
        const auto padded
            = [](const QString &text, int size) { return size > 0 ? paddedToColumns(text, size + gap) : QString(); };
        const QString margin(6, QLatin1Char(' '));
        for (const Row &row : rows) {
            const QString head = margin + padded(row.line, lineWidth) + padded(row.variable, variableWidth);
            printWrapped(head, row.text);
            if (!row.instead.isEmpty())
                printWrapped(QString(columnsOf(head), QLatin1Char(' ')), QLatin1String("the file has: ") + row.instead);
        }
    }

    // Continuation lines are indented by the width of the prefix. If that leaves little width, the text starts on a
    // new line.
    void printWrapped(const QString &head, const QString &text)
    {
        constexpr int minRoom = 20;
        const int indent = columnsOf(head);
        const bool hasRoom = width == 0 || width - indent >= minRoom;
        QStringList lines = wrappedToColumns(text, hasRoom ? std::max(width - indent, 0) : std::max(width, minRoom));
        const bool startsNextToHead = hasRoom || text.isEmpty() || indent + columnsOf(lines.constFirst()) <= width;
        if (startsNextToHead)
            printLine(out, head + lines.takeFirst());
        else if (!head.trimmed().isEmpty())
            printLine(out, head);
        for (const QString &line : qAsConst(lines))
            printLine(out, hasRoom ? QString(indent, QLatin1Char(' ')) + line : line);
    }

    std::FILE *out;
    int width; ///< columns; 0 for no limit
    NoteLines printedLines;
    bool isFirst = true;
};

void printAsJson(const Explanation &explanation, const ExplainOptions &options)
{
    const ReadReport &report = explanation.report;
    const bool isAlone = fileCountOf(options.files) == FileCount::one;
    ExactItems items(explanation.layout);
    printJson(stdout, isAlone ? vanlayout::JsonStyle::Pretty : vanlayout::JsonStyle::Compact, [&](auto &json) {
        json.StartObject();
        writeJson(json, "file", explanation.file);
        writeJson(json, "type", explanation.type);
        for (const NoteSeverity severity : severities)
            writeJson(json, ReadReport::nameOf(severity).toLatin1().constData(), report.count(severity));
        if (options.isSummary) {
            json.EndObject();
            return;
        }
        json.Key("notes");
        json.StartArray();
        for (const ReadNote &note : report.notes()) {
            json.StartObject();
            writeJson(json, "kind", note.id());
            writeJson(json, "severity", ReadReport::nameOf(note.severity()));
            writeJson(json, "line", note.line);
            writeJson(json, "variable", note.variable);
            writeJson(json, "text", note.text);
            writeJson(json, "message", note.message());
            const QString instead = items.insteadOf(note);
            if (!instead.isEmpty())
                writeJson(json, "exact", instead);
            json.EndObject();
        }
        json.EndArray();
        json.EndObject();
    });
}

// The report of a file without a layout has the reason, so it is printed too.
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
    if (!hasAnswer && explanation.report.count(NoteSeverity::lost) == 0)
        explanation.report.add(NoteKind::fileNotRead, explanation.problem);
    if (options.format == "json")
        printAsJson(explanation, options);
    else if (options.isSummary)
        printLine(stdout, headOf(explanation));
    else
        table.print(explanation);
    if (!hasAnswer)
        return noAnswerFor(explanation.file, explanation.problem);
    const bool isFinding
        = std::any_of(options.failures.begin(), options.failures.end(),
                      [&](const std::string &failure) { return isFailure(explanation.report, failure); });
    return isFinding ? statusFinding : statusFine;
}

} // namespace

QString countsOf(const ReadReport &report)
{
    QStringList counts;
    int all = 0;
    for (const NoteSeverity severity : severities) {
        if (const int count = report.count(severity)) {
            counts.append(QStringLiteral("%1 %2").arg(count).arg(ReadReport::nameOf(severity)));
            all += count;
        }
    }
    if (all == 0)
        return QStringLiteral("no note");
    const QString notes = all == 1 ? QStringLiteral("1 note") : QStringLiteral("%1 notes").arg(all);
    return QStringLiteral("%1 (%2)").arg(notes, counts.join(QStringLiteral(", ")));
}

std::vector<std::string> explainFailures()
{
    std::vector<std::string> words = { "lost", "changed" };
    for (int i = 0; i < ReadReport::kinds; ++i)
        words.push_back(ReadReport::idOf(NoteKind(i)).toStdString());
    return words;
}

int explain(const ExplainOptions &options)
{
    ExplanationTable table(stdout, options.showsAll ? NoteLines::every : NoteLines::first);
    constexpr int standardOutput = 1;
    Progress progress(isTerminal(standardOutput));
    const int count = int(options.files.size());
    int status = statusFine;
    for (int i = 0; i < count; ++i) {
        progress.begin(QFile::decodeName(options.files[size_t(i)].c_str()), i + 1, count);
        status = std::max(status, explainFile(options.files[size_t(i)], options, table));
    }
    return statusAfterOutput(status);
}
