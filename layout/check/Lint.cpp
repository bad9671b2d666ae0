#include "check/Lint.h"

#include "check/LintFindings_p.h"
#include "load/PlanTexts_p.h"
#include "read/CSProCommon_p.h"

#include <utility>

namespace vanlayout
{

QString inMessage(const QString &text)
{
    constexpr int longest = 100;
    const QString line = oneLine(cspro::shortened(text, longest));
    return text.size() > longest ? line + QLatin1String("...") : line;
}

LintFindings::LintFindings(const Layout &source, const LintOptions &options)
    : layout(source)
    , lines(options.lines)
{
    isWanted.fill(options.only.isEmpty());
    for (const LintRule rule : options.only)
        isWanted[size_t(rule)] = true;
    for (const LintRule rule : options.disabled)
        isWanted[size_t(rule)] = false;
}

void LintFindings::add(LintRule rule, const ElementAddress &address, const QString &message)
{
    if (wants(rule) && findings[size_t(rule)].size() < maxFindings)
        findings[size_t(rule)].append({ rule, pathOf(layout, address), lineOf(address), message });
}

void LintFindings::add(LintRule rule, const QString &path, int line, const QString &message)
{
    if (wants(rule) && findings[size_t(rule)].size() < maxFindings)
        findings[size_t(rule)].append({ rule, path, line, message });
}

int LintFindings::lineOf(const ElementAddress &address) const
{
    return lines ? vanlayout::lineOf(*lines, address) : 0;
}

QVector<LintFinding> LintFindings::takeAll()
{
    QVector<LintFinding> all;
    for (QVector<LintFinding> &ofRule : findings)
        all += std::exchange(ofRule, {});
    return all;
}

QVector<LintFinding> lint(const Layout &layout, const LintOptions &options)
{
    LintFindings findings(layout, options);
    if (!layout.isRead())
        return {};
    lintReading(layout, findings);
    lintNames(layout, findings);
    lintValues(layout, findings);
    lintCodes(layout, findings);
    lintLabels(layout, findings);
    lintEncoding(layout, findings);
    if (hasColumns(layout)) {
        lintRecords(layout, findings);
        lintColumns(layout, findings);
    }
    if (isDictionary(layout)) {
        lintItems(layout, findings);
        lintLinks(layout, findings);
    } else {
        lintStatistical(layout, findings);
    }
    return findings.takeAll();
}

} // namespace vanlayout
