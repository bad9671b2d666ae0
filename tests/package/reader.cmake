# Installs the build into an empty directory, builds the examples against it, and lists a dictionary with each.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)
file(REMOVE_RECURSE ${SCRATCH})
must(${CMAKE_COMMAND} --install ${BINARY_DIR} --prefix ${SCRATCH}/prefix)

# Builds an example. Its output for a dictionary must match, and its exit status for an absent file must be 1.
function(check_example name expected)
    build_project(${EXAMPLES}/${name} ${SCRATCH}/${name} -DCMAKE_PREFIX_PATH=${SCRATCH}/prefix)
    execute_process(COMMAND ${SCRATCH}/${name}/${name} ${EXAMPLES}/census.dcf RESULT_VARIABLE status
        OUTPUT_VARIABLE output ERROR_VARIABLE problem)
    if(NOT status EQUAL 0 OR NOT output MATCHES "${expected}" OR problem)
        message(FATAL_ERROR "${name} ended with ${status} and printed:\n${output}\n${problem}")
    endif()
    execute_process(COMMAND ${SCRATCH}/${name}/${name} ${SCRATCH}/absent.sav RESULT_VARIABLE status OUTPUT_QUIET)
    if(NOT status EQUAL 1)
        message(FATAL_ERROR "${name} ended with ${status} for a file that does not exist")
    endif()
endfunction()

check_example(reader "census\\.dcf: [^\n]+\n\\(ids\\)\tPROVINCE\tnumeric\t2\t2\tProvince\n")
check_example(importer "census\\.dcf: 63 variables\nPROVINCE\tINTEGER\tProvince\n")
