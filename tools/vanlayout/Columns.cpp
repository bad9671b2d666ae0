#include "Columns.h"

#include "Printable.h"

#include <algorithm>
#include <numeric>
#include <string>

#ifdef Q_OS_UNIX
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace
{

// Number of columns of a character: none for a combining mark, two for a wide one.
int columnsOf(uint character)
{
    const auto isIn = [character](uint first, uint last) { return character >= first && character <= last; };
    const QChar::Category category = QChar::category(character);
    if (category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing || category == QChar::Other_Format)
        return 0;
    const bool isWide = isIn(0x1100, 0x115F) || isIn(0x2E80, 0xA4CF) || isIn(0xAC00, 0xD7A3) || isIn(0xF900, 0xFAFF)
        || isIn(0xFE30, 0xFE6F) || isIn(0xFF00, 0xFF60) || isIn(0xFFE0, 0xFFE6) || isIn(0x1F300, 0x1F64F)
        || isIn(0x1F680, 0x1F6FF) || isIn(0x1F900, 0x1F9FF) || isIn(0x1FA70, 0x1FAFF) || isIn(0x20000, 0x3FFFD);
    return isWide ? 2 : 1;
}

// Splits a word into pieces of at most this many columns, each with at least one character.
QStringList brokenToColumns(const QString &word, int width)
{
    QStringList pieces;
    std::u32string piece;
    int used = 0;
    const auto characters = word.toUcs4();
    for (const uint character : characters) {
        const int columns = columnsOf(character);
        if (!piece.empty() && used + columns > width) {
            pieces.append(QString::fromUcs4(piece.data(), int(piece.size())));
            piece.clear();
            used = 0;
        }
        piece.push_back(character);
        used += columns;
    }
    pieces.append(QString::fromUcs4(piece.data(), int(piece.size())));
    return pieces;
}

} // namespace

int columnsOf(const QString &text)
{
    const auto characters = text.toUcs4();
    return std::accumulate(characters.cbegin(), characters.cend(), 0,
                           [](int sum, uint character) { return sum + columnsOf(character); });
}

QString cutToColumns(const QString &text, int width)
{
    if (width <= 0 || columnsOf(text) <= width)
        return text;
    std::u32string kept;
    int used = 1; // the ellipsis
    const auto characters = text.toUcs4();
    for (const uint character : characters) {
        used += columnsOf(character);
        if (used > width)
            break;
        kept.push_back(character);
    }
    return QString::fromUcs4(kept.data(), int(kept.size())) + QChar(0x2026);
}

QString paddedToColumns(const QString &text, int width)
{
    return text + QString(std::max(width - columnsOf(text), 0), QLatin1Char(' '));
}

QStringList wrappedToColumns(const QString &text, int width)
{
    if (width <= 0 || columnsOf(text) <= width)
        return { text };
    QStringList lines;
    QString line;
    int used = 0;
    const QStringList words = text.split(QLatin1Char(' '));
    for (QString word : words) {
        int wordWidth = columnsOf(word);
        if (!line.isEmpty() && used + 1 + wordWidth > width) {
            lines.append(line);
            line.clear();
            used = 0;
        }
        if (wordWidth > width) {
            lines.append(brokenToColumns(word, width));
            word = lines.takeLast();
            wordWidth = columnsOf(word);
        }
        used += wordWidth + (line.isEmpty() ? 0 : 1);
        line += line.isEmpty() ? word : QLatin1Char(' ') + word;
    }
    lines.append(line);
    return lines;
}

int widthOfTerminal(int descriptor)
{
#ifdef Q_OS_UNIX
    winsize size = {};
    return isatty(descriptor) && ioctl(descriptor, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
#else
    Q_UNUSED(descriptor)
    return 0;
#endif
}

int terminalWidth()
{
    constexpr int standardOutput = 1;
    const int width = widthOfTerminal(standardOutput);
    return width > 0 ? width : std::max(qEnvironmentVariableIntValue("COLUMNS"), 0);
}

void printLine(std::FILE *out, QString line)
{
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    const QByteArray bytes = printable(line).toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), out);
}
