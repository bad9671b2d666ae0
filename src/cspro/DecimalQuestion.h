#ifndef CSPRO_DECIMALQUESTION_H
#define CSPRO_DECIMALQUESTION_H

#include "model_vanadmin_export.h"

#include <QMessageBox>
#include <QString>

#include <functional>

/// The question whether the decimal codes of a numeric value set shall become integers, in the texts that are shown.
struct DecimalQuestion {
    QString text;
    QString informativeText;
    QString title;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
};

/// Answers the question with a button: Yes, YesToAll, No or NoToAll. Anything else counts as No.
using DecimalAnswer = std::function<int(const DecimalQuestion &question)>;

/// Sets what answers the question for the whole process; an empty function restores the default.
///
/// By default a modal dialog answers it where a `QApplication` exists (an offscreen one counts), on the thread that
/// reads the dictionary; otherwise the answer is No. Set it before a dictionary is read: there is no lock. The function
/// itself may set another, which answers the next question.
MODEL_VANADMIN_EXPORT void setDecimalAnswer(DecimalAnswer answer);

#endif
