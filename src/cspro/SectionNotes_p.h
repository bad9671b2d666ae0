#ifndef CSPRO_SECTIONNOTES_P_H
#define CSPRO_SECTIONNOTES_P_H

#include "cspro/SectionLine_p.h"
#include "cspro/TextLines_p.h"
#include "import/ReadReport.h"

#include <vector>

namespace cspro
{

enum class KeyType { text, number };

/// The diagnostics of one section of a text dictionary: which line is the source of each key, which lines are not the
/// source of any key, and the notes on all of this. The notes are gathered here because their variable is known only at
/// the end of the section.
///
/// Keys that do not affect any field or group get no notes.
class SectionNotes
{
public:
    /// Begins a section of \a lineCount lines. \a headerNumber is the number of its header in the file.
    void begin(SectionKind sectionKind, int headerNumber, size_t lineCount);
    bool isOpen() const { return open; }
    int headerLine() const { return header; }

    void add(const ReadNote &note) { gathered.push_back(note); }
    /// The line at \a index is the source of \a key; the index after the last line means that no line is.
    ///
    /// If the line holds no number and no line has exactly this key, a number key counts as having no source: the
    /// result is the same.
    void useKey(const SectionLines &lines, size_t index, const QString &key, KeyType type);
    /// Adds a note on the line of the last key.
    void addForLastKey(const SectionLines &lines, NoteKind noteKind);
    /// Returns whether no line is the source of \a key.
    bool isAbsent(const QString &key) const;
    /// The line at \a index has been read as something other than a key.
    void useLine(size_t index) { isUsed[index] = true; }
    /// Adds notes on missing keys and on lines that are not the source of any key.
    void addUnused(const SectionLines &lines);

    /// Ends the section: the notes that name no variable get \a variable, and all move to \a report.
    void end(ReadReport &report, const QString &variable);

private:
    SectionKind kind = otherSection;
    int header = 0;
    bool open = false;
    std::vector<ReadNote> gathered;
    std::vector<char> isUsed; ///< one entry for each line
    std::vector<QString> absentKeys;
    size_t lastLine = 0;
    QString lastKey;
};

} // namespace cspro

#endif
