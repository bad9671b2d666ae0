#include "CodebookCsv.h"

#include "write/CsvStream_p.h"
#include "write/Wording_p.h"

namespace vanlayout
{

namespace
{

const char *const header = "level,record,name,label,type,start,length,occurrences,subitemOf,decimals,format,measure,"
                           "missing,note,valueSet,from,to,valueLabel,special,valueNote,";

class CodebookCsvWriter
{
public:
    CodebookCsvWriter(QIODevice &device, const CodebookCsvOptions &options)
        : csv(device, options.isForExcel ? CsvStream::Reader::Spreadsheet : CsvStream::Reader::Program)
        , language(options.language)
    {
    }

    bool write(const Layout &layout)
    {
        csv.add(header);
        csv.endLine();
        for (const Level &level : layout.levels) {
            const QByteArray name = csv.cell(level.name);
            writeItems(name + "(ids),", level.ids);
            for (const Record &record : level.records)
                writeItems(name + csv.cell(record.name), record.items);
        }
        return csv.end();
    }

private:
    void writeItems(const QByteArray &place, const QVector<Item> &items)
    {
        for (const Item &item : items)
            writeItem(place, item);
    }
    void writeItem(const QByteArray &place, const Item &item)
    {
        const QByteArray cells = place + cellsOf(item);
        bool hasLine = false;
        for (const ValueSet &set : item.valueSets) {
            const QByteArray setCells = cells + csv.cell(set.name);
            for (const Value &value : set.values) {
                writeValue(setCells, value);
                hasLine = true;
            }
        }
        if (hasLine)
            return;
        csv.add(cells);
        csv.add(",,,,,,");
        csv.endLine();
    }
    QByteArray cellsOf(const Item &item) const
    {
        return csv.cell(item.name) + csv.cell(item.labels.in(language)) + csv.cell(item.type)
            + (item.start > 0 ? CsvStream::cell(item.start) : ",") + CsvStream::cell(item.length)
            + CsvStream::cell(item.occurrences) + csv.cell(item.subitemOf) + CsvStream::cell(item.decimals)
            + csv.cell(item.format) + csv.cell(wordOf(item.measure)) + csv.cell(describeRanges(item.missing))
            + csv.cell(item.note);
    }
    void writeValue(const QByteArray &cells, const Value &value)
    {
        const QByteArray meaning
            = csv.cell(value.labels.in(language)) + csv.cell(describeSpecial(value.special)) + csv.cell(value.note);
        for (const Range &range : value.ranges)
            writeCode(cells, range, meaning);
        if (value.ranges.isEmpty())
            writeCode(cells, Range(), meaning);
    }
    void writeCode(const QByteArray &cells, const Range &range, const QByteArray &meaning)
    {
        csv.add(cells);
        csv.add(csv.cell(range.from));
        csv.add(csv.cell(range.to));
        csv.add(meaning);
        csv.endLine();
    }

    CsvStream csv;
    const QString language;
};

} // namespace

bool writeCodebookCsv(const Layout &layout, QIODevice &device, const CodebookCsvOptions &options)
{
    return CodebookCsvWriter(device, options).write(layout);
}

} // namespace vanlayout
