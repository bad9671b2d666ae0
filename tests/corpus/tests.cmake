# Real dictionaries, where they are at hand, through the command line.
van_add_test(corpus/CSProTextCorpusTest.cpp)
add_dependencies(CSProTextCorpusTest vanlayout)
target_compile_definitions(CSProTextCorpusTest PRIVATE VAN_TOOL="$<TARGET_FILE:vanlayout>")
