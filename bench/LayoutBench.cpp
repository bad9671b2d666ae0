// The cost of reading a dictionary: within a process, and as a whole process of the tool.

#include "GeneratedDictionary.h"
#include "WholeProcess.h"

#include "cspro/CSProDataImport.h"
#include "cspro/CSProJsonDataImport.h"
#include "import/DataProvider.h"
#include "import/ReadReport.h"
#include "cspro/TextFileReader_p.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <malloc.h>

#include <memory>

namespace
{

// One form of dictionary: its generator, its reader, and the minimal work of any reader.
struct Form {
    const char *name;
    QByteArray (*generate)(int items, int values);
    std::unique_ptr<TDataImport> (*makeImporter)(const QString &path);
    void (*readBytes)(const QString &path);
};

template <typename Importer> std::unique_ptr<TDataImport> makeImporter(const QString &path)
{
    return std::make_unique<Importer>(path);
}

void decodeText(const QString &path)
{
    TextFileReader file(path);
    QString text;
    while (file.readBlock(text))
        benchmark::DoNotOptimize(text.constData());
}

void parseJson(const QString &path)
{
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        benchmark::DoNotOptimize(QJsonDocument::fromJson(file.readAll()));
}

const Form text = { "text", generatedDictionary, makeImporter<TCSProDataImport>, decodeText };
const Form json = { "json", generatedJsonDictionary, makeImporter<TCSProJsonDataImport>, parseJson };

ProcessRunner *processRunner = nullptr;

// A generated dictionary on disk. It is removed when the program ends.
QString dictionaryFile(const Form &form, const benchmark::State &state)
{
    static const QTemporaryDir directory;
    const QString name
        = QStringLiteral("%1-%2x%3.dcf").arg(QLatin1String(form.name)).arg(state.range(0)).arg(state.range(1));
    QFile file(directory.filePath(name));
    if (!file.exists() && file.open(QIODevice::WriteOnly))
        file.write(form.generate(int(state.range(0)), int(state.range(1))));
    return file.fileName();
}

double bytesInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd);
}

// The whole data flow: importer, then provider. The objects that they make are kept, as for every caller.
int readLayout(const Form &form, const QString &path, bool isReported)
{
    const std::unique_ptr<TDataImport> importer = form.makeImporter(path);
    ReadReport report;
    if (isReported)
        importer->setReadReport(&report);
    const std::unique_ptr<QStringList> names(importer->selectLayoutSource());
    TVpDataProvider provider;
    provider.genericGetFieldsFrom(importer.get());
    return provider.getFields()->size();
}

void finish(benchmark::State &state, const QString &path)
{
    state.SetBytesProcessed(state.iterations() * QFile(path).size());
    state.SetComplexityN(state.range(0) * (state.range(1) + 1));
}

void bytesOnly(benchmark::State &state, const Form &form)
{
    const QString path = dictionaryFile(form, state);
    for (auto round : state)
        form.readBytes(path);
    finish(state, path);
}

void wholeRoad(benchmark::State &state, const Form &form, bool isReported)
{
    const QString path = dictionaryFile(form, state);
    const double items = double(state.range(0));
    const double values = double(state.range(1));
    const double before = bytesInUse();
    if (readLayout(form, path, isReported) != items) {
        state.SkipWithError("a variable is missing");
        return;
    }
    const double kept = bytesInUse() - before;
    for (auto round : state)
        readLayout(form, path, isReported);
    finish(state, path);
    state.counters["bytes/item"] = kept / items;
    if (values > 0)
        state.counters["bytes/value"] = kept / (items * values);
}

// The tool, and after each run a process that does the minimal work.
void wholeProcess(benchmark::State &state, const Form &form)
{
    const QString path = dictionaryFile(form, state);
    const std::vector<std::string> command = { VAN_TOOL, "fields", "--format", "csv", path.toStdString() };
    const std::vector<std::string> least = { VAN_BYTES_ONLY, form.name, path.toStdString() };
    measureProcesses(state, *processRunner, command, least);
    finish(state, path);
}

// The value of each group of an importer that has opened a dictionary with this number of records.
void groupValues(benchmark::State &state)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("records.dcf")));
    if (file.open(QIODevice::WriteOnly))
        file.write(generatedRecords(int(state.range(0))));
    file.close();
    const std::unique_ptr<TDataImport> importer = makeImporter<TCSProDataImport>(file.fileName());
    const std::unique_ptr<QStringList> names(importer->selectLayoutSource());
    const int groups = importer->getGroupCount();
    if (groups != state.range(0)) {
        state.SkipWithError("a record is missing");
        return;
    }
    for (auto round : state) {
        for (int i = 0; i < groups; ++i)
            benchmark::DoNotOptimize(importer->getGroupValue(i));
    }
    state.SetComplexityN(groups);
}

// Dictionaries of items with ten values each, in growing numbers.
void growing(benchmark::internal::Benchmark *bench)
{
    for (const int items : { 100, 1000, 10000, 100000 })
        bench->Args({ items, 10 });
    bench->ArgNames({ "items", "values" })->Unit(benchmark::kMillisecond);
}

// One item with very many values, and items without values.
void lopsided(benchmark::internal::Benchmark *bench)
{
    for (const int values : { 10000, 100000, 1000000 })
        bench->Args({ 1, values });
    bench->Args({ 10000, 0 });
    bench->ArgNames({ "items", "values" })->Unit(benchmark::kMillisecond);
}

} // namespace

// The layouts are kept in memory, so there are only a few rounds.
BENCHMARK_CAPTURE(bytesOnly, text, text)->Apply(growing)->Complexity();
BENCHMARK_CAPTURE(bytesOnly, json, json)->Apply(growing)->Complexity();
BENCHMARK_CAPTURE(wholeRoad, text, text, false)->Apply(growing)->Iterations(3)->Complexity();
BENCHMARK_CAPTURE(wholeRoad, json, json, false)->Apply(growing)->Iterations(3)->Complexity();
BENCHMARK_CAPTURE(wholeRoad, textReported, text, true)->Apply(growing)->Iterations(3)->Complexity();
BENCHMARK_CAPTURE(wholeRoad, jsonReported, json, true)->Apply(growing)->Iterations(3)->Complexity();
BENCHMARK_CAPTURE(wholeRoad, text, text, false)->Apply(lopsided)->Iterations(3);
BENCHMARK(groupValues)
    ->ArgName("records")
    ->Arg(1)
    ->Arg(17)
    ->RangeMultiplier(10)
    ->Range(100, 100000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(wholeProcess, text, text)->Apply(growing)->UseManualTime()->Complexity();
BENCHMARK_CAPTURE(wholeProcess, text, text)->Apply(lopsided)->UseManualTime();
BENCHMARK_CAPTURE(wholeProcess, json, json)->Apply(growing)->UseManualTime()->Complexity();

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
