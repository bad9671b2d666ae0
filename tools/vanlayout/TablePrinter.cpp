#include "Columns.h"
#include "Printable.h"
#include "Printer.h"

#include "import/SourceField.h"

#include <QStringList>
#include <QVector>

#include <algorithm>
#include <numeric>

namespace
{

constexpr int gap = 2;            // blanks between columns
constexpr int maxRangeWidth = 40; // bounds can have very many digits
constexpr int minLabelWidth = 1;  // width that a narrow terminal leaves to the label

QString rangeOf(const TVpSourceField &field)
{
    if (field.minimum.isEmpty() && field.maximum.isEmpty())
        return QString();
    return cutToColumns(field.minimum.left(maxRangeWidth) + QLatin1String(" to ") + field.maximum.left(maxRangeWidth),
                        maxRangeWidth);
}

QString countOrNothing(int count)
{
    return count > 0 ? QString::number(count) : QString();
}

class TablePrinter : public Printer
{
public:
    TablePrinter(std::FILE *file, FileCount files, int terminalWidth)
        : out(file)
        , needsGaps(files == FileCount::several)
        , width(terminalWidth)
    {
    }

    // The rows are made twice, for their widths and for printing, because there can be very many.
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
            printLine(out, QString());
        isFirst = false;
        const int count = layout.provider.getFields()->size();
        printLine(out,
                  QStringLiteral("%1: %2, %3 %4")
                      .arg(printable(layout.file), QLatin1String(layout.type->title), QString::number(count),
                           count == 1 ? QStringLiteral("variable") : QStringLiteral("variables")));
        QStringList groups;
        for (int i = 0; i < layout.importer->getGroupCount(); ++i)
            groups.append(printable(layout.importer->getGroupName(i)));
        if (!groups.isEmpty())
            printLine(out, cutToColumns(QLatin1String("Groups: ") + groups.join(QLatin1String(", ")), width));
        printLine(out, QString());
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
        const int labelWidth = width > 0 ? std::max(width - labelStart, minLabelWidth) : 0;
        QString line;
        for (int i = 0; i < row.size() - 1; ++i)
            line += paddedToColumns(row.at(i), widths[i] + gap);
        printLine(out, line + cutToColumns(row.last(), labelWidth));
    }

    std::FILE *out;
    bool needsGaps;
    int width;
    bool isFirst = true;
};

} // namespace

std::unique_ptr<Printer> makeTablePrinter(std::FILE *out, FileCount files, int width)
{
    return std::make_unique<TablePrinter>(out, files, width);
}
