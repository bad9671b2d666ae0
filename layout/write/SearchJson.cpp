#include "write/SearchJson.h"

#include "write/JsonMembers_p.h"

namespace vanlayout
{

namespace
{

/// Writes the keys of the objects in their order.
template <typename Writer> class SearchWriter : private JsonMembers<Writer>
{
    using Base = JsonMembers<Writer>;
    using Base::object;
    using Base::objects;
    using Base::text;

public:
    explicit SearchWriter(Writer &jsonWriter)
        : Base(jsonWriter)
    {
    }

    void write(const QString &file, const SearchHit &hit)
    {
        object([&] {
            text("file", file);
            writePlace(hit);
            text("where", wordOf(hit.where));
            text("language", hit.language);
            text("text", hit.text);
            text("label", hit.label);
            objects("values", hit.values, [this](const SearchedValue &value) {
                writeRange(value);
                text("label", value.label);
            });
        });
    }
    void write(const SharedSet &set, const QString &language)
    {
        object([&] {
            text("id", set.id);
            this->array("values", [&] {
                for (const Value &value : set.values)
                    write(value, language);
            });
            objects("variables", set.uses, [this](const ValueSetUse &use) {
                text("file", use.file);
                writePlace(use);
                text("valueSet", use.valueSet);
            });
        });
    }

private:
    template <typename Place> void writePlace(const Place &place)
    {
        text("level", place.level);
        text("record", place.record);
        text("item", place.item);
    }
    template <typename Codes> void writeRange(const Codes &range)
    {
        text("from", range.from);
        text("to", range.to);
    }
    void write(const Value &value, const QString &language)
    {
        const QVector<Range> ranges = value.ranges.isEmpty() ? QVector<Range>(1) : value.ranges;
        for (const Range &range : ranges) {
            object([&] {
                writeRange(range);
                text("special", wordOf(value.special));
                text("label", value.labels.in(language));
            });
        }
    }
};

} // namespace

bool writeSearchJson(const QString &file, const QVector<SearchHit> &hits, QIODevice &device)
{
    bool isWhole = true;
    for (const SearchHit &hit : hits)
        isWhole
            = writeJsonDocument(device, JsonStyle::Compact, [&](auto &json) { SearchWriter(json).write(file, hit); })
            && isWhole;
    return isWhole;
}

bool writeSharedSetsJson(const QVector<SharedSet> &sets, const QString &language, QIODevice &device)
{
    bool isWhole = true;
    for (const SharedSet &set : sets)
        isWhole = writeJsonDocument(device, JsonStyle::Compact,
                                    [&](auto &json) { SearchWriter(json).write(set, language); })
            && isWhole;
    return isWhole;
}

} // namespace vanlayout
