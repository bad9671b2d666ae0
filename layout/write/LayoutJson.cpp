#include "write/LayoutJson.h"

#include "write/JsonMembers_p.h"

namespace vanlayout
{

namespace
{

constexpr int layoutVersion = 1;

template <typename Writer> class LayoutWriter : private JsonMembers<Writer>
{
    using Base = JsonMembers<Writer>;
    using Base::boolean;
    using Base::integer;
    using Base::json;
    using Base::objects;
    using Base::optionalText;
    using Base::text;
    using Base::texts;

public:
    explicit LayoutWriter(Writer &jsonWriter)
        : Base(jsonWriter)
    {
    }

    void writeLayout(const Layout &layout)
    {
        json.StartObject();
        integer("layoutVersion", layoutVersion);
        text("file", layout.file);
        text("format", wordOf(layout.format));
        optionalText("container", layout.container);
        optionalText("formatVersion", layout.formatVersion);
        optionalText("encoding", layout.encoding);
        optionalText("name", layout.name);
        writeHead(layout);
        list("languages", layout.languages, [&](const Language &language) {
            text("name", language.name);
            text("label", language.label);
        });
        writeSettings(layout);
        objects("levels", layout.levels, [&](const Level &level) { writeLevel(level); });
        list("relations", layout.relations, [&](const Relation &relation) { writeRelation(relation); });
        list("extras", layout.extras, [&](const Extra &extra) { writeExtra(extra); });
        list("problems", layout.problems, [&](const Problem &problem) { writeProblem(problem); });
        json.EndObject();
    }

    void writeError(const Layout &layout)
    {
        json.StartObject();
        text("file", layout.file);
        if (const Problem *error = layout.error()) {
            json.Key("error");
            json.StartObject();
            text("id", error->id);
            text("message", error->message);
            integerUnless("line", error->line, 0);
            json.EndObject();
        }
        json.EndObject();
    }

private:
    // Members that are omitted if they have their default or are absent.
    void optionalText(const char *key, const std::optional<QString> &value)
    {
        if (value)
            text(key, *value);
    }
    void integerUnless(const char *key, int value, int usual)
    {
        if (value != usual)
            integer(key, value);
    }
    template <typename Integer> void optionalInteger(const char *key, const std::optional<Integer> &value)
    {
        if (value)
            integer(key, *value);
    }
    void booleanUnless(const char *key, bool value, bool usual)
    {
        if (value != usual)
            boolean(key, value);
    }
    void optionalBoolean(const char *key, const std::optional<bool> &value)
    {
        if (value)
            boolean(key, *value);
    }
    template <typename List, typename Members> void list(const char *key, const List &entries, Members members)
    {
        if (!entries.isEmpty())
            objects(key, entries, members);
    }

    void writeAllLabels(const Labels &labels)
    {
        objects("labels", labels.parts, [&](const Label &part) {
            optionalText("language", part.language);
            text("text", part.text);
        });
    }
    void writeLabels(const Labels &labels)
    {
        if (!labels.isEmpty())
            writeAllLabels(labels);
    }
    void writeAliases(const QStringList &aliases)
    {
        if (!aliases.isEmpty())
            texts("aliases", aliases);
    }
    // Writes labels, note and aliases of a named element.
    template <typename Element> void writeHead(const Element &element)
    {
        writeLabels(element.labels);
        optionalText("note", element.note);
        writeAliases(element.aliases);
    }
    void writeOccurrenceLabels(const QVector<OccurrenceLabel> &labels)
    {
        list("occurrenceLabels", labels, [&](const OccurrenceLabel &label) {
            integer("occurrence", label.occurrence);
            writeAllLabels(label.labels);
        });
    }
    void writeRange(const Range &range)
    {
        text("from", range.from);
        optionalText("to", range.to);
    }

    void writeSettings(const Layout &layout)
    {
        if (layout.recordType) {
            json.Key("recordType");
            json.StartObject();
            integer("start", layout.recordType->start);
            integer("length", layout.recordType->length);
            json.EndObject();
        }
        optionalBoolean("relativePositions", layout.relativePositions);
        booleanUnless("decimalMark", layout.decimalMark, false);
        booleanUnless("zeroFill", layout.zeroFill, false);
        booleanUnless("editable", layout.editable, true);
        if (layout.security)
            writeSecurity(*layout.security);
        optionalBoolean("readOptimization", layout.readOptimization);
        optionalBoolean("enableBinaryItems", layout.enableBinaryItems);
        optionalText("valueSetImages", layout.valueSetImages);
        optionalInteger("rows", layout.rows);
        optionalText("created", layout.created);
        optionalText("modified", layout.modified);
        optionalText("weight", layout.weight);
    }
    void writeSecurity(const Security &security)
    {
        json.Key("security");
        json.StartObject();
        optionalText("settings", security.settings);
        optionalBoolean("allowDataViewerModifications", security.allowDataViewerModifications);
        optionalBoolean("allowExport", security.allowExport);
        optionalInteger("cachedPasswordMinutes", security.cachedPasswordMinutes);
        json.EndObject();
    }
    void writeLevel(const Level &level)
    {
        text("name", level.name);
        writeHead(level);
        objects("ids", level.ids, [&](const Item &item) { writeItem(item); });
        objects("records", level.records, [&](const Record &record) { writeRecord(record); });
    }
    void writeRecord(const Record &record)
    {
        text("name", record.name);
        writeHead(record);
        optionalText("recordType", record.recordType);
        booleanUnless("required", record.required, true);
        integerUnless("maximum", record.maximum, 1);
        optionalInteger("length", record.length);
        writeOccurrenceLabels(record.occurrenceLabels);
        objects("items", record.items, [&](const Item &item) { writeItem(item); });
    }
    void writeItem(const Item &item)
    {
        text("name", item.name);
        writeHead(item);
        text("type", item.type);
        integerUnless("start", item.start, 0);
        integer("length", item.length);
        integerUnless("occurrences", item.occurrences, 1);
        writeOccurrenceLabels(item.occurrenceLabels);
        optionalText("subitemOf", item.subitemOf);
        integerUnless("decimals", item.decimals, 0);
        booleanUnless("decimalMark", item.decimalMark, false);
        booleanUnless("zeroFill", item.zeroFill, false);
        if (item.capture)
            writeCapture(*item.capture);
        optionalText("storage", wordOf(item.storage));
        optionalText("format", item.format);
        optionalText("measure", wordOf(item.measure));
        optionalText("alignment", wordOf(item.alignment));
        integerUnless("displayWidth", item.displayWidth, 0);
        list("missing", item.missing, [&](const Range &range) { writeRange(range); });
        list("valueSets", item.valueSets, [&](const ValueSet &set) { writeValueSet(set); });
    }
    void writeCapture(const Capture &capture)
    {
        json.Key("capture");
        json.StartObject();
        text("type", capture.type);
        optionalText("dateFormat", capture.dateFormat);
        json.EndObject();
    }
    void writeValueSet(const ValueSet &set)
    {
        text("name", set.name);
        writeHead(set);
        optionalText("link", set.link);
        objects("values", set.values, [&](const Value &value) { writeValue(value); });
    }
    void writeValue(const Value &value)
    {
        writeLabels(value.labels);
        optionalText("note", value.note);
        optionalText("special", wordOf(value.special));
        optionalText("image", value.image);
        optionalText("textColor", value.textColor);
        objects("ranges", value.ranges, [&](const Range &range) { writeRange(range); });
    }
    void writeRelation(const Relation &relation)
    {
        text("name", relation.name);
        writeAliases(relation.aliases);
        text("primary", relation.primary);
        objects("links", relation.links, [&](const RelationLink &link) {
            optionalText("primaryLink", link.primaryLink);
            text("secondary", link.secondary);
            optionalText("secondaryLink", link.secondaryLink);
        });
    }
    void writeExtra(const Extra &extra)
    {
        text("path", extra.path);
        text("key", extra.key);
        text("value", extra.value);
        integerUnless("line", extra.line, 0);
    }
    void writeProblem(const Problem &problem)
    {
        text("severity", wordOf(problem.severity));
        text("id", problem.id);
        integerUnless("line", problem.line, 0);
        optionalText("path", problem.path);
        text("message", problem.message);
    }
};

} // namespace

bool writeLayoutJson(const Layout &layout, QIODevice &device, JsonStyle style)
{
    return writeJsonDocument(device, style, [&](auto &json) { LayoutWriter(json).writeLayout(layout); });
}

bool writeErrorJson(const Layout &layout, QIODevice &device, JsonStyle style)
{
    return writeJsonDocument(device, style, [&](auto &json) { LayoutWriter(json).writeError(layout); });
}

} // namespace vanlayout
