#include "LayoutOutput.h"

#include "Answer.h"
#include "Descriptor.h"
#include "DirectoryWalk.h"
#include "LayoutInput.h"
#include "LocaleText.h"
#include "OutputFile.h"
#include "OutputDirectory.h"
#include "Progress.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

using vanlayout::Layout;

namespace
{

/// One call of a command that writes layouts.
class OutputRun
{
public:
    OutputRun(const LayoutOutput &outputCall, const LayoutForm &layoutForm)
        : call(outputCall)
        , form(layoutForm)
        , output(QFile::decodeName(call.output.c_str()))
    {
        options.catalog = QFile::decodeName(call.catalog.c_str());
        language = fromLocale(call.language);
    }

    int run()
    {
        const bool isDirectory = needsDirectory();
        if (isDirectory && (output == QLatin1String("-") || output.isEmpty())) {
            complain(QString(),
                     QStringLiteral("several files are written into a directory; name it with -o DIRECTORY"));
            return statusNoAnswer;
        }
        if (std::count(call.files.begin(), call.files.end(), "-") > 1) {
            complain(QString(), QStringLiteral("standard input can be read only once; name - once"));
            return statusNoAnswer;
        }
        const NamedFiles named = filesNamed(call.files, call.walksDirectories, isDirectory ? output : QString());
        if (named.files.isEmpty())
            return named.status;
        if (!isDirectory)
            return writeOnlyFile(named.files.constFirst());
        return std::max(named.status, writeInto(named.files));
    }

private:
    bool needsDirectory() const
    {
        const auto isDir = [](const std::string &name) { return QFileInfo(QFile::decodeName(name.c_str())).isDir(); };
        return call.files.size() > 1
            || (call.walksDirectories && std::any_of(call.files.begin(), call.files.end(), isDir))
            || isDirectoryName(output);
    }

    int writeOnlyFile(const QString &file)
    {
        constexpr int standardOutput = 1;
        Progress progress(output == QLatin1String("-") && isTerminal(standardOutput));
        progress.begin(file);
        return writeOne(file, output);
    }

    int writeInto(const QStringList &files)
    {
        OutputDirectory directory(output, call.ending, files + QStringList(options.catalog));
        if (!call.index.isEmpty())
            directory.reserve(call.index);
        int status = directory.make();
        if (status != statusFine)
            return status;
        Progress progress;
        for (int i = 0; i < files.size(); ++i) {
            progress.begin(files.at(i), i + 1, files.size());
            status = std::max(status, writeOne(files.at(i), QString(), &directory));
        }
        return call.index.isEmpty() ? status : std::max(status, writeIndex(directory));
    }

    int writeIndex(const OutputDirectory &directory)
    {
        const QString path = inDirectory(output, call.index);
        return directory.isInput(call.index) ? noAnswerFor(path, isInputProblem()) : form.writeIndex(path);
    }

    // A file that cannot be read reserves no name in the directory.
    int writeOne(const QString &file, const QString &path, OutputDirectory *directory = nullptr)
    {
        return answerFor(file, [&] {
            const Layout layout = readExactLayout(file, options);
            const QString problem = problemOf(layout);
            if (!problem.isEmpty())
                return noAnswerFor(file, problem);
            complainIfReadInPart(layout);
            const QString target = directory ? directory->pathFor(file) : path;
            if (isSameFile(target, options.catalog))
                return noAnswerFor(target, isInputProblem());
            const int status = writeAnswer(target, file, [&](QIODevice &device) { form.write(layout, device); });
            if (directory && status == statusFine)
                form.written(layout, QFileInfo(target).fileName());
            return status;
        });
    }

    QString problemOf(const Layout &layout) const
    {
        if (const vanlayout::Problem *error = layout.error())
            return messageOf(*error);
        const QString problem = problemWithLanguage(layout, language);
        return problem.isEmpty() ? form.problem(layout) : problem;
    }

    static QString isInputProblem() { return QStringLiteral("is a file to read, and is not overwritten"); }

    const LayoutOutput &call;
    const LayoutForm &form;
    QString output;
    QString language;
    vanlayout::ReadOptions options;
};

} // namespace

int writeLayouts(const LayoutOutput &call, const LayoutForm &form)
{
    return OutputRun(call, form).run();
}
