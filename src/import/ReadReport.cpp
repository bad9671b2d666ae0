#include "import/ReadReport.h"

#include <algorithm>
#include <numeric>

namespace
{

struct Kind {
    NoteKind kind;
    NoteSeverity severity;
    const char *id;
    const char *message;
};

constexpr NoteSeverity lost = NoteSeverity::lost;
constexpr NoteSeverity changed = NoteSeverity::changed;
constexpr NoteSeverity info = NoteSeverity::info;

// One row per kind, in the order of the enumeration.
// clang-format off
constexpr Kind kindTable[] = {
    { NoteKind::fileNotRead, lost, "file-not-read",
      "No layout could be read from the file; check that it can be opened and that it has the format it is read as." },
    { NoteKind::readFailed, lost, "read-failed",
      "The file could not be read to its end, and nothing that was read of it is used; remove the cause, for example a failing disk or connection, and read the file again." },
    { NoteKind::readingEnded, lost, "reading-ended",
      "Reading stopped here, and what follows is not in the layout; correct this place in the file." },
    { NoteKind::layoutGivenUp, lost, "layout-given-up",
      "Reading stopped here with an error, and nothing of the file is in the layout, not even what comes before this place; correct it in the file." },
    { NoteKind::duplicateVariable, changed, "duplicate-variable",
      "Another variable has the same name, and a search by name finds only one of them; give each variable its own name." },
    { NoteKind::overlappingPositions, info, "overlapping-positions",
      "The variable shares columns with another variable of its record, with an id item or with the record type; check its start and length unless it is a part of the other one." },
    { NoteKind::codeRounded, changed, "code-rounded",
      "The code has more than six digits, or in Stata and SPSS more than six decimals, and was rounded to six; a value label cannot be found by the original code." },
    { NoteKind::boundRounded, changed, "bound-rounded",
      "The bound has more than six digits and was rounded to six; use the codes in the file." },
    { NoteKind::decimalsLost, lost, "decimals-lost",
      "The layout shows no decimals for this variable; divide values that a CSPro data file stores without a decimal point, and use values of SPSS and Stata files as they are, because they are real numbers." },
    { NoteKind::duplicateCode, info, "duplicate-code",
      "The code occurs several times among the value labels, and each of its labels was kept; remove all but one." },
    { NoteKind::labelEntryParted, changed, "label-entry-parted",
      "In the text of the value labels a code ends at its first blank and a label at its first tab, so this entry is read differently; write the code without blanks and the label without tabs." },
    { NoteKind::groupValueOfAnother, changed, "group-value-of-another",
      "The text of this group is contained in that of an earlier group, whose value is returned for it; rename one of them." },
    { NoteKind::duplicateRecord, changed, "duplicate-record",
      "Another record has the same name or the same record type, and a search by it finds only one of them; give each record its own." },

    { NoteKind::unknownSection, lost, "unknown-section",
      "The section is not read, and items after it are put into the record Common; move it to the end if it is between items." },
    { NoteKind::lineOutsideSection, lost, "line-outside-section",
      "The line is in no section that is read, and was skipped together with what follows it up to the next header; move it into its section." },
    { NoteKind::swallowedHeader, lost, "swallowed-header",
      "There are blanks before the header, so it starts no section and its lines were added to the section before; remove the blanks." },
    { NoteKind::unclosedHeader, info, "unclosed-header",
      "The header has no closing bracket, and the whole line was taken as its name; close the bracket." },
    { NoteKind::textBehindHeader, lost, "text-behind-header",
      "The text after the closing bracket was skipped; write it on a separate line." },
    { NoteKind::furtherDictionary, lost, "further-dictionary",
      "The settings of this section replace those of an earlier section of the same kind; remove one of them." },
    { NoteKind::furtherLevel, lost, "further-level",
      "The layout has no levels: the records of all levels are in one list, and the level of each record is lost." },
    { NoteKind::unknownKey, lost, "unknown-key",
      "The key of this line is not read, so its value is not in the layout; if another key was meant, correct its spelling and its case." },
    { NoteKind::keyBySubstring, changed, "key-by-substring",
      "The line contains the name of another key, and the text after its \"=\" was taken as the value of that key; put the line of that key above this one." },
    { NoteKind::keyWithoutEquals, lost, "key-without-equals",
      "The line contains the name of a key but no \"=\", so that key was not read: a text is empty, and a number has its default; reword or move the line." },
    { NoteKind::secondEquals, lost, "second-equals",
      "The value contains a \"=\", so it was not read: a text is empty, and a number has its default; remove the second \"=\"." },
    { NoteKind::repeatedKey, lost, "repeated-key",
      "The section already has this key, and the first one is used; remove one of the lines." },
    { NoteKind::missingKey, changed, "missing-key",
      "The section does not have this key, and its default was used; add the key." },
    { NoteKind::numberNotConverted, changed, "number-not-converted",
      "The value is not a 32-bit integer, and the default of its key was used; write an integer." },
    { NoteKind::wordNotRecognised, changed, "word-not-recognised",
      "The word is not a valid value of the key, and the default was used; write a valid value, without blanks." },
    { NoteKind::blankInName, changed, "blank-in-name",
      "The blank after the \"=\" is part of the name; remove it." },
    { NoteKind::recordTypeCut, changed, "record-type-cut",
      "The first and the last character of a record type are removed as quotation marks, and these are not quotation marks; write the record type in apostrophes." },
    { NoteKind::itemOutsideRecord, changed, "item-outside-record",
      "The item follows no record and no id items, and was put into the record Common; move it into its record." },
    { NoteKind::noOccurrences, lost, "no-occurrences",
      "The item has fewer than one occurrence and is not in the layout; give it an occurrence if it is needed." },
    { NoteKind::occurrenceNames, info, "occurrence-names",
      "The item became one variable for each occurrence; their names end in the character with the number of the occurrence, not in digits." },
    { NoteKind::subitem, info, "subitem",
      "The subitem became a variable like any other, and the layout does not show which item it is a part of." },
    { NoteKind::furtherValueSet, lost, "further-value-set",
      "The item already has a value set, and this one is not in the layout; put the value set to be used first." },
    { NoteKind::valueSetWithoutItem, lost, "value-set-without-item",
      "No item of the layout precedes the value set, so it describes nothing; move it after its item." },
    { NoteKind::valueSetMisplaced, changed, "value-set-misplaced",
      "The item before the value set is not in the layout, so the set was given to the item before that one; remove the set, or give its item an occurrence." },
    { NoteKind::valueSetDropped, lost, "value-set-dropped",
      "The code is not a 32-bit integer, so the whole value set of this numeric item was dropped; correct or remove the code." },
    { NoteKind::decimalsDropped, lost, "decimals-dropped",
      "The code has decimals and was not to be converted to an integer, so the whole value set of this numeric item was dropped; write an integer." },
    { NoteKind::codeToZero, changed, "code-to-zero",
      "The code is not an integer and became 0, as requested; write an integer if another code was meant." },
    { NoteKind::onlyLastOccurrence, lost, "only-last-occurrence",
      "The item occurs several times and is the first of the dictionary, so only its last occurrence has the value set." },
    { NoteKind::markNotRecognised, lost, "mark-not-recognised",
      "The line is not recognised, so it does not mark the value above as missing or not applicable; the form that is read is MISSING or NOTAPPL, one more character, and a comma, as in \"MISSING ,Special\"." },
    { NoteKind::markedValue, info, "marked-value",
      "The value is the variable's code for missing or not applicable, and its label is among the value labels only if a later line removed the mark." },
    { NoteKind::furtherMark, lost, "further-mark",
      "A later value has the same mark, and the variable can hold only one; keep the mark on only one of them." },
    { NoteKind::markedRange, changed, "marked-range",
      "The mark applies only to the upper bound, and the lower bound is among the value labels; write a value for each code, each with a mark." },
    { NoteKind::markOfLastOccurrence, lost, "mark-of-last-occurrence",
      "The mark applies only to the last occurrence of the item, and the other occurrences have no such code." },
    { NoteKind::keptApostrophe, changed, "kept-apostrophe",
      "The opening apostrophe of the code was removed, and the closing one remains part of it; write the code without apostrophes." },
    { NoteKind::valueWithoutLabel, info, "value-without-label",
      "The value has no label; add one." },
    { NoteKind::labelAsCode, changed, "label-as-code",
      "The value has no code, so its semicolon and its label became the code; write the code before the semicolon." },
    { NoteKind::rangeWithoutLabel, changed, "range-without-label",
      "The upper bound keeps its colon and is therefore not a number, and the range has the label of the line above, if there is one; write a label after a semicolon." },
    { NoteKind::rangeWithoutUpper, changed, "range-without-upper",
      "The range has no upper bound, so its label became the code of the bound, and it has the label of the line above, if there is one; write the upper bound." },
    { NoteKind::rangeAsEndPoints, info, "range-as-end-points",
      "The range is in the value labels as its two end points." },
    { NoteKind::severalInALine, changed, "several-in-a-line",
      "The values of the line were split at wrong places or not at all, so codes contain blanks or colons; write one value or range per line, without blanks." },
    { NoteKind::encodingGuessed, info, "encoding-guessed",
      "The text is not valid UTF-8 and has no byte-order mark, so the default encoding was used; check the letters, and save the file as UTF-8." },

    { NoteKind::wrongType, changed, "wrong-type",
      "The value does not have the expected JSON type, and the default was used; write a value of the expected type." },
    { NoteKind::furtherLanguages, lost, "further-languages",
      "Only the labels of the first language are in the layout; put the language to be used first." },
    { NoteKind::furtherPairs, lost, "further-pairs",
      "Only the first pair of the value is in the layout, and of a pair with both a \"value\" and a \"range\" only the \"value\"; write a separate value for each." },
    { NoteKind::valueWithoutCode, changed, "value-without-code",
      "The value has no readable code, and its label follows an empty code, or 0 if the variable is an integer; write the code as a string." },
    { NoteKind::rangeAsCode, info, "range-as-code",
      "The range is in the value labels as one code, with a colon between its bounds, and counts as 0 for the min and max of a numeric variable." },
    { NoteKind::codeAsZero, changed, "code-as-zero",
      "The code of this numeric variable is a range or not a number, so it counts as 0 for min and max, and if the variable is an integer it is 0 in the value labels; write a value for each code." },
    { NoteKind::occurrenceNumbers, info, "occurrence-numbers",
      "The item became one variable for each occurrence; their names end in the number of the occurrence." },
    { NoteKind::subitemReadFlat, changed, "subitem-read-flat",
      "The subitem states no position, so it was placed after its item and not within its columns, and the following items moved too; write its start." },
    { NoteKind::decimalsNotRead, lost, "decimals-not-read",
      "The decimals of the item are not in the layout; divide values that are stored without a decimal point yourself." },
    { NoteKind::specialNotRead, lost, "special-not-read",
      "The value means missing or not applicable, and is in the layout as an ordinary value." },
    { NoteKind::firstAtColumnOne, changed, "first-at-column-one",
      "The first item of a record has no position and was placed at column 1, on the record type or the id items; write the positions." },

    { NoteKind::versionRefused, lost, "version-refused",
      "The format version of the file is not supported; save it as another version." },
    { NoteKind::labelOfMinusOne, lost, "label-of-minus-one",
      "A value label of -1 is not in the layout; recode the value." },
    { NoteKind::labelWithoutText, lost, "label-without-text",
      "The value label has no text and is not in the layout; give it a text." },
    { NoteKind::labelSetMissing, lost, "label-set-missing",
      "The variable refers to a set of value labels that could not be read, and has no value labels; define the set in the file." },
    { NoteKind::labelSetUnused, lost, "label-set-unused",
      "No variable uses the set of value labels, or its variable is an SPSS text of more than eight bytes, and it is not in the layout; assign it to a variable, or recode the text." },
    { NoteKind::missingAsNumber, changed, "missing-as-number",
      "The label belongs to a missing value such as .a, and is given to the number that stores it; recode the value." },
    { NoteKind::valueCutToInteger, changed, "value-cut-to-integer",
      "The labelled value is not a 32-bit integer and was converted to one, because a variable without decimals uses its set; assign a separate set to that variable." },
    { NoteKind::widthCut, changed, "width-cut",
      "The layout shows a single digit of this width, or 0; use the format in the file." },
    { NoteKind::dateAsNumber, changed, "date-as-number",
      "The variable is a date or a time, and the layout shows it as the number that stores it." },
    { NoteKind::missingNotRead, lost, "missing-not-read",
      "The layout does not show which values of the variable are missing values, and lists those that have a label like any other value; take the missing values from this note." },
    { NoteKind::textNotAscii, changed, "text-not-ascii",
      "The text is read byte by byte, so each letter outside ASCII became several letters; use ASCII letters." },
    { NoteKind::typeUnknown, changed, "type-unknown",
      "The layout cannot express the type of the variable, and shows the type of the variable before it." },
    { NoteKind::openedTwice, changed, "opened-twice",
      "The importer was opened before, and each variable appears once per opening; use a new importer." },

    { NoteKind::repeatsLineBefore, changed, "repeats-line-before",
      "The line has no separator after a key, and was read as a repetition of the line before; a first line repeats the last line of an earlier check, or is an empty key; write key, separator and value." },
    { NoteKind::duplicateKey, lost, "duplicate-key",
      "An earlier line has the same key, and its value is used; remove one of the lines." },
    { NoteKind::unreadableLetters, lost, "unreadable-letters",
      "The line has bytes that are not valid in the encoding of the file, and each was replaced by a replacement character; save the file as UTF-8." },
};
// clang-format on
static_assert(std::size(kindTable) == ReadReport::kinds);

constexpr bool isInOrder()
{
    for (int i = 0; i < ReadReport::kinds; ++i) {
        if (int(kindTable[i].kind) != i)
            return false;
    }
    return true;
}
static_assert(isInOrder());

const Kind &rowOf(NoteKind kind)
{
    return kindTable[std::clamp(int(kind), 0, ReadReport::kinds - 1)];
}

} // namespace

