#include "cspro/ValueSet_p.h"

#include "cspro/ListAccess_p.h"
#include "import/Constants.h"
#include "util/Numbers_p.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace
{

// The code of a new value, before a reader sets it. All values share this text.
const QString unsetCode = QStringLiteral("\u0003");

bool isDecimal(const QString &code)
{
    const auto isDigit = [](QChar character) { return character.isDigit(); };
    const auto *point = std::find_if_not(code.cbegin(), code.cend(), isDigit);
    return point != code.cend() && *point == QLatin1Char('.') && std::all_of(point + 1, code.cend(), isDigit);
}

bool isInteger(const QString &code)
{
    bool ok = false;
    numbers::toInt(code, &ok);
    return ok;
}

} // namespace

TValueSetItem::TValueSetItem()
    : code(unsetCode)
{
}

TValueSetItem::~TValueSetItem() = default;

TCSProValueSet::TCSProValueSet()
    : items(new QList<TValueSetItem *>)
{
}

TCSProValueSet::~TCSProValueSet()
{
    delete items; // only the list: the values stay alive
}

void TCSProValueSet::addItem(TValueSetItem *item)
{
    items->append(item);
}

int TCSProValueSet::Count() const
{
    return cspro::sizeOf(items, ClassTag::CSProValueSet);
}

TValueSetItem *TCSProValueSet::getItem(int index) const
{
    return cspro::elementOf(items, index, ClassTag::CSProValueSet);
}

const QList<TValueSetItem *> &TCSProValueSet::values() const
{
    static const QList<TValueSetItem *> none;
    return items ? *items : none;
}

bool TCSProValueSet::checkCodes(int mode) const
{
    if (!isNumeric)
        return true;
    const auto passes = [mode](const TValueSetItem *item) {
        if (!item)
            return true;
        switch (mode) {
        case modeNoDecimal:
            return !isDecimal(item->code);
        case modeAllIntegers:
            return isInteger(item->code);
        default:
            return true;
        }
    };
    return std::all_of(values().cbegin(), values().cend(), passes);
}

void TCSProValueSet::convertToInteger()
{
    if (!isNumeric)
        return;
    for (TValueSetItem *item : values()) {
        if (item && !isInteger(item->code))
            item->code = QStringLiteral("0");
    }
}

void TCSProValueSet::sortItems()
{
    if (isNumeric)
        sortByNumber();
    else
        std::stable_sort(items->begin(), items->end(), CompareCodes);
}

// Orders as CompareNumericCodes does, with each code converted once.
void TCSProValueSet::sortByNumber()
{
    struct Entry {
        int number;
        bool isInteger;
        TValueSetItem *item;
    };
    std::vector<Entry> entries;
    entries.reserve(size_t(items->size()));
    for (TValueSetItem *item : qAsConst(*items)) {
        Entry entry = { 0, false, item };
        if (item)
            entry.number = numbers::toInt(item->code, &entry.isInteger);
        entries.push_back(entry);
    }
    const auto before
        = [](const Entry &a, const Entry &b) { return !a.isInteger || !b.isInteger || a.number < b.number; };
    if (std::is_sorted(entries.cbegin(), entries.cend(), before))
        return;
    std::stable_sort(entries.begin(), entries.end(), before);
    std::transform(entries.cbegin(), entries.cend(), items->begin(), [](const Entry &entry) { return entry.item; });
}

void DropValueSet::operator()(TCSProValueSet *set) const
{
    qDeleteAll(set->values());
    delete set;
}

bool CompareCodes(const TValueSetItem *a, const TValueSetItem *b)
{
    if (!a || !b)
        throw std::invalid_argument("Null pointer passed to CompareCodes");
    return a->code < b->code;
}

bool CompareNumericCodes(const TValueSetItem *a, const TValueSetItem *b)
{
    if (!a || !b || !isInteger(a->code) || !isInteger(b->code))
        return true;
    return numbers::toDouble(a->code) < numbers::toDouble(b->code);
}

bool IsDecimalCode(QString code)
{
    return isDecimal(code);
}

bool IsIntegerCode(QString code)
{
    return isInteger(code);
}
