#include "statistical/FileGuards_p.h"

#include "util/FileReading_p.h"
#include "util/SpssDictionary_p.h"

#include <QFile>

namespace statistical
{

ReadProblem deviceProblem(int error)
{
    return { QStringLiteral("cannot be read: ") + qt_error_string(error), true };
}

ReadProblem spssProblem(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return ReadProblem();
    const SpssDictionary dictionary = walkSpssDictionary(file, SpssDocuments::areSkipped);
    const QString failure = readProblemOf(file);
    return failure.isNull() ? ReadProblem{ dictionary.problem() } : ReadProblem{ failure, true };
}

NameBounds stataNameBounds(const QString &path)
{
    constexpr int headSize = 32;
    QFile file(path);
    return ::stataNameBounds(file.open(QIODevice::ReadOnly) ? file.read(headSize) : QByteArray());
}

} // namespace statistical
