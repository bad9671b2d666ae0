#include "LintFix.h"

#include "Answer.h"
#include "Columns.h"
#include "LayoutInput.h"
#include "LineDiff.h"
#include "LintTable.h"
#include "OutputFile.h"
#include "Progress.h"
#include "TextStyle.h"
#include "check/Fix.h"
#include "read/Reader.h"

#include <QBuffer>
#include <QFile>

#include <algorithm>
#include <cstdio>

using namespace vanlayout;

namespace
{

constexpr int standardOutput = 1;
constexpr int standardError = 2;

// A dictionary that is not in UTF-8 gets the byte-order mark if it is written in it now.
CSProTextStyle styleFor(const Layout &layout)
{
    CSProTextStyle style = styleOf(layout);
    if (layout.encoding != QLatin1String("utf-8"))
        style.mark = CSProTextStyle::Mark::OfVersion;
    return style;
}

// Returns whether there are errors among the findings of the corrected dictionary.
bool printRemaining(const QString &file, QByteArray bytes, LintOptions options)
{
    ElementLines lines;
    ReadOptions reading;
    reading.lines = &lines;
    options.lines = &lines;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const Layout layout = readLayout(buffer, file, reading);
    const LintedFile remaining = { file, layout.format, lint(layout, options), QString() };
    QFile out;
    out.open(stderr, QIODevice::WriteOnly);
    printLintTable(remaining, { widthOfTerminal(standardError), false }, out);
    return remaining.countOf(Severity::Error) > 0;
}

} // namespace

int fixFile(const QString &file, const QString &output, const LintOptions &options)
{
    const Layout layout = readExactLayout(file, {});
    if (const Problem *error = layout.error())
        return noAnswerFor(file, messageOf(*error));
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return noAnswerFor(file, QStringLiteral("cannot be opened: %1").arg(source.errorString()));
    const FixedDictionary fixed = fixDictionary(layout, styleFor(layout));
    if (!fixed.problem.isEmpty())
        return noAnswerFor(file, fixed.problem);
    const bool isWritten = output != QLatin1String("-");
    int status = statusFine;
    if (isWritten)
        status = writeAnswer(output, file, [&](QIODevice &device) { device.write(fixed.bytes); });
    if (status != statusFine)
        return status;
    status = writeAnswer(QStringLiteral("-"), file, [&](QIODevice &device) {
        printLineDiff(source.readAll(), fixed.bytes, file, isWritten ? output : file, isTerminal(standardOutput),
                      device);
    });
    const bool hasErrors = printRemaining(isWritten ? output : file, fixed.bytes, options);
    return std::max(status, int(hasErrors ? statusFinding : statusFine));
}
