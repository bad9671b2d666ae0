#include "OutputFolder.h"

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

OutputFolder::OutputFolder(const QString &folder, const QString &ending, const QStringList &inputs)
    : path(folder)
    , suffix(ending)
{
    for (const QString &input : inputs)
        inputPaths.insert(QFileInfo(input).canonicalFilePath());
}

int OutputFolder::make() const
{
    if (QDir().mkpath(path))
        return statusFine;
    const bool isOther = QFileInfo::exists(path);
    return noAnswerFor(path,
                       isOther ? QStringLiteral("is no folder; several files are written into one")
                               : QStringLiteral("the folder cannot be made"));
}

QString OutputFolder::pathFor(const QString &input)
{
    const QString stem = stemOf(input);
    int &number = lastGiven[stem.toLower()];
    QString name;
    do {
        ++number;
        name = number == 1 ? stem + suffix : stem + QLatin1Char('-') + QString::number(number) + suffix;
    } while (!isFree(name));
    reserve(name);
    return inFolder(path, name);
}

void OutputFolder::reserve(const QString &name)
{
    taken.insert(name.toLower());
}

bool OutputFolder::isInput(const QString &name) const
{
    const QString present = QFileInfo(inFolder(path, name)).canonicalFilePath();
    return !present.isEmpty() && inputPaths.find(present) != inputPaths.end();
}

bool OutputFolder::isFree(const QString &name) const
{
    return taken.find(name.toLower()) == taken.end() && !isInput(name);
}

QString inFolder(const QString &folder, const QString &name)
{
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

bool isFolderName(const QString &output)
{
    return output.endsWith(QLatin1Char('/')) || QFileInfo(output).isDir();
}
