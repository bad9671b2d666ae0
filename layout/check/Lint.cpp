#include "check/Lint.h"

#include "check/LintFindings_p.h"
#include "load/PlanTexts_p.h"
#include "read/CSProCommon_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

template <typename Lines> bool has(const Lines &lines, int index)
{
    return index >= 0 && size_t(index) < lines.size();
}

int lineOf(const ElementLines::Element &element, const ElementAddress &address)
{
    if (!has(element.valueSets, address.valueSet))
        return element.line;
    const ElementLines::Set &set = element.valueSets[size_t(address.valueSet)];
    return has(set.values, address.value) ? set.values[size_t(address.value)] : set.line;
}

int lineOf(const ElementLines::Level &level, const ElementAddress &address)
{
    if (address.isInIds())
        return has(level.ids, address.item) ? lineOf(level.ids[size_t(address.item)], address) : level.line;
    if (!has(level.records, address.record))
        return level.line;
    const ElementLines::Record &record = level.records[size_t(address.record)];
    return has(record.items, address.item) ? lineOf(record.items[size_t(address.item)], address) : record.line;
}

} // namespace

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
    if (!lines)
        return 0;
    if (has(lines->relations, address.relation))
        return lines->relations[size_t(address.relation)];
    if (!has(lines->levels, address.level))
        return lines->dictionary;
    return vanlayout::lineOf(lines->levels[size_t(address.level)], address);
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
    if (isDictionary(layout)) {
        lintRecords(layout, findings);
        lintColumns(layout, findings);
        lintItems(layout, findings);
        lintLinks(layout, findings);
    } else {
        lintStatistical(layout, findings);
    }
    return findings.takeAll();
}

} // namespace vanlayout
