#include "write/RecodePlan_p.h"

#include "compare/ConcordWording_p.h"
#include "write/Codes_p.h"
#include "write/ConcordTexts_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

QString keyOf(const QString &level, const QString &record, const QString &item)
{
    return level + QChar::Null + record + QChar::Null + item;
}

void addItems(KeyedMap<QString, const Item *> &index, const QString &level, const QString &record,
              const QVector<Item> &items)
{
    for (const Item &item : items)
        index.emplace(keyOf(level, record, item.name), &item);
}

KeyedMap<QString, const Item *> itemsOf(const Layout &layout)
{
    KeyedMap<QString, const Item *> index;
    for (const Level &level : layout.levels) {
        addItems(index, level.name, QStringLiteral("(ids)"), level.ids);
        for (const Record &record : level.records)
            addItems(index, level.name, record.name, record.items);
    }
    return index;
}

bool isRange(const ConcordCode &code)
{
    return !code.to.isEmpty() && code.to != code.from;
}

// A text that recodeflow would not take for a code.
bool isReserved(const QString &text)
{
    static const QString signs = QStringLiteral("[](),:");
    return text.trimmed().isEmpty() || text == QLatin1String("else") || text == QLatin1String("copy")
        || std::any_of(text.begin(), text.end(), [](QChar unit) { return signs.contains(unit); });
}

} // namespace

void CategoryCodes::add(const QString &code)
{
    used.insert(code);
    largest = std::max(largest, code.toLongLong());
}

QString CategoryCodes::free(const QString &code)
{
    bool isNumber = false;
    code.toLongLong(&isNumber);
    QString found;
    int suffix = 2;
    do {
        found = isNumber ? QString::number(largest + 1) : code + QLatin1Char('_') + QString::number(suffix++);
    } while (used.find(found) != used.end());
    add(found);
    return found;
}

RecodePlan::RecodePlan(const Concordance &source, const QVector<Layout> &layouts, const QStringList &databaseNames)
    : concordance(source)
    , databases(databaseNames)
{
    items.reserve(size_t(layouts.size()));
    for (const Layout &layout : layouts)
        items.push_back(itemsOf(layout));
}

RecodeVariable RecodePlan::next(int variable)
{
    RecodeVariable planned;
    planned.variable = &concordance.variables.at(variable);
    for (int round = 0; round < planned.variable->cells.size(); ++round) {
        if (planned.variable->cells.at(round))
            planned.rounds.append(round);
    }
    const Codes codes = codesOf(variable);
    planned.isCategorical = isCategorical(planned, codes);
    CategoryCodes ends;
    for (const ConcordCode *code : codes)
        ends.add(startOf(*planned.variable, *code));
    for (const ConcordCode *code : codes)
        addRules(planned, *code, ends);
    addOtherValues(planned, codes);
    KeyedSet<QString> categories;
    for (const RecodeRule &rule : qAsConst(planned.rules)) {
        if (rule.kind == RecodeKind::Category)
            categories.insert(rule.end);
    }
    planned.categories = int(categories.size());
    return planned;
}

RecodePlan::Codes RecodePlan::codesOf(int variable)
{
    Codes codes;
    for (; nextCode < concordance.codes.size() && concordance.codes.at(nextCode).variable == variable; ++nextCode)
        codes.append(&concordance.codes.at(nextCode));
    return codes;
}

// An item that the layouts do not have is a number without codes.
const Item *RecodePlan::itemIn(const ConcordVariable &variable, int round) const
{
    static const Item unknown;
    if (size_t(round) >= items.size())
        return &unknown;
    const ConcordCell &cell = *variable.cells.at(round);
    const auto &index = items[size_t(round)];
    const auto found = index.find(keyOf(cell.level, cell.record, cell.item));
    return found == index.end() ? &unknown : found->second;
}

bool RecodePlan::isNumeric(const RecodeVariable &planned) const
{
    return std::all_of(planned.rounds.begin(), planned.rounds.end(),
                       [&](int round) { return itemIn(*planned.variable, round)->isNumeric(); });
}

RecodeKind RecodePlan::kindOf(const ConcordVariable &variable, const ConcordCode &code, int round) const
{
    Value value;
    value.special = code.special;
    if (code.special == Special::NotApplicable)
        return RecodeKind::NotApplicable;
    return isMissing(*itemIn(variable, round), value, { code.from, code.to }) ? RecodeKind::Missing
                                                                              : RecodeKind::Category;
}

// Empty for a code that recodeflow cannot read: blanks, an extended missing value, a range of texts.
QString RecodePlan::startOf(const ConcordVariable &variable, const ConcordCode &code) const
{
    const auto hasLabel = [](const std::optional<QString> &label) { return label.has_value(); };
    const int first = int(std::find_if(code.cells.begin(), code.cells.end(), hasLabel) - code.cells.begin());
    if (first == code.cells.size())
        return QString();
    const Item &item = *itemIn(variable, first);
    if (!item.isNumeric()) {
        const QString text = cellOf(item, code.from);
        return isRange(code) || isReserved(text) ? QString() : text;
    }
    QString from = QString::fromLatin1(decimalNumberOf(code.from).spelling);
    if (!isRange(code))
        return from;
    const QString to = QString::fromLatin1(decimalNumberOf(code.to).spelling);
    return from.isEmpty() || to.isEmpty() ? QString()
                                          : QLatin1Char('[') + from + QLatin1Char(',') + to + QLatin1Char(']');
}

