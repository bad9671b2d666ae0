#include "check/LintFindings_p.h"
#include "util/KeyedHash_p.h"

#include <algorithm>
#include <iterator>

namespace vanlayout
{

namespace
{

/// The rule for a problem that a reader reports. Problems without a row are remarks.
struct ProblemRow {
    const char *problem;
    LintRule rule;
};

constexpr ProblemRow problemRows[] = {
    { "no-equals-sign", LintRule::UnknownKey },
    { "unknown-key", LintRule::UnknownKey },
    { "unknown-section", LintRule::UnknownKey },
    { "text-after-section", LintRule::UnknownKey },
    { "extra-key", LintRule::IgnoredKey },
    { "unused-length", LintRule::IgnoredKey },
    { "unusable-offset", LintRule::IgnoredKey },
    { "unused-offset", LintRule::IgnoredKey },
    { "date-without-capture", LintRule::IgnoredKey },
    { "relation-label", LintRule::IgnoredKey },
    { "repeated-key", LintRule::RepeatedKey },
    { "repeated-language", LintRule::RepeatedKey },
    { "value-and-range", LintRule::RepeatedKey },
    { "repeated-section", LintRule::MisplacedSection },
    { "misplaced-section", LintRule::MisplacedSection },
    { "dictionary-after-level", LintRule::MisplacedSection },
    { "languages-after-level", LintRule::MisplacedSection },
    { "no-level-yet", LintRule::MisplacedSection },
    { "missing-key", LintRule::MissingKey },
    { "dictionary-without-name", LintRule::MissingKey },
    { "level-without-name", LintRule::MissingKey },
    { "record-without-name", LintRule::MissingKey },
    { "item-without-name", LintRule::MissingKey },
    { "item-without-length", LintRule::MissingKey },
    { "value-set-without-name", LintRule::MissingKey },
    { "relation-without-name", LintRule::MissingKey },
    { "relation-without-primary", LintRule::MissingKey },
    { "relation-without-secondary", LintRule::MissingKey },
    { "no-level", LintRule::MissingKey },
    { "no-variables", LintRule::MissingKey },
    { "level-without-ids", LintRule::MissingKey },
    { "no-positions", LintRule::MissingPositions },
    { "item-without-start", LintRule::MissingPositions },
    { "no-start", LintRule::MissingPositions },
    { "bad-number", LintRule::UnreadValue },
    { "neither-yes-nor-no", LintRule::UnreadValue },
    { "unknown-word", LintRule::UnreadValue },
    { "unknown-special", LintRule::UnreadValue },
    { "wrong-type", LintRule::UnreadValue },
    { "converted-type", LintRule::UnreadValue },
    { "bad-pair", LintRule::UnreadValue },
    { "bad-occurrence", LintRule::UnreadValue },
    { "unusable-subitem", LintRule::UnreadValue },
    { "columns-differ", LintRule::UnreadValue },
    { "unknown-file", LintRule::UnreadValue },
    { "unknown-record-type", LintRule::UnreadValue },
    { "record-type-columns-differ", LintRule::UnreadValue },
    { "unresolved-entity", LintRule::UnreadValue },
    { "unknown-type", LintRule::UnknownType },
    { "bad-bytes", LintRule::MixedEncodings },
    { "subitem-without-item", LintRule::SubitemWithoutItem },
    { "label-without-language", LintRule::LabelWithoutLanguage },
    { "undeclared-language", LintRule::LabelWithoutLanguage },
    { "label-without-occurrence", LintRule::LabelWithoutOccurrence },
    { "reading-ended", LintRule::IncompleteReading },
    { "too-many-problems", LintRule::IncompleteReading },
    { "too-many-extras", LintRule::IncompleteReading },
    { "too-many-linked-values", LintRule::IncompleteReading },
    { "too-much-text", LintRule::IncompleteReading },
    { "too-many-locations", LintRule::IncompleteReading },
    { "catalog-not-read", LintRule::IncompleteReading },
};

// Keys of the JSON form without whose value CSPro omits the element, or everything within it (CSPro dictionary format,
// JSON form, section 1.1).
constexpr const char *requiredKeys[]
    = { "name",       "recordType", "start",       "length",       "relativePositions", "levels",      "ids",
        "records",    "items",      "contentType", "maximum",      "occurrences",       "decimalMark", "valueSets",
        "values",     "pairs",      "primary",     "links",        "secondary",         "settings",    "required",
        "occurrence", "labels",     "decimals",    "subitemOffset" };

// The text in the first quotation marks of a message, which is the key for problems of the JSON form.
QString quotedIn(const QString &message)
{
    return message.section(QLatin1Char('"'), 1, 1);
}

bool isRequiredValue(const Problem &problem)
{
    if (problem.id != QLatin1String("wrong-type"))
        return false;
    const QString key = quotedIn(problem.message).section(QLatin1Char('.'), -1);
    return std::any_of(std::begin(requiredKeys), std::end(requiredKeys),
                       [&](const char *each) { return key == QLatin1String(each); });
}

LintRule ruleOf(const Problem &problem, const Layout &layout)
{
    if (problem.id == QLatin1String("missing-key") && quotedIn(problem.message) == QLatin1String("relativePositions"))
        return LintRule::MissingPositions;
    if (isRequiredValue(problem))
        return LintRule::MissingKey;
    const auto *const row = std::find_if(std::begin(problemRows), std::end(problemRows), [&](const ProblemRow &each) {
        return problem.id == QLatin1String(each.problem);
    });
    if (row == std::end(problemRows))
        return LintRule::ReaderRemark;
    const bool isIgnored = row->rule == LintRule::UnknownKey && layout.format == Format::CSProJson;
    return isIgnored ? LintRule::IgnoredKey : row->rule;
}

/// Keys of JSON dictionaries made by programs, and the key that CSPro reads.
struct Misspelling {
    const char *key;
    const char *meant;
};

constexpr Misspelling misspellings[] = {
    { "label", "labels" },
    { "id", "ids" },
    { "idItems", "ids" },
    { "level", "levels" },
    { "record", "records" },
    { "item", "items" },
    { "type", "contentType" },
    { "dataType", "contentType" },
    { "len", "length" },
    { "decimal", "decimals" },
    { "valueSet", "valueSets" },
    { "language", "languages" },
    { "recordTypeValue", "recordType" },
};

const char *meantBy(const QString &key)
{
    const auto *const row = std::find_if(std::begin(misspellings), std::end(misspellings),
                                         [&](const Misspelling &each) { return key == QLatin1String(each.key); });
    return row != std::end(misspellings) ? row->meant : nullptr;
}

// The key in the message of the problem `unknown-key` of a JSON dictionary.
QString keyIn(const Problem &problem)
{
    return problem.id == QLatin1String("unknown-key") ? quotedIn(problem.message) : QString();
}

// The rules for values find these in both forms.
bool isCheckedInLayout(const Problem &problem)
{
    return problem.id == QLatin1String("code-without-number") || problem.id == QLatin1String("value-without-code");
}

/// How to correct what a reader reports; its messages state the fact.
struct AdviceRow {
    LintRule rule;
    const char *advice;
};

constexpr AdviceRow adviceRows[] = {
    { LintRule::UnknownKey, "correct or remove it" },
    { LintRule::IgnoredKey, "remove it, or correct its spelling" },
    { LintRule::RepeatedKey, "remove one of them" },
    { LintRule::MissingKey, "add it" },
    { LintRule::MissingPositions, "add it" },
    { LintRule::MisplacedSection, "correct the order of the sections" },
    { LintRule::UnreadValue, "correct it" },
    { LintRule::UnknownType, "use numeric or alpha" },
    { LintRule::MixedEncodings, "save the file in one encoding, such as UTF-8" },
    { LintRule::SubitemWithoutItem, "add the item before it, or make it an item" },
    { LintRule::LabelWithoutLanguage, "declare the language, or remove the part" },
    { LintRule::LabelWithoutOccurrence, "remove the label, or correct the number of occurrences" },
};

QString advised(QString message, LintRule rule)
{
    message.remove(QStringLiteral("; the line is kept unchanged"))
        .remove(QStringLiteral("; its lines are kept unchanged"));
    if (message.contains(QLatin1String("; move it")))
        return message;
    if (message.endsWith(QLatin1String(", and is ignored")))
        rule = LintRule::UnreadValue;
    const auto *const row = std::find_if(std::begin(adviceRows), std::end(adviceRows),
                                         [&](const AdviceRow &each) { return each.rule == rule; });
    return row != std::end(adviceRows) ? message + QLatin1String("; ") + QLatin1String(row->advice) : message;
}

// Labels of Stata files of these versions are not read, or not all of them.
bool isOldStata(const Layout &layout)
{
    constexpr int lastOldVersion = 108;
    return layout.format == Format::Stata && layout.formatVersion.toInt() <= lastOldVersion;
}

// The label sets that a statistical file names or has without need. They are unknown if reading ended before them.
void lintLabelSets(const Layout &layout, LintFindings &findings)
{
    const bool isEnded = std::any_of(layout.problems.begin(), layout.problems.end(), [](const Problem &problem) {
        return problem.id == QLatin1String("reading-ended");
    });
    const auto isLabelSet = [](const Extra &extra) { return extra.key == QLatin1String("valueLabels"); };
    if (isEnded || std::none_of(layout.extras.begin(), layout.extras.end(), isLabelSet))
        return;
    if (isOldStata(layout)) {
        findings.add(LintRule::IncompleteReading, QString(), 0,
                     QStringLiteral("value labels of a Stata file of version %1 are not read completely, and are not "
                                    "checked; save the file in a newer version")
                         .arg(inMessage(layout.formatVersion)));
        return;
    }
    for (const Extra &extra : layout.extras) {
        if (!isLabelSet(extra))
            continue;
        const bool isUsed = !extra.path.isEmpty();
        findings.add(
            isUsed ? LintRule::MissingLabelSet : LintRule::UnusedLabelSet, extra.path, extra.line,
            isUsed
                ? QStringLiteral("the file has no label set %1; add it, or remove the reference")
                      .arg(inMessage(extra.value))
                : QStringLiteral("no variable uses the label set %1; assign or remove it").arg(inMessage(extra.value)));
    }
}

} // namespace

void lintReading(const Layout &layout, LintFindings &findings)
{
    for (const Problem &problem : layout.problems) {
        const char *const meant = layout.format == Format::CSProJson ? meantBy(keyIn(problem)) : nullptr;
        if (meant) {
            findings.add(LintRule::MisspelledKey, problem.path, problem.line,
                         QStringLiteral("CSPro does not read the key \"%1\"; write \"%2\"")
                             .arg(keyIn(problem), QLatin1String(meant)));
        } else if (!isCheckedInLayout(problem)) {
            const LintRule rule = ruleOf(problem, layout);
            findings.add(rule, problem.path, problem.line, advised(problem.message, rule));
        }
    }
    if (!hasColumns(layout))
        lintLabelSets(layout, findings);
}

} // namespace vanlayout
