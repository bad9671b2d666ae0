#include "Show.h"

#include "Answer.h"
#include "Columns.h"
#include "CsvLine.h"
#include "FileCount.h"
#include "ItemSelection.h"
#include "LayoutCsv.h"
#include "LayoutInput.h"
#include "LayoutTable.h"
#include "LayoutText.h"
#include "LocaleText.h"
#include "Printable.h"
#include "Progress.h"
#include "write/LayoutJson.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <utility>

using vanlayout::JsonStyle;
using vanlayout::Language;
using vanlayout::Layout;
using vanlayout::Problem;
using vanlayout::ReadOptions;
using vanlayout::Severity;

namespace
{

/// Prints layouts one after the other.
class LayoutPrinter
{
public:
    virtual ~LayoutPrinter() = default;
    virtual void print(const Layout &layout) = 0;
    /// Prints an entry for a file without a layout; nothing in most forms.
    virtual void printError(const Layout & /*layout*/) { }
    /// True if the output includes the problems of a layout.
    virtual bool hasProblems() const { return false; }
};

class JsonLayouts : public LayoutPrinter
{
public:
    JsonLayouts(FileCount files, JsonStyle jsonStyle)
        : hasErrors(files == FileCount::several)
        , style(jsonStyle)
    {
        out.open(stdout, QIODevice::WriteOnly);
    }

    // A full device is reported at the end, with standard output.
    void print(const Layout &layout) override
    {
        vanlayout::writeLayoutJson(layout, out, style);
        out.flush();
    }
    void printError(const Layout &layout) override
    {
        if (hasErrors)
            vanlayout::writeErrorJson(layout, out, style);
        out.flush();
    }
    bool hasProblems() const override { return true; }

private:
    QFile out;
    bool hasErrors;
    JsonStyle style;
};

class CsvItems : public LayoutPrinter
{
public:
    CsvItems(FileCount files, const QString &language)
        : csv(stdout, files, language)
    {
    }
    void print(const Layout &layout) override { csv.write(layout); }

private:
    ItemCsv csv;
};

class CsvCodes : public LayoutPrinter
{
public:
    explicit CsvCodes(const QStringList &languages)
        : csv(stdout, languages)
    {
    }
    void print(const Layout &layout) override { csv.write(layout); }

private:
    CodeCsv csv;
};

/// Texts for reading, separated by empty lines.
class Tables : public LayoutPrinter
{
public:
    void print(const Layout &layout) override
    {
        if (!isFirst)
            printLine(stdout, QString());
        isFirst = false;
        printTable(layout);
    }

protected:
    virtual void printTable(const Layout &layout) = 0;

private:
    bool isFirst = true;
};

class LayoutTables : public Tables
{
public:
    explicit LayoutTables(LayoutTableStyle tableStyle)
        : style(std::move(tableStyle))
    {
    }

protected:
    void printTable(const Layout &layout) override { printLayoutTable(layout, style, stdout); }

private:
    LayoutTableStyle style;
};

class LanguageTables : public Tables
{
protected:
    void printTable(const Layout &layout) override
    {
        printLine(stdout, printable(layout.file));
        if (layout.languages.isEmpty())
            printLine(stdout, QStringLiteral("  declares no language"));
        constexpr int maxWidth = 24; // a longer code, which no real file has, only shifts its own label
        int width = 0;
        for (const Language &language : layout.languages)
            width = std::max(width, std::min(columnsOf(printable(language.name)), maxWidth));
        for (const Language &language : layout.languages)
            printLine(stdout,
                      QLatin1String("  ") + paddedToColumns(printable(language.name), width) + QLatin1String("  ")
                          + printable(language.label));
    }
};

class ProblemTables : public Tables
{
public:
    bool hasProblems() const override { return true; }

protected:
    void printTable(const Layout &layout) override
    {
        const QString count = layout.problems.isEmpty() ? QStringLiteral("no problem")
                                                        : countOf(layout.problems.size(), QStringLiteral("problem"));
        printLine(stdout, printable(layout.file) + QLatin1String(": ") + count);
        for (const Problem &problem : layout.problems)
            printProblem(problem);
    }

private:
    static void printProblem(const Problem &problem)
    {
        QString place = problem.line > 0 ? QStringLiteral("line %1: ").arg(problem.line) : QString();
        if (!problem.path.isEmpty())
            place += problem.path + QLatin1String(": ");
        printLine(stdout,
                  printable(QLatin1String("  ") + wordOf(problem.severity) + QLatin1String(": ") + place
                            + problem.message + QLatin1String(" [") + problem.id + QLatin1Char(']')));
    }
};

class ProblemCsv : public LayoutPrinter
{
public:
    ProblemCsv()
        : line(stdout)
    {
    }
    void print(const Layout &layout) override
    {
        writeHeader();
        for (const Problem &problem : layout.problems) {
            line.add(layout.file);
            line.add(wordOf(problem.severity));
            line.add(problem.id);
            line.add(problem.line);
            line.add(problem.path);
            line.add(problem.message);
            line.end();
        }
    }
    bool hasProblems() const override { return true; }

private:
    void writeHeader()
    {
        if (std::exchange(hasHeader, true))
            return;
        line.addPlain(QLatin1String("file,severity,id,line,path,message"));
        line.end();
    }

