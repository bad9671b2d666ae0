#ifndef LAYOUT_WRITE_DIFFWALK_P_H
#define LAYOUT_WRITE_DIFFWALK_P_H

#include "compare/Diff.h"
#include "write/Wording_p.h"

// The presentation of a comparison for people: one order and one wording for the terminal and for the page.

namespace vanlayout
{

/// The part of a layout that a change is about.
enum class DiffPart { Dictionary, Level, Record, Item, ValueSet, Value };

inline DiffPart partOf(DiffKind kind)
{
    if (kind <= DiffKind::RelationChanged)
        return DiffPart::Dictionary;
    if (kind <= DiffKind::LevelAliases)
        return DiffPart::Level;
    if (kind <= DiffKind::RecordOccurrenceLabel)
        return DiffPart::Record;
    if (kind <= DiffKind::ItemMissing)
        return DiffPart::Item;
    return kind <= DiffKind::ValueSetAliases ? DiffPart::ValueSet : DiffPart::Value;
}

/// Whether the texts of a kind are free texts of the file, which are shown in quotation marks, such as labels, notes
/// and names of languages. Other texts are names, numbers and words.
inline bool hasFreeText(DiffKind kind)
{
    switch (kind) {
    case DiffKind::DictionaryLabel:
    case DiffKind::DictionaryNote:
    case DiffKind::LanguageAdded:
    case DiffKind::LanguageRemoved:
    case DiffKind::LanguageName:
    case DiffKind::LevelAdded:
    case DiffKind::LevelRemoved:
    case DiffKind::LevelLabel:
    case DiffKind::LevelNote:
    case DiffKind::RecordAdded:
    case DiffKind::RecordRemoved:
    case DiffKind::RecordLabel:
    case DiffKind::RecordNote:
    case DiffKind::RecordType:
    case DiffKind::RecordOccurrenceLabel:
    case DiffKind::ItemAdded:
    case DiffKind::ItemRemoved:
    case DiffKind::ItemLabel:
    case DiffKind::ItemNote:
    case DiffKind::ItemOccurrenceLabel:
    case DiffKind::ValueSetAdded:
    case DiffKind::ValueSetRemoved:
    case DiffKind::ValueSetLabel:
    case DiffKind::ValueSetNote:
    case DiffKind::ValueAdded:
    case DiffKind::ValueRemoved:
    case DiffKind::ValueLabel:
    case DiffKind::ValueNote:
        return true;
    default:
        return false;
    }
}

/// A text that is not a free text, for people; "none" if it is empty.
inline QString wordingOf(const QString &text)
{
    return text.isEmpty() ? QStringLiteral("none") : text;
}

/// The kind of a file and its number of items, such as "CSPro dictionary, text form 7.7, 21 items".
inline QString describeCompared(const ComparedLayout &compared)
{
    Layout layout;
    layout.format = compared.format;
    layout.container = compared.container;
    layout.formatVersion = compared.formatVersion;
    const QString count
        = QString::number(compared.items) + (compared.items == 1 ? QLatin1String(" item") : QLatin1String(" items"));
    return describeFormat(layout) + QLatin1String(", ") + count;
}

/// The reasons why properties were not compared, each once in a row, with all properties to which it applies:
/// "encoding, format version".
inline QVector<NotCompared> groupedByReason(const QVector<NotCompared> &list)
{
    QVector<NotCompared> groups;
    for (const NotCompared &entry : list) {
        if (!groups.isEmpty() && groups.constLast().why == entry.why)
            groups.last().what += QLatin1String(", ") + entry.what;
        else
            groups.append(entry);
    }
    return groups;
}

/// The heading of the changes of a record, of a level, or of the dictionary.
inline QString describeSection(const Change &change)
{
    if (partOf(change.kind) == DiffPart::Dictionary)
        return QStringLiteral("Dictionary");
    if (partOf(change.kind) == DiffPart::Level)
        return QLatin1String("Level ") + change.level;
    if (change.record == QLatin1String("(ids)"))
        return QLatin1String("Id items of ") + change.level;
    return change.record.isEmpty() ? QStringLiteral("Variables") : change.record;
}

/// The title of the kind of a change with its occurrence or relation and its language: "label of occurrence 2 [FR]".
inline QString describeProperty(const Change &change)
{
    QString text = infoOf(change.kind).title;
    if (!change.code.isEmpty() && partOf(change.kind) != DiffPart::Value)
        text += QLatin1Char(' ') + change.code;
    if (!change.language.isEmpty())
        text += QLatin1String(" [") + change.language + QLatin1Char(']');
    return text;
}

/// Visits the changes in their order and calls these operations of an object of type \a Shown:
///
/// - `section(change)` before the first change of a record, of the level, or of the dictionary;
/// - `item(change)` before the first change of an item that both layouts have;
/// - `valueSet(change)` before the first change of each value set that both layouts have;
/// - `shift(first, last, count, columns)` for at least three successive items whose start moved by the same number of
///   columns and that have no other change;
/// - `change(change)` for each other change.
template <typename Shown> class DiffWalk
{
public:
    DiffWalk(const QVector<Change> &list, Shown &target)
        : changes(list)
        , shown(target)
    {
    }

    void walk()
    {
        for (int i = 0; i < changes.size();) {
            if (i == 0 || !isSameSection(changes.at(i - 1), changes.at(i)))
                shown.section(changes.at(i));
            const int end = endOfShift(i);
            constexpr int minShifted = 3;
            if (end - i >= minShifted) {
                shown.shift(changes.at(i), changes.at(end - 1), end - i, columnsOf(changes.at(i)));
                i = end;
            } else {
                walkOne(i++);
            }
        }
    }

private:
    static bool isSameSection(const Change &one, const Change &other)
    {
        const auto isHigh = [](const Change &change) { return partOf(change.kind) <= DiffPart::Level; };
        return one.level == other.level && one.record == other.record && isHigh(one) == isHigh(other);
    }
    static bool isSameItem(const Change &one, const Change &other)
    {
        return isSameSection(one, other) && one.item == other.item && one.otherName == other.otherName;
    }
    static bool isOfBoth(const Change &change)
    {
        return infoOf(change.kind).side == DiffSide::Both || partOf(change.kind) > DiffPart::Item;
    }
    static qint64 columnsOf(const Change &change) { return change.after.toLongLong() - change.before.toLongLong(); }

    bool isLoneStart(int index) const
    {
        return changes.at(index).kind == DiffKind::ItemStart
            && (index == 0 || !isSameItem(changes.at(index - 1), changes.at(index)))
            && (index + 1 == changes.size() || !isSameItem(changes.at(index), changes.at(index + 1)));
    }
    int endOfShift(int begin) const
    {
        int end = begin;
        while (end < changes.size() && isLoneStart(end) && isSameSection(changes.at(begin), changes.at(end))
               && columnsOf(changes.at(end)) == columnsOf(changes.at(begin)))
            ++end;
        return end;
    }

    void walkOne(int index)
    {
        const Change &change = changes.at(index);
        const bool isFirst = index == 0 || !isSameItem(changes.at(index - 1), change)
            || partOf(changes.at(index - 1).kind) < DiffPart::Item;
        if (isOfBoth(change) && partOf(change.kind) >= DiffPart::Item && isFirst)
            shown.item(change);
        const bool isOfSet = partOf(change.kind) == DiffPart::Value
            || (partOf(change.kind) == DiffPart::ValueSet && infoOf(change.kind).side == DiffSide::Both);
        if (isOfSet && (isFirst || !isSameSet(changes.at(index - 1), change)))
            shown.valueSet(change);
        shown.change(change);
    }
    static bool isSameSet(const Change &one, const Change &other)
    {
        return partOf(one.kind) >= DiffPart::ValueSet && one.valueSet == other.valueSet;
    }

    const QVector<Change> &changes;
    Shown &shown;
};

} // namespace vanlayout

#endif
