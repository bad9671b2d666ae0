#include "Fields.h"

#include "Answer.h"
#include "Columns.h"
#include "Explain.h"
#include "Printer.h"
#include "import/ReadReport.h"

#include <QFile>
#include <QScopeGuard>

#include <algorithm>

namespace
{

std::unique_ptr<Printer> makePrinter(const FieldsOptions &options)
{
    const FileCount files = fileCountOf(options.files);
    if (options.format == "json")
        return makeJsonPrinter(stdout, files);
    if (options.format == "csv")
        return makeCsvPrinter(stdout, files);
    return makeTablePrinter(stdout, files, terminalWidth());
}

// Prints one line, with the name only once, so that a long name does not hide the counts.
void reportNotes(const QString &file, const ReadReport &report)
{
    if (!report.isEmpty())
        complainOfFile(file, QStringLiteral("%1; vanlayout explain shows them").arg(countsOf(report)));
}

// The last file is not released: ending the process is faster.
int showFile(const QString &file, const FileType *type, const DecimalAnswerFunction &decimals, bool isLast,
             Printer &printer)
{
    flushOutput();
    return answerFor(file, [&]() -> int {
        ReadReport report;
        Layout layout = readLayout(file, type, decimals, &report);
        const auto atEnd = qScopeGuard([&] {
            if (!isLast)
                releaseContents(layout);
        });
        if (!layout.problem.isEmpty()) {
            printer.printProblem(layout);
            return noAnswerFor(file, layout.problem);
        }
        printer.printLayout(layout);
        reportNotes(file, report);
        return statusFine;
    });
}

} // namespace

int showFields(const FieldsOptions &options)
{
    bufferOutput();
    const DecimalAnswerFunction decimals = decimalAnswer(options.decimals);
    const FileType *type = fileTypeNamed(options.type);
    const auto printer = makePrinter(options);
    int status = statusFine;
    for (const std::string &file : options.files)
        status = std::max(
            status,
            showFile(QFile::decodeName(file.c_str()), type, decimals, &file == &options.files.back(), *printer));
    return statusAfterOutput(status);
}
