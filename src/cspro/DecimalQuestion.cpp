#include "cspro/DecimalQuestion_p.h"

#include <QApplication>

namespace
{

// The function of the process; null for the default. It is read and written only by atomic operations.
std::shared_ptr<const DecimalAnswerFunction> &processAnswer()
{
    static std::shared_ptr<const DecimalAnswerFunction> answer;
    return answer;
}

bool canShowDialog()
{
    return qobject_cast<QApplication *>(QCoreApplication::instance()) != nullptr;
}

DecimalAnswer runDialog(const DecimalQuestion &question, QMessageBox &box)
{
    box.setTextFormat(Qt::RichText);
    box.setMinimumSize(300, 200);
    box.setText(question.text);
    box.setInformativeText(question.informativeText);
    box.setIcon(question.icon);
    box.setStandardButtons(QMessageBox::Yes | QMessageBox::YesToAll | QMessageBox::No | QMessageBox::NoToAll);
    box.setDefaultButton(QMessageBox::No);
    box.setWindowTitle(question.title);
    return static_cast<DecimalAnswer>(box.exec());
}

} // namespace

void setDecimalAnswer(DecimalAnswerFunction answer)
{
    std::atomic_store(&processAnswer(),
                      answer ? std::make_shared<const DecimalAnswerFunction>(std::move(answer)) : nullptr);
}

DecimalAnswer cspro::answerDecimalQuestion(const DecimalQuestion &question, const DecimalAnswerFunction &ownAnswer,
                                           std::unique_ptr<QMessageBox> &box)
{
    if (ownAnswer)
        return ownAnswer(question);
    // The function is kept alive while it is called, since another one may be set meanwhile.
    if (const auto answer = std::atomic_load(&processAnswer()))
        return (*answer)(question);
    if (!canShowDialog())
        return DecimalAnswer::no;
    if (!box)
        box = std::make_unique<QMessageBox>();
    return runDialog(question, *box);
}
