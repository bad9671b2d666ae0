#include "read/DdiAssembly_p.h"

#include "read/CSProCommon_p.h"
#include "read/DdiRecords_p.h"
#include "read/StatFileTexts_p.h"

#include <algorithm>
#include <numeric>

namespace vanlayout::ddi
{

namespace
{

// A variable can be in any number of records, so that a small document could make a very large layout.
constexpr int maxItems = 1'000'000;
constexpr int maxSharedValues = 4'000'000;
constexpr qint64 maxSharedText = 100'000'000; // characters

qint64 sizeOf(const Labels &labels)
{
    return std::accumulate(labels.parts.begin(), labels.parts.end(), qint64(0),
                           [](qint64 size, const Label &label) { return size + label.text.size(); });
}

// The characters of the texts of an item, which each of its copies shows.
qint64 textSizeOf(const Item &item)
{
    qint64 size = item.name.size() + item.note.size() + sizeOf(item.labels);
    for (const ValueSet &set : item.valueSets) {
        size += set.note.size() + sizeOf(set.labels);
        for (const Value &value : set.values)
            size += value.note.size() + sizeOf(value.labels);
    }
    return size;
}

// Variables belong to a file, also in a document that describes none.
Content withFile(Content content)
{
    if (content.files.isEmpty())
        content.files.append(DataFile());
    return content;
}

/// Makes the layout of one document.
class Assembler
{
public:
    Assembler(Content document, Layout &target, Diagnostics &reports)
        : content(withFile(std::move(document)))
        , layout(target)
        , diagnostics(reports)
        , records(content)
        , repetitions(content.groups)
    {
    }

    void assemble()
    {
        describe();
        for (const Statement &statement : qAsConst(content.statements))
            diagnostics.addExtra({ statement.line, QString() }, statement.key, statement.value);
        setRecordType();
        gatherTypes();
        if (content.variables.isEmpty())
            diagnostics.warn("no-variables", QStringLiteral("the document describes no variables"));
        for (const Variable &variable : qAsConst(content.variables)) {
            if (!place(variable)) {
                diagnostics.fail("too-large",
                                 QStringLiteral("has more than %1 variables, or %2 values or %3 characters that "
                                                "records share, counting those of each record")
                                     .arg(maxItems)
                                     .arg(maxSharedValues)
                                     .arg(maxSharedText));
                return;
            }
        }
        finishLevels();
        keepGroups();
        layout.relations = content.relations;
        layout.weight = content.weight;
        LanguageList(layout).gather();
    }

private:
    /// Lists the languages of all labels, in the order of the layout.
    class LanguageList
    {
    public:
        explicit LanguageList(Layout &target)
            : result(target)
        {
        }

        void gather()
        {
            add(result.labels);
            for (const Level &level : qAsConst(result.levels)) {
                add(level.labels);
                addItems(level.ids);
                for (const Record &record : level.records) {
                    add(record.labels);
                    addItems(record.items);
                }
            }
        }

    private:
        void addItems(const QVector<Item> &list)
        {
            for (const Item &item : list) {
                add(item.labels);
                for (const ValueSet &set : item.valueSets) {
                    add(set.labels);
                    for (const Value &value : set.values)
                        add(value.labels);
                }
            }
        }
        void add(const Labels &labels)
        {
            for (const Label &label : labels.parts) {
                if (!label.language.isEmpty() && label.language != last && known.insert(label.language).second)
                    result.languages.append({ label.language, QString() });
                last = label.language;
            }
        }

        Layout &result;
        QString last;
        KeyedSet<QString> known;
    };

    void describe()
    {
        const DataFile &file = content.files.constFirst();
        const bool hasOneFile = content.files.size() == 1;
        layout.format = Format::Ddi;
        layout.formatVersion = content.version;
        layout.note = content.note;
        layout.aliases = content.aliases;
        if (hasOneFile) {
            layout.name = file.name;
            layout.rows = file.rows;
            layout.created = file.date;
        }
        for (int i = 0; i < content.files.size() && !hasOneFile; ++i)
            keepFile(content.files.at(i));
        const QVector<Label> &titles = content.titles.parts;
        const bool isOnlyName = titles.size() == 1 && titles.constFirst().text == layout.name;
        if (!isOnlyName)
            layout.labels = content.titles;
    }

    // The rows and dates of several files.
    void keepFile(const DataFile &file)
    {
        const Place place = { file.line, QString() };
        if (file.rows)
            diagnostics.addExtra(place, QStringLiteral("fileDscr/fileTxt/dimensns/caseQnty"),
                                 QString::number(*file.rows));
        if (file.date)
            diagnostics.addExtra(place, QStringLiteral("fileDscr/fileTxt/verStmt/version@date"), *file.date);
    }

