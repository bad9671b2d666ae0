# Builds the project as a subdirectory of another one, without its tests.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)
file(REMOVE_RECURSE ${SCRATCH})
build_consumer(${SCRATCH}/build -DVAN_DIRECTORY=${PROJECT_DIR} -DBUILD_TESTING=OFF
    -DQT_DEFAULT_MAJOR_VERSION=${QT_MAJOR})
check_consumers(${SCRATCH}/build)
if(NOT EXISTS ${SCRATCH}/build/van/tools/vanlayout/vanlayout)
    message(FATAL_ERROR "the tool was not built")
endif()
file(GLOB_RECURSE tests ${SCRATCH}/build/*Test)
if(tests)
    message(FATAL_ERROR "tests were built: ${tests}")
endif()
