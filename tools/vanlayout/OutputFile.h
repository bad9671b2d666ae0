#ifndef VANLAYOUT_OUTPUTFILE_H
#define VANLAYOUT_OUTPUTFILE_H

#include <QIODevice>
#include <QString>

#include <functional>
#include <vector>

/// Writes the output of a command to a device.
using AnswerWriter = std::function<void(QIODevice &device)>;

/// Writes to the file named by `-o`, or to standard output if that is "-", and returns the exit status. A failure is
/// one line on standard error.
///
/// Files are written atomically: if writing fails, an existing file is unchanged. For a link, its target is written. A
/// pipe or a device is written to directly, and a descriptor of this process, such as /dev/fd/3, is appended to.
/// Descriptors of other processes and circular links are refused. \a input, the file that was read, is never
/// overwritten, under any of its names.
int writeAnswer(const QString &output, const QString &input, const AnswerWriter &write);

/// The path of a file of several, and what is written to it.
struct NamedAnswer {
    QString output;
    AnswerWriter write;
};

/// Writes several files in directories, and returns the exit status. If one of them cannot be written, which is one
/// line on standard error, those that exist are unchanged and no other is made. \a input is never overwritten.
int writeAnswers(const std::vector<NamedAnswer> &answers, const QString &input);

#endif
