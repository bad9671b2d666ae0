#include "DdiGroups_p.h"

#include "DdiElements_p.h"

namespace vanlayout
{

namespace
{

QString recordGroupId(int record)
{
    return QLatin1String("record-group-") + QString::number(record + 1);
}

QString occurrencesText(const Record &record)
{
    return QStringLiteral("%1, at most %2 in a case")
        .arg(record.required ? QLatin1String("required") : QLatin1String("optional"))
        .arg(record.maximum);
}

class DdiGroupsWriter
{
public:
    DdiGroupsWriter(XmlStream &stream, const Layout &source, const DdiVariables &list)
        : xml(stream)
        , layout(source)
        , variables(list)
    {
    }

    void writeLevel(int number)
    {
        const DdiLevel &entry = variables.levels.at(number);
        QStringList records;
        for (int i = entry.records.first; i < entry.records.end; ++i)
            records.append(recordGroupId(i));
        begin(QLatin1String("level-") + QString::number(number + 1), QStringLiteral("level"));
        xml.attributeIfAny(QStringLiteral("var"), idsIn(entry.ids));
        xml.attributeIfAny(QStringLiteral("varGrp"), records.join(QLatin1Char(' ')));
        writeTexts(*entry.level, QStringLiteral("level"));
        writeDdiAliases(xml, entry.level->aliases);
        xml.end();
    }

    void writeRecord(int number)
    {
        const DdiRecord &entry = variables.records.at(number);
        begin(recordGroupId(number), QStringLiteral("record"));
        xml.attributeIfAny(QStringLiteral("var"), idsIn(entry.variables));
        writeTexts(*entry.record, QStringLiteral("record"));
        if (statesOccurrences(layout, *entry.record))
            writeDdiNote(xml, QStringLiteral("occurrences"), occurrencesText(*entry.record));
        for (const OccurrenceLabel &label : entry.record->occurrenceLabels)
            writeOccurrenceLabel(label);
        writeDdiAliases(xml, entry.record->aliases);
        xml.end();
    }

    // Writes the groups of repeating items, and of items with subitems for each occurrence.
    void writeItems(const DdiSpan &span)
    {
        for (int first = span.first; first < span.end;) {
            int end = first + 1;
            while (end < span.end && isInGroupOf(first, end))
                ++end;
            writeItem({ first, end });
            first = end;
        }
    }

private:
    const Column &column(int index) const { return variables.all.at(index).column; }

    bool isInGroupOf(int first, int index) const
    {
        return column(index).item == column(first).item || column(index).parent == column(first).item;
    }

    void writeItem(const DdiSpan &group)
    {
        if (group.size() < 2)
            return;
        QVector<const Item *> items;
        KeyedMap<quint64, QStringList> occurrences;
        for (int i = group.first; i < group.end; ++i) {
            const Item *item = column(i).item;
            QStringList &ids = occurrences[quint64(item - column(group.first).item)];
            if (ids.isEmpty())
                items.append(item);
            ids.append(variables.all.at(i).id);
        }
        for (const Item *item : qAsConst(items))
            writeOccurrences(*item, occurrences[quint64(item - column(group.first).item)]);
        writeSubitems(group);
    }

    void writeOccurrences(const Item &item, const QStringList &ids)
    {
        if (ids.size() < 2)
            return;
        begin(nextId(), QStringLiteral("repetition"));
        xml.attribute(QStringLiteral("var"), ids.join(QLatin1Char(' ')));
        xml.attributeIfAny(QStringLiteral("name"), item.name);
        writeDdiLabels(xml, item.labels, QStringLiteral("variable group"));
        xml.end();
    }

    // Each occurrence of an item is followed by its subitems.
    void writeSubitems(const DdiSpan &group)
    {
        const Item *head = column(group.first).item;
        for (int first = group.first; first < group.end;) {
            int end = first + 1;
            while (end < group.end && column(end).item != head)
                ++end;
            if (end > first + 1) {
                begin(nextId(), QStringLiteral("subitems"));
                xml.attribute(QStringLiteral("var"), idsIn({ first, end }));
                xml.attributeIfAny(QStringLiteral("name"), column(first).name);
                writeDdiLabels(xml, labelsOf(column(first)), QStringLiteral("variable group"));
                xml.end();
            }
            first = end;
        }
    }

    // The standard has types for records and repetitions; levels and subitems are of the type "other".
    void begin(const QString &id, const QString &type)
    {
        const bool isListed = type == QLatin1String("record") || type == QLatin1String("repetition");
        xml.begin(QStringLiteral("varGrp"));
        xml.attribute(QStringLiteral("ID"), id);
        xml.attribute(QStringLiteral("type"), isListed ? type : QStringLiteral("other"));
        if (!isListed)
            xml.attribute(QStringLiteral("otherType"), type);
    }

    template <typename Part> void writeTexts(const Part &part, const QString &level)
    {
        xml.attributeIfAny(QStringLiteral("name"), part.name);
        writeDdiLabels(xml, part.labels, level);
        xml.textElementIfAny(QStringLiteral("txt"), part.note);
    }

    void writeOccurrenceLabel(const OccurrenceLabel &occurrence)
    {
        for (const Label &label : occurrence.labels.parts) {
            if (label.text.isEmpty())
                continue;
            xml.begin(QStringLiteral("notes"));
            xml.language(label.language);
            xml.attribute(QStringLiteral("type"), QStringLiteral("occurrence label"));
            xml.attribute(QStringLiteral("subject"), occurrence.occurrence);
            xml.content(label.text);
            xml.end();
        }
    }

    QString idsIn(const DdiSpan &span) const
    {
        QStringList ids;
        for (int i = span.first; i < span.end; ++i)
            ids.append(variables.all.at(i).id);
        return ids.join(QLatin1Char(' '));
    }

    QString nextId() { return QLatin1String("group-") + QString::number(++count); }

    XmlStream &xml;
    const Layout &layout;
    const DdiVariables &variables;
    int count = 0;
};

} // namespace

void writeDdiGroups(XmlStream &xml, const Layout &layout, const DdiVariables &variables)
{
    if (isStatistical(layout))
        return;
    DdiGroupsWriter writer(xml, layout, variables);
    for (int i = 0; i < variables.levels.size(); ++i)
        writer.writeLevel(i);
    for (int i = 0; i < variables.records.size(); ++i)
        writer.writeRecord(i);
    for (const DdiLevel &level : variables.levels)
        writer.writeItems(level.ids);
    for (const DdiRecord &record : variables.records)
        writer.writeItems(record.variables);
}

} // namespace vanlayout
