#ifndef UTIL_KEYEDHASH_P_H
#define UTIL_KEYEDHASH_P_H

#include <QByteArray>
#include <QRandomGenerator>
#include <QString>

#include <array>
#include <initializer_list>
#include <unordered_map>
#include <unordered_set>

#include <sodium.h>

/// SipHash-2-4 with a random key for each process. Nobody can make a file whose texts or numbers all have the same
/// hash.
///
/// Every hash table whose keys come from a file uses this hash. Qt's own hash of texts is a checksum on many
/// processors: texts with the same checksum are easily made, for any seed. Values that compare equal have the same
/// hash, as 0 and -0 do.
///
/// The operations are deliberately not noexcept: the standard containers then keep the hash of each entry.
class KeyedHash
{
public:
    size_t operator()(QStringView text) const { return of(text.data(), size_t(text.size()) * sizeof(QChar)); }
    size_t operator()(const QString &text) const { return (*this)(QStringView(text)); }
    size_t operator()(const QByteArray &bytes) const { return of(bytes.constData(), size_t(bytes.size())); }
    size_t operator()(quint64 number) const { return of(&number, sizeof number); }
    size_t operator()(double number) const
    {
        const double withoutSignOfZero = number + 0.0;
        return of(&withoutSignOfZero, sizeof withoutSignOfZero);
    }
    /// Returns the hash of several parts, in their order. Each part is a number or the hash of a text.
    size_t operator()(std::initializer_list<quint64> parts) const
    {
        return of(parts.begin(), parts.size() * sizeof(quint64));
    }

private:
    using Key = std::array<quint32, crypto_shorthash_KEYBYTES / sizeof(quint32)>;

    static Key drawnKey()
    {
        Key key = {};
        QRandomGenerator::system()->fillRange(key.data(), qsizetype(key.size()));
        return key;
    }

    static size_t of(const void *bytes, size_t size)
    {
        static const Key key = drawnKey();
        static_assert(crypto_shorthash_BYTES == sizeof(quint64));
        quint64 hash = 0;
        crypto_shorthash(reinterpret_cast<unsigned char *>(&hash), static_cast<const unsigned char *>(bytes), size,
                         reinterpret_cast<const unsigned char *>(key.data()));
        return size_t(hash);
    }
};

/// Standard containers for keys that come from a file. Their order differs from process to process.
template <typename Key> using KeyedSet = std::unordered_set<Key, KeyedHash>;
template <typename Key, typename Value> using KeyedMap = std::unordered_map<Key, Value, KeyedHash>;

#endif
