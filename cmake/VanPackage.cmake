# cpack makes one Debian package for each component: the libraries, the files to build programs with each, and the
# command.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME model-vanadmin)
set(CPACK_PACKAGE_VENDOR "model_VanAdmin")
set(CPACK_PACKAGE_CONTACT "model_VanAdmin <model-vanadmin@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

# van_debian_package(component package section summary dependency...): describes the package of a component for CPack.
# Packages with programs or libraries also depend on the packages of the libraries that they are linked with, see below.
macro(van_debian_package component package section summary)
    list(APPEND CPACK_COMPONENTS_ALL ${component})
    string(TOUPPER ${component} upper)
    string(REPLACE ";" ", " depends "${ARGN}")
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}")
    set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${depends}")
endmacro()

set(qt_package qtbase5-dev)
if(QT_VERSION_MAJOR EQUAL 6)
    set(qt_package qt6-base-dev)
endif()
set(this_version "(= ${PROJECT_VERSION})")
van_debian_package(layout libvanlayout0 libs "Reads the exact layout of census and survey data files")
van_debian_package(layout-dev libvanlayout-dev libdevel "Files to build programs with libvanlayout"
    "libvanlayout0 ${this_version}" ${qt_package})
if(VAN_BUILD_WIDGETS)
    van_debian_package(importers libmodel-vanadmin0 libs "${PROJECT_DESCRIPTION}")
    van_debian_package(importers-dev libmodel-vanadmin-dev libdevel "Files to build programs with libmodel_VanAdmin"
        "libmodel-vanadmin0 ${this_version}" ${qt_package})
endif()
if(VAN_BUILD_TOOL)
    van_debian_package(tool vanlayout science "Shows, compares and exports the layout of census and survey data files"
        "libvanlayout0 ${this_version}" "libmodel-vanadmin0 ${this_version}")
endif()

set(CPACK_DEBIAN_TOOL_PACKAGE_RECOMMENDS xdg-utils) # xdg-open, for codebook --open

# dpkg-shlibdeps finds the libraries of the project in the build directory, since they are in no installed package.
foreach(component LAYOUT IMPORTERS TOOL)
    set(CPACK_DEBIAN_${component}_PACKAGE_SHLIBDEPS ON)
endforeach()
foreach(component LAYOUT IMPORTERS)
    set(CPACK_DEBIAN_${component}_PACKAGE_GENERATE_SHLIBS ON)
endforeach()
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/src ${PROJECT_BINARY_DIR}/layout)
include(CPack)
