#include "convert/StatisticalLabels_p.h"

#include "load/PlanTexts_p.h"
#include "write/Columns_p.h"

#include <cmath>

namespace vanlayout
{

namespace
{

constexpr LengthLimit labelOfSav = { 120, LengthUnit::Bytes };
constexpr LengthLimit labelOfDta = { 32000, LengthUnit::Bytes };

// The letter of an extended missing value; 0 for other codes.
char tagOf(const QString &code)
{
    const bool isTag = code.size() == 2 && code.at(0) == QLatin1Char('.') && code.at(1) >= QLatin1Char('a')
        && code.at(1) <= QLatin1Char('z');
    return isTag ? code.at(1).toLatin1() : '\0';
}

QString textOf(const Range &range)
{
    return range.to.isEmpty() ? range.from : range.from + QStringLiteral(" to ") + range.to;
}

bool isMissing(const Value &value)
{
    return value.special == Special::Missing || value.special == Special::Refused;
}

} // namespace

QString cutWithLoss(const QString &text, const LengthLimit &limit, const Loss &loss, Losses &losses)
{
    const int zero = text.indexOf(QChar(0)); // which ends a text of ReadStat
    QString shorter = cutTo(zero < 0 ? text : text.left(zero), limit);
    if (shorter != text)
        losses.append({ loss.path, loss.what + QStringLiteral(" after its first %1 characters").arg(shorter.size()) });
    return shorter;
}

std::optional<double> statisticalNumberOf(const QString &code)
{
    if (code == QLatin1String("inf"))
        return HUGE_VAL;
    if (code == QLatin1String("-inf"))
        return -HUGE_VAL;
    bool isWhole = false;
    const double number = QString(code).replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&isWhole);
    return isWhole && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

StatisticalLabels::StatisticalLabels(readstat_writer_t *fileWriter, StatisticalFormat target,
                                     const QString &languageCode, const Reports &reportsOfLosses)
    : writer(fileWriter)
    , isSav(target == StatisticalFormat::Sav)
    , language(languageCode)
    , reports(reportsOfLosses)
    , names(target)
{
}

readstat_label_set_t *StatisticalLabels::setOf(const Item &item, const QString &variable)
{
    const ValueSet *set = labelledSetOf(item);
    if (!set)
        return nullptr;
    const auto known = sets.find(set);
    if (known != sets.end())
        return known->second;
    isText = kindOf(item) == ValueKind::Text;
    path = variable;
    return sets.emplace(set, make(*set)).first->second;
}

readstat_label_set_t *StatisticalLabels::make(const ValueSet &set)
{
    if (isText && !isSav) {
        lose(QStringLiteral("the value labels, because they are of texts"));
        return nullptr;
    }
    source = &set;
    made = nullptr;
    labels.clear();
    for (const Value &value : set.values)
        addValue(value);
    return made;
}

void StatisticalLabels::addValue(const Value &value)
{
    const QString label = value.labels.in(language);
    if (label.isEmpty() && !isMissing(value))
        reports.ofKinds.add(QStringLiteral("values without a label"), path);
    if (label.isEmpty())
        return;
    if (value.ranges.isEmpty())
        lose(QStringLiteral("the label \"%1\", which has no code").arg(label));
    for (const Range &range : value.ranges)
        addLabel(value, range);
}

void StatisticalLabels::addLabel(const Value &value, const Range &range)
{
    const QString label = value.labels.in(language);
    const auto loseIt = [&] { lose(QStringLiteral("the label of %1: \"%2\"").arg(vanlayout::textOf(range), label)); };
    const QString *earlier = range.to.isEmpty() ? earlierLabel(range.from, label) : nullptr;
    if (earlier && *earlier == label)
        return;
    if (earlier || !range.to.isEmpty())
        return loseIt();
    const Loss loss = { path, QStringLiteral("the label of %1").arg(range.from) };
    const QString shorter = cutWithLoss(label, isSav ? labelOfSav : labelOfDta, loss, reports.single);
    if (!write(range.from, shorter.toUtf8()))
        return loseIt();
    if (value.special != Special::None && !isMissing(value))
        reports.ofKinds.add(QStringLiteral("the special meaning %1").arg(wordOf(value.special)), path);
}

bool StatisticalLabels::write(const QString &code, const QByteArray &label)
{
    if (!isText)
        return writeNumber(code, label);
    readstat_label_string_value(written(), withoutTrailingBlanks(code).toUtf8().constData(), label.constData());
    return true;
}

bool StatisticalLabels::writeNumber(const QString &code, const QByteArray &label)
{
    const std::optional<double> number = statisticalNumberOf(code);
    if (isSav) {
        if (number)
            readstat_label_double_value(written(), *number, label.constData());
        return number.has_value();
    }
    if (const char tag = tagOf(code)) {
        readstat_label_tagged_value(written(), tag, label.constData());
        return true;
    }
    constexpr double smallest = -2147483647; // of Stata's long
    constexpr double largest = 2147483620;
    if (!number || *number < smallest || *number > largest || *number != std::floor(*number))
        return false;
    readstat_label_int32_value(written(), int32_t(*number), label.constData());
    return true;
}

// The label that the code has already; null if it has none. A file has one label for a code, which `01` and `1` are.
const QString *StatisticalLabels::earlierLabel(const QString &code, const QString &label)
{
    constexpr int digitsOfDouble = 17;
    const std::optional<double> number = isText ? std::nullopt : statisticalNumberOf(code);
    const QString key = number ? QString::number(*number, 'g', digitsOfDouble) : withoutTrailingBlanks(code);
    const auto [place, isNew] = labels.emplace(key, label);
    return isNew ? nullptr : &place->second;
}

// The set, which is made for its first label: a file cannot have an empty one.
readstat_label_set_t *StatisticalLabels::written()
{
    if (!made) {
        const readstat_type_t type = isText ? READSTAT_TYPE_STRING : isSav ? READSTAT_TYPE_DOUBLE : READSTAT_TYPE_INT32;
        made = readstat_add_label_set(writer, type, nameOf(*source).constData());
    }
    return made;
}

QByteArray StatisticalLabels::nameOf(const ValueSet &set)
{
    const QString wanted = set.name.isEmpty() ? path : set.name;
    const QString name = names.give(wanted);
    if (!isSav && !set.name.isEmpty() && name != wanted)
        lose(QStringLiteral("the name %1 of the value set, which is now %2").arg(wanted, name));
    return name.toUtf8();
}

void StatisticalLabels::lose(const QString &what)
{
    reports.single.append({ path, what });
}

} // namespace vanlayout
