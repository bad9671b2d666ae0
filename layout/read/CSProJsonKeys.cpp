#include "read/CSProJsonKeys_p.h"

#include "read/CSProCommon_p.h"

#include <functional>
#include <iterator>
#include <type_traits>
#include <utility>

namespace vanlayout
{

namespace
{

using Draft = CSProJsonDraft;

// Steps of the draft, and setters of the members of its open elements. `part` is a member of the draft.

template <auto step> void call(Draft &draft)
{
    (draft.*step)();
}
template <auto step> bool end(Draft &draft)
{
    if constexpr (std::is_same_v<decltype((draft.*step)()), bool>)
        return (draft.*step)();
    (draft.*step)();
    return true;
}
template <auto setter> JsonUse useText(Draft &draft, const QString &text)
{
    return (draft.*setter)(text);
}
template <auto setter, typename Number> void use(Draft &draft, Number value)
{
    (draft.*setter)(value);
}
template <auto part, auto member> JsonUse setText(Draft &draft, const QString &text)
{
    std::invoke(part, draft).*member = text;
    return JsonUse::Held;
}
template <auto part, auto member, typename Number> void set(Draft &draft, Number value)
{
    std::invoke(part, draft).*member = value;
}
template <auto part> JsonUse setNote(Draft &draft, const QString &text)
{
    std::invoke(part, draft).note = cspro::cleanNote(text);
    return JsonUse::Held;
}
template <auto part> void beginLabels(Draft &draft)
{
    draft.labels = &std::invoke(part, draft).labels;
}
template <auto part> void beginAliases(Draft &draft)
{
    draft.aliases = &std::invoke(part, draft).aliases;
}
template <auto part> void beginOccurrenceLabels(Draft &draft)
{
    draft.occurrenceLabels = &std::invoke(part, draft).occurrenceLabels;
}
Layout &layoutOf(Draft &draft)
{
    return draft.layout;
}
Security &securityOf(Draft &draft)
{
    return *draft.layout.security;
}
RecordTypeColumns &recordTypeOf(Draft &draft)
{
    return *draft.layout.recordType;
}

// Makers of keys and elements.

enum Need { optional, must };

constexpr JsonKey text(std::string_view word, JsonUse (*setter)(Draft &, const QString &), Need need = optional)
{
    return { word, JsonShape::Text, need == must, setter };
}
constexpr JsonKey number(std::string_view word, JsonUse (*setter)(Draft &, const QString &))
{
    return { word, JsonShape::Number, false, setter };
}
constexpr JsonKey integer(std::string_view word, void (*setter)(Draft &, int), Need need = optional)
{
    return { word, JsonShape::Integer, need == must, nullptr, setter };
}
constexpr JsonKey boolean(std::string_view word, void (*setter)(Draft &, bool), Need need = optional)
{
    return { word, JsonShape::Boolean, need == must, nullptr, nullptr, setter };
}
constexpr JsonKey object(std::string_view word, const JsonElement &element, Need need = optional)
{
    return { word, JsonShape::Object, need == must, nullptr, nullptr, nullptr, &element };
}
constexpr JsonKey list(std::string_view word, const JsonElement &element, void (*begin)(Draft &) = nullptr,
                       void (*end)(Draft &) = nullptr, Need need = optional)
{
    return { word, JsonShape::List, need == must, nullptr, nullptr, nullptr, &element, begin, end };
}
constexpr JsonKey range(std::string_view word)
{
    return { word, JsonShape::Range };
}
constexpr JsonKey kept(std::string_view word)
{
    return { word, JsonShape::Kept };
}

template <int count> constexpr JsonElement unnamed(const JsonKey (&keys)[count])
{
    return { keys, count, false };
}
template <auto begin, int count> constexpr JsonElement unnamed(const JsonKey (&keys)[count])
{
    return { keys, count, false, call<begin> };
}
template <auto beginning, auto ending, int count> constexpr JsonElement unnamed(const JsonKey (&keys)[count])
{
    return { keys, count, false, call<beginning>, end<ending> };
}
template <auto beginning, auto ending, int count> constexpr JsonElement named(const JsonKey (&keys)[count])
{
    return { keys, count, true, call<beginning>, end<ending> };
}

// The keys of each kind of objects; objects that are contained in others come first.

constexpr JsonKey labelKeys[] = {
    text("text", setText<&Draft::label, &Label::text>),
    text("language", setText<&Draft::label, &Label::language>),
};
constexpr JsonElement label = unnamed<&Draft::beginLabel, &Draft::endLabel>(labelKeys);

template <auto part> constexpr JsonKey name()
{
    return text("name", setText<part, &std::decay_t<decltype(std::invoke(part, std::declval<Draft &>()))>::name>, must);
}
template <auto part> constexpr JsonKey aliases()
{
    return { "aliases", JsonShape::Texts, false, nullptr, nullptr, nullptr, nullptr, beginAliases<part> };
}
template <auto part> constexpr JsonKey labels(Need need = optional)
{
    return list("labels", label, beginLabels<part>, call<&Draft::endLabels>, need);
}
template <auto part> constexpr JsonKey note()
{
    return text("note", setNote<part>);
}

constexpr JsonKey occurrenceLabelKeys[] = {
    integer("occurrence", set<&Draft::occurrenceLabel, &OccurrenceLabel::occurrence, int>, must),
    labels<&Draft::occurrenceLabel>(must),
};
constexpr JsonElement occurrenceLabel
    = unnamed<&Draft::beginOccurrenceLabel, &Draft::endOccurrenceLabel>(occurrenceLabelKeys);

constexpr JsonKey itemOccurrencesKeys[] = {
    integer("maximum", set<&Draft::item, &Item::occurrences, int>, must),
    list("labels", occurrenceLabel, beginOccurrenceLabels<&Draft::item>),
};
constexpr JsonElement itemOccurrences = unnamed(itemOccurrencesKeys);

constexpr JsonKey recordOccurrencesKeys[] = {
    boolean("required", set<&Draft::record, &Record::required, bool>, must),
    integer("maximum", set<&Draft::record, &Record::maximum, int>, must),
    list("labels", occurrenceLabel, beginOccurrenceLabels<&Draft::record>),
};
constexpr JsonElement recordOccurrences = unnamed(recordOccurrencesKeys);

constexpr JsonKey pairKeys[] = {
    text("value", useText<&Draft::setCode>),
    range("range"),
};
constexpr JsonElement pair = unnamed<&Draft::beginPair, &Draft::endPair>(pairKeys);

constexpr JsonKey valueKeys[] = {
    labels<&Draft::value>(),
    note<&Draft::value>(),
    text("image", setText<&Draft::value, &Value::image>),
    kept("url"),
    text("textColor", setText<&Draft::value, &Value::textColor>),
    text("special", useText<&Draft::setSpecial>),
    list("pairs", pair),
};
constexpr JsonElement value = named<&Draft::beginValue, &Draft::endValue>(valueKeys);

constexpr JsonKey valueSetKeys[] = {
    name<&Draft::valueSet>(),
    aliases<&Draft::valueSet>(),
    labels<&Draft::valueSet>(),
    note<&Draft::valueSet>(),
    text("link", setText<&Draft::valueSet, &ValueSet::link>),
    list("values", value),
};
constexpr JsonElement valueSet = named<&Draft::beginValueSet, &Draft::endValueSet>(valueSetKeys);

constexpr JsonKey captureKeys[] = {
    text("type", useText<&Draft::setCaptureType>, must),
    text("dateFormat", useText<&Draft::setDateFormat>),
};
constexpr JsonElement capture = unnamed<&Draft::beginCapture, &Draft::endCapture>(captureKeys);

constexpr JsonKey itemKeys[] = {
    name<&Draft::item>(),
    aliases<&Draft::item>(),
    labels<&Draft::item>(),
    note<&Draft::item>(),
    object("occurrences", itemOccurrences),
    text("contentType", useText<&Draft::setContentType>, must),
    boolean("subitem", set<&Draft::item, &Item::isSubitem, bool>),
    integer("start", use<&Draft::setStart, int>),
    integer("subitemOffset", use<&Draft::setSubitemOffset, int>),
    integer("length", use<&Draft::setLength, int>),
    integer("decimals", set<&Draft::item, &Item::decimals, int>),
    boolean("decimalMark", use<&Draft::setDecimalMark, bool>),
    boolean("zeroFill", use<&Draft::setZeroFill, bool>),
    object("capture", capture),
    list("valueSets", valueSet),
};
constexpr JsonElement item = named<&Draft::beginItem, &Draft::endItem>(itemKeys);

constexpr JsonKey recordKeys[] = {
    name<&Draft::record>(),
    aliases<&Draft::record>(),
    labels<&Draft::record>(),
    note<&Draft::record>(),
    text("recordType", setText<&Draft::record, &Record::recordType>),
    object("occurrences", recordOccurrences, must),
    list("items", item),
};
constexpr JsonElement record = named<&Draft::beginRecord, &Draft::endRecord>(recordKeys);

constexpr JsonKey idsKeys[] = {
    list("items", item),
};
constexpr JsonElement ids = named<&Draft::beginIds, &Draft::endIds>(idsKeys);

constexpr JsonKey levelKeys[] = {
    name<&Draft::level>(), aliases<&Draft::level>(), labels<&Draft::level>(),
    note<&Draft::level>(), object("ids", ids, must), list("records", record),
};
constexpr JsonElement level = named<&Draft::beginLevel, &Draft::endLevel>(levelKeys);

constexpr JsonKey linkKeys[] = {
    text("primaryLink", setText<&Draft::link, &RelationLink::primaryLink>),
    text("secondary", setText<&Draft::link, &RelationLink::secondary>, must),
    text("secondaryLink", setText<&Draft::link, &RelationLink::secondaryLink>),
};
constexpr JsonElement link = unnamed<&Draft::beginLink, &Draft::endLink>(linkKeys);

constexpr JsonKey relationKeys[] = {
    name<&Draft::relation>(),
    aliases<&Draft::relation>(),
    text("primary", setText<&Draft::relation, &Relation::primary>, must),
    list("links", link),
};
constexpr JsonElement relation = named<&Draft::beginRelation, &Draft::endRelation>(relationKeys);

constexpr JsonKey languageKeys[] = {
    text("name", setText<&Draft::language, &Language::name>, must),
    text("label", setText<&Draft::language, &Language::label>, must),
};
constexpr JsonElement language = unnamed<&Draft::beginLanguage, &Draft::endLanguage>(languageKeys);

constexpr JsonKey securityKeys[] = {
    boolean("allowDataViewerModifications", set<securityOf, &Security::allowDataViewerModifications, bool>),
    kept("allowDataManagerModifications"), // the same in version 8.1
    boolean("allowExport", set<securityOf, &Security::allowExport, bool>),
    integer("cachedPasswordMinutes", set<securityOf, &Security::cachedPasswordMinutes, int>),
    text("settings", setText<securityOf, &Security::settings>, must),
};
constexpr JsonElement security = unnamed<&Draft::beginSecurity>(securityKeys);

constexpr JsonKey recordTypeKeys[] = {
    integer("start", set<recordTypeOf, &RecordTypeColumns::start, int>, must),
    integer("length", set<recordTypeOf, &RecordTypeColumns::length, int>, must),
};
constexpr JsonElement recordType = unnamed<&Draft::beginRecordType, &Draft::endRecordType>(recordTypeKeys);

constexpr JsonKey defaultsKeys[] = {
    boolean("decimalMark", set<layoutOf, &Layout::decimalMark, bool>),
    boolean("zeroFill", set<layoutOf, &Layout::zeroFill, bool>),
};
constexpr JsonElement defaults = unnamed(defaultsKeys);

constexpr JsonKey dictionaryKeys[] = {
    text("software", useText<&Draft::setSoftware>),
    boolean("editable", set<layoutOf, &Layout::editable, bool>),
    number("version", useText<&Draft::setVersion>),
    text("fileType", useText<&Draft::setFileType>),
    name<layoutOf>(),
    aliases<layoutOf>(),
    list("languages", language, nullptr, call<&Draft::endLanguages>),
    labels<layoutOf>(),
    note<layoutOf>(),
    object("security", security),
    boolean("readOptimization", set<layoutOf, &Layout::readOptimization, bool>),
    boolean("enableBinaryItems", set<layoutOf, &Layout::enableBinaryItems, bool>),
    object("recordType", recordType, must),
    object("defaults", defaults),
    boolean("relativePositions", use<&Draft::setRelativePositions, bool>, must),
    list("levels", level, call<&Draft::beginLevels>),
    list("relations", relation),
};
constexpr JsonElement dictionary = { dictionaryKeys, std::size(dictionaryKeys), true };

} // namespace

const JsonElement &dictionaryElement()
{
    return dictionary;
}

} // namespace vanlayout
