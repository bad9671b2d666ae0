# The command line, run as a user runs it.
van_add_test(tool/VanlayoutTest.cpp)
add_dependencies(VanlayoutTest vanlayout)
target_compile_definitions(VanlayoutTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>" VAN_VERSION="${PROJECT_VERSION}")
van_use_made_data(VanlayoutTest)

van_add_test(tool/VanlayoutLookupTest.cpp)
add_dependencies(VanlayoutLookupTest vanlayout)
target_compile_definitions(VanlayoutLookupTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")
