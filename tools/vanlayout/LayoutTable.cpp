#include "LayoutTable.h"

#include "Columns.h"
#include "LayoutText.h"
#include "Printable.h"

#include <QStringList>
#include <QVector>

#include <algorithm>
#include <array>

using vanlayout::Item;
using vanlayout::Labels;
using vanlayout::Layout;
using vanlayout::Level;
using vanlayout::Record;
using vanlayout::Value;
using vanlayout::ValueSet;

namespace
{

constexpr int gap = 2;              // blanks between columns
constexpr int minLabelWidth = 20;   // width that names and types leave to the label
constexpr int minNameWidth = 8;     // a name that is longer than the column has a separate line
constexpr int maxNameWidth = 64;    // longest names of statistical files; a longer name has a separate line
constexpr int maxTypeWidth = 24;    // a format of a hostile file can be long
constexpr int maxCodeWidth = 24;    // a wider code has its label on the next line
constexpr int valueIndentation = 6; // indentation of the codes below an item
constexpr int setIndentation = 4;   // indentation of the names of value sets

enum Column { Name, Type, Start, Length, Occurrences, Values, Label, columnCount };
using Row = std::array<QString, columnCount>;
using Widths = std::array<int, columnCount>;

const Row &headOfTable()
{
    static const Row head
        = { QStringLiteral("Name"), QStringLiteral("Type"),   QStringLiteral("Start"), QStringLiteral("Len"),
            QStringLiteral("Occ"),  QStringLiteral("Values"), QStringLiteral("Label") };
    return head;
}

QString numberUnless(int number, int usual)
{
    return number == usual ? QString() : QString::number(number);
}

// The number of values of an item: of its only value set, or the total of several.
QString countOfValues(const Item &item)
{
    int count = 0;
    for (const ValueSet &set : item.valueSets)
        count += set.values.size();
    const int sets = item.valueSets.size();
    return sets < 2 ? numberUnless(count, 0) : QStringLiteral("%1 in %2").arg(count).arg(sets);
}

class LayoutTable
{
public:
    LayoutTable(const Layout &source, const LayoutTableStyle &tableStyle, std::FILE *stream)
        : layout(source)
        , style(tableStyle)
        , out(stream)
    {
    }

    void print()
    {
        measure();
        printTitle();
        for (int i = 0; i < layout.levels.size(); ++i)
            printLevel(layout.levels.at(i), i + 1);
    }

private:
    QString labelOf(const Labels &labels) const { return printable(labels.in(style.language)); }

    static QString nameOf(const Item &item)
    {
        return (item.isSubitem ? QStringLiteral("  ") : QString()) + printable(item.name);
    }

    Row rowOf(const Item &item) const
    {
        return { nameOf(item),
                 cutToColumns(printable(describeType(item)), maxTypeWidth),
                 numberUnless(item.start, 0),
                 item.start > 0 ? QString::number(item.length) : QString(),
                 numberUnless(item.occurrences, 1),
                 countOfValues(item),
                 labelOf(item.labels) };
    }

    // The widths of all columns; an empty column gets 0. The rows are made twice, for their widths and for printing,
    // because there can be very many.
    void measure()
    {
        widths.fill(0);
        forEachItem(layout, [&](const Level & /*level*/, const Record * /*record*/, const Item &item) {
            widen(rowOf(item));
            ++itemCount;
        });
        for (int column = 0; column < columnCount; ++column) {
            if (widths[size_t(column)] > 0)
                widths[size_t(column)] = std::max(widths[size_t(column)], columnsOf(headOfTable()[size_t(column)]));
        }
        if (widths[Name] > nameRoom())
            widths[Name] = longestNameWithin(nameRoom());
    }
    // The width of the name column: that of the longest name that fits, and at least that of a short name.
    int longestNameWithin(int room) const
    {
        int longest = minNameWidth;
        forEachItem(layout, [&](const Level & /*level*/, const Record * /*record*/, const Item &item) {
            const int width = columnsOf(nameOf(item));
            if (width <= room)
                longest = std::max(longest, width);
        });
        return longest;
    }
    void widen(const Row &row)
    {
        for (size_t column = 0; column < columnCount; ++column)
            widths[column] = std::max(widths[column], columnsOf(row[column]));
    }
    // Width of the columns between name and label, including gaps.
    int spaceAfterName() const
    {
        int space = gap;
        for (size_t column = Type; column < Label; ++column)
            space += widths[column] > 0 ? widths[column] + gap : 0;
        return space;
    }
    int nameRoom() const
    {
        const int room = style.width - spaceAfterName() - std::min(widths[Label], minLabelWidth);
        return style.width > 0 ? std::min(room, maxNameWidth) : maxNameWidth;
    }