    // The columns of the record type are stated, or those of the variable that a record group names.
    void setRecordType()
    {
        for (const DataFile &file : qAsConst(content.files)) {
            for (const RecordGroup &group : file.groups) {
                if (group.type.isEmpty() && group.typeStart == 0)
                    continue;
                const RecordTypeColumns columns = columnsOf(group);
                if (columns.start == 0)
                    continue;
                if (!layout.recordType)
                    layout.recordType = columns;
                else if (*layout.recordType != columns)
                    diagnostics.warn("record-type-columns-differ",
                                     QStringLiteral("the columns of the record type differ from those of an earlier "
                                                    "record group, which are used"),
                                     { group.line, QString() });
            }
        }
    }

    RecordTypeColumns columnsOf(const RecordGroup &group)
    {
        if (group.typeStart > 0)
            return { group.typeStart, group.typeLength > 0 ? group.typeLength : std::max(int(group.type.size()), 1) };
        const Variable *variable = group.typeVariable.isEmpty() ? nullptr : variableCalled(group.typeVariable);
        if (!variable || variable->locations.isEmpty())
            return {};
        return { variable->locations.constFirst().start, variable->locations.constFirst().length };
    }

    // The variable with an ID or a name; null if there is none.
    const Variable *variableCalled(const QString &idOrName)
    {
        if (variables.empty()) {
            for (const Variable &variable : content.variables) {
                variables.try_emplace(variable.id, &variable);
                variables.try_emplace(variable.item.name, &variable);
            }
        }
        const auto found = variables.find(idOrName);
        return found != variables.end() ? found->second : nullptr;
    }

    void gatherTypes()
    {
        for (const DataFile &file : content.files) {
            for (const RecordGroup &group : file.groups) {
                if (!group.typeVariable.isEmpty())
                    typeVariables.insert(group.typeVariable);
            }
        }
        for (int i = 0; i < records.records.size(); ++i)
            recordsOfType[records.records.at(i).record.recordType].append(i);
    }

    // Whether a variable is the record type itself: a record group names it, and its columns are those of the type.
    bool isRecordType(const Variable &variable) const
    {
        if (!layout.recordType || variable.locations.isEmpty())
            return false;
        const Location &location = variable.locations.constFirst();
        return location.start == layout.recordType->start && location.length == layout.recordType->length
            && (typeVariables.find(variable.id) != typeVariables.end()
                || typeVariables.find(variable.item.name) != typeVariables.end());
    }

    // The categories of the record type are the records.
    void labelRecords(const Variable &variable)
    {
        if (records.areStated() || variable.item.valueSets.isEmpty())
            return;
        for (const Value &value : variable.item.valueSets.constFirst().values) {
            const auto found
                = value.ranges.isEmpty() ? recordsOfType.end() : recordsOfType.find(value.ranges.constFirst().from);
            if (found == recordsOfType.end())
                continue;
            for (const int index : qAsConst(found->second)) {
                Record &record = records.records[index].record;
                if (record.labels.isEmpty())
                    record.labels = value.labels;
            }
            recordsOfType.erase(found);
        }
    }

    // Returns false if the layout became too large.
    bool place(const Variable &variable)
    {
        const Places places = records.placesOf(variable);
        if (places.idLevel < 0 && isRecordType(variable)) {
            labelRecords(variable);
            return true;
        }
        const bool isId = places.idLevel >= 0;
        if (isId)
            records.levels[places.idLevel].ids.append(
                { itemFor(variable, locationFor(variable, QString(), QString())), variable.id });
        for (int i = 0; i < places.records.size() && !isId; ++i) {
            RecordPlace &record = records.records[places.records.at(i)];
            record.items.append({ itemFor(variable, locationIn(variable, record)), variable.id });
        }
        report(variable, places);
        if (variable.locations.size() > 1)
            keepOtherLocations(variable, places, pathOf(variable, places));
        return isWithinBounds(variable.item, isId ? 1 : places.records.size());
    }

    bool isWithinBounds(const Item &item, int copies)
    {
        itemCount += copies;
        if (copies > 1) {
            for (const ValueSet &set : item.valueSets)
                sharedValues += qint64(set.values.size()) * (copies - 1);
            sharedText += textSizeOf(item) * (copies - 1);
        }
        return itemCount <= maxItems && sharedValues <= maxSharedValues && sharedText <= maxSharedText;
    }

    Location locationIn(const Variable &variable, const RecordPlace &record) const
    {
        return locationFor(variable, content.files.at(record.file).id, record.segment);
    }

    static Location locationFor(const Variable &variable, const QString &file, const QString &segment)
    {
        const auto isFor = [&](const Location &location) {
            return (location.file.isEmpty() || location.file == file)
                && (segment.isEmpty() || location.segment == segment);
        };
        for (const Location &location : variable.locations) {
            if (isFor(location))
                return location;
        }
        return variable.locations.value(0);
    }

