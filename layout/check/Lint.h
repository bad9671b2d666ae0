#ifndef LAYOUT_CHECK_LINT_H
#define LAYOUT_CHECK_LINT_H

#include "model/Layout.h"
#include "read/ElementLines.h"
#include "vanlayout_export.h"

#include <QString>
#include <QVector>

#include <optional>

namespace vanlayout
{

/// The rules for dictionaries and statistical files. `docs/lint.md` has a section and an example for each.
enum class LintRule {
    // what was read
    UnknownKey,
    MisspelledKey,
    IgnoredKey,
    RepeatedKey,
    MisplacedSection,
    MissingKey,
    MissingPositions,
    UnreadValue,
    UnknownType,
    MixedEncodings,
    IncompleteReading,
    ReaderRemark,
    // record types
    MissingRecordType,
    DuplicateRecordType,
    RecordTypeWidth,
    ReservedRecordType,
    RecordLength,
    LevelWithoutRecord,
    // columns
    Overlap,
    ItemOutsideRecord,
    SubitemOutsideItem,
    SubitemWithoutItem,
    NestedOccurrences,
    RelativeStart,
    Gap,
    // properties of items
    IdItem,
    Decimals,
    Limit,
    // names
    InvalidName,
    ReservedName,
    DuplicateName,
    SpssName,
    StataName,
    SqlName,
    // labels
    MissingLabel,
    MissingValueLabel,
    MissingTranslation,
    LabelWithoutLanguage,
    LabelWithoutOccurrence,
    LongLabel,
    DuplicateLabel,
    // values
    EmptyValueSet,
    ValueWithoutCode,
    WideCode,
    TextCode,
    CodeDecimals,
    TextRange,
    ReversedRange,
    DuplicateCode,
    OverlappingCodes,
    SpecialRange,
    SpecialText,
    RepeatedSpecial,
    // links
    LinkedSetsDiffer,
    SingleLink,
    RelationTarget,
    // statistical files
    LabelOutOfRange,
    UnlabelledVariable,
    UnlabelledMissing,
    MissingLabelSet,
    UnusedLabelSet,
};

constexpr int lintRuleCount = int(LintRule::UnusedLabelSet) + 1;

/// A row of the table of rules.
struct VANLAYOUT_EXPORT LintRuleInfo {
    LintRule rule;
    QString id; ///< stable word of letters a to z and hyphens
    Severity severity;
    QString title;   ///< a few words
    QString meaning; ///< one sentence
};

/// All rules, in the order of LintRule.
VANLAYOUT_EXPORT const QVector<LintRuleInfo> &lintRules();
VANLAYOUT_EXPORT const LintRuleInfo &infoOf(LintRule rule);
/// The rule with this id, compared case-insensitively.
VANLAYOUT_EXPORT std::optional<LintRule> lintRuleOf(const QString &id);

/// A place that breaks a rule.
struct VANLAYOUT_EXPORT LintFinding {
    LintRule rule;
    QString path;    ///< the element by its name, as in Problem; empty for the file as a whole
    int line = 0;    ///< 1-based line of a dictionary; 0 if it is unknown
    QString message; ///< one line: the fact, then how to correct it

    Severity severity() const { return infoOf(rule).severity; }
};

/// Which rules are checked, and what else is known about the file.
struct VANLAYOUT_EXPORT LintOptions {
    QVector<LintRule> only;              ///< empty for all rules
    QVector<LintRule> disabled;          ///< rules that are not checked, also if they are in `only`
    const ElementLines *lines = nullptr; ///< lines of the elements; null if they are unknown
};

/// Checks a layout. The findings are in the order of the rules, and for one rule in the order of the file.
///
/// A dictionary is checked against what CSPro requires and what usually is a mistake, a statistical file against the
/// rules that apply to one. Problems and extra statements that were found while the file was read are findings too. A
/// layout that could not be read has none. The time grows with the size of the layout, times the logarithm of the
/// number of items or codes in one list.
///
/// At most 100,000 findings of a rule are returned.
VANLAYOUT_EXPORT QVector<LintFinding> lint(const Layout &layout, const LintOptions &options = {});

} // namespace vanlayout

Q_DECLARE_TYPEINFO(vanlayout::LintFinding, Q_MOVABLE_TYPE);

#endif
