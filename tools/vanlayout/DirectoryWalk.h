#ifndef VANLAYOUT_DIRECTORYWALK_H
#define VANLAYOUT_DIRECTORYWALK_H

#include <QStringList>
#include <QVector>

#include <string>
#include <vector>

/// The input files of a call.
struct NamedFiles {
    QStringList files;
    QVector<bool> areWalked; ///< whether each file was found in a directory, and not named in the call
    int status = 0;          ///< statusNoAnswer if a directory was refused
};

/// The files of a call in its order, each directory replaced by the files in it and in its subdirectories, sorted by
/// path.
///
/// Hidden files and directories, links to directories, pipes and devices are skipped. A file that is named explicitly
/// is always included. \a without is a directory that is skipped, such as the output directory; empty for none.
///
/// One line on standard error reports a directory if \a walksDirectories is unset, if it is \a without itself, if it
/// has no file, and each subdirectory that cannot be read.
NamedFiles filesNamed(const std::vector<std::string> &names, bool walksDirectories, const QString &without = QString());

#endif
