#ifndef CSPRO_VALUESETREADER_P_H
#define CSPRO_VALUESETREADER_P_H

#include "cspro/TextLines_p.h"
#include "cspro/ValueSetNotes_p.h"
#include "cspro/ValueSet_p.h"
#include "util/TextCache_p.h"

#include <memory>
#include <optional>

namespace cspro
{

/// A value set of a text dictionary, with the codes of the values that are marked and so not in the set.
struct ParsedValueSet {
    OwnedValueSet set;
    std::optional<QString> missing; ///< code of the last value marked as missing
    std::optional<QString> notApplicable;
};

/// Reads the value lines and the name lines of a value set.
///
/// The code and the label that a line sets stay set for the lines after it: some shapes of line use them.
class ValueSetReader
{
public:
    /// Values go into the set of \a parsedSet, which is not null. All arguments must outlive the reader.
    ValueSetReader(ParsedValueSet &parsedSet, TextCache &textCache, ValueSetNotes &setNotes);

    /// Reads all lines of a section; lines of any other kind are skipped. Throws `ReadingGivenUp` as
    /// splitOtherRanges() does; the set then has the values and marks of the lines before.
    void read(const SectionLines &section);

    /// Adds the codes of a text that holds several of them, separated by blanks and colons; the last character before
    /// each colon is lost. Throws `ReadingGivenUp` unless only blanks are left: the reading of any other text would
    /// never end.
    static void splitOtherRanges(TCSProValueSet &set, const TValueSetItem &pending);

private:
    bool readLine(QStringView line);
    void readValue(QStringView line);
    void flushPending();
    void splitPending();
    void keepPending();
    void readShape(QStringView line);
    void readValueWithLabel(QStringView line, int semicolon);
    void readValueWithoutLabel(QStringView line);
    void readRangeWithLabel(QStringView line, int colon);
    void readRangeWithoutLabel(QStringView line, int colon);
    void readSeveral(QStringView line, int semicolon);
    void unquoteCode(QStringView line);
    void readMark(QStringView line);
    void mark(ValueMark mark, std::optional<QString> &markedCode);
    QString text(QStringView view) { return texts.text(view); }

    ParsedValueSet &parsed;
    TCSProValueSet &set;
    TextCache &texts;
    ValueSetNotes &notes;
    QString code;                           ///< null before the first value line
    QString label;                          ///< null before the first line that sets a label
    std::unique_ptr<TValueSetItem> pending; ///< the value of the last value line; null before the first
};

} // namespace cspro

#endif
