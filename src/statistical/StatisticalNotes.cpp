#include "statistical/StatisticalNotes_p.h"

#include "import/LayoutNotes_p.h"
#include "util/KeyedHash_p.h"
#include "util/NumbersSoFar_p.h"
#include "util/Numbers_p.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace statistical
{

namespace
{

// The number of the file as text, with all the digits that every double keeps.
QString describeNumber(double number)
{
    constexpr int allDigits = 15;
    return QString::number(number, 'g', allDigits);
}

bool isTaggedMissing(const readstat_value_t &value)
{
    return value.is_tagged_missing && value.tag >= 'a' && value.tag <= 'z';
}

QString describeValue(const TStatValueLabel &held)
{
    if (held.stringValue)
        return QString::fromUtf8(held.stringValue, int(held.stringLength));
    return describeNumber(heldBy(held) == HeldValue::integer ? held.intValue : held.doubleValue);
}

QString describeValue(const readstat_value_t &value, const TStatValueLabel &held)
{
    return isTaggedMissing(value) ? QLatin1Char('.') + QString(QLatin1Char(value.tag)) : describeValue(held);
}

QString describeLabel(const TStatValueLabel &label)
{
    return describeValue(label) + QLatin1Char(' ') + QString::fromUtf8(label.label);
}

// The name of a set and its first label, since a name that ReadStat has made is not informative.
QString describeSet(const std::string &name, const LabelSet &set)
{
    const QString text = QString::fromStdString(name);
    return set.empty() ? text : text + QLatin1String(": ") + describeLabel(*set.front());
}

QString describeBound(const readstat_value_t &value)
{
    if (readstat_value_type(value) == READSTAT_TYPE_STRING)
        return QString::fromUtf8(readstat_string_value(value));
    const double number = readstat_double_value(value);
    return number == -HUGE_VAL ? QStringLiteral("LOWEST")
        : number == HUGE_VAL   ? QStringLiteral("HIGHEST")
                               : describeNumber(number);
}

// The missing values as they are declared: "97 to 99, 0".
QString describeMissing(const readstat_variable_t &variable)
{
    QStringList ranges;
    for (int i = 0; i < readstat_variable_get_missing_ranges_count(&variable); ++i) {
        const QString from = describeBound(readstat_variable_get_missing_range_lo(&variable, i));
        const QString to = describeBound(readstat_variable_get_missing_range_hi(&variable, i));
        ranges += from == to ? from : from + QLatin1String(" to ") + to;
    }
    return ranges.join(QLatin1String(", "));
}

// Returns whether the entry of a label would be split at a wrong place when it is read back. A code that is a number
// has no blanks. A reader of the labels treats a line feed as the tab that ends an entry.
bool isSplit(const char *textCode, const char *label)
{
    return (textCode && std::strpbrk(textCode, " \t\n")) || std::strpbrk(label, "\t\n");
}

// Returns whether a format is that of a date or a time: "%td" in Stata, "DATE11" in SPSS.
bool isDate(const QString &format)
{
    if (format.startsWith(QLatin1Char('%'))) {
        const QStringView kind = QStringView(format).mid(format.startsWith(QLatin1String("%-")) ? 2 : 1);
        return kind.startsWith(QLatin1Char('t')) || kind.startsWith(QLatin1Char('d'));
    }
    static const QStringList names
        = { QStringLiteral("DATE"),  QStringLiteral("ADATE"),    QStringLiteral("EDATE"), QStringLiteral("JDATE"),
            QStringLiteral("SDATE"), QStringLiteral("QYR"),      QStringLiteral("MOYR"),  QStringLiteral("WKYR"),
            QStringLiteral("WKDAY"), QStringLiteral("MONTH"),    QStringLiteral("TIME"),  QStringLiteral("MTIME"),
            QStringLiteral("DTIME"), QStringLiteral("DATETIME"), QStringLiteral("YMDHMS") };
    const auto isDigitOrPoint = [](QChar unit) { return unit.isDigit() || unit == QLatin1Char('.'); };
    const auto *end = std::find_if(format.cbegin(), format.cend(), isDigitOrPoint);
    return names.contains(format.left(int(end - format.cbegin())));
}

// The number that the label text has for a value.
double asWritten(double value)
{
    QString text;
    appendReal(text, value);
    return text.toDouble();
}

/// The codes of one set that have been read so far, as the label text has them.
class CodesSoFar
{
public:
    bool isNew(const TStatValueLabel &label)
    {
        switch (heldBy(label)) {
        case HeldValue::integer:
            return numbers.isNew(label.intValue);
        case HeldValue::real:
            return numbers.isNew(asWritten(label.doubleValue));
        case HeldValue::text:
            return texts.insert(QByteArray(label.stringValue, int(label.stringLength))).second;
        case HeldValue::none:
            break;
        }
        return true;
    }

private:
    NumbersSoFar numbers;
    KeyedSet<QByteArray> texts;
};

bool isRounded(const TStatValueLabel &label)
{
    return heldBy(label) == HeldValue::real && !std::isnan(label.doubleValue)
        && asWritten(label.doubleValue) != label.doubleValue;
}

} // namespace

StatisticalNotes::StatisticalNotes(const Format &fileFormat)
    : format(fileFormat)
{
}

void StatisticalNotes::addLabel(const LabelSet *set, const std::string &setName, const readstat_value_t &value,
                                const TStatValueLabel &held)
{
    const auto note = [&](NoteKind kind) {
        const QString text = QString::fromStdString(setName) + QLatin1String(": ") + describeValue(value, held)
            + QLatin1Char(' ') + QString::fromUtf8(held.label);
        waiting[set].push_back({ kind, 0, QString(), text });
    };
    if (heldBy(held) == HeldValue::none)
        return note(NoteKind::labelOfMinusOne);
    if (isTaggedMissing(value))
        note(NoteKind::missingAsNumber);
    if (isSplit(held.stringValue, held.label))
        note(NoteKind::labelEntryParted);
    if (format.encoding == TextEncoding::latin1 && !isAscii(held.label, held.labelLength))
        note(NoteKind::textNotAscii);
}

// LCOV_EXCL_START: ReadStat passes a text with each label of a file
void StatisticalNotes::addLabelWithoutText(const LabelSet *set, const std::string &setName,
                                           const readstat_value_t &value)
{
    const OwnedLabel held = makeValueLabel(value);
    const QString text = QString::fromStdString(setName) + QLatin1String(": ") + describeValue(value, *held);
    waiting[set].push_back({ NoteKind::labelWithoutText, 0, QString(), text });
}
// LCOV_EXCL_STOP

void StatisticalNotes::addVariable(const readstat_variable_t &variable, const TGenericField &field) const
{
    const auto note = [&](NoteKind kind, const QString &text) { report->add(kind, text, 0, field.name); };
    const QString variableFormat = QString::fromLatin1(variable.format, int(lengthOf(variable.format)));
    if (format.encoding == TextEncoding::latin1 && !isAscii(variable.label, lengthOf(variable.label)))
        note(NoteKind::textNotAscii, QString::fromUtf8(variable.label, int(lengthOf(variable.label))));
    if (field.type == vtNone)
        note(NoteKind::typeUnknown, variableFormat); // LCOV_EXCL_LINE: ReadStat 1.1.8 passes a long text as a text
    if (variable.missingness.missing_ranges_count > 0)
        note(NoteKind::missingNotRead, describeMissing(variable));
    if (field.type != vtString && isDate(variableFormat))
        note(NoteKind::dateAsNumber, variableFormat);
    if (format.decimalsDecide && field.type != vtString && hasDecimals(variable))
        note(NoteKind::decimalsLost, variableFormat);
    if (format.widthIsOneDigit && widthInFormat(variable) != field.length)
        note(NoteKind::widthCut, variableFormat);
}

void StatisticalNotes::addUse(const LabelSet *set, const QString &variable)
{
    usedSets.insert(set);
    addWaiting(set, variable);
}

void StatisticalNotes::addWaiting(const LabelSet *set, const QString &variable)
{
    const auto found = waiting.find(set);
    if (found == waiting.end())
        return;
    for (const ReadNote &note : found->second)
        report->add(note.kind, note.text, 0, variable);
    waiting.erase(found);
}

void StatisticalNotes::addCutValues(const LabelSet &set, const QString &variable) const
{
    constexpr int notHeld = -1; // the one integer that a label cannot hold
    for (const TStatValueLabel *label : set) {
        if (!label || heldBy(*label) != HeldValue::real) // LCOV_EXCL_BR_LINE: no reader adds a null label
            continue;
        const int cut = numbers::truncated(label->doubleValue);
        if (label->doubleValue != cut)
            report->add(cut == notHeld ? NoteKind::labelOfMinusOne : NoteKind::valueCutToInteger,
                        describeNumber(label->doubleValue), 0, variable);
    }
}

void StatisticalNotes::addCodes(const LabelSet &set, const QString &variable) const
{
    CodesSoFar codes;
    for (const TStatValueLabel *label : set) {
        if (label && isRounded(*label)) // LCOV_EXCL_BR_LINE: no reader adds a null label
            report->add(NoteKind::codeRounded, describeValue(*label), 0, variable);
        if (label && !codes.isNew(*label)) // LCOV_EXCL_BR_LINE: no reader adds a null label
            report->add(NoteKind::duplicateCode, describeLabel(*label), 0, variable);
    }
}

void StatisticalNotes::addBounds(const Span &span, const QString &variable) const
{
    const bool isOneNumber = span.hasLower() && span.lower() == span.upper();
    if (span.hasLower() && !isWrittenInFull(span.lower()))
        report->add(NoteKind::boundRounded, describeNumber(span.lower()), 0, variable);
    if (span.hasUpper() && !isOneNumber && !isWrittenInFull(span.upper()))
        report->add(NoteKind::boundRounded, describeNumber(span.upper()), 0, variable);
}

void StatisticalNotes::addEnd(const LabelSets &sets, const PassResults &results, const ReadProblem &problem)
{
    for (const auto &[name, set] : sets) {
        addWaiting(set, QString());
        if (results.variables == READSTAT_OK && usedSets.find(set) == usedSets.end())
            report->add(NoteKind::labelSetUnused, describeSet(name, *set));
    }
    addFailure(results, problem);
}

void StatisticalNotes::addFailure(const PassResults &results, const ReadProblem &problem) const
{
    if (problem.isOfDevice)
        return report->add(NoteKind::readFailed, problem.line);
    const readstat_error_t error = results.variables != READSTAT_OK ? results.variables : results.labels;
    if (error == READSTAT_OK && problem.isNull())
        return;
    const QString reason = problem.isNull() ? QString::fromUtf8(readstat_error_message(error)) : problem.line;
    if (error == READSTAT_ERROR_UNSUPPORTED_FILE_FORMAT_VERSION)
        report->add(NoteKind::versionRefused, reason);
    else
        report->add(results.hasVariables ? NoteKind::readingEnded : NoteKind::fileNotRead, reason);
}

} // namespace statistical
