#include "write/ConcordPage.h"

#include "compare/RoundNames.h"
#include "util/KeyedHash_p.h"
#include "write/ConcordTexts_p.h"
#include "write/HtmlPage_p.h"

#include <rapidjson/writer.h>

#include <array>

namespace vanlayout
{

namespace
{

using Json = rapidjson::Writer<JsonStream>;

constexpr int changeKinds = int(ConcordChange::Values) + 1;
constexpr int codeChangeKinds = int(CodeChange::Removed) + 1;

/// The texts of a page, each once.
class TextTable
{
public:
    int indexOf(const QString &text)
    {
        const auto [found, isNew] = indexes.emplace(text, texts.size());
        if (isNew)
            texts.append(text);
        return found->second;
    }
    const QStringList &all() const { return texts; }

private:
    QStringList texts;
    KeyedMap<QString, int> indexes;
};

/// Writes the data of the page. The script has a comment on the form of a cell.
class PageData
{
public:
    PageData(const Concordance &source, Json &writer)
        : concordance(source)
        , json(writer)
    {
    }

    void write()
    {
        json.StartObject();
        json.Key("rounds");
        strings(roundNames(concordance.rounds));
        json.Key("changes");
        words<ConcordChange>(changeKinds);
        json.Key("codeChanges");
        words<CodeChange>(codeChangeKinds);
        json.Key("variables");
        json.StartArray();
        for (int i = 0; i < concordance.variables.size(); ++i)
            writeVariable(i);
        json.EndArray();
        json.Key("texts");
        strings(texts.all());
        json.EndObject();
    }

private:
    void strings(const QStringList &list)
    {
        json.StartArray();
        for (const QString &text : list)
            writeScriptString(json, text);
        json.EndArray();
    }
    template <typename Change> void words(int count)
    {
        json.StartArray();
        for (int i = 0; i < count; ++i)
            writeScriptString(json, wordOf(Change(i)));
        json.EndArray();
    }

    // The codes of a variable follow those of the variable before it.
    void writeVariable(int index)
    {
        json.StartArray();
        writeCells(concordance.variables.at(index).cells);
        json.StartArray();
        for (; code < concordance.codes.size() && concordance.codes.at(code).variable == index; ++code)
            writeCode(concordance.codes.at(code));
        json.EndArray();
        json.EndArray();
    }
    void writeCells(const QVector<std::optional<ConcordCell>> &cells)
    {
        const ConcordCell *previous = nullptr;
        json.StartArray();
        for (const std::optional<ConcordCell> &cell : cells) {
            if (!cell)
                json.Null();
            else if (previous && isSame(*previous, *cell))
                json.Int(0);
            else
                writeCell(*cell);
            previous = cell ? &*cell : previous;
        }
        json.EndArray();
    }
    static bool isSame(const ConcordCell &before, const ConcordCell &after)
    {
        return after.changes.isEmpty() && before.item == after.item && before.label == after.label
            && before.record == after.record;
    }
    void writeCell(const ConcordCell &cell)
    {
        unsigned bits = 0;
        for (const ConcordChange change : cell.changes)
            bits |= 1U << unsigned(change);
        json.StartArray();
        for (const QString &text : { cell.item, cell.label, cell.record })
            json.Int(texts.indexOf(text));
        json.Uint(bits);
        json.EndArray();
    }
    void writeCode(const ConcordCode &entry)
    {
        json.StartArray();
        json.Int(texts.indexOf(entry.from));
        json.Int(texts.indexOf(entry.to));
        writeScriptString(json, describeSpecial(entry.special));
        json.Int(int(entry.change));
        const QString *previous = nullptr;
        json.StartArray();
        for (const std::optional<QString> &label : entry.cells) {
            if (!label)
                json.Null();
            else
                json.Int(previous && *previous == *label ? 0 : 1 + texts.indexOf(*label));
            previous = label ? &*label : previous;
        }
        json.EndArray();
        json.EndArray();
    }

    const Concordance &concordance;
    Json &json;
    TextTable texts;
    int code = 0;
};

bool writeData(const Concordance &concordance, QIODevice &device)
{
    JsonStream stream(device);
    Json json(stream);
    PageData(concordance, json).write();
    stream.Flush();
    return stream.isComplete();
}

QByteArray countOf(qint64 count, const char *word)
{
    return "<li><b>" + groupedNumber(count) + "</b> " + word + "</li>\n";
}

QByteArray countsOf(const Concordance &concordance)
{
    std::array<qint64, codeChangeKinds> codes = {};
    for (const ConcordCode &code : concordance.codes)
        ++codes[size_t(code.change)];
    const qint64 changed = std::count_if(
        concordance.variables.begin(), concordance.variables.end(),
        [](const ConcordVariable &variable) { return isChanged(variable) || isAbsentSomewhere(variable); });
    QByteArray counts
        = countOf(concordance.variables.size(), concordance.variables.size() == 1 ? "variable" : "variables")
        + countOf(changed, changed == 1 ? "differs" : "differ")
        + countOf(concordance.codes.size(), concordance.codes.size() == 1 ? "code" : "codes");
    for (const CodeChange change : { CodeChange::Meaning, CodeChange::Wording, CodeChange::Spelling }) {
        if (codes[size_t(change)] > 0)
            counts += countOf(codes[size_t(change)], (wordOf(change).toLatin1() + " changed").constData());
    }
    return counts;
}

QByteArray titleOf(const QStringList &rounds)
{
    return rounds.isEmpty() ? QByteArray() : htmlOf(rounds.constFirst()) + " \u2026 " + htmlOf(rounds.constLast());
}

} // namespace

bool writeConcordPage(const Concordance &concordance, QIODevice &device)
{
    const HtmlPage page(QStringLiteral("concord/page.html"),
                        { QStringLiteral("codebook/page.css"), QStringLiteral("concord/page.css") },
                        { QStringLiteral("codebook/common.js"), QStringLiteral("concord/page.js") });
    const QStringList rounds = roundNames(concordance.rounds);
    return page.write(device, [&](const QByteArray &name, QIODevice &out) {
        if (name == "data")
            return writeData(concordance, out);
        if (name == "counts")
            return writeBytes(out, countsOf(concordance));
        if (name == "format")
            return writeBytes(out, "Concordance of " + groupedNumber(rounds.size()) + " rounds");
        return writeBytes(out, name == "document-title" ? titleOf(rounds) + " \u2013 concordance" : titleOf(rounds));
    });
}

} // namespace vanlayout
