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

// A range or a list of valid codes, or a blank, usually has no label.
bool needsLabel(const Value &value)
{
    return value.ranges.size() == 1 && isSingle(value.ranges.constFirst())
        && !value.ranges.constFirst().from.trimmed().isEmpty();
}

/// The values of a set that lack something.
struct LackingValues {
    int count = 0;
    int first = -1; ///< index of the first of them

    void add(int index)
    {
        first = count == 0 ? index : first;
        ++count;
    }
};

QString withoutBlanks(const Labels &labels)
{
    return labels.primary().trimmed();
}

// The first code of a value, which stands for the others.
QString codeOf(const Value &value)
{
    if (value.ranges.isEmpty())
        return QStringLiteral("without a code");
    const QString code = describeRanges({ value.ranges.constFirst() }).trimmed();
    return code.isEmpty() ? QStringLiteral("of blanks") : code;
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
        LackingValues unlabelled;
        LackingValues untranslated;
        KeyedMap<QString, int> labels;
        for (int index = 0; index < set.values.size(); ++index) {
            const Value &value = set.values.at(index);
            const QString label = withoutBlanks(value.labels);
            const bool isUnlabelled = isWithoutText(value.labels);
            if (isUnlabelled && needsLabel(value))
                unlabelled.add(index);
            else if (!isUnlabelled && !missingLanguages(value.labels).isEmpty())
                untranslated.add(index);
            if (label.isEmpty())
                continue;
            const auto [first, isNew] = labels.emplace(label, index);
            if (!isNew)
                findings.add(LintRule::DuplicateLabel, valueAddress(address, index),
                             QStringLiteral("the label \"%1\" is also that of the value %2; give each code its own")
                                 .arg(inMessage(label), inMessage(codeOf(set.values.at(first->second)))));
        }
        report(LintRule::MissingValueLabel, unlabelled, set, address, "no label");
        report(LintRule::MissingTranslation, untranslated, set, address, "no label in one of the languages");
    }

    void report(LintRule rule, const LackingValues &values, const ValueSet &set, const ElementAddress &address,
                const char *what)
    {
        if (values.count == 0)
            return;
        const QString first = inMessage(codeOf(set.values.at(values.first)));
        findings.add(rule, values.count == 1 ? valueAddress(address, values.first) : address,
                     values.count == 1 ? QStringLiteral("the value %1 has %2; write it").arg(first, QLatin1String(what))
                                       : QStringLiteral("%1 of %2 values have %3, such as %4; write them")
                                             .arg(QString::number(values.count), QString::number(set.values.size()),
                                                  QLatin1String(what), first));
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
