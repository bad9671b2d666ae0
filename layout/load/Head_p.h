#ifndef LAYOUT_LOAD_HEAD_P_H
#define LAYOUT_LOAD_HEAD_P_H

#include "load/Plan_p.h"

#include <QByteArray>
#include <QStringList>

/// The comment at the top of a load program, and the comments of all programs.
namespace vanlayout
{

/// The marks of a comment of one line in a language.
struct CommentStyle {
    const char *before; ///< "-- "
    const char *after;  ///< " */", or empty
    /// Two characters at which the comment would end; they are separated by a blank. Empty for none.
    const char *end;
};

/// The texts of a head that depend on the target.
struct HeadTexts {
    QString target;     ///< "SQLite"
    QStringList run;    ///< command lines
    QStringList needs;  ///< whole sentences about what the program needs, and where it is exact
    QStringList change; ///< whole sentences about what to change, such as the path of the data file
};

/// The head: what made the program, from which dictionary, how to run it, what it needs, the tables, the names that
/// differ from the dictionary, and the remarks of the plan. The first two lines hold no text of the dictionary.
QByteArray programHead(const LoadPlan &plan, const CommentStyle &style, const HeadTexts &texts);

/// Lines of comment, one or more for each text. Texts are broken at blanks; a line has fewer than 1,000 bytes.
QByteArray comment(const QStringList &texts, const CommentStyle &style);

/// The comment before the part of a program that makes a table: its name and its label.
QByteArray tableTitle(const PlannedTable &table, const CommentStyle &style);

/// For targets that label single codes: a sentence for each range that has a label but no label at each code.
QStringList rangeRemarks(const LoadPlan &plan);

} // namespace vanlayout

#endif
