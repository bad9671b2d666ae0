#include "convert/WrittenFile_p.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>
#include <vector>

namespace vanlayout::writtenfile
{

namespace
{

constexpr int sizeOfName = 129; // of a variable, with the zero at its end

// The parts of a file whose places its map states, in their order.
enum Part { Characteristics = 8, ValueLabels = 11, PartCount = 14 };
using Map = std::array<quint64, PartCount>;

template <typename Number> Number numberAt(const QByteArray &bytes, int place)
{
    Number number = 0;
    std::memcpy(&number, bytes.constData() + place, sizeof number);
    return number;
}

template <typename Number> void write(QByteArray &bytes, int place, Number number)
{
    std::memcpy(bytes.data() + place, &number, sizeof number);
}

QByteArray paddedName(const char *name)
{
    return QByteArray(name).leftJustified(sizeOfName, '\0');
}

QByteArray countOfNotes(int notes)
{
    const QByteArray content = paddedName("_dta") + paddedName("note0") + QByteArray::number(notes) + '\0';
    QByteArray size(sizeof(quint32), '\0');
    write(size, 0, quint32(content.size()));
    return "<ch>" + size + content + "</ch>";
}

// Inserts the number of the notes before them, and moves the parts after it.
void insertCount(QByteArray &bytes, Map &map, int notes)
{
    const QByteArray tag = "<characteristics>";
    const QByteArray count = countOfNotes(notes);
    bytes.insert(int(map[Part::Characteristics]) + int(tag.size()), count);
    for (int part = Part::Characteristics + 1; part < Part::PartCount; ++part)
        map[size_t(part)] += quint64(count.size());
}

// Sorts the codes of a set, and the places of their labels with them.
void sortSet(QByteArray &bytes, int begin, int count)
{
    std::vector<std::pair<qint32, qint32>> codes; // with the place of the label
    constexpr int size = sizeof(qint32);
    codes.reserve(size_t(count));
    for (int i = 0; i < count; ++i)
        codes.emplace_back(numberAt<qint32>(bytes, begin + (count + i) * size),
                           numberAt<qint32>(bytes, begin + i * size));
    std::sort(codes.begin(), codes.end());
    for (int i = 0; i < count; ++i) {
        write(bytes, begin + (count + i) * size, codes.at(size_t(i)).first);
        write(bytes, begin + i * size, codes.at(size_t(i)).second);
    }
}

void sortLabels(QByteArray &bytes, int place)
{
    const QByteArray tag = "<lbl>";
    const QByteArray endTag = "</lbl>";
    constexpr int sizeOfHead = sizeof(quint32) + sizeOfName + 3; // the size, the name, padding
    constexpr int size = sizeof(qint32);
    place += int(std::strlen("<value_labels>"));
    while (bytes.mid(place, int(tag.size())) == tag) {
        place += int(tag.size());
        const auto sizeOfSet = numberAt<qint32>(bytes, place);
        place += sizeOfHead;
        sortSet(bytes, place + 2 * size, numberAt<qint32>(bytes, place));
        place += sizeOfSet + int(endTag.size());
    }
}

} // namespace

QByteArray correctedDta(const QByteArray &bytes, int notes)
{
    const QByteArray tag = "<map>";
    const int place = bytes.indexOf(tag) + int(tag.size());
    if (place < tag.size() || place + int(sizeof(Map)) > bytes.size())
        return bytes;
    QByteArray corrected = bytes;
    auto map = Map();
    std::memcpy(map.data(), bytes.constData() + place, sizeof(Map));
    if (notes > 0)
        insertCount(corrected, map, notes);
    std::memcpy(corrected.data() + place, map.data(), sizeof(Map));
    sortLabels(corrected, int(map[Part::ValueLabels]));
    return corrected;
}

} // namespace vanlayout::writtenfile
