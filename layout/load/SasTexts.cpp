#include "SasTexts_p.h"

#include "PlanCodes_p.h"
#include "PlanTexts_p.h"
#include "util/KeyedHash_p.h"

#include <map>

namespace vanlayout
{

namespace
{

constexpr int maxLiteral = 200; // characters of a text on one line

QByteArray missingOf(CellOutcome outcome)
{
    switch (outcome) {
    case CellOutcome::Value:
        return QByteArray();
    case CellOutcome::Missing:
        return ".";
    case CellOutcome::NoAnswer:
        return ".M";
    case CellOutcome::Refused:
        return ".R";
    }
    return QByteArray();
}

QString conditionOf(const QString &name, const SpecialRule &rule)
{
    if (rule.low == rule.high)
        return name + QLatin1String(" = ") + rule.low;
    return rule.low + QLatin1String(" <= ") + name + QLatin1String(" <= ") + rule.high;
}

/// The end of a range: a number, and whether the range holds it.
struct RangeEnd {
    QString number;
    bool isIncluded = true;

    double value() const { return number.toDouble(); }
};

struct CodeRange {
    RangeEnd low;
    RangeEnd high;

    bool isEmpty() const
    {
        return low.value() > high.value() || (low.value() == high.value() && !(low.isIncluded && high.isIncluded));
    }
};

QByteArray spelled(const CodeRange &range)
{
    if (range.low.number == range.high.number)
        return range.low.number.toLatin1();
    return range.low.number.toLatin1() + (range.low.isIncluded ? " -" : " <-") + (range.high.isIncluded ? " " : "< ")
        + range.high.number.toLatin1();
}

/// The ranges that have a label already. A new one has what they leave of it.
class LabelledRanges
{
public:
    QVector<CodeRange> add(CodeRange range)
    {
        QVector<CodeRange> left;
        std::multimap<double, CodeRange>::const_iterator next = taken.lower_bound(range.low.value());
        if (next != taken.begin())
            --next;
        for (; next != taken.end() && next->first <= range.high.value(); ++next)
            cut(&range, next->second, &left);
        if (!range.isEmpty())
            left.append(range);
        for (const CodeRange &part : qAsConst(left))
            taken.insert({ part.low.value(), part });
        return left;
    }

private:
    // Appends what is before a range that is taken, and leaves what is after it.
    static void cut(CodeRange *range, const CodeRange &other, QVector<CodeRange> *left)
    {
        CodeRange common = other;
        if (range->isEmpty() || other.high.value() < range->low.value() || isOnlyTouched(*range, other))
            return;
        const CodeRange before = { range->low, { common.low.number, !common.low.isIncluded } };
        if (!before.isEmpty())
            left->append(before);
        range->low = { common.high.number, !common.high.isIncluded };
    }

    // Whether they meet at one number that only one of them holds.
    static bool isOnlyTouched(const CodeRange &range, const CodeRange &other)
    {
        const bool isBelow
            = other.high.value() == range.low.value() && !(other.high.isIncluded && range.low.isIncluded);
        const bool isAbove
            = other.low.value() == range.high.value() && !(other.low.isIncluded && range.high.isIncluded);
        return isBelow || isAbove;
    }

    std::multimap<double, CodeRange> taken; ///< by the lower end
};

/// Makes the entries of one format.
class FormatMaker
{
public:
    FormatMaker(bool isTextFormat, SpecialForm specialForm)
        : isText(isTextFormat)
        , specials(specialForm)
    {
    }

    QByteArray entries(const CodeList &codes)
    {
        for (const CodeRow &row : codes.rows) {
            if (row.special != Special::None)
                addRow(row);
        }
        for (const CodeRow &row : codes.rows) {
            if (row.special == Special::None)
                addRow(row);
        }
        return text;
    }

private:
    void addRow(const CodeRow &row)
    {
        if (isText)
            addText(row);
        else if (!row.low.isNull() && !row.high.isNull())
            addNumber(row);
    }

    void addText(const CodeRow &row)
    {
        if (row.to.isNull() && texts.insert(row.from).second)
            addEntry(sasQuoted(row.from), row.label);
    }

    void addNumber(const CodeRow &row)
    {
        const QByteArray missing = missingOf(outcomeOf(row.special, specials));
        if (!missing.isEmpty()) {
            if (missing != "." && !reasons.contains(missing) && !row.label.isEmpty()) {
                reasons.append(missing);
                addEntry(missing, row.label);
            }
            return;
        }
        const QVector<CodeRange> ranges = labelled.add({ { row.low, true }, { row.high, true } });
        for (const CodeRange &range : ranges)
            addEntry(spelled(range), row.label);
    }

    void addEntry(const QByteArray &code, const QString &label)
    {
        constexpr LengthLimit limit = { 32767, LengthUnit::Bytes };
        if (!label.isEmpty())
            text += "\n    " + code + " = " + sasQuoted(cutTo(label, limit));
    }

    bool isText;
    SpecialForm specials;
    LabelledRanges labelled;
    KeyedSet<QString> texts; ///< codes that have an entry
    QVector<QByteArray> reasons;
    QByteArray text;
};

} // namespace

QByteArray sasQuoted(const QString &text)
{
    QString quoted = QStringLiteral("'");
    int used = 0;
    for (const QChar character : text) {
        // A line does not end with a blank, which an editor could take off.
        if (++used >= maxLiteral && !character.isLowSurrogate() && !quoted.endsWith(QLatin1Char(' '))) {
            quoted += QLatin1Char('\n');
            used = 0;
        }
        quoted += character == QLatin1Char('\'') ? QStringLiteral("''") : QString(character);
    }
    return (quoted + QLatin1Char('\'')).toUtf8();
}

QByteArray sasSpecials(const QByteArray &name, const CodeList &codes)
{
    QByteArray statements;
    QString kept;
    for (const SpecialRule &rule : codes.specials) {
        const QString condition = conditionOf(QString::fromLatin1(name), rule);
        if (rule.outcome == CellOutcome::Value)
            kept += QLatin1String(" and not (") + condition + QLatin1Char(')');
        else
            statements += "    if " + condition.toLatin1() + kept.toLatin1() + " then " + name + " = "
                + missingOf(rule.outcome) + ";\n";
    }
    return statements;
}

QByteArray sasFormat(const QByteArray &format, const CodeList &codes, bool isText, SpecialForm specials)
{
    const QByteArray entries = FormatMaker(isText, specials).entries(codes);
    return entries.isEmpty() ? entries : "  value " + format + entries + ";\n";
}

} // namespace vanlayout
