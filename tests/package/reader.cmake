# Installs the build into an empty folder, builds the reader of the examples against it, and has it list a dictionary.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)
file(REMOVE_RECURSE ${SCRATCH})
must(${CMAKE_COMMAND} --install ${BINARY_DIR} --prefix ${SCRATCH}/prefix)
build_project(${EXAMPLES}/reader ${SCRATCH}/build -DCMAKE_PREFIX_PATH=${SCRATCH}/prefix)

execute_process(COMMAND ${SCRATCH}/build/reader ${EXAMPLES}/census.dcf RESULT_VARIABLE status OUTPUT_VARIABLE output
    ERROR_VARIABLE problem)
if(NOT status EQUAL 0 OR NOT output MATCHES "census\\.dcf: 63 variables\nPROVINCE\tINTEGER\tProvince\n")
    message(FATAL_ERROR "the reader ended with ${status} and printed:\n${output}\n${problem}")
endif()
execute_process(COMMAND ${SCRATCH}/build/reader ${SCRATCH}/absent.sav RESULT_VARIABLE status OUTPUT_QUIET)
if(NOT status EQUAL 1)
    message(FATAL_ERROR "the reader ended with ${status} for a file that does not exist")
endif()
