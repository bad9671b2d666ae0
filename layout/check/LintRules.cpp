#include "check/Lint.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

struct Row {
    LintRule rule;
    Severity severity;
    const char *id;
    const char *title;
    const char *meaning;
};

constexpr Severity error = Severity::Error;
constexpr Severity warning = Severity::Warning;
constexpr Severity info = Severity::Info;

// One row per rule, in the order of the enumeration.
// clang-format off
constexpr Row rows[] = {
    { LintRule::UnknownKey,            error,   "unknown-key",            "Unknown key",                  "A line of a text dictionary has a key or a section that no version of CSPro knows; CSPro 8 refuses the file." },
    { LintRule::MisspelledKey,         error,   "misspelled-key",         "Misspelled key",               "A JSON dictionary has a key that CSPro does not read, where a similar one is required, such as `label` for `labels`." },
    { LintRule::IgnoredKey,            warning, "ignored-key",            "Ignored key",                  "A JSON dictionary has a key that CSPro ignores." },
    { LintRule::RepeatedKey,           warning, "repeated-key",           "Repeated key",                 "A key or a language is stated more than once, and only one statement counts." },
    { LintRule::MisplacedSection,      error,   "misplaced-section",      "Misplaced section",            "A section of a text dictionary is at a place where CSPro does not allow it." },
    { LintRule::MissingKey,            error,   "missing-key",            "Missing key",                  "A required statement is absent or has no usable value, so CSPro refuses the file or omits the element." },
    { LintRule::MissingPositions,      error,   "missing-positions",      "Missing positions",            "The columns of items are unknown: `Positions` or the start of an item is absent." },
    { LintRule::UnreadValue,           warning, "unread-value",           "Unread value",                 "A statement has a value that its key cannot have, such as a word instead of a number." },
    { LintRule::UnknownType,           error,   "unknown-type",           "Unknown type",                 "An item has a type that CSPro does not know; CSPro omits the item." },
    { LintRule::MixedEncodings,        warning, "mixed-encodings",        "Mixed encodings",              "Some bytes of the file are not valid in its encoding, or a label in UTF-8 was read as Windows-1252, as in a file put together from two encodings." },
    { LintRule::IncompleteReading,     warning, "incomplete-reading",     "Incomplete reading",           "Only part of the file was read, so that only part of it was checked." },
    { LintRule::ReaderRemark,          info,    "reader-remark",          "Remark of the reader",         "The file was read as a whole, but is unusual in another way." },
    { LintRule::MissingRecordType,     error,   "missing-record-type",    "Missing record type",          "A dictionary with two or more records has no columns that mark the type of a line." },
    { LintRule::DuplicateRecordType,   error,   "duplicate-record-type",  "Duplicate record type",        "Two records are marked by the same text." },
    { LintRule::RecordTypeWidth,       error,   "record-type-width",      "Width of a record type",       "The text that marks a record is shorter or longer than the columns for it." },
    { LintRule::ReservedRecordType,    error,   "reserved-record-type",   "Reserved record type",         "A record type in column 1 begins with `~`, which CSPro does not allow." },
    { LintRule::RecordLength,          warning, "record-length",          "Record length",                "The stated length of a record is greater than its last column; CSPro ignores it, other programs do not." },
    { LintRule::LevelWithoutRecord,    warning, "level-without-record",   "Level without a record",       "A level has no record; CSPro does not save such a dictionary." },
    { LintRule::Overlap,               error,   "overlap",                "Overlap",                      "An item uses columns of another item, of an id item or of the record type." },
    { LintRule::ItemOutsideRecord,     error,   "item-outside-record",    "Item outside its record",      "An item, an id item or the record type ends after the stated length of a record." },
    { LintRule::SubitemOutsideItem,    error,   "subitem-outside-item",   "Subitem outside its item",     "A subitem uses columns that its item does not have." },
    { LintRule::SubitemWithoutItem,    error,   "subitem-without-item",   "Subitem without an item",      "No item that could contain the subitem precedes it." },
    { LintRule::NestedOccurrences,     error,   "nested-occurrences",     "Occurrences in occurrences",   "Both an item and its subitem repeat." },
    { LintRule::RelativeStart,         warning, "relative-start",         "Start in a relative file",     "Positions are relative, but an item is not where CSPro places it: opening the dictionary in CSPro moves it away from its data." },
    { LintRule::Gap,                   info,    "gap",                    "Gap",                          "Columns within a record belong to no item." },
    { LintRule::IdItem,                error,   "id-item",                "Properties of an id item",     "An id item repeats, has decimals, is a subitem, or is neither a number nor a text." },
    { LintRule::Decimals,              error,   "decimals",               "Decimals",                     "An item has more decimals than digits, or has decimals and is not numeric." },
    { LintRule::Limit,                 error,   "limit",                  "Limit of CSPro",               "A number or length is outside the limits of CSPro." },
    { LintRule::InvalidName,           error,   "invalid-name",           "Invalid name",                 "CSPro does not accept a name or the code of a language: it has other characters than letters, digits and underscores, begins without a letter, or ends with an underscore." },
    { LintRule::ReservedName,          warning, "reserved-name",          "Reserved name",                "A name is a word of the CSPro language." },
    { LintRule::DuplicateName,         error,   "duplicate-name",         "Duplicate name",               "Two elements of a dictionary have the same name or alias, or two variables of another file the same name." },
    { LintRule::SpssName,              info,    "spss-name",              "Name for SPSS",                "SPSS does not accept the name of an item." },
    { LintRule::StataName,             info,    "stata-name",             "Name for Stata",               "Stata does not accept the name of an item." },
    { LintRule::SqlName,               info,    "sql-name",               "Name for SQL",                 "A database only accepts the name of an item in quotes, or not at all." },
    { LintRule::MissingLabel,          warning, "missing-label",          "Missing label",                "The dictionary, a level, a record, an item or a value set has no label." },
    { LintRule::MissingValueLabel,     info,    "missing-value-label",    "Missing label of a value",     "A value set has codes without a label; ranges, lists of codes and blanks need none." },
    { LintRule::MissingTranslation,    info,    "missing-translation",    "Missing translation",          "A label is absent in one of the languages of the file." },
    { LintRule::LabelWithoutLanguage,  warning, "label-without-language", "Label without a language",     "A label has more parts than the dictionary has languages, or names a language that is not declared; CSPro drops the part." },
    { LintRule::LabelWithoutOccurrence, warning, "label-without-occurrence", "Label without an occurrence", "A label is for an occurrence that the record or item does not have." },
    { LintRule::LongLabel,             warning, "long-label",             "Long label",                   "A label has more than 255 characters; CSPro cuts it." },
    { LintRule::DuplicateLabel,        info,    "duplicate-label",        "Duplicate label",              "Two codes of a value set have the same label." },
    { LintRule::EmptyValueSet,         warning, "empty-value-set",        "Value set without values",     "A value set has no values." },
    { LintRule::ValueWithoutCode,      warning, "value-without-code",     "Value without a code",         "A value has a label, but no code." },
    { LintRule::WideCode,              error,   "wide-code",              "Code wider than its item",     "A code has more characters than the item, so that no data can have it." },
    { LintRule::TextCode,              error,   "text-code",              "Text in a numeric code",       "A code of a numeric item is not a number." },
    { LintRule::CodeDecimals,          warning, "code-decimals",          "Decimals of a code",           "A code has more decimals than its item, so that no data can have it." },
    { LintRule::TextRange,             error,   "text-range",             "Range of texts",               "A value of an alphanumeric item is a range; CSPro only knows ranges of numbers." },
    { LintRule::ReversedRange,         error,   "reversed-range",         "Range upside down",            "A range ends before it begins." },
    { LintRule::DuplicateCode,         warning, "duplicate-code",         "Duplicate code",               "A code occurs twice in a value set; the first one counts." },
    { LintRule::OverlappingCodes,      warning, "overlapping-codes",      "Overlapping codes",            "A range has codes that occur in the set again; the first one counts." },
    { LintRule::SpecialRange,          warning, "special-range",          "Special mark on a range",      "A value that means missing, refused, not applicable or default is a range or has several codes; CSPro uses only one code." },
    { LintRule::SpecialText,           warning, "special-text",           "Special mark on a text",       "A value of an alphanumeric item means missing, refused, not applicable or default; CSPro only knows this for numbers." },
    { LintRule::RepeatedSpecial,       info,    "repeated-special",       "Repeated special mark",        "Two values of a value set have the same special meaning." },
    { LintRule::LinkedSetsDiffer,      warning, "linked-sets-differ",     "Linked value sets differ",     "Value sets with the same link have different values; CSPro replaces those of all but one." },
    { LintRule::SingleLink,            info,    "single-link",            "Link of one value set",        "Only one value set has the link; CSPro removes it." },
    { LintRule::RelationTarget,        error,   "relation-target",        "Target of a relation",         "A relation names an element that does not exist or does not repeat." },
    { LintRule::LabelOutOfRange,       warning, "label-out-of-range",     "Label of an impossible value", "A label is for a value that the storage type of the variable cannot hold." },
    { LintRule::UnlabelledVariable,    info,    "unlabelled-variable",    "Variable without a label",     "A variable of a statistical file or a DDI document has no label." },
    { LintRule::UnlabelledMissing,     info,    "unlabelled-missing",     "Unlabelled missing value",     "A user-missing value of a variable has no label." },
    { LintRule::MissingLabelSet,       warning, "missing-label-set",      "Missing label set",            "A variable names a set of value labels that the file does not have." },
    { LintRule::UnusedLabelSet,        info,    "unused-label-set",       "Unused label set",             "The file has a set of value labels that no variable uses." },
};
// clang-format on

static_assert(sizeof rows / sizeof rows[0] == lintRuleCount);

QVector<LintRuleInfo> makeInfos()
{
    QVector<LintRuleInfo> infos;
    for (const Row &row : rows)
        infos.append(
            { row.rule, QLatin1String(row.id), row.severity, QLatin1String(row.title), QLatin1String(row.meaning) });
    return infos;
}

} // namespace

const QVector<LintRuleInfo> &lintRules()
{
    static const QVector<LintRuleInfo> infos = makeInfos();
    return infos;
}

const LintRuleInfo &infoOf(LintRule rule)
{
    return lintRules().at(int(rule));
}

std::optional<LintRule> lintRuleOf(const QString &id)
{
    const QVector<LintRuleInfo> &infos = lintRules();
    const QVector<LintRuleInfo>::const_iterator found
        = std::find_if(infos.begin(), infos.end(),
                       [&](const LintRuleInfo &each) { return each.id.compare(id, Qt::CaseInsensitive) == 0; });
    return found != infos.end() ? std::optional(found->rule) : std::nullopt;
}

} // namespace vanlayout
