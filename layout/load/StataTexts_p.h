#ifndef LAYOUT_LOAD_STATATEXTS_P_H
#define LAYOUT_LOAD_STATATEXTS_P_H

#include "load/Plan_p.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace vanlayout
{

/// A text as an expression, such as `"a" + char(36) + "b"`. Characters that Stata expands within quotes, or that could
/// end a text, a comment or a block, are written by their code.
QByteArray stataExpression(const QString &text);

/// The commands that set a local macro to a text. An expression of Stata has at most some hundred operands, so that a
/// long text is put together in a scalar.
QByteArray stataMacro(const QByteArray &name, const QString &text);

/// One character of a record type as an expression. Characters beyond ASCII are bytes of windows-1252.
QByteArray stataCharacter(QChar character);

/// A command on a line of its own, within a block.
QByteArray stataLine(const QByteArray &command);

/// The parts with an operator between them, in lines of a few hundred bytes.
QByteArray stataJoined(const QVector<QByteArray> &parts, const QByteArray &between);

/// The texts of variables with 2,045 bytes each, put together; infix takes blanks at their end off.
QByteArray stataJoinedTexts(const QVector<QByteArray> &names);

/// The condition that is true if all of these texts are blank.
QByteArray stataAreBlank(const QVector<QByteArray> &names);

/// The condition that is true for lines with a record type, of which each character is a variable: \a name and its
/// number. \a length is the number of these variables; no line has a longer record type.
QByteArray stataHasMark(const QString &mark, int length, const QByteArray &name);

/// A command that ends in a text in compound quotes, after \a command, and \a options after the text. The text is set
/// by a macro before, if it holds characters that Stata expands. A label cannot hold a quote before an apostrophe, nor
/// a backquote before a quote or at its end: a blank separates the former, an apostrophe takes the place of the latter.
/// The label has at most \a max characters.
QByteArray stataLabelCommand(const QByteArray &command, const QString &text, int max, const QByteArray &options = {});

/// The storage type of a numeric column that holds all its values: `byte`, `int`, `long` or `double`.
QByteArray stataTypeOf(const PlannedColumn &column);

/// The commands that turn special codes into missing values. The first rule that matches counts.
QByteArray stataSpecials(const QByteArray &name, const CodeList &codes);

/// Whether a code can have a label: whole numbers and missing values can.
bool stataHasValueLabel(const CodeList &codes);

/// The commands that define the value label of a column, with this name; empty if no code can have a label. It holds
/// 65,536 codes at most.
QByteArray stataValueLabel(const QByteArray &name, const CodeList &codes);

/// Codes with a label that no value label can hold.
QStringList stataUnlabelled(const CodeList &codes, bool areTexts);

} // namespace vanlayout

#endif
