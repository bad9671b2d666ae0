#include "write/CSProJson.h"

#include "read/CSProCommon_p.h"
#include "read/CSProPositions_p.h"
#include "write/CSProForms_p.h"
#include "write/CSProJsonStream_p.h"
#include "write/JsonMembers_p.h"

#include <QIODevice>
#include <QRegularExpression>

#include <algorithm>

namespace vanlayout
{

namespace
{

/// The statements on columns that make the reader find the items of a layout where they are.
class StatedColumns
{
public:
    explicit StatedColumns(const Layout &layout)
    {
        const bool isRelative = layout.relativePositions.value_or(false);
        for (const Level &level : layout.levels) {
            LevelColumns columns;
            columns.ids = of(level.ids, true);
            for (const Record &record : level.records)
                columns.records.push_back(of(record.items, !isRelative));
            levels.push_back(columns);
        }
        if (isRelative)
            stateMisplaced(layout);
    }

    const LevelColumns &level(int index) const { return levels[size_t(index)]; }

private:
    static std::vector<StoredColumns> of(const QVector<Item> &items, bool isStated)
    {
        std::vector<StoredColumns> columns;
        int start = 0; // of the last item that is not a subitem
        for (const Item &item : items) {
            StoredColumns stored;
            stored.hasStart = isStated;
            if (!item.isSubitem)
                start = item.start;
            else if (start > 0 && item.start >= start)
                stored.subitemOffset = item.start - start;
            else
                stored.hasStart = true;
            columns.push_back(stored);
        }
        return columns;
    }

    // States the start of items that are not where the items before them end.
    void stateMisplaced(const Layout &layout)
    {
        Layout placed = layout;
        layOutColumns(placed, levels);
        for (int level = 0; level < layout.levels.size(); ++level) {
            const QVector<Record> &records = layout.levels.at(level).records;
            for (int record = 0; record < records.size(); ++record)
                stateMisplaced(records.at(record).items, placed.levels.at(level).records.at(record).items,
                               levels[size_t(level)].records[size_t(record)]);
        }
    }
    static void stateMisplaced(const QVector<Item> &items, const QVector<Item> &placed,
                               std::vector<StoredColumns> &columns)
    {
        for (int index = 0; index < items.size(); ++index) {
            if (!items.at(index).isSubitem && items.at(index).start != placed.at(index).start)
                columns[size_t(index)].hasStart = true;
        }
    }

    std::vector<LevelColumns> levels;
};

/// Writes one dictionary.
class JsonWriter : private JsonMembers<CSProJsonStream>
{
public:
    JsonWriter(const Layout &dictionary, CSProJsonStream &stream, Losses *lossList)
        : JsonMembers(stream)
        , layout(dictionary)
        , columns(dictionary)
        , isOwnForm(dictionary.format == Format::CSProJson)
        , losses(lossList)
    {
    }

    void write()
    {
        object([&] {
            word("software", "CSPro");
            if (!layout.editable)
                boolean("editable", false);
            number("version", isOwnForm && isNumber(layout.formatVersion) ? layout.formatVersion.toLatin1() : "8.0");
            word("fileType", "dictionary");
            writeHead();
            writeSettings();
            array("levels", [&] {
                for (int index = 0; index < layout.levels.size(); ++index)
                    writeLevel(layout.levels.at(index), columns.level(index));
            });
            if (!layout.relations.isEmpty())
                objects("relations", layout.relations, [&](const Relation &relation) { writeRelation(relation); });
        });
        reportRest();
    }

private:
    void lose(const QString &path, const QString &what)
    {
        if (losses)
            losses->append({ path, what });
    }
    // Whether a version is digits with one point, and so a JSON number.
    static bool isNumber(const QString &version)
    {
        static const QRegularExpression number(
            QRegularExpression::anchoredPattern(QStringLiteral("(0|[1-9][0-9]*)(\\.[0-9]+)?")));
        return number.match(version).hasMatch();
    }

    void writeHead()
    {
        text("name", layout.name);
        writeAliases(layout.aliases);
        if (!layout.languages.isEmpty())
            objects("languages", layout.languages, [&](const Language &language) {
                text("name", language.name);
                text("label", language.label);
            });
        writeLabels(layout.labels);
        optionalText("note", layout.note);
    }

    void writeSettings()
    {
        if (layout.security)
            object("security", [&] { writeSecurity(*layout.security); });
        if (layout.readOptimization || !isOwnForm)
            boolean("readOptimization", layout.readOptimization.value_or(true));
        if (layout.enableBinaryItems)
            boolean("enableBinaryItems", *layout.enableBinaryItems);
        const RecordTypeColumns type = layout.recordType.value_or(RecordTypeColumns());
        object("recordType", [&] {
            integer("start", type.start);
            integer("length", type.length);
        });
        object("defaults", [&] {
            boolean("decimalMark", layout.decimalMark);
            boolean("zeroFill", layout.zeroFill);
        });
        boolean("relativePositions", layout.relativePositions.value_or(false));
    }

