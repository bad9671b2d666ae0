#include "OutputFile.h"

#include "Answer.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cstdio>

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

bool isSameFile(const QString &first, const QString &second)
{
    const QString path = QFileInfo(first).canonicalFilePath();
    return !path.isEmpty() && path == QFileInfo(second).canonicalFilePath();
}

QString cannotBeWritten(const QFileDevice &file)
{
    return QStringLiteral("cannot be written: ") + file.errorString();
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
    return file.flush() && file.error() == QFileDevice::NoError ? QString() : cannotBeWritten(file);
}

QString problemWithWriting(const QString &output, const QString &input, const AnswerWriter &write)
{
    if (output.isEmpty())
        return QStringLiteral("no such file");
    if (isSameFile(output, input))
        return QStringLiteral("is the file to read, and is not written over");
    const QFileInfo info(output);
    return info.exists() && !info.isFile() ? problemWithWritingInto(output, write)
                                           : problemWithReplacing(output, write);
}

} // namespace

int writeAnswer(const QString &output, const QString &input, const AnswerWriter &write)
{
    if (output == QLatin1String("-"))
        return writeToStandardOutput(write);
    const QString problem = problemWithWriting(output, input, write);
    if (problem.isEmpty())
        return statusFine;
    return noAnswerFor(output, problem);
}