    static Item itemFor(const Variable &variable, const Location &location)
    {
        Item item = variable.item;
        item.start = location.start;
        item.length = location.length;
        if (item.length == 0 && item.start == 0)
            item.length = stat::widthInFormat(item.format);
        return item;
    }

    QString pathOf(const Variable &variable, const Places &places) const
    {
        const bool isId = places.idLevel >= 0;
        const RecordPlace *record
            = isId || places.records.isEmpty() ? nullptr : &records.records.at(places.records.constFirst());
        const int level = isId ? places.idLevel : record ? record->level : 0;
        const QString parent = cspro::childPath(cspro::nameInPath(records.levels.at(level).level.name),
                                                record ? record->record.name : cspro::idsName());
        return cspro::childPath(parent, variable.item.name);
    }

    // Further columns, which no record has for the variable, are statements.
    void keepOtherLocations(const Variable &variable, const Places &places, const QString &path)
    {
        QVector<Location> known;
        if (places.idLevel >= 0)
            known.append(locationFor(variable, QString(), QString()));
        for (const int index : places.records)
            known.append(locationIn(variable, records.records.at(index)));
        for (const Location &location : variable.locations) {
            const bool isKnown = std::any_of(known.begin(), known.end(), [&](const Location &other) {
                return other.start == location.start && other.length == location.length;
            });
            if (!isKnown && location.start > 0)
                diagnostics.addExtra({ variable.line, path }, QStringLiteral("location"),
                                     QStringLiteral("StartPos %1, width %2").arg(location.start).arg(location.length));
        }
    }

    void report(const Variable &variable, const Places &places)
    {
        const bool isPlain = variable.statements.isEmpty() && variable.findings.isEmpty();
        if (isPlain && !places.isUnknownFile && !places.isUnknownType)
            return;
        const QString path = pathOf(variable, places);
        for (const Statement &statement : variable.statements) {
            const bool isOfValue = statement.category > 0 && !variable.item.valueSets.isEmpty();
            const QString set = isOfValue ? cspro::childPath(path, variable.item.valueSets.constFirst().name) : path;
            diagnostics.addExtra({ statement.line, isOfValue ? cspro::valuePath(set, statement.category) : path },
                                 statement.key, statement.value);
        }
        for (const Finding &finding : variable.findings)
            diagnostics.warn(finding.id, finding.message, { finding.line, path });
        if (places.isUnknownFile)
            diagnostics.warn("unknown-file",
                             QStringLiteral("the variable names a file that the document does not have"),
                             { variable.line, path });
        if (places.isUnknownType)
            diagnostics.warn("unknown-record-type",
                             QStringLiteral("the variable names no record type of the document; it is in all records"),
                             { variable.line, path });
    }

    void finishLevels()
    {
        for (LevelPlace &place : records.levels) {
            place.level.ids = repetitions.join(place.ids);
            place.ids.clear();
            layout.levels.append(place.level);
        }
        for (RecordPlace &place : records.records) {
            place.record.items = repetitions.join(place.items);
            place.items.clear();
            layout.levels[place.level].records.append(place.record);
        }
    }

    // Groups that are not levels, records or items.
    void keepGroups()
    {
        for (const Group &group : qAsConst(content.groups)) {
            const bool isPart = records.areStated()
                && (group.type == QLatin1String("level") || group.type == QLatin1String("record")
                    || group.type == QLatin1String("subitems"));
            if (!isPart && group.type != QLatin1String("repetition"))
                keepGroup(group);
        }
        const QVector<const Group *> unused = repetitions.unused();
        for (const Group *group : unused)
            keepGroup(*group);
    }

    void keepGroup(const Group &group)
    {
        const Place place = { group.line, QString() };
        const auto keepText = [&](const char *key, const QString &text) {
            if (!text.isEmpty())
                diagnostics.addExtra(place, QLatin1String("varGrp") + QLatin1String(key), text);
        };
        keepText("@type", group.type);
        keepText("@name", group.name);
        keepText("@var", group.variables.join(QLatin1Char(' ')));
        keepText("@varGrp", group.groups.join(QLatin1Char(' ')));
        for (const Label &label : group.labels.parts)
            keepText("/labl", label.text);
        keepText("/txt", group.note);
        for (const Note &note : group.notes)
            keepText("/notes", note.text);
    }

    const Content content;
    Layout &layout;
    Diagnostics &diagnostics;
    Records records;
    Repetitions repetitions;
    KeyedMap<QString, const Variable *> variables; ///< by ID and name
    KeyedSet<QString> typeVariables;               ///< IDs or names that record groups have for the type
    KeyedMap<QString, QVector<int>> recordsOfType; ///< records that no category has labelled yet
    qint64 itemCount = 0;
    qint64 sharedValues = 0;
    qint64 sharedText = 0;
};

} // namespace

void assemble(Content content, Layout &layout, Diagnostics &diagnostics)
{
    Assembler(std::move(content), layout, diagnostics).assemble();
}

} // namespace vanlayout::ddi
