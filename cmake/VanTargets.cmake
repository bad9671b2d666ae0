# Common properties of all targets, and one function for each kind of target that occurs several times.

add_library(van_warnings INTERFACE)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    target_compile_options(van_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
        $<$<BOOL:${VAN_WARNINGS_AS_ERRORS}>:-Werror>)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    target_compile_options(van_warnings INTERFACE -Wduplicated-cond -Wlogical-op)
elseif(CMAKE_CXX_COMPILER_ID MATCHES Clang)
    target_compile_options(van_warnings INTERFACE -Wno-gnu-zero-variadic-macro-arguments) # for the macros of Qt Test
elseif(MSVC)
    target_compile_options(van_warnings INTERFACE /W4 /permissive- /utf-8 $<$<BOOL:${VAN_WARNINGS_AS_ERRORS}>:/WX>)
endif()

add_library(van_sanitizers INTERFACE)
if(VAN_SANITIZERS)
    target_compile_options(van_sanitizers INTERFACE -fsanitize=${VAN_SANITIZERS} -fno-omit-frame-pointer
        -fno-sanitize-recover=undefined)
    target_link_options(van_sanitizers INTERFACE -fsanitize=${VAN_SANITIZERS})
    if(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
        target_compile_options(van_sanitizers INTERFACE
            -fsanitize-ignorelist=${CMAKE_CURRENT_LIST_DIR}/sanitizers.ignorelist)
    endif()
endif()

# Properties of the code of the project: C++17 without extensions, and only marked symbols are exported.
function(van_own_code target)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    target_compile_features(${target} PUBLIC cxx_std_17)
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_BYTEARRAY)
    target_link_libraries(${target} PRIVATE van_warnings van_sanitizers)
endfunction()

# A faster linker for programs that are not installed, if it is available (VAN_FAST_LINK).
include(CheckCXXCompilerFlag)
add_library(van_fast_link INTERFACE)
if(VAN_FAST_LINK)
    set(CMAKE_REQUIRED_LINK_OPTIONS -fuse-ld=lld)
    check_cxx_compiler_flag("" VAN_HAS_LLD)
    unset(CMAKE_REQUIRED_LINK_OPTIONS)
    if(VAN_HAS_LLD)
        target_link_options(van_fast_link INTERFACE -fuse-ld=lld)
    endif()
endif()

# van_moc(Target Source.cpp): generates Source.moc, which the source includes, with one call of moc. AUTOMOC would add
# four build steps and one source to each test.
function(van_moc target source)
    get_filename_component(name ${source} NAME_WE)
    set(directory ${CMAKE_CURRENT_BINARY_DIR}/moc)
    set(predefined ${directory}/predefined.h)
    if(NOT TARGET van_moc_predefined)
        add_custom_command(OUTPUT ${predefined}
            COMMAND ${CMAKE_CXX_COMPILER} -dM -E -x c++ ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/empty.h -o ${predefined} VERBATIM)
        add_custom_target(van_moc_predefined DEPENDS ${predefined})
    endif()
    set(directories "$<TARGET_PROPERTY:${target},INCLUDE_DIRECTORIES>")
    file(GENERATE OUTPUT ${directory}/${name}.arguments CONTENT
        "$<$<BOOL:${directories}>:-I$<JOIN:${directories},\n-I>\n>--include\n${predefined}\n-o\n${directory}/${name}.moc\n${CMAKE_CURRENT_SOURCE_DIR}/${source}\n")
    add_custom_command(OUTPUT ${directory}/${name}.moc COMMAND ${VAN_QT}::moc @${directory}/${name}.arguments
        DEPENDS ${source} ${directory}/${name}.arguments ${predefined} VERBATIM)
    add_dependencies(${target} van_moc_predefined)
    target_sources(${target} PRIVATE ${directory}/${name}.moc)
    target_include_directories(${target} PRIVATE ${directory})
endfunction()

# The headers that most sources of the libraries and of the command include, compiled once for each of these targets
# (VAN_PRECOMPILED_LIBRARY_HEADERS). The presets dev, clang and bench do not use it, so that they find a missing include.
function(van_use_common_headers target)
    if(VAN_PRECOMPILED_LIBRARY_HEADERS)
        target_precompile_headers(${target} PRIVATE <QByteArray> <QFile> <QFileInfo> <QRegularExpression> <QStringList>
            <QVector> <algorithm> <array> <cmath> <functional> <map> <memory> <optional> <set> <string> <tuple> <vector>)
    endif()
endfunction()

# The headers that most tests include, compiled once for all of them (VAN_PRECOMPILED_HEADERS).
function(van_use_test_headers target)
    if(NOT VAN_PRECOMPILED_HEADERS)
        return()
    endif()
    if(NOT TARGET van_test_headers)
        file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/headers.cpp "")
        add_library(van_test_headers OBJECT ${CMAKE_CURRENT_BINARY_DIR}/headers.cpp)
        van_own_code(van_test_headers)
        target_link_libraries(van_test_headers PRIVATE ${VAN_QT}::Widgets ${VAN_QT}::Test)
        target_precompile_headers(van_test_headers PRIVATE <QtTest> <algorithm> <functional> <limits> <map> <memory>
            <random> <string> <vector>)
    endif()
    target_precompile_headers(${target} REUSE_FROM van_test_headers)
endfunction()

