van_add_test(layout/ModelTest.cpp)
van_add_test(layout/CodebookTest.cpp)
van_add_test(layout/LayoutJsonTest.cpp)
van_add_test(layout/ColumnsTest.cpp)
van_add_test(layout/CsvwTest.cpp)
van_add_test(layout/JsonSchemaTest.cpp)
van_add_test(layout/FrictionlessTest.cpp)
van_add_test(layout/MarkdownTest.cpp)
van_add_test(layout/CodebookCsvTest.cpp)
van_add_test(layout/ConcordCsvTest.cpp)
van_add_test(layout/ConcordJsonTest.cpp)
van_add_test(layout/ConcordMapTest.cpp)
van_add_test(layout/ConcordPageTest.cpp)
van_add_test(layout/CsvTableTest.cpp)
van_add_test(layout/RecodeflowTest.cpp)
van_add_test(layout/RoundNamesTest.cpp)
van_add_test(layout/DiffJsonTest.cpp)
van_add_test(layout/DiffPageTest.cpp)
van_add_test(layout/ConcordAssignmentTest.cpp)
van_add_test(layout/ConcordTest.cpp)
van_add_test(layout/ConcordLoadTest.cpp)
target_sources(ConcordLoadTest PRIVATE layout/concord/DerivedRounds.cpp layout/concord/MatchTruth.cpp)
van_add_test(layout/ConcordQualityTest.cpp)
target_sources(ConcordQualityTest PRIVATE layout/concord/DerivedRounds.cpp layout/concord/MatchTruth.cpp)
van_add_test(layout/ConcordWordingTest.cpp)
van_add_test(layout/DiffTest.cpp)
van_use_made_data(DiffTest)
van_add_test(layout/ReaderTest.cpp)
van_add_test(layout/WordingTest.cpp)
van_add_test(layout/WordsTest.cpp)
van_add_test(layout/SearchTest.cpp)
van_add_test(layout/SharedSetsTest.cpp)
van_add_test(layout/SearchJsonTest.cpp)
van_add_test(layout/SearchCsvTest.cpp)
van_add_test(layout/CSProCommonTest.cpp)
van_add_test(layout/CSProTextLinesTest.cpp)
van_add_test(layout/CSProTextReaderTest.cpp)
van_add_test(layout/CSProTextValuesTest.cpp)
van_add_test(layout/MadeOnceTest.cpp)
van_add_test(layout/TextLayoutCorpusTest.cpp)
van_add_test(layout/DecodingTest.cpp)
van_add_test(layout/GoldenExactLayoutsTest.cpp)
van_add_test(layout/CSProTwinsTest.cpp)
van_add_test(layout/CSProJsonLayoutTest.cpp)
van_add_test(layout/CSProPositionsTest.cpp)
van_add_test(layout/CSProDatabaseTest.cpp)
target_link_libraries(CSProDatabaseTest PRIVATE SQLite::SQLite3)
van_add_test(layout/CSProDatabaseGuardTest.cpp)
target_link_libraries(CSProDatabaseGuardTest PRIVATE SQLite::SQLite3)
van_add_test(layout/StatFileTextsTest.cpp)
van_add_test(layout/StatFileClockTest.cpp)
van_use_made_data(StatFileClockTest)
van_add_test(layout/StatFileGuardTest.cpp)
van_use_made_data(StatFileGuardTest)
van_add_test(layout/StatFileTest.cpp)
van_use_made_data(StatFileTest)
van_add_test(layout/StatFileBadInputTest.cpp)
van_use_made_data(StatFileBadInputTest)

# The exact layout of files as JSON, for tests in other languages.
add_executable(print_layout layout/print_layout.cpp)
van_own_code(print_layout)
target_link_libraries(print_layout PRIVATE vanlayout_library)

van_add_test(layout/LanguageTagTest.cpp)

# DDI documents conform to the schema, if it is available.
van_add_test(layout/DdiTest.cpp)
van_use_made_data(DdiTest)
target_compile_definitions(DdiTest PRIVATE VAN_SCHEMAS="${VAN_SCHEMAS_DIR}")
van_add_test(layout/DdiReaderTest.cpp)
van_add_test(layout/DdiRoundTripTest.cpp)
van_use_made_data(DdiRoundTripTest)

# Writes layouts in the forms for other programs, also for tests in other languages.
add_executable(export_layout layout/export_layout.cpp)
van_own_code(export_layout)
target_link_libraries(export_layout PRIVATE vanlayout_library)

