#include "cspro/CSProModel_p.h"

#include "cspro/ListAccess_p.h"
#include "cspro/ValueSet_p.h"
#include "import/Constants.h"

#include <QMessageBox>

#include <algorithm>
#include <utility>
#include <vector>

void TCSProRecord::addItem(TCSProItem * /*item*/) { }

TCSProItem::TCSProItem()
    : valueSets(new QList<TCSProValueSet *>)
{
}

TCSProItem::~TCSProItem()
{
    delete valueSets; // only the list: the value sets stay alive
}

int TCSProItem::getValueSetsCount()
{
    valueSetsCount = cspro::sizeOf(valueSets, ClassTag::CSProItem);
    return valueSetsCount;
}

bool TCSProItem::hasValueSets() const
{
    return valueSets && !valueSets->isEmpty();
}

TCSProValueSet *TCSProItem::getValueSet(int index) const
{
    return cspro::elementOf(valueSets, index, ClassTag::CSProItem);
}

void TCSProItem::addValueSet(TCSProValueSet *valueSet)
{
    if (valueSets && valueSets->isEmpty())
        valueSets->append(valueSet);
}

CSProDictionary::CSProDictionary()
    : commonRecord(new TCSProRecord)
    , records(new QList<TCSProRecord *>)
    , items(new QList<TCSProItem *>)
    , currentRecord(commonRecord)
{
    commonRecord->name = QStringLiteral("Common");
    commonRecord->recordType = QStringLiteral("_COMMON_");
}

CSProDictionary::~CSProDictionary() = default;

TCSProItem *CSProDictionary::getItem(int index) const
{
    return cspro::elementOf(items, index, ClassTag::CSPro, "TCSPro::getItem");
}

int CSProDictionary::getItemsCount() const
{
    return cspro::sizeOf(items, ClassTag::CSPro, "TCSPro::getItemsCount");
}

TCSProRecord *CSProDictionary::getRecord(int index) const
{
    return cspro::elementOf(records, index, ClassTag::CSPro, "TCSPro::getRecord");
}

int CSProDictionary::getRecordsCount()
{
    recordsCount = cspro::sizeOf(records, ClassTag::CSPro, "TCSPro::getRecordsCount");
    return recordsCount;
}

bool CSProDictionary::hasRoom(qint64 itemsToCome, qint64 nameCharactersToCome)
{
    nameCharacters += nameCharactersToCome;
    return items->size() + itemsToCome <= maxItems && nameCharacters <= maxNameCharacters;
}

bool CSProDictionary::hasRoomForValues(qint64 occurrences, qint64 valuesOfEach)
{
    if (occurrences > 1)
        repeatedValues += occurrences * valuesOfEach;
    return repeatedValues <= maxRepeatedValues;
}

void cspro::freeContents(CSProDictionary &dictionary)
{
    const std::unique_ptr<QList<TCSProItem *>> items(std::exchange(dictionary.items, nullptr));
    const std::unique_ptr<QList<TCSProRecord *>> records(std::exchange(dictionary.records, nullptr));
    std::vector<TCSProValueSet *> sets; // the occurrences of an item share theirs
    if (items) {
        for (const TCSProItem *item : qAsConst(*items)) {
            if (item->hasValueSets())
                sets.push_back(item->getValueSet(0));
        }
        qDeleteAll(*items);
    }
    std::sort(sets.begin(), sets.end());
    sets.erase(std::unique(sets.begin(), sets.end()), sets.end());
    std::for_each(sets.cbegin(), sets.cend(), DropValueSet());
    if (records)
        qDeleteAll(*records);
    dictionary.recordMap.clear();
    dictionary.currentItem = nullptr;
    dictionary.currentRecord = nullptr;
    delete std::exchange(dictionary.commonRecord, nullptr);
}
