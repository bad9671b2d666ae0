#ifndef VANLAYOUT_ANSWER_H
#define VANLAYOUT_ANSWER_H

#include <QString>

#include <functional>
#include <string>

/// How a command answers.

/// Exit statuses.
enum ExitStatus { statusFine = 0, statusFinding = 1, statusNoAnswer = 2 };

/// Has the question on decimal codes answered by "yes" or "no" from now on; "ask" leaves it to the library, which shows
/// its dialog.
void answerDecimalQuestions(const std::string &decimals);

/// Writes the one line that says what is wrong with something, or with the call where \a subject is empty.
void complain(const QString &subject, const QString &problem);

/// What a file is called: one without a name by its quotes.
QString subjectOf(const QString &file);

/// Writes the one line that says what is wrong with a file.
void complainOfFile(const QString &file, const QString &problem);

/// Writes the line about a file that was read in part, where a cause for that is given.
void complainIfIncomplete(const QString &file, const QString &cause);

/// Complains of a file, and answers that there is no answer.
int noAnswerFor(const QString &file, const QString &problem);

/// What \a answer says of a file; no answer, with a complaint, where memory does not suffice for it.
int answerFor(const QString &file, const std::function<int()> &answer);

/// Hands standard output out in large pieces. To be called before anything is written to it.
void bufferOutput();

/// Hands out what was printed so far: what becomes of the next file takes nothing of it away.
void flushOutput();

/// \a status, or no answer with a complaint where standard output could not be written.
int statusAfterOutput(int status);

#endif
