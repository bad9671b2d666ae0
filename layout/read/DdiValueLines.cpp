#include "read/DdiValueLines_p.h"

#include <algorithm>

namespace vanlayout::ddi
{

namespace
{

struct SpecialWords {
    Special special;
    const char *words;
};
constexpr SpecialWords specials[] = { { Special::Missing, "missing" },
                                      { Special::NotApplicable, "not applicable" },
                                      { Special::Refused, "refused" },
                                      { Special::Default, "default" } };

const QLatin1String afterRange(", ");
const QLatin1String beforeLabel(": ");
const QLatin1String betweenEnds(" to ");

bool hasAt(const QString &line, int position, QLatin1String wanted)
{
    return QStringView(line).mid(position).startsWith(wanted);
}

// The position of a separator, or the end of the line.
int endOf(const QString &line, QLatin1String separator)
{
    const int found = int(line.indexOf(separator));
    return found < 0 ? int(line.size()) : found;
}

QVector<Range> rangesIn(const QString &text)
{
    QVector<Range> ranges;
    const QStringList pieces = text.isEmpty() ? QStringList() : text.split(afterRange);
    for (const QString &piece : pieces) {
        const int to = int(piece.indexOf(betweenEnds));
        ranges.append(to < 0 ? Range{ piece, QString() } : Range{ piece.left(to), piece.mid(to + betweenEnds.size()) });
    }
    return ranges;
}

} // namespace

QString textOf(const Range &range)
{
    return range.to.isEmpty() ? range.from : range.from + betweenEnds + range.to;
}

Special specialOf(const QString &words)
{
    const auto *const found = std::find_if(std::begin(specials), std::end(specials),
                                           [&](const SpecialWords &row) { return words == QLatin1String(row.words); });
    return found != std::end(specials) ? found->special : Special::None;
}

ValueLines::ValueLines(const QVector<Range> &valid, bool hasBlank)
    : ranges(valid)
    , seen(valid.size(), false)
    , isBlankSpecial(hasBlank)
{
    for (const Range &range : valid) {
        texts.append(textOf(range));
        if (!texts.constLast().isEmpty())
            places.try_emplace(texts.constLast(), texts.size() - 1);
    }
}

std::optional<ValueLine> ValueLines::next(const QString &line)
{
    if (std::optional<ValueLine> value = validIn(line))
        return value;
    if (std::optional<ValueLine> value = specialIn(line))
        return value;
    if (line.startsWith(beforeLabel))
        return ValueLine{ {}, Special::None, line.mid(beforeLabel.size()) };
    return std::nullopt;
}

// The next range is expected; others were left out, because their values have no label in the language of the note.
std::optional<ValueLine> ValueLines::validIn(const QString &line)
{
    std::optional<ValueLine> value = validFrom(position, line);
    if (value)
        return value;
    const auto place = places.find(line.left(std::min(endOf(line, afterRange), endOf(line, beforeLabel))));
    return place != places.end() ? validFrom(place->second, line) : std::nullopt;
}

// Takes as many ranges as the line begins with, so that a range is not taken for another that it begins with.
std::optional<ValueLine> ValueLines::validFrom(int first, const QString &line)
{
    std::optional<ValueLine> found;
    int at = 0;
    for (int i = first; i < texts.size() && QStringView(line).mid(at).startsWith(texts.at(i)); ++i) {
        at += texts.at(i).size();
        const bool isEnd = at == line.size();
        if (isEnd || hasAt(line, at, beforeLabel)) {
            found = ValueLine{ ranges.mid(first, i + 1 - first), Special::None,
                               isEnd ? QString() : line.mid(at + beforeLabel.size()) };
            position = i + 1;
        }
        if (!hasAt(line, at, afterRange))
            break;
        at += afterRange.size();
    }
    if (found)
        std::fill(seen.begin() + first, seen.begin() + position, true);
    return found;
}

std::optional<ValueLine> ValueLines::specialIn(const QString &line) const
{
    for (const SpecialWords &row : specials) {
        const QString end = QLatin1String(" [") + QLatin1String(row.words) + QLatin1Char(']');
        if (!line.endsWith(end))
            continue;
        const QString text = line.left(line.size() - end.size());
        const int label = int(text.indexOf(beforeLabel));
        ValueLine value
            = { rangesIn(text.left(label)), row.special, label < 0 ? QString() : text.mid(label + beforeLabel.size()) };
        if (value.ranges.isEmpty() && isBlankSpecial)
            value.ranges.append(Range());
        return value;
    }
    return std::nullopt;
}

} // namespace vanlayout::ddi
