# Finds RapidJSON by its CMake package or by its headers, and defines the target RapidJSON::RapidJSON. The variables of
# the package differ between the releases of RapidJSON, and the package of a release defines no target.
find_package(RapidJSON CONFIG QUIET)
find_path(RapidJSON_INCLUDE_DIR rapidjson/writer.h
    HINTS ${RapidJSON_INCLUDE_DIRS} ${RAPIDJSON_INCLUDE_DIRS} ${RapidJSON_INCLUDE_DIR})

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(RapidJSON REQUIRED_VARS RapidJSON_INCLUDE_DIR VERSION_VAR RapidJSON_VERSION
    REASON_FAILURE_MESSAGE "on Debian it is rapidjson-dev")

if(RapidJSON_FOUND AND NOT TARGET RapidJSON::RapidJSON)
    add_library(RapidJSON::RapidJSON INTERFACE IMPORTED)
    set_target_properties(RapidJSON::RapidJSON PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "${RapidJSON_INCLUDE_DIR}")
endif()
mark_as_advanced(RapidJSON_INCLUDE_DIR)
