#include "write/CSProText.h"

#include "read/CSProCommon_p.h"
#include "read/Decoding_p.h"
#include "util/Numbers_p.h"
#include "write/CSProForms_p.h"
#include "write/CSProTextLines_p.h"
#include "write/WriteAll_p.h"

#include <QIODevice>

#include <algorithm>

namespace vanlayout
{

namespace
{

/// A version of CSPro that is compared as numbers: "7.10" is later than "7.7".
bool isBefore(const QString &version, int major, int minor)
{
    const QStringList parts = version.split(QLatin1Char('.'));
    const int majorPart = numbers::toInt(QStringView(parts.constFirst()));
    const int minorPart = parts.size() > 1 ? numbers::toInt(QStringView(parts.at(1))) : 0;
    return majorPart < major || (majorPart == major && minorPart < minor);
}

bool hasWords(const Security &security)
{
    return security.allowDataViewerModifications || security.allowExport || security.cachedPasswordMinutes;
}

QString withCapital(QString word)
{
    if (!word.isEmpty())
        word[0] = qAsConst(word).at(0).toUpper();
    return word;
}

// The path of a picture as CSPro 7 writes it: relative to the directory, with backslashes.
QString imagePath(const QString &path)
{
    QString image = path;
    image.replace(QLatin1Char('/'), QLatin1Char('\\'));
    const bool isAnchored = image.startsWith(QLatin1Char('.')) || image.startsWith(QLatin1Char('\\'))
        || (image.size() > 1 && image.at(1) == QLatin1Char(':'));
    return isAnchored ? image : QStringLiteral(".\\") + image;
}

/// Writes one dictionary.
class TextWriter
{
public:
    TextWriter(const Layout &dictionary, QIODevice &target, const CSProTextStyle &textStyle, Losses *lossList)
        : layout(dictionary)
        , device(target)
        , isOwnForm(dictionary.format == Format::CSProText)
        , version(isOwnForm ? dictionary.formatVersion : QStringLiteral("7.7"))
        , isAnsi(isOwnForm && dictionary.encoding == QLatin1String("windows-1252") && isBefore(version, 5, 0))
        , lineEnd(textStyle.lineEnd == CSProTextStyle::LineEnd::CrLf ? "\r\n" : "\n")
        , spelling(dictionary.languages, lossList)
    {
        const bool isMarked = textStyle.mark == CSProTextStyle::Mark::OfVersion
            ? !isBefore(version, 5, 0)
            : textStyle.mark == CSProTextStyle::Mark::Present;
        if (isMarked && !isAnsi)
            buffer += "\xEF\xBB\xBF";
    }

    bool write()
    {
        writeDictionary();
        writeLanguages();
        for (const Level &level : layout.levels)
            writeLevel(level);
        for (const Relation &relation : layout.relations)
            writeRelation(relation);
        reportExtras();
        flush();
        return isWhole;
    }

private:
    void line(const char *key, const QString &value)
    {
        constexpr int large = 1 << 16;
        buffer += key;
        buffer += '=';
        buffer += isAnsi ? ansi(value) : value.toUtf8();
        // A line that ends in "&" would be continued by the next one.
        if (buffer.endsWith('&'))
            buffer += ' ';
        buffer += lineEnd;
        if (buffer.size() > large)
            flush();
    }
    QByteArray ansi(const QString &value)
    {
        QByteArray bytes = decoding::toWindows1252(value);
        isAltered = isAltered || bytes.count('?') != value.count(QLatin1Char('?'));
        return bytes;
    }
    void line(const char *key, int value) { line(key, QString::number(value)); }
    void yesOrNo(const char *key, bool value) { line(key, value ? QStringLiteral("Yes") : QStringLiteral("No")); }
    void section(const char *name)
    {
        if (hasSection)
            buffer += lineEnd;
        hasSection = true;
        buffer += name;
        buffer += lineEnd;
    }
    void flush()
    {
        isWhole = isWhole && writeAll(device, buffer.constData(), buffer.size());
        buffer.clear();
    }

