#ifndef LAYOUT_LOAD_SCRIPTTEXT_P_H
#define LAYOUT_LOAD_SCRIPTTEXT_P_H

#include "load/Plan_p.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

/// The texts, numbers and lists of a plan in the syntax of Python and R. A line never exceeds 1,000 bytes.
namespace vanlayout
{

/// The literals of one language.
struct ScriptLanguage {
    const char *quote;                        ///< around a text
    const char *opening;                      ///< before the pieces of a long text
    const char *joining;                      ///< between them
    const char *nothing;                      ///< for an absent value
    QByteArray (*escape)(char32_t character); ///< of a character that cannot be written as it is
};

const ScriptLanguage &python();
const ScriptLanguage &r();

/// A text as an expression. Quotes, backslashes, and characters that are not visible are escaped; a lone surrogate
/// becomes U+FFFD, and so does U+0000 in R. A long text becomes pieces that the language joins.
QByteArray literal(const QString &text, const ScriptLanguage &language);

/// Likewise, or the literal of an absent value if the text is null.
QByteArray literalOrNothing(const QString &text, const ScriptLanguage &language);

/// The literal of a word such as `item`, which has no characters to escape.
QByteArray wordLiteral(const char *word, const ScriptLanguage &language);

/// The role of a column: `id`, `occ`, `item_occ` or `item`.
QByteArray roleLiteral(ColumnRole role, const ScriptLanguage &language);

/// The literals of a row of the table `codes`: both ends, label and special meaning.
QByteArrayList codeLiterals(const CodeRow &row, const ScriptLanguage &language);

/// The literals of several texts.
QByteArrayList literals(const QStringList &texts, const ScriptLanguage &language);

/// Arguments separated by commas, in lines of about 110 bytes. Further lines begin with \a indent.
QByteArray argumentLines(const QByteArrayList &arguments, const QByteArray &indent);

/// Elements separated by commas, each on lines of its own that begin with \a indent; empty if there is none.
QByteArray elementLines(const QByteArrayList &elements, const QByteArray &indent);

/// The comment before the settings of a program in Python or R.
QByteArray settingsComment();

/// The type of the cells with the codes of each list of the plan.
QVector<CellType> typesOfCodes(const LoadPlan &plan);

} // namespace vanlayout

#endif
