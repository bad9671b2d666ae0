// A dictionary, from its bytes to its layout and all forms in which the layout is written. The layout is also compared
// with itself, is two rounds of a concordance, and is checked and corrected.

#include "check/Fix.h"
#include "check/LintSarif.h"
#include "compare/Concord.h"
#include "compare/Diff.h"
#include "read/ConcordMap.h"
#include "read/Reader.h"
#include "write/Codebook.h"
#include "write/CodebookCsv.h"
#include "write/ConcordCsv.h"
#include "write/ConcordJson.h"
#include "write/ConcordMapCsv.h"
#include "write/ConcordPage.h"
#include "write/Csvw.h"
#include "write/Ddi.h"
#include "write/DiffJson.h"
#include "write/Exportable.h"
#include "write/Frictionless.h"
#include "write/JsonSchema.h"
#include "write/Markdown.h"
#include "write/Recodeflow.h"

#include <QBuffer>
#include <QJsonDocument>
#include <QXmlStreamReader>

using namespace vanlayout;

namespace
{

template <typename Write> QByteArray written(Write write)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!write(buffer))
        qFatal("a form is not written whole");
    return buffer.data();
}

template <typename Write> void checkJson(Write write)
{
    if (!QJsonDocument::fromJson(written(write)).isObject())
        qFatal("a JSON form is no JSON object");
}

void checkDdi(const Layout &layout, DdiProfile profile)
{
    DdiOptions options;
    options.profile = profile;
    QXmlStreamReader xml(written([&](QIODevice &device) { return writeDdi(layout, device, options); }));
    while (!xml.atEnd())
        xml.readNext();
    if (xml.hasError())
        qFatal("DDI is not well-formed: %s", qPrintable(xml.errorString()));
}

void checkConcordance(const Layout &layout)
{
    const QVector<Layout> rounds = { layout, layout };
    const Concordance concordance = concord(rounds);
    checkJson([&](QIODevice &device) { return writeConcordJson(concordance, device); });
    written([&](QIODevice &device) { return writeConcordPage(concordance, device); });
    written([&](QIODevice &device) { return writeConcordVariablesCsv(concordance, device); });
    written([&](QIODevice &device) { return writeConcordCodesCsv(concordance, device); });
    written([&](QIODevice &device) { return writeRecodeflowDetails(concordance, rounds, device); });
    written([&](QIODevice &device) { return writeRecodeflowVariables(concordance, rounds, device); });
    QByteArray bytes = written([&](QIODevice &device) { return writeConcordMap(concordance, {}, device); });
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const ConcordMap map = readConcordMap(buffer, concordance.rounds);
    if (!map.problems.isEmpty() || !map.decisions.isEmpty())
        qFatal("a map without decisions is not read as written");
}

Layout layoutOf(QByteArray bytes, ElementLines *lines = nullptr)
{
    ReadOptions options;
    options.lines = lines;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return readLayout(buffer, QStringLiteral("name"), options);
}

void checkFindings(const Layout &layout, const ElementLines &lines)
{
    LintOptions options;
    options.lines = &lines;
    const LintedFile file = { layout.file, layout.format, lint(layout, options), QString() };
    checkJson([&](QIODevice &device) { return writeLintSarif({ file }, device); });
    checkJson([&](QIODevice &device) { return writeLintJson(file, device); });
    const FixedDictionary fixed = fixDictionary(layout);
    if (fixed.problem.isEmpty() && fixDictionary(layoutOf(fixed.bytes)).bytes != fixed.bytes)
        qFatal("a corrected dictionary is corrected again");
}

void checkForms(const Layout &layout)
{
    checkConcordance(layout);
    if (exportProblem(layout).isEmpty()) {
        checkDdi(layout, DdiProfile::Plain);
        checkDdi(layout, DdiProfile::Ipums);
        checkJson([&](QIODevice &device) { return writeCsvw(layout, device); });
        checkJson([&](QIODevice &device) { return writeJsonSchema(layout, device); });
        checkJson([&](QIODevice &device) { return writeFrictionless(layout, device); });
    }
    written([&](QIODevice &device) { return writeMarkdown(layout, device); });
    written([&](QIODevice &device) { return writeCodebookCsv(layout, device); });
    written([&](QIODevice &device) { return writeCodebook(layout, device); });
    const LayoutDiff diff = compare(layout, layout);
    if (!diff.changes.isEmpty())
        qFatal("a layout differs from itself");
    checkJson([&](QIODevice &device) { return writeDiffJson(diff, device); });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    constexpr size_t longest = 1 << 16; // a few bytes can state a million columns
    if (size > longest)
        return 0;
    ElementLines lines;
    const Layout layout = layoutOf(QByteArray(reinterpret_cast<const char *>(data), int(size)), &lines);
    if (layout.isRead()) {
        checkForms(layout);
        checkFindings(layout, lines);
    }
    return 0;
}
