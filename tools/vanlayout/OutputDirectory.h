#ifndef VANLAYOUT_OUTPUTDIRECTORY_H
#define VANLAYOUT_OUTPUTDIRECTORY_H

#include "util/KeyedHash_p.h"

#include <QString>
#include <QStringList>

/// The directory into which a command writes one file for each file that it reads.
class OutputDirectory
{
public:
    /// \a ending is the extension of the files, such as ".xml". \a inputs are the files that are read; none of them is
    /// overwritten.
    OutputDirectory(const QString &directory, const QString &ending, const QStringList &inputs);

    /// Creates the directory if it is absent. On failure, prints one line on standard error and returns statusNoAnswer.
    int make() const;
    /// The path of the file for \a input: its name without its extension, and the ending. A later file of the same
    /// name, compared ignoring case, is `NAME-2`, the next one `NAME-3`.
    QString pathFor(const QString &input);
    /// Reserves a name, such as that of an index: no file gets it.
    void reserve(const QString &name);
    /// True if a name in the directory is that of an input file.
    bool isInput(const QString &name) const;

private:
    bool isFree(const QString &name) const;

    QString path;
    QString suffix;
    KeyedSet<QString> taken;          ///< names in lower case
    KeyedSet<QString> inputPaths;     ///< canonical
    KeyedMap<QString, int> lastGiven; ///< number of the last file of a stem
};

/// The path of a name in a directory. QDir::filePath treats a name that begins with a colon as an absolute path.
QString inDirectory(const QString &directory, const QString &name);

/// True if `-o` names a directory: an existing one, or a name that ends in a slash.
bool isDirectoryName(const QString &output);

#endif
