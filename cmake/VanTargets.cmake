# What every target of the project shares, and one function for each kind of target that comes in numbers.

add_library(van_warnings INTERFACE)
target_compile_options(van_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
    $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments> # Qt Test's own macros
    $<$<BOOL:${VAN_WARNINGS_AS_ERRORS}>:-Werror>)

add_library(van_sanitizers INTERFACE)
if(VAN_SANITIZERS)
    target_compile_options(van_sanitizers INTERFACE -fsanitize=${VAN_SANITIZERS} -fno-omit-frame-pointer
        -fno-sanitize-recover=undefined)
    target_link_options(van_sanitizers INTERFACE -fsanitize=${VAN_SANITIZERS})
endif()

# Properties of code that is ours: C++17 without extensions, nothing exported that is not marked.
function(van_own_code target)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    target_compile_features(${target} PUBLIC cxx_std_17)
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_BYTEARRAY)
    target_link_libraries(${target} PRIVATE van_warnings van_sanitizers)
endfunction()

# van_add_test(cspro/SectionLinesTest.cpp): one Qt Test program, run by CTest without a display. It sees the
# internal classes, and is labelled with its folder.
function(van_add_test source)
    get_filename_component(name ${source} NAME_WE)
    get_filename_component(room ${source} DIRECTORY)
    add_executable(${name} ${source})
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    van_own_code(${name})
    target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../tests)
    target_compile_definitions(${name} PRIVATE
        VAN_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/data"
        VAN_EXAMPLES="${CMAKE_CURRENT_SOURCE_DIR}/../examples"
        VAN_CORPUS="${CMAKE_CURRENT_SOURCE_DIR}/../../shared/corpus")
    target_link_libraries(${name} PRIVATE van_objects Qt5::Test)
    add_test(NAME ${name} COMMAND ${name})
    van_test_properties(${name} ${room})
endfunction()

# Label, timeout and environment of a test that CTest runs.
function(van_test_properties name label)
    set(environment QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
        LSAN_OPTIONS=suppressions=${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../tests/lsan.supp:print_suppressions=0)
    set_tests_properties(${name} PROPERTIES LABELS "${label}" TIMEOUT 300 ENVIRONMENT "${environment}")
endfunction()

# van_add_bench(ReadBench.cpp): one Google Benchmark program.
function(van_add_bench source)
    get_filename_component(name ${source} NAME_WE)
    add_executable(${name} ${source})
    van_own_code(${name})
    target_link_libraries(${name} PRIVATE van_objects benchmark::benchmark)
endfunction()
