#include "Diff.h"

#include "Layout.h"
#include "import/SourceField.h"
#include "util/KeyedHash_p.h"

#include <QPair>

#include <algorithm>

namespace
{

constexpr int nowhere = -1;

// clang-format off
const Property labelProperty         = {"label",         &TVpSourceField::label,         nullptr};
const Property typeProperty          = {"type",          &TVpSourceField::FieldType,     nullptr};
const Property lengthProperty        = {"length",        nullptr,                        &TVpSourceField::length};
const Property startProperty         = {"start",         nullptr,                        &TVpSourceField::start};
const Property decimalsProperty      = {"decimals",      nullptr,                        &TVpSourceField::decimals};
const Property minimumProperty       = {"minimum",       &TVpSourceField::minimum,       nullptr};
const Property maximumProperty       = {"maximum",       &TVpSourceField::maximum,       nullptr};
const Property notApplicableProperty = {"notApplicable", &TVpSourceField::notApplicable, nullptr};
const Property missingProperty       = {"missing",       &TVpSourceField::missingValue,  nullptr};
const Property groupProperty         = {"group",         &TVpSourceField::group,         nullptr};

const RecordTypeProperty recordTypeProperties[] = {
    {"recordTypeStart", &Records::recordTypeStart},
    {"recordTypeSize",  &Records::recordTypeSize},
};
// clang-format on

// What two variables must have in common to be taken for one. What a rule does not ask for stays empty.
struct Traits {
    QString group;
    QString name;
    QString label;
    QString valueLabels;
    int start = 0;
    int length = 0;
};

bool operator==(const Traits &one, const Traits &other)
{
    return one.start == other.start && one.length == other.length && one.group == other.group && one.name == other.name
        && one.label == other.label && one.valueLabels == other.valueLabels;
}

struct TraitsHash {
    size_t operator()(const Traits &traits) const
    {
        const KeyedHash hash;
        return hash({ hash(traits.group), hash(traits.name), hash(traits.label), hash(traits.valueLabels),
                      quint64(traits.start), quint64(traits.length) });
    }
};

bool hasGroups(const QList<TVpSourceField *> &fields)
{
    return std::any_of(fields.cbegin(), fields.cend(),
                       [](const TVpSourceField *field) { return !field->group.isEmpty(); });
}

/// Pairs the variables of two layouts, one rule after the other.
class Matching
{
public:
    Matching(const QList<TVpSourceField *> &oldList, const QList<TVpSourceField *> &newList)
        : oldFields(oldList)
        , newFields(newList)
        , hasPartner(oldList.size(), false)
        , partners(newList.size(), nowhere)
        , byGroup(hasGroups(oldList) && hasGroups(newList))
    {
    }

    // Which of several variables of one name is which goes by their order.
    void matchNames()
    {
        match([this](const TVpSourceField &field) { return named(field, true); }, true);
        match([this](const TVpSourceField &field) { return named(field, false); }, false);
    }

    void matchNamesInAnyCase()
    {
        const auto folded = [this](const TVpSourceField &field, bool inGroup) {
            Traits traits = named(field, inGroup);
            traits.name = traits.name.toCaseFolded();
            return traits;
        };
        match([&](const TVpSourceField &field) { return folded(field, true); }, false);
        match([&](const TVpSourceField &field) { return folded(field, false); }, false);
    }

    void matchOtherNames(bool byPosition)
    {
        match([&](const TVpSourceField &field) { return unnamed(field, byPosition, true); }, false);
        match([&](const TVpSourceField &field) { return unnamed(field, byPosition, false); }, false);
    }

    bool isRemoved(int oldIndex) const { return !hasPartner.at(oldIndex); }
    /// The old variable that the new one was, or null.
    const TVpSourceField *partnerOf(int newIndex) const { return oldFields.value(partners.at(newIndex)); }

private:
    struct Candidates {
        QVector<int> olds;
        QVector<int> news;
    };

