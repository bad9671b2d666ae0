#include "LayoutCsv.h"

#include "LayoutText.h"

#include <utility>
#include <vector>

using vanlayout::Item;
using vanlayout::Labels;
using vanlayout::Layout;
using vanlayout::Level;
using vanlayout::Range;
using vanlayout::Record;
using vanlayout::Value;
using vanlayout::ValueSet;

namespace
{

// The name of the record of an id item, as in the paths of problems.
QString nameOf(const Record *record)
{
    return record ? record->name : QStringLiteral("(ids)");
}

QString namesOf(const QVector<ValueSet> &sets)
{
    QStringList names;
    for (const ValueSet &set : sets)
        names.append(set.name);
    return names.join(QLatin1Char(' '));
}

QString textOf(const QVector<Range> &ranges)
{
    QStringList texts;
    for (const Range &range : ranges)
        texts.append(range.to.isEmpty() ? range.from : range.from + QLatin1Char(':') + range.to);
    return texts.join(QLatin1Char(' '));
}

} // namespace

ItemCsv::ItemCsv(std::FILE *out, FileCount files, QString labelLanguage)
    : line(out)
    , hasFile(files == FileCount::several)
    , language(std::move(labelLanguage))
{
}

void ItemCsv::writeHeader()
{
    if (std::exchange(hasHeader, true))
        return;
    if (hasFile)
        line.addPlain(QLatin1String("file"));
    line.addPlain(QLatin1String("level,record,recordType,name,label,type,start,length,occurrences,subitemOf,decimals,"
                                "decimalMark,zeroFill,capture,storage,format,measure,alignment,displayWidth,missing,"
                                "valueSets,note,aliases"));
    line.end();
}

void ItemCsv::write(const Layout &layout)
{
    writeHeader();
    forEachItem(layout, [&](const Level &level, const Record *record, const Item &item) {
        writeItem(layout, level, record, item);
    });
}

void ItemCsv::writeItem(const Layout &layout, const Level &level, const Record *record, const Item &item)
{
    if (hasFile)
        line.add(layout.file);
    line.add(level.name);
    line.add(nameOf(record));
    line.add(record ? record->recordType : QString());
    line.add(item.name);
    line.add(item.labels.in(language));
    line.add(item.type);
    line.add(item.start);
    line.add(item.length);
    line.add(item.occurrences);
    line.add(item.subitemOf);
    line.add(item.decimals);
    line.addFlag(item.decimalMark);
    line.addFlag(item.zeroFill);
    line.add(item.capture ? item.capture->type : QString());
    line.add(wordOf(item.storage));
    line.add(item.format);
    line.add(wordOf(item.measure));
    line.add(wordOf(item.alignment));
    line.add(item.displayWidth);
    line.add(textOf(item.missing));
    line.add(namesOf(item.valueSets));
    line.add(item.note);
    line.add(item.aliases.join(QLatin1Char(' ')));
    line.end();
}

CodeCsv::CodeCsv(std::FILE *out, QStringList labelLanguages)
    : line(out)
    , languages(std::move(labelLanguages))
{
    for (int i = 0; i < languages.size(); ++i)
        columns.emplace(languages.at(i).toLower(), i);
}

void CodeCsv::writeHeader()
{
    if (std::exchange(hasHeader, true))
        return;
    line.addPlain(QLatin1String("file,item,valueSet,from,to"));
    if (languages.isEmpty())
        line.addPlain(QLatin1String("label"));
    for (const QString &language : qAsConst(languages))
        line.add(QLatin1String("label_") + language);
    line.addPlain(QLatin1String("special"));
    line.end();
}

void CodeCsv::write(const Layout &layout)
{
    writeHeader();
    forEachItem(layout, [&](const Level & /*level*/, const Record * /*record*/, const Item &item) {
        for (const ValueSet &set : item.valueSets) {
            for (const Value &value : set.values)
                writeValue(layout.file, item.name, set, value);
        }
    });
}

// The text in each language; a single text if there are no languages. A missing text is an empty cell, except in the
// first language, which falls back to the primary text.
QStringList CodeCsv::textsOf(const Labels &labels) const
{
    if (languages.isEmpty())
        return { labels.primary() };
    std::vector<QString> texts(size_t(languages.size()));
    for (const vanlayout::Label &part : labels.parts) {
        const auto column = columns.find(part.language.toLower());
        if (column != columns.end() && texts[size_t(column->second)].isEmpty())
            texts[size_t(column->second)] = part.text;
    }
    if (texts.front().isEmpty())
        texts.front() = labels.primary();
    return QStringList(texts.begin(), texts.end());
}

// A value without a code has a line with its label and no code.
void CodeCsv::writeValue(const QString &file, const QString &item, const ValueSet &set, const Value &value)
{
    const QStringList texts = textsOf(value.labels);
    const QVector<Range> ranges = value.ranges.isEmpty() ? QVector<Range>(1) : value.ranges;
    for (const Range &range : ranges) {
        line.add(file);
        line.add(item);
        line.add(set.name);
        line.add(range.from);
        line.add(range.to);
        for (const QString &text : texts)
            line.add(text);
        line.add(wordOf(value.special));
        line.end();
    }
}
