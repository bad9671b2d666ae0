# Writes the expected files of tests/data anew: cmake -DVAN_TOOL=vanlayout -DVAN_TEST_DATA=tests/data -P update-golden.cmake
# Read the difference before it is committed.
set(ENV{LC_ALL} C.UTF-8)

# write_answers(cspro fields --format json): the answer to NAME.dcf in this directory is NAME.json.
function(write_answers name)
    set(directory ${VAN_TEST_DATA}/${name})
    file(GLOB dictionaries RELATIVE ${directory} ${directory}/*.dcf)
    foreach(dictionary IN LISTS dictionaries)
        execute_process(COMMAND ${VAN_TOOL} ${ARGN} ${dictionary} WORKING_DIRECTORY ${directory}
            RESULT_VARIABLE status OUTPUT_VARIABLE answer ERROR_VARIABLE complaint)
        # Without an answer on standard output there is nothing to compare; an error of the library is an answer.
        if(NOT status MATCHES "^[02]$" OR answer STREQUAL "")
            message(FATAL_ERROR "${dictionary}: status ${status}: ${complaint}")
        endif()
        string(REGEX REPLACE "\\.dcf$" ".json" answers ${dictionary})
        file(WRITE ${directory}/${answers} "${answer}")
    endforeach()
endfunction()

write_answers(cspro fields --format json)
write_answers(cspro8 fields --format json)
write_answers(layout show --format json --pretty)
