#include "write/DiffJson.h"

#include "write/JsonStream_p.h"

namespace vanlayout
{

namespace
{

/// Writes the keys of the objects in their order.
template <typename Writer> class DiffWriter
{
public:
    explicit DiffWriter(Writer &writer)
        : json(writer)
    {
    }

    void write(const LayoutDiff &diff)
    {
        json.StartObject();
        writeLayout("before", diff.before);
        writeLayout("after", diff.after);
        writeList("notCompared", diff.notCompared, [this](const NotCompared &entry) {
            writeText("what", entry.what);
            writeText("why", entry.why);
        });
        writeCounts(diff);
        writeList("changes", diff.changes, [this](const Change &change) { writeChange(change); });
        json.EndObject();
    }

private:
    void writeText(const char *key, const QString &value)
    {
        json.Key(key);
        writeJsonString(json, value);
    }
    void writeOptional(const char *key, const QString &value)
    {
        if (!value.isEmpty())
            writeText(key, value);
    }
    template <typename List, typename Members> void writeList(const char *key, const List &entries, Members members)
    {
        json.Key(key);
        json.StartArray();
        for (const auto &entry : entries) {
            json.StartObject();
            members(entry);
            json.EndObject();
        }
        json.EndArray();
    }

    void writeLayout(const char *key, const ComparedLayout &layout)
    {
        json.Key(key);
        json.StartObject();
        writeText("file", layout.file);
        writeText("format", wordOf(layout.format));
        writeOptional("container", layout.container);
        writeOptional("formatVersion", layout.formatVersion);
        writeOptional("name", layout.name);
        writeOptional("label", layout.label);
        json.Key("items");
        json.Int(layout.items);
        json.EndObject();
    }
    void writeCounts(const LayoutDiff &diff)
    {
        json.Key("counts");
        json.StartObject();
        const QVector<KindCount> counts = diff.counts();
        for (const KindCount &entry : counts) {
            json.Key(wordOf(entry.kind).toLatin1().constData());
            json.Int(entry.count);
        }
        json.EndObject();
    }
    void writeChange(const Change &change)
    {
        const DiffKindInfo &info = infoOf(change.kind);
        writeText("kind", info.word);
        writeOptional("level", change.level);
        writeOptional("record", change.record);
        writeOptional("item", change.item);
        writeOptional("otherName", change.otherName);
        writeOptional("valueSet", change.valueSet);
        writeOptional("code", change.code);
        writeOptional("language", change.language);
        if (info.side != DiffSide::After)
            writeText("before", change.before);
        if (info.side != DiffSide::Before)
            writeText("after", change.after);
    }

    Writer &json;
};

} // namespace

bool writeDiffJson(const LayoutDiff &diff, QIODevice &device, JsonStyle style)
{
    return writeJsonDocument(device, style == JsonStyle::Pretty, [&](auto &json) { DiffWriter(json).write(diff); });
}

} // namespace vanlayout