    void writeSecurity(const Security &security)
    {
        const Extra *renamed = csproforms::renamedSecurityWord(layout);
        if (renamed && isOwnForm)
            boolean("allowDataManagerModifications", renamed->value == QLatin1String("true"));
        if (security.allowDataViewerModifications)
            boolean("allowDataViewerModifications", *security.allowDataViewerModifications);
        if (security.allowExport)
            boolean("allowExport", *security.allowExport);
        if (security.cachedPasswordMinutes)
            integer("cachedPasswordMinutes", *security.cachedPasswordMinutes);
        if (security.settings)
            text("settings", isOwnForm ? *security.settings : security.settings->toLower());
    }

    void writeAliases(const QStringList &aliases)
    {
        if (!aliases.isEmpty())
            texts("aliases", aliases);
    }

    // The members that a level, a record, an item and a value set have in common.
    template <typename Element> void writeNamed(const Element &element)
    {
        text("name", element.name);
        writeAliases(element.aliases);
        writeLabels(element.labels);
        optionalText("note", element.note);
    }

    // A label without a text is written with an empty one.
    void writeLabels(const Labels &labels)
    {
        QVector<Label> parts = isOwnForm ? labels.parts : necessaryParts(labels);
        if (parts.isEmpty())
            parts.append(Label());
        if (parts.size() == 1 && parts.constFirst().language.isEmpty())
            json.beginLine();
        objects("labels", parts, [&](const Label &part) {
            text("text", part.text);
            optionalText("language", part.language);
        });
    }

    // The parts of a label of the text form. An empty part between others only keeps the place of its language, and
    // the only part of a label needs no language.
    static QVector<Label> necessaryParts(const Labels &labels)
    {
        QVector<Label> parts;
        for (int index = 0; index < labels.parts.size(); ++index) {
            const Label &part = labels.parts.at(index);
            const bool isBetween = index > 0 && index + 1 < labels.parts.size();
            if (!isBetween || !part.text.isEmpty() || part.language.isEmpty())
                parts.append(part);
        }
        if (parts.size() == 1)
            parts.first().language.clear();
        return parts;
    }

    void writeOccurrenceLabels(const QVector<OccurrenceLabel> &labels)
    {
        if (labels.isEmpty())
            return;
        objects("labels", labels, [&](const OccurrenceLabel &label) {
            integer("occurrence", label.occurrence);
            writeLabels(label.labels);
        });
    }

    void writeLevel(const Level &level, const LevelColumns &stated)
    {
        object([&] {
            writeNamed(level);
            const QString path = cspro::nameInPath(level.name);
            object("ids", [&] { writeItems(level.ids, stated.ids, cspro::childPath(path, cspro::idsName())); });
            array("records", [&] {
                for (int index = 0; index < level.records.size(); ++index)
                    writeRecord(level.records.at(index), stated.records[size_t(index)], path);
            });
        });
    }

    void writeRecord(const Record &record, const std::vector<StoredColumns> &stated, const QString &level)
    {
        const QString path = cspro::childPath(level, record.name);
        object([&] {
            writeNamed(record);
            optionalText("recordType", record.recordType);
            object("occurrences", [&] {
                boolean("required", record.required);
                integer("maximum", record.maximum);
                writeOccurrenceLabels(record.occurrenceLabels);
            });
            writeItems(record.items, stated, path);
        });
        if (record.length && *record.length != csproforms::recordLength(layout, record))
            lose(path, QStringLiteral("the record length %1, which differs from the last column").arg(*record.length));
    }

    void writeItems(const QVector<Item> &items, const std::vector<StoredColumns> &stated, const QString &parent)
    {
        array("items", [&] {
            for (int index = 0; index < items.size(); ++index) {
                object([&] { writeItem(items.at(index), stated[size_t(index)]); });
                reportItem(items.at(index), parent);
            }
        });
    }

    // The numbers of an item that have no meaning, and that a reader of the JSON form ignores.
    void reportItem(const Item &item, const QString &parent)
    {
        const auto loseOfItem = [&](const QString &what) { lose(cspro::childPath(parent, item.name), what); };
        if (item.decimals < 0)
            loseOfItem(QStringLiteral("%1 decimals").arg(item.decimals));
        if (item.decimalMark && item.decimals <= 0)
            loseOfItem(QStringLiteral("the decimal mark, because there are no decimals"));
        if (csproforms::isBinary(item) && item.length != 1)
            loseOfItem(QStringLiteral("the length %1, because items of the type %2 have 1 column")
                           .arg(QString::number(item.length), item.type));
        if (csproforms::isBinary(item) && item.isSubitem)
            loseOfItem(QStringLiteral("that it is a subitem, because its type is %1").arg(item.type));
    }

