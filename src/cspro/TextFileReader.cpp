#include "cspro/TextFileReader_p.h"

#include "util/FileReading_p.h"
#include "util/TextFile_p.h"

#include <QFile>

#include <algorithm>

namespace
{

// More bytes than this could need more characters than a QString holds.
constexpr qint64 maxBytes = 1 << 30;
constexpr qint64 pieceSize = 1 << 20;

void requireRoom(qint64 size)
{
    if (size > maxBytes)
        throw ReadingGivenUp(QStringLiteral("is larger than 1 GiB, the limit for a text dictionary"));
}

// This is for a pipe or a device, which has no size and may have no end.
QByteArray readToEnd(QFile &file)
{
    QByteArray bytes;
    for (QByteArray piece = file.read(pieceSize); !piece.isEmpty(); piece = file.read(pieceSize)) {
        // A QByteArray of Qt 6 that is full appends to a copy of itself; one that is reserved grows in place.
        const qint64 needed = qint64(bytes.size()) + piece.size();
        if (needed > bytes.capacity())
            bytes.reserve(int(std::min(2 * needed, maxBytes + pieceSize)));
        bytes += piece;
        requireRoom(bytes.size());
    }
    return bytes;
}

} // namespace

TextFileReader::TextFileReader(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return;
    opened = true;
    requireRoom(file.size());
    bytes = file.isSequential() ? readToEnd(file) : readAllOf(file);
    readProblem = readProblemOf(file);
    if (!readProblem.isEmpty())
        bytes.clear();
    const textfile::Mark mark = textfile::markOf(bytes);
    hasUtf8Mark = mark == textfile::Mark::utf8;
    isInBlocks = mark == textfile::Mark::none ? textfile::isUtf8(bytes) : hasUtf8Mark;
    encodingGuessed = mark == textfile::Mark::none && !isInBlocks;
}

void TextFileReader::forEachBrokenLine(const std::function<void(int, const QString &)> &report) const
{
    if (!hasUtf8Mark || textfile::isUtf8(bytes))
        return;
    int number = 1;
    for (int begin = 0; begin < bytes.size(); ++number) {
        const int feed = bytes.indexOf('\n', begin);
        const int end = feed < 0 ? bytes.size() : feed;
        const QByteArray line = QByteArray::fromRawData(bytes.constData() + begin, end - begin);
        if (!textfile::isUtf8(line))
            report(number, textfile::decodeUtf8(line));
        begin = end + 1;
    }
}

// Returns the index after the first line feed that a bracket follows and that lies after the usual size.
int TextFileReader::endOfBlock() const
{
    const int usualEnd = position + usualBlockSize;
    if (!isInBlocks || usualEnd >= bytes.size())
        return bytes.size();
    const int feed = bytes.indexOf("\n[", usualEnd);
    return feed < 0 ? bytes.size() : feed + 1;
}

bool TextFileReader::readBlock(QString &text)
{
    if (position >= bytes.size())
        return false;
    const int end = endOfBlock();
    const QByteArray block = QByteArray::fromRawData(bytes.constData() + position, end - position);
    position = end;
    text = isInBlocks ? textfile::decodeUtf8(block) : textfile::decode(block);
    return true;
}
