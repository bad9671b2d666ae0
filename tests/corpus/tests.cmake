# Real dictionaries, if they are available, read with the command line.
van_add_test(corpus/CSProTextCorpusTest.cpp)
add_dependencies(CSProTextCorpusTest vanlayout)
target_compile_definitions(CSProTextCorpusTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")

# A second JSON reader, which shows the contents of a file.
find_package(nlohmann_json QUIET)
if(nlohmann_json_FOUND)
    van_add_test(corpus/CSProJsonCorpusTest.cpp)
    add_dependencies(CSProJsonCorpusTest vanlayout)
    target_compile_definitions(CSProJsonCorpusTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")
    target_link_libraries(CSProJsonCorpusTest PRIVATE nlohmann_json::nlohmann_json)
else()
    message(STATUS "nlohmann-json is not installed: the corpus of JSON dictionaries is not tested")
endif()

van_add_test(corpus/StatisticalCorpusTest.cpp)
add_dependencies(StatisticalCorpusTest vanlayout)
target_compile_definitions(StatisticalCorpusTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")

# The figures are the same with and without the corpus.
van_exclude_from_coverage(corpus)
