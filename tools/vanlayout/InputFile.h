#ifndef VANLAYOUT_INPUTFILE_H
#define VANLAYOUT_INPUTFILE_H

#include <QString>

/// Why a file cannot be read at all; empty where it can. What is no regular file, such as a pipe, is not opened.
QString openingProblem(const QString &fileName);

#endif
