#ifndef LAYOUT_COMPARE_DIFF_H
#define LAYOUT_COMPARE_DIFF_H

#include "model/Layout.h"
#include "vanlayout_export.h"

#include <QString>
#include <QVector>

#include <optional>

/// The comparison of two layouts: the changes to a survey from one file to the other.
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

/// The layouts in which the subject of a change occurs.
enum class DiffSide { Before, After, Both };

/// A kind of change, for people and for programs.
struct VANLAYOUT_EXPORT DiffKindInfo {
    DiffKind kind = DiffKind::DictionaryName;
    QString word;    ///< stable, matches `[a-z-]+`: "item-label"
    QString title;   ///< short text for people: "label"
    QString meaning; ///< one sentence for people
    DiffSide side = DiffSide::Both;
};

/// All kinds, in the order of the enumeration. The reference is valid until the program ends.
VANLAYOUT_EXPORT const QVector<DiffKindInfo> &diffKinds();
/// The entry of a kind in diffKinds().
VANLAYOUT_EXPORT const DiffKindInfo &infoOf(DiffKind kind);
/// The word of a kind, as in the JSON form.
VANLAYOUT_EXPORT QString wordOf(DiffKind kind);
/// The kind with this word, compared case-insensitively; none if no kind has it.
VANLAYOUT_EXPORT std::optional<DiffKind> diffKindOf(const QString &word);

/// One difference. Members that do not apply to the kind are empty.
///
/// Names are those of the earlier layout, or of the later one if only that has the element. The record of an id item is
/// `(ids)`.
struct VANLAYOUT_EXPORT Change {
    DiffKind kind = DiffKind::DictionaryName;
    QString level;
    QString record;
    QString item;
    QString otherName; ///< name of the item or, without an item, of the record in the later layout, if it differs
    QString valueSet;
    QString code;     ///< code or range (`1`, `5 to 9`) of a value, number of an occurrence, or name of a relation
    QString language; ///< code of a language; empty if neither layout has several
    QString before;   ///< text of the earlier layout; empty if it has none
    QString after;    ///< text of the later layout; empty if it has none
};

/// A statement of the files that was not compared.
struct VANLAYOUT_EXPORT NotCompared {
    QString what; ///< such as "encoding" or "columns"
    QString why;  ///< such as "one of the formats does not have it"
};

/// Facts about one of the two layouts of a comparison.
struct VANLAYOUT_EXPORT ComparedLayout {
    QString file;
    Format format = Format::None;
    QString container;
    QString formatVersion;
    QString name;
    QString label; ///< in the first language that is compared
    int items = 0; ///< number of items, including id items and subitems
};

/// The number of changes of one kind.
struct VANLAYOUT_EXPORT KindCount {
    DiffKind kind = DiffKind::DictionaryName;
    int count = 0;
};

/// The differences between two layouts.
struct VANLAYOUT_EXPORT LayoutDiff {
    ComparedLayout before;
    ComparedLayout after;
    /// The changes of the dictionary, its languages, relations and levels come first, then those of each record of the
    /// earlier layout with its items and the items that were added to it, then the added records with their items.
    /// Changes of one element follow each other.
    QVector<Change> changes;
    QVector<NotCompared> notCompared;

    bool isEmpty() const { return changes.isEmpty(); }
    /// The kinds that occur, in the order of `diffKinds()`.
    QVector<KindCount> counts() const;
};

/// Selects what is compared, and which differences are kept.
struct VANLAYOUT_EXPORT DiffOptions {
    QString language;          ///< code of the only language whose labels are compared; empty for all languages
    QVector<DiffKind> only;    ///< kinds to keep; empty for all
    QVector<DiffKind> ignored; ///< kinds to leave out
};

/// Compares two layouts that were read (`isRead()`).
///
/// The survey is compared, not the file: the same dictionary in both CSPro forms, or in several versions and encodings
/// of one form, has no differences. Effective values are compared: final columns, labels by language with the fallback
/// to the first one, numeric codes as numbers. For files of two formats, only what both formats can hold is compared;
/// `LayoutDiff::notCompared` lists the rest. The order of records, items, values and aliases is not compared, but a new
/// order of items shows in their columns.
///
/// Levels are matched by their depth. Records are matched by name, then by name ignoring case; records that remain are
/// matched as renamed if at least half of the items of the larger one have the same names, or if type and label are the
/// same. Items are matched within their record by name, then by name ignoring case; then by name in another record,
/// which makes them moved; then, within their record, as renamed by columns, type, labels and value labels, but never
/// by traits that several items share. Value sets are matched by name, then by content. Values are matched by code or
/// range, each code of a value separately.
///
/// There are at most 1,000,000 changes; if there are more, an entry in `notCompared` states it. Time and memory grow
/// with the size of the layouts and of the result, whatever names and codes the files have.
VANLAYOUT_EXPORT LayoutDiff compare(const Layout &before, const Layout &after, const DiffOptions &options = {});

} // namespace vanlayout

Q_DECLARE_TYPEINFO(vanlayout::DiffKindInfo, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::Change, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::NotCompared, Q_MOVABLE_TYPE);

#endif
