#ifndef CSPRO_CSPRO_P_H
#define CSPRO_CSPRO_P_H

#include "cspro/CSProModel_p.h"
#include "cspro/CSProNotes_p.h"
#include "cspro/TextLines_p.h"

#include <QMessageBox>
#include <QStringList>

#include <exception>
#include <optional>
#include <vector>

class TextFileReader;
class TValueSetItem;

namespace cspro
{

/// Writes what an exception says to the debug log, or "Unknown exception" where it says nothing.
void logException(const std::exception &error);

/// Runs \a work; an exception in it is logged and ends it, no more.
template <typename Work> void passOverExceptions(Work work)
{
    try {
        work();
    } catch (const std::exception &error) {
        logException(error);
    }
}

} // namespace cspro

/// Reads a CSPro text dictionary (the CSPro dictionary format, files *.dcf): which record and item stands where in a
/// line of fixed-width data, and which codes it may take.
///
/// The file is a series of sections: a header in brackets, then lines "key=value". Lenient: a line that is not
/// understood is passed over, a number that does not convert takes its default, a file that cannot be opened, or
/// that the system fails to read to its end, gives an empty dictionary. Columns count from 1, lengths are in
/// characters. Not thread-safe; reading may show a dialog.
class TCSPro : public CSProDictionary
{
public:
    TCSPro();
    ~TCSPro() override;

    /// Reads a file to its end, one pass. A second call appends; settings and the current record and item carry over.
    ///
    /// Throws a `VpErrorManager *` with code 242 where parseLines() does, and for a text too large to hold; what was
    /// read until then stays in this reader.
    void readFile(QString fileName);
    /// Reads the lines of a dictionary. Whatever is raised meanwhile becomes a thrown `VpErrorManager *` with code 242
    /// and a text of one character whose code is the index of the line, from 0, that reading had reached.
    void parseLines(QStringList *lines);

private:
    friend struct TestAccess;

    class ValueLines;

    enum SectionKind {
        otherSection = 0,
        dictionarySection = 1,
        recordSection = 2,
        itemSection = 3,
        valueSetSection = 4
    };

    /// Reads a part of the lines that begins with a section; the part in front of it had \a linesBefore
    /// lines. Answers how many lines this one has.
    int parseTextLines(const TextLines &lines, int linesBefore);
    /// The kind of the section that a trimmed header line begins. Any header of kind 0 makes the common record current.
    int sectionKind(QStringView line);
    /// The trimmed lines of the section whose header stands at \a index, without empty ones; \a index moves to the last
    /// line of the section.
    SectionLines sectionLines(const TextLines &lines, int &index) const;
    /// The same lines of a section that is read: a report hears what becomes of each.
    SectionLines beginSection(cspro::Section kind, const TextLines &lines, int &index) const;
    /// What follows "=" in the first line that contains \a key anywhere, case-sensitively; "" if no line does, and
    /// where the line does not have exactly one "=".
    QString getStringValue(const SectionLines &lines, const QString &key) const;
    /// The same as an integer in base 10; \a defaultValue where there is none.
    int getIntValue(const SectionLines &lines, const QString &key, int defaultValue) const;

    // Each reads the section whose header stands at index, and moves the index to its last line.
    void readSection(int kind, const TextLines &lines, int &index);
    void readDictionary(const TextLines &lines, int &index);
    void readRecord(const TextLines &lines, int &index);
    void readItem(const TextLines &lines, int &index);
    /// Leaves the index untouched where the current item has a value set already, or where there is no current item.
    void readValueSet(const TextLines &lines, int &index);

    std::optional<QStringView> findValue(const SectionLines &lines, const QString &key, bool isNumber = false) const;
    /// Whether the text of a key is \a word in any case; \a other is the word for its opposite. Both in capitals.
    bool readWord(const SectionLines &lines, const QString &key, const QString &word, const char *other) const;
    bool readFlag(const SectionLines &lines, const QString &key) const;
    static QString nameOfOccurrence(const TCSProItem &item, int occurrence);
    void addOccurrences(const TCSProItem &item);
    void storeItem(TCSProItem *item);
    void requireRoom(qint64 itemsToCome, qint64 nameCharactersToCome);
    void requireRoomFor(const TCSProValueSet &set);

    /// Adds the codes of a text that holds several of them, parted by blanks and colons; the last character in front of
    /// each colon is lost. Raises `ReadingGivenUp` unless the text is blank: no such text can be read to its end.
    void splitOtherRanges(TCSProValueSet *set, const TValueSetItem *pending) const;
    /// Decides on decimal codes, and whether the set can be kept.
    bool acceptCodes(TCSProValueSet *set, const std::vector<int> &lines);
    bool acceptDecimalCodes(TCSProValueSet *set, const std::vector<int> &lines);
    void attachValueSet(TCSProValueSet *set);
    /// The button pressed in the question on decimal codes.
    int askDecimal(QString text, QString informativeText, QString title, QMessageBox::Icon icon);

    /// What the lines that are walked over belong to. Kept for a report, as are the marks.
    enum class WalkedSection {
        none, ///< no section, or one that is nothing but a header
        level,
        told ///< a section that is read, or is told of as a whole
    };
    /// A code that a value set has written into the current item as missing (type 1) or not applicable (2).
    struct Mark {
        int type;
        bool isRange; ///< whose lower bound is among the value labels
        ReadNote note;
    };

    // What a report hears; called with one alone. An index is that of a line, a header the number of a line.
    void reportFile(const TextFileReader &file);
    void tellOfHeader(QStringView line, int kind, int index);
    void tellOfLineOutside(QStringView line, int index);
    void tellOfDictionary(const SectionLines &section, int header);
    void tellOfRecord(const TCSProRecord &record, const SectionLines &section, int header);
    void tellOfName(const QString &sectionName, int header);
    void tellOfItem(const TCSProItem &item, const SectionLines &section, int header, size_t firstNote);
    void tellOfValueSet(const TCSProValueSet &set, const SectionLines &section, int header);
    void tellOfUnusedValueSet(TextLines lines, int index);
    void tellOfMarks();
    /// The name under which notes on the current item stand: that of its first occurrence, where all share a set.
    const QString &toldName() const;

    mutable cspro::SectionNotes sectionNotes;
    std::vector<Mark> marks;    ///< of the current item, as long as a further value set can be its
    int currentOccurrences = 1; ///< of the current item
    int firstLine = 1;          ///< number in the file of the line at index 0
    WalkedSection walkedSection = WalkedSection::none;
    bool hasDictionary = false;
    bool hasLevel = false;
    bool isOutsideTold = false; ///< a line since the header that stands in no section whose lines are read
    bool isEndTold = false;     ///< what ended the reading
    bool isItemAbsent = false;  ///< the item read last is not in the layout
    QString absentItem;
    bool isCommonMeant = false; ///< whether items belong into the common record
};

#endif