QString ReadNote::id() const
{
    return ReadReport::idOf(kind);
}

NoteSeverity ReadNote::severity() const
{
    return ReadReport::severityOf(kind);
}

QString ReadNote::message() const
{
    return ReadReport::messageOf(kind);
}

const std::vector<ReadNote> &ReadReport::notes() const
{
    return kept;
}

bool ReadReport::isEmpty() const
{
    return kept.empty();
}

int ReadReport::count(NoteKind kind) const
{
    return counts[size_t(rowOf(kind).kind)];
}

int ReadReport::count(NoteSeverity severity) const
{
    int sum = 0;
    for (const Kind &row : kindTable) {
        if (row.severity == severity)
            sum += counts[size_t(row.kind)];
    }
    return sum;
}

void ReadReport::clear()
{
    kept.clear();
    counts.fill(0);
}

void ReadReport::add(NoteKind kind, const QString &text, int line, const QString &variable)
{
    ++counts[size_t(rowOf(kind).kind)];
    if (kept.size() < maxNotes)
        kept.push_back({ kind, line, variable, text });
}

QString ReadReport::idOf(NoteKind kind)
{
    return QLatin1String(rowOf(kind).id);
}

NoteSeverity ReadReport::severityOf(NoteKind kind)
{
    return rowOf(kind).severity;
}

QString ReadReport::messageOf(NoteKind kind)
{
    return QLatin1String(rowOf(kind).message);
}

QString ReadReport::nameOf(NoteSeverity severity)
{
    switch (severity) {
    case NoteSeverity::lost:
        return QStringLiteral("lost");
    case NoteSeverity::changed:
        return QStringLiteral("changed");
    default:
        return QStringLiteral("info");
    }
}
