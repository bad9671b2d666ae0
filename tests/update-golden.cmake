# Writes the answers of tests/data anew: cmake -DVAN_TOOL=vanlayout -DVAN_TEST_DATA=tests/data -P update-golden.cmake
# Read the difference before it is committed.
set(ENV{LC_ALL} C.UTF-8)
foreach(folder ${VAN_TEST_DATA}/cspro ${VAN_TEST_DATA}/cspro8)
    file(GLOB dictionaries RELATIVE ${folder} ${folder}/*.dcf)
    foreach(dictionary IN LISTS dictionaries)
        execute_process(COMMAND ${VAN_TOOL} fields --format json ${dictionary} WORKING_DIRECTORY ${folder}
            RESULT_VARIABLE status OUTPUT_VARIABLE answer ERROR_VARIABLE complaint)
        # Without an answer on standard output there is nothing to compare; an error of the library is an answer.
        if(NOT status MATCHES "^[02]$" OR answer STREQUAL "")
            message(FATAL_ERROR "${dictionary}: status ${status}: ${complaint}")
        endif()
        string(REGEX REPLACE "\\.dcf$" ".json" name ${dictionary})
        file(WRITE ${folder}/${name} "${answer}")
    endforeach()
endforeach()