    void line(const QString &text) const { printLine(out, cutToColumns(text, style.width)); }

    void printTitle() const
    {
        const QString title = labelOf(layout.labels).trimmed();
        if (!title.isEmpty())
            line(title);
        printLine(out, printable(layout.file));
        QStringList facts = { describeFormat(layout) };
        if (!layout.name.isEmpty())
            facts.append(printable(layout.name));
        facts.append(countOf(itemCount, QStringLiteral("variable"))
                     + (style.isSelection ? QLatin1String(" selected") : QLatin1String()));
        if (layout.rows)
            facts.append(countOf(*layout.rows, QStringLiteral("row")));
        const QStringList codes = languages();
        const int lastWithComma = facts.size() - (codes.isEmpty() ? 2 : 1);
        for (int i = 0; i <= lastWithComma; ++i)
            facts[i] += QLatin1Char(',');
        wrapped(facts + codes);
    }
    // The codes of several languages, on one line if it is wide enough; none if there is only one language.
    QStringList languages() const
    {
        QStringList codes;
        if (layout.languages.size() < 2)
            return codes;
        for (const vanlayout::Language &language : layout.languages)
            codes.append(printable(language.name));
        codes.first().prepend(QLatin1String("languages "));
        const QString inOne = codes.join(QLatin1Char(' '));
        const bool fits = style.width == 0 || columnsOf(inOne) + gap <= style.width;
        return fits ? QStringList(inOne) : codes;
    }
    // Texts separated by blanks, wrapped to as many lines as necessary.
    void wrapped(const QStringList &texts) const
    {
        QString row;
        for (const QString &text : texts) {
            const int width = columnsOf(row) + 1 + columnsOf(text);
            if (!row.isEmpty() && style.width > 0 && width > style.width) {
                line(row);
                row = QString(gap, QLatin1Char(' ')) + text;
            } else {
                row += (row.isEmpty() ? QLatin1String() : QLatin1String(" ")) + text;
            }
        }
        line(row);
    }

    void printLevel(const Level &level, int number)
    {
        if (!level.ids.isEmpty()) {
            heading(QStringLiteral("Id items of level %1 %2").arg(number).arg(printable(level.name)),
                    labelOf(level.labels), QString());
            printItems(level.ids);
        }
        for (const Record &record : level.records) {
            if (!record.name.isEmpty() || !level.name.isEmpty())
                heading(printable(record.name), labelOf(record.labels), factsOf(record, number));
            else
                line(QString());
            printItems(record.items);
        }
    }
    QString factsOf(const Record &record, int levelNumber) const
    {
        QStringList facts;
        if (!record.recordType.isEmpty())
            facts.append(QStringLiteral("type \"%1\"").arg(printable(record.recordType)));
        if (layout.levels.size() > 1)
            facts.append(QStringLiteral("level %1").arg(levelNumber));
        const bool isStated = statesOccurrences(layout, record);
        if (isStated)
            facts.append(QStringLiteral("max %1").arg(record.maximum));
        if (isStated && !record.required)
            facts.append(QStringLiteral("optional"));
        return facts.isEmpty() ? QString() : QLatin1String(" (") + facts.join(QLatin1String(", ")) + QLatin1Char(')');
    }
    // An empty line, then name, label and facts on one line; the label is cut if necessary.
    void heading(const QString &name, const QString &label, const QString &facts) const
    {
        line(QString());
        const int room = style.width - columnsOf(name) - columnsOf(facts) - gap;
        const QString text = label.isEmpty() || (style.width > 0 && room < 2)
            ? QString()
            : QLatin1String(": ") + cutToColumns(label, style.width > 0 ? room : 0);
        line(name + text + facts);
    }

