// The cost of checking a lookup file: within a process, and as a whole process of the tool compared with one of awk.

#include "GeneratedLookup.h"
#include "WholeProcess.h"

#include "lookup/Lookup.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QTemporaryDir>

#include <malloc.h>

#include <memory>

namespace
{

ProcessRunner *processRunner = nullptr;

// A generated file on disk. It is removed when the program ends.
QString lookupFile(LookupKeys keys, const benchmark::State &state)
{
    static const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("%1-%2.txt").arg(int(keys)).arg(state.range(0)));
    if (!QFile::exists(path))
        generateLookup(keys, int(state.range(0)), path);
    return path;
}

double bytesInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd);
}

double check(TVpLookup &lookup)
{
    std::map<QString, int *> frequencies;
    QStringList errors;
    lookup.consistencyCheck(ccBoth, frequencies, &errors);
    for (const auto &entry : frequencies)
        delete entry.second;
    return double(frequencies.size());
}

void inProcess(benchmark::State &state, LookupKeys keys)
{
    TVpLookup lookup;
    lookup.setFfileName(lookupFile(keys, state));
    const double before = bytesInUse();
    check(lookup);
    const double afterFirst = bytesInUse();
    for (auto round : state)
        benchmark::DoNotOptimize(check(lookup));
    state.counters["bytes/line"] = (afterFirst - before) / double(state.range(0));
    state.counters["moreAfterFurtherChecks"] = bytesInUse() - afterFirst;
    state.SetComplexityN(state.range(0));
}

void wholeProcess(benchmark::State &state, LookupKeys keys)
{
    const QString path = lookupFile(keys, state);
    const std::vector<std::string> command = { VAN_TOOL, "lookup", "--mode", "both", path.toStdString() };
    const std::vector<std::string> awk = { "/usr/bin/awk", "-f", VAN_LOOKUP_AWK, path.toStdString() };
    measureProcesses(state, *processRunner, command, awk, keys == LookupKeys::faulty ? 1 : 0);
    state.SetComplexityN(state.range(0));
}

void growing(benchmark::internal::Benchmark *bench)
{
    bench->Arg(10000)->Arg(100000)->Arg(1000000)->ArgName("lines")->Unit(benchmark::kMillisecond);
    bench->Complexity(benchmark::oNLogN);
}

} // namespace

BENCHMARK_CAPTURE(inProcess, shuffled, LookupKeys::shuffled)->Apply(growing);
BENCHMARK_CAPTURE(inProcess, ascending, LookupKeys::ascending)->Apply(growing);
BENCHMARK_CAPTURE(inProcess, faulty, LookupKeys::faulty)->Apply(growing);
BENCHMARK_CAPTURE(wholeProcess, shuffled, LookupKeys::shuffled)->Apply(growing)->UseManualTime();
BENCHMARK_CAPTURE(wholeProcess, ascending, LookupKeys::ascending)->Apply(growing)->UseManualTime();
BENCHMARK_CAPTURE(wholeProcess, faulty, LookupKeys::faulty)->Apply(growing)->UseManualTime();

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
