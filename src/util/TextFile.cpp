#include "util/TextFile_p.h"

#include <QFile>
#include <QTextCodec>

#include <algorithm>
#include <cstring>
#include <new>

TextLines::TextLines(const QStringList *list)
{
    if (!list)
        return;
    views.reserve(size_t(list->size()));
    for (const QString &line : *list)
        append(line);
}

TextLines::TextLines(const QStringList &list)
    : TextLines(&list)
{
}

TextLines TextLines::split(QStringView text)
{
    constexpr qsizetype usualLineSize = 24;
    TextLines lines;
    lines.views.reserve(size_t(text.size() / usualLineSize));
    qsizetype begin = 0;
    while (begin < text.size()) {
        const qsizetype feed = text.indexOf(QLatin1Char('\n'), begin);
        const qsizetype end = feed < 0 ? text.size() : feed;
        lines.append(text.mid(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

namespace textfile
{

namespace
{

// More bytes than this could need more characters than a QString holds.
constexpr qint64 mostBytes = 1 << 30;
constexpr qint64 blockSize = 1 << 20;

// Registered numbers of two character sets.
constexpr int mibAscii = 3;
constexpr int mibUtf8 = 106;

struct ByteOrderMark {
    const char *bytes;
    int size;
    const char *codec;
};
// A mark that begins with another stands before it.
const ByteOrderMark byteOrderMarks[] = {
    { "\xEF\xBB\xBF", 3, "UTF-8" }, { "\xFF\xFE\0\0", 4, "UTF-32LE" }, { "\0\0\xFE\xFF", 4, "UTF-32BE" },
    { "\xFF\xFE", 2, "UTF-16LE" },  { "\xFE\xFF", 2, "UTF-16BE" },
};

const ByteOrderMark *findByteOrderMark(const QByteArray &bytes)
{
    const auto *found
        = std::find_if(std::begin(byteOrderMarks), std::end(byteOrderMarks), [&](const ByteOrderMark &mark) {
              return bytes.size() >= mark.size && std::memcmp(bytes.constData(), mark.bytes, size_t(mark.size)) == 0;
          });
    return found != std::end(byteOrderMarks) ? found : nullptr;
}

// Whether a text that was decoded from UTF-8 holds a replacement character that does not stand in its bytes.
bool hasDecodingErrors(const QString &text, const QByteArray &bytes)
{
    const QChar replacement(QChar::ReplacementCharacter);
    return text.contains(replacement) && text.count(replacement) != bytes.count("\xEF\xBF\xBD");
}

QTextCodec *codecOfOldFiles()
{
    QTextCodec *codec = QTextCodec::codecForLocale();
    if (codec && codec->mibEnum() != mibUtf8 && codec->mibEnum() != mibAscii)
        return codec;
    return QTextCodec::codecForName("windows-1252");
}

QString decodeWithMarks(const QByteArray &bytes)
{
    if (const ByteOrderMark *mark = findByteOrderMark(bytes)) {
        const char *begin = bytes.constData() + mark->size;
        const int size = bytes.size() - mark->size;
        if (mark == std::begin(byteOrderMarks))
            return QString::fromUtf8(begin, size);
        QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
        return QTextCodec::codecForName(mark->codec)->toUnicode(begin, size, &state);
    }
    // By its size: the text may hold NUL characters.
    QString text = QString::fromUtf8(bytes.constData(), bytes.size());
    return hasDecodingErrors(text, bytes) ? codecOfOldFiles()->toUnicode(bytes) : text;
}

QByteArray readBytes(QFile &file)
{
    if (file.size() > mostBytes)
        throw std::bad_alloc();
    if (!file.isSequential())
        return file.readAll();
    // A pipe or a device does not tell its size: it may have no end.
    QByteArray bytes;
    for (QByteArray block = file.read(blockSize); !block.isEmpty(); block = file.read(blockSize)) {
        bytes += block;
        if (bytes.size() > mostBytes)
            throw std::bad_alloc();
    }
    return bytes;
}

} // namespace

QString decode(const QByteArray &bytes)
{
    QString text = decodeWithMarks(bytes);
    const QLatin1Char carriageReturn('\r');
    if (text.contains(carriageReturn))
        text.truncate(int(std::remove(text.begin(), text.end(), carriageReturn) - text.begin()));
    return text;
}

QString read(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? decode(readBytes(file)) : QString();
}

} // namespace textfile
