#ifndef LAYOUT_MODEL_LAYOUT_H
#define LAYOUT_MODEL_LAYOUT_H

#include "model/Problem.h"
#include "vanlayout_export.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// The exact layout of a census or survey data file: everything that its description states, as plain values.
///
/// All types are implicitly shared through Qt's containers, so copies are cheap; all compare with `==`. Nothing here
/// reads or writes files. Lengths and columns are in characters unless stated otherwise; columns are 1-based. Objects
/// may be read by several threads at once; a thread that modifies one needs its own copy.
namespace vanlayout
{

/// One text in one language.
struct VANLAYOUT_EXPORT Label {
    QString language; ///< code such as "EN"; empty if the file states none
    QString text;
};

/// The texts of one label in all languages, in the order of the file. The list is empty if there is no label.
struct VANLAYOUT_EXPORT Labels {
    QVector<Label> parts;

    bool isEmpty() const { return parts.isEmpty(); }
    /// The text in the language with this code, compared case-insensitively. The text of the first part if the language
    /// is absent or its text is empty; empty if there is no part.
    QString in(const QString &language) const;
    /// The text of the first part; empty if there is none.
    QString primary() const { return parts.isEmpty() ? QString() : parts.constFirst().text; }
};

/// A language of the dictionary.
struct VANLAYOUT_EXPORT Language {
    QString name;  ///< code such as "EN"
    QString label; ///< name to display, such as "English"
};

/// One code, or all values from one code to another, inclusive.
struct VANLAYOUT_EXPORT Range {
    QString from;
    QString to; ///< empty if the range is one code
};

/// The special meaning of a value in CSPro; None for an ordinary value.
enum class Special { None, Missing, NotApplicable, Refused, Default };

/// One entry of a value set: codes and their label.
struct VANLAYOUT_EXPORT Value {
    Labels labels;
    QString note;
    Special special = Special::None;
    QString image;         ///< path of a picture, as written in the file
    QString textColor;     ///< as written in the file
    QVector<Range> ranges; ///< the codes of the value; may be empty
};

/// A list of values of an item. Sets that share a link, or one label set of a statistical file, share one list in
/// memory.
struct VANLAYOUT_EXPORT ValueSet {
    QString name;
    Labels labels;
    QString note;
    QStringList aliases;
    QString link; ///< name of the link, equal for sets that share their values; empty if there is none
    QVector<Value> values;
};

/// The label of one occurrence of a record or an item.
struct VANLAYOUT_EXPORT OccurrenceLabel {
    int occurrence = 0; ///< 1-based
    Labels labels;
};

/// The input control of an item at data entry.
struct VANLAYOUT_EXPORT Capture {
    QString type;       ///< in the spelling of CSPro 8: "textBox", "radioButton", "date" ...
    QString dateFormat; ///< upper case, such as "YYYYMMDD"; empty if there is none
};

/// The storage type of a variable in a statistical file; None for an item of a dictionary, or if it is unknown.
enum class Storage { None, Int8, Int16, Int32, Float, Double, String };

/// The level of measurement of a statistical variable; None if the file states none.
enum class Measure { None, Nominal, Ordinal, Scale };

/// The alignment of a statistical variable on the screen; None if the file states none.
enum class Alignment { None, Left, Center, Right };

/// The words for the type of an item.
namespace itemtype
{
inline QString numeric()
{
    return QStringLiteral("numeric");
}
inline QString alpha()
{
    return QStringLiteral("alpha");
}
} // namespace itemtype

/// A variable: an id item, an item of a record, or a subitem.
struct VANLAYOUT_EXPORT Item {
    QString name;
    Labels labels;
    QString note;
    QStringList aliases;
    /// "numeric", "alpha", "document", "audio", "image" or "geometry"; any other word of the file in lower case.
    QString type = itemtype::numeric();
    int start = 0; ///< 1-based column of the first occurrence; 0 if there are no columns
    /// Characters of one occurrence, including a written decimal mark; bytes for a text of a statistical file.
    int length = 0;
    int occurrences = 1;
    QVector<OccurrenceLabel> occurrenceLabels;
    bool isSubitem = false;
    QString subitemOf; ///< name of the item that contains this subitem; empty for an item, or if no item precedes it
    int decimals = 0;  ///< digits after the decimal mark
    bool decimalMark = false; ///< whether the mark is written in the data, and is part of the length
    bool zeroFill = false;    ///< whether numbers are padded with leading zeros
    std::optional<Capture> capture;
    QVector<ValueSet> valueSets;
    // of statistical files
    Storage storage = Storage::None;
    QString format; ///< as written in the file: "F8.2", "%8.0g"
    Measure measure = Measure::None;
    Alignment alignment = Alignment::None;
    int displayWidth = 0;   ///< characters; 0 if the file states none
    QVector<Range> missing; ///< user-missing values

