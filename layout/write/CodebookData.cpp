#include "write/CodebookData_p.h"

#include "write/HtmlPage_p.h"
#include "write/LabelLanguages_p.h"
#include "write/Wording_p.h"

#include <QCryptographicHash>
#include <QHash>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <map>

namespace vanlayout
{

namespace
{

/// Writes texts, labels, codes and values with a writer of RapidJSON.
template <typename Json> class PieceWriter
{
public:
    PieceWriter(Json &target, LabelLanguages &labelLanguages)
        : json(target)
        , languages(labelLanguages)
    {
    }

    void string(const QString &value) { writeScriptString(json, value); }
    void text(const char *key, const QString &value)
    {
        if (value.isEmpty())
            return;
        json.Key(key);
        string(value);
    }
    void label(const Labels &labels)
    {
        if (labels.parts.size() == 1)
            string(labels.parts.constFirst().text);
        else
            writeParts(labels);
    }
    void codes(const QVector<Range> &ranges)
    {
        if (ranges.size() == 1 && ranges.constFirst().to.isEmpty()) {
            string(ranges.constFirst().from);
            return;
        }
        json.StartArray();
        for (const Range &range : ranges)
            writeRange(range);
        json.EndArray();
    }
    void value(const Value &entry)
    {
        json.StartArray();
        codes(entry.ranges);
        if (!entry.labels.isEmpty())
            label(entry.labels);
        else if (hasMore(entry))
            json.Null();
        if (hasMore(entry))
            writeMore(entry);
        json.EndArray();
    }

private:
    void writeParts(const Labels &labels)
    {
        const QVector<int> numbers = languages.numbersOf(labels);
        json.StartArray();
        for (int i = 0; i < numbers.size(); ++i) {
            const bool isInPlace = numbers.at(i) == i;
            if (!isInPlace) {
                json.StartArray();
                json.Int(numbers.at(i));
            }
            string(labels.parts.at(i).text);
            if (!isInPlace)
                json.EndArray();
        }
        json.EndArray();
    }
    void writeRange(const Range &range)
    {
        if (range.to.isEmpty()) {
            string(range.from);
            return;
        }
        json.StartArray();
        string(range.from);
        string(range.to);
        json.EndArray();
    }
    static bool hasMore(const Value &entry)
    {
        return entry.special != Special::None || !entry.note.isEmpty() || !entry.image.isEmpty()
            || !entry.textColor.isEmpty();
    }
    void writeMore(const Value &entry)
    {
        json.StartObject();
        text("special", describeSpecial(entry.special));
        text("note", entry.note);
        text("image", entry.image);
        text("textColor", entry.textColor);
        json.EndObject();
    }

    Json &json;
    LabelLanguages &languages;
};

/// The lists of values of a layout. Lists that share their data are compared once.
class ValueLists
{
public:
    int numberOf(const QVector<Value> &values) const { return numbersOfData.value(values.constData()); }

    template <typename Json> void write(const Layout &layout, Json &json, LabelLanguages &languages)
    {
        json.StartArray();
        forEachValueSet(layout, [&](const ValueSet &set) {
            if (!numbersOfData.contains(set.values.constData()))
                numbersOfData.insert(set.values.constData(), writeIfNew(set.values, json, languages));
        });
        json.EndArray();
    }

private:
    template <typename Visit> static void forEachValueSet(const Layout &layout, Visit visit)
    {
        const auto visitItems = [&](const QVector<Item> &items) {
            for (const Item &item : items) {
                for (const ValueSet &set : item.valueSets)
                    visit(set);
            }
        };
        for (const Level &level : layout.levels) {
            visitItems(level.ids);
            for (const Record &record : level.records)
                visitItems(record.items);
        }
    }

    // The number of the list. An equal list is found by the hash of its JSON.
    template <typename Json> int writeIfNew(const QVector<Value> &values, Json &json, LabelLanguages &languages)
    {
        buffer.Clear();
        rapidjson::Writer<rapidjson::StringBuffer> list(buffer);
        PieceWriter piece(list, languages);
        list.StartArray();
        for (const Value &value : values)
            piece.value(value);
        list.EndArray();
        const auto bytes = QByteArray::fromRawData(buffer.GetString(), int(buffer.GetSize()));
        const QByteArray hash = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
        const auto [known, isNew] = numbersOfHash.emplace(hash, int(numbersOfHash.size()));
        if (isNew)
            json.RawValue(buffer.GetString(), buffer.GetSize(), rapidjson::kArrayType);
        return known->second;
    }

    QHash<const Value *, int> numbersOfData;
    std::map<QByteArray, int> numbersOfHash;
    rapidjson::StringBuffer buffer;
};

class DataWriter
{
public:
    DataWriter(QIODevice &device, const Layout &source, const CodebookOptions &codebookOptions)
        : layout(source)
        , options(codebookOptions)
        , stream(device)
        , json(stream)
        , languages(source.languages)
        , piece(json, languages)
    {
    }

    bool write()
    {
        json.StartObject();
        text("name", layout.name);
        labels(layout.labels);
        text("note", layout.note);
        flag("isStatistical", holdsData(layout.format));
        text("weight", layout.weight);
        writeRecordType();
        json.Key("lists");
        lists.write(layout, json, languages);
        list("levels", layout.levels, [&](const Level &level) { writeLevel(level); });
        list("relations", layout.relations, [&](const Relation &relation) { writeRelation(relation); });
        if (options.hasProblems)
            list("problems", layout.problems, [&](const Problem &problem) { writeProblem(problem); });
        writeLanguages();
        json.EndObject();
        stream.Flush();
        return stream.isComplete();
    }

private:
    using Json = rapidjson::Writer<JsonStream>;

