#include "check/LintFindings_p.h"
#include "check/ReservedWords_p.h"
#include "load/PlanNames_p.h"
#include "load/Targets_p.h"
#include "util/KeyedHash_p.h"

#include <algorithm>
#include <iterator>

namespace vanlayout
{

namespace
{

// Words of the CSPro language that cannot be names.
constexpr const char *csproWords[] = {
    "alias",     "and",     "array",    "ask",    "break",    "by",       "case",    "config",  "crosstab", "do",
    "else",      "elseif",  "end",      "enddo",  "endfor",   "endif",    "enter",   "exit",    "export",   "file",
    "for",       "freq",    "function", "global", "group",    "hashmap",  "if",      "image",   "in",       "inc",
    "killfocus", "level",   "list",     "map",    "missing",  "move",     "next",    "noinput", "not",      "notappl",
    "numeric",   "onfocus", "or",       "pff",    "postcalc", "postproc", "preproc", "proc",    "recode",   "record",
    "reenter",   "refused", "relation", "repeat", "report",   "set",      "skip",    "stop",    "string",   "tally",
    "then",      "to",      "universe", "until",  "valueset", "when",     "where",   "while",   "write",
};

// Words that no database accepts as the name of a column without quotes.
constexpr const char *sqlWords[] = {
    "all",        "and",        "as",      "between",      "by",      "case",      "cast",  "check",    "column",
    "constraint", "create",     "cross",   "current_date", "default", "delete",    "desc",  "distinct", "drop",
    "else",       "end",        "except",  "exists",       "for",     "foreign",   "from",  "full",     "grant",
    "group",      "having",     "in",      "inner",        "insert",  "intersect", "into",  "is",       "join",
    "left",       "like",       "natural", "not",          "null",    "on",        "or",    "order",    "outer",
    "primary",    "references", "right",   "select",       "set",     "some",      "table", "then",     "to",
    "union",      "unique",     "update",  "user",         "using",   "values",    "when",  "where",    "with",
};

template <size_t count> bool isWord(const char *const (&words)[count], const QString &name)
{
    return std::any_of(std::begin(words), std::end(words),
                       [&](const char *word) { return name.compare(QLatin1String(word), Qt::CaseInsensitive) == 0; });
}

bool isLetter(QChar character)
{
    return (character >= QLatin1Char('A') && character <= QLatin1Char('Z'))
        || (character >= QLatin1Char('a') && character <= QLatin1Char('z'));
}

bool isInName(QChar character)
{
    return isLetter(character) || (character >= QLatin1Char('0') && character <= QLatin1Char('9'))
        || character == QLatin1Char('_');
}

// An absent name is another finding.
bool isValidInCSPro(const QString &name)
{
    return name.isEmpty()
        || (isLetter(name.at(0)) && !name.endsWith(QLatin1Char('_'))
            && std::all_of(name.begin(), name.end(), isInName));
}

} // namespace

bool isCSProWord(const QString &name)
{
    return isWord(csproWords, name);
}

namespace
{

/// The names of a dictionary, which share one name space.
class NameCheck
{
public:
    explicit NameCheck(LintFindings &list)
        : findings(list)
    {
    }

    template <typename Element> void check(const Element &element, const ElementAddress &address)
    {
        check(element.name, address);
        for (const QString &alias : element.aliases)
            check(alias, address);
    }

private:
    void check(const QString &name, const ElementAddress &address)
    {
        if (name.isEmpty())
            return;
        if (!isValidInCSPro(name))
            findings.add(
                LintRule::InvalidName, address,
                QStringLiteral("CSPro does not accept the name \"%1\"; use letters, digits and underscores, with "
                               "a letter first and no underscore last")
                    .arg(inMessage(name)));
        if (isCSProWord(name))
            findings.add(LintRule::ReservedName, address,
                         QStringLiteral("%1 is a word of the CSPro language; rename the element").arg(inMessage(name)));
        if (!names.insert(name.toUpper()).second)
            findings.add(LintRule::DuplicateName, address,
                         QStringLiteral("another element of the dictionary is named %1; rename one of them")
                             .arg(inMessage(name)));
    }

