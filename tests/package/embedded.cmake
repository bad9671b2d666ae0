# Builds the project as a subdirectory of another one, without its tests: all of it, then without the tool, then the
# library of the exact layout alone.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)
file(REMOVE_RECURSE ${SCRATCH})
set(build ${SCRATCH}/build)

# Fails if a file below the build directory exists, or does not exist.
function(expect_file name)
    if(NOT EXISTS ${build}/${name})
        message(FATAL_ERROR "${name} was not built")
    endif()
endfunction()
function(expect_no_file pattern)
    file(GLOB_RECURSE found ${build}/${pattern})
    if(found)
        message(FATAL_ERROR "these were built: ${found}")
    endif()
endfunction()

# Builds again with further options. Programs and libraries of the former build are removed before.
function(build_again)
    file(GLOB_RECURSE former ${build}/van/*.so* ${build}/van/*.a)
    file(REMOVE ${former} ${build}/consumer ${build}/layout_consumer ${build}/van/tools/vanlayout/vanlayout)
    must(${CMAKE_COMMAND} ${ARGN} ${build})
    must(${CMAKE_COMMAND} --build ${build})
endfunction()

build_consumer(${build} -DVAN_DIRECTORY=${PROJECT_DIR} -DBUILD_TESTING=OFF -DQT_DEFAULT_MAJOR_VERSION=${QT_MAJOR})
check_consumers(${build})
expect_file(van/tools/vanlayout/vanlayout)
expect_no_file(*Test)

# The other project installs nothing of this one.
must(${CMAKE_COMMAND} --install ${build} --prefix ${build}/prefix)
expect_no_file(prefix/*)

build_again(-DVAN_BUILD_TOOL=OFF)
check_consumers(${build})
expect_no_file(van/tools/vanlayout)

build_again(-DVAN_BUILD_WIDGETS=OFF)
check_layout_consumer(${build})
expect_no_file(libmodel_VanAdmin*)
expect_no_file(consumer)
