#include "compare/DiffScope_p.h"

#include "util/Numbers_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

// Line numbers are ignored.
bool haveSameExtras(const Layout &before, const Layout &after)
{
    return std::equal(before.extras.begin(), before.extras.end(), after.extras.begin(), after.extras.end(),
                      [](const Extra &one, const Extra &other) {
                          return one.path == other.path && one.key == other.key && one.value == other.value;
                      });
}

/// A statement about the file and not about the survey, or about the data and not about its layout.
struct Fact {
    const char *what;
    bool isOfData;
    bool (*differs)(const Layout &before, const Layout &after);
};

// clang-format off
constexpr Fact facts[] = {
    { "container",           false, [](const Layout &b, const Layout &a) { return b.container != a.container; } },
    { "format version",      false, [](const Layout &b, const Layout &a) { return b.formatVersion != a.formatVersion; } },
    { "encoding",            false, [](const Layout &b, const Layout &a) { return b.encoding != a.encoding; } },
    { "relative positions",  false, [](const Layout &b, const Layout &a) { return b.relativePositions != a.relativePositions; } },
    { "defaults of new items", false, [](const Layout &b, const Layout &a) { return b.decimalMark != a.decimalMark || b.zeroFill != a.zeroFill; } },
    { "editable",            false, [](const Layout &b, const Layout &a) { return b.editable != a.editable; } },
    { "security",            false, [](const Layout &b, const Layout &a) { return b.security != a.security; } },
    { "read optimization",   false, [](const Layout &b, const Layout &a) { return b.readOptimization != a.readOptimization; } },
    { "binary items enabled", false, [](const Layout &b, const Layout &a) { return b.enableBinaryItems != a.enableBinaryItems; } },
    { "value set images",    false, [](const Layout &b, const Layout &a) { return b.valueSetImages != a.valueSetImages; } },
    { "further statements",  false, [](const Layout &b, const Layout &a) { return !haveSameExtras(b, a); } },
    { "number of rows",      true,  [](const Layout &b, const Layout &a) { return b.rows != a.rows; } },
    { "creation date",       true,  [](const Layout &b, const Layout &a) { return b.created != a.created; } },
    { "modification date",   true,  [](const Layout &b, const Layout &a) { return b.modified != a.modified; } },
};
// clang-format on

const char ofFile[] = "it belongs to the file, not to the survey";
const char ofData[] = "it belongs to the data, not to its layout";

// Whether a code can have a label in a Stata file: a whole number of 32 bits, or a missing value such as `.a`.
bool isStataCode(const QString &code)
{
    bool isNumber = false;
    numbers::toInt(code, &isNumber);
    return isNumber || (code.startsWith(QLatin1Char('.')) && code.size() == 2);
}

bool isExtendedMissing(const QString &code)
{
    return code.startsWith(QLatin1Char('.')) && (code.size() == 1 || !code.at(1).isDigit());
}

bool hasRecordLength(const Layout &layout)
{
    return std::any_of(layout.levels.begin(), layout.levels.end(), [](const Level &level) {
        return std::any_of(level.records.begin(), level.records.end(),
                           [](const Record &record) { return record.length.has_value(); });
    });
}

bool statesAllOccurrences(const Layout &layout)
{
    return std::all_of(layout.levels.begin(), layout.levels.end(), [&](const Level &level) {
        return std::all_of(level.records.begin(), level.records.end(),
                           [&](const Record &record) { return statesOccurrences(layout, record); });
    });
}

} // namespace

DiffScope::DiffScope(const Layout &beforeLayout, const Layout &afterLayout)
    : before(beforeLayout)
    , after(afterLayout)
    , hasKnownValueSets(knowsValueSets(before) && knowsValueSets(after))
{
}

bool DiffScope::knowsValueSets(const Layout &layout)
{
    const auto hasSets = [](const Item &item) { return !item.valueSets.isEmpty(); };
    return !isSas(layout.format) || std::any_of(layout.levels.begin(), layout.levels.end(), [&](const Level &level) {
        return std::any_of(level.records.begin(), level.records.end(), [&](const Record &record) {
            return std::any_of(record.items.begin(), record.items.end(), hasSets);
        });
    });
}

bool DiffScope::isOneFamily() const
{
    return isOneFormat() || areDictionaries() || (isSpss(before.format) && isSpss(after.format))
        || (isSas(before.format) && isSas(after.format));
}

int DiffScope::maxItemLabel() const
{
    constexpr int ofXport = 40;
    constexpr int ofStata = 80;
    if (isOneFormat())
        return 0;
    if (isAny(Format::SasXport))
        return ofXport;
    return isAny(Format::Stata) ? ofStata : 0;
}

bool DiffScope::holdsCode(CodeType type, const Range &range) const
{
    if (isOneFamily())
        return true;
    if (!range.to.isEmpty())
        return false;
    if (isAny(Format::Stata) && (type == CodeType::Text || !isStataCode(range.from)))
        return false;
    const bool holdsMissing = !isDictionary(before.format) && !isDictionary(after.format) && !isSpss(before.format)
        && !isSpss(after.format);
    return holdsMissing || type == CodeType::Text || !isExtendedMissing(range.from);
}

void DiffScope::addFacts(QVector<NotCompared> &list) const
{
    for (const Fact &fact : facts) {
        if ((isOneFamily() || fact.isOfData) && fact.differs(before, after))
            list.append({ QLatin1String(fact.what), QLatin1String(fact.isOfData ? ofData : ofFile) });
    }
}

QVector<NotCompared> DiffScope::notCompared() const
{
    QVector<NotCompared> list;
    const auto add = [&](const char *what, const char *why) {
        list.append({ QLatin1String(what), QLatin1String(why) });
    };
    const char one[] = "one of the formats does not have it";
    if (!areDictionaries() && !areStatistical()) {
        for (const char *what : { "levels", "records", "columns", "occurrences", "ranges of codes", "special values",
                                  "value sets after the first", "languages after the first", "notes", "aliases",
                                  "capture", "relations", "storage", "user-missing values", "weight variable" })
            add(what, one);
    } else if (areDictionaries()) {
        if (!isOneFormat() && (hasRecordLength(before) || hasRecordLength(after)))
            add("record length", one);
        if (!statesAllOccurrences(before) || !statesAllOccurrences(after))
            add("number of records in a case", "one of the files does not state it");
        if (areOfTwoDictionaryFormats()) {
            for (const char *what : { "names of languages", "capture", "text colors of values", "storage", "formats",
                                      "user-missing values" })
                add(what, one);
        }
    } else if (!isOneFamily()) {
        for (const char *what :
             { "storage", "user-missing values", "alignment", "display width", "formats other than fixed numbers",
               "names of value sets", "labels of codes that one cannot hold", "notes", "weight variable" })
            add(what, one);
    }
    if (!comparesValueSets())
        add("value labels", "a SAS data set without its catalog has none");
    if (!areDictionaries() && isOneFamily() && !isOneFormat()) {
        for (const char *what : { "alignment", "display width" })
            add(what, one);
    }
    addFacts(list);
    return list;
}

} // namespace vanlayout
