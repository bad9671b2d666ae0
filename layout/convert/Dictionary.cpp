#include "convert/Dictionary.h"

#include "convert/DictionaryIds_p.h"
#include "convert/DictionaryItems_p.h"
#include "convert/DictionaryLanguages_p.h"
#include "util/Numbers_p.h"

#include <QFileInfo>

#include <algorithm>
#include <vector>

namespace vanlayout
{

namespace
{

constexpr int maxColumn = 32000; // of a record of CSPro
constexpr int maxNote = 32000;   // characters
constexpr int maxRecords = 9999; // of a type in a case

QVector<Item> variablesOf(const Layout &layout)
{
    QVector<Item> variables;
    for (const Level &level : layout.levels) {
        variables += level.ids;
        for (const Record &record : level.records)
            variables += record.items;
    }
    return variables;
}

int recordsOf(const Layout &layout)
{
    int count = 0;
    for (const Level &level : layout.levels)
        count += level.records.size();
    return count;
}

int widthOf(const QVector<Item> &items)
{
    int width = 0;
    for (const Item &item : items)
        width = numbers::clamped(qint64(width) + item.length);
    return width;
}

bool describesLines(const Layout &layout)
{
    const QVector<Item> variables = variablesOf(layout);
    return !holdsData(layout.format) && std::all_of(variables.begin(), variables.end(), [](const Item &item) {
        return item.start > 0 && item.length > 0;
    });
}

/// Makes one dictionary.
class DictionaryMaker
{
public:
    explicit DictionaryMaker(const Layout &layout)
        : original(layout)
        , hasLines(describesLines(layout))
        , items(hasLines ? DictionaryItems::Columns::Kept : DictionaryItems::Columns::Made, layout.format, names,
                made.losses)
    {
    }

    MadeDictionary make(const QStringList &ids)
    {
        if (hasLines)
            makeFromLines(ids);
        else
            makeFromVariables(ids);
        if (!made.problem.isEmpty())
            return { Layout(), {}, made.problem };
        nameLanguages(made.layout);
        loseRest();
        return made;
    }

private:
    void makeFromVariables(const QStringList &ids)
    {
        const QVector<Item> variables = variablesOf(original);
        const DictionaryIds found = findIds(variables, ids);
        made.problem = found.problem;
        if (!made.problem.isEmpty())
            return;
        // The variables come first, so that no made name takes one of theirs.
        const QStringList given = namesOf(variables);
        makeFile();
        made.layout.relativePositions = true;
        made.layout.decimalMark = true;
        made.layout.levels = { levelOf(Level()) };
        Level &level = made.layout.levels.first();
        std::vector<bool> isId(size_t(variables.size()), false);
        for (const int place : found.places) {
            isId[size_t(place)] = true;
            level.ids.append(items.make(variables.at(place), given.at(place), DictionaryItems::Use::Id));
        }
        Record record = recordOf(Record());
        for (int place = 0; place < variables.size(); ++place) {
            if (!isId[size_t(place)])
                record.items.append(items.make(variables.at(place), given.at(place), DictionaryItems::Use::Item));
        }
        addRecords(level, record);
        if (recordsOf(original) > 1)
            lose(QStringLiteral("the %1 record types, whose items are in one record").arg(recordsOf(original)));
    }

    // Records, columns and ids stay as they are.
    void makeFromLines(const QStringList &ids)
    {
        Layout source = original;
        made.problem = moveIds(source, ids);
        const bool hasMarks = source.recordType && source.recordType->length > 0;
        if (made.problem.isEmpty() && recordsOf(source) > 1 && !hasMarks)
            made.problem = QStringLiteral("has %1 records without a record type, which a dictionary must have")
                               .arg(recordsOf(source));
        if (!made.problem.isEmpty())
            return;
        makeFile();
        made.layout.recordType = source.recordType;
        made.layout.relativePositions = false;
        made.layout.relations = source.relations;
        made.layout.aliases = source.aliases;
        for (const Level &level : qAsConst(source.levels))
            made.layout.levels.append(levelOf(level));
        for (int i = 0; i < source.levels.size(); ++i)
            addLines(made.layout.levels[i], source.levels.at(i));
    }

    void addLines(Level &level, const Level &source)
    {
        level.ids = itemsOf(source.ids, DictionaryItems::Use::Id);
        for (const Record &sourceRecord : source.records) {
            Record record = recordOf(sourceRecord);
            record.items = itemsOf(sourceRecord.items, DictionaryItems::Use::Item);
            level.records.append(record);
        }
    }

    QVector<Item> itemsOf(const QVector<Item> &variables, DictionaryItems::Use use)
    {
        QVector<Item> list;
        QString parent;
        const QStringList given = namesOf(variables);
        for (int i = 0; i < variables.size(); ++i) {
            Item item = items.make(variables.at(i), given.at(i), use);
            if (item.isSubitem && !item.subitemOf.isEmpty())
                item.subitemOf = parent;
            else if (!item.isSubitem)
                parent = item.name;
            list.append(item);
        }
        return list;
    }

