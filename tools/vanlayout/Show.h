#ifndef VANLAYOUT_SHOW_H
#define VANLAYOUT_SHOW_H

#include <QString>

#include <string>
#include <vector>

/// What `vanlayout show` was asked for.
struct ShowOptions {
    std::string format = "table";   ///< table, json or csv
    std::string type = "auto";      ///< auto, or the name of a file type
    std::string decimals = "no";    ///< ask, yes or no
    std::vector<std::string> files; ///< in the encoding of the system
};

/// Exit statuses.
enum ExitStatus { statusFine = 0, statusFinding = 1, statusNoAnswer = 2 };

/// Shows each file and answers the worst status.
int show(const ShowOptions &options);

/// Has the question on decimal codes answered by "yes" or "no" from now on; "ask" leaves it to the library, which shows
/// its dialog.
void answerDecimalQuestions(const std::string &decimals);

/// Writes the one line that says what is wrong with a file, or with the call where \a subject is empty.
void complain(const QString &subject, const QString &problem);

/// \a status, or no answer with a complaint where standard output could not be written.
int statusAfterOutput(int status);

#endif
