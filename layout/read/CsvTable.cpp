#include "read/CsvTable_p.h"

#include "read/Decoding_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr QLatin1Char quote('"');

QString textOf(const QByteArray &bytes)
{
    QString text = decoding::isUtf8(bytes.constData(), bytes.size())
        ? decoding::fromUtf8(bytes.constData(), bytes.size())
        : decoding::fromWindows1252(bytes.constData(), bytes.size());
    if (text.startsWith(QChar(QChar::ByteOrderMark)))
        text.remove(0, 1);
    return text;
}

QChar separatorOf(const QString &text)
{
    bool isQuoted = false;
    for (const QChar unit : text) {
        if (unit == quote)
            isQuoted = !isQuoted;
        else if (!isQuoted && (unit == QLatin1Char(',') || unit == QLatin1Char(';') || unit == QLatin1Char('\t')))
            return unit;
        else if (!isQuoted && unit == QLatin1Char('\n'))
            break;
    }
    return QLatin1Char(',');
}

/// Reads the cells of a text from its beginning to its end.
class CsvText
{
public:
    explicit CsvText(const QString &content)
        : text(content)
        , separator(separatorOf(content))
    {
    }

    CsvTable read()
    {
        while (at < text.size() && table.problem.isEmpty())
            readRow();
        return table;
    }

private:
    void readRow()
    {
        CsvRow row;
        row.line = line;
        do {
            row.cells.append(isAt(quote) ? quotedCell() : plainCell());
        } while (table.problem.isEmpty() && takeSeparator());
        takeLineEnd();
        const auto hasText = [](const QString &cell) { return !cell.isEmpty(); };
        if (std::any_of(row.cells.cbegin(), row.cells.cend(), hasText))
            table.rows.append(row);
    }

    bool isAt(QChar unit) const { return at < text.size() && text.at(at) == unit; }
    bool isAtEndOfLine() const
    {
        return at == text.size() || isAt(QLatin1Char('\n'))
            || (isAt(QLatin1Char('\r')) && at + 1 < text.size() && text.at(at + 1) == QLatin1Char('\n'));
    }
    bool takeSeparator()
    {
        const bool isThere = isAt(separator);
        at += isThere ? 1 : 0;
        return isThere;
    }
    void takeLineEnd()
    {
        at += isAt(QLatin1Char('\r')) ? 1 : 0;
        if (!isAt(QLatin1Char('\n')))
            return;
        ++at;
        ++line;
    }

    QString plainCell()
    {
        const int begin = at;
        while (!isAtEndOfLine() && !isAt(separator)) {
            if (isAt(quote))
                fail(line, QStringLiteral("a quotation mark is within a cell that does not begin with one"));
            ++at;
        }
        return text.mid(begin, at - begin);
    }
    QString quotedCell()
    {
        const int firstLine = line;
        QString cell;
        ++at;
        for (int begin = at; at < text.size(); ++at) {
            line += isAt(QLatin1Char('\n')) ? 1 : 0;
            if (!isAt(quote))
                continue;
            cell.append(text.constData() + begin, at - begin);
            begin = ++at;
            if (!isAt(quote)) {
                if (!isAtEndOfLine() && !isAt(separator))
                    fail(line, QStringLiteral("a text follows a closing quotation mark"));
                return cell;
            }
        }
        fail(firstLine, QStringLiteral("a closing quotation mark is missing"));
        return cell;
    }
    void fail(int problemLine, const QString &problem)
    {
        if (!table.problem.isEmpty())
            return;
        table.line = problemLine;
        table.problem = problem;
    }

    const QString &text;
    QChar separator;
    int at = 0;
    int line = 1;
    CsvTable table;
};

} // namespace

CsvTable readCsvTable(const QByteArray &bytes)
{
    const QString text = textOf(bytes);
    return CsvText(text).read();
}

} // namespace vanlayout
