# The library as used by other projects: installed, with CMake and with pkg-config, or as a subdirectory of a project;
# and the symbols that it exports.
find_program(VAN_NM nm)
find_program(VAN_READELF readelf)
find_program(VAN_PKG_CONFIG NAMES pkg-config pkgconf)
set(package_flags ${CMAKE_CXX_FLAGS})
if(VAN_SANITIZERS)
    string(APPEND package_flags " -fsanitize=${VAN_SANITIZERS}")
endif()

# van_add_package_test(Name script.cmake variable=value...): one script of this directory.
function(van_add_package_test name script)
    list(TRANSFORM ARGN PREPEND -D)
    add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} ${ARGN} -P ${CMAKE_CURRENT_SOURCE_DIR}/package/${script})
    van_test_properties(${name} package)
    set_tests_properties(${name} PROPERTIES TIMEOUT 900)
endfunction()

set(package_build VERSION=${PROJECT_VERSION} GENERATOR=${CMAKE_GENERATOR} COMPILER=${CMAKE_CXX_COMPILER} BUILD_TYPE=$<CONFIG>
    "FLAGS=${package_flags}")
van_add_package_test(InstalledPackage run.cmake ${package_build} BINARY_DIR=${PROJECT_BINARY_DIR}
    SCRATCH=${CMAKE_CURRENT_BINARY_DIR}/package PKG_CONFIG=${VAN_PKG_CONFIG} READELF=${VAN_READELF})
van_add_package_test(EmbeddedProject embedded.cmake ${package_build} BUILD_TYPE=None PROJECT_DIR=${PROJECT_SOURCE_DIR}
    QT_MAJOR=${QT_VERSION_MAJOR}
    SCRATCH=${CMAKE_CURRENT_BINARY_DIR}/embedded)
van_add_package_test(ExamplePrograms reader.cmake ${package_build} BINARY_DIR=${PROJECT_BINARY_DIR}
    SCRATCH=${CMAKE_CURRENT_BINARY_DIR}/programs EXAMPLES=${PROJECT_SOURCE_DIR}/examples)
van_add_package_test(LayoutAlone layout-alone.cmake ${package_build} PROJECT_DIR=${PROJECT_SOURCE_DIR} QT_MAJOR=${QT_VERSION_MAJOR}
    SCRATCH=${CMAKE_CURRENT_BINARY_DIR}/layout-alone)
find_program(VAN_DPKG_DEB dpkg-deb)
find_program(VAN_DPKG dpkg)
find_program(VAN_DPKG_SHLIBDEPS dpkg-shlibdeps)
if(VAN_DPKG_DEB AND VAN_DPKG AND VAN_DPKG_SHLIBDEPS AND VAN_READELF AND EXISTS /var/lib/dpkg/status)
    van_add_package_test(DebianPackage deb.cmake CPACK=${CMAKE_CPACK_COMMAND} DPKG_DEB=${VAN_DPKG_DEB} DPKG=${VAN_DPKG} READELF=${VAN_READELF}
        BINARY_DIR=${PROJECT_BINARY_DIR} SCRATCH=${CMAKE_CURRENT_BINARY_DIR}/deb EXAMPLES=${PROJECT_SOURCE_DIR}/examples)
endif()
van_add_package_test(FindsReadStat readstat.cmake GENERATOR=${CMAKE_GENERATOR} MODULES=${PROJECT_SOURCE_DIR}/cmake
    PKG_CONFIG=${VAN_PKG_CONFIG} SCRATCH=${CMAKE_CURRENT_BINARY_DIR}/readstat)
van_add_package_test(ExportedSymbols symbols.cmake NM=${VAN_NM} LIBRARY=$<TARGET_FILE:model_VanAdmin>)
van_add_package_test(LayoutSymbols layout-symbols.cmake NM=${VAN_NM} READELF=${VAN_READELF} LIBRARY=$<TARGET_FILE:vanlayout_library>
    LIST=${CMAKE_CURRENT_SOURCE_DIR}/package/layout-symbols.txt)
van_add_package_test(AccessorSymbols ../model/symbols.cmake NM=${VAN_NM} LIBRARY=$<TARGET_FILE:model_VanAdmin>
    TABLE=${CMAKE_CURRENT_SOURCE_DIR}/model/accessors.txt)

foreach(test ExportedSymbols LayoutSymbols AccessorSymbols)
    set_tests_properties(${test} PROPERTIES LABELS symbols)
endforeach()

# The files for a desktop, with the programs that check them.
find_program(VAN_APPSTREAMCLI appstreamcli)
find_program(VAN_DESKTOP_FILE_VALIDATE desktop-file-validate)
find_program(VAN_UPDATE_MIME_DATABASE update-mime-database)
find_program(VAN_XMLLINT xmllint)
if(VAN_APPSTREAMCLI AND VAN_DESKTOP_FILE_VALIDATE AND VAN_UPDATE_MIME_DATABASE AND VAN_XMLLINT)
    van_add_test(package/DesktopTest.cpp)
    target_compile_definitions(DesktopTest PRIVATE VAN_DESKTOP="${PROJECT_SOURCE_DIR}/desktop"
        VAN_APPSTREAMCLI="${VAN_APPSTREAMCLI}" VAN_DESKTOP_FILE_VALIDATE="${VAN_DESKTOP_FILE_VALIDATE}"
        VAN_UPDATE_MIME_DATABASE="${VAN_UPDATE_MIME_DATABASE}" VAN_XMLLINT="${VAN_XMLLINT}")
else()
    message(STATUS "appstream, desktop-file-utils, shared-mime-info or libxml2-utils is missing: the files for a desktop are not tested")
endif()

# The packages that ./run and ./check install, and the tests that ./check --quick runs.
find_program(VAN_BASH bash)
find_program(VAN_GIT git)
if(VAN_BASH AND VAN_GIT)
    add_test(NAME ChangedTests COMMAND ${VAN_BASH} ${CMAKE_CURRENT_SOURCE_DIR}/package/changed-tests.sh ${PROJECT_SOURCE_DIR})
    van_test_properties(ChangedTests package)
endif()
if(VAN_BASH)
    add_test(NAME PackagesOfCommands COMMAND ${VAN_BASH} ${CMAKE_CURRENT_SOURCE_DIR}/package/packages.sh ${PROJECT_SOURCE_DIR})
    van_test_properties(PackagesOfCommands package)
endif()

# These build other programs, or look at the symbols of the library: counters are written for none of them.
van_exclude_from_coverage(package)
van_exclude_from_coverage(symbols)
