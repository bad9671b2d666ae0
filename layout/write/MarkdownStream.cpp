#include "MarkdownStream_p.h"

namespace vanlayout
{

namespace
{

constexpr int flushedSize = 1 << 15;
constexpr ushort pictures = 0x2400;
constexpr ushort deleteSign = 0x7F;
constexpr ushort lastControl = 0x9F;

bool isActive(ushort unit)
{
    switch (unit) {
    case '\\':
    case '`':
    case '*':
    case '_':
    case '[':
    case ']':
    case '#':
    case '|':
    case '~':
    case '$':
        return true;
    default:
        return false;
    }
}

bool isLineBreak(ushort unit)
{
    constexpr ushort nextLine = 0x85;
    constexpr ushort lineSeparator = 0x2028;
    constexpr ushort paragraphSeparator = 0x2029;
    return unit == '\n' || unit == '\r' || unit == '\v' || unit == '\f' || unit == nextLine || unit == lineSeparator
        || unit == paragraphSeparator;
}

void appendSign(QString &result, QChar sign)
{
    const ushort unit = sign.unicode();
    if (isActive(unit))
        result += QLatin1Char('\\') + sign;
    else if (unit == '<')
        result += QLatin1String("&lt;");
    else if (unit == '>')
        result += QLatin1String("&gt;");
    else if (unit == '&')
        result += QLatin1String("&amp;");
    else if (unit == '\t')
        result += QLatin1Char(' ');
    else if (unit < ' ')
        result += QChar(pictures + unit);
    else if (unit == deleteSign)
        result += QChar(pictures + '!');
    else if (unit > deleteSign && unit <= lastControl)
        result += QChar(QChar::ReplacementCharacter);
    else
        result += sign;
}

// Index of the character that makes the beginning of a paragraph a list, a heading or a rule: `-`, `+`, `=`, or the
// point or bracket after a number. -1 if there is none.
int activeBeginning(const QString &text)
{
    if (text.startsWith(QLatin1Char('-')) || text.startsWith(QLatin1Char('+')) || text.startsWith(QLatin1Char('=')))
        return 0;
    int index = 0;
    while (index < text.size() && text.at(index).isDigit())
        ++index;
    const bool isMark
        = index < text.size() && (text.at(index) == QLatin1Char('.') || text.at(index) == QLatin1Char(')'));
    return index > 0 && isMark ? index : -1;
}

} // namespace

QString markdownText(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const ushort unit = text.at(i).unicode();
        if (!isLineBreak(unit)) {
            appendSign(result, text.at(i));
            continue;
        }
        result += QLatin1String("<br>");
        if (unit == '\r' && i + 1 < text.size() && text.at(i + 1) == QLatin1Char('\n'))
            ++i;
    }
    return result;
}

MarkdownStream::MarkdownStream(QIODevice &target)
    : device(target)
{
    buffer.reserve(2 * flushedSize);
}

void MarkdownStream::heading(int level, const QString &line)
{
    this->line(QString(level, QLatin1Char('#')) + QLatin1Char(' ') + line);
    this->line(QString());
}

void MarkdownStream::paragraph(const QString &text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return;
    QString markdown = markdownText(trimmed);
    const int active = activeBeginning(markdown);
    if (active >= 0)
        markdown.insert(active, QLatin1Char('\\'));
    line(markdown);
    line(QString());
}

void MarkdownStream::line(const QString &markdown)
{
    buffer += markdown;
    buffer += QLatin1Char('\n');
    if (buffer.size() >= flushedSize)
        flush();
}

void MarkdownStream::tableHeader(const QStringList &cells)
{
    tableRow(cells);
    line(QLatin1Char('|') + QStringLiteral("---|").repeated(cells.size()));
}

void MarkdownStream::tableRow(const QStringList &cells)
{
    buffer += QLatin1Char('|');
    for (const QString &cell : cells) {
        buffer += QLatin1Char(' ');
        buffer += cell;
        buffer += QLatin1String(cell.isEmpty() ? "|" : " |");
    }
    line(QString());
}

bool MarkdownStream::end()
{
    flush();
    return isWhole;
}

void MarkdownStream::flush()
{
    const QByteArray bytes = buffer.toUtf8();
    isWhole = isWhole && device.write(bytes) == bytes.size();
    buffer.resize(0);
}

} // namespace vanlayout
