#ifndef VANLAYOUT_LINTSETTINGS_H
#define VANLAYOUT_LINTSETTINGS_H

#include "check/Lint.h"

#include <QHash>
#include <QString>
#include <QVector>

#include <string>
#include <vector>

/// The rules that a settings file selects.
struct LintSelection {
    QVector<vanlayout::LintRule> only;
    QVector<vanlayout::LintRule> disabled;
    QString file;    ///< path of the settings file; empty if there is none
    QString problem; ///< one line: why the settings file cannot be used; empty if it can
};

/// Finds and reads the files `.vanlayout-lint`.
///
/// The first one counts that is in the directory of a linted file or in one of its parents, up to the directory that
/// has an entry `.git`, else up to the root. For standard input the search begins in the current directory.
///
/// Each line is `disable ID` or `only ID`; several ids are separated by blanks or commas. Empty lines, and the rest of
/// a line after `#`, are ignored. A word or an id that is unknown makes the file unusable.
class LintSettings
{
public:
    LintSelection forFile(const QString &file);

private:
    static QString pathFor(const QString &directory);
    static LintSelection readFrom(const QString &path);

    QHash<QString, LintSelection> byDirectory; ///< of the files that were linted
};

/// The rules with these ids, which have been checked.
QVector<vanlayout::LintRule> rulesOf(const std::vector<std::string> &ids);

/// The ids of all rules.
std::vector<std::string> lintRuleIds();

#endif
