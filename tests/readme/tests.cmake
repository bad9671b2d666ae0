# The C++ example of the README, compiled and run as it stands there.
file(READ ${PROJECT_SOURCE_DIR}/README.md readme)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/README.md)
string(REGEX MATCH "```cpp\n([^`]*)```" found "${readme}")
file(GENERATE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/readme/example.cpp CONTENT "${CMAKE_MATCH_1}")

add_executable(ReadmeExample ${CMAKE_CURRENT_BINARY_DIR}/readme/example.cpp)
target_link_libraries(ReadmeExample PRIVATE model_VanAdmin::model_VanAdmin van_sanitizers)
add_test(NAME ReadmeExample COMMAND ReadmeExample ${PROJECT_SOURCE_DIR}/examples/census.dcf)
van_test_properties(ReadmeExample readme)
set_tests_properties(ReadmeExample PROPERTIES PASS_REGULAR_EXPRESSION "PROVINCE Province\n")
