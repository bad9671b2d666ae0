#include "convert/StatisticalLosses_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

template <typename Test> bool anyValue(const ValueSet &set, Test test)
{
    return std::any_of(set.values.begin(), set.values.end(), test);
}

} // namespace

void StatisticalLosses::addVariable(const Column &column)
{
    const Item &item = *column.item;
    if (!item.note.isEmpty())
        byKind.add(QStringLiteral("note"), column.name);
    if (item.capture)
        byKind.add(QStringLiteral("capture type"), column.name);
    if (!item.aliases.isEmpty())
        byKind.add(QStringLiteral("aliases"), column.name);
    addSets(item, column.name);
    addTypes(item, column.name);
}

void StatisticalLosses::addSets(const Item &item, const QString &name)
{
    if (item.valueSets.size() > 1)
        byKind.add(QStringLiteral("further value sets"), name);
    if (item.valueSets.isEmpty())
        return;
    const ValueSet *labelled = labelledSetOf(item);
    const ValueSet &set = labelled ? *labelled : item.valueSets.constFirst();
    if (!set.labels.isEmpty() && set.labels != item.labels)
        byKind.add(QStringLiteral("label of the value set"), name);
    if (!set.note.isEmpty())
        byKind.add(QStringLiteral("note of the value set"), name);
    if (!set.aliases.isEmpty())
        byKind.add(QStringLiteral("aliases of the value set"), name);
    if (!set.link.isEmpty())
        byKind.add(QStringLiteral("link of the value set"), name);
    // Only Stata and SAS have names for value labels; a reader of SPSS files makes them.
    const bool isNamed
        = layout.format == Format::Stata || layout.format == Format::Sas || layout.format == Format::SasXport;
    if (isSav && isNamed && !set.name.isEmpty())
        byKind.add(QStringLiteral("name \"%1\" of the value labels").arg(set.name), name);
    addValues(set, name);
}

void StatisticalLosses::addValues(const ValueSet &set, const QString &name)
{
    if (anyValue(set, [](const Value &value) { return !value.note.isEmpty(); }))
        byKind.add(QStringLiteral("notes of values"), name);
    if (anyValue(set, [](const Value &value) { return !value.image.isEmpty(); }))
        byKind.add(QStringLiteral("images of values"), name);
    if (anyValue(set, [](const Value &value) { return !value.textColor.isEmpty(); }))
        byKind.add(QStringLiteral("text colors of values"), name);
}

void StatisticalLosses::addTypes(const Item &item, const QString &name)
{
    if (!types.keepsFormat(item))
        byKind.add(QStringLiteral("format %1").arg(item.format), name);
    const bool isNumber = kindOf(item) != ValueKind::Text;
    if (isSav && isNumber && item.storage != Storage::None && item.storage != Storage::Double)
        byKind.add(QStringLiteral("storage type %1").arg(wordOf(item.storage)), name);
    if (!isNumber && types.changesLength(item))
        byKind.add(types.widthOfText(item) > 0
                       ? QStringLiteral("length of the text, which is now %1 bytes,").arg(types.widthOfText(item))
                       : QStringLiteral("length %1 of the text").arg(item.length),
                   name);
    if (isNumber && types.cutsNumber(item))
        byKind.add(QStringLiteral("width %1.%2").arg(item.length).arg(item.decimals), name);
    if (!isSav && item.measure != Measure::None)
        byKind.add(QStringLiteral("level of measurement"), name);
    if (!isSav && item.displayWidth > 0 && !types.showsWidth(item))
        byKind.add(QStringLiteral("display width"), name);
}

void StatisticalLosses::appendElements(Losses &losses) const
{
    const auto add = [&](const char *kind, const QString &name, const QString &note, const QStringList &aliases) {
        const QString element = QStringLiteral(" of the %1 %2").arg(QLatin1String(kind), name);
        if (!note.isEmpty())
            losses.append({ QString(), QStringLiteral("the note") + element });
        if (!aliases.isEmpty())
            losses.append({ QString(), QStringLiteral("the aliases") + element });
    };
    add("dictionary", layout.name, QString(), layout.aliases);
    for (const Level &level : layout.levels) {
        add("level", level.name, level.note, level.aliases);
        for (const Record &record : level.records) {
            add("record", record.name, record.note, record.aliases);
            if (!record.occurrenceLabels.isEmpty())
                losses.append(
                    { QString(), QStringLiteral("the labels of the occurrences of the record %1").arg(record.name) });
        }
    }
}

void StatisticalLosses::appendTo(Losses &losses)
{
    byKind.appendTo(losses);
    appendElements(losses);
    appendFile(losses);
}

void StatisticalLosses::appendFile(Losses &losses) const
{
    const auto add = [&](const QString &what) { losses.append({ QString(), what }); };
    QStringList records;
    int count = 0;
    for (const Level &level : layout.levels) {
        count += level.records.size();
        for (const Record &record : level.records)
            records.append(record.name);
    }
    records.removeAll(QString());
    const QString names = records.isEmpty() ? QString() : QLatin1Char(' ') + records.join(QLatin1String(", "));
    if (count > 1)
        add(QStringLiteral("the %1 record types%2, whose items are variables of one file")
                .arg(QString::number(count), names));
    QStringList languages;
    for (const Language &language : layout.languages)
        languages.append(language.name);
    if (languages.size() > 1)
        add(QStringLiteral("the labels in more than one of the languages ") + languages.join(QLatin1String(", ")));
    if (!layout.relations.isEmpty())
        add(QStringLiteral("the relations"));
    if (holdsData(layout.format) && !layout.name.isEmpty())
        add(QStringLiteral("the name %1 of the data set").arg(layout.name));
    if (!isSav && !layout.weight.isEmpty())
        add(QStringLiteral("the weight variable %1").arg(layout.weight));
    for (const Extra &extra : layout.extras)
        losses.append(lossOf(extra));
}

} // namespace vanlayout
