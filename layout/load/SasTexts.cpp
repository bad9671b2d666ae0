#include "SasTexts_p.h"

#include "PlanLists_p.h"

namespace vanlayout
{

namespace
{

constexpr int maxLiteral = 200; // characters of a text on one line

QByteArray conditionOf(const QByteArray &name, const SpecialRule &rule)
{
    if (rule.low == rule.high)
        return name + " = " + rule.low.toLatin1();
    return rule.low.toLatin1() + " <= " + name + " <= " + rule.high.toLatin1();
}

} // namespace

QByteArray sasQuoted(const QString &text)
{
    QString quoted = QStringLiteral("'");
    quoted.reserve(text.size() + 2);
    int used = 0;
    for (const QChar character : text) {
        // A line does not end with a blank, which an editor could take off.
        if (++used >= maxLiteral && !character.isLowSurrogate() && !quoted.endsWith(QLatin1Char(' '))) {
            quoted += QLatin1Char('\n');
            used = 0;
        }
        quoted += character;
        if (character == QLatin1Char('\''))
            quoted += character;
    }
    quoted += QLatin1Char('\'');
    return quoted.toUtf8();
}

QByteArray sasSpecials(const QByteArray &name, const CodeList &codes)
{
    const auto ofRule = [&](const SpecialRule &rule) { return conditionOf(name, rule); };
    return specialStatements(codes, " and not (", ofRule, [&](const QByteArray &condition, CellOutcome outcome) {
        return QByteArray("    if " + condition + " then " + name + " = " + missingValueOf(outcome).toUpper() + ";\n");
    });
}

} // namespace vanlayout
