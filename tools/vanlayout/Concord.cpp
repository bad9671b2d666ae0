#include "Concord.h"

#include "Answer.h"
#include "Columns.h"
#include "ConcordTable.h"
#include "Descriptor.h"
#include "LayoutInput.h"
#include "LocaleText.h"
#include "OutputDirectory.h"
#include "OutputFile.h"
#include "Progress.h"
#include "compare/Concord.h"
#include "read/ConcordMap.h"
#include "write/ConcordCsv.h"
#include "write/ConcordJson.h"
#include "write/ConcordMapCsv.h"
#include "write/ConcordPage.h"
#include "write/Recodeflow.h"

#include <QFile>

#include <algorithm>

using namespace vanlayout;

namespace
{

/// A file of the result and what writes it.
struct ConcordFile {
    QString name;
    AnswerWriter write;
};

QString standardName()
{
    return QStringLiteral("-");
}

/// One run of the command.
class ConcordRun
{
public:
    explicit ConcordRun(const ConcordCall &concordCall)
        : call(concordCall)
        , output(QFile::decodeName(call.output.c_str()))
        , map(QFile::decodeName(call.map.value_or("").c_str()))
        , writtenMap(QFile::decodeName(call.writtenMap.value_or("").c_str()))
    {
        for (const std::string &name : call.files)
            files.append(QFile::decodeName(name.c_str()));
        options.language = fromLocale(call.language);
    }

    int run()
    {
        const QString problem = problemWithCall();
        if (!problem.isEmpty()) {
            complain(QString(), problem);
            return statusNoAnswer;
        }
        const int status = readFiles();
        if (status != statusFine)
            return status;
        return answerFor(files.constLast(), [this] {
            const int statusOfMap = call.map ? readMap() : int(statusFine);
            return statusOfMap == statusFine ? compareRounds() : statusOfMap;
        });
    }

private:
    QString problemWithCall() const
    {
        if (files.size() < 2)
            return QStringLiteral("concord needs at least two files, one for each round");
        if (files.count(standardName()) > 1)
            return QStringLiteral("only one of the files can be standard input");
        if (call.showsAll && call.format != "table")
            return QStringLiteral("--all can only be used with --format table; the other forms have all");
        if (!call.table.empty() && call.format != "csv")
            return QStringLiteral("--table can only be used with --format csv");
        if (call.isForExcel && call.format != "csv")
            return QStringLiteral("--excel can only be used with --format csv");
        if (call.format == "recodeflow" && output == standardName())
            return QStringLiteral("two tables are written into a directory; name it with -o DIRECTORY");
        if (writtenMap == standardName() && output == standardName())
            return QStringLiteral("only one of -o and --write-map can be standard output");
        if (call.writtenMap && writtenMap == output)
            return QStringLiteral("-o and --write-map are the same file");
        return QString();
    }

    // All files are read, so that the problems of all are printed.
    int readFiles()
    {
        Progress progress(output == standardName() && isTerminal(1));
        int status = statusFine;
        rounds.reserve(files.size());
        for (int i = 0; i < files.size(); ++i) {
            progress.begin(files.at(i), i + 1, int(files.size()));
            status = std::max(status, read(files.at(i)));
        }
        return status;
    }
    int read(const QString &file)
    {
        return answerFor(file, [&] {
            const Layout layout = readExactLayout(file, {});
            if (const Problem *error = layout.error())
                return noAnswerFor(file, messageOf(*error));
            const QString problem = problemWithLanguage(layout, options.language);
            if (!problem.isEmpty())
                return noAnswerFor(file, problem);
            complainIfReadInPart(layout);
            rounds.append(layout);
            return int(statusFine);
        });
    }

