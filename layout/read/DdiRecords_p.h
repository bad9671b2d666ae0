#ifndef LAYOUT_READ_DDIRECORDS_P_H
#define LAYOUT_READ_DDIRECORDS_P_H

#include "read/DdiContent_p.h"
#include "read/DdiRepetitions_p.h"
#include "util/KeyedHash_p.h"

namespace vanlayout::ddi
{

/// A record of the layout, with the variables that were placed in it so far.
struct RecordPlace {
    Record record;
    int level = 0;
    int file = 0;
    QString segment; ///< `RecSegNo` of its lines; empty if lines are not counted
    QVector<PlacedItem> items;
};

/// A level of the layout, with the ids that were placed in it so far.
struct LevelPlace {
    Level level;
    QVector<PlacedItem> ids;
};

/// Where a variable belongs.
struct Places {
    int idLevel = -1; ///< index of the level of an id; -1 for a variable of records
    QVector<int> records;
    bool isUnknownFile = false; ///< whether it names a file that the document does not have
    bool isUnknownType = false; ///< whether it names only record types that the document does not have
};

/// The levels and records of a document, and where its variables belong.
class Records
{
public:
    /// \a document must have a file, and outlive this object.
    explicit Records(const Content &document);

    Places placesOf(const Variable &variable) const;
    /// Whether levels and records are stated as groups of variables, as in the documents of this library.
    bool areStated() const { return hasStatedLevels; }

    QVector<LevelPlace> levels;
    QVector<RecordPlace> records;

private:
    void addStatedLevels();
    void addStatedRecord(const Group &group, int level);
    const RecordGroup *recordGroupOf(const Group &group) const;
    void addRecordsOf(int file);
    void addRecord(const Record &record, int file, const QString &segment);
    void gatherSegments();
    QVector<int> filesOf(const Variable &variable, Places &places) const;
    QVector<int> recordsOf(int file, const Variable &variable, Places &places) const;
    bool isKeyOfAll(const Variable &variable) const;
    static QString keyOf(int file, const QString &part);

    const Content &content;
    bool hasStatedLevels = false;
    QVector<QStringList> segments; ///< of each file
    KeyedMap<QString, int> files;  ///< by ID
    KeyedMap<QString, int> levelOfId;
    KeyedMap<QString, int> recordOfVariable;
    KeyedMap<QString, QVector<int>> recordsByType; ///< by file and record type
    KeyedMap<QString, QVector<int>> recordsBySegment;
    QVector<QVector<int>> recordsOfFile;
    KeyedMap<QString, int> keys; ///< number of record groups that have a key
};

} // namespace vanlayout::ddi

#endif
