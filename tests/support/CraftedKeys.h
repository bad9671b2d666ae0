#ifndef SUPPORT_CRAFTEDKEYS_H
#define SUPPORT_CRAFTEDKEYS_H

#include <QStringList>
#include <QVector>

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

/// Keys that are made to collide in hash functions without a secret, and others of the same size and characters.
namespace crafted
{

using Bytes = std::vector<unsigned char>; // all of one size below

/// CRC-32C with the start value 0. The checksum of two combined (xor) byte sequences is the combination of their
/// checksums. With any other start value the checksum is linear too, so keys with the same checksum still share one,
/// whatever start value a hash table uses.
inline quint32 checksum(const Bytes &bytes)
{
    constexpr quint32 polynomial = 0x82F63B78;
    quint32 sum = 0;
    for (const unsigned char byte : bytes) {
        sum ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            sum = sum >> 1 ^ (sum & 1 ? polynomial : 0);
    }
    return sum;
}

inline void combine(Bytes &bytes, const Bytes &difference)
{
    std::transform(bytes.begin(), bytes.end(), difference.begin(), bytes.begin(), std::bit_xor<>());
}

/// Returns independent combinations of the differences that leave the checksum unchanged. They are found by
/// elimination.
inline std::vector<Bytes> neutralDifferences(const std::vector<Bytes> &differences)
{
    struct Pivot {
        quint32 sum = 0;
        Bytes difference;
    };
    std::array<Pivot, 32> pivots;
    std::vector<Bytes> neutral;
    for (Bytes difference : differences) {
        quint32 sum = checksum(difference);
        for (int bit = 31; bit >= 0 && sum != 0; --bit) {
            Pivot &pivot = pivots[size_t(bit)];
            if ((sum >> bit & 1) == 0)
                continue;
            if (pivot.sum == 0) {
                pivot = { sum, difference };
                break;
            }
            sum ^= pivot.sum;
            combine(difference, pivot.difference);
        }
        if (sum == 0)
            neutral.push_back(difference);
    }
    return neutral;
}

/// Returns \a count different combinations of the differences with a base, in no order.
inline std::vector<Bytes> combinations(const Bytes &base, const std::vector<Bytes> &differences, int count)
{
    std::vector<Bytes> all;
    for (int number = 0; number < count; ++number) {
        all.push_back(base);
        for (size_t bit = 0; bit < std::min<size_t>(differences.size(), 31); ++bit) {
            if (number >> bit & 1)
                combine(all.back(), differences[bit]);
        }
    }
    std::shuffle(all.begin(), all.end(), std::mt19937(1)); // NOLINT(cert-msc51-cpp): the same order every time
    return all;
}

inline Bytes bytesOf(const QString &text)
{
    const auto *begin = reinterpret_cast<const unsigned char *>(text.constData());
    return Bytes(begin, begin + size_t(text.size()) * sizeof(QChar));
}

inline QString textOf(const Bytes &bytes)
{
    return QString(reinterpret_cast<const QChar *>(bytes.data()), int(bytes.size() / sizeof(QChar)));
}

inline QStringList textsOf(const std::vector<Bytes> &all)
{
    QStringList texts;
    for (const Bytes &bytes : all)
        texts.append(textOf(bytes));
    return texts;
}

/// Returns \a count texts of \a size characters, each character being \a first with some of \a bits inverted. The texts
/// have one checksum or many.
inline QStringList texts(int count, bool haveOneChecksum, int size, QChar first, const std::vector<ushort> &bits)
{
    std::vector<Bytes> differences;
    for (int place = 0; place < size; ++place) {
        for (const ushort bit : bits) {
            QString difference(size, QChar(ushort(0)));
            difference[place] = QChar(bit);
            differences.push_back(bytesOf(difference));
        }
    }
    const Bytes base = bytesOf(QString(size, first));
    return textsOf(combinations(base, haveOneChecksum ? neutralDifferences(differences) : differences, count));
}

/// Returns names of eight characters from U+4E00 to U+4E3F.
inline QStringList names(int count, bool haveOneChecksum)
{
    return texts(count, haveOneChecksum, 8, QChar(0x4E00), { 1, 2, 4, 8, 16, 32 });
}

/// Returns names of 64 letters, each A, C, E or G.
inline QStringList letterNames(int count, bool haveOneChecksum)
{
    return texts(count, haveOneChecksum, 64, QLatin1Char('A'), { 'A' ^ 'C', 'A' ^ 'E' });
}

/// Returns names of eight bytes from 40 to 7F (hexadecimal), with one checksum of the bytes or with many.
inline QVector<QByteArray> byteNames(int count, bool haveOneChecksum)
{
    constexpr size_t size = 8;
    std::vector<Bytes> differences;
    for (size_t place = 0; place < size; ++place) {
        for (const unsigned char bit : { 1, 2, 4, 8, 16, 32 }) {
            differences.emplace_back(size);
            differences.back()[place] = bit;
        }
    }
    QVector<QByteArray> all;
    for (const Bytes &bytes :
         combinations(Bytes(size, '@'), haveOneChecksum ? neutralDifferences(differences) : differences, count))
        all.append(QByteArray(reinterpret_cast<const char *>(bytes.data()), int(bytes.size())));
    return all;
}

/// Returns numbers from 1 to 2, with one checksum or with many.
inline QVector<double> numbers(int count, bool haveOneChecksum)
{
    constexpr int bitsOfFraction = 52;
    const auto bytesOfBits = [](quint64 bits) {
        Bytes bytes(sizeof bits);
        std::memcpy(bytes.data(), &bits, sizeof bits);
        return bytes;
    };
    std::vector<Bytes> differences;
    for (int bit = 0; bit < bitsOfFraction; ++bit)
        differences.push_back(bytesOfBits(quint64(1) << bit));
    const Bytes one = bytesOfBits(quint64(0x3FF) << bitsOfFraction);
    QVector<double> all;
    for (const Bytes &bytes :
         combinations(one, haveOneChecksum ? neutralDifferences(differences) : differences, count)) {
        double number = 0;
        std::memcpy(&number, bytes.data(), sizeof number);
        all.append(number);
    }
    return all;
}

/// Returns keys of 160 characters. Their differences cancel, or do not, in a hash that reads four characters at a time,
/// multiplies by an odd number and adds the upper bits to the bits 29 places below. A difference in only the topmost
/// bit is unchanged by the product; a difference in the topmost bit and in the bit 29 places below removes it in the
/// next four characters.
inline QStringList keys(int count, bool cancel)
{
    constexpr int pieces = 20;
    constexpr int size = 8; // number of characters of a piece
    const QString base(pieces * size, QLatin1Char('A'));
    std::vector<Bytes> differences;
    for (int piece = 0; piece < pieces; ++piece) {
        QString difference(base.size(), QChar(ushort(0)));
        difference[piece * size + 3] = QChar(ushort(0x8000));
        difference[piece * size + (cancel ? 7 : 5)] = QChar(ushort(0x8000));
        difference[piece * size + 6] = QChar(ushort(4));
        differences.push_back(bytesOf(difference));
    }
    return textsOf(combinations(bytesOf(base), differences, count));
}

} // namespace crafted

#endif
