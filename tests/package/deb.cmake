# Makes the Debian package, and looks at what it needs and brings.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)
file(REMOVE_RECURSE ${SCRATCH})
must(${CPACK} --config ${BINARY_DIR}/CPackConfig.cmake -B ${SCRATCH})
file(GLOB package ${SCRATCH}/*.deb)
list(LENGTH package count)
if(NOT count EQUAL 1)
    message(FATAL_ERROR "no package, or several: ${package}")
endif()

execute_process(COMMAND ${DPKG_DEB} --field ${package} Depends RESULT_VARIABLE status OUTPUT_VARIABLE depends)
foreach(needed libqt5core5a libqt5gui5 libqt5widgets5 libreadstat1 libsqlite3-0 libsodium23 libstdc\\+\\+6 libc6)
    if(NOT status EQUAL 0 OR NOT depends MATCHES "${needed}")
        message(FATAL_ERROR "the package does not depend on ${needed}: ${depends}")
    endif()
endforeach()

must(${DPKG_DEB} --extract ${package} ${SCRATCH}/root)
foreach(file bin/vanlayout share/man/man1/vanlayout.1 share/bash-completion/completions/vanlayout
        share/fish/vendor_completions.d/vanlayout.fish share/zsh/vendor-completions/_vanlayout
        include/model_VanAdmin/import/DataImport.h include/vanlayout/read/Reader.h)
    if(NOT EXISTS ${SCRATCH}/root/usr/${file})
        message(FATAL_ERROR "the package has no ${file}")
    endif()
endforeach()
# The tool finds the libraries beside its folder.
must(${SCRATCH}/root/usr/bin/vanlayout show ${EXAMPLES}/census.dcf)
