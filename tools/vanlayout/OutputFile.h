#ifndef VANLAYOUT_OUTPUTFILE_H
#define VANLAYOUT_OUTPUTFILE_H

#include <QIODevice>
#include <QString>

#include <functional>

/// What hands out the answer of a command.
using AnswerWriter = std::function<void(QIODevice &device)>;

/// Writes an answer to the file that `-o` names, to standard output where that is "-", and answers the status. Where
/// there is no answer, one line on standard error says why.
///
/// A file comes into being whole or not at all: where writing fails, one that stood there stays. Of a link, the file
/// that it leads to is written. A pipe or a device is written to as it is, and nothing comes into its place; so is a
/// descriptor of the process, such as /dev/fd/3, behind what stands there. One of another process is refused, and so
/// are links without an end. \a input, the file that was read, is not written over, whatever name of it is given.
int writeAnswer(const QString &output, const QString &input, const AnswerWriter &write);

#endif
