# The library of the exact layout can be configured on its own if Qt has no Gui and no Widgets, and no part of it is
# compiled with them. layout-symbols.cmake checks the libraries that it is linked with.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)
file(REMOVE_RECURSE ${SCRATCH})
set(absent Qt5Gui Qt5Widgets Qt6Gui Qt6Widgets CLI11)
list(TRANSFORM absent REPLACE "(.+)" "-DCMAKE_DISABLE_FIND_PACKAGE_\\1=ON")
must(${CMAKE_COMMAND} -S ${PROJECT_DIR} -B ${SCRATCH} -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${COMPILER}
    -DVAN_BUILD_WIDGETS=OFF -DQT_DEFAULT_MAJOR_VERSION=${QT_MAJOR} -DCMAKE_EXPORT_COMPILE_COMMANDS=ON ${absent})
file(READ ${SCRATCH}/compile_commands.json commands)
if(NOT commands MATCHES "layout/read/Reader\\.cpp" OR commands MATCHES "QtGui|QtWidgets|src/import/|tools/vanlayout/")
    message(FATAL_ERROR "more than the library is compiled, or other parts of Qt are used: ${SCRATCH}/compile_commands.json")
endif()

# Without VAN_INSTALL nothing is installed.
must(${CMAKE_COMMAND} -DVAN_INSTALL=OFF ${SCRATCH})
must(${CMAKE_COMMAND} --install ${SCRATCH} --prefix ${SCRATCH}/prefix)
file(GLOB_RECURSE installed ${SCRATCH}/prefix/*)
if(installed)
    message(FATAL_ERROR "installed without VAN_INSTALL: ${installed}")
endif()
