// The cost of checking a lookup file: within a process, as a whole process of the tool compared with one of awk, and
// that of collecting its entries in the way of the check and in plain ways.

#include "GeneratedLookup.h"
#include "PlainLookup.h"
#include "WholeProcess.h"

#include "lookup/Lookup.h"
#include "util/TextCache_p.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

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

// Reads the lines and collects them as a check does that counts frequencies.
template <typename Entries, bool sharesValues> void collectLines(QFile &file, std::map<QString, QString> &result)
{
    QTextStream stream(&file);
    Entries entries;
    const auto values = std::make_unique<TextCache>();
    std::map<QString, int *> map;
    lookup::Frequencies frequencies(map);
    QString line;
    while (stream.readLineInto(&line)) {
        const int separator = line.indexOf(QLatin1Char(' '));
        const QString key = line.left(separator);
        const QString value = line.mid(separator + 1);
        if (entries.add(key, sharesValues ? values->text(value) : value))
            frequencies.count(key, value);
    }
    entries.moveTo(result);
    for (const auto &entry : map)
        delete entry.second;
}

template <typename Entries, bool sharesValues = true> void collect(benchmark::State &state, LookupKeys keys)
{
    const QString path = lookupFile(keys, state);
    double bytes = 0;
    for (auto round : state) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            state.SkipWithError("the file cannot be opened");
            return;
        }
        const double before = bytesInUse();
        std::map<QString, QString> entries;
        collectLines<Entries, sharesValues>(file, entries);
        bytes = bytesInUse() - before;
    }
    state.counters["bytes/line"] = bytes / double(state.range(0));
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

void realSizes(benchmark::internal::Benchmark *bench)
{
    bench->Arg(10000)->Arg(1000000)->ArgName("lines")->Unit(benchmark::kMillisecond);
}

template <typename Entries, bool sharesValues = true> void registerCollecting(const std::string &way)
{
    const std::pair<const char *, LookupKeys> files[] = { { "shuffled", LookupKeys::shuffled },
                                                          { "ascending", LookupKeys::ascending },
                                                          { "faulty", LookupKeys::faulty },
                                                          { "named", LookupKeys::named } };
    for (const auto &[name, keys] : files)
        benchmark::RegisterBenchmark(("collect/" + way + '/' + name).c_str(), collect<Entries, sharesValues>, keys)
            ->Apply(realSizes);
}

} // namespace

BENCHMARK_CAPTURE(inProcess, shuffled, LookupKeys::shuffled)->Apply(growing);
BENCHMARK_CAPTURE(inProcess, ascending, LookupKeys::ascending)->Apply(growing);
BENCHMARK_CAPTURE(inProcess, faulty, LookupKeys::faulty)->Apply(growing);
BENCHMARK_CAPTURE(inProcess, named, LookupKeys::named)->Apply(growing);
BENCHMARK_CAPTURE(wholeProcess, shuffled, LookupKeys::shuffled)->Apply(growing)->UseManualTime();
BENCHMARK_CAPTURE(wholeProcess, ascending, LookupKeys::ascending)->Apply(growing)->UseManualTime();
BENCHMARK_CAPTURE(wholeProcess, faulty, LookupKeys::faulty)->Apply(growing)->UseManualTime();
BENCHMARK_CAPTURE(wholeProcess, named, LookupKeys::named)->Apply(growing)->UseManualTime();

int main(int argc, char **argv)
{
    ProcessRunner runner;
    processRunner = &runner;
    registerCollecting<lookup::Entries>("ours");
    registerCollecting<lookup::Entries, false>("withoutTextCache");
    registerCollecting<plain::UnorderedEntries>("withoutOrder");
    registerCollecting<plain::SetEntries<KeyedSet<QString>>>("keyedSet");
    registerCollecting<plain::SetEntries<std::unordered_set<QString>>>("setOfQtHash");
    registerCollecting<plain::HashEntries>("QHash");
    registerCollecting<plain::MapEntries>("map");
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