    void writeItem(const Item &item, const StoredColumns &stated)
    {
        writeNamed(item);
        if (item.occurrences != 1 || !item.occurrenceLabels.isEmpty())
            object("occurrences", [&] {
                integer("maximum", item.occurrences);
                writeOccurrenceLabels(item.occurrenceLabels);
            });
        text("contentType", contentTypeOf(item));
        if (item.isSubitem)
            boolean("subitem", true);
        if (stated.hasStart)
            integer("start", item.start);
        if (stated.subitemOffset)
            integer("subitemOffset", *stated.subitemOffset);
        integer("length", item.length);
        if (item.decimals > 0) {
            integer("decimals", item.decimals);
            boolean("decimalMark", item.decimalMark);
        }
        if (item.isNumeric())
            boolean("zeroFill", item.zeroFill);
        if (item.capture)
            object("capture", [&] {
                text("type", item.capture->type);
                optionalText("dateFormat", item.capture->dateFormat);
            });
        if (!item.valueSets.isEmpty())
            objects("valueSets", item.valueSets, [&](const ValueSet &set) { writeValueSet(set); });
    }

    // CSPro writes the types of binary items with a capital.
    static QString contentTypeOf(const Item &item)
    {
        QString type = item.type;
        if (csproforms::isBinary(item))
            type[0] = qAsConst(type).at(0).toUpper();
        return type;
    }

    void writeValueSet(const ValueSet &set)
    {
        writeNamed(set);
        optionalText("link", set.link);
        if (!linkedSets.isCopy(set))
            objects("values", set.values, [&](const Value &value) { writeValue(value); });
    }

    void writeValue(const Value &value)
    {
        writeLabels(value.labels);
        optionalText("note", value.note);
        optionalText("image", imagePathOf(value));
        optionalText("textColor", value.textColor);
        if (value.special != Special::None)
            text("special", cspro::wordOfSpecial(value.special));
        json.beginLine();
        objects("pairs", value.ranges, [&](const Range &range) { writePair(range); });
    }

    static QString withoutEndBlanks(QString code)
    {
        while (code.endsWith(QLatin1Char(' ')))
            code.chop(1);
        return code;
    }
    void writePair(const Range &range)
    {
        if (range.to.isEmpty()) {
            text("value", withoutEndBlanks(range.from));
            return;
        }
        const QString to = withoutEndBlanks(range.to);
        array("range", [&] {
            string(withoutEndBlanks(range.from));
            string(to.isEmpty() ? range.to : to); // an empty one would be no range
        });
    }

    // The path of a picture as CSPro 8 writes it: relative to the directory, with slashes.
    QString imagePathOf(const Value &value) const
    {
        QString path = value.image;
        if (isOwnForm)
            return path;
        path.replace(QLatin1Char('\\'), QLatin1Char('/'));
        return path.startsWith(QLatin1String("./")) ? path.mid(2) : path;
    }

    void writeRelation(const Relation &relation)
    {
        const auto link = [&](const char *key, const QString &item) {
            text(key, item.isEmpty() ? QStringLiteral("(occurrence)") : item);
        };
        text("name", relation.name);
        writeAliases(relation.aliases);
        text("primary", relation.primary);
        objects("links", relation.links, [&](const RelationLink &part) {
            link("primaryLink", part.primaryLink);
            text("secondary", part.secondary);
            link("secondaryLink", part.secondaryLink);
        });
    }

    void reportRest()
    {
        if (layout.valueSetImages)
            lose(QString(), QStringLiteral("ValueSetImages"));
        const Extra *written = isOwnForm ? csproforms::renamedSecurityWord(layout) : nullptr;
        for (const Extra &extra : layout.extras) {
            if (&extra != written)
                lose(extra.path, csproforms::lossOf(extra));
        }
    }

    const Layout &layout;
    StatedColumns columns;
    bool isOwnForm;
    Losses *losses;
    LinkedValueSets linkedSets;
};

} // namespace

bool writeCSProJson(const Layout &layout, QIODevice &device, Losses *losses)
{
    JsonStream stream(device);
    CSProJsonStream json(stream);
    JsonWriter(layout, json, losses).write();
    stream.Flush();
    return stream.isComplete();
}

} // namespace vanlayout
