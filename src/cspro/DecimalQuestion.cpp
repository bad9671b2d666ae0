#include "cspro/DecimalQuestion_p.h"

#include <QApplication>

namespace
{

// Null for the default.
std::shared_ptr<DecimalAnswer> &replacedAnswer()
{
    static std::shared_ptr<DecimalAnswer> answer;
    return answer;
}

bool canShowDialog()
{
    return qobject_cast<QApplication *>(QCoreApplication::instance()) != nullptr;
}

int runDialog(const DecimalQuestion &question, QMessageBox &box)
{
    box.setTextFormat(Qt::RichText);
    box.setMinimumSize(300, 200);
    box.setText(question.text);
    box.setInformativeText(question.informativeText);
    box.setIcon(question.icon);
    box.setStandardButtons(QMessageBox::Yes | QMessageBox::YesToAll | QMessageBox::No | QMessageBox::NoToAll);
    box.setDefaultButton(QMessageBox::No);
    box.setWindowTitle(question.title);
    return box.exec();
}

} // namespace

void setDecimalAnswer(DecimalAnswer answer)
{
    replacedAnswer() = answer ? std::make_shared<DecimalAnswer>(std::move(answer)) : nullptr;
}

int cspro::answerDecimalQuestion(const DecimalQuestion &question, std::unique_ptr<QMessageBox> &box)
{
    // Held while it is called: it may set another answer meanwhile.
    if (const auto answer = replacedAnswer())
        return (*answer)(question);
    if (!canShowDialog())
        return QMessageBox::No;
    if (!box)
        box = std::make_unique<QMessageBox>();
    return runDialog(question, *box);
}
