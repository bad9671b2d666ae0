#ifndef CSPRO_DECIMALQUESTION_H
#define CSPRO_DECIMALQUESTION_H

#include "model_vanadmin_export.h"

#include <QMessageBox>
#include <QString>

#include <functional>

/// The question whether the decimal codes of a numeric value set are to become integers, in the texts of the dialog.
struct DecimalQuestion {
    QString text;
    QString informativeText;
    QString title;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
};

/// An answer to the question. Its number is that of the button in the dialog; any other number counts as `no`.
enum class DecimalAnswer : int {
    yes = QMessageBox::Yes,           ///< the codes of this value set become integers
    yesToAll = QMessageBox::YesToAll, ///< those of all further value sets of the dictionary too, without a question
    no = QMessageBox::No,             ///< this value set is dropped
    noToAll = QMessageBox::NoToAll    ///< all further ones with decimal codes too, without a question
};

/// Answers the question.
using DecimalAnswerFunction = std::function<DecimalAnswer(const DecimalQuestion &question)>;

/// Sets the function that answers the question wherever an importer has no function of its own, see
/// `TCSProDataImport::setDecimalAnswer`. An empty function restores the default.
///
/// By default a modal dialog asks the question where a `QApplication` exists (an offscreen one counts), on the thread
/// that reads the dictionary; otherwise the answer is `no`. May be called on any thread: a question that is being
/// answered gets its answer from the function that was set before, the next one from the new function. The function
/// runs on the thread that reads, on several at a time where several read. It may itself set another one.
MODEL_VANADMIN_EXPORT void setDecimalAnswer(DecimalAnswerFunction answer);

#endif
