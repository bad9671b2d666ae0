#include "write/Codebook.h"
#include "write/HtmlPage_p.h"
#include "write/Wording_p.h"

#include <QFileInfo>
#include <QHash>

#include <rapidjson/writer.h>

#include <map>

namespace vanlayout
{

namespace
{

/// Adds items to the entry of a codebook. Value sets with the same texts have one list; sets that share their data are
/// visited once.
class EntryFiller
{
public:
    explicit EntryFiller(CodebookIndexEntry &target)
        : entry(target)
    {
    }

    void add(const QVector<Item> &items)
    {
        for (const Item &item : items) {
            QVector<int> lists;
            for (const ValueSet &set : item.valueSets) {
                const int number = numberOf(set.values);
                if (number >= 0)
                    lists.append(number);
            }
            entry.items.append({ item.name, item.labels, item.aliases, lists });
        }
    }

private:
    // The index of the list of values; negative for values without a label.
    int numberOf(const QVector<Value> &values)
    {
        auto known = numbersOfData.find(values.constData());
        if (known == numbersOfData.end())
            known = numbersOfData.insert(values.constData(), numberOf(textsOf(values)));
        return *known;
    }
    int numberOf(const QString &texts)
    {
        if (texts.isEmpty())
            return -1;
        const auto [known, isNew] = numbersOfTexts.emplace(texts, entry.lists.size());
        if (isNew)
            entry.lists.append(texts);
        return known->second;
    }
    static QString textsOf(const QVector<Value> &values)
    {
        QString texts;
        for (const Value &value : values) {
            for (const Label &part : value.labels.parts) {
                if (part.text.isEmpty())
                    continue;
                if (!texts.isEmpty())
                    texts += QLatin1Char('\n');
                texts += part.text;
            }
        }
        return texts;
    }

    CodebookIndexEntry &entry;
    QHash<const Value *, int> numbersOfData;
    std::map<QString, int> numbersOfTexts;
};

/// Writes the codebooks as one JSON list. Each is an object whose items are lists: name, label in the language of the
/// page, then the numbers of its lists of value labels, other labels and the aliases.
class IndexData
{
public:
    IndexData(QIODevice &device, const CodebookOptions &codebookOptions)
        : options(codebookOptions)
        , stream(device)
        , json(stream)
    {
    }

    bool write(const QVector<CodebookIndexEntry> &entries)
    {
        json.StartArray();
        for (const CodebookIndexEntry &entry : entries)
            writeEntry(entry);
        json.EndArray();
        stream.Flush();
        return stream.isComplete();
    }

private:
    void text(const char *key, const QString &value)
    {
        if (value.isEmpty())
            return;
        json.Key(key);
        writeScriptString(json, value);
    }
    void writeEntry(const CodebookIndexEntry &entry)
    {
        json.StartObject();
        text("page", entry.page);
        text("file", entry.file);
        text("name", entry.name);
        text("label", entry.labels.in(options.language));
        text("format", entry.format);
        json.Key("records");
        json.Int(entry.records);
        json.Key("items");
        json.StartArray();
        for (const CodebookIndexItem &item : entry.items)
            writeItem(item);
        json.EndArray();
        json.Key("lists");
        json.StartArray();
        for (const QString &texts : entry.lists)
            writeScriptString(json, texts);
        json.EndArray();
        json.EndObject();
    }
    void writeItem(const CodebookIndexItem &item)
    {
        const QString shown = item.labels.in(options.language);
        json.StartArray();
        writeScriptString(json, item.name);
        writeScriptString(json, shown);
        for (const int list : item.lists)
            json.Int(list);
        for (const Label &part : item.labels.parts) {
            if (part.text != shown && !part.text.isEmpty())
                writeScriptString(json, part.text);
        }
        for (const QString &alias : item.aliases)
            writeScriptString(json, alias);
        json.EndArray();
    }

    const CodebookOptions &options;
    JsonStream stream;
    rapidjson::Writer<JsonStream> json;
};

QByteArray countsOf(const QVector<CodebookIndexEntry> &entries)
{
    qint64 items = 0;
    for (const CodebookIndexEntry &entry : entries)
        items += entry.items.size();
    return "<li><b>" + groupedNumber(entries.size()) + "</b> codebook" + (entries.size() == 1 ? "" : "s")
        + "</li>\n<li><b>" + groupedNumber(items) + "</b> variable" + (items == 1 ? "" : "s") + "</li>\n";
}

} // namespace

CodebookIndexEntry indexEntryOf(const Layout &layout, const QString &page)
{
    CodebookIndexEntry entry;
    entry.page = page;
    if (layout.file != QLatin1String("-"))
        entry.file = QFileInfo(layout.file).fileName();
    entry.name = layout.name;
    entry.labels = layout.labels;
    entry.format = describeFormat(layout);
    EntryFiller filler(entry);
    for (const Level &level : layout.levels) {
        filler.add(level.ids);
        for (const Record &record : level.records) {
            entry.records += holdsData(layout.format) ? 0 : 1;
            filler.add(record.items);
        }
    }
    return entry;
}

bool writeCodebookIndex(const QVector<CodebookIndexEntry> &entries, QIODevice &device, const CodebookOptions &options)
{
    const HtmlPage page(QStringLiteral("codebook/index.html"), { QStringLiteral("codebook/page.css") },
                        { QStringLiteral("codebook/common.js"), QStringLiteral("codebook/index.js") });
    return page.write(device, [&](const QByteArray &name, QIODevice &out) {
        return name == "data" ? IndexData(out, options).write(entries) : writeBytes(out, countsOf(entries));
    });
}

} // namespace vanlayout
