#ifndef LAYOUT_COMPARE_DIFFCHANGES_P_H
#define LAYOUT_COMPARE_DIFFCHANGES_P_H

#include "compare/Diff.h"

#include <algorithm>
#include <array>

namespace vanlayout
{

/// Aliases in the form in which they are compared: their order is ignored.
inline QString comparableAliases(QStringList aliases)
{
    if (aliases.size() > 1)
        aliases.sort(Qt::CaseInsensitive);
    return aliases.join(QLatin1String(", "));
}

/// Collects changes of the requested kinds, at most `maxChanges`.
class ChangeCollector
{
public:
    /// Max number of changes: a label set that many items share can differ in each of them.
    static constexpr int maxChanges = 1000000;

    explicit ChangeCollector(const DiffOptions &options)
    {
        isKept.fill(options.only.isEmpty());
        for (const DiffKind kind : options.only)
            isKept[size_t(kind)] = true;
        for (const DiffKind kind : options.ignored)
            isKept[size_t(kind)] = false;
    }

    bool keeps(DiffKind kind) const { return isKept[size_t(kind)]; }

    /// Whether a difference between values would be kept.
    bool takesValues() const
    {
        return !isCut
            && std::any_of(isKept.begin() + int(DiffKind::ValueAdded), isKept.end(), [](bool keeps) { return keeps; });
    }

    /// Adds a change with the level, record, item, value set, code and language that \a change already has.
    void add(Change change, DiffKind kind, const QString &before, const QString &after)
    {
        if (!keeps(kind))
            return;
        if (changes.size() == maxChanges) {
            isCut = true;
            return;
        }
        change.kind = kind;
        change.before = before;
        change.after = after;
        changes.append(change);
    }
    void addIfDifferent(const Change &place, DiffKind kind, const QString &before, const QString &after)
    {
        if (before != after)
            add(place, kind, before, after);
    }
    /// Adds a change if the aliases differ. They are names in CSPro, so case is ignored.
    void addAliases(const Change &place, DiffKind kind, const QStringList &before, const QStringList &after)
    {
        if (before.isEmpty() && after.isEmpty())
            return;
        const QString one = comparableAliases(before);
        const QString other = comparableAliases(after);
        if (one.compare(other, Qt::CaseInsensitive) != 0)
            add(place, kind, one, other);
    }

    const QVector<Change> &all() const { return changes; }
    bool isIncomplete() const { return isCut; }

private:
    std::array<bool, size_t(DiffKind::ValueColor) + 1> isKept = {};
    QVector<Change> changes;
    bool isCut = false;
};

/// A note in the form in which it is compared: each run of white space is one blank.
inline QString comparableNote(const QString &note)
{
    return note.simplified();
}

inline QString yesOrNo(bool value)
{
    return value ? QStringLiteral("yes") : QStringLiteral("no");
}

} // namespace vanlayout

#endif
