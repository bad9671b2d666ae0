#ifndef LAYOUT_COMPARE_CONCORD_H
#define LAYOUT_COMPARE_CONCORD_H

#include "model/Layout.h"
#include "vanlayout_export.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// The concordance of several rounds of a survey: which variables are the same in all of them, and which codes.
namespace vanlayout
{

/// A change of a variable from one round to the next one that has it.
enum class ConcordChange { Renamed, Moved, Type, Width, Decimals, Label, Values };

/// The change of a code over the rounds. Meaning precedes Removed and Added, and these precede the others: a code that
/// was added and later got another meaning has the change Meaning.
enum class CodeChange {
    None,     ///< the same label in all rounds
    Spelling, ///< case, blanks, accents, punctuation, plural, or a typing error
    Wording,  ///< the same meaning in other words
    Meaning,  ///< another meaning
    Added,    ///< absent in the first round that has the variable
    Removed,  ///< absent in a later round that has the variable
};

/// The words in the JSON form: "renamed", "moved", "type" ...; "none", "spelling", "wording" ...
VANLAYOUT_EXPORT QString wordOf(ConcordChange change);
VANLAYOUT_EXPORT QString wordOf(CodeChange change);

/// An item in one round.
struct VANLAYOUT_EXPORT ConcordCell {
    QString level;
    QString record; ///< `(ids)` for an id item
    QString item;
    QString label; ///< in the language of the concordance
    QVector<ConcordChange>
        changes; ///< since the nearest earlier round that has the variable; in the order of the enumeration
};

/// A variable: for each round its item, or none.
struct VANLAYOUT_EXPORT ConcordVariable {
    QVector<std::optional<ConcordCell>> cells; ///< one for each round
};

/// A code, or a range of codes, of a variable over the rounds.
struct VANLAYOUT_EXPORT ConcordCode {
    int variable = 0; ///< index in Concordance::variables
    QString from;
    QString to; ///< empty if it is one code
    Special special = Special::None;
    QVector<std::optional<QString>> cells; ///< the label in each round; none if the round does not have the code
    CodeChange change = CodeChange::None;
};

/// A decision that was not followed.
struct VANLAYOUT_EXPORT ConcordProblem {
    int decision = 0; ///< 0-based index in ConcordOptions::decisions
    QString message;  ///< the reason, as a sentence about the decision
};

/// The result of `concord`.
struct VANLAYOUT_EXPORT Concordance {
    QStringList rounds; ///< the file of each round
    QVector<ConcordVariable> variables;
    QVector<ConcordCode> codes;       ///< those of one variable follow each other, in the order of the variables
    QVector<ConcordProblem> problems; ///< decisions that were not followed, in their order
};

/// A decision of a person on two items of different rounds; it takes precedence over the comparison. Names are compared
/// case-insensitively.
struct VANLAYOUT_EXPORT ConcordDecision {
    /// An item of a round. If several items of the round have the name, \a level and \a record select one.
    struct Place {
        int round = 0;  ///< index of the round
        QString level;  ///< empty for any
        QString record; ///< empty for any
        QString item;
    };
    Place one;
    Place other;
    bool isSame = true; ///< false if the items are not the same variable
};

struct VANLAYOUT_EXPORT ConcordOptions {
    QString language; ///< code of the language of labels; empty for the primary language of each round
    QVector<ConcordDecision> decisions;
};

/// Compares the layouts of several rounds, in the order of time.
///
/// No variable has two items of one round, and each item is in exactly one variable. An equal name is evidence, not
/// proof: name, label in all languages that both rounds have, codes and their labels, record, type, width and
/// neighbouring items are weighed, and the assignment between two rounds that is best as a whole is used. How much
/// names prove is learnt from the rounds: much if items with equal names have similar labels, little if a questionnaire
/// was numbered again. Each round is matched with the latest item of each variable, so a variable can be absent in a
/// round and come back.
///
/// The order of variables is that of the first round; a variable that a later round adds follows the one that it
/// follows there. Likewise the codes of a variable. The codes are those of the first value set of an item that has
/// codes; they are numbers, compared as such, if the items of all rounds are numeric, else texts. A SAS file without
/// its catalog has no value sets, so it removes no codes.
///
/// A repeating item of a dictionary is the variable of its first occurrence, such as `X_1`, in a statistical file. An
/// item is moved if its level or its record is another one; not if the record only has another name. Records and
/// decimals are compared between dictionaries, and widths not between a dictionary and a statistical file.
///
/// Time and memory grow with the number of cells, whatever names, labels and codes the files have: an item has a
/// bounded number of candidates.
VANLAYOUT_EXPORT Concordance concord(const QVector<Layout> &rounds, const ConcordOptions &options = {});

} // namespace vanlayout

Q_DECLARE_TYPEINFO(vanlayout::ConcordCell, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::ConcordVariable, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::ConcordCode, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::ConcordProblem, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::ConcordDecision, Q_MOVABLE_TYPE);

#endif
