#include "util/SpssDictionary_p.h"

#include <QByteArray>
#include <QIODevice>
#include <QtEndian>

#include <array>

namespace
{

constexpr int headerSize = 176;
constexpr int layoutCodeAt = 64;

enum RecordType {
    variableRecord = 2,
    labelsRecord = 3,
    labelledVariables = 4,
    documents = 6,
    extension = 7,
    dictionaryEnd = 999
};
enum ExtensionType { longNames = 13, veryLongTexts = 14, longTextLabels = 21, longTextMissing = 22 };

// Max memory that ReadStat 1.1.8 allocates at a time. It refuses a file that needs more.
constexpr qint64 largestBlock = 0xFFF000;
constexpr qint64 labelInMemory = 72;
constexpr int maxMissingValues = 3;

// For each record of long names ReadStat makes a sorted table of all variables. This takes as much time as this number
// of comparisons of a name with each variable.
constexpr int stepsOfSorting = 16;

enum class ByteOrder { littleEndian, bigEndian };

quint32 numberAt(const char *bytes, ByteOrder order)
{
    return order == ByteOrder::bigEndian ? qFromBigEndian<quint32>(bytes) : qFromLittleEndian<quint32>(bytes);
}

/// Walks through the bytes of an extension record.
class ExtensionBytes
{
public:
    ExtensionBytes(const QByteArray &content, ByteOrder orderOfBytes)
        : position(content.cbegin())
        , end(content.cend())
        , order(orderOfBytes)
    {
    }

    bool isAtEnd() const { return position == end; }
    bool skip(qint64 size)
    {
        if (size > end - position)
            return false;
        position += size;
        return true;
    }
    bool take(quint32 &number)
    {
        const char *start = position;
        if (!skip(sizeof(number)))
            return false;
        number = numberAt(start, order);
        return true;
    }
    bool take(char &byte)
    {
        const char *start = position;
        if (!skip(1))
            return false;
        byte = *start;
        return true;
    }
    /// Skips a text that follows its size.
    bool skipText()
    {
        quint32 size = 0;
        return take(size) && skip(size);
    }

private:
    const char *position;
    const char *end;
    ByteOrder order;
};

bool skipLabelsOfText(ExtensionBytes &bytes)
{
    quint32 width = 0;
    quint32 labels = 0;
    if (!bytes.skipText() || !bytes.take(width) || !bytes.take(labels))
        return false;
    for (quint32 i = 0; i < labels; ++i) {
        if (!bytes.skipText() || !bytes.skipText())
            return false;
    }
    return true;
}

bool skipMissingOfText(ExtensionBytes &bytes)
{
    char values = 0;
    quint32 size = 0;
    return bytes.skipText() && bytes.take(values) && values >= 1 && values <= maxMissingValues && bytes.take(size)
        && bytes.skip(qint64(values) * size);
}

/// A walk through the records, with its position.
class Walk
{
public:
    Walk(QIODevice &source, SpssDocuments howDocuments)
        : file(source)
        , documentsOfRun(howDocuments)
        , end(source.size())
    {
        found.fileSize = end - source.pos();
    }

    SpssDictionary run()
    {
        quint32 type = 0;
        bool goesOn = takeHeader();
        while (goesOn && take(type) && type != dictionaryEnd)
            goesOn = takeRecord(type);
        quint32 filler = 0;
        found.isWhole = goesOn && type == dictionaryEnd && take(filler);
        char next = 0;
        found.isReadable = found.isWhole || file.pos() >= end || file.read(&next, 1) >= 0;
        return found;
    }

private:
    bool takeHeader()
    {
        std::array<char, headerSize> header;
        if (file.read(header.data(), headerSize) != headerSize)
            return false;
        found.isSpss = qstrncmp(header.data(), "$FL2", 4) == 0 || qstrncmp(header.data(), "$FL3", 4) == 0;
        // 2 or 3, in the byte order of the file
        const quint32 layoutCode = numberAt(header.data() + layoutCodeAt, ByteOrder::littleEndian);
        order = layoutCode == 2 || layoutCode == 3 ? ByteOrder::littleEndian : ByteOrder::bigEndian;
        return found.isSpss;
    }

    bool takeRecord(quint32 type)
    {
        switch (type) {
        case variableRecord:
            return takeVariable();
        case labelsRecord:
            return takeLabels();
        case documents:
            return takeDocuments();
        case extension:
            return takeExtension();
        default:
            return false;
        }
    }

