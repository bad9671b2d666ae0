#include "util/UtilFiles.h"

#include "util/EmptyText_p.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace
{

enum FileStatus { fileIsWritable = 0, pathIsEmpty = 1, noDirectory = 2, noFile = 3, fileIsNotWritable = 4 };

constexpr qint64 kilobyte = 1024;

} // namespace

UtilFiles &UtilFiles::operator=(const UtilFiles & /*other*/) = default;
UtilFiles &UtilFiles::operator=(UtilFiles && /*other*/) = default;

int UtilFiles::GetFileStatus(QString path)
{
    if (path.isEmpty())
        return pathIsEmpty;
    if (!QDir(GetFileDir(path)).exists())
        return noDirectory;
    if (!QFile(path).exists())
        return noFile;
    // Root may write every file, and may run the tests.
    return QFileInfo(path).isWritable() ? fileIsWritable : fileIsNotWritable; // LCOV_EXCL_BR_LINE
}

int UtilFiles::CheckFileStatus(QString path)
{
    return GetFileStatus(std::move(path));
}

int UtilFiles::GetFileSaveStatus(QString path, QString /*other*/)
{
    const int status = GetFileStatus(std::move(path));
    return status == noFile ? int(fileIsWritable) : status;
}

bool UtilFiles::CheckFileSave(QString path, QString other)
{
    return GetFileSaveStatus(std::move(path), std::move(other)) == fileIsWritable;
}

bool UtilFiles::DirExists(QString path)
{
    const QFileInfo info(path);
    return info.exists() && info.isDir();
}

bool UtilFiles::FileExists(QString path)
{
    const QFileInfo info(path);
    return info.exists() && info.isFile();
}

bool UtilFiles::FileSizeReachedInKB(QString path, int sizeKB)
{
    return QFileInfo(path).size() / kilobyte > sizeKB;
}

QString UtilFiles::GetFileDir(QString path)
{
    return notNull(QFileInfo(path).absoluteDir().absolutePath());
}

QString UtilFiles::getDataBaseEntityFilePath(QString path)
{
    if (FileExists(path))
        return path;
    const QLatin1Char slash('/');
    const QFileInfo info(path);
    const QString directory = info.absolutePath();
    const int lastSlash = directory.lastIndexOf(slash);
    const QString head = directory.left(lastSlash);
    const QString shortened = head.left(head.lastIndexOf(slash));
    return QDir::toNativeSeparators(shortened + directory.mid(lastSlash) + slash + info.fileName());
}
