#include "Export.h"

#include "Answer.h"
#include "OutputFile.h"

#include <QFile>

#include <algorithm>
#include <iterator>

namespace
{

struct ExportTarget {
    const char *name; ///< as --to takes it
    void (*write)(const Layout &layout, QIODevice &device);
};

const ExportTarget targets[] = {
    { "ddi", writeDdi },
    { "csvw", writeCsvw },
    { "json-schema", writeJsonSchema },
};

// The call has been checked: the name is one of the list.
const ExportTarget &targetNamed(const std::string &name)
{
    return *std::find_if(std::begin(targets), std::end(targets),
                         [&](const ExportTarget &target) { return name == target.name; });
}

int exportFile(const QString &file, const ExportOptions &options)
{
    const Layout layout = readLayout(file, fileTypeNamed(options.type));
    if (!layout.problem.isEmpty())
        return noAnswerFor(file, layout.problem);
    complainIfIncomplete(file, layout.incomplete);
    const ExportTarget &target = targetNamed(options.target);
    return writeAnswer(QFile::decodeName(options.output.c_str()), file,
                       [&](QIODevice &device) { target.write(layout, device); });
}

} // namespace

int exportLayout(const ExportOptions &options)
{
    answerDecimalQuestions(options.decimals);
    const QString file = QFile::decodeName(options.file.c_str());
    return answerFor(file, [&] { return exportFile(file, options); });
}
