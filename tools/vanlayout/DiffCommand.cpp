#include "DiffCommand.h"

#include "Answer.h"
#include "Diff.h"
#include "DiffPrinter.h"
#include "Layout.h"

#include <QFile>

#include <cstdio>
#include <memory>
#include <new>
#include <utility>

namespace
{

// Null, with a complaint, where there is no answer. A layout must not be moved: its provider would lose the fields.
std::unique_ptr<const Layout> readOrComplain(const std::string &name, const std::string &type)
{
    const QString file = QFile::decodeName(name.c_str());
    std::unique_ptr<const Layout> layout;
    answerFor(file, [&]() -> int {
        std::unique_ptr<const Layout> read(new Layout(readLayout(file, fileTypeNamed(type))));
        if (!read->problem.isEmpty())
            return noAnswerFor(file, read->problem);
        complainIfIncomplete(file, read->incomplete);
        layout = std::move(read);
        return statusFine;
    });
    return layout;
}

Records recordsOf(const Layout &layout)
{
    return { layout.provider.getRecordTypeStart(), layout.provider.getRecordTypeSize(), recordTypesOf(layout) };
}

int compareAndPrint(const Layout &oldLayout, const Layout &newLayout, const std::string &format)
{
    const std::string oldType = oldLayout.type->name;
    const std::string newType = newLayout.type->name;
    const ComparedLayouts compared
        = { oldLayout, newLayout, comparableProperties(oldType, newType), recordsOf(oldLayout), recordsOf(newLayout) };
    const LayoutDiff diff
        = compareLayouts(*oldLayout.provider.getFields(), *newLayout.provider.getFields(), compared.properties);
    const RecordsDiff records = areRecordsComparable(oldType, newType)
        ? compareRecords(compared.oldRecords, compared.newRecords)
        : RecordsDiff();
    if (format == "json")
        printDiffAsJson(stdout, compared, diff, records);
    else
        printDiffAsTable(stdout, compared, diff, records);
    return diff.isEmpty() && records.isEmpty() ? statusFine : statusFinding;
}

} // namespace

int diffLayouts(const DiffOptions &options)
{
    bufferOutput();
    answerDecimalQuestions(options.decimals);
    // Both are read, so that both are complained about.
    const auto oldLayout = readOrComplain(options.oldFile, options.oldType);
    const auto newLayout = readOrComplain(options.newFile, options.newType);
    if (!oldLayout || !newLayout)
        return statusNoAnswer;
    try {
        return statusAfterOutput(compareAndPrint(*oldLayout, *newLayout, options.format));
    } catch (const std::bad_alloc &) {
        complain(newLayout->file, QStringLiteral("not enough memory to compare"));
        return statusNoAnswer;
    }
}
