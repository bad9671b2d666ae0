# The library as others use it: headers, library, tool, CMake package and pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS model_VanAdmin EXPORT model_VanAdminTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/model_VanAdmin)
install(TARGETS vanlayout RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
set(completions ${PROJECT_BINARY_DIR}/tools/vanlayout/completion)
install(FILES ${completions}/bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME vanlayout)
install(FILES ${completions}/fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d RENAME vanlayout.fish)
install(FILES ${completions}/zsh DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions RENAME _vanlayout)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/src/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/model_VanAdmin
    FILES_MATCHING PATTERN "*.h" PATTERN "*_p.h" EXCLUDE)
install(FILES ${PROJECT_BINARY_DIR}/src/include/model_vanadmin_export.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/model_VanAdmin)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/model_VanAdmin)
install(EXPORT model_VanAdminTargets NAMESPACE model_VanAdmin:: DESTINATION ${package_dir})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/model_VanAdminConfig.cmake.in
    ${PROJECT_BINARY_DIR}/model_VanAdminConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/model_VanAdminConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/model_VanAdminConfig.cmake ${PROJECT_BINARY_DIR}/model_VanAdminConfigVersion.cmake
    DESTINATION ${package_dir})

# Relative to the file, so that an installation can be moved.
file(RELATIVE_PATH VAN_PREFIX_FROM_PC /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${CMAKE_CURRENT_LIST_DIR}/model_VanAdmin.pc.in ${PROJECT_BINARY_DIR}/model_VanAdmin.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/model_VanAdmin.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# The library of the exact layout.
install(TARGETS vanlayout_library EXPORT vanlayoutTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vanlayout)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/layout/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vanlayout
    FILES_MATCHING PATTERN "*.h" PATTERN "*_p.h" EXCLUDE)
install(FILES ${PROJECT_BINARY_DIR}/layout/include/vanlayout_export.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vanlayout)

set(layout_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/vanlayout)
install(EXPORT vanlayoutTargets NAMESPACE vanlayout:: DESTINATION ${layout_package_dir})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/vanlayoutConfig.cmake.in
    ${PROJECT_BINARY_DIR}/vanlayoutConfig.cmake INSTALL_DESTINATION ${layout_package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/vanlayoutConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/vanlayoutConfig.cmake ${PROJECT_BINARY_DIR}/vanlayoutConfigVersion.cmake
    DESTINATION ${layout_package_dir})
configure_file(${CMAKE_CURRENT_LIST_DIR}/vanlayout.pc.in ${PROJECT_BINARY_DIR}/vanlayout.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/vanlayout.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
