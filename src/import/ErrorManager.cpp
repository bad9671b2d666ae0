#include "import/ErrorManager.h"

#include "import/Constants.h"
#include "util/DebugLog_p.h"

#include <algorithm>
#include <iterator>

namespace
{

// Two codes say how the extra text is used; neither has a text of its own.
constexpr int codeTextIsMessage = 1;
constexpr int codeTextIsAll = 2;

struct CatalogueRow {
    int code;
    const char *message;
    const char *key;
};

// In the order of the codes. Codes 7 and 103 bear the keys that they shall bear.
// clang-format off
const CatalogueRow catalogue[] = {
    {4, "Division by Zero", "DivByZero"},
    {7, "Selection code not found", "BadSelectionFile"},
    {11, "File name empty", "FileNameEmpty"},
    {13, "File not found", "FileNotFound"},
    {14, "Could not load from file", "FileNotLoad"},
    {15, "Could not open file", "FileNotOpen"},
    {16, "Cannot Save file. It may probably be busy", "FileBusy"},
    {17, "Incorrect file format. It must be ASCII", "FileNotASCII"},
    {18, "Cannot Delete backup file", "FileNotDelBak"},
    {19, "Could not read line from file", "FileReadLine"},
    {20, "Invalid header from file", "FileInvalidHeader"},
    {22, "Cannot Create file. Unknow error", "FileUnknowError"},
    {31, "Directory not found", "DirNotFound"},
    {40, "Error in check includes", "IncludeNotCheck"},
    {41, "Include not found", "IncludeNotFound"},
    {101, "System Error. Parameter Invalid ( NULL )", "PointerNULL"},
    {102, "System Error. Feature not supported", "FeatureNotSupported"},
    {103, "System Error. Problem converting to integer or real value", "ToDouble"},
    {104, "System Error. Problem serializing out", "SerializeOut"},
    {105, "System Error. Already Register", "AlreadyRegister"},
    {106, "System Error. Register Loader not initialized", "RegLoaderNotInit"},
    {107, "System Error. Format not registered", "RegLoaderNotReg"},
    {108, "System Error. Maybe Parent NULL", "ParentNULL"},
    {212, "Section name empty", "SectionNameEmpty"},
    {213, "Section alredy exists", "SectionExists"},
    {216, "Item not found", "ItemNotFound"},
    {221, "Invalid Record Type", "InvalidRecType"},
    {222, "Invalid Variable Type", "InvalidVarType"},
    {223, "Invalid Variable Label", "InvalidVarLabel"},
    {224, "Invalid Number of Missing Values", "InvalidNumMV"},
    {231, "Selection not found", "SelectionNotFound"},
    {242, "Invalid contents in line", "InvalidContents"},
    {243, "Missing variable information", "InvalidVariableInfo"},
};
// clang-format on
const CatalogueRow unknownError = { 0, "Unknow or not set error", "ErrorUnknow" };

const CatalogueRow &catalogueRow(int code)
{
    const auto *row = std::lower_bound(std::begin(catalogue), std::end(catalogue), code,
                                       [](const CatalogueRow &entry, int value) { return entry.code < value; });
    return row != std::end(catalogue) && row->code == code ? *row : unknownError;
}

QString formatCatalogueText(const char *key, const char *message)
{
    return formatMessage(QLatin1String("ErrorManager.ErrorMessage.") + QLatin1String(key), QLatin1String(message));
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
    QString message
        = QLatin1String("Class : ") + className + lineBreak + QLatin1String("Error : ") + QChar(code) + lineBreak;
    if (line > 0)
        message += QLatin1String("Source Line : ") + QChar(line) + lineBreak;
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
    const CatalogueRow &row = catalogueRow(code);
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