    LintFindings &findings;
    KeyedSet<QString> names;
};

void lintDictionaryNames(const Layout &layout, LintFindings &findings)
{
    NameCheck names(findings);
    names.check(layout, ElementAddress());
    forEachItemList(layout, [&](const QVector<Item> & /*items*/, const ElementAddress &address, const Record *record) {
        ElementAddress level;
        level.level = address.level;
        if (record)
            names.check(*record, address);
        else
            names.check(layout.levels.at(address.level), level);
    });
    forEachItem(layout, [&](const LintItem &place) {
        names.check(place.item, place.address);
        ElementAddress address = place.address;
        for (address.valueSet = 0; address.valueSet < place.item.valueSets.size(); ++address.valueSet)
            names.check(place.item.valueSets.at(address.valueSet), address);
    });
    ElementAddress address;
    for (address.relation = 0; address.relation < layout.relations.size(); ++address.relation)
        names.check(layout.relations.at(address.relation), address);
}

// The codes of languages are names in upper case, each of which occurs once.
void lintLanguages(const Layout &layout, LintFindings &findings)
{
    KeyedSet<QString> codes;
    for (const Language &language : layout.languages) {
        if (language.name.isEmpty() || !isValidInCSPro(language.name))
            findings.add(LintRule::InvalidName, ElementAddress(),
                         QStringLiteral("CSPro does not accept the language code \"%1\"; use letters, digits and "
                                        "underscores, with a letter first")
                             .arg(inMessage(language.name)));
        if (!codes.insert(language.name.toUpper()).second)
            findings.add(LintRule::RepeatedKey, ElementAddress(),
                         QStringLiteral("the language %1 is declared more than once; remove one of them")
                             .arg(inMessage(language.name)));
    }
}

// In other files a name is unique in its record. Stata distinguishes capital and small letters.
void lintVariableNames(const Layout &layout, LintFindings &findings)
{
    forEachItemList(layout, [&](const QVector<Item> &items, const ElementAddress &address, const Record * /*record*/) {
        KeyedSet<QString> names;
        forEachItem(items, address, [&](const LintItem &place) {
            if (!place.item.name.isEmpty() && !names.insert(place.item.name).second)
                findings.add(
                    LintRule::DuplicateName, place.address,
                    QStringLiteral("another variable is named %1; rename one of them").arg(inMessage(place.item.name)));
        });
    });
}

const TargetRules &rulesOf(LoadTarget target)
{
    return targetRules().at(int(target));
}

// The name that `load` gives an item in a program; another one if the program does not accept the name.
QString nameIn(const TargetRules &rules, const QString &name)
{
    return PlanNames(rules, PlanNames::Columns).give(name);
}

/// Checks the names of items against the rules of other programs, which are those of `load`.
class ProgramCheck
{
public:
    ProgramCheck(const Layout &layout, LintFindings &list)
        : findings(list)
        , isForSpss(layout.format != Format::Spss && layout.format != Format::SpssPortable)
        , isForStata(layout.format != Format::Stata)
    {
    }

    void check(const LintItem &place)
    {
        const QString &name = place.item.name;
        if (name.isEmpty())
            return;
        if (isForSpss)
            check(place, rulesOf(LoadTarget::Spss), LintRule::SpssName, "SPSS");
        if (isForStata)
            check(place, rulesOf(LoadTarget::Stata), LintRule::StataName, "Stata");
        const QString inSql = nameIn(rulesOf(LoadTarget::Postgresql), name);
        const bool isPlain = std::all_of(name.begin(), name.end(), isInName)
            && (isLetter(name.at(0)) || name.at(0) == QLatin1Char('_'));
        if (inSql.compare(name, Qt::CaseInsensitive) != 0 || nameIn(rulesOf(LoadTarget::Sqlite), name) != name)
            findings.add(LintRule::SqlName, place.address,
                         QStringLiteral("a database does not accept the name %1; vanlayout load names it %2")
                             .arg(inMessage(name), inMessage(inSql)));
        else if (!isPlain || isWord(sqlWords, name))
            findings.add(LintRule::SqlName, place.address,
                         QStringLiteral("SQL only accepts the name %1 in quotes; rename the item, or quote it")
                             .arg(inMessage(name)));
    }

private:
    void check(const LintItem &place, const TargetRules &rules, LintRule rule, const char *program)
    {
        const QString given = nameIn(rules, place.item.name);
        if (given == place.item.name)
            return;
        // Letters other than A to Z are only accepted by newer versions.
        const bool isAscii = std::all_of(place.item.name.begin(), place.item.name.end(),
                                         [](QChar character) { return character.unicode() <= 0x7F; });
        findings.add(rule, place.address,
                     QStringLiteral("%1 the name %2; rename the item, or use the name %3 there")
                         .arg(isAscii ? QStringLiteral("%1 does not accept").arg(QLatin1String(program))
                                      : QStringLiteral("not every version of %1 accepts").arg(QLatin1String(program)),
                              inMessage(place.item.name), inMessage(given)));
    }

    LintFindings &findings;
    bool isForSpss;
    bool isForStata;
};

} // namespace

void lintNames(const Layout &layout, LintFindings &findings)
{
    if (isDictionary(layout)) {
        lintDictionaryNames(layout, findings);
        lintLanguages(layout, findings);
    } else {
        lintVariableNames(layout, findings);
    }
    ProgramCheck programs(layout, findings);
    forEachItem(layout, [&](const LintItem &place) { programs.check(place); });
}

} // namespace vanlayout
