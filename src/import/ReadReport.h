#ifndef IMPORT_READREPORT_H
#define IMPORT_READREPORT_H

#include "model_vanadmin_export.h"

#include <QString>

#include <array>
#include <vector>

/// The severity of a difference between the file and its layout.
enum class NoteSeverity {
    lost,    ///< something in the file is not in the layout
    changed, ///< something in the layout differs from the file
    info     ///< the layout follows the rules, but may be unexpected
};

/// Kinds of notes, in the order of the page that lists them. Each comment describes what was found in the file.
enum class NoteKind {
    // any file
    fileNotRead,          ///< the file cannot be opened, or is not of its format
    readFailed,           ///< the file cannot be read to its end
    readingEnded,         ///< reading ended before the end of the file
    layoutGivenUp,        ///< reading ended in an error, and there is no layout
    duplicateVariable,    ///< two variables of one name
    overlappingPositions, ///< two variables of one record on the same columns
    codeRounded,          ///< a code of more than six digits, or six decimals
    boundRounded,         ///< a minimum or maximum of more than six digits
    decimalsLost,         ///< a variable with decimals
    duplicateCode,        ///< a code that occurs twice in the value labels of a variable
    labelEntryParted,     ///< a code with a blank or a label with a tab
    groupValueOfAnother,  ///< a group whose value is that of another group
    duplicateRecord,      ///< two records of one name or one record type
    // CSPro text dictionaries
    unknownSection,       ///< a section that is not read
    lineOutsideSection,   ///< a line before the first section, or in a section that is not read
    swallowedHeader,      ///< a section header after blanks
    unclosedHeader,       ///< a section header without its closing bracket
    textBehindHeader,     ///< a section header with more text on its line
    furtherDictionary,    ///< a second dictionary section
    furtherLevel,         ///< a second level
    unknownKey,           ///< a key that is not read
    keyBySubstring,       ///< a key that was taken from another line
    keyWithoutEquals,     ///< a line with a key and no "="
    secondEquals,         ///< a value that holds a "="
    repeatedKey,          ///< a key that occurs twice in its section
    missingKey,           ///< a required key that is missing
    numberNotConverted,   ///< a value that is not a number
    wordNotRecognised,    ///< a value that is not one of the words of its key
    blankInName,          ///< a name after a blank
    recordTypeCut,        ///< a record type without its quotes
    itemOutsideRecord,    ///< an item that belongs to no record
    noOccurrences,        ///< an item with fewer than one occurrence
    occurrenceNames,      ///< an item that occurs several times
    subitem,              ///< a subitem
    furtherValueSet,      ///< a second value set of an item
    valueSetWithoutItem,  ///< a value set before the first item, or after one that is not in the layout
    valueSetMisplaced,    ///< a value set after an item that is not in the layout, which went to the item before
    valueSetDropped,      ///< a value set of a numeric item with a code that is not an integer
    decimalsDropped,      ///< a value set of a numeric item with a decimal code
    codeToZero,           ///< a decimal code that became 0
    onlyLastOccurrence,   ///< the value set of the first item, which occurs several times
    markNotRecognised,    ///< a mark for missing or not applicable that is not recognised
    markedValue,          ///< a value with such a mark
    furtherMark,          ///< a second value with the same mark
    markedRange,          ///< a range with such a mark
    markOfLastOccurrence, ///< such a mark in the value set of an item that occurs several times
    keptApostrophe,       ///< a code in apostrophes
    valueWithoutLabel,    ///< a value line without a label
    labelAsCode,          ///< a value line without a code
    rangeWithoutLabel,    ///< a range without a label
    rangeWithoutUpper,    ///< a range without an upper bound
    rangeAsEndPoints,     ///< a range
    severalInALine,       ///< several values or ranges in one line
    encodingGuessed,      ///< a text that is not UTF-8 and has no byte-order mark
    // CSPro 8 dictionaries
    wrongType,         ///< a value without the expected JSON type
    furtherLanguages,  ///< labels in several languages
    furtherPairs,      ///< a value of several pairs, or of a pair with both a "value" and a "range"
    valueWithoutCode,  ///< a value without a code
    rangeAsCode,       ///< a range
    codeAsZero,        ///< a code of a value that is not a number
    occurrenceNumbers, ///< an item that occurs several times
    subitemReadFlat,   ///< a subitem
    decimalsNotRead,   ///< an item with decimals
    specialNotRead,    ///< a value that means missing or not applicable
    firstAtColumnOne,  ///< the first item of a record has no position
    // Stata and SPSS
    versionRefused,    ///< a format version that cannot be read
    labelOfMinusOne,   ///< the label of a value -1
    labelWithoutText,  ///< a value label without text
    labelSetMissing,   ///< a variable whose label set is not in the file
    labelSetUnused,    ///< a label set that no variable uses
    missingAsNumber,   ///< a label of a missing value such as .a
    valueCutToInteger, ///< a labelled value with decimals
    widthCut,          ///< a width that the layout cannot express
    dateAsNumber,      ///< a date or a time
    missingNotRead,    ///< missing values of a variable
    textNotAscii,      ///< a Stata text with letters outside ASCII
    typeUnknown,       ///< a variable of a type that the layout cannot express
    openedTwice,       ///< an SPSS importer that is opened again
    // lookups
    repeatsLineBefore, ///< a lookup line without a separator
    duplicateKey,      ///< a key that occurs on an earlier line
    unreadableLetters, ///< bytes that are invalid in the encoding of the file
};

/// One place where the layout differs from what a reader of the file would expect.
struct MODEL_VANADMIN_EXPORT ReadNote {
    NoteKind kind;
    int line = 0;     ///< 1-based line of the file; 0 if the format has no lines or the note concerns the whole file
    QString variable; ///< name of the variable in the layout; "" if the note concerns none
    QString text;     ///< the text of the file that the note concerns

    QString id() const; ///< stable name of the kind, such as "key-by-substring"
    NoteSeverity severity() const;
    QString message() const; ///< states what the library did, and what to change in the file if that was not intended
};

/// Notes of a reader about the places where it skipped something, used a default, or changed, renamed, cut or moved
/// something.
///
/// A caller attaches a report to an importer or a lookup before it reads, and queries the report afterwards. The report
/// must outlive the reading, is owned by neither importer nor lookup, and accumulates notes until clear(): one report
/// can serve several files in turn. Notes are in the order in which the reader found their causes. What a reader
/// returns does not depend on whether a report is attached. Not thread-safe.
class MODEL_VANADMIN_EXPORT ReadReport
{
public:
    /// Max number of notes that are kept; further notes are only counted.
    static constexpr size_t maxNotes = 1000000;
    static constexpr int kinds = int(NoteKind::unreadableLetters) + 1;

    const std::vector<ReadNote> &notes() const;
    bool isEmpty() const;
    int count(NoteKind kind) const; ///< notes of a kind, including those that are not kept
    int count(NoteSeverity severity) const;
    void clear();

    /// Adds a note. Readers call this operation. The parameters are the members of ReadNote.
    void add(NoteKind kind, const QString &text, int line = 0, const QString &variable = QString());

    // properties of a kind
    static QString idOf(NoteKind kind);
    static NoteSeverity severityOf(NoteKind kind);
    static QString messageOf(NoteKind kind);
    static QString nameOf(NoteSeverity severity); ///< "lost", "changed" or "info"

private:
    std::vector<ReadNote> kept;
    std::array<int, kinds> counts = {};
};

#endif
