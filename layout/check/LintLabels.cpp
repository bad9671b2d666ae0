#include "check/LintFindings_p.h"
#include "check/LintSets_p.h"
#include "write/Codes_p.h"
#include "write/Wording_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr int maxLabel = 255;
constexpr int maxLanguages = 50; // that are checked; no dictionary has so many

bool isWithoutText(const Labels &labels)
{
    return std::all_of(labels.parts.begin(), labels.parts.end(),
                       [](const Label &part) { return part.text.trimmed().isEmpty(); });
}

// A range of valid numbers, or a blank field, usually has no label.
bool needsLabel(const Value &value)
{
    const bool isCode = value.ranges.isEmpty()
        || std::any_of(value.ranges.begin(), value.ranges.end(), [](const Range &range) { return isSingle(range); });
    return isCode && value.special != Special::NotApplicable;
}

QString withoutBlanks(const Labels &labels)
{
    return labels.primary().trimmed();
}

// The first code of a value, which stands for the others.
QString codeOf(const Value &value)
{
    return value.ranges.isEmpty() ? QStringLiteral("a value without a code")
                                  : describeRanges({ value.ranges.constFirst() });
}

/// Checks the labels of a layout in all its languages.
class LabelCheck
{
public:
    LabelCheck(const Layout &source, LintFindings &list)
        : layout(source)
        , findings(list)
        , sets(source)
    {
    }

    void check()
    {
        if (isDictionary(layout))
            checkElements();
        else
            forEachItem(layout,
                        [&](const LintItem &place) { checkElement(place.item.labels, place.address, "variable"); });
        forEachValueSet(layout, [&](const ValueSet &set, const Item &item, const ElementAddress &address) {
            if (sets.isNew(set, item))
                checkValues(set, address);
        });
    }

private:
    void checkElements()
    {
        checkElement(layout.labels, ElementAddress(), "dictionary");
        forEachItemList(layout, [&](const QVector<Item> &items, const ElementAddress &address, const Record *record) {
            ElementAddress level;
            level.level = address.level;
            if (record)
                checkElement(record->labels, address, "record");
            else if (!layout.levels.at(address.level).name.isEmpty())
                checkElement(layout.levels.at(address.level).labels, level, "level");
            forEachItem(items, address, [&](const LintItem &place) { checkItem(place); });
        });
    }
    void checkItem(const LintItem &place)
    {
        checkElement(place.item.labels, place.address, "item");
        ElementAddress address = place.address;
        for (address.valueSet = 0; address.valueSet < place.item.valueSets.size(); ++address.valueSet)
            checkElement(place.item.valueSets.at(address.valueSet).labels, address, "value set");
    }

    void checkElement(const Labels &labels, const ElementAddress &address, const char *kind)
    {
        if (isWithoutText(labels))
            findings.add(isDictionary(layout) ? LintRule::MissingLabel : LintRule::UnlabelledVariable, address,
                         QStringLiteral("the %1 has no label; write one").arg(QLatin1String(kind)));
        else
            checkTranslations(labels, address, kind);
        const bool isLong = std::any_of(labels.parts.begin(), labels.parts.end(),
                                        [](const Label &part) { return part.text.size() > maxLabel; });
        if (isLong && isDictionary(layout))
            findings.add(LintRule::LongLabel, address,
                         QStringLiteral("the label of the %1 has more than %2 characters; shorten it")
                             .arg(QLatin1String(kind))
                             .arg(maxLabel));
    }

    void checkTranslations(const Labels &labels, const ElementAddress &address, const char *kind)
    {
        const QStringList missing = missingLanguages(labels);
        if (!missing.isEmpty())
            findings.add(LintRule::MissingTranslation, address,
                         QStringLiteral("the %1 has no label in %2; add it")
                             .arg(QLatin1String(kind), missing.join(QStringLiteral(", "))));
    }

    // A part without a language is in the primary one.
    QStringList missingLanguages(const Labels &labels) const
    {
        QStringList missing;
        if (!layout.languages.isEmpty() && withoutBlanks(labels).isEmpty())
            missing.append(inMessage(layout.languages.constFirst().name));
        for (int index = 1; index < std::min(int(layout.languages.size()), maxLanguages); ++index) {
            const QString &name = layout.languages.at(index).name;
            const bool isThere = std::any_of(labels.parts.begin(), labels.parts.end(), [&](const Label &part) {
                return !part.text.isEmpty() && part.language.compare(name, Qt::CaseInsensitive) == 0;
            });
            if (!isThere)
                missing.append(inMessage(name));
        }
        missing.removeDuplicates();
        return missing;
    }

    // One finding for all values of a set: such sets are usual.
    void checkValues(const ValueSet &set, const ElementAddress &address)
    {
        int unlabelled = 0;
        int untranslated = 0;
        KeyedMap<QString, int> labels;
        for (int index = 0; index < set.values.size(); ++index) {
            const Value &value = set.values.at(index);
            const QString label = withoutBlanks(value.labels);
            const bool isUnlabelled = isWithoutText(value.labels);
            unlabelled += isUnlabelled && needsLabel(value) ? 1 : 0;
            untranslated += !isUnlabelled && !missingLanguages(value.labels).isEmpty() ? 1 : 0;
            if (label.isEmpty())
                continue;
            const auto [first, isNew] = labels.emplace(label, index);
            if (!isNew)
                findings.add(LintRule::DuplicateLabel, valueAddress(address, index),
                             QStringLiteral("the label \"%1\" is also that of %2; give each code its own")
                                 .arg(inMessage(label), inMessage(codeOf(set.values.at(first->second)))));
        }
        report(LintRule::MissingValueLabel, unlabelled, set, address, "no label; write it");
        report(LintRule::MissingTranslation, untranslated, set, address, "no label in one of the languages; add it");
    }

    void report(LintRule rule, int count, const ValueSet &set, const ElementAddress &address, const char *what)
    {
        if (count > 0)
            findings.add(rule, address,
                         QStringLiteral("%1 of %2 values %3 %4")
                             .arg(QString::number(count), QString::number(set.values.size()),
                                  count == 1 ? QStringLiteral("has") : QStringLiteral("have"), QLatin1String(what)));
    }

    const Layout &layout;
    LintFindings &findings;
    CheckedSets sets;
};

} // namespace

void lintLabels(const Layout &layout, LintFindings &findings)
{
    LabelCheck(layout, findings).check();
}

} // namespace vanlayout
