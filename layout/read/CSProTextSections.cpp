#include "read/CSProTextReader_p.h"

#include "read/CSProCommon_p.h"

#include <algorithm>
#include <utility>

namespace vanlayout
{

using namespace csprotext;

namespace
{

// Calls \a visit with each label within the elements.
template <typename Visit> void visitLabels(QVector<OccurrenceLabel> &labels, Visit visit)
{
    for (OccurrenceLabel &label : labels)
        visit(label.labels);
}

template <typename Visit> void visitLabels(ValueSet &set, Visit visit)
{
    visit(set.labels);
    for (Value &value : set.values)
        visit(value.labels);
}

template <typename Visit> void visitLabels(QVector<Item> &items, Visit visit)
{
    for (Item &item : items) {
        visit(item.labels);
        visitLabels(item.occurrenceLabels, visit);
        for (ValueSet &set : item.valueSets)
            visitLabels(set, visit);
    }
}

template <typename Visit> void visitLabels(Level &level, Visit visit)
{
    visit(level.labels);
    visitLabels(level.ids, visit);
    for (Record &record : level.records) {
        visit(record.labels);
        visitLabels(record.occurrenceLabels, visit);
        visitLabels(record.items, visit);
    }
}

// Appends an empty entry to a list and returns it.
template <typename Element> Element &addedTo(QVector<Element> &list)
{
    list.append(Element());
    return list.last();
}

} // namespace

// clang-format off
const std::vector<CSProTextReader::Section> &CSProTextReader::sections()
{
    using Reader = CSProTextReader;
    static const std::vector<Section> rows = {
        { "[Item]",       itemKeys(),       &Reader::beginItem,       &Reader::endItem,       &Reader::pathOfItem },
        { "[ValueSet]",   valueSetKeys(),   &Reader::beginValueSet,   &Reader::endValueSet,   &Reader::pathOfValueSet },
        { "[Record]",     recordKeys(),     &Reader::beginRecord,     &Reader::endRecord,     &Reader::pathOfRecord },
        { "[IdItems]",    noKeys(),         &Reader::beginIdItems,    &Reader::endNothing,    &Reader::pathOfIds },
        { "[Level]",      levelKeys(),      &Reader::beginLevel,      &Reader::endLevel,      &Reader::pathOfLevel },
        { "[Dictionary]", dictionaryKeys(), &Reader::beginDictionary, &Reader::endDictionary, &Reader::pathOfFile },
        { "[Languages]",  noKeys(),         &Reader::beginLanguages,  &Reader::endLanguages,  &Reader::pathOfFile },
        { "[Relation]",   relationKeys(),   &Reader::beginRelation,   &Reader::endRelation,   &Reader::pathOfRelation },
        { "[NoEdit]",     noKeys(),         &Reader::beginNoEdit,     &Reader::endNothing,    &Reader::pathOfFile },
    };
    return rows;
}

// The section of a value, which is begun by a key and not by a name in brackets.
const CSProTextReader::Section &CSProTextReader::valueSection()
{
    using Reader = CSProTextReader;
    static const Section row = { "", valueKeys(), nullptr, &Reader::endValue, &Reader::pathOfValue };
    return row;
}
// clang-format on

const CSProTextReader::Section *CSProTextReader::findSection(std::string_view name)
{
    const auto found = std::find_if(sections().begin(), sections().end(),
                                    [name](const Section &row) { return isSameKey(row.name, name); });
    return found != sections().end() ? &*found : nullptr;
}

void CSProTextReader::beginSection(const Statement &statement)
{
    leaveSection();
    if (firstSectionLine == 0) {
        firstSection = shown(statement.key);
        firstSectionLine = statement.line;
    }
    const Section *known = findSection(statement.key);
    enter(known, statement.line);
    if (!known || !(this->*known->begin)())
        keepSection(statement, known);
    else if (!statement.value.empty())
        keepTextAfterSection(statement);
}

void CSProTextReader::enter(const Section *next, int line)
{
    section = next;
    sectionLine = line;
    stated.assign(next ? next->keys.size() : 0, Statement());
}

// Ends a section, or the section of a value within it.
void CSProTextReader::leave()
{
    const int problem = std::exchange(firstProblem, layout.problems.size());
    const int extra = std::exchange(firstExtra, layout.extras.size());
    if (!section)
        return;
    (this->*section->end)();
    nameFindings(problem, extra);
    firstProblem = layout.problems.size();
    firstExtra = layout.extras.size();
}

void CSProTextReader::leaveSection()
{
    leave();
    if (values.empty())
        return;
    set->values.reserve(int(values.size()));
    for (Value &value : values)
        set->values.append(std::move(value));
    values.clear();
}

void CSProTextReader::keepSection(const Statement &statement, const Section *known)
{
    section = nullptr;
    keep(textOf(statement.key), statement);
    const QString problem = known ? QStringLiteral("is not allowed here") : QStringLiteral("is unknown");
    warn(known ? "misplaced-section" : "unknown-section",
         QStringLiteral("the section %1 %2; its lines are kept unchanged").arg(shown(statement.key), problem),
         statement.line);
}

void CSProTextReader::keepTextAfterSection(const Statement &statement)
{
    keep(textOf(statement.key), statement);
    warn("text-after-section",
         QStringLiteral("%1 follows the name of the section; write it on a separate line").arg(shown(statement.value)),
         statement.line);
}

void CSProTextReader::nameFindings(int problem, int extra)
{
    if (problem == layout.problems.size() && extra == layout.extras.size())
        return;
    const QString path = (this->*section->path)();
    std::for_each(layout.problems.begin() + problem, layout.problems.end(), [&](Problem &entry) { entry.path = path; });
    std::for_each(layout.extras.begin() + extra, layout.extras.end(), [&](Extra &entry) { entry.path = path; });
}

template <typename Element> void CSProTextReader::setNamed(Element &element)
{
    named = { &element.name, &element.labels, &element.note, &element.aliases, nullptr };
}

// Records before the first level are put into a level without a name.
void CSProTextReader::requireLevel()
{
    if (level)
        return;
    beginLevel();
    warn("no-level-yet",
         QStringLiteral("there is no [Level] before this section; it was put into a level without a name"),
         sectionLine);
}

bool CSProTextReader::beginNoEdit()
{
    layout.editable = false;
    return true;
}

bool CSProTextReader::beginDictionary()
{
    setNamed(layout);
    if (hasDictionary)
        warn("repeated-section",
             QStringLiteral("[Dictionary] occurs more than once; its parts are read as one section"), sectionLine);
    else if (level)
        warn("dictionary-after-level", QStringLiteral("[Dictionary] comes after [Level]; move it to the beginning"),
             sectionLine);
    if (hasDictionary)
        stated = dictionaryStatements;
    if (elementLines && !hasDictionary)
        elementLines->dictionary = sectionLine;
    hasDictionary = true;
    return true;
}

bool CSProTextReader::beginLanguages()
{
    if (!areLanguagesRead && level)
        warn("languages-after-level", QStringLiteral("[Languages] comes after [Level]; move it before the first one"),
             sectionLine);
    return !std::exchange(areLanguagesRead, true);
}

bool CSProTextReader::beginLevel()
{
    level = &addedTo(layout.levels);
    levelLines.push_back(sectionLine);
    noteLevelLine();
    setNamed(*level);
    return beginIdItems();
}

// Items that directly follow a level are also ids.
bool CSProTextReader::beginIdItems()
{
    requireLevel();
    record = nullptr;
    items = &level->ids;
    hasHolder = false;
    return true;
}

bool CSProTextReader::beginRecord()
{
    requireLevel();
    record = &addedTo(level->records);
    noteRecordLine();
    items = &record->items;
    hasHolder = false;
    setNamed(*record);
    named.occurrenceLabels = &record->occurrenceLabels;
    return true;
}

bool CSProTextReader::beginItem()
{
    requireLevel();
    item = &addedTo(*items);
    dateFormat = Statement();
    itemLevel = layout.levels.size() - 1;
    itemRecord = record ? level->records.size() - 1 : -1;
    noteItemLine();
    setNamed(*item);
    named.occurrenceLabels = &item->occurrenceLabels;
    return true;
}

bool CSProTextReader::beginValueSet()
{
    if (!item)
        return false;
    set = &addedTo(item->valueSets);
    noteValueSetLine();
    setNamed(*set);
    return true;
}

bool CSProTextReader::beginRelation()
{
    relation = &addedTo(layout.relations);
    if (elementLines)
        elementLines->relations.push_back(sectionLine);
    named = { &relation->name, nullptr, nullptr, &relation->aliases, nullptr };
    hasPrimaryLink = false;
    hasSecondary = false;
    hasSecondaryLink = false;
    return true;
}

void CSProTextReader::endNothing() { }

void CSProTextReader::endDictionary()
{
    dictionaryStatements = stated;
    require(!named.name->isEmpty(), "dictionary-without-name", QStringLiteral("the dictionary has no Name"));
    require(layout.relativePositions.has_value(), "no-positions",
            QStringLiteral("the dictionary has no Positions; CSPro 8 refuses it without Positions=Relative or "
                           "Positions=Absolute"));
    if (layout.recordType == RecordTypeColumns())
        layout.recordType.reset();
}

// The label of the dictionary comes before its languages, so its parts are assigned to them here.
void CSProTextReader::endLanguages()
{
    labels.clear();
    const auto setLanguages = [this](Labels &label) {
        for (int index = 0; index < std::min(label.parts.size(), layout.languages.size()); ++index)
            label.parts[index].language = layout.languages.at(index).name;
    };
    setLanguages(layout.labels);
    for (Level &other : layout.levels)
        visitLabels(other, setLanguages);
}

void CSProTextReader::endLevel()
{
    finishNote();
    require(!named.name->isEmpty(), "level-without-name",
            QStringLiteral("the level has no Name; CSPro omits it and its records"));
}

void CSProTextReader::endRecord()
{
    finishNote();
    require(!named.name->isEmpty(), "record-without-name", QStringLiteral("the record has no Name; CSPro omits it"));
    checkOccurrenceLabels(record->maximum);
}

void CSProTextReader::endItem()
{
    finishNote();
    require(!named.name->isEmpty(), "item-without-name", QStringLiteral("the item has no Name; CSPro omits it"));
    require(item->start >= 1, "item-without-start", QStringLiteral("the item has no Start; its columns are unknown"));
    require(item->length >= 1, "item-without-length", QStringLiteral("the item has no Len; CSPro omits it"));
    item->zeroFill = item->zeroFill && item->isNumeric();
    item->decimalMark = item->decimalMark && item->isNumeric();
    checkOccurrenceLabels(item->occurrences);
    finishCapture();
    finishSubitem();
}

void CSProTextReader::endValueSet()
{
    finishNote();
    require(!named.name->isEmpty(), "value-set-without-name",
            QStringLiteral("the value set has no Name; CSPro omits it"));
}

void CSProTextReader::endValue()
{
    finishNote();
    const Value &value = values.back();
    const bool isBlank = value.special == Special::NotApplicable || value.special == Special::Default;
    if (value.ranges.isEmpty())
        inform("value-without-code", QStringLiteral("the value has no code"), sectionLine);
    else if (item->isNumeric() && !areCodesNumbers && !isBlank)
        inform("code-without-number", QStringLiteral("the item is numeric, but a code of the value is not a number"),
               sectionLine);
}

void CSProTextReader::endRelation()
{
    require(!named.name->isEmpty(), "relation-without-name", QStringLiteral("the relation has no Name"));
    require(!relation->primary.isEmpty(), "relation-without-primary", QStringLiteral("the relation has no Primary"));
    require(!relation->links.isEmpty(), "relation-without-secondary", QStringLiteral("the relation has no Secondary"));
}

QString CSProTextReader::pathOfFile() const
{
    return QString();
}

QString CSProTextReader::pathOfLevel() const
{
    return cspro::nameInPath(level->name);
}

QString CSProTextReader::pathOfIds() const
{
    return cspro::childPath(pathOfLevel(), cspro::idsName());
}

QString CSProTextReader::pathOfRecord() const
{
    return cspro::childPath(pathOfLevel(), record->name);
}

QString CSProTextReader::pathOfItem() const
{
    const Level &itsLevel = qAsConst(layout).levels.at(itemLevel);
    const QString records = itemRecord < 0 ? cspro::idsName() : itsLevel.records.at(itemRecord).name;
    return cspro::childPath(cspro::childPath(cspro::nameInPath(itsLevel.name), records), item->name);
}

QString CSProTextReader::pathOfValueSet() const
{
    return cspro::childPath(pathOfItem(), set->name);
}

QString CSProTextReader::pathOfValue() const
{
    return cspro::valuePath(pathOfValueSet(), int(values.size()));
}

QString CSProTextReader::pathOfRelation() const
{
    return cspro::relationPath(relation->name);
}

} // namespace vanlayout
