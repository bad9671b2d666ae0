# Stata and SPSS files.
van_add_test(statistical/StatisticalHandlersTest.cpp)
van_add_test(statistical/StatisticalImportTest.cpp)
van_use_made_data(StatisticalImportTest)
van_add_test(statistical/StatisticalBadInputTest.cpp)
van_use_made_data(StatisticalBadInputTest)
van_add_test(statistical/FileGuardsTest.cpp)
