#include "InputFile.h"

#include "Descriptor.h"

#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_LINUX
#include <fcntl.h>
#include <unistd.h>
#endif

namespace
{

// A named pipe is not opened here: when it is opened again, it may have no writer left.
QByteArray headOfPipe(const QString &fileName, int size)
{
    QByteArray head(size, '\0');
    int copied = 0;
#ifdef Q_OS_LINUX
    const std::optional<Descriptor> descriptor = descriptorNamed(followed(fileName));
    int ends[2] = {};
    if (!descriptor || !descriptor->isOwn || pipe2(ends, O_CLOEXEC) != 0)
        return QByteArray();
    // Blocks until there are bytes, as the reader would.
    if (tee(descriptor->number, ends[1], size_t(size), 0) > 0)
        copied = int(read(ends[0], head.data(), size_t(size)));
    close(ends[0]);
    close(ends[1]);
#else
    Q_UNUSED(fileName)
#endif
    return head.left(copied);
}

} // namespace

QString openingProblem(const QString &fileName)
{
    const QFileInfo info(fileName);
    if (!info.exists())
        return QStringLiteral("no such file");
    if (info.isDir())
        return QStringLiteral("is a directory");
    QFile file(fileName);
    if (info.isFile() && !file.open(QIODevice::ReadOnly))
        return QStringLiteral("cannot be opened: ") + file.errorString();
    return QString();
}

QByteArray headOf(const QString &fileName, int size)
{
    if (!QFileInfo(fileName).isFile())
        return headOfPipe(fileName, size);
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.read(size) : QByteArray();
}
