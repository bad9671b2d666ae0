#ifndef CSPRO_CSPRONOTES_P_H
#define CSPRO_CSPRONOTES_P_H

#include "cspro/CSProModel_p.h"
#include "import/GenericField.h"
#include "import/ReadReport.h"
#include "util/TextFile_p.h"

#include <QJsonObject>

/// What the CSPro readers tell a report. All of it is asked for only where there is one.
namespace cspro
{

/// A kind of section with the keys that are read of it.
enum class Section { dictionary, record, item, valueSet };

/// Tells of the lines and keys of a section: what is not read, and what is read otherwise than it looks. \a headerLine
/// is the number of its header.
void tellOfSection(ReadReport &report, Section kind, const SectionLines &lines, int headerLine);

/// Tells of codes that a numeric value set makes unusable: \a lines are the lines of its values. Whether decimal codes
/// become 0 is \a becomesInteger.
void tellOfDecimalCodes(ReadReport &report, const TCSProValueSet &set, const std::vector<int> &lines,
                        bool becomesInteger);
void tellOfDroppedSet(ReadReport &report, const TCSProValueSet &set, const std::vector<int> &lines);
void tellOfRepeatedCodes(ReadReport &report, const TCSProValueSet &set, const QString &variable);

/// Tells of the items of one record, or of the record type and the id items, that stand on the same columns.
void tellOfPositions(ReadReport &report, const CSProDictionary &dictionary);
/// Tells of digits that the description of an item loses.
void tellOfDigits(ReadReport &report, const TCSProItem &item, const TGenericField &field);
/// Tells of groups whose value is that of another one.
void tellOfGroups(ReadReport &report, const QStringList *groups);
/// Tells of the layout as a whole: positions, groups and names.
void tellOfLayout(ReadReport &report, const CSProDictionary &dictionary, const QStringList *groups,
                  const QList<TGenericField *> *fields);

/// Tells what the reader does not read, or reads otherwise, of a CSPro 8 dictionary object.
void tellOfJson(ReadReport &report, const QJsonObject &dictionary);

} // namespace cspro

#endif
