#include "convert/WrittenFile_p.h"

#include <QList>

#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace vanlayout::writtenfile
{

namespace
{

constexpr int headerSize = 176;
constexpr int shortName = 8; // bytes

enum Record { Variable = 2, Labels = 3, LabelledVariables = 4, Documents = 6, Extension = 7, End = 999 };
enum Subtype { LongNames = 13, VeryLongTexts = 14, LabelsOfLongTexts = 21 };

/// Reads the bytes from the first to the last; throws std::out_of_range after the last.
class ByteReader
{
public:
    explicit ByteReader(const QByteArray &source)
        : bytes(source)
    {
    }

    QByteArray take(qint64 size)
    {
        if (size < 0 || size > bytes.size() - place)
            throw std::out_of_range("the end of the bytes");
        place += int(size);
        return bytes.mid(place - int(size), int(size));
    }
    qint32 number()
    {
        qint32 value = 0;
        std::memcpy(&value, take(sizeof value).constData(), sizeof value);
        return value;
    }
    int position() const { return place; }
    bool isAtEnd() const { return place == bytes.size(); }

private:
    QByteArray bytes;
    int place = 0;
};

void append(QByteArray &bytes, qint32 number)
{
    bytes.append(reinterpret_cast<const char *>(&number), sizeof number);
}

qint64 roundedUp(qint64 size, qint64 unit)
{
    return (size + unit - 1) / unit * unit;
}

// The bytes of a UTF-8 character that begins with this byte; 0 for a byte within a character.
int bytesOfCharacter(uchar first)
{
    constexpr uchar within = 0x80;
    constexpr uchar two = 0xC0;
    constexpr uchar three = 0xE0;
    constexpr uchar four = 0xF0;
    if (first < within)
        return 1;
    return first < two ? 0 : first < three ? 2 : first < four ? 3 : 4;
}

// The bytes at the end of a name that are the beginning of a character.
int partialBytes(const QByteArray &name)
{
    for (int count = 1; count <= name.size(); ++count) {
        const int needed = bytesOfCharacter(static_cast<uchar>(name.at(name.size() - count)));
        if (needed > 0)
            return count < needed ? count : 0;
    }
    return 0;
}

/// Corrects one file.
class SavCorrection
{
public:
    SavCorrection(const QByteArray &file, const KeyedMap<QByteArray, int> &widthsOfTexts)
        : bytes(file)
        , widths(widthsOfTexts)
        , reader(bytes)
    {
    }

    QByteArray run()
    {
        findNames();
        reader = ByteReader(bytes);
        made = reader.take(headerSize);
        while (copyRecord()) { }
        return made + bytes.mid(reader.position());
    }

private:
    // The names in use, for new ones to differ from.
    void findNames()
    {
        reader.take(headerSize);
        while (reader.number() == Record::Variable)
            names.insert(variable().name);
    }

    struct VariableRecord {
        QByteArray begin;
        QByteArray name;
        QByteArray end;
    };

    VariableRecord variable()
    {
        VariableRecord record;
        constexpr int fieldsBefore = 20; // type, label, missing values, two formats
        constexpr int sizeOfValue = 8;
        record.begin = reader.take(fieldsBefore);
        record.name = reader.take(shortName);
        ByteReader fields(record.begin);
        fields.number();
        const bool hasLabel = fields.number() != 0;
        const qint64 missing = qint64(std::abs(fields.number())) * sizeOfValue;
        if (hasLabel) {
            const qint32 length = reader.number();
            append(record.end, length);
            record.end += reader.take(roundedUp(length, sizeof length));
        }
        record.end += reader.take(missing);
        return record;
    }

    bool copyRecord()
    {
        const qint32 type = reader.number();
        append(made, type);
        switch (type) {
        case Record::Variable:
            copyVariable();
            return true;
        case Record::Labels:
            copyLabels();
            return true;
        case Record::LabelledVariables:
            copyTable(sizeof(qint32));
            return true;
        case Record::Documents:
            copyTable(80); // NOLINT(readability-magic-numbers)
            return true;
        case Record::Extension:
            copyExtension();
            return true;
        default:
            return false;
        }
    }

    void copyVariable()
    {
        const VariableRecord record = variable();
        made += record.begin + wholeName(record.name) + record.end;
    }

    // The name with a number instead of a partial character. It has as many bytes.
    QByteArray wholeName(const QByteArray &name)
    {
        const int partial = partialBytes(name);
        if (partial == 0)
            return name;
        constexpr int base = 36;
        for (int number = 0;; ++number) {
            const QByteArray digits = QByteArray::number(number, base).toUpper().rightJustified(partial, '0');
            if (digits.size() > partial)
                return name; // no such name is left
            const QByteArray whole = name.left(name.size() - partial) + digits;
            if (names.insert(whole).second)
                return renamed[name] = whole;
        }
    }

    void copyLabels()
    {
        constexpr int unit = 8;
        const qint32 count = reader.number();
        append(made, count);
        for (qint32 i = 0; i < count; ++i) {
            made += reader.take(unit);
            const QByteArray length = reader.take(1);
            made += length + reader.take(roundedUp(1 + static_cast<uchar>(length.at(0)), unit) - 1);
        }
    }

    void copyTable(int sizeOfRow)
    {
        const qint32 count = reader.number();
        append(made, count);
        made += reader.take(qint64(count) * sizeOfRow);
    }

    void copyExtension()
    {
        const qint32 subtype = reader.number();
        const qint32 size = reader.number();
        const qint32 count = reader.number();
        QByteArray content = reader.take(qint64(size) * count);
        if (subtype == Subtype::LongNames || subtype == Subtype::VeryLongTexts)
            content = renamedIn(content);
        else if (subtype == Subtype::LabelsOfLongTexts)
            content = withWidths(content);
        append(made, subtype);
        append(made, size);
        append(made, size == 1 ? qint32(content.size()) : count);
        made += content;
    }

    // Entries such as `SHORT=Long name`, with a tabulator between two.
    QByteArray renamedIn(const QByteArray &content) const
    {
        QList<QByteArray> entries = content.split('\t');
        for (QByteArray &entry : entries) {
            const auto name = renamed.find(entry.left(entry.indexOf('=')));
            if (name != renamed.end())
                entry.replace(0, name->first.size(), name->second);
        }
        return entries.join('\t');
    }

    QByteArray withWidths(const QByteArray &content) const
    {
        ByteReader labels(content);
        QByteArray result;
        while (!labels.isAtEnd()) {
            const qint32 length = labels.number();
            const QByteArray name = labels.take(length);
            const qint32 written = labels.number();
            const auto known = widths.find(name);
            const qint32 width = known != widths.end() ? known->second : written;
            append(result, length);
            result += name;
            append(result, width);
            copyLabelsOfText(labels, width, result);
        }
        return result;
    }

    static void copyLabelsOfText(ByteReader &labels, qint32 width, QByteArray &result)
    {
        const qint32 count = labels.number();
        append(result, count);
        for (qint32 i = 0; i < count; ++i) {
            append(result, width);
            result += labels.take(labels.number()).left(width).leftJustified(width, ' ');
            const qint32 length = labels.number();
            append(result, length);
            result += labels.take(length);
        }
    }

    const QByteArray &bytes;
    const KeyedMap<QByteArray, int> &widths;
    ByteReader reader;
    QByteArray made;
    KeyedSet<QByteArray> names;
    KeyedMap<QByteArray, QByteArray> renamed;
};

} // namespace

QByteArray correctedSav(const QByteArray &bytes, const KeyedMap<QByteArray, int> &widths)
{
    try {
        return SavCorrection(bytes, widths).run();
    } catch (const std::out_of_range &) {
        return bytes;
    }
}

} // namespace vanlayout::writtenfile
