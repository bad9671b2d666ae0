#ifndef CSPRO_CSPRONOTES_P_H
#define CSPRO_CSPRONOTES_P_H

#include "cspro/CSProModel_p.h"
#include "import/GenericField.h"
#include "import/ReadReport.h"
#include "cspro/TextLines_p.h"

#include <QJsonObject>

#include <vector>

/// What the CSPro readers tell a report. All of it is asked for only where there is one.
namespace cspro
{

/// A kind of section that is read.
enum class Section { dictionary, record, item, valueSet };

/// Whether a line of a level says what no layout has a place for: its name, its label or a note.
bool isKeyOfLevel(QStringView line);

/// Follows the reading of one section after the other: which line each key is taken from, and which lines nothing took.
/// Nothing is told of keys that reach no field and no group.
class SectionNotes
{
public:
    void begin(Section sectionKind, size_t lineCount);
    /// The line at \a index is taken for \a key; the index behind the last line where none is. What is no number makes
    /// no difference to a key that is a number and has no line of its own.
    void useKey(ReadReport &report, const SectionLines &lines, size_t index, const QString &key, bool isNumber);
    /// What the last key has is no number.
    void failToConvert(ReadReport &report, const SectionLines &lines) const;
    /// What the last key has is none of its words.
    void tellOfWord(ReadReport &report, const SectionLines &lines) const;
    /// Whether no line was taken for \a key.
    bool isAbsent(const QString &key) const;
    /// The line at \a index is read by something else.
    void use(size_t index) { isUsed[index] = true; }
    /// Tells of keys that are missing and of lines that nothing took. \a headerLine is the number of the header.
    void end(ReadReport &report, const SectionLines &lines, int headerLine) const;

private:
    void tellOfLast(ReadReport &report, const SectionLines &lines, NoteKind noteKind) const;

    Section kind = Section::dictionary;
    std::vector<char> isUsed;
    std::vector<QString> absentKeys;
    size_t lastLine = 0;
    QString lastKey;
};

/// Tells of codes that a numeric value set makes unusable: \a lines are the lines of its values. Whether decimal codes
/// become 0 is \a becomesInteger.
void tellOfDecimalCodes(ReadReport &report, const TCSProValueSet &set, const std::vector<int> &lines,
                        bool becomesInteger);
void tellOfDroppedSet(ReadReport &report, const TCSProValueSet &set, const std::vector<int> &lines);
/// Of a set that is sorted: equal codes stand side by side.
void tellOfRepeatedCodes(ReadReport &report, const TCSProValueSet &set, const QString &variable);

/// Tells of what \a field, the description of \a item, shows otherwise than the item has it: decimals, long codes, and
/// codes and labels that part their entry in the value labels. \a before is the item in front of it, null for the
/// first: one occurrence stands for those that have the same.
void tellOfDescription(ReadReport &report, const TCSProItem &item, const TCSProItem *before,
                       const TGenericField &field);
/// Tells of the layout as a whole: positions, groups and records.
void tellOfLayout(ReadReport &report, const CSProDictionary &dictionary, const QStringList *groups);

/// Tells what the reader does not read, or reads otherwise, of a CSPro 8 document.
void tellOfJson(ReadReport &report, const QJsonObject &root);

} // namespace cspro

#endif
