#include "GeneratedStatFile.h"

#include <QFile>
#include <QtEndian>

#include <cstdlib>
#include <cstring>

namespace
{

constexpr qint64 valueSize = 8; // bytes; all values are doubles

std::string dictionary(const StatFileShape &shape)
{
    const bool isStata = shape.kind == StatFile::dta;
    StatFile file(shape.kind, isStata ? 118 : 0);
    readstat_label_set_t *set = nullptr;
    for (int i = 0; i < shape.variables; ++i) {
        const std::string number = std::to_string(i);
        if (!set || !shape.isOneSet) {
            set = readstat_add_label_set(file.writer(), isStata ? READSTAT_TYPE_INT32 : READSTAT_TYPE_DOUBLE,
                                         ("set" + number).c_str());
            for (int value = 1; value <= shape.labels; ++value) {
                const std::string label = "Category " + std::to_string(value);
                if (isStata)
                    readstat_label_int32_value(set, value, label.c_str());
                else
                    readstat_label_double_value(set, value, label.c_str());
            }
        }
        file.variable(("VAR_" + number).c_str(), READSTAT_TYPE_DOUBLE, ("Variable number " + number).c_str(),
                      isStata ? "%10.0g" : "F8.0", set);
    }
    return file.bytes(0);
}

// An SPSS file ends with its rows. Its header states their number.
void addSpssRows(std::string &head, qint64 rows)
{
    constexpr int rowsAt = 80;
    qToLittleEndian(qint32(rows), &head[rowsAt]);
}

// A Stata file has its rows in the middle. Its header states their number, and its map states the positions of all
// parts after them.
size_t addStataRows(std::string &head, qint64 rows, qint64 size)
{
    const auto after = [&](const char *tag) { return head.find(tag) + std::strlen(tag); };
    constexpr int places = 14;
    const size_t data = after("<data>");
    qToLittleEndian(rows, &head[after("<N>")]);
    for (int i = 0; i < places; ++i) {
        char *place = &head[after("<map>") + size_t(i) * sizeof(qint64)];
        const auto offset = qFromLittleEndian<qint64>(place);
        if (size_t(offset) > data)
            qToLittleEndian(offset + size, place);
    }
    return data;
}

} // namespace

void generateStatFile(const StatFileShape &shape, const QString &path)
{
    std::string bytes = dictionary(shape);
    const qint64 size = shape.rows * shape.variables * valueSize;
    size_t rowsAt = bytes.size();
    if (shape.kind == StatFile::dta)
        rowsAt = addStataRows(bytes, shape.rows, size);
    else
        addSpssRows(bytes, shape.rows);

    QFile file(path);
    const auto rest = qint64(bytes.size() - rowsAt);
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(bytes.data(), qint64(rowsAt)) == qint64(rowsAt)
        && file.resize(qint64(rowsAt) + size) && file.seek(qint64(rowsAt) + size)
        && file.write(bytes.data() + rowsAt, rest) == rest;
    if (!isWritten)
        qFatal("%s cannot be written", qPrintable(path));
}
