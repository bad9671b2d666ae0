# Runs includes.cmake on a project that breaks each of its rules: cmake -DSCRATCH=... -P wrong-includes.cmake
cmake_minimum_required(VERSION 3.21)

file(REMOVE_RECURSE ${SCRATCH})
file(WRITE ${SCRATCH}/src/record/Record.h "#include \"import/Import.h\"\n")
file(WRITE ${SCRATCH}/src/import/Import.h "#include \"record/Record.h\"\n#include \"util/Numbers_p.h\"\n")
file(WRITE ${SCRATCH}/src/util/Numbers_p.h "#include <QString>\n")
file(WRITE ${SCRATCH}/src/util/Numbers.cpp "#include \"util/Numbers_p.h\"\n  #  include \"read/Reader.h\"\n")
file(WRITE ${SCRATCH}/src/cspro/CSPro.cpp "    if (report)\n")
file(WRITE ${SCRATCH}/src/cspro/CSProJson.cpp "    if (wanted && report)\n")
file(WRITE ${SCRATCH}/src/cspro/ValueSetReader.cpp "    notes.setReport(report);\n")
file(WRITE ${SCRATCH}/layout/read/Reader.h "#pragma once\n")
file(WRITE ${SCRATCH}/layout/read/Text_p.h "#include \"Lines_p.h\"\n#include \"import/Import.h\"\n")
file(WRITE ${SCRATCH}/layout/read/Lines.cpp "#include \"Lines_p.h\"\n\n#include \"Text_p.h\"\n")
file(WRITE ${SCRATCH}/layout/read/Lines_p.h "#pragma once\n")

execute_process(COMMAND ${CMAKE_COMMAND} -DPROJECT_DIR=${SCRATCH} -P ${CMAKE_CURRENT_LIST_DIR}/includes.cmake
    RESULT_VARIABLE status ERROR_VARIABLE messages)
string(REGEX REPLACE "[ \n]+" " " messages "${messages}")
if(status EQUAL 0)
    message(FATAL_ERROR "no error")
endif()
foreach(expected
        "src/record/Record.h includes src/import/Import.h: import/ is built on record/"
        "among these: src/import includes src/record src/record includes src/import"
        "src/import/Import.h includes src/util/Numbers_p.h: a public header includes no private one"
        "src/util/Numbers.cpp includes layout/read/Reader.h: src/ is built on nothing else"
        "among these: layout/read/Lines includes layout/read/Text layout/read/Text includes layout/read/Lines"
        "layout/read/Text_p.h includes src/import/Import.h: layout/ uses only util/ of src/"
        "src/cspro/CSPro.cpp asks whether there is a report"
        "src/cspro/CSProJson.cpp asks whether there is a report"
        "only 9 includes were found")
    string(FIND "${messages}" "${expected}" place)
    if(place EQUAL -1)
        message(SEND_ERROR "missing: ${expected}\nfound: ${messages}")
    endif()
endforeach()
if(messages MATCHES "ValueSetReader")
    message(SEND_ERROR "a report that is passed on is no question whether there is one: ${messages}")
endif()
