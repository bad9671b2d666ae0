van_add_test(layout/ModelTest.cpp)
van_add_test(layout/LayoutJsonTest.cpp)
van_add_test(layout/ReaderTest.cpp)
van_add_test(layout/CSProCommonTest.cpp)
van_add_test(layout/DecodingTest.cpp)

# The exact layout of files as JSON, for tests in other languages.
add_executable(print_layout layout/print_layout.cpp)
van_own_code(print_layout)
target_link_libraries(print_layout PRIVATE vanlayout_library)
