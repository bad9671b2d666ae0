#ifndef CSPRO_DECIMALQUESTION_P_H
#define CSPRO_DECIMALQUESTION_P_H

#include "cspro/DecimalQuestion.h"

#include <memory>

namespace cspro
{

/// Returns the answer to \a question: that of \a ownAnswer if it is not empty, else that of the function which was set
/// for the process, else that of the dialog in \a box, which is made when it is first needed. Returns `no` if no dialog
/// can be shown.
DecimalAnswer answerDecimalQuestion(const DecimalQuestion &question, const DecimalAnswerFunction &ownAnswer,
                                    std::unique_ptr<QMessageBox> &box);

} // namespace cspro

#endif