    void printItems(const QVector<Item> &items)
    {
        if (items.isEmpty())
            return;
        if (!hasHead) {
            hasHead = true;
            printRow(headOfTable());
        }
        for (const Item &item : items) {
            printRow(rowOf(item));
            if (style.showsValues)
                printValueSets(item);
        }
    }
    void printRow(const Row &row) const
    {
        QString text = row[Name];
        if (columnsOf(text) > widths[Name]) {
            line(text);
            text.clear();
        }
        text = paddedToColumns(text, widths[Name] + gap);
        for (size_t column = Type; column < Label; ++column) {
            if (widths[column] > 0)
                text += cell(row[column], Column(column));
        }
        line(widths[Label] > 0 ? text + row[Label] : text);
    }
    // Texts are left-aligned, numbers right-aligned.
    QString cell(const QString &text, Column column) const
    {
        const int width = widths[size_t(column)];
        if (column == Type)
            return paddedToColumns(text, width + gap);
        return QString(std::max(width - columnsOf(text), 0), QLatin1Char(' ')) + text + QString(gap, QLatin1Char(' '));
    }

    void printValueSets(const Item &item) const
    {
        for (const ValueSet &set : item.valueSets) {
            const QString label = labelOf(set.labels);
            const QString text = label.isEmpty() ? QString() : QLatin1String(": ") + label;
            line(QString(setIndentation, QLatin1Char(' ')) + printable(set.name) + text);
            printValues(set);
        }
        if (!item.missing.isEmpty())
            line(QString(setIndentation, QLatin1Char(' ')) + QLatin1String("missing: ")
                 + printable(describeRanges(item.missing)));
    }
    void printValues(const ValueSet &set) const
    {
        int codeWidth = 0;
        for (const Value &value : set.values)
            codeWidth = std::max(codeWidth, std::min(columnsOf(codesOf(value)), maxCodeWidth));
        const QString indentation(valueIndentation, QLatin1Char(' '));
        for (const Value &value : set.values) {
            const QString codes = codesOf(value);
            const QString special = describeSpecial(value.special);
            const QString label = labelOf(value.labels)
                + (special.isEmpty() ? QString() : QLatin1String("  [") + special + QLatin1Char(']'));
            if (columnsOf(codes) > codeWidth) {
                line(indentation + codes);
                line(indentation + QString(codeWidth + gap, QLatin1Char(' ')) + label);
            } else {
                line(indentation + paddedToColumns(codes, codeWidth + gap) + label);
            }
        }
    }
    // A code that consists of blanks is put in quotation marks to be visible.
    static QString codesOf(const Value &value)
    {
        const auto isBlank
            = [](const vanlayout::Range &range) { return range.to.isEmpty() && range.from.trimmed().isEmpty(); };
        if (std::none_of(value.ranges.begin(), value.ranges.end(), isBlank))
            return printable(describeRanges(value.ranges));
        QVector<vanlayout::Range> ranges = value.ranges;
        for (vanlayout::Range &range : ranges) {
            if (isBlank(range))
                range.from = QLatin1Char('"') + range.from + QLatin1Char('"');
        }
        return printable(describeRanges(ranges));
    }

    const Layout &layout;
    const LayoutTableStyle &style;
    std::FILE *out;
    Widths widths = {};
    int itemCount = 0;
    bool hasHead = false;
};

} // namespace

void printLayoutTable(const Layout &layout, const LayoutTableStyle &style, std::FILE *out)
{
    LayoutTable(layout, style, out).print();
}
