#ifndef LOOKUP_LOOKUPENTRIES_P_H
#define LOOKUP_LOOKUPENTRIES_P_H

#include <QString>

#include <map>
#include <vector>

/// What a check of a lookup file keeps while it reads.
namespace lookup
{

/// Half of the keyed hash of a text: no file can be made so that its texts collide.
quint32 hashOf(const QString &text);

/// Finds the number of a text by its hash. Holds no text: the user tells whether the one of a number is meant.
class TextIndex
{
public:
    TextIndex();

    /// The number of the text for which \a isText answers true, among those of this hash; -1 if there is none.
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
    /// Adds a pair, unless the key is there already; answers whether it is new.
    bool add(const QString &key, quint32 keyHash, const QString &value);
    /// Fills an empty map with all of them, and gives them up.
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
class Frequencies
{
public:
    explicit Frequencies(std::map<QString, int *> &callersMap);

    /// Where the key is an entry, nothing happens; else the entry of the value becomes a new int of 1.
    void count(const QString &key, quint32 keyHash, const QString &value);

private:
    struct Frequency {
        std::map<QString, int *>::iterator entry;
        bool isOfThisCheck; ///< holds an int of 1 that this check has made
    };

    int find(const QString &text, quint32 hash) const;
    void remember(std::map<QString, int *>::iterator entry, quint32 hash, bool isOfThisCheck);

    std::map<QString, int *> &map;
    std::vector<Frequency> frequencies;
    TextIndex index;
};

} // namespace lookup

#endif
