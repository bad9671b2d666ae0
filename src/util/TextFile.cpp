#include "util/TextFile_p.h"

#include <QTextCodec>

#include <algorithm>
#include <cstring>

namespace textfile
{

namespace
{

// Registered (MIB) numbers of two character sets.
constexpr int mibAscii = 3;
constexpr int mibUtf8 = 106;

struct ByteOrderMark {
    const char *bytes;
    int size;
    const char *codec;
};
// A mark that begins with another mark comes before it.
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

// The number of bytes that follow a lead byte of UTF-8, and the bounds of the first of them. There are none for a byte
// that is not a lead byte.
struct Utf8Lead {
    uchar first;
    uchar last;
    uchar following;
    uchar lowest;
    uchar highest;
};
const Utf8Lead utf8Leads[] = {
    { 0xC2, 0xDF, 1, 0x80, 0xBF }, { 0xE0, 0xE0, 2, 0xA0, 0xBF }, { 0xE1, 0xEC, 2, 0x80, 0xBF },
    { 0xED, 0xED, 2, 0x80, 0x9F }, { 0xEE, 0xEF, 2, 0x80, 0xBF }, { 0xF0, 0xF0, 3, 0x90, 0xBF },
    { 0xF1, 0xF3, 3, 0x80, 0xBF }, { 0xF4, 0xF4, 3, 0x80, 0x8F },
};

// Returns the size of the UTF-8 sequence of two or more bytes at the beginning; 0 if there is none.
int utf8SequenceSize(const uchar *begin, const uchar *end)
{
    const auto *lead = std::find_if(std::begin(utf8Leads), std::end(utf8Leads),
                                    [begin](const Utf8Lead &row) { return *begin >= row.first && *begin <= row.last; });
    if (lead == std::end(utf8Leads) || end - begin <= lead->following)
        return 0;
    const bool isFirstFine = begin[1] >= lead->lowest && begin[1] <= lead->highest;
    const bool areRestFine
        = std::all_of(begin + 2, begin + 1 + lead->following, [](uchar byte) { return byte >= 0x80 && byte <= 0xBF; });
    return isFirstFine && areRestFine ? 1 + lead->following : 0;
}

// Returns the first byte that is not ASCII. Eight bytes are tested at a time.
const uchar *skipAscii(const uchar *begin, const uchar *end)
{
    constexpr quint64 highBits = Q_UINT64_C(0x8080808080808080);
    quint64 eight = 0;
    for (; end - begin >= qptrdiff(sizeof eight); begin += sizeof eight) {
        std::memcpy(&eight, begin, sizeof eight);
        if (eight & highBits)
            break;
    }
    return std::find_if(begin, end, [](uchar byte) { return byte >= 0x80; });
}

QTextCodec *codecOfOldFiles()
{
    QTextCodec *codec = QTextCodec::codecForLocale();
    if (codec && codec->mibEnum() != mibUtf8 && codec->mibEnum() != mibAscii) // LCOV_EXCL_BR_LINE: never null
        return codec;
    return QTextCodec::codecForName("windows-1252");
}

const ByteOrderMark *const utf8Mark = std::begin(byteOrderMarks);

// The size is a parameter, since a text may contain NUL characters. A mark at the beginning is omitted.
QString fromUtf8(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes.constData(), bytes.size());
}

QString decodeWithReturns(const QByteArray &bytes)
{
    const ByteOrderMark *mark = findByteOrderMark(bytes);
    if (!mark)
        return isUtf8(bytes) ? fromUtf8(bytes) : codecOfOldFiles()->toUnicode(bytes);
    if (mark == utf8Mark)
        return fromUtf8(bytes);
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    return QTextCodec::codecForName(mark->codec)
        ->toUnicode(bytes.constData() + mark->size, bytes.size() - mark->size, &state);
}

void removeReturns(QString &text)
{
    const QLatin1Char carriageReturn('\r');
    if (text.contains(carriageReturn))
        text.truncate(int(std::remove(text.begin(), text.end(), carriageReturn) - text.begin()));
}

} // namespace

bool isUtf8(const QByteArray &bytes)
{
    const auto *begin = reinterpret_cast<const uchar *>(bytes.constData());
    const uchar *end = begin + bytes.size();
    while ((begin = skipAscii(begin, end)) != end) {
        const int size = utf8SequenceSize(begin, end);
        if (size == 0)
            return false;
        begin += size;
    }
    return true;
}

Mark markOf(const QByteArray &bytes)
{
    const ByteOrderMark *mark = findByteOrderMark(bytes);
    if (!mark)
        return Mark::none;
    return mark == utf8Mark ? Mark::utf8 : Mark::other;
}

QString decodeUtf8(const QByteArray &bytes)
{
    QString text = fromUtf8(bytes);
    removeReturns(text);
    return text;
}

QString decode(const QByteArray &bytes)
{
    QString text = decodeWithReturns(bytes);
    removeReturns(text);
    return text;
}

} // namespace textfile