    bool takeVariable()
    {
        quint32 width = 0;
        quint32 hasLabel = 0;
        quint32 missing = 0;
        if (!take(width) || !take(hasLabel) || !take(missing) || !skip(16))
            return false;
        // Nothing follows a further part of a text: only the first pass of ReadStat skips a label there.
        if (qint32(width) < 0)
            return found.variables > 0 && hasLabel == 0 && missing == 0;
        ++found.variables;
        quint32 labelSize = 0;
        if (hasLabel != 0 && !take(labelSize))
            return false;
        const qint64 values = qAbs(qint64(qint32(missing)));
        const quint32 paddedSize = (labelSize + 3) / 4 * 4;
        return values <= maxMissingValues && skip(paddedSize) && skip(8 * values);
    }

    bool takeLabels()
    {
        quint32 labels = 0;
        if (!take(labels) || labels * labelInMemory > largestBlock)
            return false;
        for (quint32 i = 0; i < labels; ++i) {
            char size = 0;
            if (!skip(8) || file.read(&size, 1) != 1 || !skip(static_cast<unsigned char>(size) / 8 * 8 + 7))
                return false;
        }
        return takeLabelledVariables();
    }

    // This record follows each record of labels, and occurs nowhere else.
    bool takeLabelledVariables()
    {
        quint32 type = 0;
        quint32 count = 0;
        if (!take(type) || type != labelledVariables || !take(count))
            return false;
        const qint64 size = qint64(4) * count;
        return size <= largestBlock && skip(size);
    }

    bool takeDocuments()
    {
        constexpr quint32 lineSize = 80;
        quint32 lines = 0;
        if (!take(lines))
            return false;
        // The first pass of ReadStat skips the documents in any case.
        const bool isCountedTwice = documentsOfRun == SpssDocuments::areRead;
        const quint32 size = lines * lineSize; // in 32 bits
        return (!isCountedTwice || size == quint64(lines) * lineSize) && skip(size);
    }

    bool takeExtension()
    {
        quint32 subtype = 0;
        quint32 size = 0;
        quint32 count = 0;
        if (!take(subtype) || !take(size) || !take(count))
            return false;
        const quint64 all = quint64(size) * count;
        if (all == 0 || all > quint64(largestBlock))
            return false;
        found.hasLongNames |= subtype == longNames || subtype == veryLongTexts;
        if (subtype == longNames || subtype == veryLongTexts)
            found.lookupSteps += stepsOfSorting * found.variables;
        if (subtype == longTextLabels)
            return takeSets(qint64(all), skipLabelsOfText);
        if (subtype == longTextMissing)
            return takeSets(qint64(all), skipMissingOfText);
        return skip(qint64(all));
    }

    // Counts the sets of a record that has them for one variable after the other. A record with wrong contents needs no
    // test: ReadStat reads the whole record in any case.
    bool takeSets(qint64 size, bool (*skipSet)(ExtensionBytes &))
    {
        if (size > end - file.pos())
            return false;
        QByteArray content(int(size), Qt::Uninitialized);
        if (file.read(content.data(), size) != size)
            return false;
        ExtensionBytes bytes(content, order);
        bool goesOn = true;
        while (goesOn && !bytes.isAtEnd()) {
            found.lookupSteps += found.variables;
            goesOn = skipSet(bytes);
        }
        return true;
    }

    bool take(quint32 &number)
    {
        std::array<char, sizeof(quint32)> bytes;
        if (file.read(bytes.data(), bytes.size()) != qint64(bytes.size()))
            return false;
        number = numberAt(bytes.data(), order);
        return true;
    }

    // There is no record after the end.
    bool skip(qint64 size) { return size <= end - file.pos() && file.seek(file.pos() + size); }

    QIODevice &file;
    SpssDocuments documentsOfRun;
    qint64 end;
    SpssDictionary found;
    ByteOrder order = ByteOrder::littleEndian;
};

} // namespace

QString SpssDictionary::problem(int release) const
{
    using readstat::isFaulty;
    constexpr qint64 smallestBigFile = 1 << 16; // a smaller file is read quickly, whatever it contains
    if (!isReadable || !isSpss || fileSize < smallestBigFile)
        return QString();
    if (isFaulty(readstat::mendsSpssPasses, release) && !isWhole)
        return QStringLiteral("has a dictionary that is cut, or a record in it that cannot be read");
    if (isFaulty(readstat::mendsSpssLongNames, release) && hasLongNames && variables > maxLongNames)
        return QStringLiteral("has more than %1 variables with long names, which is the limit").arg(maxLongNames);
    if (isFaulty(readstat::mendsSpssLookups, release) && lookupSteps > maxLookupSteps)
        return QStringLiteral("has too many sets of labels or missing values of long texts, or records of long names, "
                              "for its %1 variables: their number times the variables may be at most %2")
            .arg(variables)
            .arg(maxLookupSteps);
    return QString();
}

SpssDictionary walkSpssDictionary(QIODevice &device, SpssDocuments documents)
{
    return Walk(device, documents).run();
}
