#include "check/LintFindings_p.h"
#include "check/RecordLengths_p.h"
#include "util/KeyedHash_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

int recordCountOf(const Layout &layout)
{
    int count = 0;
    for (const Level &level : layout.levels)
        count += level.records.size();
    return count;
}

// Calls `visit` with each record and its address.
template <typename Visit> void forEachRecord(const Layout &layout, Visit visit)
{
    forEachItemList(layout, [&](const QVector<Item> & /*items*/, const ElementAddress &address, const Record *record) {
        if (record)
            visit(*record, address);
    });
}

void lintRecordTypes(const Layout &layout, int width, LintFindings &findings)
{
    KeyedMap<QString, QString> nameByType;
    forEachRecord(layout, [&](const Record &record, const ElementAddress &address) {
        const int length = record.recordType.size();
        if (length != width)
            findings.add(
                LintRule::RecordTypeWidth, address,
                QStringLiteral("the record type '%1' has %2 characters, but its columns are %3 wide; write one of "
                               "this width")
                    .arg(inMessage(record.recordType), QString::number(length), QString::number(width)));
        if (isDictionary(layout) && layout.recordType->start == 1 && record.recordType.startsWith(QLatin1Char('~')))
            findings.add(LintRule::ReservedRecordType, address,
                         QStringLiteral("the record type '%1' begins with ~ in column 1, which CSPro does not allow; "
                                        "write another one")
                             .arg(inMessage(record.recordType)));
        const auto [known, isFirst] = nameByType.emplace(record.recordType, record.name);
        if (!isFirst)
            findings.add(LintRule::DuplicateRecordType, address,
                         QStringLiteral("the record type '%1' is also that of the record %2; give each record its own")
                             .arg(inMessage(record.recordType), inMessage(known->second)));
    });
}

// The statement of the length of a record.
QString lengthKey(const Layout &layout)
{
    return layout.format == Format::Ddi ? QStringLiteral("logRecL") : QStringLiteral("RecordLen");
}

void lintLength(const Layout &layout, const RecordLengths &lengths, const Record &record, const ElementAddress &address,
                LintFindings &findings)
{
    if (!record.length || !RecordLengths::isKnown(record))
        return;
    const int last = lengths.of(record);
    bool areItemsWithin = true;
    if (*record.length > last && isDictionary(layout)) // records of other files are often padded
        findings.add(LintRule::RecordLength, address,
                     QStringLiteral("RecordLen is %1, but the last column is %2; write RecordLen=%2")
                         .arg(*record.length)
                         .arg(last));
    for (int index = 0; index < record.items.size(); ++index) {
        const Item &item = record.items.at(index);
        const qint64 end = lastColumnOf(item);
        ElementAddress place = address;
        place.item = index;
        if (item.isSubitem || end <= *record.length)
            continue;
        areItemsWithin = false;
        findings.add(LintRule::ItemOutsideRecord, place,
                     QStringLiteral("the item ends in column %1, but the record has %2; write %3=%4")
                         .arg(end)
                         .arg(*record.length)
                         .arg(lengthKey(layout))
                         .arg(last));
    }
    if (areItemsWithin && *record.length < last)
        findings.add(LintRule::ItemOutsideRecord, address,
                     QStringLiteral("the id items or the record type end in column %1, but the record has %2; write "
                                    "%3=%1")
                         .arg(QString::number(last), QString::number(*record.length), lengthKey(layout)));
}

} // namespace

void lintRecords(const Layout &layout, LintFindings &findings)
{
    const int width = layout.recordType ? layout.recordType->length : 0;
    if (width > 0)
        lintRecordTypes(layout, width, findings);
    else if (isDictionary(layout) && recordCountOf(layout) > 1)
        findings.add(
            LintRule::MissingRecordType, ElementAddress(),
            QStringLiteral("the dictionary has %1 records, but no columns for the record type; set its start and "
                           "length, and a type for each record")
                .arg(recordCountOf(layout)));
    for (int level = 0; level < layout.levels.size(); ++level) {
        ElementAddress address;
        address.level = level;
        if (isDictionary(layout) && layout.levels.at(level).records.isEmpty()
            && !layout.levels.at(level).name.isEmpty())
            findings.add(LintRule::LevelWithoutRecord, address,
                         QStringLiteral("the level has no record; add one, or remove the level"));
    }
    const RecordLengths lengths(layout);
    forEachRecord(layout, [&](const Record &record, const ElementAddress &address) {
        lintLength(layout, lengths, record, address, findings);
    });
}

} // namespace vanlayout
