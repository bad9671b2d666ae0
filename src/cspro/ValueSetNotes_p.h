#ifndef CSPRO_VALUESETNOTES_P_H
#define CSPRO_VALUESETNOTES_P_H

#include "cspro/TextDictionaryNotes_p.h"
#include "cspro/ValueSet_p.h"

#include <array>
#include <vector>

namespace cspro
{

/// The mark that a name line puts on the value before it. Its number becomes the type of the value.
enum class ValueMark { missing = 1, notApplicable = 2 };

/// The diagnostics of one value set of a text dictionary.
///
/// ValueSetReader and TCSPro call an operation for each event; without a report each of them returns at once. The
/// pending value is that of the last value line. It is added to the set when the next value line begins.
class ValueSetNotes
{
public:
    /// \a readSet is a set of the current item of the dictionary that \a dictionaryNotes belong to. Both arguments must
    /// outlive the notes.
    ValueSetNotes(TextDictionaryNotes &dictionaryNotes, const TCSProValueSet &readSet)
        : notes(dictionaryNotes)
        , set(readSet)
        , isOn(dictionaryNotes.report)
    {
    }

    // The events of a line, in their order. Line numbers are those of the file.
    void lineBegun(int number) { currentLine = number; }
    /// A value line begins; the value before it is in the set, unless it is special.
    void valueBegun()
    {
        if (isOn)
            beginValue();
    }
    /// The line of the section at \a index has been read.
    void lineRead(size_t index)
    {
        if (isOn)
            endLine(index);
    }

    // The events within a line; \a line is its text after the key.
    void unusualLine(NoteKind kind, QStringView line) const
    {
        if (isOn)
            add(kind, currentLine, line.toString());
    }
    /// The pending value is the upper bound of a range. \a upper is the whole code of the upper bound.
    void rangeRead(QStringView line, const QString &upper)
    {
        if (isOn)
            takeRange(line, upper);
    }
    /// The pending value is a range, and more of it is lost than the values between its end points.
    void unusualRange(NoteKind kind, QStringView line)
    {
        if (isOn)
            takeUnusualRange(kind, line);
    }
    void marked(ValueMark mark, const TValueSetItem &value)
    {
        if (isOn)
            addMark(mark, value);
    }
    /// The pending value is about to be added to the set.
    void valueKept()
    {
        if (isOn)
            keepRange();
    }
    /// The text of the pending value cannot be split, which ends the reading of the file.
    void splitFailed()
    {
        if (isOn)
            addFailure();
    }
    /// All lines have been read, and the last value is in the set.
    void linesEnded()
    {
        if (isOn)
            setLineOfNewValues(pendingLine);
    }

    // The events after the lines, in their order.
    void sectionRead(const SectionLines &section)
    {
        if (isOn)
            addSection(section);
    }
    /// Codes that are not integers are about to become 0.
    void codesBecomeZero()
    {
        if (isOn)
            addCodesThatBecomeZero();
    }
    /// The set is about to be dropped because of its decimal codes.
    void decimalsRefused()
    {
        if (isOn)
            addDecimalCode();
    }
    /// The set is about to be dropped because a code is not an integer.
    void codesRefused()
    {
        if (isOn)
            addRefusedCode();
    }

    // The end of the section: one of the two is called.
    /// The item gets the set, which is sorted.
    void setKept()
    {
        if (isOn)
            endKept();
    }
    void setDropped()
    {
        if (isOn)
            endDropped();
    }

private:
    void add(NoteKind kind, int line, const QString &text) const { notes.add(kind, text, line, notes.variableName()); }

    void beginValue();
    void endLine(size_t index);
    void setLineOfNewValues(int number) { lineOfValue.resize(size_t(set.items->size()), number); }
    void takeRange(QStringView line, const QString &upper);
    void takeUnusualRange(NoteKind kind, QStringView line);
    void addMark(ValueMark mark, const TValueSetItem &value);
    void keepRange();
    void addFailure();
    void addSection(const SectionLines &section);
    void addCode(NoteKind kind, int index) const;
    void addCodesThatBecomeZero() const;
    void addDecimalCode() const;
    void addRefusedCode() const;
    template <typename IsWanted> void addFirstCode(NoteKind kind, IsWanted isWanted) const;
    void addRepeatedCodes() const;
    void endKept();
    void endDropped();

    TextDictionaryNotes &notes;
    const TCSProValueSet &set;
    const bool isOn; ///< whether there is a report
    int currentLine = 0;
    int pendingLine = 0;          ///< of the pending value
    std::vector<int> lineOfValue; ///< line number of each value of the set
    std::vector<TextDictionaryNotes::Mark> marks;
    std::vector<ReadNote> ranges;
    QString rangeText;                 ///< the line of the pending value if it is a range; otherwise null
    bool isRangeNoted = false;         ///< whether the range of the pending value has a note already
    std::array<bool, 3> isMarked = {}; ///< whether the pending value has each mark, by its number
};

} // namespace cspro

#endif
