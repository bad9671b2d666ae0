# Compares the symbols that the library of the exact layout exports with the list of them.
cmake_minimum_required(VERSION 3.21)

execute_process(COMMAND ${NM} -DC --defined-only ${LIBRARY} RESULT_VARIABLE status OUTPUT_VARIABLE output)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${NM} ended with ${status}")
endif()
string(REPLACE "[abi:cxx11]" "" output "${output}") # GCC marks functions that return classes of the standard library
string(REGEX MATCHALL "[^\n]+" lines "${output}")
foreach(line IN LISTS lines)
    string(REGEX REPLACE "^[0-9a-f]+ (.) .*$" "\\1" kind "${line}")
    string(REGEX REPLACE "^[0-9a-f]+ . " "" symbol "${line}")
    if(kind MATCHES "[WVu]" OR symbol MATCHES "^_")
        # inline code of Qt and of the standard library in each program that uses them, and symbols of the compiler
    else()
        list(APPEND found "${symbol}")
    endif()
endforeach()

# A program that reads layouts needs no display.
execute_process(COMMAND ${READELF} -d ${LIBRARY} COMMAND_ERROR_IS_FATAL ANY OUTPUT_VARIABLE dynamic)
if(dynamic MATCHES "Qt[56](Gui|Widgets)" OR NOT dynamic MATCHES "Qt[56]Core")
    message(FATAL_ERROR "the library is linked with more of Qt than its core:\n${dynamic}")
endif()

file(STRINGS ${LIST} wanted)
# Names of one class in Qt 6.
foreach(list IN ITEMS wanted found)
    string(REPLACE "QVector<" "QList<" ${list} "${${list}}")
    string(REPLACE "QStringList" "QList<QString>" ${list} "${${list}}")
endforeach()
set(missing ${wanted})
list(REMOVE_ITEM missing ${found})
set(others ${found})
list(REMOVE_ITEM others ${wanted})
if(missing OR others)
    list(JOIN missing "\n" missing)
    list(JOIN others "\n" others)
    message(FATAL_ERROR "listed and not exported:\n${missing}\nexported and not listed:\n${others}")
endif()
