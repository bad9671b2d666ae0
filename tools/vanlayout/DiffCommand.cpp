#include "DiffCommand.h"

#include "Answer.h"
#include "Diff.h"
#include "DiffPrinter.h"
#include "Layout.h"

#include <QFile>

#include <cstdio>
#include <memory>
#include <new>

namespace
{

// Null, with a complaint, where there is no answer. A layout must not be moved: its provider would lose the fields.
std::unique_ptr<const Layout> readOrComplain(const std::string &name, const std::string &type)
{
    const QString file = QFile::decodeName(name.c_str());
    std::unique_ptr<const Layout> layout;
    const int status = answerFor(file, [&]() -> int {
        layout.reset(new Layout(readLayout(file, fileTypeNamed(type))));
        return layout->problem.isEmpty() ? int(statusFine) : noAnswerFor(file, layout->problem);
    });
    if (status != statusFine)
        layout.reset();
    return layout;
}

int compareAndPrint(const Layout &oldLayout, const Layout &newLayout, const std::string &format)
{
    const ComparedLayouts compared
        = { oldLayout, newLayout, comparableProperties(oldLayout.type->name, newLayout.type->name) };
    const LayoutDiff diff
        = compareLayouts(*oldLayout.provider.getFields(), *newLayout.provider.getFields(), compared.properties);
    if (format == "json")
        printDiffAsJson(stdout, compared, diff);
    else
        printDiffAsTable(stdout, compared, diff);
    return diff.isEmpty() ? statusFine : statusFinding;
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
