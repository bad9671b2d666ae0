# The command line, run as a user runs it.
van_add_test(tool/VanlayoutTest.cpp)
add_dependencies(VanlayoutTest vanlayout)
target_compile_definitions(VanlayoutTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>" VAN_VERSION="${PROJECT_VERSION}")
van_use_made_data(VanlayoutTest)

van_add_test(tool/VanlayoutLookupTest.cpp)
add_dependencies(VanlayoutLookupTest vanlayout)
target_compile_definitions(VanlayoutLookupTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")

van_add_test(tool/VanlayoutExportTest.cpp)
add_dependencies(VanlayoutExportTest vanlayout)
target_compile_definitions(VanlayoutExportTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>"
    VAN_DOCS="${PROJECT_SOURCE_DIR}/docs" VAN_SCHEMAS="${PROJECT_SOURCE_DIR}/../shared/schemas")
van_use_made_data(VanlayoutExportTest)

# Beside the command, the comparison itself.
van_add_test(tool/VanlayoutDiffTest.cpp)
add_dependencies(VanlayoutDiffTest vanlayout)
set(tool_folder ${PROJECT_SOURCE_DIR}/tools/vanlayout)
target_sources(VanlayoutDiffTest PRIVATE ${tool_folder}/Diff.cpp ${tool_folder}/FileType.cpp
    ${tool_folder}/InputFile.cpp ${tool_folder}/Layout.cpp)
target_include_directories(VanlayoutDiffTest PRIVATE ${tool_folder})
target_compile_definitions(VanlayoutDiffTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")
van_use_made_data(VanlayoutDiffTest)

van_add_test(tool/VanlayoutCodebookTest.cpp)
add_dependencies(VanlayoutCodebookTest vanlayout)
target_compile_definitions(VanlayoutCodebookTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")
van_use_made_data(VanlayoutCodebookTest)

# The page of the codebook, used in a browser where there is one.
find_program(VAN_PYTHON python3)
if(VAN_PYTHON)
    add_test(NAME CodebookBrowser COMMAND ${CMAKE_COMMAND} -E env VAN_MADE_DATA=${VAN_MADE_DATA} ${VAN_PYTHON}
        ${CMAKE_CURRENT_SOURCE_DIR}/tool/codebook-browser.py $<TARGET_FILE:vanlayout> ${PROJECT_SOURCE_DIR}/examples)
    van_test_properties(CodebookBrowser tool)
    set_tests_properties(CodebookBrowser PROPERTIES SKIP_RETURN_CODE 77)
else()
    message(STATUS "No python3: the codebook is not tested in a browser")
endif()
