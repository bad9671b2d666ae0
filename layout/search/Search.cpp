#include "search/Search.h"

#include "search/SearchTerms_p.h"
#include "util/KeyedHash_p.h"

#include <algorithm>
#include <map>
#include <utility>

namespace vanlayout
{

namespace
{

/// The text of an item that has the most terms.
struct BestText {
    size_t count = 0;
    SearchPlace where = SearchPlace::Name;
    QString language;
    QString text;

    /// The first of several texts with the same number of terms is kept.
    void consider(size_t otherCount, SearchPlace place, const QString &ofLanguage, const QString &otherText)
    {
        if (otherCount > count)
            *this = { otherCount, place, ofLanguage, otherText };
    }
};

/// The values of a value set that were found, with their terms.
struct FoundValues {
    FoundTerms terms;
    BestText label;
    BestText note;
    QVector<SearchedValue> values;
    bool hasCode = false;
};

/// The search in one layout.
class LayoutSearch
{
public:
    LayoutSearch(const SearchTerms &searchTerms, bool isOneEnough, const QString &labelLanguage)
        : terms(searchTerms)
        , isAny(isOneEnough)
        , language(labelLanguage)
    {
    }

    SearchResult run(const Layout &layout)
    {
        for (const Level &level : layout.levels) {
            findItems(level.ids, level.name, QStringLiteral("(ids)"));
            for (const Record &record : level.records)
                findItems(record.items, level.name, record.name);
        }
        return std::move(result);
    }

private:
    void findItems(const QVector<Item> &items, const QString &level, const QString &record)
    {
        for (const Item &item : items) {
            found.clear();
            best = BestText();
            QVector<SearchedValue> values;
            findInTexts(item);
            findInValues(item, values);
            findInNotes(item);
            if (isHit())
                result.hits.append({ level, record, item.name, best.where, best.language, best.text,
                                     item.labels.in(language), values });
        }
    }
    bool isHit() const { return isAny ? !found.empty() : int(found.size()) == terms.count(); }

    void findInTexts(const Item &item)
    {
        findIn(item.name, SearchPlace::Name);
        for (const QString &alias : item.aliases)
            findIn(alias, SearchPlace::Name);
        findIn(item.labels);
        for (const OccurrenceLabel &label : item.occurrenceLabels)
            findIn(label.labels);
    }
    void findInNotes(const Item &item)
    {
        findIn(item.note, SearchPlace::Note);
        for (const ValueSet &set : item.valueSets) {
            findIn(set.note, SearchPlace::Note);
            if (const FoundValues *values = foundIn(set, !item.isNumeric()))
                best.consider(values->note.count, SearchPlace::Note, QString(), values->note.text);
        }
    }
    void findIn(const Labels &labels)
    {
        for (const Label &label : labels.parts)
            findIn(label.text, SearchPlace::Label, label.language);
    }
    void findIn(const QString &text, SearchPlace place, const QString &ofLanguage = QString())
    {
        const FoundTerms here = terms.wordsIn(text, place, result.unfinishedTexts);
        best.consider(here.size(), place, ofLanguage, text);
        unite(found, here);
    }

    void findInValues(const Item &item, QVector<SearchedValue> &values)
    {
        KeyedSet<QString> known;
        bool hasCode = false;
        for (const ValueSet &set : item.valueSets) {
            const FoundValues *const inSet = foundIn(set, !item.isNumeric());
            if (!inSet)
                continue;
            unite(found, inSet->terms);
            best.consider(inSet->label.count, SearchPlace::Value, inSet->label.language, inSet->label.text);
            hasCode = hasCode || inSet->hasCode;
            addValues(inSet->values, item.valueSets.size() > 1 ? &known : nullptr, values);
        }
        if (!hasCode)
            findInMissing(item, values);
    }
    // Several value sets of an item often have the same values.
    static void addValues(const QVector<SearchedValue> &more, KeyedSet<QString> *known, QVector<SearchedValue> &values)
    {
        if (!known) {
            values = more;
            return;
        }
        for (const SearchedValue &value : more) {
            if (known->insert(value.from + QChar() + value.to + QChar() + value.label).second)
                values.append(value);
        }
    }
    // Missing values have no label of their own.
    void findInMissing(const Item &item, QVector<SearchedValue> &values)
    {
        if (!terms.hasCodes())
            return;
        for (const Range &range : item.missing) {
            const FoundTerms here = terms.codesIn(range, !item.isNumeric());
            if (here.empty())
                continue;
            best.consider(here.size(), SearchPlace::Value, QString(), QString());
            unite(found, here);
            values.append({ range.from, range.to, QString() });
        }
    }

