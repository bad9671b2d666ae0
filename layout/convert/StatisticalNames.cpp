#include "convert/StatisticalNames_p.h"

#include "load/PlanTexts_p.h"
#include "load/Targets_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

const TargetRules &rulesOf(LoadTarget target)
{
    const QVector<TargetRules> &rules = targetRules();
    return *std::find_if(rules.begin(), rules.end(), [target](const TargetRules &row) { return row.target == target; });
}

// SPSS: a letter of any script or `@`, then letters, digits, `.`, `_`, `$`, `#` and `@`, not ending in `.`.
bool isLegalInSpss(const QString &name)
{
    const auto isFurther
        = [](QChar character) { return character.isLetterOrNumber() || QStringLiteral("._$#@").contains(character); };
    return (name.at(0).isLetter() || name.at(0) == QLatin1Char('@')) && std::all_of(name.begin(), name.end(), isFurther)
        && !name.endsWith(QLatin1Char('.'));
}

// Stata 14 and later: a letter of any script or `_`, then letters, digits and `_`.
bool isLegalInStata(const QString &name)
{
    const auto isFurther
        = [](QChar character) { return character.isLetterOrNumber() || character == QLatin1Char('_'); };
    return !name.at(0).isNumber() && std::all_of(name.begin(), name.end(), isFurther);
}

} // namespace

StatisticalNames::StatisticalNames(StatisticalFormat target)
    : format(target)
    , rules(rulesOf(target == StatisticalFormat::Sav ? LoadTarget::Spss : LoadTarget::Stata))
    , changed(rules, PlanNames::Columns)
{
}

bool StatisticalNames::isLegal(const QString &name) const
{
    if (name.isEmpty() || cutTo(name, rules.name) != name || rules.isReservedColumn(name))
        return false;
    return format == StatisticalFormat::Sav ? isLegalInSpss(name) : isLegalInStata(name);
}

QString StatisticalNames::give(const QString &original)
{
    const QString key = rules.nameCase == NameCase::Exact ? original : original.toLower();
    if (isLegal(original) && used.insert(key).second) {
        changed.take(original);
        return original;
    }
    QString name = changed.give(original);
    used.insert(rules.nameCase == NameCase::Exact ? name : name.toLower());
    return name;
}

} // namespace vanlayout
