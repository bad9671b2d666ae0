#include "PlanNames_p.h"

#include "PlanTexts_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

bool isLetter(QChar character)
{
    return (character >= QLatin1Char('A') && character <= QLatin1Char('Z'))
        || (character >= QLatin1Char('a') && character <= QLatin1Char('z'));
}

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

bool isKept(const QString &name, int index, NameCharacters characters)
{
    const QChar character = name.at(index);
    if (characters == NameCharacters::Plain)
        return isLetter(character) || isDigit(character) || character == QLatin1Char('_');
    if (character.isHighSurrogate())
        return index + 1 < name.size() && name.at(index + 1).isLowSurrogate();
    if (character.isLowSurrogate())
        return index > 0 && name.at(index - 1).isHighSurrogate();
    return oneLine(character) == character;
}

bool canStart(QChar character, NameStart start)
{
    switch (start) {
    case NameStart::Any:
        return true;
    case NameStart::LetterOrUnderscore:
        return !isDigit(character);
    case NameStart::Letter:
        return isLetter(character);
    }
    return true;
}

} // namespace

QString PlanNames::give(const QString &original)
{
    QString wanted = legal(original);
    // A number does not help a name with a reserved beginning, such as sqlite_.
    if (isReserved(wanted) && isReserved(wanted + QLatin1String("_2")))
        wanted = cutTo(QLatin1Char('V') + wanted, rules.name);
    return isReserved(wanted) || isTaken(wanted) ? numbered(wanted) : wanted;
}

// Marks a name as used; returns whether it was before.
bool PlanNames::isTaken(const QString &name)
{
    return !used.insert(keyOf(name)).second;
}

bool PlanNames::isReserved(const QString &name) const
{
    return kind == Tables ? rules.isReservedTable(name) : rules.isReservedColumn(name);
}

// A character outside Plain is one `_`, also if it is beyond U+FFFF.
QString PlanNames::legal(const QString &original) const
{
    QString name;
    name.reserve(original.size());
    for (int i = 0; i < original.size(); ++i) {
        const bool isSecondHalf = original.at(i).isLowSurrogate() && i > 0 && original.at(i - 1).isHighSurrogate();
        if (isKept(original, i, rules.characters))
            name += original.at(i);
        else if (!isSecondHalf)
            name += QLatin1Char('_');
    }
    if (name.isEmpty() || !canStart(name.at(0), rules.start))
        name.prepend(QLatin1Char('V'));
    return cutTo(rules.nameCase == NameCase::Lower ? name.toLower() : name, rules.name);
}

QString PlanNames::numbered(const QString &wanted)
{
    int first = 2;                                // the least number with as many digits as `end`
    for (int end = 10;; first = end, end *= 10) { // NOLINT(readability-magic-numbers)
        const int digits = QString::number(first).size();
        LengthLimit limit = rules.name;
        limit.max = limit.max > 0 ? limit.max - digits - 1 : 0;
        const QString stem = cutTo(wanted, limit);
        int &number = next[keyOf(stem)];
        for (number = std::max(number, first); number < end; ++number) {
            QString name = stem + QLatin1Char('_') + QString::number(number);
            if (!isReserved(name) && !isTaken(name))
                return name;
        }
    }
}

QString PlanNames::keyOf(const QString &name) const
{
    return rules.nameCase == NameCase::Exact ? name : name.toLower();
}

} // namespace vanlayout
