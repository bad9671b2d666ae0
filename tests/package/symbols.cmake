# Compares the symbols that the library exports with the list of public names.
cmake_minimum_required(VERSION 3.21)

set(public TDataImport ReadReport ReadNote TGenericField TVpSourceField TVpDataProvider TVpRecord TQuestIndex TCSProImportBase TCSProFieldBase
    TCSProDataImport
    TCSProVariable TCSProJsonDataImport TCSProJsonVariable TSTATADataImport TSTATAVariable TSPSSDataImport TSPSSVariable
    TVpLookup ReportLookup DtoReportRunCreation TVpEntity TVpVariable Range ValueLabelElement VarWipChoice Config ConfigDb
    ConfigOptions ConfigEntities ConfigToolsExtend ConfigToolsSplit ConfigWipxToJson Dictionary MetadataDictionary Datasource
    MetadataDataSource MetadataVariables LookupDictionary SelectionTreeUnit StructVariableItem UtilFiles UtilStrings
    VpErrorManager formatMessage setDecimalAnswer importFormatOf makeImporter Model_VanAdmin)
# TStatValueLabel is public, but exports nothing because it has no operations.
set(internal KeptObjects TCSPro TCSProJson TCSProItem TCSProRecord TCSProValueSet TValueSetItem CSProDictionary TLoaderManager cspro
    TextLines SectionLines TextFileReader numbers textfile TStatValueLabel statistical lookup)

execute_process(COMMAND ${NM} -DC --defined-only ${LIBRARY} RESULT_VARIABLE status OUTPUT_VARIABLE output)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${NM} ended with ${status}")
endif()
string(REGEX MATCHALL "[^\n]+" lines "${output}")

foreach(line IN LISTS lines)
    string(REGEX REPLACE "^[0-9a-f]+ (.) .*$" "\\1" kind "${line}")
    string(REGEX REPLACE "^[0-9a-f]+ . " "" symbol "${line}")
    string(REGEX REPLACE "[(].*$" "" name_alone "${symbol}") # a public operation may take a pointer to an internal class
    foreach(name IN LISTS internal)
        if(name_alone MATCHES "(^|[^A-Za-z0-9_])${name}([^A-Za-z0-9_]|$)")
            list(APPEND wrong "${symbol}")
        endif()
    endforeach()

    # Symbols of a class, including its tables, are listed by the name of the class.
    string(REGEX REPLACE "^(vtable|VTT|typeinfo|typeinfo name) for |^(non-virtual|virtual) thunk to " "" owner "${symbol}")
    string(REGEX REPLACE "[^A-Za-z0-9_].*$" "" owner "${owner}")
    if(owner IN_LIST public)
        list(APPEND found ${owner})
    elseif(symbol MATCHES "^_")
        # symbols of the compiler and its run-time libraries
    elseif(kind MATCHES "[WVu]" AND name_alone MATCHES "std::|Q[A-Z]|^decltype( |$)")
        # inline code of the standard library and of Qt in each program that uses them
    else()
        list(APPEND wrong "${symbol}")
    endif()
endforeach()

if(wrong)
    list(REMOVE_DUPLICATES wrong)
    list(JOIN wrong "\n" wrong)
    message(FATAL_ERROR "exported, and not public:\n${wrong}")
endif()
list(REMOVE_ITEM public ${found})
if(public)
    message(FATAL_ERROR "public, and not exported: ${public}")
endif()