bool RecodePlan::isCategorical(const RecodeVariable &planned, const Codes &codes) const
{
    if (!isNumeric(planned))
        return true;
    bool hasCodes = false;
    for (const ConcordCode *code : codes) {
        for (const int round : planned.rounds) {
            if (!code->cells.at(round) || kindOf(*planned.variable, *code, round) != RecodeKind::Category)
                continue;
            if (isRange(*code))
                return false;
            hasCodes = true;
        }
    }
    return hasCodes;
}

QVector<QVector<int>> RecodePlan::roundsByMeaning(const ConcordCode &code) const
{
    QVector<QVector<int>> groups;
    for (int round = 0; round < code.cells.size(); ++round) {
        if (!code.cells.at(round))
            continue;
        const auto isOfGroup = [&](const QVector<int> &group) {
            return code.change != CodeChange::Meaning
                || wordingChange(*code.cells.at(group.constLast()), *code.cells.at(round)) != CodeChange::Meaning;
        };
        const int found = int(std::find_if(groups.begin(), groups.end(), isOfGroup) - groups.begin());
        if (found == groups.size())
            groups.append(QVector<int>{ round });
        else
            groups[found].append(round);
    }
    return groups;
}

void RecodePlan::addRules(RecodeVariable &planned, const ConcordCode &code, CategoryCodes &ends) const
{
    const QString start = startOf(*planned.variable, code);
    if (start.isEmpty())
        return;
    const QString note = noteOn(code);
    const QVector<QVector<int>> groups = roundsByMeaning(code);
    for (int i = 0; i < groups.size(); ++i) {
        const QString end = i > 0 && planned.isCategorical ? ends.free(start) : start;
        // A value may be missing in some of the rounds only.
        for (const int round : groups.at(i)) {
            RecodeKind kind = kindOf(*planned.variable, code, round);
            if (kind == RecodeKind::Category && !planned.isCategorical)
                kind = RecodeKind::Copy;
            const bool isNew = round == groups.at(i).constFirst() || planned.rules.constLast().kind != kind;
            if (isNew)
                planned.rules.append({ {}, start, kind, end, QString(), note });
            planned.rules.last().rounds.append(round);
            planned.rules.last().label = *code.cells.at(round);
        }
    }
}

// Values without a rule are missing where the codes of the item are all that it can have; else they are copied.
void RecodePlan::addOtherValues(RecodeVariable &planned, const Codes &codes) const
{
    RecodeRule missing = { {}, QStringLiteral("else"), RecodeKind::Missing, {}, QStringLiteral("missing"), {} };
    RecodeRule copied = { {}, QStringLiteral("else"), RecodeKind::Copy, {}, {}, {} };
    for (const int round : qAsConst(planned.rounds)) {
        const bool hasCodes = std::any_of(codes.begin(), codes.end(), [&](const ConcordCode *code) {
            return code->cells.at(round) && kindOf(*planned.variable, *code, round) == RecodeKind::Category;
        });
        const bool isListed = hasCodes && isClosed(*itemIn(*planned.variable, round));
        (isListed ? missing : copied).rounds.append(round);
    }
    QStringList unread;
    for (const ConcordCode *code : codes) {
        if (startOf(*planned.variable, *code).isEmpty())
            unread.append(describeCode(*code));
    }
    for (RecodeRule *rule : { &copied, &missing }) {
        if (!unread.isEmpty())
            rule->note
                = QLatin1String("includes codes that recodeflow cannot read: ") + unread.join(QLatin1String(", "));
        if (!rule->rounds.isEmpty())
            planned.rules.append(*rule);
    }
}

// The labels of a code whose meaning or wording changed, with the rounds that have them.
QString RecodePlan::noteOn(const ConcordCode &code) const
{
    if (code.change != CodeChange::Meaning && code.change != CodeChange::Wording)
        return QString();
    QStringList labels;
    QVector<QStringList> databasesOf;
    for (int round = 0; round < code.cells.size(); ++round) {
        if (!code.cells.at(round))
            continue;
        int index = int(labels.indexOf(*code.cells.at(round)));
        if (index < 0) {
            index = int(labels.size());
            labels.append(*code.cells.at(round));
            databasesOf.append(QStringList());
        }
        databasesOf[index].append(databases.at(round));
    }
    QStringList texts;
    for (int i = 0; i < labels.size(); ++i)
        texts.append(QLatin1Char('"') + labels.at(i) + QLatin1String("\" in ")
                     + databasesOf.at(i).join(QLatin1String(", ")));
    const bool isOther = code.change == CodeChange::Meaning;
    return QLatin1String(isOther ? "meaning changed, check recEnd: " : "wording changed: ")
        + texts.join(QLatin1String("; "));
}

} // namespace vanlayout
