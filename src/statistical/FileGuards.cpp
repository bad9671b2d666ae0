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
    // The newer versions begin with a tag and the version as text, the older ones with the version as a byte.
    const QByteArray begin("<stata_dta><header><release>");
    constexpr NameBounds version104 = { 9, 12 };
    constexpr NameBounds upToVersion109 = { 9, 33 };
    constexpr NameBounds upToVersion117 = { 33, 33 };

    QFile file(path);
    QByteArray head;
    if (file.open(QIODevice::ReadOnly))
        head = file.read(begin.size() + 3);
    int version = head.isEmpty() ? 0 : static_cast<unsigned char>(head.at(0));
    if (head.startsWith(begin))
        version = head.mid(begin.size()).toInt();
    if (version < 105)
        return version104;
    if (version < 110)
        return upToVersion109;
    return version < 118 ? upToVersion117 : widestStataNames;
}

} // namespace statistical
