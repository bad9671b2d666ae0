# Installs both libraries, each with its headers, CMake package and pkg-config file, and the command. The components are
# layout, layout-dev, importers, importers-dev and tool.
include(CMakePackageConfigHelpers)

# The prefix is relative to the pkg-config file, so that an installation can be moved.
file(RELATIVE_PATH VAN_PREFIX_FROM_PC /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)

# van_install_library(Target Package component directory): installs a library, the headers of `directory` and those
# generated for it, and its CMake package and pkg-config file, whose templates have the name of the package.
function(van_install_library target package component directory)
    set(headers ${CMAKE_INSTALL_INCLUDEDIR}/${package})
    set(config ${CMAKE_INSTALL_LIBDIR}/cmake/${package})
    set(made ${PROJECT_BINARY_DIR}/${package})
    install(TARGETS ${target} EXPORT ${package}Targets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${component} NAMELINK_COMPONENT ${component}-dev
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${component}-dev
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${component}
        INCLUDES DESTINATION ${headers})
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/${directory}/ DESTINATION ${headers} COMPONENT ${component}-dev
        FILES_MATCHING PATTERN "*.h" PATTERN "*_p.h" EXCLUDE)
    install(DIRECTORY ${PROJECT_BINARY_DIR}/${directory}/include/ DESTINATION ${headers} COMPONENT ${component}-dev
        FILES_MATCHING PATTERN "*.h")

    install(EXPORT ${package}Targets NAMESPACE ${package}:: DESTINATION ${config} COMPONENT ${component}-dev)
    set(templates ${CMAKE_CURRENT_FUNCTION_LIST_DIR})
    configure_package_config_file(${templates}/${package}Config.cmake.in ${made}Config.cmake
        INSTALL_DESTINATION ${config})
    write_basic_package_version_file(${made}ConfigVersion.cmake COMPATIBILITY SameMinorVersion)
    install(FILES ${made}Config.cmake ${made}ConfigVersion.cmake DESTINATION ${config} COMPONENT ${component}-dev)
    configure_file(${templates}/${package}.pc.in ${made}.pc @ONLY)
    install(FILES ${made}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT ${component}-dev)
endfunction()

van_install_library(vanlayout_library vanlayout layout layout)
if(VAN_BUILD_WIDGETS)
    van_install_library(model_VanAdmin model_VanAdmin importers src)
endif()

if(VAN_BUILD_TOOL)
    include(${CMAKE_CURRENT_LIST_DIR}/VanInstallTool.cmake)
endif()
