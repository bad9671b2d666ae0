#include "SasFormats_p.h"

#include "LabelledRanges_p.h"
#include "PlanCodes_p.h"
#include "PlanLists_p.h"
#include "PlanTexts_p.h"
#include "ProgramText_p.h"
#include "SasTexts_p.h"
#include "util/KeyedHash_p.h"

namespace vanlayout
{

namespace
{

QByteArray spelled(const CodeRange &range)
{
    if (range.low.number == range.high.number)
        return range.low.number.toLatin1();
    return range.low.number.toLatin1() + (range.low.isIncluded ? " -" : " <-") + (range.high.isIncluded ? " " : "< ")
        + range.high.number.toLatin1();
}

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
        const QByteArray missing = missingValueOf(outcomeOf(row.special, specials)).toUpper();
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

// The name is none of SAS's own formats, and does not end with a digit.
SasFormat formatOf(const LoadPlan &plan, const PlannedColumn &column)
{
    constexpr int maxName = 20;
    const bool isText = column.type == CellType::Text;
    const QByteArray name
        = (isText ? "$" : "") + column.name.left(maxName).toLatin1() + '_' + number(column.codes + 1) + '_';
    const QByteArray statement = sasFormat(name, plan.codes.at(column.codes), isText, plan.options.specials);
    return { statement.isEmpty() ? QByteArray() : name, statement };
}

} // namespace

QVector<SasFormat> sasFormats(const LoadPlan &plan)
{
    QVector<SasFormat> formats(plan.codes.size());
    forEachCodeList(plan, [&](const PlannedTable & /*table*/, const PlannedColumn &column) {
        formats[column.codes] = formatOf(plan, column);
    });
    return formats;
}

QByteArray sasFormat(const QByteArray &format, const CodeList &codes, bool isText, SpecialForm specials)
{
    const QByteArray entries = FormatMaker(isText, specials).entries(codes);
    return entries.isEmpty() ? entries : "  value " + format + entries + ";\n";
}

} // namespace vanlayout
