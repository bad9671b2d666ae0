#ifndef LAYOUT_LOAD_PLANTEXTS_P_H
#define LAYOUT_LOAD_PLANTEXTS_P_H

#include "load/TargetRules_p.h"

#include <QString>

#include <optional>

/// The texts and numbers of a dictionary in the form in which a plan has them.
namespace vanlayout
{

/// The text with each run of line ends and control characters replaced by one blank, so that no comment ends at it.
QString oneLine(const QString &text);

/// The text cut to a limit, never within a character.
QString cutTo(const QString &text, const LengthLimit &limit);

/// The text without trailing blanks (U+0020 only).
QString withoutTrailingBlanks(const QString &text);

/// The text without blanks around it (U+0020 only).
QString withoutBlanks(const QString &text);

/// A number in plain decimal digits, such as `-9.5`: without a leading `+`, leading zeros, or zeros at the end of the
/// decimals. None if the text is not a number by the rule for cells: blanks, a sign, ASCII digits with at most one `.`
/// or `,`, blanks.
std::optional<QString> plainNumberOf(const QString &text);

} // namespace vanlayout

#endif