    bool isNumeric() const { return type == itemtype::numeric(); }
    bool isAlpha() const { return type == itemtype::alpha(); }
};

/// One type of lines of the data file.
struct VANLAYOUT_EXPORT Record {
    QString name;
    Labels labels;
    QString note;
    QStringList aliases;
    QString recordType;        ///< text that marks lines of this type
    bool required = true;      ///< whether each case must have the record
    int maximum = 1;           ///< max number of records of the type in a case; see statesOccurrences()
    std::optional<int> length; ///< characters of a line, if the file states it
    QVector<OccurrenceLabel> occurrenceLabels;
    QVector<Item> items; ///< subitems follow their item
};

/// A level of the hierarchy: its id items, which are on every line, and its records.
struct VANLAYOUT_EXPORT Level {
    QString name;
    Labels labels;
    QString note;
    QStringList aliases;
    QVector<Item> ids;
    QVector<Record> records;
};

/// One part of a relation: how a secondary is linked to the primary.
struct VANLAYOUT_EXPORT RelationLink {
    QString primaryLink;   ///< item of the primary to compare; empty for "by occurrence number"
    QString secondary;     ///< repeating record or item on the right
    QString secondaryLink; ///< item of the secondary to compare; empty for "by occurrence number"
};

/// A relation between repeating records or items.
struct VANLAYOUT_EXPORT Relation {
    QString name;
    QStringList aliases;
    QString primary; ///< repeating record or item on the left
    QVector<RelationLink> links;
};

/// The columns that mark the type of a record on each line.
struct VANLAYOUT_EXPORT RecordTypeColumns {
    int start = 0;  ///< 1-based column
    int length = 0; ///< characters
};

/// Settings for the security of data files; each is absent if the file does not state it.
struct VANLAYOUT_EXPORT Security {
    std::optional<QString> settings; ///< hexadecimal text, encrypted
    std::optional<bool> allowDataViewerModifications;
    std::optional<bool> allowExport;
    std::optional<int> cachedPasswordMinutes;
};

/// A statement of the file for which there is no member.
struct VANLAYOUT_EXPORT Extra {
    QString path; ///< element by name, as in Problem; empty for the file
    QString key;
    QString value; ///< text; for a JSON file, the JSON value as written
    int line = 0;  ///< 1-based line of a text file; 0 if there is none
};

/// The format of the file that a layout was read from.
enum class Format { None, CSProText, CSProJson, Ddi, Spss, SpssPortable, Stata, Sas, SasXport };

/// Whether files of a format contain their data: those of SPSS, Stata and SAS. The others describe a file of lines.
VANLAYOUT_EXPORT bool holdsData(Format format);

/// Everything that a file states about the layout of its data. If reading fails, the layout has no levels and one
/// problem of severity error.
struct VANLAYOUT_EXPORT Layout {
    QString file; ///< path as given to the reader
    Format format = Format::None;
    QString container;     ///< "csdb" for a dictionary within a CSPro data file; empty otherwise
    QString formatVersion; ///< such as "7.7", "8.0", "118"; empty if the file does not state it
    QString encoding;      ///< lower-case IANA name; empty if the file does not state it
    QString name;
    Labels labels;
    QString note;
    QStringList aliases;
    QVector<Language> languages;                 ///< the first is the primary one
    std::optional<RecordTypeColumns> recordType; ///< absent if lines have no type
    std::optional<bool> relativePositions;
    bool decimalMark = false; ///< default for new items
    bool zeroFill = false;    ///< default for new items
    bool editable = true;
    std::optional<Security> security;
    std::optional<bool> readOptimization;
    std::optional<bool> enableBinaryItems;
    std::optional<QString> valueSetImages; ///< as written in the file
    // of statistical files
    std::optional<qint64> rows;
    std::optional<QString> created; ///< `YYYY-MM-DDTHH:MM:SS`, the local time that the file states, without a time zone
    std::optional<QString> modified; ///< likewise
    QString weight;                  ///< name of the weight variable

    QVector<Level> levels; ///< outermost first; a statistical file is one level without ids, with one record
    QVector<Relation> relations;
    QVector<Extra> extras;     ///< statements for which there is no member, in the order of the file
    QVector<Problem> problems; ///< in the order of the file

