#include "PlanCodes_p.h"

#include "PlanTexts_p.h"
#include "util/KeyedHash_p.h"
#include "write/Codes_p.h"

#include <optional>
#include <utility>

namespace vanlayout
{

namespace
{

constexpr qint64 maxExpandedCodes = 100;

/// Makes the code list of one item.
class CodeListMaker
{
public:
    CodeListMaker(const Item &codedItem, const LoadOptions &loadOptions, const LengthLimit &limit)
        : item(codedItem)
        , options(loadOptions)
        , labelLimit(limit)
    {
    }

    CodeList make()
    {
        const QVector<Value> values = item.valueSets.isEmpty() ? QVector<Value>() : item.valueSets.constFirst().values;
        list.rows.reserve(values.size());
        for (const Value &value : values) {
            const QString label = oneLine(value.labels.in(options.language));
            for (const Range &range : value.ranges)
                list.rows.append(rowOf(value, range, label));
        }
        addSpecials();
        // A special counts before an ordinary value with the same code, so its label does as well.
        for (const CodeRow &row : qAsConst(list.rows)) {
            if (row.special != Special::None)
                reserve(row);
        }
        list.labels.reserve(list.rows.size());
        for (const CodeRow &row : qAsConst(list.rows))
            addLabels(row);
        return std::move(list);
    }

private:
    struct WholeRange {
        qint64 low = 0;
        qint64 high = -1;
    };

    QString codeOf(const QString &written) const
    {
        return item.isNumeric() ? withoutBlanks(written) : withoutTrailingBlanks(written);
    }

    CodeRow rowOf(const Value &value, const Range &range, const QString &label) const
    {
        CodeRow row;
        row.from = codeOf(range.from);
        row.to = isSingle(range) ? QString() : codeOf(range.to);
        row.label = label;
        row.special = value.special;
        if (item.isNumeric()) {
            row.low = plainNumberOf(range.from).value_or(QString());
            row.high = isSingle(range) ? row.low : plainNumberOf(range.to).value_or(QString());
        }
        return row;
    }

    // Whether a row stands for a cell that is not blank.
    bool matchesCells(const CodeRow &row) const
    {
        if (item.isNumeric())
            return !row.low.isNull() && !row.high.isNull();
        return !row.from.isEmpty() && row.to.isNull();
    }

    // Rules that keep a code matter only before a rule that does not.
    void addSpecials()
    {
        for (const CodeRow &row : qAsConst(list.rows)) {
            if (row.special == Special::None || !matchesCells(row))
                continue;
            const bool isText = !item.isNumeric();
            list.specials.append({ outcomeOf(row.special, options.specials), isText ? row.from : row.low,
                                   isText ? row.from : row.high });
        }
        addMissing();
        while (!list.specials.isEmpty() && list.specials.constLast().outcome == CellOutcome::Value)
            list.specials.removeLast();
    }

    // User-missing values of a DDI document. An open end of a range is the largest number of the columns.
    void addMissing()
    {
        const CellOutcome outcome = outcomeOf(Special::Missing, options.specials);
        for (const Range &range : item.missing) {
            const QString nines(item.length, QLatin1Char('9'));
            const bool isOpenBelow = item.isNumeric() && range.from == QLatin1String("-inf");
            const bool isOpenAbove = item.isNumeric() && range.to == QLatin1String("inf");
            CodeRow row = rowOf(Value(),
                                { isOpenBelow ? QLatin1Char('-') + nines : range.from, isOpenAbove ? nines : range.to },
                                QString());
            if (matchesCells(row))
                list.specials.append(
                    { outcome, item.isNumeric() ? row.low : row.from, item.isNumeric() ? row.high : row.from });
        }
    }

    std::optional<WholeRange> wholeRangeOf(const CodeRow &row) const
    {
        bool isLow = false;
        bool isHigh = false;
        WholeRange range{ row.low.toLongLong(&isLow), row.high.toLongLong(&isHigh) };
        // The difference of two numbers of 18 digits does not overflow.
        constexpr int maxDigits = 18;
        if (!isLow || !isHigh || row.low.size() > maxDigits || row.high.size() > maxDigits)
            return std::nullopt;
        if (range.high < range.low || range.high - range.low >= maxExpandedCodes)
            return std::nullopt;
        return range;
    }

    // Calls the function with each code of a row that can have a label of its own, and returns whether there is one. A
    // range that cannot be expanded has none, and neither has a number that only stands for blank.
    template <typename Function> bool forEachCode(const CodeRow &row, Function function) const
    {
        if (!row.to.isNull())
            return item.isNumeric() && forEachCodeOf(wholeRangeOf(row), function);
        const QString &code = item.isNumeric() ? row.low : row.from;
        const bool isCode = !item.isNumeric() || !code.isNull();
        if (isCode)
            function(code);
        return isCode;
    }

    template <typename Function> static bool forEachCodeOf(const std::optional<WholeRange> &range, Function function)
    {
        for (qint64 code = range ? range->low : 0; range && code <= range->high; ++code)
            function(QString::number(code));
        return range.has_value();
    }

    void reserve(const CodeRow &row)
    {
        forEachCode(row, [&](const QString &code) { ofSpecials.insert(code); });
    }

    void addLabels(const CodeRow &row)
    {
        if (row.label.isEmpty())
            return;
        const QString label = cutTo(row.label, labelLimit);
        const CellOutcome outcome = outcomeOfCell(row);
        const bool mayBeOfSpecial = row.special == Special::None && !ofSpecials.empty();
        const bool hasCodes = forEachCode(row, [&](const QString &code) {
            const bool isOfSpecial = mayBeOfSpecial && ofSpecials.find(code) != ofSpecials.end();
            if (!isOfSpecial && labelled.insert(code).second)
                list.labels.append({ code, label, outcome });
        });
        if (!hasCodes && !row.to.isNull())
            list.rangeLabels.append(row);
    }

    // A text of blanks stays the empty text.
    CellOutcome outcomeOfCell(const CodeRow &row) const
    {
        return !item.isNumeric() && row.from.isEmpty() ? CellOutcome::Value : outcomeOf(row.special, options.specials);
    }

    const Item &item;
    const LoadOptions &options;
    LengthLimit labelLimit;
    CodeList list;
    KeyedSet<QString> ofSpecials; ///< codes with a special meaning
    KeyedSet<QString> labelled;
};

} // namespace

CellOutcome outcomeOf(Special special, SpecialForm form)
{
    const bool isKept = form == SpecialForm::Keep;
    switch (special) {
    case Special::None:
        return CellOutcome::Value;
    case Special::NotApplicable:
        return CellOutcome::Missing;
    case Special::Default:
        return isKept ? CellOutcome::Value : CellOutcome::Missing;
    case Special::Missing:
        return isKept ? CellOutcome::Value : CellOutcome::NoAnswer;
    case Special::Refused:
        return isKept ? CellOutcome::Value : CellOutcome::Refused;
    }
    return CellOutcome::Value;
}

CodeList codeListOf(const Item &item, const LoadOptions &options, const LengthLimit &labelLimit)
{
    return CodeListMaker(item, options, labelLimit).make();
}

} // namespace vanlayout
