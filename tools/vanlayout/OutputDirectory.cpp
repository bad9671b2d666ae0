#include "OutputDirectory.h"

#include "Answer.h"

#include <QDir>
#include <QFileInfo>

namespace
{

QString stemOf(const QString &input)
{
    if (input == QLatin1String("-"))
        return QStringLiteral("layout");
    const QFileInfo info(input);
    const QString stem = info.completeBaseName();
    return stem.isEmpty() ? info.fileName() : stem;
}

} // namespace

OutputDirectory::OutputDirectory(const QString &directory, const QString &ending, const QStringList &inputs)
    : path(directory)
    , suffix(ending)
{
    for (const QString &input : inputs)
        inputPaths.insert(QFileInfo(input).canonicalFilePath());
}

int OutputDirectory::make() const
{
    if (QDir().mkpath(path))
        return statusFine;
    const bool isOther = QFileInfo::exists(path);
    return noAnswerFor(path,
                       isOther ? QStringLiteral("is not a directory; several files are written into one")
                               : QStringLiteral("the directory cannot be created"));
}

QString OutputDirectory::pathFor(const QString &input)
{
    const QString stem = stemOf(input);
    int &number = lastGiven[stem.toLower()];
    QString name;
    do {
        ++number;
        name = number == 1 ? stem + suffix : stem + QLatin1Char('-') + QString::number(number) + suffix;
    } while (!isFree(name));
    reserve(name);
    return inDirectory(path, name);
}

void OutputDirectory::reserve(const QString &name)
{
    taken.insert(name.toLower());
}

bool OutputDirectory::isInput(const QString &name) const
{
    const QString present = QFileInfo(inDirectory(path, name)).canonicalFilePath();
    return !present.isEmpty() && inputPaths.find(present) != inputPaths.end();
}

bool OutputDirectory::isFree(const QString &name) const
{
    return taken.find(name.toLower()) == taken.end() && !isInput(name);
}

QString inDirectory(const QString &directory, const QString &name)
{
    return directory.endsWith(QLatin1Char('/')) ? directory + name : directory + QLatin1Char('/') + name;
}

bool isDirectoryName(const QString &output)
{
    return output.endsWith(QLatin1Char('/')) || QFileInfo(output).isDir();
}
