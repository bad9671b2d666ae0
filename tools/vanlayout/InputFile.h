#ifndef VANLAYOUT_INPUTFILE_H
#define VANLAYOUT_INPUTFILE_H

#include <QByteArray>
#include <QString>

/// Why a file cannot be read at all; empty where it can. What is no regular file, such as a pipe, is not opened.
QString openingProblem(const QString &fileName);

/// The first bytes of a file, \a size at most, which a reader finds there again: of a pipe only where it is open in
/// this process already, as standard input is, and where the system can copy them. None of what cannot be read.
QByteArray headOf(const QString &fileName, int size);

#endif
