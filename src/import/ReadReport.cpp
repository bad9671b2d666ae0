#include "import/ReadReport.h"

#include <algorithm>
#include <numeric>

namespace
{

struct Kind {
    NoteKind kind;
    NoteGravity gravity;
    const char *id;
    const char *sentence;
};

constexpr NoteGravity lost = NoteGravity::lost;
constexpr NoteGravity changed = NoteGravity::changed;
constexpr NoteGravity curious = NoteGravity::curious;

// One row a kind, in the order of the enumeration.
// clang-format off
constexpr Kind kindTable[] = {
    { NoteKind::fileNotRead, lost, "file-not-read",
      "The file gave no layout; check that it can be opened and is of the format that it is read as." },
    { NoteKind::readFailed, lost, "read-failed",
      "The file could not be read to its end, and what was read of it does not count; mend the cause, such as a disk or a connection that fails, and read it again." },
    { NoteKind::readingEnded, lost, "reading-ended",
      "Reading ended here, and what follows is not in the layout; mend this place in the file." },
    { NoteKind::layoutGivenUp, lost, "layout-given-up",
      "Reading ended here in an error, and nothing of the file is in the layout, what stands in front of this place included; mend it in the file." },
    { NoteKind::duplicateVariable, changed, "duplicate-variable",
      "Another variable has this name, and a search by name finds one of them alone; give each a name of its own." },
    { NoteKind::overlappingPositions, curious, "overlapping-positions",
      "The variable stands on columns of another one of its record, of an id item or of the record type; check start and length if it is no part of it." },
    { NoteKind::codeRounded, changed, "code-rounded",
      "The code has more than six digits, or in Stata and SPSS more than six decimals, and was rounded to six; a value label for it will not be found by its code." },
    { NoteKind::boundRounded, changed, "bound-rounded",
      "The bound has more than six digits and was written with six; go by the codes in the file." },
    { NoteKind::decimalsLost, lost, "decimals-lost",
      "The layout shows no decimals for this variable; divide values that a CSPro data file holds without a decimal point, and take values of SPSS and Stata files as they are, since they are real numbers." },
    { NoteKind::duplicateCode, curious, "duplicate-code",
      "The code stands several times among the value labels, and each of its labels was kept; remove all but one." },
    { NoteKind::labelEntryParted, changed, "label-entry-parted",
      "In the text of the value labels a code ends at its first blank and a label at its first tab, so this one reads as another; write the code without blanks and the label without tabs." },
    { NoteKind::groupValueOfAnother, changed, "group-value-of-another",
      "The text of this group is part of an earlier group's, whose value is given for it; rename one of them." },
    { NoteKind::duplicateRecord, changed, "duplicate-record",
      "Another record has this name or this record type, and a search by it finds one of them alone; give each its own." },

    { NoteKind::unknownSection, lost, "unknown-section",
      "The section is not read, and items behind it count to the record Common; move it to the end if it stands between items." },
    { NoteKind::lineOutsideSection, lost, "line-outside-section",
      "The line stands in no section whose lines are read, and was passed over, as was what follows it up to the next header; move it into its section." },
    { NoteKind::swallowedHeader, lost, "swallowed-header",
      "Blanks stand in front of the header, so it begins no section and its lines went to the section before; remove the blanks." },
    { NoteKind::unclosedHeader, curious, "unclosed-header",
      "The header has no closing bracket, and all of the line was taken as its name; close the bracket." },
    { NoteKind::textBehindHeader, lost, "text-behind-header",
      "What stands behind the closing bracket was passed over; write it in a line of its own." },
    { NoteKind::furtherDictionary, lost, "further-dictionary",
      "The settings of an earlier section of this kind gave way to those of this one; remove one of them." },
    { NoteKind::furtherLevel, lost, "further-level",
      "The layout has no levels: the records of all of them stand side by side, and which belongs to which is not told." },
    { NoteKind::unknownKey, lost, "unknown-key",
      "The line has a key that is not read, so what it says is not in the layout; if another key was meant, mend its spelling and its case." },
    { NoteKind::keyBySubstring, changed, "key-by-substring",
      "The line contains the word of another key, and what stands behind its \"=\" was taken for that one; put the line of that key above." },
    { NoteKind::keyWithoutEquals, lost, "key-without-equals",
      "The line contains the word of a key without a \"=\", so that key was not read: a text is empty, and a number has its default; reword or move the line." },
    { NoteKind::secondEquals, lost, "second-equals",
      "The value holds a \"=\" of its own, so it was not read: a text is empty, and a number has its default; remove the second \"=\"." },
    { NoteKind::repeatedKey, lost, "repeated-key",
      "The key stands in its section already, and the first one counts; remove one of the lines." },
    { NoteKind::missingKey, changed, "missing-key",
      "The section has no such key, and its default was taken; add the key." },
    { NoteKind::numberNotConverted, changed, "number-not-converted",
      "The value is no integer of 32 bits, and the default of its key was taken; write an integer." },
    { NoteKind::wordNotRecognised, changed, "word-not-recognised",
      "The word is none of those that the key can have, and its default was taken; write one of them, without blanks." },
    { NoteKind::blankInName, changed, "blank-in-name",
      "The blank behind the \"=\" is part of the name; remove it." },
    { NoteKind::recordTypeCut, changed, "record-type-cut",
      "The first and the last character of a record type are taken for quotes, and these are none; write it in apostrophes." },
    { NoteKind::itemOutsideRecord, changed, "item-outside-record",
      "The item stands behind no record and no id items, and was put into the record Common; move it into its record." },
    { NoteKind::noOccurrences, lost, "no-occurrences",
      "The item occurs less than once and is not in the layout; give it an occurrence if it is meant." },
    { NoteKind::occurrenceNames, curious, "occurrence-names",
      "The item became a variable for each occurrence, told apart by the character with the occurrence's number, not by digits." },
    { NoteKind::subitem, curious, "subitem",
      "The subitem became a variable like any other, and nothing tells of which item it is a part." },
    { NoteKind::furtherValueSet, lost, "further-value-set",
      "The item has a value set already, and this one is not in the layout; put the one that is meant first." },
    { NoteKind::valueSetWithoutItem, lost, "value-set-without-item",
      "No item that is in the layout stands in front of the value set, so it describes nothing; move it behind its item." },
    { NoteKind::valueSetMisplaced, changed, "value-set-misplaced",
      "The item in front of the value set is not in the layout, so the set went to the item before that one; remove the set, or give its item an occurrence." },
    { NoteKind::valueSetDropped, lost, "value-set-dropped",
      "The code is no integer of 32 bits, and for that the whole value set of this number was dropped; mend or remove the code." },
    { NoteKind::decimalsDropped, lost, "decimals-dropped",
      "The code has decimals, and as it was not to become an integer the whole value set of this number was dropped; write an integer." },
    { NoteKind::codeToZero, changed, "code-to-zero",
      "The code is no integer and became 0, as was asked for; write an integer if another was meant." },
    { NoteKind::onlyLastOccurrence, lost, "only-last-occurrence",
      "The item occurs several times and is the first of the dictionary, so its last occurrence alone has the value set." },
    { NoteKind::markNotRecognised, lost, "mark-not-recognised",
      "The line is not understood, so it makes the value above neither missing nor not applicable; what is read is MISSING or NOTAPPL, one more character, and a comma, as in \"MISSING ,Special\"." },
    { NoteKind::markedValue, curious, "marked-value",
      "The value is the variable's code for missing or not applicable, and its label is among the value labels only where a later line took the mark back." },
    { NoteKind::furtherMark, lost, "further-mark",
      "A later value has the same mark, and the variable has room for one; leave the mark at one of them." },
    { NoteKind::markedRange, changed, "marked-range",
      "The mark counts for the upper bound alone, and the lower one is among the value labels; write a value for each code, with a mark each." },
    { NoteKind::markOfLastOccurrence, lost, "mark-of-last-occurrence",
      "The mark counts for the last occurrence of the item alone, and the others have no such code." },
    { NoteKind::keptApostrophe, changed, "kept-apostrophe",
      "The opening apostrophe of the code was removed, and a closing one stays part of it; write the code without apostrophes." },
    { NoteKind::valueWithoutLabel, curious, "value-without-label",
      "The value has no label; write one." },
    { NoteKind::labelAsCode, changed, "label-as-code",
      "The value has no code, so its semicolon and its label became the code; write the code in front of the semicolon." },
    { NoteKind::rangeWithoutLabel, changed, "range-without-label",
      "The upper bound keeps its colon, so it is no number any more, and the range has the label of the line above, if there is one; write a label behind a semicolon." },
    { NoteKind::rangeWithoutUpper, changed, "range-without-upper",
      "The range has no upper bound, so its label became the code of one, and it has the label of the line above, if there is one; write the bound." },
    { NoteKind::rangeAsEndPoints, curious, "range-as-end-points",
      "The range stands among the value labels as its two end points." },
    { NoteKind::severalInALine, changed, "several-in-a-line",
      "The values of the line were parted at the wrong places or not at all, so codes hold blanks or colons; write one value or range a line, without blanks." },
    { NoteKind::encodingGuessed, curious, "encoding-guessed",
      "The text is no UTF-8 and has no mark of its encoding, so the usual one was taken; check the letters, and save it as UTF-8." },

    { NoteKind::wrongType, changed, "wrong-type",
      "The value is of another JSON type than the one that is read, and the default was taken; write the right type." },
    { NoteKind::furtherLanguages, lost, "further-languages",
      "The labels of the first language alone are in the layout; put the one that is meant first." },
    { NoteKind::furtherPairs, lost, "further-pairs",
      "The first pair of the value alone is in the layout, and of a pair with both a \"value\" and a \"range\" the former alone; write a value for each." },
    { NoteKind::valueWithoutCode, changed, "value-without-code",
      "The value has no code that can be read, and its label stands behind an empty one, or behind 0 where the variable is an integer; write the code as a text." },
    { NoteKind::rangeAsCode, curious, "range-as-code",
      "The range stands among the value labels as one code, with a colon between its bounds, and counts as 0 for minimum and maximum of a number." },
    { NoteKind::codeAsZero, changed, "code-as-zero",
      "The code of this number is a range or no number, so it counts as 0 for minimum and maximum, and where the variable is an integer it stands as 0 among the value labels; write a value for each code." },
    { NoteKind::occurrenceNumbers, curious, "occurrence-numbers",
      "The item became a variable for each occurrence, whose name ends in the number of the occurrence." },
    { NoteKind::subitemReadFlat, changed, "subitem-read-flat",
      "The subitem has no position of its own, so it stands behind its item and not on columns of it, and what follows moved too; write its start." },
    { NoteKind::decimalsNotRead, lost, "decimals-not-read",
      "The decimals of the item are not in the layout, so values that are written without a decimal point have to be divided by whoever reads them." },
    { NoteKind::specialNotRead, lost, "special-not-read",
      "The value stands for missing or not applicable, and is in the layout as an ordinary one." },
    { NoteKind::firstAtColumnOne, changed, "first-at-column-one",
      "The first item of a record has no position and was put at column 1, where the record type or the id items stand; write the positions." },

    { NoteKind::versionRefused, lost, "version-refused",
      "The file is of a version of its format that cannot be read; save it as another one." },
    { NoteKind::labelOfMinusOne, lost, "label-of-minus-one",
      "A value label of -1 is not in the layout; recode the value." },
    { NoteKind::labelWithoutText, lost, "label-without-text",
      "The value label has no text and is not in the layout; give it one." },
    { NoteKind::labelSetMissing, lost, "label-set-missing",
      "The variable names a set of value labels that could not be read, and has no value labels; define the set in the file." },
    { NoteKind::labelSetUnused, lost, "label-set-unused",
      "The set of value labels came with no variable, as is so where an SPSS text has more than eight bytes, and is not in the layout; give it to a variable, or recode the text." },
    { NoteKind::missingAsNumber, changed, "missing-as-number",
      "The label is that of a missing value such as .a, and stands at the number that this is stored as; recode the value." },
    { NoteKind::valueCutToInteger, changed, "value-cut-to-integer",
      "The labelled value is no integer of 32 bits and was made one, as a variable without decimals uses its set; give that variable a set of its own." },
    { NoteKind::widthCut, changed, "width-cut",
      "The layout shows one digit of this width, or 0; go by the format in the file." },
    { NoteKind::dateAsNumber, changed, "date-as-number",
      "The variable is a date or a time, and the layout shows it as the number that it is stored as." },
    { NoteKind::missingNotRead, lost, "missing-not-read",
      "The layout does not show which values of the variable are missing values, and lists one that has a label like any other value; take the missing values from this note." },
    { NoteKind::textNotAscii, changed, "text-not-ascii",
      "The text is read byte by byte, so each letter outside of ASCII became several; use plain letters." },
    { NoteKind::typeUnknown, changed, "type-unknown",
      "The type of the variable has no place in the layout, which shows the type of the variable before it." },
    { NoteKind::openedTwice, changed, "opened-twice",
      "The importer was opened before, and every variable comes once for each opening; use a new importer." },

    { NoteKind::repeatsLineBefore, changed, "repeats-line-before",
      "The line has no separator behind a key, and was taken as a repeat of the line before; a first line repeats the last one of an earlier check, or is an empty key; write key, separator and value." },
    { NoteKind::duplicateKey, lost, "duplicate-key",
      "The key stands on an earlier line, and the value there counts; remove one of the lines." },
    { NoteKind::unreadableLetters, lost, "unreadable-letters",
      "The line has bytes that are no text in the encoding that the file is read in, and each became a replacement character; save the file as UTF-8." },
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

NoteGravity ReadNote::gravity() const
{
    return ReadReport::gravityOf(kind);
}

QString ReadNote::sentence() const
{
    return ReadReport::sentenceOf(kind);
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

int ReadReport::count(NoteGravity gravity) const
{
    int sum = 0;
    for (const Kind &row : kindTable) {
        if (row.gravity == gravity)
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
    if (kept.size() < mostNotes)
        kept.push_back({ kind, line, variable, text });
}

void ReadReport::nameVariable(size_t first, const QString &variable)
{
    for (size_t i = first; i < kept.size(); ++i) {
        if (kept[i].variable.isEmpty())
            kept[i].variable = variable;
    }
}

QString ReadReport::idOf(NoteKind kind)
{
    return QLatin1String(rowOf(kind).id);
}

NoteGravity ReadReport::gravityOf(NoteKind kind)
{
    return rowOf(kind).gravity;
}

QString ReadReport::sentenceOf(NoteKind kind)
{
    return QLatin1String(rowOf(kind).sentence);
}

QString ReadReport::nameOf(NoteGravity gravity)
{
    switch (gravity) {
    case NoteGravity::lost:
        return QStringLiteral("lost");
    case NoteGravity::changed:
        return QStringLiteral("changed");
    default:
        return QStringLiteral("curious");
    }
}
