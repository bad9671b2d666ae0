#include "statistical/FileGuards_p.h"

#include "statistical/BufferedFile_p.h"

#include <QFile>
#include <QtEndian>

#include <array>
#include <cstdlib>

namespace statistical
{

namespace
{

// The records of an SPSS file's dictionary, as the PSPP developers' guide describes the format: a 32-bit type, and what
// each type brings along.
constexpr int headerSize = 176;
constexpr int layoutCodeAt = 64;
constexpr qint64 variableSize = 32;

enum RecordType { variableRecord = 2, labelsRecord = 3, labelledVariables = 4, documents = 6, extension = 7 };
enum ExtensionType { longNames = 13, veryLongTexts = 14 };

class SpssDictionary
{
public:
    explicit SpssDictionary(BufferedFile &source)
        : file(source)
    {
    }

    bool readHeader()
    {
        std::array<char, headerSize> header;
        if (file.read(header.data(), headerSize) != headerSize || qstrncmp(header.data(), "$FL", 3) != 0)
            return false;
        // 2 or 3, in the byte order of the file
        const auto layoutCode = qFromLittleEndian<qint32>(header.data() + layoutCodeAt);
        isBigEndian = layoutCode != 2 && layoutCode != 3;
        return true;
    }

    /// Walks the records up to the end of the dictionary, or to what is none.
    void walk()
    {
        qint32 type = 0;
        while (takeNumber(type) && takeRecord(type)) { }
    }

    qint64 variables = 0;
    bool namesAreLookedUp = false; ///< there is a record for which ReadStat looks variables up by name

private:
    bool takeRecord(qint32 type)
    {
        qint32 count = 0;
        switch (type) {
        case variableRecord:
            return takeVariable();
        case labelsRecord:
            return takeNumber(count) && takeLabels(count);
        case labelledVariables:
            return takeNumber(count) && skip(qint64(4) * count);
        case documents:
            return takeNumber(count) && skip(qint64(80) * count);
        case extension:
            return takeExtension();
        default:
            return false;
        }
    }

    bool takeVariable()
    {
        std::array<qint32, 3> numbers = {}; // width, whether there is a label, number of missing values
        for (qint32 &number : numbers) {
            if (!takeNumber(number))
                return false;
        }
        const auto [width, hasLabel, missingValues] = numbers;
        if (width != -1) // the further parts of a text
            ++variables;
        qint32 labelSize = 0;
        if (!skip(16) || (hasLabel && !takeNumber(labelSize)))
            return false;
        return skip((qint64(labelSize) + 3) / 4 * 4 + qint64(8) * std::abs(qint64(missingValues)));
    }

    bool takeLabels(qint32 count)
    {
        for (qint32 i = 0; i < count; ++i) {
            char size = 0;
            if (!skip(8) || file.read(&size, 1) != 1 || !skip(static_cast<unsigned char>(size) / 8 * 8 + 7))
                return false;
        }
        return true;
    }

    bool takeExtension()
    {
        qint32 subtype = 0;
        qint32 size = 0;
        qint32 count = 0;
        if (!takeNumber(subtype) || !takeNumber(size) || !takeNumber(count))
            return false;
        namesAreLookedUp |= subtype == longNames || subtype == veryLongTexts;
        return skip(qint64(size) * count);
    }

    bool takeNumber(qint32 &number)
    {
        std::array<char, sizeof(qint32)> bytes;
        if (file.read(bytes.data(), bytes.size()) != qint64(bytes.size()))
            return false;
        number = isBigEndian ? qFromBigEndian<qint32>(bytes.data()) : qFromLittleEndian<qint32>(bytes.data());
        return true;
    }

    bool skip(qint64 size) { return size >= 0 && file.seek(size, READSTAT_SEEK_CUR) >= 0; }

    BufferedFile &file;
    bool isBigEndian = false;
};

} // namespace

bool isSafeSpssFile(const QString &path)
{
    BufferedFile file;
    // A file that has no room for so many variables need not be walked through.
    if (!file.open(QFile::encodeName(path).constData()) || file.size() < mostLongNames * variableSize)
        return true;
    SpssDictionary dictionary(file);
    if (dictionary.readHeader())
        dictionary.walk();
    return dictionary.variables <= mostLongNames || !dictionary.namesAreLookedUp;
}

NameBounds stataNameBounds(const QString &path)
{
    // The newer versions begin with a tag and the version as text, the older ones with the version as a byte.
    const QByteArray begin("<stata_dta><header><release>");
    constexpr NameBounds upToVersion109 = { 9, 12 };
    constexpr NameBounds upToVersion117 = { 33, 33 };

    QFile file(path);
    QByteArray head;
    if (file.open(QIODevice::ReadOnly))
        head = file.read(begin.size() + 3);
    int version = head.isEmpty() ? 0 : static_cast<unsigned char>(head.at(0));
    if (head.startsWith(begin))
        version = head.mid(begin.size()).toInt();
    if (version < 110)
        return upToVersion109;
    return version < 118 ? upToVersion117 : widestNames;
}

} // namespace statistical
