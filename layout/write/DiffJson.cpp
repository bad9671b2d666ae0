#include "write/DiffJson.h"

#include "write/JsonMembers_p.h"

namespace vanlayout
{

namespace
{

/// Writes the keys of the objects in their order.
template <typename Writer> class DiffWriter : private JsonMembers<Writer>
{
    using Base = JsonMembers<Writer>;
    using Base::integer;
    using Base::object;
    using Base::objects;
    using Base::optionalText;
    using Base::text;

public:
    explicit DiffWriter(Writer &jsonWriter)
        : Base(jsonWriter)
    {
    }

    void write(const LayoutDiff &diff)
    {
        object([&] {
            writeLayout("before", diff.before);
            writeLayout("after", diff.after);
            objects("notCompared", diff.notCompared, [this](const NotCompared &entry) {
                text("what", entry.what);
                text("why", entry.why);
            });
            writeCounts(diff);
            objects("changes", diff.changes, [this](const Change &change) { writeChange(change); });
        });
    }

private:
    void writeLayout(const char *key, const ComparedLayout &layout)
    {
        object(key, [&] {
            text("file", layout.file);
            text("format", wordOf(layout.format));
            optionalText("container", layout.container);
            optionalText("formatVersion", layout.formatVersion);
            optionalText("name", layout.name);
            optionalText("label", layout.label);
            integer("items", layout.items);
        });
    }
    void writeCounts(const LayoutDiff &diff)
    {
        object("counts", [&] {
            const QVector<KindCount> counts = diff.counts();
            for (const KindCount &entry : counts) {
                integer(wordOf(entry.kind).toLatin1().constData(), entry.count);
            }
        });
    }
    void writeChange(const Change &change)
    {
        const DiffKindInfo &info = infoOf(change.kind);
        text("kind", info.word);
        optionalText("level", change.level);
        optionalText("record", change.record);
        optionalText("item", change.item);
        optionalText("otherName", change.otherName);
        optionalText("valueSet", change.valueSet);
        optionalText("code", change.code);
        optionalText("language", change.language);
        if (info.side != DiffSide::After)
            text("before", change.before);
        if (info.side != DiffSide::Before)
            text("after", change.after);
    }
};

} // namespace

bool writeDiffJson(const LayoutDiff &diff, QIODevice &device, JsonStyle style)
{
    return writeJsonDocument(device, style, [&](auto &json) { DiffWriter(json).write(diff); });
}

} // namespace vanlayout
