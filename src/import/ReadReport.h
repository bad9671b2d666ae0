#ifndef IMPORT_READREPORT_H
#define IMPORT_READREPORT_H

#include "model_vanadmin_export.h"

#include <QString>

#include <array>
#include <vector>

/// How grave it is that the layout differs from the file.
enum class NoteGravity {
    lost,    ///< something in the file is not in the layout
    changed, ///< something is in the layout as another than it is in the file
    curious  ///< the layout is right as the rules are, and may surprise
};

/// What a note is about, in the order of the pages that list them. The comment says what was found in the file.
enum class NoteKind {
    // any file
    fileNotRead,          ///< the file cannot be opened, or is not of its format
    readFailed,           ///< the file cannot be read to its end
    readingEnded,         ///< reading ended before the end of the file
    layoutGivenUp,        ///< reading ended in an error, and there is no layout
    duplicateVariable,    ///< two variables of one name
    overlappingPositions, ///< two variables of one record that stand on the same columns
    codeRounded,          ///< a code of more than six digits, or six decimals
    boundRounded,         ///< a minimum or maximum of more than six digits
    decimalsLost,         ///< a variable with decimals
    duplicateCode,        ///< a code that stands twice in the value labels of a variable
    labelEntryParted,     ///< a code with a blank or a label with a tab
    groupValueOfAnother,  ///< a group whose value is that of another group
    duplicateRecord,      ///< two records of one name or one record type
    // CSPro text dictionaries
    unknownSection,       ///< a section that is not read
    lineOutsideSection,   ///< a line in front of the first section, or in one none of whose lines are read
    swallowedHeader,      ///< a section header behind blanks
    unclosedHeader,       ///< a section header without its closing bracket
    textBehindHeader,     ///< a section header with more in its line
    furtherDictionary,    ///< a second dictionary section
    furtherLevel,         ///< a second level
    unknownKey,           ///< a key that is not read
    keyBySubstring,       ///< a key that was taken from another line
    keyWithoutEquals,     ///< a line with a key and no "="
    secondEquals,         ///< a value that holds a "="
    repeatedKey,          ///< a key that stands twice in its section
    missingKey,           ///< a key that has to be there and is not
    numberNotConverted,   ///< a number that is none
    wordNotRecognised,    ///< a type or a yes or no in another word than those that are read
    blankInName,          ///< a name behind a blank
    recordTypeCut,        ///< a record type without its quotes
    itemOutsideRecord,    ///< an item that belongs to no record
    noOccurrences,        ///< an item that occurs less than once
    occurrenceNames,      ///< an item that occurs several times
    subitem,              ///< a subitem
    furtherValueSet,      ///< a value set of an item that has one
    valueSetWithoutItem,  ///< a value set in front of the first item, or behind one that is not in the layout
    valueSetMisplaced,    ///< a value set behind an item that is not in the layout, with another one in front of that
    valueSetDropped,      ///< a value set of a number with a code that is no integer
    decimalsDropped,      ///< a value set of a number with a decimal code
    codeToZero,           ///< a decimal code that became 0
    onlyLastOccurrence,   ///< the value set of an item that occurs several times and stands first
    markNotRecognised,    ///< a mark for missing or not applicable that is not understood
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
    encodingGuessed,      ///< a text that is not in UTF-8 and says nothing of its encoding
    // CSPro 8 dictionaries
    wrongType,         ///< a value of another JSON type than the one that is read
    furtherLanguages,  ///< labels in several languages
    furtherPairs,      ///< a value of several pairs, or of a "value" and a "range" in one
    valueWithoutCode,  ///< a value without a code
    rangeAsCode,       ///< a range
    codeAsZero,        ///< a code of a number that is none
    occurrenceNumbers, ///< an item that occurs several times
    subitemReadFlat,   ///< a subitem
    decimalsNotRead,   ///< an item with decimals
    specialNotRead,    ///< a value that stands for missing or not applicable
    firstAtColumnOne,  ///< the first item of a record has no position
    // Stata and SPSS
    versionRefused,    ///< a format version that cannot be read
    labelOfMinusOne,   ///< the label of a value -1
    labelWithoutText,  ///< a value label without text
    labelSetMissing,   ///< a variable whose label set is not in the file
    labelSetUnused,    ///< a label set that comes with no variable
    missingAsNumber,   ///< a label of a missing value such as .a
    valueCutToInteger, ///< a labelled value with decimals
    widthCut,          ///< a width that the layout cannot hold
    dateAsNumber,      ///< a date or a time
    missingNotRead,    ///< missing values of a variable
    textNotAscii,      ///< a Stata text with other letters than those of ASCII
    typeUnknown,       ///< a variable of a type that the layout has not
    openedTwice,       ///< an SPSS importer that is opened again
    // lookups
    repeatsLineBefore, ///< a lookup line without a separator
    duplicateKey,      ///< a key that stands on an earlier line
    unreadableLetters, ///< bytes that are no text in the encoding of the file
};

/// One place where the layout is not what a reader of the file would expect.
struct MODEL_VANADMIN_EXPORT ReadNote {
    NoteKind kind;
    int line = 0;     ///< in the file, from 1; 0 where the format has no lines or the note is about the whole
    QString variable; ///< its name as the layout has it; "" where there is none
    QString text;     ///< what in the file it is about

    QString id() const; ///< stable name of the kind, such as "key-by-substring"
    NoteGravity gravity() const;
    QString sentence() const; ///< what the library did, and what to change in the file if that is not meant
};

/// What a reader tells of the places where it passed something over, took a default, or changed, renamed, cut or moved
/// something.
///
/// A caller makes one, attaches it to an importer or a lookup before that reads, and asks it afterwards. The report
/// must outlive the reading, is not owned by what it is attached to, and gathers until clear(): one report can serve
/// several files in turn. Notes come in the order in which the reader met their causes. What a reader answers does not
/// depend on whether a report is attached. One thread at a time.
class MODEL_VANADMIN_EXPORT ReadReport
{
public:
    /// Notes that are kept at most; further ones are counted alone.
    static constexpr size_t mostNotes = 1000000;
    static constexpr int kinds = int(NoteKind::unreadableLetters) + 1;

    const std::vector<ReadNote> &notes() const;
    bool isEmpty() const;
    int count(NoteKind kind) const; ///< notes of a kind, those that are not kept included
    int count(NoteGravity gravity) const;
    void clear();

    // what readers call
    void add(NoteKind kind, const QString &text, int line = 0, const QString &variable = QString());
    /// A mark in the report: what comes behind it can be given its variable once that is known.
    size_t size() const { return kept.size(); }
    /// Names the variable of the notes from \a first on that have none.
    void nameVariable(size_t first, const QString &variable);

    // what is told of a kind
    static QString idOf(NoteKind kind);
    static NoteGravity gravityOf(NoteKind kind);
    static QString sentenceOf(NoteKind kind);
    static QString nameOf(NoteGravity gravity); ///< "lost", "changed" or "curious"

private:
    std::vector<ReadNote> kept;
    std::array<int, kinds> counts = {};
};

#endif
