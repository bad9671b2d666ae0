#include "write/ConcordJson.h"

#include "write/JsonMembers_p.h"

namespace vanlayout
{

namespace
{

/// Writes the keys of the objects in their order.
template <typename Writer> class ConcordWriter : private JsonMembers<Writer>
{
    using Base = JsonMembers<Writer>;
    using Base::array;
    using Base::integer;
    using Base::json;
    using Base::object;
    using Base::objects;
    using Base::string;
    using Base::text;
    using Base::texts;

public:
    explicit ConcordWriter(Writer &jsonWriter)
        : Base(jsonWriter)
    {
    }

    void write(const Concordance &concordance)
    {
        object([&] {
            texts("rounds", concordance.rounds);
            objects("variables", concordance.variables, [this](const ConcordVariable &variable) {
                cells(variable.cells, [this](const ConcordCell &cell) { writeCell(cell); });
            });
            objects("codes", concordance.codes, [this](const ConcordCode &code) { writeCode(code); });
        });
    }

private:
    template <typename List, typename WriteCell> void cells(const List &list, WriteCell writeOne)
    {
        array("cells", [&] {
            for (const auto &cell : list) {
                if (cell)
                    writeOne(*cell);
                else
                    json.Null();
            }
        });
    }
    void writeCell(const ConcordCell &cell)
    {
        object([&] {
            text("level", cell.level);
            text("record", cell.record);
            text("item", cell.item);
            text("label", cell.label);
            array("changes", [&] {
                for (const ConcordChange change : cell.changes)
                    string(wordOf(change));
            });
        });
    }
    void writeCode(const ConcordCode &code)
    {
        integer("variable", code.variable);
        text("from", code.from);
        text("to", code.to);
        text("special", wordOf(code.special));
        cells(code.cells, [this](const QString &label) { string(label); });
        text("change", wordOf(code.change));
    }
};

} // namespace

bool writeConcordJson(const Concordance &concordance, QIODevice &device, JsonStyle style)
{
    return writeJsonDocument(device, style, [&](auto &json) { ConcordWriter(json).write(concordance); });
}

} // namespace vanlayout
