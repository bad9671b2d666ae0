# What readers tell of the places where the layout is not what the file seems to say.
van_add_test(report/ReadReportTest.cpp)
van_add_test(report/NotesPageTest.cpp)
target_compile_definitions(NotesPageTest PRIVATE VAN_DOCS="${PROJECT_SOURCE_DIR}/docs")
van_add_test(report/DictionaryNotesTest.cpp)
van_add_test(report/StatisticalNotesTest.cpp)
van_use_made_data(StatisticalNotesTest)
van_add_test(report/SameWithReportTest.cpp)
van_use_made_data(SameWithReportTest)
