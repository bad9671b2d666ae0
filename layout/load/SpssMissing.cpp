#include "SpssMissing_p.h"

namespace vanlayout
{

namespace
{

constexpr int maxMissingBytes = 8; // of a text, and of a variable that may have several
constexpr int maxSingles = 3;
constexpr int maxLiteral = 200; // characters of a text on one line

bool isControl(QChar character)
{
    return character.unicode() < ' ';
}

bool isRange(const SpecialRule &rule)
{
    return rule.low != rule.high;
}

QString rangeOf(const SpecialRule &rule)
{
    return isRange(rule) ? rule.low + QLatin1String(" THRU ") + rule.high : rule.low;
}

/// Chooses the missing values of a column: the first that have a place.
class MissingMaker
{
public:
    MissingMaker(bool isTextColumn, int limit)
        : isText(isTextColumn)
        , maxValues(limit)
    {
    }

    SpssMissing make(const QVector<SpecialRule> &rules)
    {
        for (const SpecialRule &rule : rules)
            add(rule);
        while (!missing.recodes.isEmpty() && missing.recodes.constLast().endsWith(QLatin1String("=COPY)")))
            missing.recodes.removeLast();
        return missing;
    }

private:
    void add(const SpecialRule &rule)
    {
        if (isText)
            addText(rule);
        else if (rule.low.toDouble() <= rule.high.toDouble())
            addNumber(rule);
    }

    // A text has no value "system-missing": one that is not applicable is a missing value as well.
    void addText(const SpecialRule &rule)
    {
        if (rule.outcome == CellOutcome::Value)
            return;
        const bool isShort = rule.low.toUtf8().size() <= maxMissingBytes;
        declare(spssQuoted(rule.low), isShort && missing.values.size() < maxValues);
    }

    // A code that comes first keeps its meaning in a range that follows.
    void addNumber(const SpecialRule &rule)
    {
        const bool isSystemMissing = rule.outcome == CellOutcome::Missing;
        missing.recodes.append(QLatin1Char('(') + rangeOf(rule)
                               + (isSystemMissing ? QLatin1String("=SYSMIS)") : QLatin1String("=COPY)")));
        if (!isSystemMissing && rule.outcome != CellOutcome::Value)
            declareNumber(rule);
    }

    void declareNumber(const SpecialRule &rule)
    {
        const int singles = missing.values.size() - (hasRange ? 1 : 0);
        const bool fits = isRange(rule) ? !hasRange && singles <= 1 : singles < (hasRange ? 1 : maxValues);
        declare(rangeOf(rule), fits);
        hasRange = hasRange || (fits && isRange(rule));
    }

    void declare(const QString &value, bool fits)
    {
        if (!missing.values.contains(value))
            (fits ? missing.values : missing.leftOver).append(value);
    }

    bool isText;
    int maxValues;
    bool hasRange = false;
    SpssMissing missing;
};

} // namespace

SpssMissing spssMissingOf(const CodeList &codes)
{
    return MissingMaker(false, maxSingles).make(codes.specials);
}

SpssMissing spssMissingOfText(const CodeList &codes, int bytes)
{
    return MissingMaker(true, bytes > maxMissingBytes ? 1 : maxSingles).make(codes.specials);
}

QString spssQuoted(const QString &text)
{
    QString quoted = QStringLiteral("'");
    int used = 0;
    for (const QChar character : text) {
        if (++used % maxLiteral == 0 && !character.isLowSurrogate())
            quoted += QLatin1String("' +\n    '");
        if (isControl(character))
            quoted += QStringLiteral("' + X'%1' + '").arg(character.unicode(), 2, 16, QLatin1Char('0'));
        else if (character == QLatin1Char('\''))
            quoted += QLatin1String("''");
        else
            quoted += character;
    }
    return quoted + QLatin1Char('\'');
}

} // namespace vanlayout
