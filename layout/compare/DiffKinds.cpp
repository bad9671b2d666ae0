#include "compare/Diff.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

struct Row {
    DiffKind kind;
    DiffSide side;
    const char *word;
    const char *title;
    const char *meaning;
};

constexpr DiffSide inBefore = DiffSide::Before;
constexpr DiffSide inAfter = DiffSide::After;
constexpr DiffSide inBoth = DiffSide::Both;

// One row per kind, in the order of the enumeration.
// clang-format off
constexpr Row rows[] = {
    { DiffKind::DictionaryName,     inBoth,   "dictionary-name",     "name",                "The name of the dictionary or data set differs." },
    { DiffKind::DictionaryLabel,    inBoth,   "dictionary-label",    "label",               "The label of the dictionary or file differs." },
    { DiffKind::DictionaryNote,     inBoth,   "dictionary-note",     "note",                "The note of the dictionary or file differs." },
    { DiffKind::DictionaryAliases,  inBoth,   "dictionary-aliases",  "aliases",             "The aliases of the dictionary differ." },
    { DiffKind::LanguageAdded,      inAfter,  "language-added",      "language added",      "A language was added; its labels are not listed separately." },
    { DiffKind::LanguageRemoved,    inBefore, "language-removed",    "language removed",    "A language was removed; its labels are not listed separately." },
    { DiffKind::LanguageName,       inBoth,   "language-name",       "language name",       "The name of a language differs." },
    { DiffKind::LanguageOrder,      inBoth,   "language-order",      "order of languages",  "The languages that both layouts have are in a different order." },
    { DiffKind::RecordTypeColumns,  inBoth,   "record-type-columns", "record type columns", "The columns that mark the type of a line differ." },
    { DiffKind::WeightVariable,     inBoth,   "weight-variable",     "weight variable",     "The weight variable differs." },
    { DiffKind::RelationAdded,      inAfter,  "relation-added",      "relation added",      "A relation was added." },
    { DiffKind::RelationRemoved,    inBefore, "relation-removed",    "relation removed",    "A relation was removed." },
    { DiffKind::RelationChanged,    inBoth,   "relation-changed",    "relation",            "A relation links other records or items, or has other aliases." },
    { DiffKind::LevelAdded,         inAfter,  "level-added",         "level added",         "A level was added; levels are matched by their depth." },
    { DiffKind::LevelRemoved,       inBefore, "level-removed",       "level removed",       "A level was removed; levels are matched by their depth." },
    { DiffKind::LevelName,          inBoth,   "level-name",          "name of level",       "The name of a level differs." },
    { DiffKind::LevelLabel,         inBoth,   "level-label",         "label of level",      "The label of a level differs." },
    { DiffKind::LevelNote,          inBoth,   "level-note",          "note of level",       "The note of a level differs." },
    { DiffKind::LevelAliases,       inBoth,   "level-aliases",       "aliases of level",    "The aliases of a level differ." },
    { DiffKind::RecordAdded,        inAfter,  "record-added",        "record added",        "A record was added; so were its items." },
    { DiffKind::RecordRemoved,      inBefore, "record-removed",      "record removed",      "A record was removed; so were its items." },
    { DiffKind::RecordRenamed,      inBoth,   "record-renamed",      "name",                "A record has another name." },
    { DiffKind::RecordMoved,        inBoth,   "record-moved",        "level",               "A record is in another level." },
    { DiffKind::RecordLabel,        inBoth,   "record-label",        "label",               "The label of a record differs." },
    { DiffKind::RecordNote,         inBoth,   "record-note",         "note",                "The note of a record differs." },
    { DiffKind::RecordAliases,      inBoth,   "record-aliases",      "aliases",             "The aliases of a record differ." },
    { DiffKind::RecordType,         inBoth,   "record-type",         "record type",         "The text that marks the lines of a record differs." },
    { DiffKind::RecordRequired,     inBoth,   "record-required",     "required",            "A record became required, or is no longer." },
    { DiffKind::RecordMaximum,      inBoth,   "record-maximum",      "maximum",             "The maximum number of records of the type in a case differs." },
    { DiffKind::RecordLength,       inBoth,   "record-length",       "length of a line",    "The stated length of the lines of a record differs." },
    { DiffKind::RecordOccurrenceLabel, inBoth, "record-occurrence-label", "label of occurrence", "The label of an occurrence of a record differs." },
    { DiffKind::ItemAdded,          inAfter,  "item-added",          "added",               "An item was added." },
    { DiffKind::ItemRemoved,        inBefore, "item-removed",        "removed",             "An item was removed." },
    { DiffKind::ItemRenamed,        inBoth,   "item-renamed",        "name",                "An item has another name." },
    { DiffKind::ItemMoved,          inBoth,   "item-moved",          "record",              "An item is in another record." },
    { DiffKind::ItemLabel,          inBoth,   "item-label",          "label",               "The label of an item differs." },
    { DiffKind::ItemNote,           inBoth,   "item-note",           "note",                "The note of an item differs." },
    { DiffKind::ItemAliases,        inBoth,   "item-aliases",        "aliases",             "The aliases of an item differ." },
    { DiffKind::ItemType,           inBoth,   "item-type",           "type",                "The type of an item differs." },
    { DiffKind::ItemStart,          inBoth,   "item-start",          "start",               "The first column of an item differs." },
    { DiffKind::ItemLength,         inBoth,   "item-length",         "length",              "The length of an item differs." },
    { DiffKind::ItemOccurrences,    inBoth,   "item-occurrences",    "occurrences",         "The number of occurrences of an item differs." },
    { DiffKind::ItemOccurrenceLabel, inBoth,  "item-occurrence-label", "label of occurrence", "The label of an occurrence of an item differs." },
    { DiffKind::ItemParent,         inBoth,   "item-parent",         "subitem of",          "An item became a subitem, is no longer one, or is a subitem of another item." },
    { DiffKind::ItemDecimals,       inBoth,   "item-decimals",       "decimals",            "The number of decimals of an item differs." },
    { DiffKind::ItemDecimalMark,    inBoth,   "item-decimal-mark",   "decimal mark",        "The decimal mark of an item is written in the data in only one layout." },
    { DiffKind::ItemZeroFill,       inBoth,   "item-zero-fill",      "zero fill",           "The numbers of an item are padded with zeros in only one layout." },
    { DiffKind::ItemCapture,        inBoth,   "item-capture",        "capture",             "The capture type of an item or its date format differs." },
    { DiffKind::ItemStorage,        inBoth,   "item-storage",        "storage",             "The values of an item are stored as another type." },
    { DiffKind::ItemFormat,         inBoth,   "item-format",         "format",              "The format of an item differs; between files of two formats, its width or decimals." },
    { DiffKind::ItemMeasure,        inBoth,   "item-measure",        "measure",             "The level of measurement of an item differs." },
    { DiffKind::ItemAlignment,      inBoth,   "item-alignment",      "alignment",           "The alignment of an item differs." },
    { DiffKind::ItemDisplayWidth,   inBoth,   "item-display-width",  "display width",       "The display width of an item differs." },
    { DiffKind::ItemMissing,        inBoth,   "item-missing",        "missing values",      "The user-missing values of an item differ." },
    { DiffKind::ValueSetAdded,      inAfter,  "value-set-added",     "value set added",     "A value set was added to an item of both layouts." },
    { DiffKind::ValueSetRemoved,    inBefore, "value-set-removed",   "value set removed",   "A value set was removed from an item of both layouts." },
    { DiffKind::ValueSetRenamed,    inBoth,   "value-set-renamed",   "name of value set",   "A value set has another name." },
    { DiffKind::ValueSetLabel,      inBoth,   "value-set-label",     "label of value set",  "The label of a value set differs." },
    { DiffKind::ValueSetNote,       inBoth,   "value-set-note",      "note of value set",   "The note of a value set differs." },
    { DiffKind::ValueSetAliases,    inBoth,   "value-set-aliases",   "aliases of value set", "The aliases of a value set differ." },
    { DiffKind::ValueAdded,         inAfter,  "value-added",         "value added",         "A code or range was added to a value set of both layouts." },
    { DiffKind::ValueRemoved,       inBefore, "value-removed",       "value removed",       "A code or range was removed from a value set of both layouts." },
    { DiffKind::ValueLabel,         inBoth,   "value-label",         "label of value",      "The label of a code or range differs." },
    { DiffKind::ValueNote,          inBoth,   "value-note",          "note of value",       "The note of a code or range differs." },
    { DiffKind::ValueSpecial,       inBoth,   "value-special",       "special value",       "A code or range is missing, not applicable, refused or default in one layout, and is not or differs in the other." },
    { DiffKind::ValueImage,         inBoth,   "value-image",         "image of value",      "The image of a code or range differs." },
    { DiffKind::ValueColor,         inBoth,   "value-color",         "color of value",      "The text color of a code or range differs." },
};
// clang-format on

QVector<DiffKindInfo> makeInfos()
{
    QVector<DiffKindInfo> infos;
    for (const Row &row : rows)
        infos.append(
            { row.kind, QLatin1String(row.word), QLatin1String(row.title), QLatin1String(row.meaning), row.side });
    return infos;
}

} // namespace

const QVector<DiffKindInfo> &diffKinds()
{
    static const QVector<DiffKindInfo> infos = makeInfos();
    return infos;
}

const DiffKindInfo &infoOf(DiffKind kind)
{
    return diffKinds().at(int(kind));
}

QString wordOf(DiffKind kind)
{
    return infoOf(kind).word;
}

std::optional<DiffKind> diffKindOf(const QString &word)
{
    const QVector<DiffKindInfo> &infos = diffKinds();
    const QVector<DiffKindInfo>::const_iterator found
        = std::find_if(infos.begin(), infos.end(),
                       [&](const DiffKindInfo &info) { return info.word.compare(word, Qt::CaseInsensitive) == 0; });
    return found != infos.end() ? std::optional(found->kind) : std::nullopt;
}

} // namespace vanlayout
