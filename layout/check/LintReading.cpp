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
    { "catalog-not-read", LintRule::IncompleteReading },
};

LintRule ruleOf(const Problem &problem, const Layout &layout)
{
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
    return problem.id == QLatin1String("unknown-key") ? problem.message.section(QLatin1Char('"'), 1, 1) : QString();
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
    const auto *const row = std::find_if(std::begin(adviceRows), std::end(adviceRows),
                                         [&](const AdviceRow &each) { return each.rule == rule; });
    return row != std::end(adviceRows) ? message + QLatin1String("; ") + QLatin1String(row->advice) : message;
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
    for (const Extra &extra : layout.extras) {
        if (!isDictionary(layout) && extra.key == QLatin1String("valueLabels")) {
            const bool isUsed = !extra.path.isEmpty();
            findings.add(isUsed ? LintRule::MissingLabelSet : LintRule::UnusedLabelSet, extra.path, extra.line,
                         isUsed ? QStringLiteral("the file has no label set %1; add it, or remove the reference")
                                      .arg(inMessage(extra.value))
                                : QStringLiteral("no variable uses the label set %1; assign or remove it")
                                      .arg(inMessage(extra.value)));
        }
    }
}

} // namespace vanlayout
