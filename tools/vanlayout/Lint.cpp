#include "Lint.h"

#include "Answer.h"
#include "Columns.h"
#include "Descriptor.h"
#include "DirectoryWalk.h"
#include "LayoutInput.h"
#include "LintFix.h"
#include "LintSettings.h"
#include "LintTable.h"
#include "OutputFile.h"
#include "Progress.h"
#include "check/LintSarif.h"

#include <QFile>
#include <QSet>

#include <algorithm>

using namespace vanlayout;

namespace
{

constexpr int standardOutput = 1;

QString standardName()
{
    return QStringLiteral("-");
}

/// One run of the command.
class LintRun
{
public:
    explicit LintRun(const LintCall &lintCall)
        : call(lintCall)
        , output(QFile::decodeName(call.output.c_str()))
    {
    }

    int run()
    {
        const QString problem = problemWithCall();
        if (!problem.isEmpty()) {
            complain(QString(), problem);
            return statusNoAnswer;
        }
        const NamedFiles named = filesNamed(call.files, call.walksDirectories);
        status = named.status;
        files = named.files;
        if (files.count(standardName()) > 1) {
            complain(QString(), QStringLiteral("only one of the files can be standard input"));
            return statusNoAnswer;
        }
        if (files.isEmpty())
            return status;
        return call.isFixed ? fix() : check();
    }

private:
    QString problemWithCall() const
    {
        if (call.isPretty && call.format != "json")
            return QStringLiteral("--pretty can only be used with --format json");
        if (call.showsAll && call.format != "table")
            return QStringLiteral("--all can only be used with --format table; the other forms have all findings");
        if (!call.isFixed)
            return QString();
        if (call.format != "table")
            return QStringLiteral("--fix prints the difference; it cannot be used with --format");
        if (call.files.size() != 1 || call.files.front() == "-")
            return QStringLiteral("--fix corrects one dictionary; name one file");
        return QString();
    }

    // The options of the call have precedence over a settings file, except that what either disables is disabled.
    bool selectRules(const QString &file, LintOptions &options)
    {
        const LintSelection selection = settings.forFile(file);
        if (!selection.problem.isEmpty()) {
            if (!refused.contains(selection.file))
                complainOfFile(selection.file, selection.problem);
            refused.insert(selection.file);
            status = statusNoAnswer;
            return false;
        }
        options.only = call.only.empty() ? selection.only : rulesOf(call.only);
        options.disabled = selection.disabled + rulesOf(call.disabled);
        return true;
    }

    int fix()
    {
        if (files.size() != 1) {
            complain(QString(),
                     QStringLiteral("--fix corrects one dictionary, but %1 files are named").arg(files.size()));
            return statusNoAnswer;
        }
        const QString &file = files.constFirst();
        LintOptions options;
        if (!selectRules(file, options))
            return status;
        return answerFor(file, [&] { return fixFile(file, output, options, call.showsAll); });
    }

    int check()
    {
        const auto isInput = [&](const QString &file) { return isSameFile(output, file); };
        if (output != standardName() && std::any_of(files.begin(), files.end(), isInput))
            return noAnswerFor(output, QStringLiteral("is a file to read, and is not overwritten"));
        const int written = writeAnswer(output, QString(), [this](QIODevice &device) {
            QVector<LintedFile> gathered;
            Progress progress(output == standardName() && isTerminal(standardOutput));
            for (int i = 0; i < files.size(); ++i) {
                progress.begin(files.at(i), i + 1, int(files.size()));
                status = std::max(status,
                                  answerFor(files.at(i), [&] { return checkFile(files.at(i), gathered, device); }));
            }
            if (call.format == "sarif")
                writeLintSarif(gathered, device);
        });
        return std::max(status, written);
    }

    int checkFile(const QString &file, QVector<LintedFile> &gathered, QIODevice &device)
    {
        LintOptions options;
        if (!selectRules(file, options))
            return statusNoAnswer;
        const LintedFile linted = findingsOf(file, options);
        if (!linted.problem.isEmpty())
            complainOfFile(file, linted.problem);
        if (call.format == "sarif")
            gathered.append(linted);
        else if (call.format == "json")
            writeLintJson(linted, device, call.isPretty ? JsonStyle::Pretty : JsonStyle::Compact);
        else if (linted.problem.isEmpty())
            printLintTable(linted, { output == standardName() ? terminalWidth() : 0, call.showsAll }, device);
        if (!linted.problem.isEmpty())
            return statusNoAnswer;
        return linted.countOf(Severity::Error) > 0 ? statusFinding : statusFine;
    }

    static LintedFile findingsOf(const QString &file, LintOptions options)
    {
        ElementLines lines;
        ReadOptions reading;
        reading.lines = &lines;
        options.lines = &lines;
        const Layout layout = readExactLayout(file, reading);
        if (const Problem *error = layout.error())
            return { file, Format::None, {}, messageOf(*error) };
        return { file, layout.format, lint(layout, options), QString() };
    }

    const LintCall &call;
    QString output;
    QStringList files;
    LintSettings settings;
    QSet<QString> refused; ///< settings files that have been reported
    int status = statusFine;
};

} // namespace

int lintFiles(const LintCall &call)
{
    bufferOutput();
    if (call.listsRules)
        return writeAnswer(standardName(), QString(),
                           [](QIODevice &device) { printLintRules(terminalWidth(), device); });
    return LintRun(call).run();
}
