// The cost of reading a Stata or SPSS file as a whole process of the tool, compared with a process that only makes the
// two passes of ReadStat. The exact layout is also compared with the importers' fields of the same file.

#include "GeneratedStatFile.h"
#include "WholeProcess.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QTemporaryDir>

namespace
{

ProcessRunner *processRunner = nullptr;

// A generated file on disk. It is removed when the program ends.
QString statFile(const StatFileShape &shape)
{
    static const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("%1x%2%3-%4.%5")
                                                .arg(shape.variables)
                                                .arg(shape.labels)
                                                .arg(QLatin1String(shape.isOneSet ? "shared" : ""))
                                                .arg(shape.rows)
                                                .arg(QLatin1String(shape.kind == StatFile::dta ? "dta" : "sav")));
    if (!QFile::exists(path))
        generateStatFile(shape, path);
    return path;
}

std::string statFile(const benchmark::State &state, StatFile::Kind kind, bool isOneSet)
{
    return statFile({ kind, int(state.range(0)), int(state.range(1)), isOneSet, qint64(state.range(2)) }).toStdString();
}

std::vector<std::string> fieldsOf(const std::string &path)
{
    return { VAN_TOOL, "fields", "--format", "csv", path };
}

std::vector<std::string> exactLayoutOf(const std::string &path)
{
    return { VAN_TOOL, "show", "--format", "csv", path };
}

std::vector<std::string> passesOver(const std::string &path)
{
    return { VAN_STAT_PASSES_ONLY, path };
}

void wholeProcess(benchmark::State &state, StatFile::Kind kind, bool isOneSet)
{
    const std::string path = statFile(state, kind, isOneSet);
    measureProcesses(state, *processRunner, fieldsOf(path), passesOver(path));
}

void exactComparedToFields(benchmark::State &state, StatFile::Kind kind, bool isOneSet)
{
    const std::string path = statFile(state, kind, isOneSet);
    measureProcesses(state, *processRunner, exactLayoutOf(path), fieldsOf(path));
}

void exactComparedToPasses(benchmark::State &state, StatFile::Kind kind, bool isOneSet)
{
    const std::string path = statFile(state, kind, isOneSet);
    measureProcesses(state, *processRunner, exactLayoutOf(path), passesOver(path));
}

// Growing numbers of variables with ten labels each, without rows, and with so many rows that the largest file has 8
// GB.
void growing(benchmark::internal::Benchmark *bench)
{
    for (const int rows : { 0, 100000 }) {
        for (const int variables : { 100, 1000, 10000 })
            bench->Args({ variables, 10, rows });
    }
    bench->ArgNames({ "variables", "labels", "rows" })->Unit(benchmark::kMillisecond)->UseManualTime();
}

void shared(benchmark::internal::Benchmark *bench)
{
    bench->Args({ 10000, 1000, 0 })
        ->ArgNames({ "variables", "labels", "rows" })
        ->Unit(benchmark::kMillisecond)
        ->UseManualTime();
}

} // namespace

BENCHMARK_CAPTURE(wholeProcess, sav, StatFile::sav, false)->Apply(growing);
BENCHMARK_CAPTURE(wholeProcess, dta, StatFile::dta, false)->Apply(growing);
BENCHMARK_CAPTURE(wholeProcess, savOneSet, StatFile::sav, true)->Apply(shared);
BENCHMARK_CAPTURE(wholeProcess, dtaOneSet, StatFile::dta, true)->Apply(shared);
BENCHMARK_CAPTURE(exactComparedToFields, sav, StatFile::sav, false)->Apply(growing);
BENCHMARK_CAPTURE(exactComparedToFields, dta, StatFile::dta, false)->Apply(growing);
BENCHMARK_CAPTURE(exactComparedToFields, savOneSet, StatFile::sav, true)->Apply(shared);
BENCHMARK_CAPTURE(exactComparedToFields, dtaOneSet, StatFile::dta, true)->Apply(shared);
BENCHMARK_CAPTURE(exactComparedToPasses, sav, StatFile::sav, false)->Apply(growing);
BENCHMARK_CAPTURE(exactComparedToPasses, dta, StatFile::dta, false)->Apply(growing);

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
