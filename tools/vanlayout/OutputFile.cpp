#include "OutputFile.h"

#include "Answer.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

#include <cstdio>
#include <optional>

namespace
{

int writeToStandardOutput(const AnswerWriter &write)
{
    QFile out;
    if (out.open(stdout, QIODevice::WriteOnly)) {
        write(out);
        out.close();
    }
    return statusAfterOutput(statusFine);
}

// What a path such as /dev/fd/3 or /proc/self/fd/3 names: something that is open already. It looks like a link to a
// file, but what stands in the file is the business of who opened it.
struct Descriptor {
    int number;
    bool isOwn; ///< of this process
};

std::optional<Descriptor> descriptorNamed(const QString &path)
{
    static const QRegularExpression folders(QStringLiteral("^(/dev|/proc/[0-9]+(/task/[0-9]+)?)/fd$"));
    const QFileInfo info(path);
    bool isNumber = false;
    const int number = info.fileName().toInt(&isNumber);
    if (!isNumber || number < 0)
        return std::nullopt;
    const QString folder = QFileInfo(info.absolutePath()).canonicalFilePath();
    if (!folders.match(folder).hasMatch())
        return std::nullopt;
    const QString own = QFileInfo(QStringLiteral("/proc/self")).canonicalFilePath();
    return Descriptor{ number, folder == QLatin1String("/dev/fd") || folder.startsWith(own + QLatin1Char('/')) };
}

// Where a path leads, link by link; a link where there is no end to it.
QString followed(const QString &path)
{
    constexpr int mostLinks = 128;
    QString place = path;
    for (int i = 0; i < mostLinks && QFileInfo(place).isSymLink() && !descriptorNamed(place); ++i)
        place = QFileInfo(place).symLinkTarget();
    return place;
}

bool isStandardOutput(const QString &path)
{
    constexpr int standardOutput = 1;
    const std::optional<Descriptor> descriptor = descriptorNamed(followed(path));
    return descriptor && descriptor->isOwn && descriptor->number == standardOutput;
}

bool isSameFile(const QString &first, const QString &second)
{
    const QString path = QFileInfo(first).canonicalFilePath();
    return !path.isEmpty() && path == QFileInfo(second).canonicalFilePath();
}

QString cannotBeWritten(const QFileDevice &file)
{
    return QStringLiteral("cannot be written: ") + file.errorString();
}

QString problemAfterWriting(QFileDevice &file)
{
    return file.flush() && file.error() == QFileDevice::NoError ? QString() : cannotBeWritten(file);
}

QString problemWithReplacing(const QString &name, const AnswerWriter &write)
{
    QSaveFile file(name);
    if (file.open(QIODevice::WriteOnly))
        write(file);
    return file.commit() ? QString() : cannotBeWritten(file);
}

QString problemWithWritingInto(const QString &name, const AnswerWriter &write)
{
    QFile file(name);
    if (file.open(QIODevice::WriteOnly))
        write(file);
    return problemAfterWriting(file);
}

QString problemWithWritingTo(const Descriptor &descriptor, const AnswerWriter &write)
{
    if (!descriptor.isOwn)
        return QStringLiteral("is open in another process, and is not written to");
    QFile file;
    if (file.open(descriptor.number, QIODevice::WriteOnly))
        write(file);
    return problemAfterWriting(file);
}

QString problemWithWriting(const QString &output, const QString &input, const AnswerWriter &write)
{
    if (output.isEmpty())
        return QStringLiteral("no such file");
    if (isSameFile(output, input))
        return QStringLiteral("is the file to read, and is not written over");
    const QString place = followed(output);
    if (const std::optional<Descriptor> descriptor = descriptorNamed(place))
        return problemWithWritingTo(*descriptor, write);
    if (QFileInfo(place).isSymLink())
        return QStringLiteral("cannot be written: its links have no end");
    const QFileInfo info(output);
    return info.exists() && !info.isFile() ? problemWithWritingInto(output, write)
                                           : problemWithReplacing(output, write);
}

} // namespace

int writeAnswer(const QString &output, const QString &input, const AnswerWriter &write)
{
    if (output == QLatin1String("-") || isStandardOutput(output))
        return writeToStandardOutput(write);
    const QString problem = problemWithWriting(output, input, write);
    if (problem.isEmpty())
        return statusFine;
    return noAnswerFor(output, problem);
}
