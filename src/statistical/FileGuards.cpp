#include "statistical/FileGuards_p.h"

#include "statistical/BufferedFile_p.h"
#include "statistical/SpssDictionary_p.h"

#include <QFile>

namespace statistical
{

namespace
{

// A smaller file ends soon, whatever is in it.
constexpr qint64 smallestBigFile = 1 << 16;

QString lineAbout(const SpssDictionary &dictionary)
{
    if (!dictionary.isWhole)
        return QStringLiteral("breaks off in its dictionary, or holds a record there that cannot be read");
    if (dictionary.hasLongNames && dictionary.variables > mostLongNames)
        return QStringLiteral("has more than %1 variables with long names, the most that can be read")
            .arg(mostLongNames);
    if (dictionary.lookupSteps > mostLookupSteps)
        return QStringLiteral("has too many sets of labels or missing values of long texts for its %1 variables: sets "
                              "times variables may be %2")
            .arg(dictionary.variables)
            .arg(mostLookupSteps);
    return QString();
}

} // namespace

ReadProblem deviceProblem(int error)
{
    return { QStringLiteral("cannot be read: ") + qt_error_string(error), true };
}

ReadProblem spssProblem(const QString &path)
{
    BufferedFile file;
    if (!file.open(QFile::encodeName(path).constData()))
        return ReadProblem();
    const SpssDictionary dictionary = walkSpssDictionary(file);
    if (file.error() != 0)
        return deviceProblem(file.error());
    const bool isJudged = dictionary.isSpss && file.size() >= smallestBigFile;
    return { isJudged ? lineAbout(dictionary) : QString() };
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