    void text(const char *key, const QString &value) { piece.text(key, value); }
    void number(const char *key, int value, int usual = 0)
    {
        if (value == usual)
            return;
        json.Key(key);
        json.Int(value);
    }
    void flag(const char *key, bool value)
    {
        if (!value)
            return;
        json.Key(key);
        json.Bool(true);
    }
    void labels(const Labels &texts)
    {
        if (texts.isEmpty())
            return;
        json.Key("label");
        piece.label(texts);
    }
    void strings(const char *key, const QStringList &texts)
    {
        list(key, texts, [&](const QString &entry) { piece.string(entry); });
    }
    template <typename List, typename Write> void list(const char *key, const List &entries, Write writeEntry)
    {
        if (entries.isEmpty())
            return;
        json.Key(key);
        json.StartArray();
        for (const auto &entry : entries)
            writeEntry(entry);
        json.EndArray();
    }
    template <typename Element> void head(const Element &element)
    {
        text("name", element.name);
        labels(element.labels);
        text("note", element.note);
        strings("aliases", element.aliases);
    }
    void occurrenceLabels(const QVector<OccurrenceLabel> &occurrences)
    {
        list("occurrenceLabels", occurrences, [&](const OccurrenceLabel &entry) {
            json.StartArray();
            json.Int(entry.occurrence);
            piece.label(entry.labels);
            json.EndArray();
        });
    }

    void writeRecordType()
    {
        if (!layout.recordType)
            return;
        json.Key("recordType");
        json.StartArray();
        json.Int(layout.recordType->start);
        json.Int(layout.recordType->length);
        json.EndArray();
    }
    void writeLevel(const Level &level)
    {
        json.StartObject();
        head(level);
        list("ids", level.ids, [&](const Item &item) { writeItem(item); });
        list("records", level.records, [&](const Record &record) { writeRecord(record); });
        json.EndObject();
    }
    void writeRecord(const Record &record)
    {
        json.StartObject();
        head(record);
        text("type", record.recordType);
        flag("isOptional", !record.required);
        number("maximum", record.maximum, 1);
        flag("isOfUnknownNumber", !statesOccurrences(layout, record));
        if (record.length)
            number("length", *record.length);
        occurrenceLabels(record.occurrenceLabels);
        list("items", record.items, [&](const Item &item) { writeItem(item); });
        json.EndObject();
    }
    void writeItem(const Item &item)
    {
        json.StartObject();
        head(item);
        if (!item.isNumeric())
            text("type", item.type);
        text("form", describeType(item));
        if (holdsData(layout.format) && item.format != describeType(item))
            writeFormat(item);
        number("start", item.start);
        number("length", item.length);
        number("occurrences", item.occurrences, 1);
        occurrenceLabels(item.occurrenceLabels);
        flag("isSubitem", item.isSubitem);
        text("subitemOf", item.subitemOf);
        number("decimals", item.decimals);
        flag("hasMark", item.decimalMark);
        flag("isZeroFilled", item.zeroFill);
        if (item.capture)
            writeCapture(*item.capture);
        writeStatistics(item);
        list("sets", item.valueSets, [&](const ValueSet &set) { writeSet(set); });
        json.EndObject();
    }
    // The format that the file states; it can be empty, because a description of the type is not a format.
    void writeFormat(const Item &item)
    {
        json.Key("format");
        piece.string(item.format);
    }
    void writeCapture(const Capture &capture)
    {
        text("capture", capture.type);
        text("dateFormat", capture.dateFormat);
    }
    void writeStatistics(const Item &item)
    {
        text("storage", wordOf(item.storage));
        text("measure", wordOf(item.measure));
        text("alignment", wordOf(item.alignment));
        number("displayWidth", item.displayWidth);
        if (item.missing.isEmpty())
            return;
        json.Key("missing");
        piece.codes(item.missing);
    }
    void writeSet(const ValueSet &set)
    {
        json.StartObject();
        head(set);
        text("link", set.link);
        number("list", lists.numberOf(set.values), -1);
        json.EndObject();
    }
    void writeRelation(const Relation &relation)
    {
        json.StartObject();
        text("name", relation.name);
        strings("aliases", relation.aliases);
        text("primary", relation.primary);
        list("links", relation.links, [&](const RelationLink &link) {
            json.StartArray();
            piece.string(link.primaryLink);
            piece.string(link.secondary);
            piece.string(link.secondaryLink);
            json.EndArray();
        });
        json.EndObject();
    }
    // Writes severity, id, line, path and message.
    void writeProblem(const Problem &problem)
    {
        json.StartArray();
        piece.string(wordOf(problem.severity));
        piece.string(problem.id);
        json.Int(problem.line);
        piece.string(problem.path);
        piece.string(problem.message);
        json.EndArray();
    }
    // Written last, when the languages of all labels are known.
    void writeLanguages()
    {
        number("language", languages.find(options.language));
        list("languages", languages.inOrder(), [&](const Language &language) {
            json.StartArray();
            piece.string(language.name);
            piece.string(language.label);
            json.EndArray();
        });
    }

    const Layout &layout;
    const CodebookOptions &options;
    JsonStream stream;
    Json json;
    LabelLanguages languages;
    PieceWriter<Json> piece;
    ValueLists lists;
};

} // namespace

bool writeCodebookData(const Layout &layout, QIODevice &device, const CodebookOptions &options)
{
    return DataWriter(device, layout, options).write();
}

} // namespace vanlayout
