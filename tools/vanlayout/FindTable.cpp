#include "FindTable.h"

#include "Columns.h"
#include "LayoutText.h"
#include "Printable.h"
#include "write/SearchCsv.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <set>

using vanlayout::SearchedValue;
using vanlayout::SearchHit;
using vanlayout::SharedSet;
using vanlayout::Value;
using vanlayout::ValueSetUse;

namespace
{

constexpr int widestLabel = 50; // a longer label or name only shifts the rest of its line
const QLatin1String gap("  ");

// A text on one line.
QString shown(const QString &text)
{
    return printable(text.simplified());
}

QString describeWhere(const SearchHit &hit)
{
    const QString where = wordOf(hit.where);
    return hit.language.isEmpty() ? where : where + QLatin1String(" [") + shown(hit.language) + QLatin1Char(']');
}

QString describeValues(const QVector<SearchedValue> &values)
{
    QStringList texts;
    for (const SearchedValue &value : values)
        texts.append(shown(vanlayout::describeSearched(value)));
    return texts.join(QLatin1String("; "));
}

// The text that was found, unless another column has it.
QString foundText(const SearchHit &hit)
{
    const bool isShown = hit.text.isEmpty() || hit.text == hit.item || hit.text == hit.label
        || hit.where == vanlayout::SearchPlace::Value;
    return isShown ? QString() : QLatin1Char('"') + shown(hit.text) + QLatin1Char('"');
}

/// The columns of a line. The last ones are not padded.
using Cells = std::array<QString, 5>;

Cells cellsOf(const SearchHit &hit)
{
    QStringList rest;
    for (const QString &text : { foundText(hit), describeValues(hit.values) }) {
        if (!text.isEmpty())
            rest.append(text);
    }
    return { shown(hit.record), shown(hit.item), describeWhere(hit), shown(hit.label), rest.join(gap) };
}

QString lineOf(const Cells &cells, const std::array<int, 5> &widths)
{
    QString line;
    for (size_t i = 0; i + 1 < cells.size(); ++i)
        line += paddedToColumns(cells.at(i), widths.at(i)) + gap;
    return line + cells.back();
}

void writeLine(QIODevice &device, QString line, int width)
{
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    device.write(printable(cutToColumns(line, width)).toUtf8() + '\n');
}

constexpr size_t labelColumn = 3;

// Narrows the column of labels so that what follows it has up to half of the columns that are left.
void narrowLabels(std::vector<Cells> &lines, std::array<int, 5> &widths, int width)
{
    constexpr int narrowest = 10;
    const int taken = std::accumulate(widths.begin(), widths.begin() + labelColumn, 0) + int(gap.size()) * 5;
    const int left = std::max(width - taken, 0);
    widths.at(labelColumn)
        = std::min(widths.at(labelColumn), std::max(narrowest, left - std::min(widths.back(), left / 2)));
    for (Cells &cells : lines) {
        if (!cells.back().isEmpty())
            cells.at(labelColumn) = cutToColumns(cells.at(labelColumn), widths.at(labelColumn));
    }
}

QString describe(const Value &value, const QString &language)
{
    const QString codes = vanlayout::describeRanges(value.ranges);
    const QString label = value.labels.in(language);
    return shown(codes.isEmpty() || label.isEmpty() ? codes + label : codes + QLatin1Char(' ') + label);
}

QString titleOf(const SharedSet &set)
{
    std::set<QString> files;
    for (const ValueSetUse &use : set.uses)
        files.insert(use.file);
    return QStringLiteral("%1  %2, %3 in %4")
        .arg(set.id, countOf(set.values.size(), QStringLiteral("value")),
             countOf(set.uses.size(), QStringLiteral("variable")),
             countOf(qint64(files.size()), QStringLiteral("file")));
}

} // namespace

FindTable::FindTable(QIODevice &device, bool areGrouped, int columns)
    : out(device)
    , isGrouped(areGrouped)
    , width(columns)
{
}

void FindTable::print(const QString &file, const QVector<SearchHit> &hits)
{
    if (hits.isEmpty())
        return;
    std::vector<Cells> lines;
    std::array<int, 5> widths = {};
    for (const SearchHit &hit : hits) {
        lines.push_back(cellsOf(hit));
        for (size_t i = 0; i < widths.size(); ++i)
            widths.at(i) = std::max(widths.at(i), std::min(columnsOf(lines.back().at(i)), widestLabel));
    }
    if (isGrouped && width > 0)
        narrowLabels(lines, widths, width);
    if (isGrouped && !isFirst)
        write(QString());
    isFirst = false;
    if (isGrouped)
        write(shown(file));
    const QString begin = isGrouped ? QString(gap) : printable(file) + gap;
    for (const Cells &cells : lines)
        write(begin + lineOf(cells, widths));
}

void FindTable::write(const QString &line)
{
    writeLine(out, line, width);
}

void printSharedSets(const QVector<SharedSet> &sets, const QString &language, QIODevice &device, int width)
{
    bool isFirst = true;
    for (const SharedSet &set : sets) {
        if (!isFirst)
            writeLine(device, QString(), width);
        isFirst = false;
        writeLine(device, titleOf(set), width);
        QStringList values;
        for (const Value &value : set.values)
            values.append(describe(value, language));
        writeLine(device, gap + values.join(QLatin1String("; ")), width);
        QString file;
        for (const ValueSetUse &use : set.uses) {
            if (use.file != file || &use == &set.uses.constFirst())
                writeLine(device, gap + shown(use.file), width);
            file = use.file;
            writeLine(device, gap + gap + shown(use.record) + gap + shown(use.item) + gap + shown(use.valueSet), width);
        }
    }
}
