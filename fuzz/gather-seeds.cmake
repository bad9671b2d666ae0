# Copies FILES, and the files that match PATTERNS, to the directory TARGET.
file(REMOVE_RECURSE ${TARGET})
file(MAKE_DIRECTORY ${TARGET})
if(PATTERNS)
    file(GLOB matching ${PATTERNS})
endif()
foreach(seed IN LISTS FILES matching)
    file(COPY ${seed} DESTINATION ${TARGET})
endforeach()
