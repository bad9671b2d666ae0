#include "LayoutCsv.h"

#include "LayoutText.h"

#include <algorithm>
#include <utility>

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

// The text in a language alone: a label that has none there is an empty cell, not the one of another language.
QString textIn(const Labels &labels, const QString &language)
{
    const auto found = std::find_if(labels.parts.begin(), labels.parts.end(), [&](const vanlayout::Label &part) {
        return part.language.compare(language, Qt::CaseInsensitive) == 0;
    });
    return found != labels.parts.end() ? found->text : QString();
}

QString textOf(const QVector<Range> &ranges)
{
    QStringList texts;
    for (const Range &range : ranges)
        texts.append(range.to.isEmpty() ? range.from : range.from + QLatin1Char(':') + range.to);
    return texts.join(QLatin1Char(' '));
}

} // namespace

ItemCsv::ItemCsv(std::FILE *out, bool withFile, QString labelLanguage)
    : line(out)
    , hasFile(withFile)
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

// A value without a code keeps its label: its line has no code.
void CodeCsv::writeValue(const QString &file, const QString &item, const ValueSet &set, const Value &value)
{
    if (value.ranges.isEmpty())
        writeCode(file, item, set, value, Range());
    for (const Range &range : value.ranges)
        writeCode(file, item, set, value, range);
}

void CodeCsv::writeCode(const QString &file, const QString &item, const ValueSet &set, const Value &value,
                        const Range &range)
{
    line.add(file);
    line.add(item);
    line.add(set.name);
    line.add(range.from);
    line.add(range.to);
    if (languages.isEmpty())
        line.add(value.labels.primary());
    for (int i = 0; i < languages.size(); ++i)
        line.add(i == 0 ? value.labels.in(languages.at(i)) : textIn(value.labels, languages.at(i)));
    line.add(wordOf(value.special));
    line.end();
}