    Traits named(const TVpSourceField &field, bool inGroup) const
    {
        Traits traits;
        if (byGroup && inGroup)
            traits.group = field.group;
        traits.name = field.fieldName;
        return traits;
    }

    // Nothing for what cannot be recognised: neither a place in a known group nor a label.
    std::optional<Traits> unnamed(const TVpSourceField &field, bool byPosition, bool inGroup) const
    {
        Traits traits;
        if (byGroup && inGroup)
            traits.group = field.group;
        traits.label = field.label;
        traits.valueLabels = field.valueLabels;
        if (byPosition) {
            traits.start = field.start;
            traits.length = field.length;
        }
        const bool hasPlace = traits.start > 0 && (inGroup || !byGroup);
        if (!hasPlace && traits.label.isEmpty())
            return std::nullopt;
        return traits;
    }

    // Pairs what has the same traits and no partner yet; several of each side in their order, or not at all.
    template <typename TraitsOf> void match(TraitsOf traitsOf, bool inOrder)
    {
        std::unordered_map<Traits, Candidates, TraitsHash> candidates;
        const auto gather = [&](const TVpSourceField &field, QVector<int> Candidates::*side, int index) {
            const std::optional<Traits> traits = traitsOf(field);
            if (traits)
                (candidates[*traits].*side).append(index);
        };
        for (int i = 0; i < newFields.size(); ++i) {
            if (partners.at(i) == nowhere)
                gather(*newFields.at(i), &Candidates::news, i);
        }
        if (candidates.empty())
            return;
        for (int i = 0; i < oldFields.size(); ++i) {
            if (!hasPartner.at(i))
                gather(*oldFields.at(i), &Candidates::olds, i);
        }
        for (const auto &[traits, alike] : candidates) {
            if (inOrder || (alike.olds.size() == 1 && alike.news.size() == 1))
                pair(alike);
        }
    }

    void pair(const Candidates &alike)
    {
        const int count = std::min(alike.olds.size(), alike.news.size());
        for (int i = 0; i < count; ++i) {
            hasPartner[alike.olds.at(i)] = true;
            partners[alike.news.at(i)] = alike.olds.at(i);
        }
    }

    const QList<TVpSourceField *> &oldFields;
    const QList<TVpSourceField *> &newFields;
    QVector<bool> hasPartner; // of each old variable
    QVector<int> partners;    // the place of each new variable among the old ones
    bool byGroup;
};

// A code, and how often it came before.
using Occurrence = QPair<QStringRef, int>;

struct OccurrenceHash {
    size_t operator()(const Occurrence &occurrence) const
    {
        const KeyedHash hash;
        return hash({ hash(occurrence.first), quint64(occurrence.second) });
    }
};

QVector<Occurrence> occurrencesOf(const QVector<ValueLabel> &labels)
{
    QVector<Occurrence> occurrences;
    occurrences.reserve(labels.size());
    KeyedMap<QStringRef, int> counts;
    for (const ValueLabel &label : labels)
        occurrences.append({ label.code, counts[label.code]++ });
    return occurrences;
}

QVector<ValueLabelChange> compareLabels(const QVector<ValueLabel> &oldLabels, const QVector<ValueLabel> &newLabels)
{
    QVector<ValueLabelChange> changes;
    const QVector<Occurrence> oldOccurrences = occurrencesOf(oldLabels);
    const QVector<Occurrence> newOccurrences = occurrencesOf(newLabels);
    std::unordered_map<Occurrence, QStringRef, OccurrenceHash> left; // of the new labels
    for (int i = 0; i < newLabels.size(); ++i)
        left.emplace(newOccurrences.at(i), newLabels.at(i).label);
    for (int i = 0; i < oldLabels.size(); ++i) {
        const ValueLabel &old = oldLabels.at(i);
        const auto found = left.find(oldOccurrences.at(i));
        if (found == left.end()) {
            changes.append({ old.code, old.label, std::nullopt });
            continue;
        }
        if (found->second != old.label)
            changes.append({ old.code, old.label, found->second });
        left.erase(found);
    }
    for (int i = 0; i < newLabels.size(); ++i) {
        if (left.count(newOccurrences.at(i)) > 0)
            changes.append({ newLabels.at(i).code, std::nullopt, newLabels.at(i).label });
    }
    return changes;
}

QVector<ValueLabelChange> compareValueLabels(const QString &oldText, const QString &newText)
{
    if (oldText == newText)
        return {};
    return compareLabels(cutValueLabels(oldText), cutValueLabels(newText));
}

QVector<ValueLabel> asLabels(const QVector<RecordType> &types)
{
    QVector<ValueLabel> labels;
    for (const RecordType &type : types)
        labels.append({ QStringRef(&type.name), QStringRef(&type.value) });
    return labels;
}

bool isSame(const Property &property, const TVpSourceField &one, const TVpSourceField &other)
{
    return property.text ? one.*property.text == other.*property.text : one.*property.number == other.*property.number;
}

VariableChange compareVariables(const TVpSourceField &oldField, const TVpSourceField &newField,
                                const QVector<const Property *> &properties)
{
    VariableChange change;
    change.oldField = &oldField;
    change.newField = &newField;
    for (const Property *property : properties) {
        if (!isSame(*property, oldField, newField))
            change.properties.append(property);
    }
    change.valueLabels = compareValueLabels(oldField.valueLabels, newField.valueLabels);
    return change;
}

} // namespace