    int readMap()
    {
        if (map.isEmpty())
            return noAnswerFor(map, QStringLiteral("no such file"));
        QFile file(map);
        if (!file.open(QIODevice::ReadOnly))
            return noAnswerFor(map, QStringLiteral("cannot be opened: ") + file.errorString());
        const ConcordMap decided = readConcordMap(file, files);
        if (file.error() != QFileDevice::NoError)
            return noAnswerFor(map, QStringLiteral("cannot be opened: ") + file.errorString());
        for (const ConcordMapProblem &problem : decided.problems)
            complainOfMap(problem);
        linesOfMap = decided.lines;
        options.decisions = decided.decisions;
        return decided.problems.isEmpty() ? statusFine : statusNoAnswer;
    }

    void complainOfMap(const ConcordMapProblem &problem) const
    {
        complainOfFile(map,
                       problem.line == 0 ? problem.message
                                         : QStringLiteral("line %1: %2").arg(problem.line).arg(problem.message));
    }

    int compareRounds()
    {
        concordance = concord(rounds, options);
        for (const ConcordProblem &problem : qAsConst(concordance.problems))
            complainOfMap({ linesOfMap.at(problem.decision), problem.message });
        if (!concordance.problems.isEmpty())
            return statusNoAnswer;
        const int status = call.writtenMap ? writeMap() : int(statusFine);
        return status == statusFine ? writeResult() : status;
    }

    int writeMap() const
    {
        return writeFile(writtenMap,
                         [this](QIODevice &device) { writeConcordMap(concordance, options.decisions, device); });
    }
    int writeResult() const
    {
        if (call.format == "csv")
            return writeCsv();
        if (call.format == "recodeflow")
            return writeRecodeflow();
        return writeFile(output, [this](QIODevice &device) {
            if (call.format == "json")
                writeConcordJson(concordance, device);
            else if (call.format == "html")
                writeConcordPage(concordance, device);
            else
                printConcordTable(concordance, device,
                                  { output == standardName() ? terminalWidth() : 0, call.showsAll });
        });
    }

    int writeCsv() const
    {
        const ConcordCsvOptions csv = { call.isForExcel };
        const AnswerWriter variables = [&](QIODevice &device) { writeConcordVariablesCsv(concordance, device, csv); };
        const AnswerWriter codes = [&](QIODevice &device) { writeConcordCodesCsv(concordance, device, csv); };
        if (call.table.empty() && isDirectoryName(output))
            return writeInto(
                { { QStringLiteral("variables.csv"), variables }, { QStringLiteral("codes.csv"), codes } });
        return writeFile(output, call.table == "codes" ? codes : variables);
    }
    int writeRecodeflow() const
    {
        const QStringList omitted = recodeflowOmitted(concordance);
        if (!omitted.isEmpty())
            complain(QString(),
                     QStringLiteral("recodeflow cannot read some names of items; their variables are left out: %1")
                         .arg(omitted.join(QLatin1String("; "))));
        return writeInto({ { QStringLiteral("variable_details.csv"),
                             [&](QIODevice &device) { writeRecodeflowDetails(concordance, rounds, device); } },
                           { QStringLiteral("variables.csv"),
                             [&](QIODevice &device) { writeRecodeflowVariables(concordance, rounds, device); } } });
    }
    int writeInto(const QVector<ConcordFile> &results) const
    {
        int status = OutputDirectory(output, QString(), files).make();
        for (const ConcordFile &result : results) {
            if (status == statusFine)
                status = writeFile(inDirectory(output, result.name), result.write);
        }
        return status;
    }
    int writeFile(const QString &path, const AnswerWriter &write) const
    {
        const auto isInput = [&](const QString &file) { return isSameFile(path, file); };
        if (std::any_of(files.begin(), files.end(), isInput) || (call.map && isInput(map)))
            return noAnswerFor(path, QStringLiteral("is a file to read, and is not overwritten"));
        return writeAnswer(path, files.constLast(), write);
    }

    const ConcordCall &call;
    QString output;
    QString map;
    QString writtenMap;
    QStringList files;
    ConcordOptions options;
    QVector<int> linesOfMap; // of the decisions
    QVector<Layout> rounds;
    Concordance concordance;
};

} // namespace

int concordLayouts(const ConcordCall &call)
{
    bufferOutput();
    return ConcordRun(call).run();
}
