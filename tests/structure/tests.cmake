# The structure of the sources: which file includes which.
add_test(NAME Includes COMMAND ${CMAKE_COMMAND} -DPROJECT_DIR=${PROJECT_SOURCE_DIR} -P ${CMAKE_CURRENT_SOURCE_DIR}/structure/includes.cmake)
van_test_properties(Includes structure)
add_test(NAME WrongIncludes COMMAND ${CMAKE_COMMAND} -DSCRATCH=${CMAKE_CURRENT_BINARY_DIR}/wrong-includes
    -P ${CMAKE_CURRENT_SOURCE_DIR}/structure/wrong-includes.cmake)
van_test_properties(WrongIncludes structure)
