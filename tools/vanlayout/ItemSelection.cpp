#include "ItemSelection.h"

#include <algorithm>

using vanlayout::Item;
using vanlayout::Layout;
using vanlayout::Level;
using vanlayout::Record;

namespace
{

// True if a name matches a pattern with `*` and `?`. After a mismatch, the last `*` matches one more character.
bool matches(const QString &pattern, const QString &name)
{
    int p = 0;
    int n = 0;
    int star = -1;
    int afterStar = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern.at(p) == QLatin1Char('*')) {
            star = p++;
            afterStar = n;
        } else if (p < pattern.size() && (pattern.at(p) == QLatin1Char('?') || pattern.at(p) == name.at(n))) {
            ++p;
            ++n;
        } else if (star >= 0) {
            p = star + 1;
            n = ++afterStar;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern.at(p) == QLatin1Char('*'))
        ++p;
    return p == pattern.size();
}

} // namespace

ItemSelection::ItemSelection(const QStringList &names)
{
    for (const QString &name : names)
        patterns.push_back({ name, false });
}

void ItemSelection::reduce(Layout &layout)
{
    if (patterns.empty())
        return;
    for (Level &level : layout.levels) {
        reduce(level.ids);
        for (Record &record : level.records)
            reduce(record.items);
        QVector<Record> &records = level.records;
        records.erase(
            std::remove_if(records.begin(), records.end(), [](const Record &record) { return record.items.isEmpty(); }),
            records.end());
    }
}

QStringList ItemSelection::unmatched() const
{
    QStringList names;
    for (const Pattern &pattern : patterns) {
        if (!pattern.isMatched)
            names.append(pattern.name);
    }
    return names;
}

bool ItemSelection::isSelected(const QString &name)
{
    bool isFound = false;
    for (Pattern &pattern : patterns) {
        const bool isMatch = matches(pattern.name.toUpper(), name.toUpper());
        pattern.isMatched = pattern.isMatched || isMatch;
        isFound = isFound || isMatch;
    }
    return isFound;
}

void ItemSelection::reduce(QVector<Item> &items)
{
    items.erase(std::remove_if(items.begin(), items.end(), [&](const Item &item) { return !isSelected(item.name); }),
                items.end());
}
