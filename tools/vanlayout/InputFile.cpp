#include "InputFile.h"

#include <QFile>
#include <QFileInfo>

QString openingProblem(const QString &fileName)
{
    const QFileInfo info(fileName);
    if (!info.exists())
        return QStringLiteral("no such file");
    if (info.isDir())
        return QStringLiteral("is a folder");
    QFile file(fileName);
    if (info.isFile() && !file.open(QIODevice::ReadOnly))
        return QStringLiteral("cannot be opened: ") + file.errorString();
    return QString();
}
