#ifndef IMPORT_MESSAGECATALOGUE_P_H
#define IMPORT_MESSAGECATALOGUE_P_H

#include <algorithm>
#include <iterator>

/// The texts of the error codes, with the keys under which a translation would find them.
namespace catalogue
{

/// Precedes each key. Messages are not translated, so keys are not used.
constexpr const char *keyPrefix = "ErrorManager.ErrorMessage.";

struct Row {
    int code;
    const char *message;
    const char *key;
};

// In the order of the codes. The keys of codes 7 and 103 do not match their texts. This is intended.
// clang-format off
constexpr Row rows[] = {
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
constexpr Row unknownError = { 0, "Unknow or not set error", "ErrorUnknow" };

/// Returns the row of a code, or unknownError for a code without one.
inline const Row &rowOf(int code)
{
    const auto *row = std::lower_bound(std::begin(rows), std::end(rows), code,
                                       [](const Row &entry, int value) { return entry.code < value; });
    return row != std::end(rows) && row->code == code ? *row : unknownError;
}

} // namespace catalogue

#endif
