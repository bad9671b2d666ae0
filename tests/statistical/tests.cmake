# Stata and SPSS files.
van_add_test(statistical/StatisticalHandlersTest.cpp)
# A locale with a decimal comma, whatever the system has installed.
set(locales ${CMAKE_CURRENT_BINARY_DIR}/locales)
add_custom_command(OUTPUT ${locales}/stamp
    COMMAND ${CMAKE_COMMAND} -E make_directory ${locales}
    COMMAND localedef -i de_DE -f UTF-8 ${locales}/de_DE.UTF-8 || ${CMAKE_COMMAND} -E echo "no locale is made"
    COMMAND ${CMAKE_COMMAND} -E touch ${locales}/stamp VERBATIM)
target_sources(StatisticalHandlersTest PRIVATE ${locales}/stamp)
target_compile_definitions(StatisticalHandlersTest PRIVATE VAN_LOCALES="${locales}")
van_add_test(statistical/StatisticalImportTest.cpp)
van_use_made_data(StatisticalImportTest)
van_add_test(statistical/StatisticalBadInputTest.cpp)
van_use_made_data(StatisticalBadInputTest)
van_add_test(statistical/FileGuardsTest.cpp)
van_add_test(statistical/StatisticalReadFailureTest.cpp)
van_use_made_data(StatisticalReadFailureTest)
van_add_test(statistical/ReadStatCallsTest.cpp)
van_use_made_data(ReadStatCallsTest)
target_link_libraries(ReadStatCallsTest PRIVATE ${CMAKE_DL_LIBS})