    // The members that a dictionary, a level, a record, an item and a value set have in common.
    template <typename Element> void writeNamed(const Element &element, const QString &path)
    {
        line("Label", spelling.label(element.labels, path));
        line("Name", spelling.text(element.name, path, QStringLiteral("name")));
        writeAliases(element.aliases, path);
        writeNote(element.note, path);
    }
    void writeAliases(const QStringList &aliases, const QString &path)
    {
        for (const QString &alias : aliases)
            line("Alias", spelling.text(alias, path, QStringLiteral("alias")));
    }
    void writeNote(const QString &note, const QString &path)
    {
        const QStringList pieces = spelling.note(note, path);
        for (const QString &piece : pieces)
            line("Note", piece);
    }
    void writeOccurrenceLabels(const QVector<OccurrenceLabel> &labels, const QString &path)
    {
        for (const OccurrenceLabel &label : labels)
            line("OccurrenceLabel",
                 QString::number(label.occurrence) + QLatin1Char(',') + spelling.label(label.labels, path));
    }

    void writeDictionary()
    {
        section("[Dictionary]");
        if (!version.isEmpty())
            line("Version", QStringLiteral("CSPro ") + spelling.text(version, QString(), QStringLiteral("version")));
        writeNamed(layout, QString());
        const RecordTypeColumns type = layout.recordType.value_or(RecordTypeColumns());
        line("RecordTypeStart", type.start);
        line("RecordTypeLen", type.length);
        if (layout.relativePositions || !isOwnForm)
            line("Positions",
                 layout.relativePositions.value_or(false) ? QStringLiteral("Relative") : QStringLiteral("Absolute"));
        yesOrNo("ZeroFill", layout.zeroFill);
        yesOrNo("DecimalChar", layout.decimalMark);
        writeSettings();
        if (!layout.editable)
            section("[NoEdit]");
    }

    void writeSettings()
    {
        if (layout.security && layout.security->settings)
            line("SecurityOptions",
                 spelling.text(isOwnForm ? *layout.security->settings : layout.security->settings->toUpper(), QString(),
                               QStringLiteral("settings")));
        if (layout.valueSetImages)
            line("ValueSetImages", spelling.text(*layout.valueSetImages, QString(), QStringLiteral("ValueSetImages")));
        // The settings are these words in encrypted form, and CSPro reads only the settings.
        if (layout.security && !layout.security->settings && hasWords(*layout.security))
            spelling.lose(QString(),
                          QStringLiteral("the security settings in words, because there are no encrypted ones"));
        if (layout.readOptimization && !*layout.readOptimization)
            spelling.lose(QString(), QStringLiteral("readOptimization, which is false"));
        if (layout.enableBinaryItems && *layout.enableBinaryItems)
            spelling.lose(QString(), QStringLiteral("enableBinaryItems, which is true"));
    }

    void writeLanguages()
    {
        if (layout.languages.isEmpty())
            return;
        section("[Languages]");
        for (const Language &language : layout.languages) {
            buffer += spelling.languageCode(language.name).toUtf8();
            line("", spelling.text(language.label, QString(), QStringLiteral("label of a language")));
        }
    }

    void writeLevel(const Level &level)
    {
        const QString path = cspro::nameInPath(level.name);
        section("[Level]");
        writeNamed(level, path);
        section("[IdItems]");
        const QString ids = cspro::childPath(path, cspro::idsName());
        for (const Item &item : level.ids)
            writeItem(item, ids);
        for (const Record &record : level.records)
            writeRecord(record, path);
    }

    void writeRecord(const Record &record, const QString &levelPath)
    {
        const QString path = cspro::childPath(levelPath, record.name);
        section("[Record]");
        writeNamed(record, path);
        line("RecordTypeValue", spelling.recordType(record.recordType, path));
        if (!record.required)
            yesOrNo("Required", false);
        if (record.maximum != 1)
            line("MaxRecords", record.maximum);
        line("RecordLen", record.length ? *record.length : lengthOfWritten(record));
        writeOccurrenceLabels(record.occurrenceLabels, path);
        for (const Item &item : record.items)
            writeItem(item, path);
    }

    bool isWritable(const Item &item) const { return isOwnForm || !csproforms::isBinary(item); }
    int lengthOfWritten(Record record) const
    {
        const auto isOmitted = [this](const Item &item) { return !isWritable(item); };
        if (std::any_of(record.items.cbegin(), record.items.cend(), isOmitted))
            record.items.erase(std::remove_if(record.items.begin(), record.items.end(), isOmitted), record.items.end());
        return csproforms::recordLength(layout, record);
    }

