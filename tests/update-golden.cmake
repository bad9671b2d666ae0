# Writes the expected files of tests/data anew: cmake -DVAN_TOOL=vanlayout -DVAN_TEST_DATA=tests/data -P update-golden.cmake
# Review the difference before committing it.
set(ENV{LC_ALL} C.UTF-8)

# write_expected(cspro fields --format json): the expected output for NAME.dcf in this directory is NAME.json.
function(write_expected name)
    set(directory ${VAN_TEST_DATA}/${name})
    file(GLOB dictionaries RELATIVE ${directory} ${directory}/*.dcf ${directory}/*.xml)
    foreach(dictionary IN LISTS dictionaries)
        execute_process(COMMAND ${VAN_TOOL} ${ARGN} ${dictionary} WORKING_DIRECTORY ${directory}
            RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE complaint)
        # There must be output to compare; an error of the library is output too.
        if(NOT status MATCHES "^[02]$" OR output STREQUAL "")
            message(FATAL_ERROR "${dictionary}: status ${status}: ${complaint}")
        endif()
        string(REGEX REPLACE "\\.(dcf|xml)$" ".json" expected ${dictionary})
        file(WRITE ${directory}/${expected} "${output}")
    endforeach()
endfunction()

write_expected(cspro fields --format json)
write_expected(cspro8 fields --format json)
write_expected(layout show --format json --pretty)
