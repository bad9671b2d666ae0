#include "convert/DictionaryIds_p.h"

#include "util/KeyedHash_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr int ambiguous = -1;

QString quoted(const QStringList &names)
{
    return QLatin1Char('"') + names.join(QLatin1String("\", \"")) + QLatin1Char('"');
}

/// The places of variables by name.
class Places
{
public:
    explicit Places(const QVector<Item> &variables)
    {
        for (int place = 0; place < variables.size(); ++place) {
            exact.emplace(variables.at(place).name, place);
            const auto [known, isNew] = inAnyCase.emplace(variables.at(place).name.toLower(), place);
            if (!isNew)
                known->second = ambiguous;
        }
    }

    /// The place of a variable; none if it does not exist, `ambiguous` if several differ from the name in case only.
    std::optional<int> of(const QString &name) const
    {
        const auto found = exact.find(name);
        if (found != exact.end())
            return found->second;
        const auto other = inAnyCase.find(name.toLower());
        return other != inAnyCase.end() ? std::optional<int>(other->second) : std::nullopt;
    }

private:
    KeyedMap<QString, int> exact;
    KeyedMap<QString, int> inAnyCase;
};

QString problemWithIdOf(const Record &record, int place)
{
    const Item &item = record.items.at(place);
    const bool hasSubitems = place + 1 < record.items.size() && record.items.at(place + 1).isSubitem;
    if (item.isSubitem || hasSubitems || item.occurrences > 1)
        return QStringLiteral("cannot have the id item \"%1\", which repeats, or is or has a subitem").arg(item.name);
    return QString();
}

// Removes a variable from a record and returns it; none if there is no such variable.
std::optional<Item> takeFrom(Record &record, const QString &name, QString &problem)
{
    const std::optional<int> place = Places(record.items).of(name);
    if (!place || *place == ambiguous)
        return std::nullopt;
    problem = problemWithIdOf(record, *place);
    return record.items.takeAt(*place);
}

QString moveId(Level &level, const QString &name)
{
    std::optional<Item> id;
    for (Record &record : level.records) {
        QString problem;
        const std::optional<Item> found = takeFrom(record, name, problem);
        if (!problem.isEmpty())
            return problem;
        const bool isSame = found && (!id || (id->start == found->start && id->length == found->length));
        if (!isSame)
            return QStringLiteral("has no variable \"%1\" in the same columns of all records, which --ids names")
                .arg(name);
        id = found;
    }
    level.ids.append(*id);
    return QString();
}

} // namespace

DictionaryIds findIds(const QVector<Item> &variables, const QStringList &names)
{
    const Places places(variables);
    DictionaryIds ids;
    QStringList unknown;
    for (const QString &name : names) {
        const std::optional<int> place = places.of(name);
        if (!place)
            unknown.append(name);
        else if (*place == ambiguous)
            ids.problem
                = QStringLiteral("has several variables \"%1\", which differ in case; --ids must name one exactly")
                      .arg(name);
        else if (ids.places.contains(*place))
            ids.problem
                = QStringLiteral("has one variable \"%1\", which --ids names twice").arg(variables.at(*place).name);
        else
            ids.places.append(*place);
    }
    if (names.isEmpty())
        ids.problem = QStringLiteral("has no id items, which a dictionary must have; name them with --ids");
    if (!unknown.isEmpty())
        ids.problem = QStringLiteral("has no variable %1, which --ids names").arg(quoted(unknown));
    return ids;
}

QString moveIds(Layout &layout, const QStringList &names)
{
    const bool hasIds = std::all_of(layout.levels.begin(), layout.levels.end(),
                                    [](const Level &level) { return !level.ids.isEmpty(); });
    if (hasIds)
        return names.isEmpty() ? QString() : QStringLiteral("has id items already; --ids is for files without");
    if (layout.levels.size() != 1)
        return QStringLiteral("has several levels, not all of which have id items");
    Level &level = layout.levels.first();
    const DictionaryIds ids = findIds(level.records.value(0).items, names);
    if (!ids.problem.isEmpty())
        return ids.problem;
    for (const QString &name : names) {
        QString problem = moveId(level, name);
        if (!problem.isEmpty())
            return problem;
    }
    return QString();
}

} // namespace vanlayout
