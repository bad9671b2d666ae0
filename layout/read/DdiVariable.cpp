#include "read/DdiVariable_p.h"

#include "read/DdiElements_p.h"
#include "read/DdiValueSets_p.h"

#include <QRegularExpression>

#include <algorithm>

namespace vanlayout::ddi
{

namespace
{

/// Reads one variable.
class VariableReader
{
public:
    explicit VariableReader(Xml &document)
        : xml(document)
    {
    }

    Variable read(bool &isWeight)
    {
        readAttributes();
        isWeight = xml.attribute("wgt") == QLatin1String("wgt");
        while (xml.nextChild())
            readChild(xml.name());
        finishType();
        item.valueSets = valueSetsOf(variable);
        item.missing = missingOf(variable);
        keepRanges();
        keepNotes();
        variable.valid.clear();
        variable.invalid.clear();
        variable.categories.clear();
        variable.notes.clear();
        return std::move(variable);
    }

private:
    void readAttributes()
    {
        variable.line = xml.line();
        variable.id = xml.attribute("ID");
        item.name = xml.attribute("name");
        if (item.name.isEmpty())
            item.name = variable.id;
        variable.files = wordsOf(xml.attribute("files"));
        variable.recordTypes = wordsOf(xml.attribute("rectype"));
        readDecimals(xml.attribute("dcml"));
        readMeasure(xml.attribute("intrvl"), xml.attribute("nature"));
        keepAttributes(xml, variable.statements, QString(), " ID name files rectype dcml intrvl nature wgt ");
        keepUnlessKnown("wgt", QStringLiteral("@wgt"), { "wgt" });
    }

    void readDecimals(const QString &decimals)
    {
        item.decimals = countOf(decimals).value_or(0);
        if (item.decimals == 0 && !decimals.isEmpty() && decimals.trimmed() != QLatin1String("0"))
            keepStatement(QStringLiteral("@dcml"), decimals);
    }

    // Keeps the value of an attribute that is none of the known ones.
    void keepUnlessKnown(const char *attribute, const QString &key, std::initializer_list<const char *> known,
                         int category = 0)
    {
        const QString value = xml.attribute(attribute);
        const bool isKnown
            = std::any_of(known.begin(), known.end(), [&](const char *word) { return value == QLatin1String(word); });
        if (!isKnown && !value.isEmpty())
            variable.statements.append({ key, value, xml.line(), category });
    }

    // "discrete" is the default, and does not say whether the codes have an order.
    void readMeasure(const QString &interval, const QString &nature)
    {
        if (nature == QLatin1String("nominal"))
            item.measure = Measure::Nominal;
        else if (nature == QLatin1String("ordinal"))
            item.measure = Measure::Ordinal;
        else if (nature == QLatin1String("interval") || nature == QLatin1String("ratio")
                 || interval == QLatin1String("contin"))
            item.measure = Measure::Scale;
        if (item.measure == Measure::None && !nature.isEmpty())
            keepStatement(QStringLiteral("@nature"), nature);
        keepUnlessKnown("intrvl", QStringLiteral("@intrvl"), { "contin", "discrete" });
    }

    void readChild(const QString &name)
    {
        if (name == QLatin1String("catgry"))
            readCategory();
        else if (name == QLatin1String("labl"))
            readLabel(xml, item.labels);
        else if (name == QLatin1String("location"))
            readLocation();
        else if (name == QLatin1String("valrng"))
            readValid();
        else if (name == QLatin1String("invalrng"))
            readRanges(QStringLiteral("invalrng/"), variable.invalid);
        else if (name == QLatin1String("txt"))
            appendText(item.note, xml.text());
        else if (name == QLatin1String("varFormat"))
            readFormat();
        else if (name == QLatin1String("notes"))
            variable.notes.append(readNote(xml));
        else if (name == QLatin1String("sumStat"))
            xml.skip();
        else
            keep(xml, variable.statements);
    }

    void readLocation()
    {
        Location location;
        location.file = xml.attribute("fileid").trimmed();
        location.segment = xml.attribute("RecSegNo").trimmed();
        location.start = position("StartPos");
        const int end = position("EndPos");
        location.length = position("width");
        keepAttributes(xml, variable.statements, QStringLiteral("location"),
                       " ID StartPos EndPos width RecSegNo fileid ");
        checkColumns(location, end);
        addLocation(location);
        xml.skip();
    }

