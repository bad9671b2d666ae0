#include "check/LintFindings_p.h"
#include "check/LintSets_p.h"
#include "write/Codes_p.h"

#include <algorithm>
#include <cmath>

namespace vanlayout
{

namespace
{

// CSPro knows no exponents and no plus sign (CSPro dictionary format, text form, section 8.3); other programs do.
bool isNumber(const QString &code, bool isInCSPro)
{
    const auto isForeign
        = [](QChar character) { return character == QLatin1Char('+') || character.toLower() == QLatin1Char('e'); };
    return !decimalNumberOf(code).spelling.isEmpty()
        && !(isInCSPro && std::any_of(code.begin(), code.end(), isForeign));
}

bool isBlank(const QString &code)
{
    return code.trimmed().isEmpty();
}

/// The digits of a number before and after its decimal mark, without zeros that mean nothing.
struct NumberShape {
    int sign = 0;
    int whole = 0;
    int decimals = 0;
};

NumberShape shapeOf(const QString &code)
{
    QString digits = code.trimmed().replace(QLatin1Char(','), QLatin1Char('.'));
    NumberShape shape;
    if (digits.startsWith(QLatin1Char('-')) || digits.startsWith(QLatin1Char('+'))) {
        shape.sign = digits.startsWith(QLatin1Char('-')) ? 1 : 0;
        digits.remove(0, 1);
    }
    const auto isZero = [](QChar digit) { return digit == QLatin1Char('0'); };
    const int mark = digits.indexOf(QLatin1Char('.'));
    const QString whole = mark < 0 ? digits : digits.left(mark);
    const QString decimals = mark < 0 ? QString() : digits.mid(mark + 1);
    shape.whole = int(whole.cend() - std::find_if_not(whole.cbegin(), whole.cend(), isZero));
    shape.decimals = int(decimals.crend() - std::find_if_not(decimals.crbegin(), decimals.crend(), isZero));
    return shape;
}

// The characters that a number needs in the data, with all decimals of its item.
int widthOf(const NumberShape &shape, const Item &item)
{
    const int decimals = item.decimals > 0 ? item.decimals + (item.decimalMark ? 1 : 0) : 0;
    return std::max(1, shape.sign + shape.whole + decimals);
}

QString textWithoutBlanks(QString text)
{
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text;
}

/// Checks the values of the value sets of a dictionary, one by one.
class ValueCheck
{
public:
    ValueCheck(const Layout &layout, LintFindings &list)
        : findings(list)
        , isInCSPro(isDictionary(layout))
    {
    }

    void check(const ValueSet &set, const Item &itsItem, const ElementAddress &address)
    {
        item = &itsItem;
        unsigned seen = 0;
        for (int index = 0; index < set.values.size(); ++index) {
            value = &set.values.at(index);
            place = valueAddress(address, index);
            checkSpecial(seen);
            if (value->ranges.isEmpty())
                add(LintRule::ValueWithoutCode,
                    QStringLiteral("the value has no code; add its code, or remove the value"));
            for (const Range &range : value->ranges)
                checkRange(range);
        }
    }

private:
    void add(LintRule rule, const QString &message) { findings.add(rule, place, message); }

    void checkSpecial(unsigned &seen)
    {
        if (value->special == Special::None)
            return;
        const bool hasSeveral = value->ranges.size() > 1
            || std::any_of(value->ranges.begin(), value->ranges.end(),
                           [](const Range &range) { return !isSingle(range); });
        if (hasSeveral && isInCSPro)
            add(LintRule::SpecialRange,
                QStringLiteral("a value that means %1 has more than one code; give it a single code").arg(meaning()));
        if (item->isAlpha() && isInCSPro)
            add(LintRule::SpecialText,
                QStringLiteral("a text cannot mean %1 in CSPro; make the item numeric, or remove the mark")
                    .arg(meaning()));
        const unsigned bit = 1U << unsigned(value->special);
        if ((seen & bit) && isInCSPro)
            add(LintRule::RepeatedSpecial,
                QStringLiteral("another value of the set means %1 too; CSPro expects one of each").arg(meaning()));
        seen |= bit;
    }
    QString meaning() const
    {
        return value->special == Special::NotApplicable ? QStringLiteral("not applicable") : wordOf(value->special);
    }

    void checkRange(const Range &range)
    {
        if (item->isNumeric())
            checkNumbers(range);
        else if (item->isAlpha())
            checkTexts(range);
    }

    void checkNumbers(const Range &range)
    {
        checkNumber(range.from);
        if (range.to.isEmpty())
            return;
        checkNumber(range.to);
        if (valueOf(range.from) > valueOf(range.to))
            add(LintRule::ReversedRange,
                QStringLiteral("the range %1 to %2 ends before it begins; exchange its ends")
                    .arg(inMessage(range.from), inMessage(range.to)));
    }

    // A blank code of a special value is a blank field.
    void checkNumber(const QString &code)
    {
        if (isBlank(code) && value->special != Special::None)
            return;
        if (!isInCSPro && (item->start < 1 || std::isinf(valueOf(code)))) // .a of Stata; an open end of a range
            return;
        if (!isNumber(code, isInCSPro)) {
            add(LintRule::TextCode,
                QStringLiteral("the code \"%1\" of a numeric item is not a number; write a number, or make the item "
                               "alphanumeric")
                    .arg(inMessage(code)));
            return;
        }
        const NumberShape shape = shapeOf(code);
        if (hasWidth() && widthOf(shape, *item) > item->length)
            addWide(code, widthOf(shape, *item));
        if (shape.decimals > item->decimals && (isInCSPro || hasWidth()))
            add(LintRule::CodeDecimals,
                QStringLiteral("the code %1 has more decimals than its item, which has %2; change one of them")
                    .arg(inMessage(code), QString::number(item->decimals)));
    }

    void checkTexts(const Range &range)
    {
        if (!range.to.isEmpty() && isInCSPro)
            add(LintRule::TextRange,
                QStringLiteral(
                    "%1 to %2 is a range of texts, which CSPro does not know; list the codes, or make the item "
                    "numeric")
                    .arg(inMessage(range.from), inMessage(range.to)));
        const int width = textWithoutBlanks(range.from).size();
        if (hasWidth() && width > item->length)
            addWide(range.from, width);
    }

    // The length of an item without columns is that of its format, and its values may be longer.
    bool hasWidth() const { return item->length >= 1 && (isInCSPro || item->start >= 1); }

    void addWide(const QString &code, int width)
    {
        add(LintRule::WideCode,
            QStringLiteral(
                "the code %1 needs %2 characters, but the item has %3; correct the code, or make the item longer")
                .arg(inMessage(code), QString::number(width), QString::number(item->length)));
    }

    LintFindings &findings;
    bool isInCSPro;
    const Item *item = nullptr;
    const Value *value = nullptr;
    ElementAddress place;
};

} // namespace

void lintValues(const Layout &layout, LintFindings &findings)
{
    if (!hasColumns(layout))
        return;
    CheckedSets sets(layout);
    ValueCheck check(layout, findings);
    forEachValueSet(layout, [&](const ValueSet &set, const Item &item, const ElementAddress &address) {
        if (set.values.isEmpty() && isDictionary(layout))
            findings.add(LintRule::EmptyValueSet, address,
                         QStringLiteral("the value set has no values; add them, or remove the set"));
        if (sets.isNew(set, item))
            check.check(set, item, address);
    });
}

} // namespace vanlayout
