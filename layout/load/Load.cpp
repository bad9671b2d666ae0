#include "Load.h"

#include "PlanMaker_p.h"
#include "Targets_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

template <typename Matches> const TargetRules *findRules(Matches matches)
{
    const QVector<TargetRules> &rules = targetRules();
    const QVector<TargetRules>::const_iterator found = std::find_if(rules.begin(), rules.end(), matches);
    return found != rules.end() ? &*found : nullptr;
}

} // namespace

QStringList loadTargets()
{
    QStringList words;
    for (const TargetRules &rules : targetRules())
        words.append(QLatin1String(rules.word));
    return words;
}

std::optional<LoadTarget> loadTargetOf(const QString &word)
{
    const TargetRules *rules = findRules([&](const TargetRules &target) { return word == QLatin1String(target.word); });
    return rules ? std::optional<LoadTarget>(rules->target) : std::nullopt;
}

LoadProgram makeLoadProgram(const Layout &layout, LoadTarget target, const LoadOptions &options)
{
    const TargetRules *rules = findRules([&](const TargetRules &entry) { return entry.target == target; });
    if (!rules)
        return { {}, QStringLiteral("has no load program for this target") };
    const LoadPlan plan = makeLoadPlan(layout, *rules, options);
    if (!plan.problem.isEmpty())
        return { {}, plan.problem };
    return { rules->write(plan), QString() };
}

} // namespace vanlayout
