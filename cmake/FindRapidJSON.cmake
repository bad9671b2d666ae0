# Finds RapidJSON, by the package file that it brings or by its headers: target RapidJSON::RapidJSON. The names in the
# package file differ between its releases, and a release has no target.
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
