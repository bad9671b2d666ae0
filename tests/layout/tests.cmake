van_add_test(layout/ModelTest.cpp)
van_add_test(layout/LayoutJsonTest.cpp)
van_add_test(layout/ReaderTest.cpp)
van_add_test(layout/CSProCommonTest.cpp)
van_add_test(layout/DecodingTest.cpp)
van_add_test(layout/StatFileTextsTest.cpp)
van_add_test(layout/StatFileTest.cpp)
van_use_made_data(StatFileTest)

# The exact layout of files as JSON, for tests in other languages.
add_executable(print_layout layout/print_layout.cpp)
van_own_code(print_layout)
target_link_libraries(print_layout PRIVATE vanlayout_library)

# Statistical files, once more through a program that shares no code with the reader.
find_program(VAN_PYTHON python3)
if(VAN_PYTHON)
    enable_language(C)
    add_executable(plain_readstat layout/plain_readstat.c)
    target_link_libraries(plain_readstat PRIVATE ReadStat::ReadStat m)
    add_dependencies(plain_readstat made_test_data)
    add_test(NAME PlainReadStat COMMAND ${VAN_PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/layout/compare_plain.py
        $<TARGET_FILE:print_layout> $<TARGET_FILE:plain_readstat> ${made_data}
        ${CMAKE_CURRENT_SOURCE_DIR}/../../shared/corpus/spss ${CMAKE_CURRENT_SOURCE_DIR}/../../shared/corpus/stata)
    van_test_properties(PlainReadStat layout)
else()
    message(STATUS "No python3: layouts of statistical files are not compared with those of plain ReadStat")
endif()
