#include "Export.h"

#include "Show.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <iterator>
#include <new>

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

int printExport(const Layout &layout, const ExportTarget &target)
{
    QFile out;
    if (out.open(stdout, QIODevice::WriteOnly)) {
        target.write(layout, out);
        out.close();
    }
    return statusAfterOutput(statusFine);
}

bool isSameFile(const QString &first, const QString &second)
{
    const QString path = QFileInfo(first).canonicalFilePath();
    return !path.isEmpty() && path == QFileInfo(second).canonicalFilePath();
}

// The file appears whole or not at all; where it fails, one that was there before stays.
bool replaceFile(QSaveFile &file, const Layout &layout, const ExportTarget &target)
{
    if (!file.open(QIODevice::WriteOnly))
        return false;
    target.write(layout, file);
    return file.commit();
}

bool writeInto(QFile &file, const Layout &layout, const ExportTarget &target)
{
    if (!file.open(QIODevice::WriteOnly))
        return false;
    target.write(layout, file);
    return file.flush() && file.error() == QFileDevice::NoError;
}

QString savingProblem(const Layout &layout, const ExportTarget &target, const QString &output)
{
    if (isSameFile(layout.file, output))
        return QStringLiteral("is the file to export, and is not written over");
    // A pipe or a device is written to and stays what it is; a new file must not come into its place.
    const QFileInfo info(output);
    QFile existing(output);
    QSaveFile replaced(output);
    const bool isSpecial = info.exists() && !info.isFile();
    if (isSpecial ? writeInto(existing, layout, target) : replaceFile(replaced, layout, target))
        return QString();
    return QStringLiteral("cannot be written: ") + (isSpecial ? existing.errorString() : replaced.errorString());
}

int saveExport(const Layout &layout, const ExportTarget &target, const QString &output)
{
    const QString problem = savingProblem(layout, target, output);
    if (problem.isEmpty())
        return statusFine;
    complain(output, problem);
    return statusNoAnswer;
}

int exportFile(const QString &file, const QString &subject, const ExportOptions &options)
{
    const Layout layout = readLayout(file, fileTypeNamed(options.type));
    if (!layout.problem.isEmpty()) {
        complain(subject, layout.problem);
        return statusNoAnswer;
    }
    const ExportTarget &target = targetNamed(options.target);
    if (options.output.empty() || options.output == "-")
        return printExport(layout, target);
    return saveExport(layout, target, QFile::decodeName(options.output.c_str()));
}

} // namespace

int exportLayout(const ExportOptions &options)
{
    answerDecimalQuestions(options.decimals);
    const QString file = QFile::decodeName(options.file.c_str());
    const QString subject = file.isEmpty() ? QStringLiteral("''") : file;
    try {
        return exportFile(file, subject, options);
    } catch (const std::bad_alloc &) {
        complain(subject, QStringLiteral("not enough memory"));
    }
    return statusNoAnswer;
}