set(real_dictionaries ${VAN_CORPUS_DIR})
if(NOT EXISTS ${real_dictionaries})
    set(real_dictionaries "")
endif()

# Statistical files are also read by a program that shares no code with the reader.
find_program(VAN_PYTHON python3)
if(VAN_PYTHON)
    enable_language(C)
    add_executable(plain_readstat layout/plain_readstat.c)
    target_link_libraries(plain_readstat PRIVATE ReadStat::ReadStat m)
    add_dependencies(plain_readstat made_test_data)
    add_test(NAME PlainReadStat COMMAND ${VAN_PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/layout/compare_plain.py
        $<TARGET_FILE:print_layout> $<TARGET_FILE:plain_readstat> ${made_data}
        ${VAN_CORPUS_DIR}/spss ${VAN_CORPUS_DIR}/stata)
    van_test_properties(PlainReadStat layout)

    # Lines of data are split with the DDI document of their dictionary.
    add_test(NAME CutWithDdi COMMAND ${VAN_PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/layout/cut_with_ddi.py
        $<TARGET_FILE:export_layout> ${PROJECT_SOURCE_DIR}/examples ${CMAKE_CURRENT_SOURCE_DIR}/data/ddi
        ${CMAKE_CURRENT_SOURCE_DIR}/data/layout ${real_dictionaries})
    van_test_properties(CutWithDdi layout)

    # CSPro dictionaries are also read by readers in another language: real ones if they are available, changed ones, and
    # random ones.
    set(naive ${CMAKE_CURRENT_SOURCE_DIR}/layout/naive)
    add_test(NAME NaiveReaders COMMAND ${VAN_PYTHON} -m unittest discover -s ${naive} -p test_naive.py)
    van_test_properties(NaiveReaders layout)
    if(real_dictionaries)
        set(real --corpus ${real_dictionaries} --mutated 200)
    endif()
    add_test(NAME NaiveComparison COMMAND ${VAN_PYTHON} ${naive}/compare.py $<TARGET_FILE:vanlayout> ${real}
        --random 500 --seed 1)
    van_test_properties(NaiveComparison layout)

else()
    message(STATUS "No python3: layouts are not compared with those of other readers")
endif()

# Each document conforms to its JSON Schema: the exact layout, and the list of fields. The library that validates is a package of the system, for its Python.
find_program(VAN_SYSTEM_PYTHON python3 PATHS /usr/bin NO_DEFAULT_PATH)
if(VAN_SYSTEM_PYTHON)
    foreach(schema "LayoutSchema show layout" "FieldsSchema fields fields")
        separate_arguments(schema)
        list(POP_FRONT schema name command document)
        add_test(NAME ${name} COMMAND ${VAN_SYSTEM_PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/layout/validate-json.py
            $<TARGET_FILE:vanlayout> ${command} ${PROJECT_SOURCE_DIR}/docs/${document}.schema.json
            ${PROJECT_SOURCE_DIR}/examples ${CMAKE_CURRENT_SOURCE_DIR}/data ${made_data} ${real_dictionaries})
        van_test_properties(${name} layout)
        set_tests_properties(${name} PROPERTIES SKIP_RETURN_CODE 77)
    endforeach()
endif()

# Layouts in the forms of other standards: each document conforms to its standard. JSON Schema also needs that library.
if(VAN_SYSTEM_PYTHON)
    set(forms ${CMAKE_CURRENT_SOURCE_DIR}/layout/forms)
    add_test(NAME FormCheckers COMMAND ${VAN_SYSTEM_PYTHON} -m unittest discover -s ${forms} -p test_checkers.py)
    van_test_properties(FormCheckers layout)
    add_test(NAME JsonSchemaInstances COMMAND ${VAN_SYSTEM_PYTHON} ${forms}/instances.py $<TARGET_FILE:export_layout>)
    van_test_properties(JsonSchemaInstances layout)
    set_tests_properties(JsonSchemaInstances PROPERTIES SKIP_RETURN_CODE 77)
    foreach(form csvw frictionless json-schema)
        add_test(NAME Form-${form} COMMAND ${VAN_SYSTEM_PYTHON} ${forms}/check_forms.py ${form}
            $<TARGET_FILE:export_layout> ${PROJECT_SOURCE_DIR}/examples ${CMAKE_CURRENT_SOURCE_DIR}/data ${made_data}
            ${real_dictionaries})
        van_test_properties(Form-${form} layout)
        set_tests_properties(Form-${form} PROPERTIES SKIP_RETURN_CODE 77)
    endforeach()
endif()
