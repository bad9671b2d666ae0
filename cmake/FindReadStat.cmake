# Finds ReadStat, which has no CMake package. Defines the target ReadStat::ReadStat, and ReadStat_VERSION.
#
# The version is that of the pkg-config file, else that in the name of the library file, such as libreadstat.so.1.1.8.
# It is empty if neither states it, for example with a static library. Sources have it as the number
# VAN_READSTAT_RELEASE, which is 0 if the version is not known.
find_package(PkgConfig QUIET)
if(PKG_CONFIG_FOUND)
    pkg_check_modules(PC_ReadStat QUIET readstat)
endif()
find_path(ReadStat_INCLUDE_DIR readstat.h HINTS ${PC_ReadStat_INCLUDE_DIRS})
find_library(ReadStat_LIBRARY readstat HINTS ${PC_ReadStat_LIBRARY_DIRS})

set(ReadStat_VERSION "${PC_ReadStat_VERSION}")
if(ReadStat_LIBRARY AND NOT ReadStat_VERSION)
    file(REAL_PATH "${ReadStat_LIBRARY}" ReadStat_files)
    if(NOT ReadStat_files MATCHES "[0-9]$") # not a link: the file with the version is in the same directory
        file(GLOB ReadStat_files "${ReadStat_LIBRARY}.*.*.*")
    endif()
    if(ReadStat_files MATCHES "^[^;]*\\.so\\.([0-9]+\\.[0-9]+\\.[0-9]+)$")
        set(ReadStat_VERSION ${CMAKE_MATCH_1})
    endif()
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(ReadStat REQUIRED_VARS ReadStat_LIBRARY ReadStat_INCLUDE_DIR
    VERSION_VAR ReadStat_VERSION REASON_FAILURE_MESSAGE "on Debian it is libreadstat-dev")

if(ReadStat_FOUND AND NOT TARGET ReadStat::ReadStat)
    set(ReadStat_release 0)
    if(ReadStat_VERSION MATCHES "^([0-9]+)\\.([0-9]+)\\.([0-9]+)")
        math(EXPR ReadStat_release "(${CMAKE_MATCH_1} << 16) | (${CMAKE_MATCH_2} << 8) | ${CMAKE_MATCH_3}")
    endif()
    add_library(ReadStat::ReadStat UNKNOWN IMPORTED)
    set_target_properties(ReadStat::ReadStat PROPERTIES IMPORTED_LOCATION "${ReadStat_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${ReadStat_INCLUDE_DIR}"
        INTERFACE_COMPILE_DEFINITIONS VAN_READSTAT_RELEASE=${ReadStat_release})
endif()
mark_as_advanced(ReadStat_INCLUDE_DIR ReadStat_LIBRARY)
