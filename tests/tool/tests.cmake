# The command line, run as by a user.
van_add_test(tool/VanlayoutTest.cpp)
add_dependencies(VanlayoutTest vanlayout)
target_compile_definitions(VanlayoutTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>" VAN_VERSION="${PROJECT_VERSION}")
van_use_made_data(VanlayoutTest)
van_use_made_locales(VanlayoutTest)

van_add_test(tool/VanlayoutShowTest.cpp)
add_dependencies(VanlayoutShowTest vanlayout)
target_compile_definitions(VanlayoutShowTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")

van_add_test(tool/VanlayoutShowDataTest.cpp)
van_use_made_data(VanlayoutShowDataTest)
target_link_libraries(VanlayoutShowDataTest PRIVATE SQLite::SQLite3)
add_dependencies(VanlayoutShowDataTest vanlayout)
target_compile_definitions(VanlayoutShowDataTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")

van_add_test(tool/VanlayoutShellTest.cpp)
add_dependencies(VanlayoutShellTest vanlayout)
target_compile_definitions(VanlayoutShellTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>" VAN_DOCS="${PROJECT_SOURCE_DIR}/docs")

van_add_test(tool/VanlayoutLookupTest.cpp)
add_dependencies(VanlayoutLookupTest vanlayout)
target_compile_definitions(VanlayoutLookupTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")

# A disk that fails: a library that the tool loads before all others.
add_library(failing_disk MODULE tool/FailingDisk.cpp)
set_target_properties(failing_disk PROPERTIES CXX_EXTENSIONS OFF)
target_compile_features(failing_disk PRIVATE cxx_std_17)
target_link_libraries(failing_disk PRIVATE van_warnings)
target_include_directories(failing_disk PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
van_add_test(tool/VanlayoutReadFailureTest.cpp)
van_use_made_data(VanlayoutReadFailureTest)
add_dependencies(VanlayoutReadFailureTest vanlayout failing_disk)
target_compile_definitions(VanlayoutReadFailureTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>"
    FAILING_DISK="$<TARGET_FILE:failing_disk>")

van_add_test(tool/VanlayoutCraftedKeysTest.cpp)
add_dependencies(VanlayoutCraftedKeysTest vanlayout)
target_compile_definitions(VanlayoutCraftedKeysTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")
van_use_made_data(VanlayoutCraftedKeysTest)

van_add_test(tool/VanlayoutExplainTest.cpp)
add_dependencies(VanlayoutExplainTest vanlayout)
target_compile_definitions(VanlayoutExplainTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")

van_add_test(tool/VanlayoutExportTest.cpp)
add_dependencies(VanlayoutExportTest vanlayout)
target_compile_definitions(VanlayoutExportTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")
van_use_made_data(VanlayoutExportTest)

van_add_test(tool/VanlayoutLoadTest.cpp)
add_dependencies(VanlayoutLoadTest vanlayout)
target_link_libraries(VanlayoutLoadTest PRIVATE vanlayout_library SQLite::SQLite3)
target_compile_definitions(VanlayoutLoadTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")
van_use_made_data(VanlayoutLoadTest)

van_add_test(tool/VanlayoutExportMemoryTest.cpp)
add_dependencies(VanlayoutExportMemoryTest vanlayout)
target_compile_definitions(VanlayoutExportMemoryTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")

van_add_test(tool/VanlayoutConcordTest.cpp)
add_dependencies(VanlayoutConcordTest vanlayout)
target_compile_definitions(VanlayoutConcordTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>"
    VAN_DOCS="${PROJECT_SOURCE_DIR}/docs")

van_add_test(tool/VanlayoutDiffTest.cpp)
add_dependencies(VanlayoutDiffTest vanlayout)
target_compile_definitions(VanlayoutDiffTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")
van_use_made_data(VanlayoutDiffTest)

van_add_test(tool/VanlayoutConvertTest.cpp)
add_dependencies(VanlayoutConvertTest vanlayout)
target_compile_definitions(VanlayoutConvertTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")
target_link_libraries(VanlayoutConvertTest PRIVATE vanlayout_library)

van_add_test(tool/VanlayoutLintTest.cpp)
add_dependencies(VanlayoutLintTest vanlayout)
target_compile_definitions(VanlayoutLintTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")

van_add_test(tool/VanlayoutFindTest.cpp)
add_dependencies(VanlayoutFindTest vanlayout)
target_compile_definitions(VanlayoutFindTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")
van_use_made_data(VanlayoutFindTest)

van_add_test(tool/VanlayoutFindMemoryTest.cpp)
add_dependencies(VanlayoutFindMemoryTest vanlayout)
target_compile_definitions(VanlayoutFindMemoryTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")

van_add_test(tool/VanlayoutCodebookTest.cpp)
add_dependencies(VanlayoutCodebookTest vanlayout)
target_compile_definitions(VanlayoutCodebookTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")
van_use_made_data(VanlayoutCodebookTest)

van_add_test(tool/VanlayoutOpenTest.cpp)
add_dependencies(VanlayoutOpenTest vanlayout)
target_compile_definitions(VanlayoutOpenTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")

# The pages in a browser, if there is one. The data of the codebook are made for the test above.
find_program(VAN_PYTHON python3)
if(VAN_PYTHON)
    add_test(NAME CodebookBrowser COMMAND ${VAN_PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/tool/codebook-browser.py
        $<TARGET_FILE:vanlayout> ${PROJECT_SOURCE_DIR}/examples ${made_data})
    van_test_properties(CodebookBrowser tool)
    set_tests_properties(CodebookBrowser PROPERTIES SKIP_RETURN_CODE 77)
    add_test(NAME CodebookFacts COMMAND ${VAN_PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/tool/codebook-facts.py
        $<TARGET_FILE:vanlayout> ${PROJECT_SOURCE_DIR}/examples ${PROJECT_SOURCE_DIR}/fuzz/seeds ${made_data}
        ${VAN_CORPUS_DIR})
    van_test_properties(CodebookFacts tool)
    add_test(NAME DiffBrowser COMMAND ${VAN_PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/tool/diff-browser.py
        $<TARGET_FILE:vanlayout>)
    van_test_properties(DiffBrowser tool)
    set_tests_properties(DiffBrowser PROPERTIES SKIP_RETURN_CODE 77)
    add_test(NAME ConcordBrowser COMMAND ${VAN_PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/tool/concord-browser.py
        $<TARGET_FILE:vanlayout>)
    van_test_properties(ConcordBrowser tool)
    set_tests_properties(ConcordBrowser PROPERTIES SKIP_RETURN_CODE 77)
else()
    message(STATUS "No python3: codebooks are not compared with what is shown, nor tested in a browser as comparisons are")
endif()

# The tests of each directory of src/ must cover it by themselves.
van_exclude_from_coverage(tool)
