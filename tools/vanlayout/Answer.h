#ifndef VANLAYOUT_ANSWER_H
#define VANLAYOUT_ANSWER_H

#include <QString>

#include <functional>

/// Exit statuses and error lines of the commands.

/// Exit statuses.
enum ExitStatus { statusFine = 0, statusFinding = 1, statusNoAnswer = 2 };

/// Prints one line on standard error: the problem of \a subject, or of the call if \a subject is empty.
void complain(const QString &subject, const QString &problem);

/// The name of a file in messages; a pair of quotes if the name is empty.
QString subjectOf(const QString &file);

/// Prints one line on standard error with the problem of a file.
void complainOfFile(const QString &file, const QString &problem);

/// Prints one line about a file that was only read in part, unless \a cause is empty.
void complainIfIncomplete(const QString &file, const QString &cause);

/// Prints the problem of a file and returns statusNoAnswer.
int noAnswerFor(const QString &file, const QString &problem);

/// Returns the result of \a answer; if memory is exhausted, prints that as the problem of the file and returns
/// statusNoAnswer.
int answerFor(const QString &file, const std::function<int()> &answer);

/// Gives standard output a large buffer. Must be called before anything is written to it.
void bufferOutput();

/// Flushes standard output, so that a failure with the next file loses nothing.
void flushOutput();

/// Flushes standard output. Returns \a status, or after an error line statusNoAnswer if the output could not be
/// written.
int statusAfterOutput(int status);

#endif
