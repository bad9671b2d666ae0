// What reading a CSPro text dictionary costs, inside a process and as a whole process of the tool.

#include "ChildProcess.h"
#include "GeneratedDictionary.h"

#include "cspro/CSProDataImport.h"
#include "import/DataProvider.h"
#include "util/TextFile_p.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <malloc.h>

#include <chrono>
#include <memory>

namespace
{

ProcessRunner *processRunner = nullptr;

// A generated dictionary on disk, for as long as the program runs.
QString dictionaryFile(int items, int values)
{
    static const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("%1x%2.dcf").arg(items).arg(values));
    QFile file(path);
    if (!file.exists() && file.open(QIODevice::WriteOnly))
        file.write(generatedDictionary(items, values));
    return path;
}

double bytesInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd);
}

// Only reads and decodes the bytes.
void decodeFile(const QString &path)
{
    TextFileReader file(path);
    QString text;
    while (file.readBlock(text))
        benchmark::DoNotOptimize(text.constData());
}

double secondsToDecode(const QString &path)
{
    const auto start = std::chrono::steady_clock::now();
    decodeFile(path);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The whole road: importer, provider. What is made stays alive, as it does for every caller.
int readLayout(const QString &path)
{
    std::unique_ptr<TDataImport> importer = std::make_unique<TCSProDataImport>(path);
    const std::unique_ptr<QStringList> names(importer->selectLayoutSource());
    TVpDataProvider provider;
    provider.genericGetFieldsFrom(importer.get());
    return provider.getFields()->size();
}

void decodeOnly(benchmark::State &state)
{
    const QString path = dictionaryFile(int(state.range(0)), int(state.range(1)));
    for (auto round : state)
        decodeFile(path);
    state.SetBytesProcessed(state.iterations() * QFile(path).size());
    state.SetComplexityN(state.range(0) * (state.range(1) + 1));
}

void wholeRoad(benchmark::State &state)
{
    const int items = int(state.range(0));
    const int values = int(state.range(1));
    const QString path = dictionaryFile(items, values);
    const double before = bytesInUse();
    if (readLayout(path) != items) {
        state.SkipWithError("a variable is missing");
        return;
    }
    const double kept = bytesInUse() - before;
    for (auto round : state)
        readLayout(path);
    state.SetBytesProcessed(state.iterations() * QFile(path).size());
    state.SetComplexityN(state.range(0) * (state.range(1) + 1));
    state.counters["bytes/item"] = kept / items;
    if (values > 0)
        state.counters["bytes/value"] = kept / (double(items) * values);
}

void wholeProcess(benchmark::State &state)
{
    const QString path = dictionaryFile(int(state.range(0)), int(state.range(1)));
    const std::vector<std::string> command = { VAN_TOOL, "show", "--format", "csv", path.toStdString() };
    double peak = 0;
    double toolSeconds = 0;
    double decodeSeconds = 0;
    for (auto round : state) {
        const ProcessCost cost = processRunner->run(command);
        if (cost.status != 0) {
            state.SkipWithError("vanlayout failed");
            return;
        }
        state.SetIterationTime(cost.seconds);
        peak = std::max(peak, cost.peakBytes);
        toolSeconds += cost.seconds;
        decodeSeconds += secondsToDecode(path);
    }
    state.SetBytesProcessed(state.iterations() * QFile(path).size());
    state.SetComplexityN(state.range(0) * (state.range(1) + 1));
    state.counters["peakMiB"] = peak / (1 << 20);
    state.counters["timesDecoding"] = toolSeconds / decodeSeconds;
}

// Dictionaries of items with ten values each, in growing numbers.
void growing(benchmark::internal::Benchmark *bench)
{
    for (const int items : { 100, 1000, 10000, 100000 })
        bench->Args({ items, 10 });
    bench->ArgNames({ "items", "values" })->Unit(benchmark::kMillisecond);
}

// One item with very many values, and items without any.
void lopsided(benchmark::internal::Benchmark *bench)
{
    for (const int values : { 10000, 100000, 1000000 })
        bench->Args({ 1, values });
    bench->Args({ 10000, 0 });
    bench->ArgNames({ "items", "values" })->Unit(benchmark::kMillisecond);
}

} // namespace

// The layouts that are read stay in memory, hence few rounds.
BENCHMARK(decodeOnly)->Apply(growing)->Complexity();
BENCHMARK(wholeRoad)->Apply(growing)->Iterations(3)->Complexity();
BENCHMARK(wholeRoad)->Apply(lopsided)->Iterations(3);
BENCHMARK(wholeProcess)->Apply(growing)->UseManualTime()->Complexity();
BENCHMARK(wholeProcess)->Apply(lopsided)->UseManualTime();

int main(int argc, char **argv)
{
    ProcessRunner runner;
    processRunner = &runner;
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