    void addLocation(const Location &location)
    {
        constexpr int maxLocations = 100;
        if (variable.locations.size() < maxLocations) {
            variable.locations.append(location);
        } else if (!hasTooManyLocations) {
            hasTooManyLocations = true;
            find("too-many-locations",
                 QStringLiteral("more than %1 locations; further ones are not kept").arg(maxLocations));
        }
    }

    int position(const char *attribute)
    {
        const QString text = xml.attribute(attribute);
        const std::optional<int> number = countOf(text);
        if (!number && !text.isEmpty())
            keepStatement(QLatin1String("location@") + QLatin1String(attribute), text);
        return number.value_or(0);
    }

    void checkColumns(Location &location, int end)
    {
        if (location.start == 0)
            return;
        const int length = end >= location.start ? end - location.start + 1 : 0;
        if (location.length == 0)
            location.length = length;
        else if (end > 0 && length != location.length)
            find("columns-differ",
                 QStringLiteral("the columns %1 to %2 are not the width %3, which is used")
                     .arg(location.start)
                     .arg(end)
                     .arg(location.length));
        if (location.length == 0)
            find("item-without-length", QStringLiteral("the location has a StartPos and neither EndPos nor width"));
    }

    void readValid()
    {
        ValidRanges valid;
        valid.set = readRanges(QStringLiteral("valrng/"), valid.ranges);
        variable.valid.append(valid);
    }

    // Reads ranges, and returns the name of the value set in their note.
    QString readRanges(const QString &prefix, QVector<Range> &ranges)
    {
        QString set;
        while (xml.nextChild()) {
            const QString name = xml.name();
            if (name == QLatin1String("item") && xml.attributes().hasAttribute(QLatin1String("VALUE"))) {
                ranges.append({ xml.attribute("VALUE"), QString() });
                xml.skip();
            } else if (name == QLatin1String("range") && isInclusive()) {
                ranges.append(readRange());
            } else if (name == QLatin1String("notes") && xml.attribute("type") == QLatin1String("value set")) {
                set = xml.text();
            } else {
                keep(xml, variable.statements, prefix);
            }
        }
        return set;
    }

    bool isInclusive() const
    {
        const QXmlStreamAttributes attributes = xml.attributes();
        return !attributes.hasAttribute(QLatin1String("minExclusive"))
            && !attributes.hasAttribute(QLatin1String("maxExclusive"))
            && (attributes.hasAttribute(QLatin1String("min")) || attributes.hasAttribute(QLatin1String("max")));
    }

    // A range without an end is open there. One of a single code is that code.
    Range readRange()
    {
        const QXmlStreamAttributes attributes = xml.attributes();
        const auto end = [&](const char *name, const char *open) {
            const QLatin1String attribute(name);
            return attributes.hasAttribute(attribute) ? attributes.value(attribute).toString()
                                                      : QString::fromLatin1(open);
        };
        Range range = { end("min", "-inf"), end("max", "inf") };
        if (range.from == range.to)
            range.to.clear();
        xml.skip();
        return range;
    }

    void readCategory()
    {
        Category category;
        const int number = variable.categories.size() + 1;
        category.isMissing = xml.attribute("missing") == QLatin1String("Y");
        category.missingKind = xml.attribute("missType");
        keepUnlessKnown("missing", QStringLiteral("catgry@missing"), { "Y", "N" }, number);
        keepAttributes(xml, variable.statements, QStringLiteral("catgry"), " ID missing missType ", number);
        while (xml.nextChild()) {
            const QString name = xml.name();
            if (name == QLatin1String("catValu")) {
                category.hasCode = true;
                category.value.ranges = { { xml.text(), QString() } };
            } else if (name == QLatin1String("labl")) {
                readLabel(xml, category.value.labels);
            } else if (name == QLatin1String("txt")) {
                category.texts.append(xml.text());
            } else if (name == QLatin1String("catStat")) {
                xml.skip();
            } else {
                keep(xml, variable.statements, QStringLiteral("catgry/"), number);
            }
        }
        variable.categories.append(category);
    }

