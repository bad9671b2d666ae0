#ifndef CSPRO_DECIMALQUESTION_P_H
#define CSPRO_DECIMALQUESTION_P_H

#include "cspro/DecimalQuestion.h"

#include <memory>

namespace cspro
{

/// The button that answers \a question: the function that was set, or the dialog in \a box, which is made when it is
/// first needed, or No where no dialog can be shown.
int answerDecimalQuestion(const DecimalQuestion &question, std::unique_ptr<QMessageBox> &box);

} // namespace cspro

#endif
