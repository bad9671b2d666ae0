#include "Descriptor.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

std::optional<Descriptor> descriptorNamed(const QString &path)
{
    static const QRegularExpression directories(QStringLiteral("^(/dev|/proc/[0-9]+(/task/[0-9]+)?)/fd$"));
    const QFileInfo info(path);
    bool isNumber = false;
    const int number = info.fileName().toInt(&isNumber);
    if (!isNumber || number < 0)
        return std::nullopt;
    const QString directory = QFileInfo(info.absolutePath()).canonicalFilePath();
    if (!directories.match(directory).hasMatch())
        return std::nullopt;
    const QString own = QFileInfo(QStringLiteral("/proc/self")).canonicalFilePath();
    return Descriptor{ number, directory == QLatin1String("/dev/fd") || directory.startsWith(own + QLatin1Char('/')) };
}

QString followed(const QString &path)
{
    constexpr int maxLinks = 128;
    QString place = path;
    for (int i = 0; i < maxLinks && QFileInfo(place).isSymLink() && !descriptorNamed(place); ++i)
        place = QFileInfo(place).symLinkTarget();
    return place;
}

namespace
{

#ifdef Q_OS_UNIX
std::optional<struct stat> statusOf(const QString &path)
{
    struct stat status = {};
    if (stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return status;
}
#endif

} // namespace

bool isSameFile(const QString &first, const QString &second)
{
#ifdef Q_OS_UNIX
    const auto one = statusOf(first);
    const auto other = statusOf(second);
    return one && other && one->st_dev == other->st_dev && one->st_ino == other->st_ino;
#else
    const QString path = QFileInfo(first).canonicalFilePath();
    return !path.isEmpty() && path == QFileInfo(second).canonicalFilePath();
#endif
}
