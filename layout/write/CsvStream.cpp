#include "CsvStream_p.h"

#include "write/Codes_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr int flushedSize = 1 << 16;

bool needsQuotes(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar character) {
        const ushort code = character.unicode();
        return code == ',' || code == '"' || code == '\n' || code == '\r';
    });
}

// The full-width signs of East Asian keyboards also begin a formula.
bool beginsFormula(const QString &text)
{
    static const QString signs = QString::fromUtf8("=+-@\t\r\n＝＋－＠");
    return !text.isEmpty() && signs.contains(text.at(0)) && decimalNumberOf(text).spelling.isEmpty();
}

} // namespace

CsvStream::CsvStream(QIODevice &target, Reader intendedReader)
    : device(target)
    , reader(intendedReader)
{
    buffer.reserve(2 * flushedSize);
    if (reader == Reader::Spreadsheet)
        buffer += "\xEF\xBB\xBF";
}

QByteArray CsvStream::cell(const QString &text) const
{
    QByteArray bytes = text.toUtf8();
    if (reader == Reader::Spreadsheet && beginsFormula(text))
        bytes.prepend('\'');
    if (needsQuotes(text))
        bytes = '"' + bytes.replace('"', "\"\"") + '"';
    return bytes + ',';
}

void CsvStream::endLine()
{
    buffer.chop(1);
    buffer += "\r\n";
    if (buffer.size() >= flushedSize)
        flush();
}

bool CsvStream::end()
{
    flush();
    return isWhole;
}

void CsvStream::flush()
{
    isWhole = isWhole && device.write(buffer) == buffer.size();
    buffer.resize(0);
}

} // namespace vanlayout
