#include "Find.h"

#include "Answer.h"
#include "Columns.h"
#include "Descriptor.h"
#include "DirectoryWalk.h"
#include "FindArguments.h"
#include "FindTable.h"
#include "InputFile.h"
#include "LayoutInput.h"
#include "LayoutText.h"
#include "LocaleText.h"
#include "OrderedWork.h"
#include "OutputFile.h"
#include "Progress.h"
#include "search/Search.h"
#include "search/SharedSets.h"
#include "write/SearchCsv.h"
#include "write/SearchJson.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <memory>
#include <new>
#include <optional>

using vanlayout::Layout;
using vanlayout::Problem;
using vanlayout::SearchPlace;
using vanlayout::SearchResult;
using vanlayout::SharedSet;

namespace
{

/// The result of searching one file.
struct FoundInFile {
    bool isSkipped = false; ///< a file of a directory that is no layout
    QStringList complaints; ///< lines for standard error
    int status = statusFine;
    SearchResult result;
    QVector<SharedSet> sets; ///< for --sets
};

// Problems of a file that is no layout, in contrast to a layout that is damaged.
bool isOtherFile(const Problem &problem)
{
    const std::array<QLatin1String, 4> ids = { QLatin1String("unknown-format"), QLatin1String("empty-file"),
                                               QLatin1String("no-dictionary"), QLatin1String("catalog-alone") };
    return std::find(ids.begin(), ids.end(), problem.id) != ids.end();
}

// Whether a file begins as JSON and is no dictionary: it need not be read to its end. A layout that `vanlayout show`
// wrote has keys of a dictionary, but begins with its version.
bool isOtherJson(const QString &file)
{
    constexpr int searchedSize = 1 << 16;
    const QByteArray head = headOf(file, searchedSize).trimmed();
    if (!head.startsWith('{'))
        return false;
    if (head.mid(1).trimmed().startsWith("\"layoutVersion\""))
        return true;
    const std::array<const char *, 4> keys
        = { "\"fileType\"", "\"recordType\"", "\"relativePositions\"", "\"levels\"" };
    return std::none_of(keys.begin(), keys.end(), [&](const char *key) { return head.contains(key); });
}

QString describeUnfinished(int texts)
{
    return countOf(texts, QStringLiteral("text")) + QLatin1String(texts == 1 ? " was" : " were")
        + QLatin1String(" not searched to its end, because a pattern needs too many steps; use a simpler one");
}

/// Writes the results of files in one form.
class FoundWriter
{
public:
    virtual ~FoundWriter() = default;
    virtual void write(const QString &file, const FoundInFile &found) = 0;
    /// Called after the last file.
    virtual void end() { }
};

class TableWriter : public FoundWriter
{
public:
    TableWriter(QIODevice &device, bool isGrouped, int width)
        : table(device, isGrouped, width)
    {
    }
    void write(const QString &file, const FoundInFile &found) override { table.print(file, found.result.hits); }

private:
    FindTable table;
};

class JsonWriter : public FoundWriter
{
public:
    explicit JsonWriter(QIODevice &target)
        : device(target)
    {
    }
    // A full device is reported at the end.
    void write(const QString &file, const FoundInFile &found) override
    {
        vanlayout::writeSearchJson(file, found.result.hits, device);
    }

private:
    QIODevice &device;
};

class CsvWriter : public FoundWriter
{
public:
    explicit CsvWriter(QIODevice &device)
        : csv(device)
    {
    }
    void write(const QString &file, const FoundInFile &found) override { csv.write(file, found.result.hits); }

private:
    vanlayout::SearchCsv csv;
};

class SetsWriter : public FoundWriter
{
public:
    SetsWriter(QIODevice &target, const std::string &outputFormat, const QString &labelLanguage, int columns)
        : device(target)
        , format(outputFormat)
        , language(labelLanguage)
        , width(columns)
    {
    }
    void write(const QString & /*file*/, const FoundInFile &found) override { sets.add(found.sets); }
    void end() override
    {
        const QVector<SharedSet> all = sets.mostUsedFirst();
        if (format == "json")
            vanlayout::writeSharedSetsJson(all, language, device);
        else if (format == "csv")
            vanlayout::writeSharedSetsCsv(all, device);
        else
            printSharedSets(all, language, device, width);
    }

private:
    QIODevice &device;
    const std::string &format;
    const QString &language;
    int width;
    vanlayout::SharedSets sets;
};

/// One run of the command.
class FindRun
{
public:
    explicit FindRun(const FindCall &findCall)
        : call(findCall)
        , output(QFile::decodeName(call.output.c_str()))
    {
    }

