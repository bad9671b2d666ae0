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

// The bytes of a file for a difference: UTF-16, which a difference of bytes would make unreadable, becomes UTF-8.
QByteArray comparable(const QByteArray &bytes, const Layout &layout)
{
    if (!layout.encoding.startsWith(QLatin1String("utf-16")))
        return bytes;
    const bool isLittle = layout.encoding == QLatin1String("utf-16le");
    QString text;
    for (int index = 0; index + 1 < bytes.size(); index += 2)
        text.append(
            QChar(uchar(bytes.at(isLittle ? index : index + 1)), uchar(bytes.at(isLittle ? index + 1 : index))));
    return text.toUtf8();
}

// Returns whether there are errors among the findings of the corrected dictionary.
bool printRemaining(const QString &file, QByteArray bytes, LintOptions options, bool showsAll)
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
    printLintTable(remaining, { widthOfTerminal(standardError), showsAll }, out);
    return remaining.countOf(Severity::Error) > 0;
}

} // namespace

int fixFile(const QString &file, const QString &output, const LintOptions &options, bool showsAll)
{
    const Layout layout = readExactLayout(file, {});
    if (const Problem *error = layout.error())
        return noAnswerFor(file, messageOf(*error));
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return noAnswerFor(file, QStringLiteral("cannot be opened: %1").arg(source.errorString()));
    const FixedDictionary fixed = fixDictionary(layout, styleOf(layout));
    if (!fixed.problem.isEmpty())
        return noAnswerFor(file, fixed.problem);
    const bool isWritten = output != QLatin1String("-");
    int status = statusFine;
    if (isWritten)
        status = writeAnswer(output, file, [&](QIODevice &device) { device.write(fixed.bytes); });
    if (status != statusFine)
        return status;
    status = writeAnswer(QStringLiteral("-"), file, [&](QIODevice &device) {
        printLineDiff(comparable(source.readAll(), layout), fixed.bytes, file, isWritten ? output : file,
                      isTerminal(standardOutput), device);
    });
    const bool hasErrors = printRemaining(isWritten ? output : file, fixed.bytes, options, showsAll);
    return std::max(status, int(hasErrors ? statusFinding : statusFine));
}
