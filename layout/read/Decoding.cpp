#include "read/Decoding_p.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

namespace vanlayout::decoding
{

namespace
{

// Sequences of two or more bytes: range of the first byte, number of bytes that follow it, range of the second byte.
struct Lead {
    uchar first;
    uchar last;
    uchar following;
    uchar secondFirst;
    uchar secondLast;
};
const Lead leads[] = {
    { 0xC2, 0xDF, 1, 0x80, 0xBF }, { 0xE0, 0xE0, 2, 0xA0, 0xBF }, { 0xE1, 0xEC, 2, 0x80, 0xBF },
    { 0xED, 0xED, 2, 0x80, 0x9F }, { 0xEE, 0xEF, 2, 0x80, 0xBF }, { 0xF0, 0xF0, 3, 0x90, 0xBF },
    { 0xF1, 0xF3, 3, 0x80, 0xBF }, { 0xF4, 0xF4, 3, 0x80, 0x8F },
};

// The longest sequence at the beginning of the bytes that is, or begins, one character.
struct Sequence {
    int size;
    bool isWhole;
};

Sequence sequenceAt(const uchar *begin, const uchar *end)
{
    const auto *lead = std::find_if(std::begin(leads), std::end(leads),
                                    [begin](const Lead &row) { return *begin >= row.first && *begin <= row.last; });
    if (lead == std::end(leads))
        return { 1, *begin < 0x80 };
    int size = 1;
    uchar lowest = lead->secondFirst;
    uchar highest = lead->secondLast;
    while (size <= lead->following && begin + size < end && begin[size] >= lowest && begin[size] <= highest) {
        ++size;
        lowest = 0x80;
        highest = 0xBF;
    }
    return { size, size == 1 + lead->following };
}

const uchar *skipAscii(const uchar *position, const uchar *end)
{
    constexpr quint64 highBits = 0x8080808080808080U;
    quint64 block = 0;
    while (end - position >= qptrdiff(sizeof(block))) {
        std::memcpy(&block, position, sizeof(block));
        if (block & highBits)
            break;
        position += sizeof(block);
    }
    while (position < end && *position < 0x80)
        ++position;
    return position;
}

// The position of the first bytes that are not a character, or the end.
const uchar *findDamage(const uchar *position, const uchar *end)
{
    for (position = skipAscii(position, end); position < end; position = skipAscii(position, end)) {
        const Sequence sequence = sequenceAt(position, end);
        if (!sequence.isWhole)
            break;
        position += sequence.size;
    }
    return position;
}

// Qt removes a byte-order mark at the beginning of the bytes, so it is appended here.
void appendWellFormed(QString &text, const uchar *begin, const uchar *end)
{
    constexpr std::array<uchar, 3> mark = { 0xEF, 0xBB, 0xBF };
    for (; end - begin >= qptrdiff(mark.size()) && std::equal(mark.begin(), mark.end(), begin); begin += mark.size())
        text += QChar(QChar::ByteOrderMark);
    const QString rest = QString::fromUtf8(reinterpret_cast<const char *>(begin), int(end - begin));
    if (text.isEmpty())
        text = rest;
    else
        text += rest;
}

void reportDamage(bool *isDamaged)
{
    if (isDamaged)
        *isDamaged = true;
}

// The characters of the bytes 80 to 9F.
const std::array<char16_t, 32> windows1252Controls = {
    0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD, 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178,
};

// Replaces surrogates without their other half by U+FFFD.
void mendSurrogates(QString &text, bool *isDamaged)
{
    for (int index = 0; index < text.size(); ++index) {
        const QChar unit = qAsConst(text).at(index);
        if (!unit.isSurrogate())
            continue;
        if (unit.isHighSurrogate() && index + 1 < text.size() && qAsConst(text).at(index + 1).isLowSurrogate()) {
            ++index;
            continue;
        }
        text[index] = QChar(QChar::ReplacementCharacter);
        reportDamage(isDamaged);
    }
}

template <typename ReadUnit> QString fromUtf16(const char *bytes, int size, bool *isDamaged, ReadUnit readUnit)
{
    constexpr int unitSize = 2;
    QString text(size / unitSize, Qt::Uninitialized);
    for (QChar &unit : text) {
        unit = QChar(ushort(readUnit(bytes)));
        bytes += unitSize;
    }
    if (size % unitSize != 0) {
        // An incomplete unit after half a surrogate pair belongs to the same damage.
        if (text.isEmpty() || !qAsConst(text).back().isHighSurrogate())
            text += QChar(QChar::ReplacementCharacter);
        reportDamage(isDamaged);
    }
    mendSurrogates(text, isDamaged);
    return text;
}

} // namespace

bool isUtf8(const char *bytes, int size)
{
    const auto *begin = reinterpret_cast<const uchar *>(bytes);
    return findDamage(begin, begin + size) == begin + size;
}

QString fromUtf8(const char *bytes, int size, bool *isDamaged)
{
    const auto *position = reinterpret_cast<const uchar *>(bytes);
    const uchar *end = position + size;
    QString text;
    while (position < end) {
        const uchar *damage = findDamage(position, end);
        appendWellFormed(text, position, damage);
        position = damage;
        if (damage < end) {
            text += QChar(QChar::ReplacementCharacter);
            position += sequenceAt(damage, end).size;
            reportDamage(isDamaged);
        }
    }
    return text;
}

QString fromWindows1252(const char *bytes, int size, bool *isDamaged)
{
    constexpr uchar firstControl = 0x80;
    QString text = QString::fromLatin1(bytes, size);
    for (QChar &character : text) {
        const uint control = uint(character.unicode()) - firstControl;
        if (control >= windows1252Controls.size())
            continue;
        character = QChar(windows1252Controls[control]);
        if (character == QChar(QChar::ReplacementCharacter))
            reportDamage(isDamaged);
    }
    return text;
}

QByteArray toWindows1252(const QString &text)
{
    constexpr int firstControl = 0x80;
    constexpr int firstLatin1 = 0xA0;
    constexpr int lastLatin1 = 0xFF;
    QByteArray bytes;
    for (const QChar character : text) {
        const int unit = character.unicode();
        const auto *control
            = std::find(windows1252Controls.begin(), windows1252Controls.end(), char16_t(character.unicode()));
        if (unit < firstControl || (unit >= firstLatin1 && unit <= lastLatin1))
            bytes += char(unit);
        else if (control != windows1252Controls.end() && unit != QChar::ReplacementCharacter)
            bytes += char(firstControl + int(control - windows1252Controls.begin()));
        else
            bytes += '?';
    }
    return bytes;
}

QString fromUtf16LE(const char *bytes, int size, bool *isDamaged)
{
    return fromUtf16(bytes, size, isDamaged, [](const char *unit) { return qFromLittleEndian<quint16>(unit); });
}

QString fromUtf16BE(const char *bytes, int size, bool *isDamaged)
{
    return fromUtf16(bytes, size, isDamaged, [](const char *unit) { return qFromBigEndian<quint16>(unit); });
}

} // namespace vanlayout::decoding