    int run()
    {
        const FindArguments arguments = divideArguments(call.arguments, neededWords());
        if (!arguments.problem.isEmpty())
            return noAnswer(arguments.problem);
        if (!call.listsSets) {
            search.emplace(optionsOf(arguments.words));
            if (!search->problem().isEmpty())
                return noAnswer(search->problem());
        }
        if (std::count(arguments.paths.begin(), arguments.paths.end(), "-") > 1)
            return noAnswer(QStringLiteral("standard input can be read only once; name - once"));
        return searchFiles(filesNamed(arguments.paths, true));
    }

private:
    static int noAnswer(const QString &problem)
    {
        complain(QString(), problem);
        return statusNoAnswer;
    }
    FindWords neededWords() const
    {
        if (call.listsSets || !call.words.empty())
            return FindWords::None;
        return call.codes.empty() ? FindWords::Required : FindWords::Optional;
    }
    vanlayout::SearchOptions optionsOf(const std::vector<std::string> &words)
    {
        vanlayout::SearchOptions options;
        for (const std::vector<std::string> *list : { &words, &call.words }) {
            for (const std::string &word : *list)
                options.words.append(fromLocale(word));
        }
        for (const std::string &code : call.codes)
            options.codes.append(fromLocale(code));
        for (const SearchPlace place :
             { SearchPlace::Name, SearchPlace::Label, SearchPlace::Value, SearchPlace::Note }) {
            if (std::count(call.places.begin(), call.places.end(), wordOf(place).toStdString()) > 0)
                options.places.append(place);
        }
        options.isAny = call.isAny;
        options.isPattern = call.isPattern;
        options.language = fromLocale(call.language);
        return options;
    }

    int searchFiles(NamedFiles namedFiles)
    {
        named = std::move(namedFiles);
        status = named.status;
        if (const std::optional<int> problem = withoutOutput())
            return *problem;
        if (named.files.isEmpty())
            return status;
        const int written = writeAnswer(output, QString(), [this](QIODevice &device) { writeHits(device); });
        if (!isAnyRead && status == statusFine)
            return noAnswer(QStringLiteral("none of the files has a layout"));
        return std::max({ written, status, int(isFound ? statusFine : statusFinding) });
    }
    // A file in a searched directory may be the output of an earlier search.
    std::optional<int> withoutOutput()
    {
        if (output == QLatin1String("-"))
            return std::nullopt;
        for (int i = named.files.size() - 1; i >= 0; --i) {
            if (!isSameFile(output, named.files.at(i)))
                continue;
            if (!named.areWalked.at(i))
                return noAnswerFor(output, QStringLiteral("is a file to search, and is not overwritten"));
            named.files.removeAt(i);
            named.areWalked.remove(i);
        }
        return std::nullopt;
    }

    void writeHits(QIODevice &device)
    {
        const int fileCount = int(named.files.size());
        const bool isShown = output == QLatin1String("-") && isTerminal(1);
        const std::unique_ptr<FoundWriter> writer = makeWriter(device, isShown);
        Progress progress(isShown);
        OrderedWork<FoundInFile> work(fileCount, [this](int number) { return searchFile(number); });
        progress.begin(named.files.constFirst(), 1, fileCount);
        work.run([&](int number, const FoundInFile &found) {
            take(named.files.at(number), found, *writer);
            if (number + 1 < fileCount)
                progress.begin(named.files.at(number + 1), number + 2, fileCount);
        });
        writer->end();
    }
    std::unique_ptr<FoundWriter> makeWriter(QIODevice &device, bool isShown) const
    {
        const int width = output == QLatin1String("-") ? terminalWidth() : 0;
        if (call.listsSets)
            return std::make_unique<SetsWriter>(device, call.format, language, width);
        if (call.format == "json")
            return std::make_unique<JsonWriter>(device);
        if (call.format == "csv")
            return std::make_unique<CsvWriter>(device);
        return std::make_unique<TableWriter>(device, isShown, width);
    }
    void take(const QString &file, const FoundInFile &found, FoundWriter &writer)
    {
        for (const QString &complaint : found.complaints)
            complainOfFile(file, complaint);
        status = std::max(status, found.status);
        isAnyRead = isAnyRead || (!found.isSkipped && found.status == statusFine);
        isFound = isFound || !found.result.hits.isEmpty() || !found.sets.isEmpty();
        writer.write(file, found);
    }

    // Runs on several threads at once.
    FoundInFile searchFile(int number) const
    {
        FoundInFile found;
        try {
            searchIn(named.files.at(number), named.areWalked.at(number), found);
        } catch (const std::bad_alloc &) {
            found = FoundInFile();
            found.complaints = QStringList(QStringLiteral("not enough memory"));
            found.status = statusNoAnswer;
        }
        return found;
    }
    void searchIn(const QString &file, bool isWalked, FoundInFile &found) const
    {
        found.isSkipped = isWalked && isOtherJson(file);
        if (found.isSkipped)
            return;
        const Layout layout = readExactLayout(file, {});
        if (const Problem *error = layout.error()) {
            found.isSkipped = isWalked && isOtherFile(*error);
            if (!found.isSkipped) {
                found.complaints.append(messageOf(*error));
                found.status = statusNoAnswer;
            }
            return;
        }
        for (const Problem &problem : layout.problems) {
            if (problem.id == QLatin1String("reading-ended"))
                found.complaints.append(problem.message);
        }
        if (call.listsSets)
            found.sets = vanlayout::valueSetsOf(layout);
        else
            found.result = search->hitsIn(layout);
        if (found.result.unfinishedTexts > 0)
            found.complaints.append(describeUnfinished(found.result.unfinishedTexts));
    }

    const FindCall &call;
    QString output;
    QString language = fromLocale(call.language);
    std::optional<vanlayout::Search> search; // none for --sets
    NamedFiles named;
    int status = statusFine;
    bool isAnyRead = false;
    bool isFound = false;
};

} // namespace

int findVariables(const FindCall &call)
{
    bufferOutput();
    try {
        return FindRun(call).run();
    } catch (const std::bad_alloc &) {
        complain(QString(), QStringLiteral("not enough memory"));
        return statusNoAnswer;
    }
}
