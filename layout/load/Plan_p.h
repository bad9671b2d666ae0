#ifndef LAYOUT_LOAD_PLAN_P_H
#define LAYOUT_LOAD_PLAN_P_H

#include "load/LoadOptions.h"
#include "model/Layout.h"

#include <QString>
#include <QVector>

#include <optional>

/// The plan of a load program: all tables, columns, cells and labels that the program has to make. It is made once from
/// a layout; a writer of a target only spells it.
namespace vanlayout
{

/// The content of the cells of a column for a code or a range of codes.
enum class CellOutcome {
    Value,    ///< the code itself
    Missing,  ///< missing, without a reason
    NoAnswer, ///< missing with the tag "m": CSPro's value "missing"
    Refused,  ///< missing with the tag "r"
};

/// One special code or range of codes. The rules of a list apply in its order: the first that matches a cell counts.
struct SpecialRule {
    CellOutcome outcome = CellOutcome::Missing;
    QString low;  ///< a number in plain decimal digits such as `-9.5`, or a text without trailing blanks
    QString high; ///< last number of the range, inclusive; equal to low for one code
};

/// One row of the table `codes`.
struct CodeRow {
    QString from;  ///< a number without surrounding blanks, or a text without trailing blanks; empty for blank
    QString to;    ///< null if the row is one code
    QString label; ///< one line; empty if the value has none in the language
    Special special = Special::None;
    // for numeric items; null if the code is not a number
    QString low;  ///< from in plain decimal digits, such as `-9.5`
    QString high; ///< to likewise; equal to low for one code
};

/// The label of one code, for targets without labels of ranges. Each code occurs once in a list.
struct CodeLabel {
    QString code;                             ///< a number in plain decimal digits, or a text without trailing blanks
    QString text;                             ///< one line, not empty, within the limit of the target
    CellOutcome outcome = CellOutcome::Value; ///< of the cells with this code
};

/// The codes of one item: those of its first value set.
struct CodeList {
    QVector<CodeRow> rows;         ///< in the order of the file
    QVector<CodeLabel> labels;     ///< in the order of the file; ranges of at most 100 whole numbers are expanded
    QVector<CodeRow> rangeLabels;  ///< ranges with a label that have no entry in labels
    QVector<SpecialRule> specials; ///< without codes that only match blank cells
};

enum class ColumnRole {
    Id,
    Occurrence,     ///< `occ`: 1-based number of the record within its case
    ItemOccurrence, ///< `item_occ`: 1-based number of the occurrence of a repeating item
    Item
};

enum class CellType {
    Integer, ///< a numeric item without decimals
    Decimal, ///< a numeric item with decimals
    Text
};

/// One column of a table. A made column (`occ`, `item_occ`) has no item and no columns of the data file.
struct PlannedColumn {
    ColumnRole role = ColumnRole::Item;
    const Item *item = nullptr;
    QString name;     ///< legal and unique in the target
    QString original; ///< name in the dictionary, with the number of the occurrence
    CellType type = CellType::Integer;
    int start = 0; ///< 1-based character of the line; in an item table that of the first occurrence
    int length = 0;
    int decimals = 0;
    QString label;  ///< one line, within the limit of the target; empty if there is none
    int codes = -1; ///< index in LoadPlan::codes; -1 if the item has no value set

    bool isMade() const { return !item; }
    bool isNumber() const { return item && type != CellType::Text; }
};

/// One table. A record table has a row for each line of its record type. An item table has a row for each occurrence of
/// a repeating item that is not blank.
struct PlannedTable {
    QString name;     ///< legal and unique in the target
    QString original; ///< name of the record, or `RECORD_ITEM`
    QString file;     ///< stem of a file of the table: letters, digits and `_`, unique without case; never `codes`
    QString label;    ///< of the record or the item; one line; empty if there is none
    int level = 0;    ///< index in Layout::levels
    const Record *record = nullptr;
    QString mark; ///< record type, padded with blanks to the length of its columns; empty if lines have no type
    QVector<PlannedColumn> columns; ///< ids, `occ`, `item_occ`, items
    bool hasOccurrence = false;     ///< whether there is a column `occ`
    // of an item table
    int recordTable = -1; ///< index in LoadPlan::tables of the table of the record; -1 for a record table
    int occurrences = 1;  ///< of the item
    int step = 0;         ///< characters from the start of one occurrence to the next
    int start = 0;        ///< 1-based character of the first occurrence
    int length = 0;       ///< characters of one occurrence; an occurrence of blanks has no row

    bool isItemTable() const { return recordTable >= 0; }
    /// Whether the place of a column in the line depends on the occurrence.
    bool isOfOccurrence(const PlannedColumn &column) const { return isItemTable() && column.role == ColumnRole::Item; }
    /// Whether texts of a column that are no numbers are counted here; those of the ids of an item table are counted
    /// for its record.
    bool counts(const PlannedColumn &column) const
    {
        return column.isNumber() && (!isItemTable() || column.role == ColumnRole::Item);
    }
};

/// A name that differs from that in the dictionary.
struct RenamedName {
    QString original; ///< `TABLE`, or `TABLE.COLUMN` with the name of the table in the dictionary
    QString name;     ///< of the table or the column in the target
};

struct LoadPlan {
    LoadOptions options; ///< data and language are filled in
    QString name;        ///< stem of the file names: letters, digits and `_`
    QString dictionary;  ///< name of the dictionary, one line
    QString label;       ///< of the dictionary, one line
    QString dataKind;    ///< kind of the data file: "a CSPro data file"
    QString version;     ///< kind and version of the dictionary, such as "CSPro dictionary, text form 7.7"
    std::optional<RecordTypeColumns> recordType;
    QStringList knownMarks;       ///< of all records, also of those that are not loaded, padded
    QVector<PlannedTable> tables; ///< record tables first, then item tables
    QVector<CodeList> codes;      ///< a list for each item that has a value set; occurrences share it
    QString codesName;            ///< name of the table of codes: `codes`
    QVector<RenamedName> renames; ///< for the head of the program
    QStringList remarks;          ///< lines for the head: left out binary items, value sets without use, ranges ...
    QString problem;              ///< why nothing can be written; empty if the plan was made
};

} // namespace vanlayout

#endif
