#ifndef LOOKUP_LOOKUPENTRIES_P_H
#define LOOKUP_LOOKUPENTRIES_P_H

#include <QString>

#include <map>
#include <vector>

/// The entries and frequencies that a check of a lookup file collects while it reads.
///
/// A hash table, a sort by the first characters and a shortcut for ascending keys are used because they save time. The
/// figures are the user and system time of `vanlayout lookup --mode both`, compared with the plain way. 1,000,000 lines
/// in no order with 1,000 different values take 43 % less time than with a KeyedSet of the keys, 20 % less than with
/// `std::sort` by the whole keys, and 59 % less than with a KeyedMap and `std::sort` for everything. The same lines in
/// ascending order take 52 % less time than without the shortcut. If every value is different, the frequencies take
/// most of the time; the table saves 17 %, the sort 3 %. With 10,000 lines the start of the process takes most of the
/// time; all three together save 13 % to 23 %.
namespace lookup
{

/// Returns 32 bits of the keyed hash of a text. Nobody can make a file whose texts all have the same hash, so a check
/// of a crafted file takes no longer than a check of any other file.
quint32 hashOf(const QString &text);

/// Finds the number of a text by its hash. The user of the index holds the texts and compares them.
class TextIndex
{
public:
    TextIndex();

    /// Returns the number, among those added with this hash, for which \a isText returns true; -1 if there is none.
    template <typename IsText> int find(quint32 hash, IsText isText) const
    {
        for (size_t place = hash & mask(); places[place].number >= 0; place = (place + 1) & mask()) {
            if (places[place].hash == hash && isText(places[place].number))
                return places[place].number;
        }
        return -1;
    }
    void add(quint32 hash, int number);

private:
    struct Place {
        quint32 hash = 0;
        int number = -1;
    };

    size_t mask() const { return places.size() - 1; }
    void put(Place added);

    std::vector<Place> places;
    size_t used = 0;
};

/// Keys and values in the order of the file, each key once.
class Entries
{
public:
    /// Adds a pair if its key is new. Returns whether the key is new.
    bool add(const QString &key, quint32 keyHash, const QString &value);
    /// Moves all pairs to an empty map.
    void moveTo(std::map<QString, QString> &map);

private:
    struct Entry {
        QString key;
        QString value;
    };

    std::vector<Entry> entries;
    TextIndex index; ///< empty while the keys ascend
    bool isAscending = true;
};

/// The frequencies of a check: one int of 1 for each value of a new key, in the caller's map.
///
/// A separate index finds the values. With 1,000 different values in 1,000,000 lines, a check takes 25 % to 58 % less
/// time than with searches of the map; if every value is different, it takes 6 % to 36 % more.
class Frequencies
{
public:
    explicit Frequencies(std::map<QString, int *> &callersMap);

    /// Enters a new int of 1 under the value, unless the map has an entry of the key.
    void count(const QString &key, quint32 keyHash, const QString &value);

private:
    /// The maker of the int of an entry. An int that this check made is 1.
    enum class Maker { caller, thisCheck };
    struct Frequency {
        std::map<QString, int *>::iterator entry;
        Maker maker;
    };

    int find(const QString &text, quint32 hash) const;
    void remember(std::map<QString, int *>::iterator entry, quint32 hash, Maker maker);

    std::map<QString, int *> &map;
    std::vector<Frequency> frequencies;
    TextIndex index;
};

} // namespace lookup

#endif
