// The cost of reading the exact layout of a dictionary: within a process, and as `vanlayout show`, which is compared
// with `vanlayout fields` on the same file.

#include "GeneratedDictionary.h"
#include "WholeProcess.h"

#include "check/Lint.h"
#include "read/Reader.h"
#include "write/Ddi.h"

#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QXmlStreamReader>

namespace
{

struct Form {
    const char *name;
    QByteArray (*generate)(int items, int values);
};

const Form text = { "text", generatedDictionary };
const Form json = { "json", generatedJsonDictionary };

// The DDI document of the text form.
QByteArray generatedDdi(int items, int values)
{
    QBuffer dictionary;
    dictionary.setData(generatedDictionary(items, values));
    dictionary.open(QIODevice::ReadOnly);
    QBuffer document;
    document.open(QIODevice::WriteOnly);
    vanlayout::writeDdi(vanlayout::readLayout(dictionary, QStringLiteral("name")), document);
    return document.data();
}

const Form xml = { "ddi", generatedDdi };

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

// The number of characters in a list of items and their values.
qint64 charactersOf(const vanlayout::Item &item)
{
    qint64 count = item.name.size() + item.labels.primary().size();
    for (const vanlayout::ValueSet &set : item.valueSets) {
        for (const vanlayout::Value &value : set.values)
            count += value.labels.primary().size() + value.ranges.size();
    }
    return count;
}

qint64 charactersOf(const vanlayout::Layout &layout)
{
    qint64 count = 0;
    for (const vanlayout::Level &level : layout.levels) {
        for (const vanlayout::Record &record : level.records) {
            for (const vanlayout::Item &item : record.items)
                count += charactersOf(item);
        }
    }
    return count;
}

void finish(benchmark::State &state, const QString &path)
{
    state.SetBytesProcessed(state.iterations() * QFile(path).size());
    state.SetComplexityN(state.range(0) * (state.range(1) + 1));
}

void bytesOnly(benchmark::State &state, const Form &form)
{
    const QString path = dictionaryFile(form, state);
    for (auto round : state) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            benchmark::DoNotOptimize(file.readAll());
    }
    finish(state, path);
}

// The XML parser on the same bytes, which are in memory.
void parseOnly(benchmark::State &state, const Form &form)
{
    const QString path = dictionaryFile(form, state);
    QFile file(path);
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    for (auto round : state) {
        QXmlStreamReader reader(bytes);
        while (!reader.atEnd())
            reader.readNext();
        benchmark::DoNotOptimize(reader.hasError());
    }
    finish(state, path);
}

void readAndWalk(benchmark::State &state, const Form &form)
{
    const QString path = dictionaryFile(form, state);
    for (auto round : state) {
        const vanlayout::Layout layout = vanlayout::readLayout(path);
        if (!layout.isRead()) {
            state.SkipWithError("there is no layout");
            return;
        }
        benchmark::DoNotOptimize(charactersOf(layout));
    }
    finish(state, path);
}

using Write = bool (*)(const vanlayout::Layout &layout, QIODevice &device);

bool ddi(const vanlayout::Layout &layout, QIODevice &device)
{
    return vanlayout::writeDdi(layout, device);
}

// A device that counts the bytes of a form and does not keep them.
class CountingDevice : public QIODevice
{
public:
    CountingDevice() { open(QIODevice::WriteOnly); }

    qint64 count = 0;

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *, qint64 size) override
    {
        count += size;
        return size;
    }
};

void writeOnly(benchmark::State &state, Write write)
{
    const QString path = dictionaryFile(text, state);
    const vanlayout::Layout layout = vanlayout::readLayout(path);
    CountingDevice device;
    for (auto round : state) {
        if (!write(layout, device)) {
            state.SkipWithError("nothing was written");
            return;
        }
    }
    state.SetBytesProcessed(device.count);
    state.SetComplexityN(state.range(0) * (state.range(1) + 1));
}

void lintOnly(benchmark::State &state)
{
    const vanlayout::Layout layout = vanlayout::readLayout(dictionaryFile(text, state));
    for (auto round : state)
        benchmark::DoNotOptimize(vanlayout::lint(layout));
    state.SetComplexityN(state.range(0) * (state.range(1) + 1));
}

// `vanlayout export`, compared with `vanlayout show` of the same file.
void exportProcess(benchmark::State &state, const char *target)
{
    const QString path = dictionaryFile(text, state);
    const std::vector<std::string> command = { VAN_TOOL, "export", "--to", target, path.toStdString() };
    const std::vector<std::string> show = { VAN_TOOL, "show", "--quiet", "--format", "json", path.toStdString() };
    measureProcesses(state, *processRunner, command, show);
    finish(state, path);
}

// The counters `other_ms` and `ratio` compare with the other command.
void wholeProcess(benchmark::State &state, const Form &form, const char *format)
{
    const QString path = dictionaryFile(form, state);
    const std::vector<std::string> show = { VAN_TOOL, "show", "--quiet", "--format", format, path.toStdString() };
    const std::vector<std::string> fields = { VAN_TOOL, "fields", "--format", format, path.toStdString() };
    measureProcesses(state, *processRunner, show, fields);
    finish(state, path);
}

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

BENCHMARK_CAPTURE(bytesOnly, text, text)->Apply(growing)->Complexity();
BENCHMARK_CAPTURE(bytesOnly, json, json)->Apply(growing)->Complexity();
BENCHMARK_CAPTURE(readAndWalk, text, text)->Apply(growing)->Complexity();
BENCHMARK_CAPTURE(readAndWalk, json, json)->Apply(growing)->Complexity();
BENCHMARK_CAPTURE(parseOnly, ddi, xml)->Apply(growing)->Complexity();
BENCHMARK_CAPTURE(readAndWalk, ddi, xml)->Apply(growing)->Complexity();
BENCHMARK_CAPTURE(readAndWalk, text, text)->Apply(lopsided);
BENCHMARK_CAPTURE(readAndWalk, ddi, xml)->Apply(lopsided);
BENCHMARK_CAPTURE(wholeProcess, textCsv, text, "csv")->Apply(growing)->UseManualTime()->Complexity();
BENCHMARK_CAPTURE(wholeProcess, jsonCsv, json, "csv")->Apply(growing)->UseManualTime()->Complexity();
BENCHMARK_CAPTURE(wholeProcess, textJson, text, "json")->Apply(growing)->UseManualTime()->Complexity();
BENCHMARK_CAPTURE(writeOnly, ddi, ddi)->Apply(growing)->Complexity();
BENCHMARK(lintOnly)->Apply(growing)->Complexity();
BENCHMARK(lintOnly)->Apply(lopsided);
BENCHMARK_CAPTURE(exportProcess, ddi, "ddi")->Apply(growing)->UseManualTime()->Complexity();
BENCHMARK_CAPTURE(exportProcess, csvw, "csvw")->Apply(growing)->UseManualTime()->Complexity();
BENCHMARK_CAPTURE(exportProcess, jsonSchema, "json-schema")->Apply(growing)->UseManualTime()->Complexity();
BENCHMARK_CAPTURE(exportProcess, frictionless, "frictionless")->Apply(growing)->UseManualTime()->Complexity();
BENCHMARK_CAPTURE(exportProcess, markdown, "markdown")->Apply(growing)->UseManualTime()->Complexity();
BENCHMARK_CAPTURE(exportProcess, csv, "csv")->Apply(growing)->UseManualTime()->Complexity();

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
