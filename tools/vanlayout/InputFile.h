#ifndef VANLAYOUT_INPUTFILE_H
#define VANLAYOUT_INPUTFILE_H

#include <QByteArray>
#include <QString>

/// The reason why a file cannot be read; empty if it can. Files that are not regular, such as pipes, are not opened.
QString openingProblem(const QString &fileName);

/// The first bytes of a file, at most \a size, without consuming them. For a pipe only if this process has it open,
/// such as standard input, and if the system can copy the bytes; otherwise, and if the file cannot be read, none.
QByteArray headOf(const QString &fileName, int size);

#endif
