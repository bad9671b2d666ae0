#include "read/DdiRecords_p.h"

#include "read/DdiElements_p.h"

#include <QRegularExpression>

namespace vanlayout::ddi
{

namespace
{

const QLatin1String recordGroup("record-group-"); // ID of a group of variables; that of its `recGrp` is `record-`

template <typename Part> void setTexts(Part &part, const Group &group)
{
    part.name = group.name;
    part.labels = group.labels;
    part.note = group.note;
    for (const Note &note : group.notes) {
        if (note.type == QLatin1String("aliases"))
            part.aliases = aliasesOf(note.text);
    }
}

// A document of another program does not state how many records of a type a case has.
void setUnknownOccurrences(Record &record)
{
    record.required = false;
    record.maximum = 0;
}

void setOccurrences(Record &record, const QString &text)
{
    static const QRegularExpression form(QStringLiteral("\\A(required|optional), at most (-?[0-9]+) in a case\\z"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return;
    record.required = match.captured(1) == QLatin1String("required");
    record.maximum = match.captured(2).toInt();
}

void addOccurrenceLabel(Record &record, const Note &note)
{
    const int number = note.subject.toInt();
    if (record.occurrenceLabels.isEmpty() || record.occurrenceLabels.constLast().occurrence != number)
        record.occurrenceLabels.append({ number, Labels() });
    record.occurrenceLabels.last().labels.parts.append({ note.language, note.text });
}

} // namespace

Records::Records(const Content &document)
    : content(document)
{
    for (int i = 0; i < content.files.size(); ++i)
        files.try_emplace(content.files.at(i).id, i);
    recordsOfFile.resize(content.files.size());
    addStatedLevels();
    if (hasStatedLevels)
        return;
    levels.append(LevelPlace());
    gatherSegments();
    const bool isEmpty
        = content.variables.isEmpty() && content.files.size() == 1 && content.files.constFirst().groups.isEmpty();
    if (isEmpty)
        levels.clear();
    for (int i = 0; i < content.files.size() && !isEmpty; ++i)
        addRecordsOf(i);
}

void Records::addStatedLevels()
{
    KeyedMap<QString, const Group *> groups;
    for (const Group &group : content.groups) {
        if (group.type == QLatin1String("record"))
            groups.try_emplace(group.id, &group);
    }
    for (const Group &group : content.groups) {
        if (group.type != QLatin1String("level"))
            continue;
        hasStatedLevels = true;
        LevelPlace level;
        setTexts(level.level, group);
        for (const QString &id : group.variables)
            levelOfId.try_emplace(id, levels.size());
        for (const QString &id : group.groups) {
            const auto record = groups.find(id);
            if (record != groups.end())
                addStatedRecord(*record->second, levels.size());
        }
        levels.append(level);
    }
}

void Records::addStatedRecord(const Group &group, int level)
{
    RecordPlace place;
    Record &record = place.record;
    setTexts(record, group);
    setUnknownOccurrences(record);
    for (const Note &note : group.notes) {
        if (note.type == QLatin1String("occurrences"))
            setOccurrences(record, note.text);
        else if (note.type == QLatin1String("occurrence label"))
            addOccurrenceLabel(record, note);
    }
    if (const RecordGroup *stated = recordGroupOf(group)) {
        record.recordType = stated->type;
        record.length = stated->length;
    }
    place.level = level;
    for (const QString &id : group.variables)
        recordOfVariable.try_emplace(id, records.size());
    recordsOfFile[0].append(records.size());
    records.append(place);
}

// The record groups of a file are in the order of their numbers.
const RecordGroup *Records::recordGroupOf(const Group &group) const
{
    const QString digits = group.id.startsWith(recordGroup) ? group.id.mid(recordGroup.size()) : QString();
    const int number = digits.toInt(); // 0 if these are no digits
    const QVector<RecordGroup> &stated = content.files.constFirst().groups;
    return number > 0 && number <= stated.size() ? &stated.at(number - 1) : nullptr;
}

// The numbers of the lines of a case, for each file.
void Records::gatherSegments()
{
    segments.resize(content.files.size());
    KeyedSet<QString> known;
    for (const Variable &variable : content.variables) {
        Places places;
        const QVector<int> numbers = filesOf(variable, places);
        for (const Location &location : variable.locations) {
            for (const int file : numbers) {
                if (!location.segment.isEmpty() && known.insert(keyOf(file, location.segment)).second)
                    segments[file].append(location.segment);
            }
        }
    }
}

void Records::addRecordsOf(int file)
{
    const DataFile &described = content.files.at(file);
    const bool hasSeveralFiles = content.files.size() > 1;
    const QString nameOfFile = described.name.isEmpty() ? described.id : described.name;
    const bool isSegmented = described.groups.isEmpty() && segments.at(file).size() > 1;
    for (const RecordGroup &group : described.groups) {
        Record record;
        record.name = group.type.isEmpty() ? group.id : group.type;
        if (record.name.isEmpty() && hasSeveralFiles)
            record.name = nameOfFile;
        if (hasSeveralFiles || described.groups.size() > 1)
            setUnknownOccurrences(record);
        record.labels = group.labels;
        record.recordType = group.type;
        record.length = group.length;
        for (const QString &key : group.keys)
            ++keys[key];
        addRecord(record, file, QString());
    }
    for (int i = 0; isSegmented && i < segments.at(file).size(); ++i) {
        Record record;
        record.name = segments.at(file).at(i);
        record.length = described.lineLength;
        if (hasSeveralFiles)
            setUnknownOccurrences(record);
        addRecord(record, file, segments.at(file).at(i));
    }
    if (recordsOfFile.at(file).isEmpty()) {
        Record record;
        if (hasSeveralFiles) {
            record.name = nameOfFile;
            setUnknownOccurrences(record);
        }
        record.length = described.lineLength;
        addRecord(record, file, QString());
    }
}

void Records::addRecord(const Record &record, int file, const QString &segment)
{
    const int index = records.size();
    records.append({ record, 0, file, segment, {} });
    recordsOfFile[file].append(index);
    if (!record.recordType.isEmpty())
        recordsByType[keyOf(file, record.recordType)].append(index);
    if (!segment.isEmpty())
        recordsBySegment[keyOf(file, segment)].append(index);
}

QString Records::keyOf(int file, const QString &part)
{
    return QString::number(file) + QLatin1Char(' ') + part;
}

// A variable that names no file belongs to the first one.
QVector<int> Records::filesOf(const Variable &variable, Places &places) const
{
    QStringList ids = variable.files;
    for (int i = 0; i < variable.locations.size() && variable.files.isEmpty(); ++i) {
        if (!variable.locations.at(i).file.isEmpty())
            ids.append(variable.locations.at(i).file);
    }
    QVector<int> numbers;
    KeyedSet<quint64> known;
    for (const QString &id : qAsConst(ids)) {
        const auto file = files.find(id);
        places.isUnknownFile = places.isUnknownFile || file == files.end();
        if (file != files.end() && known.insert(quint64(file->second)).second)
            numbers.append(file->second);
    }
    return numbers.isEmpty() ? QVector<int>{ 0 } : numbers;
}

QVector<int> Records::recordsOf(int file, const Variable &variable, Places &places) const
{
    const QVector<int> &all = recordsOfFile.at(file);
    QVector<int> found;
    KeyedSet<QString> known;
    const auto gather = [&](const KeyedMap<QString, QVector<int>> &list, const QString &part) {
        const auto place = list.find(keyOf(file, part));
        if (place != list.end() && known.insert(part).second)
            found += place->second;
    };
    for (const QString &type : variable.recordTypes)
        gather(recordsByType, type);
    for (const Location &location : variable.locations)
        gather(recordsBySegment, location.segment);
    if (!found.isEmpty())
        return found;
    places.isUnknownType = !variable.recordTypes.isEmpty() && !recordsByType.empty();
    const bool isSegmented = !all.isEmpty() && !records.at(all.constFirst()).segment.isEmpty();
    return isSegmented ? all.mid(0, 1) : all;
}

Places Records::placesOf(const Variable &variable) const
{
    Places places;
    const auto level = levelOfId.find(variable.id);
    if (level != levelOfId.end()) {
        places.idLevel = level->second;
        return places;
    }
    const auto record = recordOfVariable.find(variable.id);
    if (record != recordOfVariable.end()) {
        places.records = { record->second };
        return places;
    }
    const QVector<int> numbers = filesOf(variable, places);
    for (const int file : numbers)
        places.records += recordsOf(file, variable, places);
    if (places.records.size() == records.size() && isKeyOfAll(variable))
        places.idLevel = 0;
    return places;
}

bool Records::isKeyOfAll(const Variable &variable) const
{
    if (content.files.size() > 1 || hasStatedLevels)
        return false;
    const auto byId = keys.find(variable.id);
    const auto byName = keys.find(variable.item.name);
    return (byId != keys.end() && byId->second == records.size())
        || (byName != keys.end() && byName->second == records.size());
}

} // namespace vanlayout::ddi