# van_add_test(cspro/SectionLinesTest.cpp): adds a Qt Test program, which CTest runs without a display. It can use the
# internal classes of src/, and of layout/ if it is in tests/layout/, tests/load/, tests/convert/ or tests/check/. Its label is
# the name of its directory.
function(van_add_test source)
    get_filename_component(name ${source} NAME_WE)
    get_filename_component(directory ${source} DIRECTORY)
    add_executable(${name} ${source})
    van_own_code(${name})
    van_moc(${name} ${source})
    van_use_test_headers(${name})
    target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../tests)
    target_compile_definitions(${name} PRIVATE
        VAN_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/data"
        VAN_EXAMPLES="${CMAKE_CURRENT_SOURCE_DIR}/../examples"
        VAN_CORPUS="${VAN_CORPUS_DIR}")
    target_link_libraries(${name} PRIVATE van_objects ${VAN_QT}::Test van_fast_link)
    if(directory MATCHES "^(layout|load|convert|check)$")
        target_link_libraries(${name} PRIVATE vanlayout_objects RapidJSON::RapidJSON)
    endif()
    add_test(NAME ${name} COMMAND ${name})
    van_test_properties(${name} ${directory})
endfunction()

# Sets label, timeout and environment of a test that CTest runs. All leaks are reported except those in the list
# SUPPRESSIONS; the default is the list of objects that stay alive on purpose.
function(van_test_properties name label)
    cmake_parse_arguments(arg "" "SUPPRESSIONS" "" ${ARGN})
    if(NOT arg_SUPPRESSIONS)
        set(arg_SUPPRESSIONS ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../tests/lsan.supp)
    endif()
    set(environment QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
        LSAN_OPTIONS=suppressions=${arg_SUPPRESSIONS}:print_suppressions=0)
    set_tests_properties(${name} PROPERTIES LABELS "${label}" TIMEOUT 300 ENVIRONMENT "${environment}")
endfunction()

# van_exclude_from_coverage(tool): the tests of this label, or the test of this name, are not run for the coverage of
# src/. The reason is at the call.
function(van_exclude_from_coverage label_or_name)
    get_property(tests DIRECTORY PROPERTY TESTS)
    foreach(test IN LISTS tests)
        get_property(labels TEST ${test} PROPERTY LABELS)
        if(label_or_name IN_LIST labels OR label_or_name STREQUAL test)
            set_property(TEST ${test} APPEND PROPERTY LABELS uncounted)
        endif()
    endforeach()
endfunction()

# van_add_bench(ReadBench.cpp): adds a Google Benchmark program.
function(van_add_bench source)
    get_filename_component(name ${source} NAME_WE)
    add_executable(${name} ${source})
    van_own_code(${name})
    target_link_libraries(${name} PRIVATE van_objects benchmark::benchmark)
endfunction()

# van_add_fuzzer(StataFuzzer.cpp DICTIONARY stata.dict SEEDS a/*.dta MADE_SEEDS *.dta): adds a libFuzzer program to the
# target `fuzzers`. Its seeds are copied to one directory: the files SEEDS, the files MADE_SEEDS that are generated for
# the tests, and those in the directories of its name in seeds/ and finds/. LAYOUT links the reader of exact layouts.
# The test continues for VAN_FUZZ_SECONDS after the seeds.
function(van_add_fuzzer source)
    cmake_parse_arguments(arg "LAYOUT" "DICTIONARY" "SEEDS;MADE_SEEDS" ${ARGN})
    get_filename_component(name ${source} NAME_WE)
    add_executable(${name} EXCLUDE_FROM_ALL ${source} Setup.cpp)
    van_own_code(${name})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests) # support/
    if(arg_LAYOUT)
        target_link_libraries(${name} PRIVATE vanlayout_objects)
    endif()
    target_link_libraries(${name} PRIVATE van_objects -fsanitize=fuzzer)
    target_compile_options(${name} PRIVATE -fsanitize=fuzzer)

    set(seeds ${CMAKE_CURRENT_BINARY_DIR}/seeds/${name})
    file(GLOB seed_files CONFIGURE_DEPENDS ${arg_SEEDS} seeds/${name}/* finds/${name}/*)
    set(made "")
    if(arg_MADE_SEEDS)
        set(made made_test_data)
        list(TRANSFORM arg_MADE_SEEDS PREPEND ${VAN_MADE_DATA}/)
    endif()
    add_custom_command(OUTPUT ${seeds}.stamp
        COMMAND ${CMAKE_COMMAND} -DTARGET=${seeds} "-DFILES=${seed_files}" "-DPATTERNS=${arg_MADE_SEEDS}"
            -P ${CMAKE_CURRENT_SOURCE_DIR}/gather-seeds.cmake
        COMMAND ${CMAKE_COMMAND} -E touch ${seeds}.stamp
        DEPENDS ${seed_files} gather-seeds.cmake ${made} VERBATIM)
    add_custom_target(${name}Seeds DEPENDS ${seeds}.stamp)
    add_dependencies(fuzzers ${name} ${name}Seeds)

    set(found ${CMAKE_CURRENT_BINARY_DIR}/found/${name})
    file(MAKE_DIRECTORY ${found})
    set(options -max_total_time=${VAN_FUZZ_SECONDS} -timeout=10 -rss_limit_mb=4096 -max_len=65536 -artifact_prefix=${found}/find-)
    if(arg_DICTIONARY)
        list(APPEND options -dict=${CMAKE_CURRENT_SOURCE_DIR}/${arg_DICTIONARY})
    endif()
    add_test(NAME ${name} COMMAND ${name} ${options} ${found} ${seeds})
    van_test_properties(${name} fuzz SUPPRESSIONS ${CMAKE_CURRENT_SOURCE_DIR}/lsan.supp)
    set_tests_properties(${name} PROPERTIES TIMEOUT 0)
endfunction()
