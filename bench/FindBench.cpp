// The cost of a search: `vanlayout find` over directories of files of all formats that are not in the cache of the
// system, and the search in one layout that has been read.

#include "ChildProcess.h"
#include "GeneratedDictionary.h"
#include "GeneratedStatFile.h"

#include "read/Reader.h"
#include "search/Search.h"

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace
{

constexpr int items = 200;
constexpr int values = 5;

ProcessRunner *processRunner = nullptr;

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(content);
}

// Of ten files, four are dictionaries in text form, two in JSON form, two SPSS and two Stata files with 10,000 rows.
void writeFile(const QString &path, int number)
{
    constexpr int rows = 10000;
    constexpr int kinds = 10;
    const int kind = number % kinds;
    if (kind < 4)
        write(path, generatedDictionary(items, values));
    else if (kind < 6)
        write(path, generatedJsonDictionary(items, values));
    else
        generateStatFile({ kind < 8 ? StatFile::sav : StatFile::dta, items, values, false, rows }, path);
}

// A directory with this number of files. It is removed when the program ends.
QStringList generatedFiles(int count)
{
    static const QTemporaryDir directory;
    QDir place(directory.filePath(QString::number(count)));
    if (!place.exists()) {
        place.mkpath(QStringLiteral("."));
        for (int i = 0; i < count; ++i)
            writeFile(place.filePath(QString::number(i)), i);
    }
    QStringList files;
    const QStringList names = place.entryList(QDir::Files);
    for (const QString &name : names)
        files.append(place.filePath(name));
    return files;
}

// Removes a file from the cache of the system, as far as the system allows.
void forget(const QString &path)
{
    const int descriptor = open(QFile::encodeName(path).constData(), O_RDONLY);
    fdatasync(descriptor);
    posix_fadvise(descriptor, 0, 0, POSIX_FADV_DONTNEED);
    close(descriptor);
}

void findInFiles(benchmark::State &state, const std::vector<std::string> &options)
{
    constexpr double milliseconds = 1000;
    const QStringList files = generatedFiles(int(state.range(0)));
    std::vector<std::string> command = { VAN_TOOL, "find" };
    command.insert(command.end(), options.begin(), options.end());
    command.push_back(QFileInfo(files.constFirst()).path().toStdString());
    double peakBytes = 0;
    double processorSeconds = 0;
    for (auto round : state) {
        std::for_each(files.begin(), files.end(), forget);
        const ProcessCost cost = processRunner->run(command);
        if (cost.status != 0 && cost.status != 1) {
            state.SkipWithError("a process failed");
            return;
        }
        state.SetIterationTime(cost.seconds);
        peakBytes = std::max(peakBytes, cost.peakBytes);
        processorSeconds += cost.processorSeconds;
    }
    state.counters["peakMiB"] = peakBytes / (1 << 20);
    state.counters["cpu_ms"] = processorSeconds * milliseconds / double(state.iterations());
    state.SetComplexityN(state.range(0));
}

void findInLayout(benchmark::State &state)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("layout.dcf"));
    write(path, generatedDictionary(int(state.range(0)), values));
    const vanlayout::Layout layout = vanlayout::readLayout(path);
    vanlayout::SearchOptions options;
    options.words = QStringList{ QStringLiteral("island"), QStringLiteral("question") };
    options.codes = QStringList(QStringLiteral("3"));
    options.isAny = true;
    const vanlayout::Search search(options);
    for (auto round : state)
        benchmark::DoNotOptimize(search.hitsIn(layout).hits.size());
    state.SetComplexityN(state.range(0));
}

void counts(benchmark::internal::Benchmark *bench)
{
    for (const int count : { 100, 800, 1000 })
        bench->Arg(count);
    bench->ArgName("files")->Unit(benchmark::kMillisecond)->UseManualTime();
}

} // namespace

BENCHMARK_CAPTURE(findInFiles, oneWord, { "island" })->Apply(counts);
BENCHMARK_CAPTURE(findInFiles, words, { "--any", "island", "question" })->Apply(counts);
BENCHMARK_CAPTURE(findInFiles, codes, { "--codes", "3" })->Apply(counts);
BENCHMARK_CAPTURE(findInFiles, pattern, { "--regex", "isl.nd" })->Apply(counts);
BENCHMARK_CAPTURE(findInFiles, sets, { "--sets" })->Apply(counts);
BENCHMARK(findInLayout)->ArgName("items")->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->Complexity();

int main(int argc, char **argv)
{
    ProcessRunner runner;
    processRunner = &runner;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
