#ifndef LAYOUT_COMPARE_DIFF_H
#define LAYOUT_COMPARE_DIFF_H

#include "model/Layout.h"
#include "vanlayout_export.h"

#include <QString>
#include <QVector>

#include <optional>

/// The comparison of two layouts: what changed of a survey from one file to the other.
namespace vanlayout
{

/// The subject of a change. `diffKinds()` has the word and the meaning of each.
enum class DiffKind {
    DictionaryName,
    DictionaryLabel,
    DictionaryNote,
    DictionaryAliases,
    LanguageAdded,
    LanguageRemoved,
    LanguageName,
    LanguageOrder,
    RecordTypeColumns,
    WeightVariable,
    RelationAdded,
    RelationRemoved,
    RelationChanged,
    LevelAdded,
    LevelRemoved,
    LevelName,
    LevelLabel,
    LevelNote,
    LevelAliases,
    RecordAdded,
    RecordRemoved,
    RecordRenamed,
    RecordMoved,
    RecordLabel,
    RecordNote,
    RecordAliases,
    RecordType,
    RecordRequired,
    RecordMaximum,
    RecordLength,
    RecordOccurrenceLabel,
    ItemAdded,
    ItemRemoved,
    ItemRenamed,
    ItemMoved,
    ItemLabel,
    ItemNote,
    ItemAliases,
    ItemType,
    ItemStart,
    ItemLength,
    ItemOccurrences,
    ItemOccurrenceLabel,
    ItemParent,
    ItemDecimals,
    ItemDecimalMark,
    ItemZeroFill,
    ItemCapture,
    ItemStorage,
    ItemFormat,
    ItemMeasure,
    ItemAlignment,
    ItemDisplayWidth,
    ItemMissing,
    ValueSetAdded,
    ValueSetRemoved,
    ValueSetRenamed,
    ValueSetLabel,
    ValueSetNote,
    ValueSetAliases,
    ValueAdded,
    ValueRemoved,
    ValueLabel,
    ValueNote,
    ValueSpecial,
    ValueImage,
    ValueColor,
};

/// The layouts that have the subject of a change.
enum class DiffSide { Before, After, Both };

/// A kind of change, for people and for programs.
struct VANLAYOUT_EXPORT DiffKindInfo {
    DiffKind kind = DiffKind::DictionaryName;
    QString word;    ///< stable, of `[a-z-]+`: "item-label"
    QString title;   ///< short text for people: "label"
    QString meaning; ///< one sentence
    DiffSide side = DiffSide::Both;
};

/// All kinds, in the order of the enumeration.
VANLAYOUT_EXPORT const QVector<DiffKindInfo> &diffKinds();
/// The entry of a kind in the table.
VANLAYOUT_EXPORT const DiffKindInfo &infoOf(DiffKind kind);
/// The word of a kind, as the JSON form has it.
VANLAYOUT_EXPORT QString wordOf(DiffKind kind);
/// The kind that a word names, in any case; none for another word.
VANLAYOUT_EXPORT std::optional<DiffKind> diffKindOf(const QString &word);

/// One difference. Members that say nothing about a kind are empty.
///
/// Names are those of the earlier layout, or of the later one where the element is in that alone. The record of an id
/// item is `(ids)`.
struct VANLAYOUT_EXPORT Change {
    DiffKind kind = DiffKind::DictionaryName;
    QString level;
    QString record;
    QString item;
    QString otherName; ///< name of the item or, without an item, of the record in the later layout, where it differs
    QString valueSet;
    QString code;     ///< code or range (`1`, `5 to 9`) of a value, number of an occurrence, or name of a relation
    QString language; ///< code of a language; empty where neither layout has several
    QString before;   ///< text of the earlier layout; empty where it has none
    QString after;    ///< text of the later layout; empty where it has none
};

/// Something that the files say and that was not compared.
struct VANLAYOUT_EXPORT NotCompared {
    QString what; ///< "encoding", "columns"
    QString why;  ///< "the Stata file has none"
};

/// Facts of a layout that was compared.
struct VANLAYOUT_EXPORT ComparedLayout {
    QString file;
    Format format = Format::None;
    QString container;
    QString formatVersion;
    QString name;
    QString label; ///< in the language of the comparison
    int items = 0; ///< id items and subitems counted
};

/// How often a kind occurs.
struct VANLAYOUT_EXPORT KindCount {
    DiffKind kind = DiffKind::DictionaryName;
    int count = 0;
};

/// The differences between two layouts.
struct VANLAYOUT_EXPORT LayoutDiff {
    ComparedLayout before;
    ComparedLayout after;
    /// The dictionary first, then each record of the earlier layout with its items, then what was added. Changes of one
    /// element are neighbours.
    QVector<Change> changes;
    QVector<NotCompared> notCompared;

    bool isEmpty() const { return changes.isEmpty(); }
    /// The kinds that occur, in the order of `diffKinds()`.
    QVector<KindCount> counts() const;
};

/// Selects what is compared, and which differences are kept.
struct VANLAYOUT_EXPORT DiffOptions {
    QString language;          ///< code of the only language whose labels are compared; all languages where empty
    QVector<DiffKind> only;    ///< kinds to keep; all where empty
    QVector<DiffKind> ignored; ///< kinds to leave out
};

/// Compares two layouts that were read.
///
/// The survey is compared, not the file: a dictionary in both CSPro forms, or in several versions and encodings
/// of one form, has no differences. Effective values are compared: columns as they are laid out, labels by language
/// with the fallback to the first one, numeric codes as numbers. Of files of two formats that is compared which both
/// can hold; `LayoutDiff::notCompared` lists the rest. The order of records, items, values and aliases is not compared:
/// that of items shows in their columns.
///
/// Levels are matched by their depth. Records are matched by name, then ignoring case, then as renamed where
/// most of their items have the same names, or where their type and label are the same. Items are matched within their
/// record by name, then ignoring case, then by their name in another record, which makes them moved; then, in
/// their record, as renamed by columns, type, labels and value labels, never by columns or labels that several have.
/// Value sets are matched by name, then by content; values by code and range, each of several codes by itself.
///
/// There are at most 1,000,000 changes; an entry in `notCompared` says so where there are more. Time and memory grow
/// with the size of the layouts and of the result, whatever names and codes the files have.
VANLAYOUT_EXPORT LayoutDiff compare(const Layout &before, const Layout &after, const DiffOptions &options = {});

} // namespace vanlayout

Q_DECLARE_TYPEINFO(vanlayout::DiffKindInfo, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::Change, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::NotCompared, Q_MOVABLE_TYPE);

#endif
