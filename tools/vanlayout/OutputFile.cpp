#include "OutputFile.h"

#include "Answer.h"
#include "Descriptor.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cstdio>
#include <memory>
#include <optional>

namespace
{

/// Passes writes on until all their bytes are written or the device fails. A disk that becomes full takes the first
/// bytes of a write without an error; only the next write has one.
class WholeWrites : public QIODevice
{
public:
    explicit WholeWrites(QIODevice &device)
        : target(device)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

protected:
    qint64 readData(char * /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char *data, qint64 size) override
    {
        qint64 done = 0;
        while (done < size) {
            const qint64 written = target.write(data + done, size - done);
            if (written <= 0)
                return -1;
            done += written;
        }
        return done;
    }

private:
    QIODevice &target;
};

void writeTo(QIODevice &device, const AnswerWriter &write)
{
    WholeWrites whole(device);
    write(whole);
}

int writeToStandardOutput(const AnswerWriter &write)
{
    QFile out;
    if (out.open(stdout, QIODevice::WriteOnly)) {
        writeTo(out, write);
        out.close();
    }
    return statusAfterOutput(statusFine);
}

bool isStandardOutput(const QString &path)
{
    constexpr int standardOutput = 1;
    const std::optional<Descriptor> descriptor = descriptorNamed(followed(path));
    return descriptor && descriptor->isOwn && descriptor->number == standardOutput;
}

QString cannotBeWritten(const QFileDevice &file)
{
    return QStringLiteral("cannot be written: ") + file.errorString();
}

QString problemAfterWriting(QFileDevice &file)
{
    // As with a write, the second attempt has the error.
    const bool isWhole = file.flush() || file.flush();
    return isWhole && file.error() == QFileDevice::NoError ? QString() : cannotBeWritten(file);
}

// Writes a file that has its name when it is committed. The cause of a failure must be read before the file is closed,
// which discards it.
QString problemWithPreparing(QSaveFile &file, const AnswerWriter &write)
{
    if (!file.open(QIODevice::WriteOnly))
        return cannotBeWritten(file);
    writeTo(file, write);
    QString problem = problemAfterWriting(file);
    if (!problem.isEmpty())
        file.cancelWriting();
    return problem;
}

QString problemWithCommitting(QSaveFile &file)
{
    return file.commit() ? QString() : cannotBeWritten(file);
}

QString problemWithReplacing(const QString &name, const AnswerWriter &write)
{
    QSaveFile file(name);
    const QString problem = problemWithPreparing(file, write);
    return problem.isEmpty() ? problemWithCommitting(file) : problem;
}

QString problemWithWritingInto(const QString &name, const AnswerWriter &write)
{
    QFile file(name);
    if (file.open(QIODevice::WriteOnly))
        writeTo(file, write);
    return problemAfterWriting(file);
}

QString problemWithWritingTo(const Descriptor &descriptor, const AnswerWriter &write)
{
    if (!descriptor.isOwn)
        return QStringLiteral("is open in another process, and is not written to");
    QFile file;
    if (file.open(descriptor.number, QIODevice::WriteOnly))
        writeTo(file, write);
    return problemAfterWriting(file);
}

QString problemWithWriting(const QString &output, const QString &input, const AnswerWriter &write)
{
    if (output.isEmpty())
        return QStringLiteral("no such file");
    if (isSameFile(output, input))
        return QStringLiteral("is the file to read, and is not overwritten");
    const QString place = followed(output);
    if (const std::optional<Descriptor> descriptor = descriptorNamed(place))
        return problemWithWritingTo(*descriptor, write);
    if (QFileInfo(place).isSymLink())
        return QStringLiteral("cannot be written: its links are circular");
    const QFileInfo info(output);
    return info.exists() && !info.isFile() ? problemWithWritingInto(output, write)
                                           : problemWithReplacing(output, write);
}

} // namespace

int writeAnswers(const std::vector<NamedAnswer> &answers, const QString &input)
{
    std::vector<std::unique_ptr<QSaveFile>> files;
    for (const NamedAnswer &answer : answers) {
        files.push_back(std::make_unique<QSaveFile>(answer.output));
        const QString problem = isSameFile(answer.output, input)
            ? QStringLiteral("is the file to read, and is not overwritten")
            : problemWithPreparing(*files.back(), answer.write);
        if (!problem.isEmpty())
            return noAnswerFor(answer.output, problem);
    }
    for (const std::unique_ptr<QSaveFile> &file : files) {
        const QString problem = problemWithCommitting(*file);
        if (!problem.isEmpty())
            return noAnswerFor(file->fileName(), problem);
    }
    return statusFine;
}

int writeAnswer(const QString &output, const QString &input, const AnswerWriter &write)
{
    if (output == QLatin1String("-") || isStandardOutput(output)) {
        // A terminal may be both standard output and the input.
        if (QFileInfo(input).isFile() && isSameFile(QStringLiteral("/dev/stdout"), input))
            return noAnswerFor(input, QStringLiteral("is standard output as well, and is not overwritten"));
        return writeToStandardOutput(write);
    }
    const QString problem = problemWithWriting(output, input, write);
    if (problem.isEmpty())
        return statusFine;
    return noAnswerFor(output, problem);
}
