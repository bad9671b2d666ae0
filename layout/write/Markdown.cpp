#include "Markdown.h"

#include "write/MarkdownStream_p.h"
#include "write/Tables_p.h"
#include "write/Wording_p.h"

#include <QFileInfo>

#include <algorithm>
#include <array>

namespace vanlayout
{

namespace
{

constexpr int recordHeading = 2;
constexpr int itemHeading = 3;

// "NAME: label", or one of them if the other is empty.
QString nameAndLabel(const QString &name, const QString &label)
{
    const QString separator = name.isEmpty() || label.isEmpty() ? QString() : QStringLiteral(": ");
    return markdownText(name) + separator + markdownText(label.trimmed());
}

// The columns of an item, "5" or "5-7" at its first occurrence; empty if there are none.
QString columnsText(const Item &item)
{
    if (item.start <= 0)
        return QString();
    const qint64 last = qint64(item.start) + item.length - 1;
    return last > item.start ? QStringLiteral("%1-%2").arg(item.start).arg(last) : QString::number(item.start);
}

QString numberUnless(int number, int usual)
{
    return number == usual ? QString() : QString::number(number);
}

// The codes of a value; a code of blanks is named, because blanks are invisible.
QString codesText(QVector<Range> ranges)
{
    for (Range &range : ranges) {
        if (range.to.isEmpty() && range.from.trimmed().isEmpty())
            range.from = QStringLiteral("(blank)");
    }
    return markdownText(describeRanges(ranges));
}

// A column of a table of items.
struct ItemColumn {
    const char *title;
    QString (*cell)(const Item &item, const QString &language);
    bool isAlwaysThere;
};

const std::array<ItemColumn, 8> itemColumns
    = { { { "Name", [](const Item &item, const QString &) { return markdownText(item.name); }, true },
          { "Label", [](const Item &item, const QString &language) { return markdownText(item.labels.in(language)); },
            true },
          { "Type", [](const Item &item, const QString &) { return markdownText(describeType(item)); }, true },
          { "Columns", [](const Item &item, const QString &) { return columnsText(item); }, false },
          { "Occurrences", [](const Item &item, const QString &) { return numberUnless(item.occurrences, 1); }, false },
          { "Part of", [](const Item &item, const QString &) { return markdownText(item.subitemOf); }, false },
          { "Measure", [](const Item &item, const QString &) { return wordOf(item.measure); }, false },
          { "Missing", [](const Item &item, const QString &) { return codesText(item.missing); }, false } } };

class MarkdownWriter
{
public:
    MarkdownWriter(QIODevice &device, const Layout &source, const QString &shownLanguage)
        : out(device)
        , layout(source)
        , language(shownLanguage)
    {
    }

    bool write(const QString &given)
    {
        const QString title = titleOf(layout, given, language);
        out.heading(1, title.isEmpty() ? QStringLiteral("Codebook") : markdownText(title.trimmed()));
        writeFacts();
        out.paragraph(layout.note);
        for (const Level &level : layout.levels)
            writeLevel(level);
        return out.end();
    }

private:
    void fact(const char *name, const QString &text)
    {
        if (!text.isEmpty())
            out.tableRow({ QLatin1String(name), markdownText(text) });
    }
    void writeFacts()
    {
        out.tableHeader({ QStringLiteral("File"), markdownText(QFileInfo(layout.file).fileName()) });
        fact("Format", describeFormat(layout));
        fact("Encoding", layout.encoding);
        fact("Name", layout.name);
        fact("Languages", languagesText());
        if (layout.recordType)
            fact("Record type", recordTypeText(*layout.recordType));
        fact("Rows", layout.rows ? QString::number(*layout.rows) : QString());
        fact("Created", layout.created.value_or(QString()));
        fact("Modified", layout.modified.value_or(QString()));
        fact("Weight", layout.weight);
        out.endTable();
    }
    QString languagesText() const
    {
        QStringList texts;
        for (const Language &entry : layout.languages)
            texts.append(entry.label.isEmpty() ? entry.name : QStringLiteral("%1 (%2)").arg(entry.label, entry.name));
        return texts.join(QLatin1String(", "));
    }
    static QString recordTypeText(const RecordTypeColumns &columns)
    {
        Item item;
        item.start = columns.start;
        item.length = columns.length;
        return QLatin1String(columns.length > 1 ? "columns " : "column ") + columnsText(item);
    }

