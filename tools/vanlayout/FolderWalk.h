#ifndef VANLAYOUT_FOLDERWALK_H
#define VANLAYOUT_FOLDERWALK_H

#include <QStringList>

#include <string>
#include <vector>

/// The files that a call names.
struct NamedFiles {
    QStringList files;
    int status = 0; ///< no answer where a folder was refused
};

/// The files of a call in its order, each folder replaced by the files in it and in its folders, sorted by path.
///
/// Hidden files and folders are left out, and so are links to folders, pipes and devices. A file that is named itself
/// is taken whatever it is. \a without is a folder that is not walked, such as the one that is written to; empty for
/// none.
///
/// One line on standard error refuses a folder where \a walksFolders is unset, one that is \a without itself, one that
/// has no file, and a folder in it that cannot be read.
NamedFiles filesNamed(const std::vector<std::string> &names, bool walksFolders, const QString &without = QString());

#endif
