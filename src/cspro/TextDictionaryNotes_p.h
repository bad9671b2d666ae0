#ifndef CSPRO_TEXTDICTIONARYNOTES_P_H
#define CSPRO_TEXTDICTIONARYNOTES_P_H

#include "cspro/CSProModel_p.h"
#include "cspro/SectionNotes_p.h"

#include <vector>

class TextFileReader;

namespace cspro
{

/// The diagnostics of TCSPro: notes in a report on everything that it lost or changed.
///
/// The reader calls an operation for each event. Without a report each of them returns at once. An index is the 0-based
/// index of a line among the lines that are read; the notes have the number of the line in the file. The notes of a
/// section move to the report when the section ends, with the variable that is known by then.
class TextDictionaryNotes
{
public:
    /// \a readDictionary is the dictionary that the reader fills. It must outlive the notes.
    explicit TextDictionaryNotes(const CSProDictionary &readDictionary)
        : dictionary(readDictionary)
    {
    }

    /// Sends notes to \a newReport, which is not owned; null turns reporting off.
    void setReport(ReadReport *newReport) { report = newReport; }
    /// Sets the number in the file of the line at index 0, for the lines that are read next.
    void setFirstLine(int number) { firstLine = number; }

    /// A file has been opened, or has failed to open.
    void fileOpened(const TextFileReader &file)
    {
        if (report)
            addFile(file);
    }
    void headerRead(QStringView line, SectionKind kind, int index)
    {
        if (report)
            addHeader(line, kind, firstLine + index);
    }
    /// A line that belongs to no section that is read has been skipped.
    void lineSkipped(QStringView line, int index)
    {
        if (report && !line.isEmpty())
            addSkippedLine(line, firstLine + index);
    }
    /// The value set whose header is at \a index is not read.
    void valueSetSkipped(const TextLines &lines, int index)
    {
        if (report)
            addSkippedValueSet(lines, index);
    }
    /// The value set of an item that occurs several times belongs to its last copy only.
    void valueSetOfOneCopy(const TCSProValueSet &set)
    {
        if (report)
            addValueSetOfOneCopy(set);
    }
    /// The last line has been read.
    void linesEnded()
    {
        if (report)
            addMarks();
    }
    /// Reading ended in an error: at the line at \a index, or for \a cause at the line with \a number in the file.
    void readingFailed(const TextLines &lines, int index)
    {
        if (report)
            addFailure(lines.has(index) ? lines.at(index).toString() : QString(), firstLine + index);
    }
    void readingFailed(const QString &cause, int number)
    {
        if (report)
            addFailure(cause, number);
    }

    // The events of a section, in their order.
    /// Stores the number in the file of the line that was last appended to \a lines.
    void numberLine(SectionLines &lines, int index) const
    {
        if (report)
            lines.numberLast(firstLine + index);
    }
    void sectionBegun(SectionKind kind, const SectionLines &lines, int headerIndex)
    {
        if (report)
            section.begin(kind, firstLine + headerIndex, lines.size());
    }
    /// The line at the index \a line of the section is the source of \a key; the index after the last line means that
    /// no line is.
    void keyRead(const SectionLines &lines, size_t line, const QString &key, KeyType type)
    {
        if (report)
            section.useKey(lines, line, key, type);
    }
    /// The value of the last key is not a number.
    void numberNotConverted(const SectionLines &lines)
    {
        if (report)
            section.addForLastKey(lines, NoteKind::numberNotConverted);
    }
    /// The value of the last key is \a text and not the word of the key; \a other is the word of the default.
    void wordNotFound(const SectionLines &lines, const QString &text, QLatin1String other)
    {
        if (report && !text.isEmpty() && text.compare(other, Qt::CaseInsensitive) != 0)
            section.addForLastKey(lines, NoteKind::wordNotRecognised);
    }

    // The end of a section other than a value set.
    void dictionaryRead(const SectionLines &lines)
    {
        if (report)
            endDictionary(lines);
    }
    /// The record type of \a record still has its quotes.
    void recordRead(const TCSProRecord &record, const SectionLines &lines)
    {
        if (report)
            endRecord(record, lines);
    }
    /// \a item has its number of occurrences and is not yet in the dictionary. \a variable is the name of its first
    /// occurrence.
    void itemRead(const TCSProItem &item, const QString &variable, const SectionLines &lines)
    {
        if (report)
            endItem(item, variable, lines);
    }

private:
    friend class ValueSetNotes;

    /// The section that skipped lines belong to.
    enum class SkippedSection {
        none, ///< no section, or one that is nothing but a header
        level,
        noted ///< a section that is read, or has a note as a whole
    };
    /// A code that a value set has written into the current item as missing (type 1) or not applicable (2).
    struct Mark {
        int type;
        bool isRange; ///< the lower bound of the range is among the value labels
        ReadNote note;
    };

    void add(NoteKind kind, const QString &text, int line = 0, const QString &variable = QString());
    void endSection(const QString &variable) { section.end(*report, variable); }

    void addFile(const TextFileReader &file);
    void addHeader(QStringView line, SectionKind kind, int number);
    void addOtherHeader(QStringView line, int number);
    void addSkippedLine(QStringView line, int number);
    void addSkippedValueSet(TextLines lines, int index);
    void addValueSetOfOneCopy(const TCSProValueSet &set);
    void addMarks();
    void addFailure(const QString &text, int number);
    void addName(const QString &sectionName);
    void endDictionary(const SectionLines &lines);
    void endRecord(const TCSProRecord &record, const SectionLines &lines);
    void endItem(const TCSProItem &item, const QString &variable, const SectionLines &lines);
    /// Returns the variable of notes on the current item: its first occurrence, if all occurrences share a value set.
    const QString &variableName() const;

    const CSProDictionary &dictionary;
    ReadReport *report = nullptr;
    SectionNotes section;
    std::vector<Mark> marks; ///< marks of the current item, as long as it may get another value set
    int firstLine = 1;
    SkippedSection skippedSection = SkippedSection::none;
    bool hasDictionary = false;
    bool hasLevel = false;
    bool isSkippedLineNoted = false; ///< a skipped line since the last header has a note
    bool isFailureNoted = false;     ///< the error that ends the reading has a note
    bool isItemAbsent = false;       ///< the item read last is not in the layout
    QString absentItem;
    bool isCommonMeant = false; ///< whether items belong to the common record
};

} // namespace cspro

#endif
