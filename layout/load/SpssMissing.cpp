#include "SpssMissing_p.h"

namespace vanlayout
{

namespace
{

constexpr int maxMissingBytes = 8; // of a text, and of a variable that may have several
constexpr int maxSingles = 3;
constexpr int bytesOfPair = 4;  // of a character that is two units of UTF-16
constexpr int maxLiteral = 100; // bytes of a text on one line: a line of SPSS has at most 256

bool isControl(QChar character)
{
    return character.unicode() < ' ';
}

QString spelledInQuotes(QChar character)
{
    if (isControl(character))
        return QStringLiteral("' + X'%1' + '").arg(character.unicode(), 2, 16, QLatin1Char('0'));
    return character == QLatin1Char('\'') ? QStringLiteral("''") : QString(character);
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
        const QString spelled = spelledInQuotes(character);
        const int bytes = character.isSurrogate() ? bytesOfPair / 2 : spelled.toUtf8().size();
        if (used + (character.isHighSurrogate() ? bytesOfPair : bytes) > maxLiteral && !character.isLowSurrogate()) {
            quoted += QLatin1String("' +\n    '");
            used = 0;
        }
        used += bytes;
        quoted += spelled;
    }
    return quoted + QLatin1Char('\'');
}

} // namespace vanlayout
