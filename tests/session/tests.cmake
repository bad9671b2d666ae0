# Memory that is released. These tests run without the list of kept objects: no object may stay alive.
van_add_test(session/KeptObjectsTest.cpp)
van_add_test(session/ScarceMemoryTest.cpp)
van_add_test(session/ReleaseContentsTest.cpp)
van_use_made_data(ReleaseContentsTest)
van_add_test(session/SelfAssignmentTest.cpp)
van_use_made_data(SelfAssignmentTest)
van_add_test(session/LongSessionTest.cpp)
target_compile_definitions(LongSessionTest PRIVATE VAN_MADE_EXAMPLES="${PROJECT_BINARY_DIR}/examples")
add_dependencies(LongSessionTest examples)
foreach(test ReleaseContentsTest SelfAssignmentTest LongSessionTest)
    van_test_properties(${test} session SUPPRESSIONS ${PROJECT_SOURCE_DIR}/fuzz/lsan.supp)
endforeach()
# This test only repeats what other tests do once.
van_exclude_from_coverage(LongSessionTest)
# The tool with many files.
van_add_test(session/ManyFilesTest.cpp)
add_dependencies(ManyFilesTest vanlayout)
target_compile_definitions(ManyFilesTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>"
    VAN_MADE_EXAMPLES="${PROJECT_BINARY_DIR}/examples")
add_dependencies(ManyFilesTest examples)
