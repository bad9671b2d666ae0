#include "LintTable.h"

#include "LayoutText.h"
#include "Printable.h"
#include "TableLines.h"

#include <algorithm>

using namespace vanlayout;

namespace
{

constexpr int maxShown = 10; // findings of one rule

QString headOf(const LintedFile &file)
{
    QStringList counts;
    const auto append = [&](Severity severity, const QString &word) {
        if (const int count = file.countOf(severity))
            counts.append(countOf(count, word));
    };
    append(Severity::Error, QStringLiteral("error"));
    append(Severity::Warning, QStringLiteral("warning"));
    append(Severity::Info, QStringLiteral("info"));
    return file.file + QLatin1String(": ")
        + (counts.isEmpty() ? QStringLiteral("no findings") : counts.join(QLatin1String(", ")));
}

QString placeOf(const LintFinding &finding)
{
    QString place = wordOf(finding.severity()) + QLatin1String(" [") + infoOf(finding.rule).id + QLatin1Char(']');
    if (finding.line > 0)
        place += QStringLiteral(" line %1").arg(finding.line);
    if (!finding.path.isEmpty())
        place += QLatin1Char(' ') + finding.path;
    return place;
}

// The findings are in the order of the rules, so those of a rule follow each other.
void printSeverity(const LintedFile &file, Severity severity, bool showsAll, TableLines &lines)
{
    const QVector<LintFinding> &findings = file.findings;
    for (int first = 0; first < findings.size();) {
        const LintRule rule = findings.at(first).rule;
        int end = first;
        while (end < findings.size() && findings.at(end).rule == rule)
            ++end;
        const int count = infoOf(rule).severity == severity ? end - first : 0;
        const int shown = showsAll ? count : std::min(count, maxShown);
        for (int index = first; index < first + shown; ++index) {
            lines.print(1, printable(placeOf(findings.at(index))));
            lines.print(2, printable(findings.at(index).message));
        }
        if (shown < count)
            lines.print(1, QStringLiteral("%1 more of [%2]; --all shows them").arg(count - shown).arg(infoOf(rule).id));
        first = end;
    }
}

} // namespace

void printLintTable(const LintedFile &file, const LintTableStyle &style, QIODevice &out)
{
    TableLines lines(out, style.width);
    lines.print(0, printable(headOf(file)));
    for (const Severity severity : { Severity::Error, Severity::Warning, Severity::Info })
        printSeverity(file, severity, style.showsAll, lines);
}

void printLintRules(int width, QIODevice &out)
{
    TableLines lines(out, width);
    for (const LintRuleInfo &info : lintRules()) {
        lines.print(0, info.id + QLatin1String(" (") + wordOf(info.severity) + QLatin1Char(')'));
        lines.print(1, info.meaning);
    }
}
