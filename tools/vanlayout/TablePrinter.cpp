#include "Printable.h"
#include "Printer.h"

#include "import/SourceField.h"

#include <QStringList>
#include <QVector>

#include <algorithm>
#include <numeric>

namespace
{

constexpr int gap = 2;             // blanks between columns
constexpr int mostRangeWidth = 40; // bounds can have very many digits
constexpr int leastLabelWidth = 1; // what a narrow terminal leaves to the label

// Columns that a character takes: none for a mark on the character before it, two for a wide one.
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

int columnsOf(const QString &text)
{
    const auto characters = text.toUcs4();
    return std::accumulate(characters.cbegin(), characters.cend(), 0,
                           [](int sum, uint character) { return sum + columnsOf(character); });
}

// The text as far as it fits, an ellipsis in place of what does not; all of it where there is no bound.
QString cutToColumns(const QString &text, int width)
{
    if (width <= 0 || columnsOf(text) <= width)
        return text;
    QVector<uint> kept;
    int used = 1; // the ellipsis
    for (const uint character : text.toUcs4()) {
        used += columnsOf(character);
        if (used > width)
            break;
        kept.append(character);
    }
    return QString::fromUcs4(kept.constData(), kept.size()) + QChar(0x2026);
}

QString rangeOf(const TVpSourceField &field)
{
    if (field.minimum.isEmpty() && field.maximum.isEmpty())
        return QString();
    return cutToColumns(field.minimum.left(mostRangeWidth) + QLatin1String(" to ") + field.maximum.left(mostRangeWidth),
                        mostRangeWidth);
}

QString countOrNothing(int count)
{
    return count > 0 ? QString::number(count) : QString();
}

class TablePrinter : public Printer
{
public:
    TablePrinter(std::FILE *file, bool partFiles, int terminalWidth)
        : out(file)
        , needsGaps(partFiles)
        , width(terminalWidth)
    {
    }

    // The rows are made twice, for their widths and for themselves: there can be very many.
    void printLayout(const Layout &layout) override
    {
        printHeading(layout);
        const QList<TVpSourceField *> &fields = *layout.provider.getFields();
        const QStringList head = { QStringLiteral("Name"),   QStringLiteral("Type"),     QStringLiteral("Start"),
                                   QStringLiteral("Length"), QStringLiteral("Decimals"), QStringLiteral("Range"),
                                   QStringLiteral("Labels"), QStringLiteral("Group"),    QStringLiteral("Label") };
        QVector<int> widths(head.size(), 0);
        widen(widths, head);
        for (const TVpSourceField *field : fields)
            widen(widths, rowOf(*field));
        printRow(head, widths);
        for (const TVpSourceField *field : fields)
            printRow(rowOf(*field), widths);
    }

private:
    void printHeading(const Layout &layout)
    {
        if (needsGaps && !isFirst)
            printLine(QString());
        isFirst = false;
        const int count = layout.provider.getFields()->size();
        printLine(QStringLiteral("%1: %2, %3 %4")
                      .arg(printable(layout.file), QLatin1String(layout.type->title), QString::number(count),
                           count == 1 ? QStringLiteral("variable") : QStringLiteral("variables")));
        QStringList groups;
        for (int i = 0; i < layout.importer->getGroupCount(); ++i)
            groups.append(printable(layout.importer->getGroupName(i)));
        if (!groups.isEmpty())
            printLine(cutToColumns(QLatin1String("Groups: ") + groups.join(QLatin1String(", ")), width));
        printLine(QString());
    }

    static QStringList rowOf(const TVpSourceField &field)
    {
        return { printable(field.fieldName),
                 field.FieldType,
                 QString::number(field.start),
                 QString::number(field.length),
                 countOrNothing(field.decimals),
                 printable(rangeOf(field)),
                 countOrNothing(field.valueLabels.count(QLatin1Char('\t'))),
                 printable(field.group),
                 printable(field.label) };
    }

    static void widen(QVector<int> &widths, const QStringList &row)
    {
        for (int i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], columnsOf(row.at(i)));
    }

    void printRow(const QStringList &row, const QVector<int> &widths)
    {
        const int labelStart = std::accumulate(widths.cbegin(), widths.cend() - 1, gap * (widths.size() - 1));
        const int labelWidth = width > 0 ? std::max(width - labelStart, leastLabelWidth) : 0;
        QString line;
        for (int i = 0; i < row.size() - 1; ++i)
            line += row.at(i) + QString(widths[i] - columnsOf(row.at(i)) + gap, QLatin1Char(' '));
        printLine(line + cutToColumns(row.last(), labelWidth));
    }

    void printLine(QString line)
    {
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
        const QByteArray bytes = line.toUtf8() + '\n';
        std::fwrite(bytes.constData(), 1, size_t(bytes.size()), out);
    }

    std::FILE *out;
    bool needsGaps;
    int width;
    bool isFirst = true;
};

} // namespace

std::unique_ptr<Printer> makeTablePrinter(std::FILE *out, bool severalFiles, int width)
{
    return std::make_unique<TablePrinter>(out, severalFiles, width);
}
