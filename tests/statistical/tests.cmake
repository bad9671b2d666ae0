# Stata and SPSS files.
van_add_test(statistical/StatisticalHandlersTest.cpp)
van_add_test(statistical/StatisticalImportTest.cpp)
van_use_made_data(StatisticalImportTest)
