# cpack: one Debian package with library, headers, tool and manual page.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME model-vanadmin)
set(CPACK_PACKAGE_VENDOR "model_VanAdmin")
set(CPACK_PACKAGE_CONTACT "model_VanAdmin <model-vanadmin@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)       # what library and tool are linked with
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS qtbase5-dev) # for those who build against it
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
include(CPack)