    void writeLevel(const Level &level)
    {
        if (!level.ids.isEmpty()) {
            const QString name = layout.levels.size() > 1 ? nameAndLabel(level.name, level.labels.in(language)) : "";
            out.heading(recordHeading, name.isEmpty() ? QStringLiteral("Ids") : QLatin1String("Ids of ") + name);
        }
        out.paragraph(level.note);
        writeItems(level.ids);
        for (const Record &record : level.records)
            writeRecord(record);
    }
    void writeRecord(const Record &record)
    {
        const QString name = nameAndLabel(record.name, record.labels.in(language));
        out.heading(recordHeading, name.isEmpty() ? QStringLiteral("Variables") : name);
        if (!isStatistical())
            writeRecordFacts(record);
        out.paragraph(record.note);
        writeOccurrenceLabels(record.occurrenceLabels);
        writeItems(record.items);
    }
    bool isStatistical() const { return holdsData(layout.format); }
    void writeRecordFacts(const Record &record)
    {
        QStringList facts;
        if (!record.recordType.isEmpty())
            facts.append(QLatin1String("type ") + markdownText(record.recordType));
        if (statesOccurrences(layout, record)) {
            facts.append(record.required ? QStringLiteral("required") : QStringLiteral("not required"));
            facts.append(QStringLiteral("at most %1 in a case").arg(record.maximum));
        }
        if (facts.isEmpty())
            return;
        out.line(QLatin1String("Record: ") + facts.join(QLatin1String(", ")));
        out.line(QString());
    }

    void writeItems(const QVector<Item> &items)
    {
        if (items.isEmpty())
            return;
        writeItemTable(items);
        for (const Item &item : items)
            writeDetails(item);
    }
    void writeItemTable(const QVector<Item> &items)
    {
        QVector<const ItemColumn *> columns;
        QStringList titles;
        for (const ItemColumn &column : itemColumns) {
            const auto isFilled = [&](const Item &item) { return !column.cell(item, language).isEmpty(); };
            if (!column.isAlwaysThere && std::none_of(items.begin(), items.end(), isFilled))
                continue;
            columns.append(&column);
            titles.append(QLatin1String(column.title));
        }
        out.tableHeader(titles);
        for (const Item &item : items) {
            QStringList cells;
            for (const ItemColumn *column : qAsConst(columns))
                cells.append(column->cell(item, language));
            out.tableRow(cells);
        }
        out.endTable();
    }

    // Writes the details that are not in the table of items.
    void writeDetails(const Item &item)
    {
        if (item.note.isEmpty() && item.valueSets.isEmpty() && item.occurrenceLabels.isEmpty())
            return;
        out.heading(itemHeading, nameAndLabel(item.name, item.labels.in(language)));
        out.paragraph(item.note);
        writeOccurrenceLabels(item.occurrenceLabels);
        for (const ValueSet &set : item.valueSets)
            writeValueSet(set);
    }
    void writeOccurrenceLabels(const QVector<OccurrenceLabel> &labels)
    {
        if (labels.isEmpty())
            return;
        out.tableHeader({ QStringLiteral("Occurrence"), QStringLiteral("Label") });
        for (const OccurrenceLabel &label : labels)
            out.tableRow({ QString::number(label.occurrence), markdownText(label.labels.in(language)) });
        out.endTable();
    }
    void writeValueSet(const ValueSet &set)
    {
        if (!isStatistical()) {
            out.line(QLatin1String("Value set ") + nameAndLabel(set.name, set.labels.in(language)));
            out.line(QString());
        }
        out.paragraph(set.note);
        if (set.values.isEmpty())
            return;
        const bool hasRemarks = std::any_of(set.values.begin(), set.values.end(),
                                            [](const Value &value) { return !remarkOf(value).isEmpty(); });
        QStringList titles = { QStringLiteral("Code"), QStringLiteral("Label") };
        if (hasRemarks)
            titles.append(QStringLiteral("Remark"));
        out.tableHeader(titles);
        for (const Value &value : set.values) {
            QStringList cells = { codesText(value.ranges), markdownText(value.labels.in(language)) };
            if (hasRemarks)
                cells.append(remarkOf(value));
            out.tableRow(cells);
        }
        out.endTable();
    }
    static QString remarkOf(const Value &value)
    {
        QStringList parts;
        if (value.special != Special::None)
            parts.append(describeSpecial(value.special));
        if (!value.note.isEmpty())
            parts.append(markdownText(value.note));
        if (!value.image.isEmpty())
            parts.append(QLatin1String("image ") + markdownText(value.image));
        return parts.join(QLatin1String("; "));
    }

    MarkdownStream out;
    const Layout &layout;
    const QString language;
};

} // namespace

bool writeMarkdown(const Layout &layout, QIODevice &device, const MarkdownOptions &options)
{
    return MarkdownWriter(device, layout, options.language).write(options.title);
}

} // namespace vanlayout
