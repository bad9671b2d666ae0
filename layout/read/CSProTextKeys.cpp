#include "read/CSProTextReader_p.h"

#include "read/CSProCommon_p.h"

#include <algorithm>

namespace vanlayout
{

using namespace csprotext;

// clang-format off
const CSProTextReader::Keys &CSProTextReader::dictionaryKeys()
{
    using Reader = CSProTextReader;
    static const Keys keys = {
        { "Version",         Counts::Last,  [](Reader &r, const Statement &s) { r.readVersion(s); } },
        { "Label",           Counts::First, readLabel },
        { "Name",            Counts::First, readName },
        { "Alias",           Counts::All,   readAlias },
        { "Note",            Counts::All,   readNote },
        { "RecordTypeStart", Counts::Last,  [](Reader &r, const Statement &s) { r.recordTypeColumns().start = r.numberIn(s); } },
        { "RecordTypeLen",   Counts::Last,  [](Reader &r, const Statement &s) { r.recordTypeColumns().length = r.numberIn(s); } },
        { "Positions",       Counts::First, [](Reader &r, const Statement &s) { r.readPositions(s); } },
        { "ZeroFill",        Counts::Last,  [](Reader &r, const Statement &s) { r.layout.zeroFill = r.yesOrNoIn(s); } },
        { "DecimalChar",     Counts::Last,  [](Reader &r, const Statement &s) { r.layout.decimalMark = r.yesOrNoIn(s); } },
        { "SecurityOptions", Counts::First, [](Reader &r, const Statement &s) { r.layout.security = Security { textIn(s), {}, {}, {} }; } },
        { "ValueSetImages",  Counts::First, [](Reader &r, const Statement &s) { r.layout.valueSetImages = textIn(s); } },
    };
    return keys;
}

const CSProTextReader::Keys &CSProTextReader::noKeys()
{
    static const Keys keys;
    return keys;
}

const CSProTextReader::Keys &CSProTextReader::levelKeys()
{
    static const Keys keys = {
        { "Label", Counts::First, readLabel },
        { "Name",  Counts::First, readName },
        { "Alias", Counts::All,   readAlias },
        { "Note",  Counts::All,   readNote },
    };
    return keys;
}

const CSProTextReader::Keys &CSProTextReader::recordKeys()
{
    using Reader = CSProTextReader;
    static const Keys keys = {
        { "Label",           Counts::First, readLabel },
        { "Name",            Counts::First, readName },
        { "Alias",           Counts::All,   readAlias },
        { "Note",            Counts::All,   readNote },
        { "RecordTypeValue", Counts::First, [](Reader &r, const Statement &s) { r.record->recordType = textOf(tokenOf(s.value)); } },
        { "Required",        Counts::Last,  [](Reader &r, const Statement &s) { r.record->required = r.yesOrNoIn(s); } },
        { "MaxRecords",      Counts::Last,  [](Reader &r, const Statement &s) { r.record->maximum = r.numberIn(s); } },
        { "RecordLen",       Counts::First, [](Reader &r, const Statement &s) { r.record->length = r.numberIn(s); } },
        { "OccurrenceLabel", Counts::All,   readOccurrenceLabel },
        { "OccurenceLabel",  Counts::All,   readOccurrenceLabel }, // as old versions spell it
    };
    return keys;
}

const CSProTextReader::Keys &CSProTextReader::itemKeys()
{
    using Reader = CSProTextReader;
    static const Keys keys = {
        { "Label",             Counts::First, readLabel },
        { "Name",              Counts::First, readName },
        { "Alias",             Counts::All,   readAlias },
        { "Note",              Counts::All,   readNote },
        { "Start",             Counts::First, [](Reader &r, const Statement &s) { r.item->start = r.numberIn(s); } },
        { "Len",               Counts::First, [](Reader &r, const Statement &s) { r.item->length = r.numberIn(s); } },
        { "ItemType",          Counts::First, [](Reader &r, const Statement &s) { r.readItemType(s); } },
        { "DataType",          Counts::Last,  [](Reader &r, const Statement &s) { r.readDataType(s); } },
        { "Occurrences",       Counts::Last,  [](Reader &r, const Statement &s) { r.item->occurrences = r.numberIn(s); } },
        { "Decimal",           Counts::First, [](Reader &r, const Statement &s) { r.item->decimals = r.numberIn(s); } },
        { "DecimalChar",       Counts::Last,  [](Reader &r, const Statement &s) { r.item->decimalMark = r.yesOrNoIn(s); } },
        { "ZeroFill",          Counts::Last,  [](Reader &r, const Statement &s) { r.item->zeroFill = r.yesOrNoIn(s); } },
        { "CaptureType",       Counts::Last,  [](Reader &r, const Statement &s) { r.readCaptureType(s); } },
        { "CaptureDateFormat", Counts::All,   [](Reader &r, const Statement &s) { r.readCaptureDateFormat(s); } },
        { "OccurrenceLabel",   Counts::All,   readOccurrenceLabel },
        { "OccurenceLabel",    Counts::All,   readOccurrenceLabel }, // as old versions spell it
    };
    return keys;
}

// The keys of a value set before its first value.
const CSProTextReader::Keys &CSProTextReader::valueSetKeys()
{
    using Reader = CSProTextReader;
    static const Keys keys = {
        { "Value", Counts::All,   [](Reader &r, const Statement &s) { r.readValue(s); } },
        { "Label", Counts::First, readLabel },
        { "Name",  Counts::First, readName },
        { "Alias", Counts::All,   readAlias },
        { "Note",  Counts::All,   readNote },
        { "Link",  Counts::First, [](Reader &r, const Statement &s) { r.set->link = textIn(s); } },
    };
    return keys;
}

// The keys after a value. Its line already has a label, so `Label` is a second one.
const CSProTextReader::Keys &CSProTextReader::valueKeys()
{
    using Reader = CSProTextReader;
    static const Keys keys = {
        { "Value",     Counts::All,   [](Reader &r, const Statement &s) { r.readValue(s); } },
        { "Note",      Counts::All,   readNote },
        { "Image",     Counts::First, [](Reader &r, const Statement &s) { r.values.back().image = textIn(s); } },
        { "Name",      Counts::First, [](Reader &r, const Statement &s) { r.readSpecial(s); } },
        { "TextColor", Counts::First, [](Reader &r, const Statement &s) { r.values.back().textColor = textIn(s); } },
        { "Label",     Counts::All,   [](Reader &r, const Statement &s) { r.keepRepeated(s); } },
    };
    return keys;
}

const CSProTextReader::Keys &CSProTextReader::relationKeys()
{
    using Reader = CSProTextReader;
    static const Keys keys = {
        { "Name",          Counts::First, readName },
        { "Alias",         Counts::All,   readAlias },
        { "Label",         Counts::All,   [](Reader &r, const Statement &s) { r.readRelationLabel(s); } },
        { "Primary",       Counts::First, [](Reader &r, const Statement &s) { r.relation->primary = textIn(s); } },
        { "PrimaryLink",   Counts::All,   [](Reader &r, const Statement &s) { r.readPrimaryLink(s); } },
        { "Secondary",     Counts::All,   [](Reader &r, const Statement &s) { r.readSecondary(s); } },
        { "SecondaryLink", Counts::All,   [](Reader &r, const Statement &s) { r.readSecondaryLink(s); } },
    };
    return keys;
}
// clang-format on

void CSProTextReader::readKey(const Statement &statement)
{
    if (!section) {
        keep(textOf(statement.key), statement);
        return;
    }
    const auto key = std::find_if(section->keys.begin(), section->keys.end(),
                                  [&](const Key &candidate) { return isSameKey(candidate.name, statement.key); });
    if (key != section->keys.end())
        readKnownKey(*key, statement);
    else if (section->end == &CSProTextReader::endLanguages)
        readLanguage(statement);
    else
        keepUnknownKey(statement);
}

void CSProTextReader::readKnownKey(const Key &key, const Statement &statement)
{
    if (!statement.hasEqualsSign)
        warn("no-equals-sign", QStringLiteral("there is no = after %1; write %1=").arg(textOf(statement.key)),
             statement.line);
    Statement &counting = stated[size_t(&key - section->keys.data())];
    const bool isRepeated = counting.line != 0 && key.counts != Counts::All;
    if (isRepeated)
        keepRepeated(key.counts == Counts::Last ? counting : statement);
    if (isRepeated && key.counts == Counts::First)
        return;
    counting = statement;
    key.read(*this, statement);
}

void CSProTextReader::readLanguage(const Statement &statement)
{
    if (!statement.hasEqualsSign)
        warn("no-equals-sign", QStringLiteral("there is no = after the language; write CODE=Name"), statement.line);
    layout.languages.append({ textOf(statement.key), textOf(statement.value) });
}

void CSProTextReader::keepUnknownKey(const Statement &statement)
{
    keep(textOf(statement.key), statement);
    warn("unknown-key",
         QStringLiteral("the key %1 is unknown here; the line is kept unchanged").arg(shown(statement.key)),
         statement.line);
}

void CSProTextReader::keepBadOccurrence(const Statement &statement)
{
    keep(textOf(statement.key), statement);
    warn("bad-occurrence",
         QStringLiteral("%1 is %2; write the number of an occurrence, a comma and the label")
             .arg(textOf(statement.key), shown(statement.value)),
         statement.line);
}

void CSProTextReader::keep(const QString &key, const Statement &statement)
{
    diagnostics.addExtra({ statement.line, QString() }, key, textOf(statement.value));
}

void CSProTextReader::keepRepeated(const Statement &statement)
{
    const QString key = textOf(statement.key);
    keep(QStringLiteral("repeated ") + key, statement);
    inform("repeated-key", QStringLiteral("%1 occurs more than once; this one is ignored").arg(key), statement.line);
}

int CSProTextReader::numberIn(const Statement &statement)
{
    const Number number = numberOf(statement.value);
    if (!number.isWhole)
        warn("bad-number",
             QStringLiteral("%1 is %2, which is not an integer; it is read as %3")
                 .arg(textOf(statement.key), shown(statement.value), QString::number(number.value)),
             statement.line);
    return number.value;
}

bool CSProTextReader::yesOrNoIn(const Statement &statement)
{
    const bool isNo = isSameKey(statement.value.substr(0, 1), "n");
    if (!isYes(statement.value) && !isNo)
        warn("neither-yes-nor-no",
             QStringLiteral("%1 is %2, which is neither Yes nor No; it is read as No")
                 .arg(textOf(statement.key), shown(statement.value)),
             statement.line);
    return isYes(statement.value);
}

Labels CSProTextReader::labelsIn(std::string_view text, int line)
{
    Labels made = labels.of(text, [this](std::string_view parts) { return labelsOf(parts, layout.languages); });
    checkPartCount(made.parts.size(), line);
    return made;
}

// The label of the dictionary comes before the languages, so it is checked after them.
void CSProTextReader::checkPartCount(int parts, int line)
{
    const bool isTooEarly = !level && !areLanguagesRead;
    if (parts > std::max(1, int(layout.languages.size())) && !isTooEarly)
        inform("label-without-language",
               QStringLiteral("the label has %1 parts, but %2 languages are declared")
                   .arg(parts)
                   .arg(layout.languages.size()),
               line);
}

QString CSProTextReader::textIn(const Statement &statement)
{
    return textOf(statement.value);
}

void CSProTextReader::readName(CSProTextReader &reader, const Statement &statement)
{
    *reader.named.name = textIn(statement);
}

void CSProTextReader::readLabel(CSProTextReader &reader, const Statement &statement)
{
    if (reader.named.labels == &reader.layout.labels)
        reader.dictionaryLabelLine = statement.line;
    *reader.named.labels = reader.labelsIn(statement.value, statement.line);
}

void CSProTextReader::readAlias(CSProTextReader &reader, const Statement &statement)
{
    reader.named.aliases->append(textIn(statement));
}

void CSProTextReader::readNote(CSProTextReader &reader, const Statement &statement)
{
    *reader.named.note += notePieceOf(statement.value);
}

void CSProTextReader::readOccurrenceLabel(CSProTextReader &reader, const Statement &statement)
{
    const OccurrenceLine line = occurrenceLineOf(statement.value);
    if (line.occurrence < 1) {
        reader.keepBadOccurrence(statement);
        return;
    }
    reader.named.occurrenceLabels->append({ line.occurrence, reader.labelsIn(line.label, statement.line) });
    reader.occurrenceLines.push_back(statement.line);
}

void CSProTextReader::readVersion(const Statement &statement)
{
    constexpr std::string_view program = "CSPro ";
    const bool isOfProgram = statement.value.substr(0, program.size()) == program;
    layout.formatVersion = textOf(isOfProgram ? statement.value.substr(program.size()) : statement.value).trimmed();
}

void CSProTextReader::readPositions(const Statement &statement)
{
    layout.relativePositions = isSameKey(statement.value, "Relative");
    if (!*layout.relativePositions && !isSameKey(statement.value, "Absolute"))
        warn("unknown-word",
             QStringLiteral("Positions is %1, which is unknown; it is read as Absolute").arg(shown(statement.value)),
             statement.line);
}

RecordTypeColumns &CSProTextReader::recordTypeColumns()
{
    if (!layout.recordType)
        layout.recordType = RecordTypeColumns();
    return *layout.recordType;
}

void CSProTextReader::readItemType(const Statement &statement)
{
    item->isSubitem = isSameKey(statement.value, "SubItem");
    if (!item->isSubitem && !isSameKey(statement.value, "Item"))
        warn("unknown-word",
             QStringLiteral("ItemType is %1, which is unknown; it is read as Item").arg(shown(statement.value)),
             statement.line);
}

void CSProTextReader::readDataType(const Statement &statement)
{
    item->type = cspro::lowerCased(textIn(statement));
    if (!item->isNumeric() && !item->isAlpha())
        warn("unknown-type",
             QStringLiteral("DataType is %1, which is neither Numeric nor Alpha").arg(shown(statement.value)),
             statement.line);
}

void CSProTextReader::readCaptureType(const Statement &statement)
{
    const QString word = textIn(statement);
    const std::optional<QString> type = cspro::captureTypeOf(word);
    item->capture.reset();
    if (!type) {
        keep(textOf(statement.key), statement);
        warn("unknown-word",
             QStringLiteral("CaptureType is %1, which is unknown; the item has none").arg(shown(statement.value)),
             statement.line);
    } else if (!type->isEmpty()) {
        item->capture = Capture{ *type, QString() };
    }
}

// Only a capture type date has a format; otherwise the key is unknown. The last one counts.
void CSProTextReader::readCaptureDateFormat(const Statement &statement)
{
    if (!item->capture || item->capture->type != QLatin1String("date")) {
        keepUnknownKey(statement);
        return;
    }
    if (dateFormat.line != 0)
        keepRepeated(dateFormat);
    dateFormat = statement;
}

void CSProTextReader::readValue(const Statement &statement)
{
    leave();
    enter(&valueSection(), statement.line);
    const ValueLine line = valueLineOf(statement.value);
    const Codes made = codes.of(line.codes, codesOf);
    Value &value = values.emplace_back();
    noteValueLine();
    value.ranges = made.ranges;
    value.labels = labelsIn(line.label, statement.line);
    areCodesNumbers = made.areNumbers;
    named = { nullptr, nullptr, &value.note, nullptr };
}

void CSProTextReader::readSpecial(const Statement &statement)
{
    const std::string_view word = tokenOf(statement.value);
    const std::optional<Special> special = cspro::specialOf(textOf(word));
    values.back().special = special.value_or(Special::None);
    if (special)
        return;
    keep(textOf(statement.key), statement);
    warn("unknown-special",
         QStringLiteral("the special value %1 is unknown; the value is read as an ordinary one").arg(shown(word)),
         statement.line);
}

// Begins a new link if the last one already has its secondary.
void CSProTextReader::openLink()
{
    if (!relation->links.isEmpty() && !hasSecondary)
        return;
    relation->links.append(RelationLink());
    hasPrimaryLink = false;
    hasSecondary = false;
    hasSecondaryLink = false;
}

// CSPro accepts this key but does not use it.
void CSProTextReader::readRelationLabel(const Statement &statement)
{
    keep(textOf(statement.key), statement);
    inform("relation-label", QStringLiteral("a relation has no label; the line is kept unchanged"), statement.line);
}

void CSProTextReader::readLinkItem(const Statement &statement, QString RelationLink::*member, bool &isRead)
{
    if (isRead) {
        keepRepeated(statement);
        return;
    }
    relation->links.last().*member = cspro::linkItemOf(textIn(statement));
    isRead = true;
}

void CSProTextReader::readPrimaryLink(const Statement &statement)
{
    openLink();
    readLinkItem(statement, &RelationLink::primaryLink, hasPrimaryLink);
}

void CSProTextReader::readSecondary(const Statement &statement)
{
    openLink();
    relation->links.last().secondary = textIn(statement);
    hasSecondary = true;
}

void CSProTextReader::readSecondaryLink(const Statement &statement)
{
    if (relation->links.isEmpty())
        openLink();
    readLinkItem(statement, &RelationLink::secondaryLink, hasSecondaryLink);
}

} // namespace vanlayout
