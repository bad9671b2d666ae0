#ifndef VANLAYOUT_OUTPUTFOLDER_H
#define VANLAYOUT_OUTPUTFOLDER_H

#include "util/KeyedHash_p.h"

#include <QString>
#include <QStringList>

/// A folder that a command writes a file into for each file that it reads.
class OutputFolder
{
public:
    /// \a ending is that of the files, such as ".xml". \a inputs are the files that are read: none is written over.
    OutputFolder(const QString &folder, const QString &ending, const QStringList &inputs);

    /// Makes the folder where it is absent. No answer, with one line on standard error, where that fails.
    int make() const;
    /// The path of the file for \a input: its name without its suffix, and the ending. A later file of the same name,
    /// compared without regard to case, is `NAME-2`, the next one `NAME-3`.
    QString pathFor(const QString &input);
    /// Has a name given to no file, such as that of an index.
    void reserve(const QString &name);
    /// Whether a name in the folder is that of a file to read.
    bool isInput(const QString &name) const;

private:
    bool isFree(const QString &name) const;

    QString path;
    QString suffix;
    KeyedSet<QString> taken;          ///< names in lower case
    KeyedSet<QString> inputPaths;     ///< canonical
    KeyedMap<QString, int> lastGiven; ///< number of the last file of a stem
};

/// The path of a name in a folder. QDir::filePath takes a name that begins with a colon for a path of its own.
QString inFolder(const QString &folder, const QString &name);

/// Whether `-o` names a folder: one that exists, or a name that ends in a slash.
bool isFolderName(const QString &output);

#endif
