# The C++ examples of the README, compiled and run unchanged: the first uses the library of the exact layout, the
# second the importers.
file(READ ${PROJECT_SOURCE_DIR}/README.md readme)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/README.md)

# van_add_readme_example(Name target expected): the next example of `readme`, linked with a library; it must print
# `expected` for the dictionary of the examples.
function(van_add_readme_example name target expected)
    if(NOT readme MATCHES "```cpp\n([^`]*)```")
        message(FATAL_ERROR "README.md has no example for ${name}")
    endif()
    set(code "${CMAKE_MATCH_1}")
    string(FIND "${readme}" "${CMAKE_MATCH_0}" begin)
    string(LENGTH "${CMAKE_MATCH_0}" length)
    math(EXPR end "${begin} + ${length}")
    string(SUBSTRING "${readme}" ${end} -1 rest)
    set(readme "${rest}" PARENT_SCOPE)
    file(GENERATE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/readme/${name}.cpp CONTENT "${code}")
    add_executable(${name} ${CMAKE_CURRENT_BINARY_DIR}/readme/${name}.cpp)
    target_link_libraries(${name} PRIVATE ${target} van_sanitizers)
    add_test(NAME ${name} COMMAND ${name} ${PROJECT_SOURCE_DIR}/examples/census.dcf)
    van_test_properties(${name} readme)
    set_tests_properties(${name} PROPERTIES PASS_REGULAR_EXPRESSION "${expected}")
endfunction()

van_add_readme_example(ReadmeLayoutExample vanlayout::vanlayout "PROVINCE 2 2 Province\n")
van_add_readme_example(ReadmeImporterExample model_VanAdmin::model_VanAdmin "PROVINCE Province\n")
