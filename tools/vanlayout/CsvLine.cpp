#include "CsvLine.h"

#include <QByteArray>

#include <algorithm>

namespace
{

constexpr int usualLineSize = 4096;

bool needsQuotes(QStringView text)
{
    return std::any_of(text.begin(), text.end(), [](QChar character) {
        const ushort code = character.unicode();
        return code == ',' || code == '"' || code == '\n' || code == '\r';
    });
}

} // namespace

CsvLine::CsvLine(std::FILE *stream)
    : out(stream)
{
    line.reserve(usualLineSize);
}

void CsvLine::add(QStringView text)
{
    if (needsQuotes(text)) {
        line += QLatin1Char('"') + text.toString().replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
    } else {
        line.append(text.data(), int(text.size()));
    }
    line += QLatin1Char(',');
}

void CsvLine::add(int number)
{
    line += QString::number(number);
    line += QLatin1Char(',');
}

void CsvLine::addFlag(bool isSet)
{
    line += isSet ? QLatin1String("yes,") : QLatin1String(",");
}

void CsvLine::addPlain(QLatin1String cells)
{
    line += cells;
    line += QLatin1Char(',');
}

void CsvLine::end()
{
    line.chop(1); // the comma after the last cell
    line += QLatin1String("\r\n");
    const QByteArray bytes = line.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), out);
    line.resize(0);
}
