#include "read/CSProJsonDraft_p.h"

#include "read/CSProCommon_p.h"
#include "read/JsonSpelling_p.h"

#include <QLocale>

#include <algorithm>
#include <utility>

namespace vanlayout
{

namespace
{

// Whether two parts have the same language. A label with few parts is checked without a copy of its languages.
bool hasLanguageTwice(const QVector<Label> &parts)
{
    constexpr int few = 8;
    if (parts.size() > few) {
        std::set<QString> names;
        return !std::all_of(parts.begin(), parts.end(),
                            [&names](const Label &part) { return names.insert(part.language.toUpper()).second; });
    }
    for (QVector<Label>::const_iterator part = parts.begin(); part != parts.end(); ++part)
        if (std::any_of(part + 1, parts.end(), [part](const Label &other) {
                return part->language.compare(other.language, Qt::CaseInsensitive) == 0;
            }))
            return true;
    return false;
}

bool isBinary(const QString &type)
{
    return type != itemtype::numeric() && type != itemtype::alpha() && cspro::itemTypeOf(type);
}

Item &itemAt(Layout &layout, const ElementAddress &address)
{
    Level &level = layout.levels[address.level];
    return address.isInIds() ? level.ids[address.item] : level.records[address.record].items[address.item];
}

} // namespace

// Labels

void CSProJsonDraft::beginLabel()
{
    label = Label();
}

void CSProJsonDraft::endLabel()
{
    if (!label.language.isEmpty())
        noteLanguage(label.language);
    labels->parts.append(std::move(label));
}

void CSProJsonDraft::endLabels()
{
    const QVector<Label> &parts = labels->parts;
    if (parts.isEmpty())
        findings.inform("empty-labels", QStringLiteral("the list \"labels\" is empty; there is no label"), address);
    else if (parts.size() > 1 && hasLanguageTwice(parts))
        findings.inform("repeated-language",
                        QStringLiteral("a label has two texts in one language; both are kept, and CSPro uses the last"),
                        address);
    cspro::dropEmptyLabel(*labels);
}

void CSProJsonDraft::noteLanguage(const QString &name)
{
    if (!usedLanguages.empty() && usedLanguages.back().name == name)
        return;
    if (usedLanguageNames.insert(name.toUpper()).second)
        usedLanguages.push_back({ name, address });
}

void CSProJsonDraft::beginLanguage()
{
    language = Language();
}

void CSProJsonDraft::endLanguage()
{
    layout.languages.append(std::move(language));
}

void CSProJsonDraft::endLanguages()
{
    if (layout.languages.isEmpty())
        findings.inform("empty-languages", QStringLiteral("the list \"languages\" is empty; no language is declared"),
                        address);
}

void CSProJsonDraft::beginOccurrenceLabel()
{
    occurrenceLabel = OccurrenceLabel();
}

bool CSProJsonDraft::endOccurrenceLabel()
{
    if (occurrenceLabel.occurrence < 1) {
        findings.warn("bad-occurrence", QStringLiteral("a label has no valid occurrence number and is not used"),
                      address);
        return false;
    }
    occurrenceLabels->append(std::move(occurrenceLabel));
    return true;
}

void CSProJsonDraft::checkOccurrenceLabels(const QVector<OccurrenceLabel> &list, int maximum)
{
    const bool areUsable = std::all_of(list.begin(), list.end(), [maximum](const OccurrenceLabel &entry) {
        return maximum > 1 && entry.occurrence <= maximum;
    });
    if (!areUsable)
        findings.warn("label-without-occurrence",
                      QStringLiteral("a label is for an occurrence that does not exist, because the maximum is %1; "
                                     "CSPro omits it")
                          .arg(maximum),
                      address);
}

// Codes

void CSProJsonDraft::beginPair()
{
    pair = Pair();
}

JsonUse CSProJsonDraft::setCode(const QString &text)
{
    pair.code = text;
    pair.hasCode = true;
    return JsonUse::Held;
}

void CSProJsonDraft::setRange(QStringList ends, bool isSound, std::string_view json)
{
    pair.rangeEnds = std::move(ends);
    pair.isRangeSound = isSound && pair.rangeEnds.size() == 2;
    pair.rangeJson = json;
    pair.hasRange = true;
}

bool CSProJsonDraft::endPair()
{
    if (!pair.hasCode)
        return endRange();
    value.ranges.append({ pair.code, QString() });
    if (pair.hasRange) {
        findings.addExtra(QStringLiteral("pairs.range"), jsonSpellingOf(pair.rangeJson), address);
        findings.warn("value-and-range", QStringLiteral("a pair has both \"value\" and \"range\"; \"value\" is used"),
                      address);
    }
    return true;
}

bool CSProJsonDraft::endRange()
{
    if (!pair.isRangeSound) {
        findings.warn("bad-pair",
                      QStringLiteral("a pair has neither a \"value\" nor a \"range\" of two texts; it is not used"),
                      address);
        return false;
    }
    value.ranges.append({ pair.rangeEnds.constFirst(), pair.rangeEnds.constLast() });
    return true;
}

// Values

void CSProJsonDraft::beginValue()
{
    value = Value();
    address.value = valueSet.values.size();
}

JsonUse CSProJsonDraft::setSpecial(const QString &text)
{
    const auto special = cspro::specialOf(text);
    value.special = special.value_or(Special::None);
    return special ? JsonUse::Held : JsonUse::Unknown;
}

void CSProJsonDraft::endValue()
{
    valueSet.values.append(std::move(value));
    address.value = -1;
}

void CSProJsonDraft::beginValueSet()
{
    valueSet = ValueSet();
    address.valueSet = item.valueSets.size();
}

void CSProJsonDraft::endValueSet()
{
    item.valueSets.append(std::move(valueSet));
    address.valueSet = -1;
}

// Items

void CSProJsonDraft::beginCapture()
{
    capture = Capture();
}

JsonUse CSProJsonDraft::setCaptureType(const QString &text)
{
    const auto type = cspro::captureTypeOf(text);
    capture.type = type.value_or(QString());
    return type ? JsonUse::Held : JsonUse::Unknown;
}

JsonUse CSProJsonDraft::setDateFormat(const QString &text)
{
    statedDateFormat = text;
    capture.dateFormat = text.toUpper();
    return JsonUse::Held;
}

void CSProJsonDraft::endCapture()
{
    if (!capture.type.isEmpty())
        item.capture = capture;
    else if (!capture.dateFormat.isEmpty())
        keepDateFormat();
}

void CSProJsonDraft::keepDateFormat()
{
    const QByteArray bytes = statedDateFormat.toUtf8();
    findings.addExtra(QStringLiteral("capture.dateFormat"),
                      jsonSpellingOfText({ bytes.constData(), size_t(bytes.size()) }), address);
    findings.warn("date-without-capture", QStringLiteral("\"dateFormat\" has no \"type\" of \"capture\""), address);
}

QVector<Item> &CSProJsonDraft::openItems()
{
    return address.isInIds() ? level.ids : record.items;
}

void CSProJsonDraft::beginItems()
{
    columnsOfItems.clear();
    hasParent = false;
}

void CSProJsonDraft::beginItem()
{
    item = Item();
    item.type.clear();
    statements = ItemStatements();
    address.item = openItems().size();
}

JsonUse CSProJsonDraft::setContentType(const QString &text)
{
    const auto type = cspro::itemTypeOf(text);
    if (!type)
        findings.warn(
            "unknown-type",
            QStringLiteral("the \"contentType\" %1 is unknown; CSPro drops the item").arg(cspro::quoted(text)),
            address);
    item.type = type.value_or(cspro::lowerCased(text));
    return JsonUse::Held;
}

void CSProJsonDraft::setStart(int start)
{
    item.start = start;
    statements.columns.hasStart = true;
}

void CSProJsonDraft::setSubitemOffset(int offset)
{
    statements.columns.subitemOffset = offset;
    const QLatin1String quotationMark(isNumberText ? "\"" : "");
    statements.offset = quotationMark + QString::fromLatin1(number.data(), int(number.size())) + quotationMark;
}

void CSProJsonDraft::setLength(int length)
{
    item.length = length;
    statements.hasLength = true;
}

void CSProJsonDraft::setDecimalMark(bool isWritten)
{
    item.decimalMark = isWritten;
    statements.hasDecimalMark = true;
}

void CSProJsonDraft::setZeroFill(bool isFilled)
{
    item.zeroFill = isFilled;
    statements.hasZeroFill = true;
}

void CSProJsonDraft::endItem()
{
    if (isBinary(item.type))
        endBinaryItem();
    else if (!statements.hasLength)
        warnOfMissingKey("length");
    endSubitem();
    endNumber();
    checkOccurrenceLabels(item.occurrenceLabels, item.occurrences);
    openItems().append(std::move(item));
    columnsOfItems.push_back(statements.columns);
    address.item = -1;
}

// Documents, audio, images and geometries take up one column each and are never subitems.
void CSProJsonDraft::endBinaryItem()
{
    if (statements.hasLength && item.length != 1)
        keepLength();
    item.length = 1;
    if (!item.isSubitem)
        return;
    item.isSubitem = false;
    findings.addExtra(QStringLiteral("subitem"), QStringLiteral("true"), address);
    findings.warn("unusable-subitem", QStringLiteral("an item of this type cannot be a subitem; it is read as an item"),
                  address);
}

void CSProJsonDraft::keepLength()
{
    findings.addExtra(QStringLiteral("length"), QString::number(item.length), address);
    findings.inform("unused-length", QStringLiteral("an item of this type takes one column; its \"length\" is ignored"),
                    address);
}

void CSProJsonDraft::endSubitem()
{
    if (statements.columns.subitemOffset && !(item.isSubitem && hasParent))
        keepSubitemOffset();
    if (!item.isSubitem) {
        hasParent = true;
        parent = item.name;
    } else if (hasParent) {
        item.subitemOf = parent;
    } else {
        findings.warn("subitem-without-item", QStringLiteral("there is no item before the subitem"), address);
    }
}

void CSProJsonDraft::keepSubitemOffset()
{
    findings.addExtra(QStringLiteral("subitemOffset"), statements.offset, address);
    findings.warn("unusable-offset", QStringLiteral("\"subitemOffset\" is for subitems that follow an item"), address);
}

// Decimal mark and zero fill apply only to numbers.
void CSProJsonDraft::endNumber()
{
    const bool hasDecimals = item.isNumeric() && item.decimals > 0;
    if (hasDecimals && !statements.hasDecimalMark)
        warnOfMissingKey("decimalMark");
    if (item.isNumeric() && !statements.hasZeroFill)
        withoutZeroFill.push_back(address);
    item.decimalMark = item.decimalMark && hasDecimals;
    item.zeroFill = item.zeroFill && item.isNumeric();
}

void CSProJsonDraft::warnOfMissingKey(const char *key)
{
    findings.warn("missing-key", QStringLiteral("there is no usable \"%1\"").arg(QLatin1String(key)), address);
}

// Records and levels

void CSProJsonDraft::beginIds()
{
    address.record = ElementAddress::ids;
    beginItems();
}

void CSProJsonDraft::endIds()
{
    columnsOfLevels.back().ids = std::move(columnsOfItems);
    address.record = -1;
}

void CSProJsonDraft::beginRecord()
{
    record = Record();
    address.record = level.records.size();
    beginItems();
}

void CSProJsonDraft::endRecord()
{
    checkOccurrenceLabels(record.occurrenceLabels, record.maximum);
    level.records.append(std::move(record));
    columnsOfLevels.back().records.push_back(std::move(columnsOfItems));
    address.record = -1;
}

void CSProJsonDraft::beginLevel()
{
    level = Level();
    address.level = layout.levels.size();
    columnsOfLevels.emplace_back();
}

void CSProJsonDraft::endLevel()
{
    if (level.ids.isEmpty())
        findings.warn("level-without-ids", QStringLiteral("the level has no id item; CSPro omits it and its records"),
                      address);
    layout.levels.append(std::move(level));
    address.level = -1;
}

// Relations

void CSProJsonDraft::beginLink()
{
    link = RelationLink();
}

void CSProJsonDraft::endLink()
{
    link.primaryLink = cspro::linkItemOf(link.primaryLink);
    link.secondaryLink = cspro::linkItemOf(link.secondaryLink);
    relation.links.append(std::move(link));
}

void CSProJsonDraft::beginRelation()
{
    relation = Relation();
    address.relation = layout.relations.size();
}

void CSProJsonDraft::endRelation()
{
    layout.relations.append(std::move(relation));
    address.relation = -1;
}

// The dictionary

void CSProJsonDraft::beginSecurity()
{
    layout.security.emplace();
}

void CSProJsonDraft::beginRecordType()
{
    layout.recordType.emplace();
    hasKeyOfDictionary = true;
}

void CSProJsonDraft::endRecordType()
{
    if (*layout.recordType == RecordTypeColumns())
        layout.recordType.reset();
}

void CSProJsonDraft::beginLevels()
{
    hasKeyOfDictionary = true;
}

void CSProJsonDraft::setRelativePositions(bool areRelative)
{
    layout.relativePositions = areRelative;
    hasKeyOfDictionary = true;
}

JsonUse CSProJsonDraft::setSoftware(const QString &text)
{
    return text == QLatin1String("CSPro") ? JsonUse::Held : JsonUse::Extra;
}

JsonUse CSProJsonDraft::setFileType(const QString &text)
{
    typeOfFile = text;
    hasKeyOfDictionary = true;
    return JsonUse::Held;
}

// A version has at least one decimal: 8 is "8.0".
JsonUse CSProJsonDraft::setVersion(const QString &text)
{
    constexpr int firstUnknown = 9;
    const double version = text.toDouble();
    layout.formatVersion = QString::number(version, 'f', QLocale::FloatingPointShortest);
    if (!layout.formatVersion.contains(QLatin1Char('.')))
        layout.formatVersion += QLatin1String(".0");
    if (version >= firstUnknown)
        findings.inform("newer-version",
                        QStringLiteral("version %1 of the format is newer than those known").arg(cspro::quoted(text)),
                        address);
    return JsonUse::Held;
}

void CSProJsonDraft::complete()
{
    layOutColumns(layout, columnsOfLevels);
    fillZeroFill();
    checkColumns();
    checkLanguages();
}

void CSProJsonDraft::fillZeroFill()
{
    if (!layout.zeroFill)
        return;
    for (const ElementAddress &place : withoutZeroFill)
        itemAt(layout, place).zeroFill = true;
}

void CSProJsonDraft::checkColumns()
{
    ElementAddress place;
    for (const Level &entry : qAsConst(layout.levels)) {
        ++place.level;
        const LevelColumns &stated = columnsOfLevels[size_t(place.level)];
        place.record = ElementAddress::ids;
        checkColumns(entry.ids, stated.ids, place);
        for (place.record = 0; place.record < entry.records.size(); ++place.record)
            checkColumns(entry.records.at(place.record).items, stated.records[size_t(place.record)], place);
    }
}

void CSProJsonDraft::checkColumns(const QVector<Item> &items, const std::vector<StoredColumns> &stated,
                                  ElementAddress place)
{
    const Item *holder = nullptr;
    for (place.item = 0; place.item < items.size(); ++place.item) {
        const Item &entry = items.at(place.item);
        if (!entry.isSubitem)
            holder = &entry;
        else if (holder)
            checkOffset(qint64(entry.start) - holder->start, stated[size_t(place.item)], place);
        if (entry.start < 1)
            findings.warn("no-start", QStringLiteral("the columns of the item are unknown: it has no usable \"start\""),
                          place);
    }
}

// The offset of a subitem is ignored if "start" is also stated or if its item has no column.
void CSProJsonDraft::checkOffset(qint64 offset, const StoredColumns &stated, const ElementAddress &place)
{
    if (!stated.subitemOffset || *stated.subitemOffset == offset)
        return;
    findings.addExtra(QStringLiteral("subitemOffset"), QString::number(*stated.subitemOffset), place);
    findings.warn("unused-offset", QStringLiteral("\"subitemOffset\" does not lead to the column of the subitem"),
                  place);
}

void CSProJsonDraft::checkLanguages()
{
    std::set<QString> declared;
    for (const Language &entry : qAsConst(layout.languages))
        declared.insert(entry.name.toUpper());
    if (declared.empty())
        declared.insert(QStringLiteral("EN"));
    for (const UsedLanguage &used : usedLanguages)
        if (declared.count(used.name.toUpper()) == 0)
            findings.inform("undeclared-language",
                            QStringLiteral("labels are in the language %1, which the dictionary does not declare")
                                .arg(cspro::quoted(used.name)),
                            used.address);
}

} // namespace vanlayout
