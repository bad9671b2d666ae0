#include "compare/ConcordCodes_p.h"

#include "compare/ConcordOrder_p.h"
#include "compare/ConcordWording_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

/// Collects the codes of one variable.
class CodeRows
{
public:
    CodeRows(int variableIndex, int roundCount, CodeType codeType)
        : variable(variableIndex)
        , count(roundCount)
        , type(codeType)
    {
    }

    void add(int round, const Value &value, const QString &label)
    {
        if (value.ranges.isEmpty() && value.special == Special::NotApplicable)
            addCode(round, keyWithoutCode(value), value, label);
        for (const Range &range : value.ranges)
            addCode(round, keyOf(value, range, type), value, label);
    }
    /// Begins the codes of a round.
    void begin() { previous = ConcordOrder::none; }

    QVector<ConcordCode> inOrder() const
    {
        QVector<ConcordCode> sorted;
        const QVector<int> rows = order.rows();
        sorted.reserve(rows.size());
        for (const int row : rows)
            sorted.append(codes.at(row));
        return sorted;
    }

private:
    void addCode(int round, const CodeKey &key, const Value &value, const QString &label)
    {
        const auto [found, isNew] = rowOf.emplace(key, order.size());
        if (isNew) {
            order.addAfter(previous);
            codes.append({ variable, key.from, key.to, value.special, QVector<std::optional<QString>>(count),
                           CodeChange::None });
        }
        previous = found->second;
        ConcordCode &code = codes[previous];
        if (code.special == Special::None)
            code.special = value.special;
        // The first label counts if a code occurs several times.
        if (!code.cells.at(round))
            code.cells[round] = label;
    }

    int variable;
    int count;
    CodeType type;
    int previous = ConcordOrder::none;
    ConcordOrder order;
    QVector<ConcordCode> codes;
    std::unordered_map<CodeKey, int, CodeKeyHash> rowOf;
};

// A file whose format keeps the value sets elsewhere does not remove codes.
bool knowsCodes(const ConcordRound &round, const RoundPlace &place)
{
    const Format format = round.layout().format;
    return (format != Format::Sas && format != Format::SasXport) || codedSetOf(*round.at(place.item).item);
}

} // namespace

CodeChange changeOf(const QVector<std::optional<QString>> &labels)
{
    CodeChange largest = CodeChange::None;
    const std::optional<QString> *previous = nullptr;
    bool isRemoved = false;
    for (const std::optional<QString> &label : labels) {
        if (label && previous)
            largest = std::max(largest, wordingChange(**previous, *label));
        isRemoved = isRemoved || (!label && previous);
        if (label)
            previous = &label;
    }
    if (largest == CodeChange::Meaning || labels.isEmpty())
        return largest;
    if (isRemoved)
        return CodeChange::Removed;
    return labels.constFirst() ? largest : CodeChange::Added;
}

QVector<ConcordCode> ConcordCodes::codesOf(int variable, const QVector<RoundPlace> &items) const
{
    const auto itemOf
        = [&](const RoundPlace &place) -> const Item & { return *rounds[size_t(place.round)].at(place.item).item; };
    const bool areNumbers
        = std::all_of(items.begin(), items.end(), [&](const RoundPlace &place) { return itemOf(place).isNumeric(); });
    CodeRows rows(variable, int(rounds.size()), areNumbers ? CodeType::Number : CodeType::Text);
    for (const RoundPlace &place : items) {
        const ValueSet *const set = codedSetOf(itemOf(place));
        rows.begin();
        for (int i = 0; set && i < set->values.size(); ++i)
            rows.add(place.round, set->values.at(i), set->values.at(i).labels.in(language));
    }
    QVector<ConcordCode> codes = rows.inOrder();
    for (ConcordCode &code : codes) {
        QVector<std::optional<QString>> labels;
        for (const RoundPlace &place : items) {
            if (knowsCodes(rounds[size_t(place.round)], place))
                labels.append(code.cells.at(place.round));
        }
        code.change = changeOf(labels);
    }
    return codes;
}

} // namespace vanlayout
