#ifndef VANLAYOUT_DIFF_H
#define VANLAYOUT_DIFF_H

#include "Records.h"

#include <QList>
#include <QString>
#include <QVector>

#include <optional>
#include <string>

class TVpSourceField;

/// One property of a variable that can be compared. Value labels are no property: they are compared by code.
struct Property {
    const char *name;              ///< as `vanlayout fields --format json` names it
    QString TVpSourceField::*text; ///< null for a number
    int TVpSourceField::*number;   ///< null for a text
};

/// All properties, in the order in which changes are told.
const QVector<const Property *> &allProperties();

/// The properties that two formats, by the names of their types, both tell in one meaning.
///
/// All of them for one format. Else label and type; start, length, bounds and group between the two forms of a CSPro
/// dictionary alone. In Stata and SPSS files nothing has a position or a group, a length is no width in characters, and
/// the bounds go by the length. Missing and not-applicable codes are read in the text form alone. The number of
/// decimals reaches the layout in no format as it was meant.
QVector<const Property *> comparableProperties(const std::string &oldType, const std::string &newType);

/// An entry among the value labels of a variable that is not the same in both layouts. Refers to the fields.
struct ValueLabelChange {
    QStringRef code;
    std::optional<QStringRef> oldLabel; ///< nothing where the entry was added
    std::optional<QStringRef> newLabel; ///< nothing where the entry was removed
};

/// A variable of both layouts, and in what it differs.
struct VariableChange {
    const TVpSourceField *oldField = nullptr;
    const TVpSourceField *newField = nullptr;
    QVector<const Property *> properties;
    QVector<ValueLabelChange> valueLabels; ///< in the order of the old variable, behind them what was added
};

/// What a layout tells of its records.
struct Records {
    int recordTypeStart = 0; ///< column of the record type
    int recordTypeSize = 0;
    QVector<RecordType> types;
};

/// One number that a layout tells of its record type.
struct RecordTypeProperty {
    const char *name; ///< as `vanlayout fields --format json` names it
    int Records::*number;
};

/// A record that is not the same in both layouts, as a value label is told: its name is the code, its type the label.
using RecordChange = ValueLabelChange;

/// What differs between the records of two layouts. Refers to these.
struct RecordsDiff {
    QVector<const RecordTypeProperty *> properties;
    QVector<RecordChange> records; ///< in the order of the old layout, behind them what was added

    bool isEmpty() const { return properties.isEmpty() && records.isEmpty(); }
};

/// What differs between two layouts. Refers to their fields.
struct LayoutDiff {
    QVector<const TVpSourceField *> added;   ///< in the order of the new layout
    QVector<const TVpSourceField *> removed; ///< in the order of the old layout
    QVector<VariableChange> renamed;         ///< in the order of the new layout, with or without further changes
    QVector<VariableChange> changed;         ///< in the order of the new layout, under the same name

    bool isEmpty() const { return added.isEmpty() && removed.isEmpty() && renamed.isEmpty() && changed.isEmpty(); }
};

/// Compares two layouts variable by variable, in time that grows with their size alone.
///
/// A variable of the one is sought in the other by these rules, each among what the rules before it left over:
/// 1. The same name in the same group, where both layouts have groups; else the same name. Of a name that comes several
///    times the first belongs to the first, the second to the second, and so on.
/// 2. The same name in another group.
/// 3. A name that differs in case alone, in the same group, then in any.
/// 4. The same label, value labels and, where both are among \a properties, start and length, in the same group, then
///    in any. What has no label is recognised by its place in its group alone.
/// By the rules 2 to 4 nothing is found where several variables of a layout would do. What rules 3 and 4 find is
/// renamed. The order of the variables is not compared.
///
/// Value labels are compared by code; of a code that comes several times the first with the first, and so on. Their
/// order is not compared.
LayoutDiff compareLayouts(const QList<TVpSourceField *> &oldFields, const QList<TVpSourceField *> &newFields,
                          const QVector<const Property *> &properties);

/// Compares what two layouts tell of their records: the column and the width of the record type, and the records by
/// name, of a name that comes several times the first with the first, and so on. Their order is not compared.
RecordsDiff compareRecords(const Records &oldRecords, const Records &newRecords);

/// Whether two formats, by the names of their types, both tell of records.
bool areRecordsComparable(const std::string &oldType, const std::string &newType);

#endif
