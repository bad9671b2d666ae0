#include "Diff.h"

#include "Answer.h"
#include "Columns.h"
#include "Descriptor.h"
#include "DiffTable.h"
#include "LayoutInput.h"
#include "LocaleText.h"
#include "OutputFile.h"
#include "Progress.h"
#include "compare/Diff.h"
#include "write/DiffJson.h"
#include "write/DiffPage.h"

#include <QFile>

#include <algorithm>
#include <new>

using vanlayout::DiffKind;
using vanlayout::DiffKindInfo;
using vanlayout::DiffOptions;
using vanlayout::Layout;
using vanlayout::LayoutDiff;

namespace
{

QVector<DiffKind> kindsOf(const std::vector<std::string> &words)
{
    QVector<DiffKind> kinds;
    for (const std::string &word : words) {
        if (const std::optional<DiffKind> kind = vanlayout::diffKindOf(fromLocale(word)))
            kinds.append(*kind);
    }
    return kinds;
}

/// One run of the command.
class DiffRun
{
public:
    explicit DiffRun(const DiffCall &diffCall)
        : call(diffCall)
        , output(QFile::decodeName(call.output.c_str()))
    {
    }

    int run()
    {
        options.language = fromLocale(call.language);
        options.only = kindsOf(call.only);
        options.ignored = kindsOf(call.ignored);
        if (call.isSummary && call.format != "table") {
            complain(QString(),
                     QStringLiteral("--summary can only be used with --format table; the other forms have the counts"));
            return statusNoAnswer;
        }
        if (call.oldFile == "-" && call.newFile == "-") {
            complain(QString(), QStringLiteral("only one of the two files can be standard input"));
            return statusNoAnswer;
        }
        return compareFiles();
    }

private:
    // Both files are read, so that the problems of both are printed.
    int compareFiles()
    {
        Progress progress(output == QLatin1String("-") && isTerminal(1));
        const int statusOfOld = read(call.oldFile, before, progress);
        const int status = std::max(statusOfOld, read(call.newFile, after, progress));
        if (status != statusFine)
            return status;
        complainIfReadInPart(before);
        complainIfReadInPart(after);
        if (isSameFile(output, before.file))
            return noAnswerFor(output, QStringLiteral("is a file to read, and is not overwritten"));
        LayoutDiff diff;
        const int compared = answerFor(after.file, [&] {
            diff = vanlayout::compare(before, after, options);
            return statusFine;
        });
        return compared == statusFine ? write(diff) : compared;
    }
    int read(const std::string &name, Layout &layout, Progress &progress)
    {
        const QString file = QFile::decodeName(name.c_str());
        progress.begin(file);
        return answerFor(file, [&] {
            layout = readExactLayout(file, {});
            if (const vanlayout::Problem *error = layout.error())
                return noAnswerFor(file, messageOf(*error));
            const QString problem = problemWithLanguage(layout, options.language);
            if (!problem.isEmpty())
                return noAnswerFor(file, problem);
            return int(statusFine);
        });
    }

    int write(const LayoutDiff &diff)
    {
        const int status = writeAnswer(output, after.file, [&](QIODevice &device) {
            const int width = output == QLatin1String("-") ? terminalWidth() : 0;
            if (call.format == "json")
                vanlayout::writeDiffJson(diff, device, vanlayout::JsonStyle::Pretty);
            else if (call.format == "html")
                vanlayout::writeDiffPage(diff, device);
            else if (call.isSummary)
                printDiffSummary(diff, device, width);
            else
                printDiffTable(diff, device, width);
        });
        return status == statusFine && !diff.isEmpty() ? int(statusFinding) : status;
    }

    const DiffCall &call;
    QString output;
    DiffOptions options;
    Layout before;
    Layout after;
};

} // namespace

std::vector<std::string> diffKindWords()
{
    std::vector<std::string> words;
    for (const DiffKindInfo &info : vanlayout::diffKinds())
        words.push_back(info.word.toStdString());
    return words;
}

int diffLayouts(const DiffCall &call)
{
    bufferOutput();
    return DiffRun(call).run();
}