const QVector<const Property *> &allProperties()
{
    static const QVector<const Property *> properties
        = { &labelProperty,   &typeProperty,    &lengthProperty,        &startProperty,   &decimalsProperty,
            &minimumProperty, &maximumProperty, &notApplicableProperty, &missingProperty, &groupProperty };
    return properties;
}

QVector<const Property *> comparableProperties(const std::string &oldType, const std::string &newType)
{
    if (oldType == newType)
        return allProperties();
    if (areRecordsComparable(oldType, newType))
        return { &labelProperty,   &typeProperty,    &lengthProperty, &startProperty,
                 &minimumProperty, &maximumProperty, &groupProperty };
    return { &labelProperty, &typeProperty };
}

LayoutDiff compareLayouts(const QList<TVpSourceField *> &oldFields, const QList<TVpSourceField *> &newFields,
                          const QVector<const Property *> &properties)
{
    Matching matching(oldFields, newFields);
    matching.matchNames();
    matching.matchNamesInAnyCase();
    matching.matchOtherNames(properties.contains(&startProperty) && properties.contains(&lengthProperty));

    LayoutDiff diff;
    for (int i = 0; i < oldFields.size(); ++i) {
        if (matching.isRemoved(i))
            diff.removed.append(oldFields.at(i));
    }
    for (int i = 0; i < newFields.size(); ++i) {
        const TVpSourceField *newField = newFields.at(i);
        const TVpSourceField *oldField = matching.partnerOf(i);
        if (!oldField) {
            diff.added.append(newField);
            continue;
        }
        const VariableChange change = compareVariables(*oldField, *newField, properties);
        if (oldField->fieldName != newField->fieldName)
            diff.renamed.append(change);
        else if (!change.properties.isEmpty() || !change.valueLabels.isEmpty())
            diff.changed.append(change);
    }
    return diff;
}

RecordsDiff compareRecords(const Records &oldRecords, const Records &newRecords)
{
    RecordsDiff diff;
    for (const RecordTypeProperty &property : recordTypeProperties) {
        if (oldRecords.*property.number != newRecords.*property.number)
            diff.properties.append(&property);
    }
    diff.records = compareLabels(asLabels(oldRecords.types), asLabels(newRecords.types));
    return diff;
}

bool areRecordsComparable(const std::string &oldType, const std::string &newType)
{
    const auto isCSPro = [](const std::string &type) { return type == "cspro" || type == "cspro8"; };
    return isCSPro(oldType) && isCSPro(newType);
}