    void writeItem(const Item &item, const QString &parent)
    {
        const QString path = cspro::childPath(parent, item.name);
        if (!isWritable(item)) {
            spelling.lose(path, QStringLiteral("the item, because its type is %1").arg(item.type));
            return;
        }
        section("[Item]");
        writeNamed(item, path);
        line("Start", item.start);
        line("Len", item.length);
        if (item.isSubitem)
            line("ItemType", QStringLiteral("SubItem"));
        if (!item.isNumeric() || !isBefore(version, 7, 7))
            line("DataType", withCapital(spelling.text(item.type, path, QStringLiteral("type"))));
        if (item.occurrences != 1)
            line("Occurrences", item.occurrences);
        if (item.decimals != 0)
            line("Decimal", item.decimals);
        if (item.decimalMark)
            yesOrNo("DecimalChar", true);
        if (item.zeroFill)
            yesOrNo("ZeroFill", true);
        if (item.capture)
            writeCapture(*item.capture, path);
        writeOccurrenceLabels(item.occurrenceLabels, path);
        for (const ValueSet &set : item.valueSets)
            writeValueSet(set, item, path);
    }

    void writeCapture(const Capture &capture, const QString &path)
    {
        line("CaptureType", withCapital(capture.type));
        if (capture.dateFormat.isEmpty())
            return;
        if (capture.type == QLatin1String("date"))
            line("CaptureDateFormat", spelling.text(capture.dateFormat, path, QStringLiteral("date format")));
        else
            spelling.lose(path,
                          QStringLiteral("the date format %1, because items are not captured as dates")
                              .arg(cspro::quoted(capture.dateFormat)));
    }

    void writeValueSet(const ValueSet &set, const Item &item, const QString &parent)
    {
        const QString path = cspro::childPath(parent, set.name);
        section("[ValueSet]");
        writeNamed(set, path);
        if (!set.link.isEmpty())
            line("Link", spelling.text(set.link, path, QStringLiteral("link")));
        if (linkedSets.isCopy(set))
            return;
        for (int index = 0; index < set.values.size(); ++index)
            writeValue(set.values.at(index), item, cspro::valuePath(path, index + 1));
    }

    void writeValue(const Value &value, const Item &item, const QString &path)
    {
        QString spelled = spelling.codes(value, item, path);
        const QString label = spelling.valueLabel(value.labels, path);
        if (!label.isEmpty())
            spelled += QLatin1Char(';') + label;
        line("Value", spelled);
        writeNote(value.note, path);
        if (!value.image.isEmpty())
            line("Image",
                 spelling.text(isOwnForm ? value.image : imagePath(value.image), path, QStringLiteral("image")));
        if (!value.textColor.isEmpty())
            line("TextColor", spelling.text(value.textColor, path, QStringLiteral("text color")));
        if (value.special != Special::None)
            line("Name", cspro::wordOfSpecial(value.special) + QStringLiteral(",Special"));
    }

    void writeRelation(const Relation &relation)
    {
        const QString path = cspro::relationPath(relation.name);
        section("[Relation]");
        line("Name", spelling.text(relation.name, path, QStringLiteral("name")));
        writeAliases(relation.aliases, path);
        line("Primary", spelling.text(relation.primary, path, QStringLiteral("primary")));
        for (const RelationLink &link : relation.links) {
            if (!link.primaryLink.isEmpty())
                line("PrimaryLink", spelling.text(link.primaryLink, path, QStringLiteral("link of the primary")));
            line("Secondary", spelling.text(link.secondary, path, QStringLiteral("secondary")));
            if (!link.secondaryLink.isEmpty())
                line("SecondaryLink", spelling.text(link.secondaryLink, path, QStringLiteral("link of the secondary")));
        }
    }

    void reportExtras()
    {
        if (isAltered)
            spelling.lose(QString(), QStringLiteral("characters that Windows-1252 does not have; they are \"?\""));
        const bool hasSettings = layout.security && layout.security->settings;
        const Extra *encrypted = hasSettings ? csproforms::renamedSecurityWord(layout) : nullptr;
        for (const Extra &extra : layout.extras) {
            if (&extra != encrypted)
                spelling.lose(extra.path, csproforms::lossOf(extra));
        }
    }

    const Layout &layout;
    QIODevice &device;
    bool isOwnForm;
    QString version;
    bool isAnsi;
    const char *lineEnd;
    CSProTextSpelling spelling;
    QByteArray buffer;
    bool hasSection = false;
    bool isWhole = true;
    bool isAltered = false;
    LinkedValueSets linkedSets;
};

} // namespace

bool writeCSProText(const Layout &layout, QIODevice &device, const CSProTextStyle &style, Losses *losses)
{
    return TextWriter(layout, device, style, losses).write();
}

} // namespace vanlayout
