# Functions of the scripts in this directory.
cmake_minimum_required(VERSION 3.21)

# Runs a command and ends the test if it fails.
function(must)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT status EQUAL 0)
        list(JOIN ARGN " " command)
        message(FATAL_ERROR "${command}\nended with ${status}:\n${output}")
    endif()
endfunction()

# Configures and builds a project.
function(build_project source directory)
    must(${CMAKE_COMMAND} -S ${source} -B ${directory} -G ${GENERATOR}
        -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_BUILD_TYPE=${BUILD_TYPE} -DCMAKE_CXX_FLAGS=${FLAGS} ${ARGN})
    must(${CMAKE_COMMAND} --build ${directory})
endfunction()

# Configures and builds the project in this directory.
function(build_consumer directory)
    build_project(${CMAKE_CURRENT_FUNCTION_LIST_DIR} ${directory} ${ARGN})
endfunction()

# Runs a program on a dictionary of two items and compares the lines that it prints.
function(check_lines program expected)
    file(WRITE ${SCRATCH}/survey.dcf "[Dictionary]\nName=D\n
[Level]\nName=L\n\n[IdItems]\n\n[Record]\nName=R\n
[Item]\nName=PROVINCE\nStart=2\nLen=2\nDataType=Numeric\n
[Item]\nName=OWNER\nStart=4\nLen=20\nDataType=Alpha\n")
    execute_process(COMMAND ${ARGN} ${program} ${SCRATCH}/survey.dcf
        RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE problem)
    if(NOT status EQUAL 0 OR NOT output STREQUAL expected)
        message(FATAL_ERROR "${program} ended with ${status} and printed:\n${output}\n${problem}")
    endif()
endfunction()

# Checks the programs in this directory: one for each library. Each first prints the version of its library.
function(check_consumers directory)
    check_lines(${directory}/consumer "${VERSION} ${VERSION}\nPROVINCE INTEGER 2 2\nOWNER STRING 4 20\n" ${ARGN})
    check_layout_consumer(${directory} ${ARGN})
endfunction()

# Checks the program of the exact layout only.
function(check_layout_consumer directory)
    check_lines(${directory}/layout_consumer "${VERSION} ${VERSION}\nPROVINCE numeric 2 2\nOWNER alpha 4 20\n" ${ARGN})
endfunction()
