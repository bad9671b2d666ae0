#ifndef LAYOUT_WRITE_RECODEPLAN_P_H
#define LAYOUT_WRITE_RECODEPLAN_P_H

#include "compare/Concord.h"
#include "util/KeyedHash_p.h"

#include <QStringList>
#include <QVector>

#include <vector>

namespace vanlayout
{

/// The result for the values that a rule selects.
enum class RecodeKind {
    Category,      ///< a code of the result
    Copy,          ///< the value itself
    Missing,       ///< `NA::b`
    NotApplicable, ///< `NA::a`
};

/// A rule that recodes values of a variable in some of the rounds.
struct RecodeRule {
    QVector<int> rounds;
    QString start; ///< a code, an interval such as `[1,5]`, or `else`
    RecodeKind kind = RecodeKind::Category;
    QString end;   ///< the code of a category
    QString label; ///< in the last of the rounds
    QString note;
};

/// The rules of a variable.
struct RecodeVariable {
    const ConcordVariable *variable = nullptr;
    QVector<int> rounds; ///< those that have the variable
    bool isCategorical = false;
    int categories = 0; ///< number of different categories
    QVector<RecodeRule> rules;
};

/// The codes of the categories of a variable.
class CategoryCodes
{
public:
    void add(const QString &code);
    /// A code that no category has, and that is added: the number after the largest one, or, for a text, the text
    /// followed by a number.
    QString free(const QString &code);

private:
    KeyedSet<QString> used;
    qint64 largest = 0;
};

/// Makes the rules that give all rounds of a concordance the same codes.
class RecodePlan
{
public:
    /// \a layouts are those of the rounds; both arguments must outlive this object.
    RecodePlan(const Concordance &source, const QVector<Layout> &layouts, const QStringList &databaseNames);

    /// The rules of a variable. To be called for each variable in order, because its codes follow those of the previous
    /// ones.
    RecodeVariable next(int variable);

private:
    using Codes = QVector<const ConcordCode *>;

    Codes codesOf(int variable);
    const Item *itemIn(const ConcordVariable &variable, int round) const;
    bool isNumeric(const RecodeVariable &planned) const;
    RecodeKind kindOf(const ConcordVariable &variable, const ConcordCode &code, int round) const;
    QString startOf(const ConcordVariable &variable, const ConcordCode &code) const;
    bool isCategorical(const RecodeVariable &planned, const Codes &codes) const;
    void addRules(RecodeVariable &planned, const ConcordCode &code, CategoryCodes &ends) const;
    void addOtherValues(RecodeVariable &planned, const Codes &codes) const;
    QString noteOn(const ConcordCode &code) const;
    QVector<QVector<int>> roundsByMeaning(const ConcordCode &code) const;

    const Concordance &concordance;
    const QStringList &databases;
    std::vector<KeyedMap<QString, const Item *>> items; // by round, by level, record and name
    int nextCode = 0;
};

} // namespace vanlayout

#endif