    CsvLine line;
    bool hasHeader = false;
};

/// One call of the command.
class ShowRun
{
public:
    explicit ShowRun(const ShowOptions &showOptions)
        : options(showOptions)
        , language(fromLocale(options.language))
        , selection(namesOf(options.variables))
    {
        readOptions.catalog = QFile::decodeName(options.catalog.c_str());
        for (const std::string &file : options.files)
            files.append(QFile::decodeName(file.c_str()));
    }

    int run()
    {
        printer = makePrinter();
        int status = statusFine;
        constexpr int standardOutput = 1;
        Progress progress(isTerminal(standardOutput));
        for (int i = 0; i < files.size(); ++i) {
            progress.begin(files.at(i), i + 1, files.size());
            status = std::max(status, showFile(i));
            std::fflush(stdout);
        }
        const QStringList missing = selection.unmatched();
        for (const QString &name : missing)
            status = std::max(status, noAnswerFor(name, QStringLiteral("no variable has this name")));
        return status;
    }

private:
    static QStringList namesOf(const std::vector<std::string> &names)
    {
        QStringList decodedNames;
        for (const std::string &name : names)
            decodedNames.append(fromLocale(name));
        return decodedNames;
    }

    std::unique_ptr<LayoutPrinter> makePrinter()
    {
        const FileCount fileCount = fileCountOf(files);
        if (options.listsLanguages)
            return std::make_unique<LanguageTables>();
        if (options.format == "json")
            return std::make_unique<JsonLayouts>(fileCount, options.isPretty ? JsonStyle::Pretty : JsonStyle::Compact);
        if (options.listsProblems)
            return options.format == "csv" ? std::unique_ptr<LayoutPrinter>(std::make_unique<ProblemCsv>())
                                           : std::make_unique<ProblemTables>();
        if (options.showsCodes)
            return std::make_unique<CsvCodes>(languagesOfCodes());
        if (options.format == "table")
            return std::make_unique<LayoutTables>(
                LayoutTableStyle{ language, options.showsValues, !options.variables.empty(), terminalWidth() });
        return std::make_unique<CsvItems>(fileCount, language);
    }

    // The languages with a column: the requested one, or those of all files, in the order of their first use. The
    // header line needs them before the first file is printed, so the files are first read for them. Inputs that
    // cannot be read again, such as standard input or a pipe, are kept.
    QStringList languagesOfCodes()
    {
        if (!language.isEmpty())
            return { language };
        QStringList languages;
        std::set<QString> known; // in lower case
        for (int i = 0; i < files.size(); ++i) {
            const Layout layout = read(files.at(i));
            for (const Language &declared : layout.languages) {
                if (known.insert(declared.name.toLower()).second)
                    languages.append(declared.name);
            }
            if (files.size() == 1 || !QFileInfo(files.at(i)).isFile())
                kept.emplace(i, layout);
        }
        return languages.size() > 1 ? languages : QStringList();
    }

    // The layout of a file, or the reason why there is none. Exhausted memory is such a reason.
    Layout read(const QString &file) const
    {
        try {
            return readExactLayout(file, readOptions);
        } catch (const std::bad_alloc &) {
            return withoutLayout(file, "no-memory", QStringLiteral("not enough memory"));
        }
    }
    static Layout withoutLayout(const QString &file, const char *id, const QString &message)
    {
        Layout layout;
        layout.file = file;
        layout.problems.append({ Severity::Error, QLatin1String(id), 0, QString(), message });
        return layout;
    }
    Layout take(int index)
    {
        const auto found = kept.find(index);
        if (found == kept.end())
            return read(files.at(index));
        Layout layout = std::move(found->second);
        kept.erase(found);
        return layout;
    }

    int showFile(int index)
    {
        Layout layout = take(index);
        const QString languageProblem = layout.isRead() ? problemWithLanguage(layout, language) : QString();
        if (!languageProblem.isEmpty())
            layout = withoutLayout(layout.file, "no-language", languageProblem);
        if (const Problem *error = layout.error()) {
            printer->printError(layout);
            return noAnswerFor(layout.file, messageOf(*error));
        }
        return answerFor(layout.file, [&] {
            selection.reduce(layout);
            printer->print(layout);
            if (!options.isQuiet && !printer->hasProblems())
                complainOfWarnings(layout);
            return statusFine;
        });
    }

    // A given catalog is not part of the file, so its warning is printed completely.
    static void complainOfWarnings(const Layout &layout)
    {
        int count = 0;
        for (const Problem &problem : layout.problems) {
            if (problem.id == QLatin1String("catalog-not-read"))
                complainOfFile(layout.file, problem.message);
            else if (problem.severity == Severity::Warning)
                ++count;
        }
        if (count > 0)
            complainOfFile(layout.file,
                           countOf(count, QStringLiteral("warning"))
                               + QLatin1String("; vanlayout show --problems lists them"));
    }

    const ShowOptions &options;
    QString language;
    ItemSelection selection;
    ReadOptions readOptions;
    QStringList files;
    std::map<int, Layout> kept; ///< layouts by the index of their file
    std::unique_ptr<LayoutPrinter> printer;
};

} // namespace

int show(const ShowOptions &options)
{
    if (options.showsCodes && options.format == "json") {
        complain(QString(), QStringLiteral("--codes can only be used with --format csv"));
        return statusNoAnswer;
    }
    if (options.listsLanguages && options.format != "table") {
        complain(
            QString(),
            QStringLiteral("--languages can only be used with --format table; the JSON form always has the languages"));
        return statusNoAnswer;
    }
    bufferOutput();
    return statusAfterOutput(ShowRun(options).run());
}
