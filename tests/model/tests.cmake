# The records of a database. Their accessors are listed in a table.
set(accessor_table ${CMAKE_CURRENT_SOURCE_DIR}/model/accessors.txt)
set(accessor_rows ${CMAKE_CURRENT_BINARY_DIR}/model/accessor-rows.inc)
add_custom_command(OUTPUT ${accessor_rows}
    COMMAND ${CMAKE_COMMAND} -DTABLE=${accessor_table} -DOUT=${accessor_rows} -P ${CMAKE_CURRENT_SOURCE_DIR}/model/accessors.cmake
    DEPENDS ${accessor_table} ${CMAKE_CURRENT_SOURCE_DIR}/model/accessors.cmake VERBATIM)
add_custom_target(accessor_rows DEPENDS ${accessor_rows})
van_add_test(model/AccessorsTest.cpp)
add_dependencies(AccessorsTest accessor_rows)
target_include_directories(AccessorsTest PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/model)
van_add_test(model/RecordsTest.cpp)
van_add_test(model/OverridesTest.cpp)
van_add_test(model/AllocationsTest.cpp)
# TVpEntity has virtual operations and no virtual destructor, which is intended; containers destroy it by its own type.
if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
    set_source_files_properties(model/AccessorsTest.cpp model/RecordsTest.cpp PROPERTIES
        COMPILE_OPTIONS -Wno-delete-non-abstract-non-virtual-dtor)
endif()
