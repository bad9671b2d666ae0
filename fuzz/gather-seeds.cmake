# Copies FILES, and what the PATTERNS match, to the folder TARGET.
file(REMOVE_RECURSE ${TARGET})
file(MAKE_DIRECTORY ${TARGET})
if(PATTERNS)
    file(GLOB matching ${PATTERNS})
endif()
foreach(seed IN LISTS FILES matching)
    file(COPY ${seed} DESTINATION ${TARGET})
endforeach()
