// The cost of a concordance: `vanlayout concord` of growing numbers of rounds with 1,000 variables, and each writer.
// The names of a question move on every ten rounds, and a label changes in each round.

#include "ChildProcess.h"
#include "GeneratedDictionary.h"

#include "compare/Concord.h"
#include "read/Reader.h"
#include "write/ConcordCsv.h"
#include "write/ConcordJson.h"
#include "write/ConcordMapCsv.h"
#include "write/ConcordPage.h"
#include "write/Recodeflow.h"

#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <string>
#include <vector>

using namespace vanlayout;

namespace
{

constexpr int values = 5;

ProcessRunner *processRunner = nullptr;

// The dictionary of a round: the generated one, with the number of a tenth round in its names, and some other labels.
QByteArray roundOf(int variables, int round)
{
    constexpr int roundsOfAName = 10;
    QByteArray text = generatedDictionary(variables, values);
    text.replace("\nName=Q", "\nName=Q" + QByteArray::number(round / roundsOfAName) + '_');
    const QByteArray number = QByteArray::number(round % variables) + " of the form";
    return text.replace(" " + number, " " + number + " or of a page");
}

// The files of this number of rounds. They are removed when the program ends.
std::vector<std::string> filesOf(int rounds, int variables)
{
    static const QTemporaryDir directory;
    std::vector<std::string> paths;
    for (int round = 0; round < rounds; ++round) {
        const QString path = directory.filePath(QStringLiteral("%1-%2.dcf").arg(variables).arg(round));
        QFile file(path);
        if (!file.exists() && file.open(QIODevice::WriteOnly))
            file.write(roundOf(variables, round));
        paths.push_back(path.toStdString());
    }
    return paths;
}

QVector<Layout> layoutsOf(int rounds, int variables)
{
    QVector<Layout> layouts;
    for (const std::string &path : filesOf(rounds, variables))
        layouts.append(readLayout(QString::fromStdString(path)));
    return layouts;
}

void wholeProcess(benchmark::State &state, const std::string &form)
{
    constexpr int variables = 1000;
    constexpr double milliseconds = 1000;
    std::vector<std::string> command = { VAN_TOOL, "concord", "--format", form };
    const std::vector<std::string> files = filesOf(int(state.range(0)), variables);
    command.insert(command.end(), files.begin(), files.end());
    double peakBytes = 0;
    double processorSeconds = 0;
    for (auto round : state) {
        const ProcessCost cost = processRunner->run(command);
        if (cost.status != 0) {
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

using Writer = void (*)(const Concordance &concordance, const QVector<Layout> &rounds, QIODevice &device);

void write(benchmark::State &state, Writer writer)
{
    constexpr int variables = 100;
    const QVector<Layout> rounds = layoutsOf(int(state.range(0)), variables);
    const Concordance concordance = concord(rounds);
    qint64 bytes = 0;
    for (auto round : state) {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        writer(concordance, rounds, buffer);
        bytes = buffer.size();
    }
    state.counters["bytes"] = double(bytes);
    state.SetComplexityN(state.range(0));
}

void json(const Concordance &concordance, const QVector<Layout> & /*rounds*/, QIODevice &device)
{
    writeConcordJson(concordance, device);
}

void csv(const Concordance &concordance, const QVector<Layout> & /*rounds*/, QIODevice &device)
{
    writeConcordVariablesCsv(concordance, device);
    writeConcordCodesCsv(concordance, device);
}

void page(const Concordance &concordance, const QVector<Layout> & /*rounds*/, QIODevice &device)
{
    writeConcordPage(concordance, device);
}

void map(const Concordance &concordance, const QVector<Layout> & /*rounds*/, QIODevice &device)
{
    writeConcordMap(concordance, {}, device);
}

void recodeflow(const Concordance &concordance, const QVector<Layout> &rounds, QIODevice &device)
{
    writeRecodeflowDetails(concordance, rounds, device);
    writeRecodeflowVariables(concordance, rounds, device);
}

void growing(benchmark::internal::Benchmark *bench)
{
    for (const int rounds : { 5, 25, 100 })
        bench->Arg(rounds);
    bench->ArgName("rounds")->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK_CAPTURE(wholeProcess, table, "table")->Apply(growing)->UseManualTime()->Complexity();
BENCHMARK_CAPTURE(wholeProcess, json, "json")->Apply(growing)->UseManualTime()->Complexity();
BENCHMARK_CAPTURE(wholeProcess, html, "html")->Apply(growing)->UseManualTime()->Complexity();
BENCHMARK_CAPTURE(write, json, json)->Apply(growing)->Complexity();
BENCHMARK_CAPTURE(write, csv, csv)->Apply(growing)->Complexity();
BENCHMARK_CAPTURE(write, page, page)->Apply(growing)->Complexity();
BENCHMARK_CAPTURE(write, map, map)->Apply(growing)->Complexity();
BENCHMARK_CAPTURE(write, recodeflow, recodeflow)->Apply(growing)->Complexity();

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
