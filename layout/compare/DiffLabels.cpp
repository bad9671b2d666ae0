#include "compare/DiffLabels_p.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace vanlayout
{

namespace
{

/// Calls \a visit for all labels of a layout.
template <typename Visit> class LabelWalk
{
public:
    explicit LabelWalk(Visit function)
        : visit(std::move(function))
    {
    }

    void walk(const Layout &layout)
    {
        visit(layout.labels);
        for (const Level &level : layout.levels) {
            visit(level.labels);
            for (const Item &item : level.ids)
                walk(item);
            for (const Record &record : level.records)
                walk(record);
        }
    }

private:
    void walk(const Record &record)
    {
        visit(record.labels);
        walk(record.occurrenceLabels);
        for (const Item &item : record.items)
            walk(item);
    }
    void walk(const QVector<OccurrenceLabel> &labels)
    {
        for (const OccurrenceLabel &label : labels)
            visit(label.labels);
    }
    void walk(const Item &item)
    {
        visit(item.labels);
        walk(item.occurrenceLabels);
        for (const ValueSet &set : item.valueSets) {
            visit(set.labels);
            // A list that several sets share is visited once.
            if (!set.values.isEmpty() && seen.insert(set.values.constData()).second) {
                for (const Value &value : set.values)
                    visit(value.labels);
            }
        }
    }

    Visit visit;
    std::unordered_set<const Value *> seen;
};

QString folded(const QString &code)
{
    return code.toCaseFolded();
}

QString numbered(int part)
{
    return QLatin1Char('#') + QString::number(part + 1);
}

bool isNumbered(const QString &code)
{
    return code.startsWith(QLatin1Char('#'));
}

} // namespace

LayoutLanguages::LayoutLanguages(const Layout &layout)
{
    for (const Language &language : layout.languages)
        add(language.name);
    LabelWalk([this](const Labels &labels) { addUsed(labels); }).walk(layout);
    if (list.isEmpty())
        add(QString());
}

void LayoutLanguages::add(const QString &code)
{
    if (places.emplace(folded(code), list.size()).second)
        list.append(code);
}

void LayoutLanguages::addUsed(const Labels &labels)
{
    for (int part = 0; part < labels.parts.size(); ++part) {
        const QString &code = labels.parts.at(part).language;
        if (!code.isEmpty()) {
            if (part >= list.size() || list.at(part) != code)
                add(code);
        } else if (part > 0 && part >= list.size()) {
            if (list.isEmpty())
                add(QString());
            add(numbered(part));
        }
    }
}

int LayoutLanguages::indexOf(const QString &code) const
{
    const auto found = places.find(folded(code));
    return found != places.end() ? found->second : -1;
}

int LayoutLanguages::indexOf(const Labels &labels, int part) const
{
    const QString &code = labels.parts.at(part).language;
    if (part < list.size() && (code.isEmpty() ? !isNumbered(list.at(part)) : list.at(part) == code))
        return part;
    if (!code.isEmpty())
        return indexOf(code);
    return part == 0 ? 0 : indexOf(numbered(part));
}

LabelComparison::LabelComparison(const Layout &before, const Layout &after, const QString &language,
                                 Strictness howStrict)
    : languages{ LayoutLanguages(before), LayoutLanguages(after) }
    , strictness(howStrict)
{
    for (int side : { Before, After })
        sharedOf[side].fill(-1, languages[side].codes().size());
    shareLanguages(language);
}

void LabelComparison::share(const QString &code, int beforeIndex, int afterIndex)
{
    sharedOf[Before][beforeIndex] = shared.size();
    sharedOf[After][afterIndex] = shared.size();
    shared.append({ code, beforeIndex, afterIndex });
}

void LabelComparison::shareLanguages(const QString &language)
{
    const QStringList &ofBefore = languages[Before].codes();
    const QStringList &ofAfter = languages[After].codes();
    const bool hasSeveral = ofBefore.size() > 1 || ofAfter.size() > 1;
    const auto isWanted = [&](const QString &code) { return language.isEmpty() || folded(code) == folded(language); };
    QVector<bool> isInBoth(ofAfter.size(), false);
    for (int i = 0; i < ofBefore.size(); ++i) {
        const QString &code = ofBefore.at(i);
        int other = languages[After].indexOf(code);
        // The labels of a layout whose first language has no name are in the primary language of the other layout.
        if (other < 0 && i == 0 && (code.isEmpty() || ofAfter.constFirst().isEmpty()))
            other = 0;
        if (other < 0 && !isNumbered(code))
            onlyBefore.append(code);
        if (other < 0)
            continue;
        isInBoth[other] = true;
        const QString &name = code.isEmpty() ? ofAfter.at(other) : code;
        if (isWanted(name) || (code.isEmpty() && ofAfter.at(other).isEmpty()))
            share(hasSeveral ? name : QString(), i, other);
    }
    for (int i = 0; i < ofAfter.size(); ++i) {
        if (!isInBoth.at(i) && !isNumbered(ofAfter.at(i)))
            onlyAfter.append(ofAfter.at(i));
    }
}

QStringList LabelComparison::sharedBefore() const
{
    QStringList codes;
    for (const Shared &language : shared)
        codes.append(languages[Before].codes().at(language.before));
    return codes;
}

QStringList LabelComparison::sharedAfter() const
{
    QVector<Shared> sorted = shared;
    std::sort(sorted.begin(), sorted.end(),
              [](const Shared &left, const Shared &right) { return left.after < right.after; });
    QStringList codes;
    for (const Shared &language : qAsConst(sorted))
        codes.append(languages[Before].codes().at(language.before));
    return codes;
}

bool LabelComparison::isSame(const QString &before, const QString &after, int longest) const
{
    if (before == after)
        return true;
    if (strictness == Strictness::Exact)
        return false;
    const QString one = before.simplified();
    const QString other = after.simplified();
    if (one == other)
        return true;
    const QString &shorter = one.size() < other.size() ? one : other;
    const QString &longer = one.size() < other.size() ? other : one;
    return longest > 0 && shorter.size() >= longest && longer.startsWith(shorter);
}

QVector<LabelComparison::Own> LabelComparison::ownTexts(const Labels &labels, Side side) const
{
    QVector<Own> texts;
    for (int part = 0; part < labels.parts.size(); ++part) {
        const QString &text = labels.parts.at(part).text;
        const int index = text.isEmpty() ? -1 : languages[side].indexOf(labels, part);
        if (index >= 0 && sharedOf[side].at(index) >= 0)
            texts.append({ sharedOf[side].at(index), &text });
    }
    std::stable_sort(texts.begin(), texts.end(),
                     [](const Own &left, const Own &right) { return left.shared < right.shared; });
    // The first text counts if a language occurs several times.
    texts.erase(std::unique(texts.begin(), texts.end(),
                            [](const Own &left, const Own &right) { return left.shared == right.shared; }),
                texts.end());
    return texts;
}

void LabelComparison::compare(const Labels &before, const Labels &after, int longest, const Differ &differ) const
{
    const bool haveOnePart = before.parts.size() <= 1 && after.parts.size() <= 1;
    if (shared.isEmpty() || (haveOnePart && before.primary() == after.primary()))
        return;
    const QVector<Own> ofBefore = ownTexts(before, Before);
    const QVector<Own> ofAfter = ownTexts(after, After);
    const QString firstBefore = before.primary();
    const QString firstAfter = after.primary();
    QVector<Own>::const_iterator one = ofBefore.begin();
    QVector<Own>::const_iterator other = ofAfter.begin();
    const int count = shared.size();
    // The first language is compared even if neither label has a text in it.
    for (int language = 0; language == 0 || one != ofBefore.end() || other != ofAfter.end();) {
        const bool hasBefore = one != ofBefore.end() && one->shared == language;
        const bool hasAfter = other != ofAfter.end() && other->shared == language;
        const QString &textBefore = hasBefore ? *one->text : firstBefore;
        const QString &textAfter = hasAfter ? *other->text : firstAfter;
        const bool isOwn = (hasBefore && textBefore != firstBefore) || (hasAfter && textAfter != firstAfter);
        if ((language == 0 || isOwn) && !isSame(textBefore, textAfter, longest))
            differ(shared.at(language).code, textBefore, textAfter);
        one += hasBefore ? 1 : 0;
        other += hasAfter ? 1 : 0;
        language
            = std::min(one != ofBefore.end() ? one->shared : count, other != ofAfter.end() ? other->shared : count);
    }
}

QString LabelComparison::text(const Labels &labels, Side side) const
{
    if (labels.parts.size() > 1 && !shared.isEmpty()) {
        const QVector<Own> texts = ownTexts(labels, side);
        if (!texts.isEmpty() && texts.constFirst().shared == 0)
            return *texts.constFirst().text;
    }
    return labels.primary();
}

QString LabelComparison::keyText(const Labels &labels, Side side) const
{
    if (shared.isEmpty())
        return QString();
    const QString label = text(labels, side);
    return strictness == Strictness::Lenient ? label.simplified() : label;
}

} // namespace vanlayout
