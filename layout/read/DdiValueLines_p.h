#ifndef LAYOUT_READ_DDIVALUELINES_P_H
#define LAYOUT_READ_DDIVALUELINES_P_H

#include "model/Layout.h"
#include "util/KeyedHash_p.h"

namespace vanlayout::ddi
{

/// A value in a line of a note, such as `0 to 4, 9: Young [missing]`.
struct ValueLine {
    QVector<Range> ranges;
    Special special = Special::None;
    QString label;
};

/// Recognises the values in the lines of a note about a value set by the ranges that are stated elsewhere in the
/// variable: `1: one` is a value of a set that has the code 1, and else a text.
class ValueLines
{
public:
    /// \a valid are the codes and ranges of the set that are not special, in the order of its values. \a hasBlank is
    /// whether an empty code is special.
    ValueLines(const QVector<Range> &valid, bool hasBlank);

    /// The value in the next line; none if the line is part of another text.
    std::optional<ValueLine> next(const QString &line);
    /// Begins with the first line of another note about the same set.
    void restart() { position = 0; }
    /// Whether the lines of all notes so far had all valid ranges.
    bool isComplete() const { return !seen.contains(false); }

private:
    std::optional<ValueLine> validIn(const QString &line);
    std::optional<ValueLine> validFrom(int first, const QString &line);
    std::optional<ValueLine> specialIn(const QString &line) const;

    QVector<Range> ranges;
    QStringList texts;             ///< of each range
    KeyedMap<QString, int> places; ///< of the first range with a text
    QVector<bool> seen;            ///< whether a line had a range
    int position = 0;
    bool isBlankSpecial;
};

/// `1`, or `5 to 9`.
QString textOf(const Range &range);
/// The special value with these words; none for other words.
Special specialOf(const QString &words);

} // namespace vanlayout::ddi

#endif
