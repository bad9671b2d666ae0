#include "import/ErrorManager.h"

#include "import/Constants.h"
#include "import/MessageCatalogue_p.h"
#include "util/DebugLog_p.h"
#include "util/NumberCharacter_p.h"

namespace
{

// These two codes determine how the extra text is used. Neither has a text of its own.
constexpr int codeTextIsMessage = 1;
constexpr int codeTextIsAll = 2;

QString formatCatalogueText(const char *key, const char *message)
{
    return formatMessage(QLatin1String(catalogue::keyPrefix) + QLatin1String(key), QLatin1String(message));
}

} // namespace

VpErrorManager::VpErrorManager(QString classTag, int errorCode, QString extraText)
    : code(errorCode)
    , className(std::move(classTag))
    , text(std::move(extraText))
{
    if (isDebugLogOn())
        debugLine(composeMessage());
}

VpErrorManager::VpErrorManager(QString classTag, int errorCode)
    : code(errorCode)
    , className(std::move(classTag))
{
}

VpErrorManager::~VpErrorManager() = default;

const char *VpErrorManager::what() const noexcept
{
    return "Unknown exception";
}

QString VpErrorManager::composeMessage() const
{
    if (!text.isEmpty() && code == codeTextIsAll)
        return text;
    const QString &lineBreak = Vocabulary::LineBreak;
    // A number is shown as the character with that code, not as digits: code 107 reads "k".
    QString message = QLatin1String("Class : ") + className + lineBreak + QLatin1String("Error : ")
        + numberCharacter(code) + lineBreak;
    if (line > 0)
        message += QLatin1String("Source Line : ") + numberCharacter(line) + lineBreak;
    message += lineBreak + formatCatalogueText("Message", "Message") + QLatin1String(" : ");
    if (!text.isEmpty() && code == codeTextIsMessage)
        return message + text + lineBreak;
    message += catalogueMessage();
    if (!text.isEmpty())
        message += lineBreak + QLatin1Char('[') + text + QLatin1String(" ]");
    return message;
}

QString VpErrorManager::catalogueMessage() const
{
    const catalogue::Row &row = catalogue::rowOf(code);
    return formatCatalogueText(row.key, row.message);
}

int VpErrorManager::getCode() const
{
    return code;
}

int VpErrorManager::getLine() const
{
    return line;
}

QString VpErrorManager::getClassName() const
{
    return className;
}

QString VpErrorManager::getText() const
{
    return text;
}

QString formatMessage(QString /*key*/, QString message, QString a1, QString a2, QString a3, QString a4, QString a5,
                      QString a6)
{
    const QString *arguments[] = { &a1, &a2, &a3, &a4, &a5, &a6 };
    int number = 1;
    for (const QString *argument : arguments) {
        if (!message.contains(QLatin1Char('%')))
            break;
        message.replace(QLatin1Char('%') + QString::number(number++), *argument);
    }
    return message;
}