    /// The problem that is the reason why there is no layout; null if reading succeeded. The pointer is valid until the
    /// layout changes.
    const Problem *error() const;
    /// True if the file was read; there may be warnings.
    bool isRead() const { return !error(); }
};

/// Whether the layout states whether a case must have a record, and how many of them it has at most. A DDI document of
/// another program does not: `required` is false and `maximum` is 0.
VANLAYOUT_EXPORT bool statesOccurrences(const Layout &layout, const Record &record);

/// The words in the JSON form: "cspro-text", "missing", "int8", "nominal", "left" ...; empty for None.
VANLAYOUT_EXPORT QString wordOf(Format format);
VANLAYOUT_EXPORT QString wordOf(Special special);
VANLAYOUT_EXPORT QString wordOf(Storage storage);
VANLAYOUT_EXPORT QString wordOf(Measure measure);
VANLAYOUT_EXPORT QString wordOf(Alignment alignment);

/// The first column of an occurrence.
///
/// \a parent is the item that contains the subitem \a item; it is null if \a item is not a subitem. A subitem repeats
/// with its item. \a occurrence is 1-based. Returns 0 if the item has no columns; a column beyond `int` is the largest
/// `int`.
VANLAYOUT_EXPORT int startOf(const Item &item, int occurrence, const Item *parent = nullptr);

// clang-format off
VANLAYOUT_EXPORT bool operator==(const Label &left, const Label &right);
VANLAYOUT_EXPORT bool operator==(const Labels &left, const Labels &right);
VANLAYOUT_EXPORT bool operator==(const Language &left, const Language &right);
VANLAYOUT_EXPORT bool operator==(const Range &left, const Range &right);
VANLAYOUT_EXPORT bool operator==(const Value &left, const Value &right);
VANLAYOUT_EXPORT bool operator==(const ValueSet &left, const ValueSet &right);
VANLAYOUT_EXPORT bool operator==(const OccurrenceLabel &left, const OccurrenceLabel &right);
VANLAYOUT_EXPORT bool operator==(const Capture &left, const Capture &right);
VANLAYOUT_EXPORT bool operator==(const Item &left, const Item &right);
VANLAYOUT_EXPORT bool operator==(const Record &left, const Record &right);
VANLAYOUT_EXPORT bool operator==(const Level &left, const Level &right);
VANLAYOUT_EXPORT bool operator==(const RelationLink &left, const RelationLink &right);
VANLAYOUT_EXPORT bool operator==(const Relation &left, const Relation &right);
VANLAYOUT_EXPORT bool operator==(const RecordTypeColumns &left, const RecordTypeColumns &right);
VANLAYOUT_EXPORT bool operator==(const Security &left, const Security &right);
VANLAYOUT_EXPORT bool operator==(const Extra &left, const Extra &right);
VANLAYOUT_EXPORT bool operator==(const Layout &left, const Layout &right);

inline bool operator!=(const Label &left, const Label &right) { return !(left == right); }
inline bool operator!=(const Labels &left, const Labels &right) { return !(left == right); }
inline bool operator!=(const Language &left, const Language &right) { return !(left == right); }
inline bool operator!=(const Range &left, const Range &right) { return !(left == right); }
inline bool operator!=(const Value &left, const Value &right) { return !(left == right); }
inline bool operator!=(const ValueSet &left, const ValueSet &right) { return !(left == right); }
inline bool operator!=(const OccurrenceLabel &left, const OccurrenceLabel &right) { return !(left == right); }
inline bool operator!=(const Capture &left, const Capture &right) { return !(left == right); }
inline bool operator!=(const Item &left, const Item &right) { return !(left == right); }
inline bool operator!=(const Record &left, const Record &right) { return !(left == right); }
inline bool operator!=(const Level &left, const Level &right) { return !(left == right); }
inline bool operator!=(const RelationLink &left, const RelationLink &right) { return !(left == right); }
inline bool operator!=(const Relation &left, const Relation &right) { return !(left == right); }
inline bool operator!=(const RecordTypeColumns &left, const RecordTypeColumns &right) { return !(left == right); }
inline bool operator!=(const Security &left, const Security &right) { return !(left == right); }
inline bool operator!=(const Extra &left, const Extra &right) { return !(left == right); }
inline bool operator!=(const Layout &left, const Layout &right) { return !(left == right); }
// clang-format on

} // namespace vanlayout

Q_DECLARE_TYPEINFO(vanlayout::Label, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::Labels, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::Language, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::Range, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::Value, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::ValueSet, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::OccurrenceLabel, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::Item, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::Record, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::Level, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::RelationLink, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::Relation, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::Extra, Q_MOVABLE_TYPE);

#endif
