#ifndef CSPRO_CSPRO_P_H
#define CSPRO_CSPRO_P_H

#include "cspro/CSProModel_p.h"
#include "cspro/SectionLine_p.h"
#include "cspro/TextDictionaryNotes_p.h"
#include "cspro/TextLines_p.h"

#include <QMessageBox>
#include <QStringList>

#include <exception>
#include <optional>

class TValueSetItem;

namespace cspro
{

struct ParsedValueSet;
class ValueSetNotes;

/// Writes the text of an exception to the debug log, or "Unknown exception" if it has none.
void logException(const std::exception &error);

/// Runs \a work; an exception ends it and is logged.
template <typename Work> void ignoreExceptions(Work work)
{
    try {
        work();
        // LCOV_EXCL_START: in a value of a line only a lack of memory is raised, and the tests run their own copy
    } catch (const std::exception &error) {
        logException(error);
    }
    // LCOV_EXCL_STOP
}

} // namespace cspro

/// Reads a CSPro text dictionary (the CSPro dictionary format, files *.dcf): the positions of records and items in a
/// line of fixed-width data, and the codes that each item may have.
///
/// The file is a series of sections: a header in brackets, then lines "key=value". The reader is lenient: it skips a
/// line that it does not recognise, a number that does not convert gets its default, and a file that cannot be opened,
/// or that the system fails to read to its end, is read as an empty dictionary. Columns count from 1, lengths are in
/// characters. Not thread-safe; reading may show a dialog.
class TCSPro : public CSProDictionary
{
public:
    TCSPro();
    ~TCSPro() override;

    /// Sends notes on everything that the next readings lose or change to \a report, which is not owned; null turns
    /// reporting off.
    void setReport(ReadReport *report) { notes.setReport(report); }

    /// Reads a file to its end in one pass. A second call appends; settings and the current record and item carry over.
    ///
    /// Throws a `VpErrorManager *` with code 242 as parseLines() does, and for a text that is too large for memory.
    /// Everything read until then stays in this reader.
    void readFile(QString fileName);
    /// Reads the lines of a dictionary. Any exception during the reading is replaced by a thrown `VpErrorManager *`
    /// with code 242 and a text of one character whose code is the 0-based index of the line that reading had reached.
    void parseLines(QStringList *lines);

private:
    friend struct TestAccess;

    /// Reads a block of lines that begins with a section and follows \a linesBefore other lines. Returns the number of
    /// lines in the block.
    int parseTextLines(const TextLines &lines, int linesBefore);
    /// Returns the kind of the section that a trimmed header line begins. Any header of kind 0 makes the common record
    /// current.
    int sectionKind(QStringView line);
    /// Returns the trimmed lines of the section whose header is at \a index, without empty ones. Moves \a index to the
    /// last line of the section.
    SectionLines sectionLines(const TextLines &lines, int &index) const;
    /// Returns the text after "=" in the first line that contains \a key anywhere, compared case-sensitively; "" if no
    /// line does, or if that line does not have exactly one "=".
    QString getStringValue(const SectionLines &lines, const QString &key) const;
    /// Returns the same as an integer in base 10; \a defaultValue if there is none.
    int getIntValue(const SectionLines &lines, const QString &key, int defaultValue) const;

    // Each operation reads the section whose header is at \a index, and moves the index to the last line of the
    // section.
    void readSection(int kind, const TextLines &lines, int &index);
    void readDictionary(const TextLines &lines, int &index);
    void readRecord(const TextLines &lines, int &index);
    void readItem(const TextLines &lines, int &index);
    /// Leaves the index unchanged if the current item has a value set already, or if there is no current item.
    void readValueSet(const TextLines &lines, int &index);

    SectionLines beginSection(cspro::SectionKind kind, const TextLines &lines, int &index) const;
    std::optional<QStringView> findValue(const SectionLines &lines, const QString &key, cspro::KeyType type) const;
    /// Returns whether the text of a key is \a word in any case. \a other is the word of the default. Both are in
    /// capitals.
    bool readWord(const SectionLines &lines, const QString &key, const QString &word, QLatin1String other) const;
    bool readFlag(const SectionLines &lines, const QString &key) const;
    static QString nameOfOccurrence(const TCSProItem &item, int occurrence);
    void addOccurrences(const TCSProItem &item);
    void storeItem(TCSProItem *item);
    void requireRoom(qint64 newItems, qint64 newNameCharacters);
    void requireRoomFor(const TCSProValueSet &set);

    void readValues(const SectionLines &section, cspro::ParsedValueSet &parsed, cspro::ValueSetNotes &setNotes);
    /// Calls `cspro::ValueSetReader::splitOtherRanges`.
    void splitOtherRanges(TCSProValueSet *set, const TValueSetItem *pending) const;
    /// Handles decimal codes. Returns whether the set can be kept.
    bool acceptCodes(TCSProValueSet &set, cspro::ValueSetNotes &setNotes);
    bool acceptDecimalCodes(TCSProValueSet &set, cspro::ValueSetNotes &setNotes);
    void attachValueSet(TCSProValueSet *set);
    /// Asks the question on decimal codes. Returns the number of the pressed button.
    int askDecimal(QString text, QString informativeText, QString title, QMessageBox::Icon icon);

    mutable cspro::TextDictionaryNotes notes;
    int currentOccurrences = 1; ///< number of occurrences of the current item
};

#endif
