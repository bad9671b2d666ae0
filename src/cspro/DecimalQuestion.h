#ifndef CSPRO_DECIMALQUESTION_H
#define CSPRO_DECIMALQUESTION_H

#include "model_vanadmin_export.h"

#include <QMessageBox>
#include <QString>

#include <functional>

/// The question whether the decimal codes of a numeric value set shall become integers, with the texts and the icon of
/// the dialog.
struct DecimalQuestion {
    QString text;
    QString informativeText;
    QString title;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
};

/// An answer to the question. Its number is that of the button in the dialog; any other number counts as `no`.
enum class DecimalAnswer : int {
    yes = QMessageBox::Yes,           ///< the codes of this value set become integers
    yesToAll = QMessageBox::YesToAll, ///< the same, for all further value sets of the dictionary too
    no = QMessageBox::No,             ///< this value set is dropped
    noToAll = QMessageBox::NoToAll    ///< the same, for all further value sets with decimal codes too
};

/// Function that answers the question.
using DecimalAnswerFunction = std::function<DecimalAnswer(const DecimalQuestion &question)>;

/// Sets the function that answers the question for every importer without its own function (see
/// `TCSProDataImport::setDecimalAnswer`). An empty function restores the default.
///
/// By default, if a `QApplication` exists (an offscreen one counts), a modal dialog asks the question on the thread
/// that reads the dictionary; otherwise the answer is `no`. This may be called on any thread: a question that is being
/// answered gets its answer from the function that was set before, the next question from the new function. The
/// function runs on the thread that reads the dictionary; if several threads read, it runs on several at a time. The
/// function may itself set another one.
MODEL_VANADMIN_EXPORT void setDecimalAnswer(DecimalAnswerFunction answer);

#endif