    // Items that share a list of values share what was found in it. Null if that is nothing.
    const FoundValues *foundIn(const ValueSet &set, bool areTexts)
    {
        if (set.values.isEmpty())
            return nullptr;
        const auto place = lists.emplace(std::make_pair(set.values.constData(), areTexts), FoundValues());
        FoundValues &values = place.first->second;
        if (place.second) {
            for (const Value &value : set.values)
                findInValue(value, areTexts, values);
        }
        return values.terms.empty() ? nullptr : &values;
    }
    void findInValue(const Value &value, bool areTexts, FoundValues &values)
    {
        BestText label;
        FoundTerms here = findInLabels(value.labels, label);
        const bool hasWord = !here.empty();
        QVector<Range> ranges = hasWord ? value.ranges : QVector<Range>();
        for (const Range &range : value.ranges) {
            const FoundTerms codes = terms.hasCodes() ? terms.codesIn(range, areTexts) : FoundTerms();
            values.hasCode = values.hasCode || !codes.empty();
            if (!hasWord && !codes.empty())
                ranges.append(range);
            unite(here, codes);
        }
        if (hasWord && ranges.isEmpty())
            ranges.append(Range());
        addValue(ranges, value.labels, label, values.values);
        if (!hasWord)
            label.text = value.labels.in(language);
        values.label.consider(here.size(), SearchPlace::Value, label.language, label.text);
        unite(values.terms, here);
        const FoundTerms inNote = terms.wordsIn(value.note, SearchPlace::Note, result.unfinishedTexts);
        values.note.consider(inNote.size(), SearchPlace::Note, QString(), value.note);
        unite(values.terms, inNote);
    }
    void addValue(const QVector<Range> &ranges, const Labels &labels, const BestText &label,
                  QVector<SearchedValue> &values) const
    {
        const QString shown = ranges.isEmpty() ? QString() : shownLabel(labels, label);
        for (const Range &range : ranges)
            values.append({ range.from, range.to, shown });
    }
    FoundTerms findInLabels(const Labels &labels, BestText &label)
    {
        FoundTerms all;
        for (const Label &part : labels.parts) {
            const FoundTerms here = terms.wordsIn(part.text, SearchPlace::Value, result.unfinishedTexts);
            label.consider(here.size(), SearchPlace::Value, part.language, part.text);
            unite(all, here);
        }
        return all;
    }
    // A label in another language is shown if only it was found.
    QString shownLabel(const Labels &labels, const BestText &label) const
    {
        const QString own = labels.in(language);
        int ignored = 0;
        const bool isOwn
            = label.count == 0 || own == label.text || !terms.wordsIn(own, SearchPlace::Value, ignored).empty();
        return isOwn ? own : label.text;
    }

    const SearchTerms &terms;
    const bool isAny;
    const QString &language;
    SearchResult result;
    FoundTerms found;                                            // in the current item
    BestText best;                                               // in the current item
    std::map<std::pair<const Value *, bool>, FoundValues> lists; // by list of values, and whether codes are texts
};

} // namespace

QString wordOf(SearchPlace place)
{
    switch (place) {
    case SearchPlace::Name:
        return QStringLiteral("name");
    case SearchPlace::Label:
        return QStringLiteral("label");
    case SearchPlace::Value:
        return QStringLiteral("value");
    case SearchPlace::Note:
        return QStringLiteral("note");
    }
    return QString();
}

Search::Search(const SearchOptions &options)
    : terms(std::make_unique<SearchTerms>(options))
    , isAny(options.isAny)
    , language(options.language)
{
}

Search::~Search() = default;

QString Search::problem() const
{
    return terms->problem();
}

SearchResult Search::hitsIn(const Layout &layout) const
{
    return problem().isEmpty() ? LayoutSearch(*terms, isAny, language).run(layout) : SearchResult();
}

} // namespace vanlayout
