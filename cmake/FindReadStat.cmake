# Finds ReadStat, which brings no package file of its own: target ReadStat::ReadStat.
find_path(ReadStat_INCLUDE_DIR readstat.h)
find_library(ReadStat_LIBRARY readstat)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(ReadStat REQUIRED_VARS ReadStat_LIBRARY ReadStat_INCLUDE_DIR
    REASON_FAILURE_MESSAGE "on Debian it is libreadstat-dev")

if(ReadStat_FOUND AND NOT TARGET ReadStat::ReadStat)
    add_library(ReadStat::ReadStat UNKNOWN IMPORTED)
    set_target_properties(ReadStat::ReadStat PROPERTIES IMPORTED_LOCATION "${ReadStat_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${ReadStat_INCLUDE_DIR}")
endif()
mark_as_advanced(ReadStat_INCLUDE_DIR ReadStat_LIBRARY)
