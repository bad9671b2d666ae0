#include "Answer.h"

#include "Printable.h"

#include <cstdio>
#include <iostream>
#include <new>

void complain(const QString &subject, const QString &problem)
{
    const QString line = subject.isEmpty() ? problem : subject + QLatin1String(": ") + problem;
    printToStandardError(QLatin1String("vanlayout: ") + line);
}

QString subjectOf(const QString &file)
{
    return file.isEmpty() ? QStringLiteral("''") : file;
}

void complainOfFile(const QString &file, const QString &problem)
{
    complain(subjectOf(file), problem);
}

void complainIfIncomplete(const QString &file, const QString &cause)
{
    if (!cause.isEmpty())
        complainOfFile(file, QLatin1String("read in part: ") + cause);
}

int noAnswerFor(const QString &file, const QString &problem)
{
    complainOfFile(file, problem);
    return statusNoAnswer;
}

int answerFor(const QString &file, const std::function<int()> &answer)
{
    try {
        return answer();
    } catch (const std::bad_alloc &) {
        return noAnswerFor(file, QStringLiteral("not enough memory"));
    }
}

void bufferOutput()
{
    constexpr size_t bufferSize = 1 << 16;
    std::setvbuf(stdout, nullptr, _IOFBF, bufferSize);
}

void flushOutput()
{
    std::fflush(stdout); // a failure is seen at the end
}

int statusAfterOutput(int status)
{
    std::cout.flush();
    if (std::fflush(stdout) == 0 && !std::ferror(stdout) && std::cout)
        return status;
    complain(QStringLiteral("standard output"), QStringLiteral("cannot be written"));
    return statusNoAnswer;
}