    void readFormat()
    {
        hasFormat = true;
        isCharacter = xml.attribute("type") == QLatin1String("character");
        keepUnlessKnown("type", QStringLiteral("varFormat@type"), { "character", "numeric" });
        const QString name = xml.attribute("formatname");
        const bool isCSPro = xml.attribute("otherSchema") == QLatin1String("CSPro");
        if (isCSPro && !name.isEmpty())
            item.capture = Capture{ QStringLiteral("date"), name };
        else
            item.format = name;
        keepAttributes(xml, variable.statements, QStringLiteral("varFormat"),
                       " ID type formatname schema otherSchema category ");
        keepUnlessKnown("category", QStringLiteral("varFormat@category"), { "other", "date" });
        readFormatText(xml.text());
    }

    // The forms of the text that documents of this library have.
    void readFormatText(const QString &text)
    {
        static const QRegularExpression form(
            QStringLiteral("\\A(?:([0-9]{1,9}) decimals?, decimal mark (implied|written in the data)(?:; )?)?"
                           "(padded with zeros)?\\z"));
        const QRegularExpressionMatch match = form.match(text);
        const Storage storage = storageOf(text);
        if (storage != Storage::None) {
            item.storage = storage;
        } else if (match.hasMatch()) {
            if (!match.captured(1).isEmpty())
                item.decimals = match.captured(1).toInt();
            item.decimalMark = match.captured(2).startsWith(QLatin1Char('w'));
            item.zeroFill = !match.captured(3).isEmpty();
        } else {
            keepStatement(QStringLiteral("varFormat"), text);
        }
    }

    static Storage storageOf(const QString &word)
    {
        const Storage all[]
            = { Storage::Int8, Storage::Int16, Storage::Int32, Storage::Float, Storage::Double, Storage::String };
        const auto *const found
            = std::find_if(std::begin(all), std::end(all), [&](Storage storage) { return wordOf(storage) == word; });
        return found != std::end(all) ? *found : Storage::None;
    }

    // Without a format, codes that are no numbers are those of a text.
    void finishType()
    {
        const auto isText = [](const Category &category) {
            const QString code = category.value.ranges.constFirst().from.trimmed();
            bool isNumber = false;
            code.toDouble(&isNumber);
            return !isNumber && !category.isMissing && !code.isEmpty(); // a blank is a code of numbers as well
        };
        const bool hasTexts
            = std::any_of(variable.categories.begin(), variable.categories.end(),
                          [&](const Category &category) { return category.hasCode && isText(category); });
        if (isCharacter || (!hasFormat && hasTexts))
            item.type = itemtype::alpha();
        for (const Note &note : qAsConst(variable.notes)) {
            if (note.type == QLatin1String("content"))
                item.type = note.text;
            else if (note.type == QLatin1String("aliases"))
                item.aliases = aliasesOf(note.text);
            else if (note.type == QLatin1String("subitem of"))
                item.subitemOf = note.text;
        }
        item.isSubitem = !item.subitemOf.isEmpty();
        if (!item.isNumeric())
            item.decimals = 0;
    }

    // Valid ranges are those of a value set, or a statement of their own.
    void keepRanges()
    {
        for (const ValidRanges &valid : qAsConst(variable.valid)) {
            if (!valid.isUsed)
                keepStatement(QStringLiteral("valrng"), textOf(valid.ranges));
        }
    }

    void keepNotes()
    {
        for (const Note &note : qAsConst(variable.notes)) {
            if (!isOfItem(note) && !isOfValueSet(note))
                keepNote(note, variable.statements, QStringLiteral("notes"));
        }
    }

    static bool isOfItem(const Note &note)
    {
        return note.type == QLatin1String("content") || note.type == QLatin1String("aliases")
            || note.type == QLatin1String("subitem of");
    }

    void keepStatement(const QString &key, const QString &value)
    {
        if (!value.isEmpty())
            variable.statements.append({ key, value, xml.line(), 0 });
    }

    void find(const char *id, const QString &message)
    {
        variable.findings.append({ Severity::Warning, id, message, xml.line() });
    }

    Xml &xml;
    Variable variable;
    Item &item = variable.item;
    bool hasFormat = false;
    bool isCharacter = false;
    bool hasTooManyLocations = false;
};

} // namespace

Variable readVariable(Xml &xml, bool &isWeight)
{
    return VariableReader(xml).read(isWeight);
}

} // namespace vanlayout::ddi