    QStringList namesOf(const QVector<Item> &variables)
    {
        QStringList list;
        for (const Item &variable : variables)
            list.append(names.give(variable.name, QStringLiteral("VARIABLE")));
        return list;
    }

    void makeFile()
    {
        Layout &layout = made.layout;
        stem = stemOfNames();
        layout.file = original.file;
        layout.format = Format::CSProJson;
        layout.formatVersion = QStringLiteral("8.0");
        layout.encoding = QStringLiteral("utf-8");
        const QString dictionary = DictionaryNames::folded(original.name);
        layout.name = names.give(hasLines && dictionary == original.name ? dictionary : stem + QLatin1String("_DICT"),
                                 QStringLiteral("SURVEY_DICT"));
        layout.labels = original.labels.isEmpty() ? Labels{ { { QString(), stem } } } : original.labels;
        layout.note = original.note.left(maxNote);
        if (layout.note != original.note)
            lose(QStringLiteral("the note of the file after its first %1 characters").arg(maxNote));
        layout.languages = original.languages;
        layout.readOptimization = true;
    }

    QString stemOfNames() const
    {
        const QString name = original.name.isEmpty() ? QFileInfo(original.file).completeBaseName() : original.name;
        const QString folded = DictionaryNames::folded(name);
        return folded.isEmpty() ? QStringLiteral("SURVEY") : folded;
    }

    Level levelOf(const Level &source)
    {
        Level level = source;
        level.ids.clear();
        level.records.clear();
        level.name = nameOf(source.name, "_LEVEL");
        if (level.labels.isEmpty())
            level.labels = made.layout.labels;
        return level;
    }

    Record recordOf(const Record &source)
    {
        Record record = source;
        record.items.clear();
        record.name = nameOf(source.name, "_REC");
        if (record.labels.isEmpty())
            record.labels = made.layout.labels;
        if (!statesOccurrences(original, source))
            record.maximum = maxRecords;
        return record;
    }

    QString nameOf(const QString &name, const char *suffix)
    {
        QString given = names.give(name.isEmpty() ? stem + QLatin1String(suffix) : name, stem);
        if (!name.isEmpty() && given != name)
            lose(QStringLiteral("the name %1, which is now %2").arg(name, given));
        return given;
    }

    // Adds a record, or several records with types if its items do not fit in one.
    void addRecords(Level &level, const Record &whole)
    {
        const int widthOfIds = widthOf(level.ids);
        level.records = partsOf(whole, maxColumn - widthOfIds - typeLength);
        const int count = level.records.size();
        if (count > 1) {
            made.layout.recordType = RecordTypeColumns{ 1, typeLength };
            lose(QStringLiteral("one record of more than %1 columns; there are %2 records").arg(maxColumn).arg(count));
        }
        for (int i = 0; count > 1 && i < count; ++i)
            level.records[i].recordType = QString::number(i + 1).rightJustified(typeLength, QLatin1Char('0'));
        int next = count > 1 ? typeLength + 1 : 1;
        placeFrom(next, level.ids);
        for (Record &record : level.records) {
            int start = next + widthOfIds;
            placeFrom(start, record.items);
        }
        if (widthOfIds + typeLength >= maxColumn)
            made.problem = QStringLiteral("has id items of %1 columns, but a record of CSPro has at most %2")
                               .arg(widthOfIds)
                               .arg(maxColumn);
    }

    QVector<Record> partsOf(const Record &whole, int room)
    {
        Record part = whole;
        part.items.clear();
        QVector<Record> parts = { part };
        int width = 0;
        for (const Item &item : whole.items) {
            width += item.length;
            if (width > room && !parts.constLast().items.isEmpty()) {
                part.name = names.give(whole.name, QString());
                parts.append(part);
                width = item.length;
            }
            parts.last().items.append(item);
        }
        return parts;
    }

    static void placeFrom(int next, QVector<Item> &list)
    {
        for (Item &item : list) {
            item.start = next;
            next = numbers::clamped(qint64(next) + item.length);
        }
    }

    void lose(const QString &what) { made.losses.append({ QString(), what }); }

    void loseRest()
    {
        items.appendLosses();
        if (!original.weight.isEmpty())
            lose(QStringLiteral("the weight variable %1").arg(original.weight));
        for (const Extra &extra : original.extras)
            made.losses.append(lossOf(extra));
    }

    static constexpr int typeLength = 3; // characters of a record type

    const Layout &original;
    bool hasLines;
    MadeDictionary made;
    DictionaryNames names;
    DictionaryItems items;
    QString stem; // of made names
};

} // namespace

MadeDictionary makeDictionary(const Layout &layout, const QStringList &ids)
{
    return DictionaryMaker(layout).make(ids);
}

} // namespace vanlayout
