# Builds the Debian packages, checks the dependencies and files of each, and installs them into a separate directory.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)
file(REMOVE_RECURSE ${SCRATCH})
must(${CPACK} --config ${BINARY_DIR}/CPackConfig.cmake -B ${SCRATCH}/made)

# check_package(name needed... HAS file...): the package exists, depends on these and has these files.
function(check_package name)
    cmake_parse_arguments(arg "" "" "NEEDS;NEEDS_NOT;HAS;HAS_NOT" ${ARGN})
    file(GLOB package ${SCRATCH}/made/${name}_*.deb)
    list(LENGTH package count)
    if(NOT count EQUAL 1)
        message(FATAL_ERROR "no package ${name}, or several: ${package}")
    endif()
    execute_process(COMMAND ${DPKG_DEB} --field ${package} Depends COMMAND_ERROR_IS_FATAL ANY OUTPUT_VARIABLE depends)
    foreach(needed IN LISTS arg_NEEDS)
        if(NOT depends MATCHES "(^|, )${needed}( |,|\n|$)")
            message(FATAL_ERROR "${name} does not depend on ${needed}: ${depends}")
        endif()
    endforeach()
    foreach(needed IN LISTS arg_NEEDS_NOT)
        if(depends MATCHES "${needed}")
            message(FATAL_ERROR "${name} depends on ${needed}: ${depends}")
        endif()
    endforeach()
    execute_process(COMMAND ${DPKG_DEB} --contents ${package} COMMAND_ERROR_IS_FATAL ANY OUTPUT_VARIABLE contents)
    foreach(file IN LISTS arg_HAS)
        if(NOT contents MATCHES " \\./usr/${file}( -> [^\n]*)?\n")
            message(FATAL_ERROR "${name} has no ${file}:\n${contents}")
        endif()
    endforeach()
    foreach(file IN LISTS arg_HAS_NOT)
        if(contents MATCHES " \\./usr/${file}")
            message(FATAL_ERROR "${name} has ${file}:\n${contents}")
        endif()
    endforeach()
    set(${name} ${package} PARENT_SCOPE)
endfunction()

set(tool_files bin/ share/man share/bash-completion)
check_package(libvanlayout0 NEEDS libc6 libqt[56]core[56][a-z0-9]* libreadstat1 libsodium23 libsqlite3-0 "libstdc\\+\\+6"
    NEEDS_NOT qt[56]gui qt[56]widgets HAS "lib[^\n]*/libvanlayout\\.so\\.0" HAS_NOT include/ ${tool_files})
check_package(libmodel-vanadmin0 NEEDS libc6 libqt[56]core[56][a-z0-9]* libqt[56]widgets[56][a-z0-9]* libreadstat1 libsodium23
    HAS "lib[^\n]*/libmodel_VanAdmin\\.so\\.0" HAS_NOT include/ ${tool_files})
check_package(libvanlayout-dev NEEDS "libvanlayout0 \\(= [0-9.]+\\)" "(qtbase5|qt6-base)-dev"
    HAS include/vanlayout/read/Reader\\.h include/vanlayout/vanlayout_version\\.h "lib[^\n]*/libvanlayout\\.so"
        "lib[^\n]*/pkgconfig/vanlayout\\.pc" "lib[^\n]*/cmake/vanlayout/vanlayoutConfig\\.cmake"
    HAS_NOT include/model_VanAdmin "lib[^\n]*/libvanlayout\\.so\\.0 " ${tool_files})
check_package(libmodel-vanadmin-dev NEEDS "libmodel-vanadmin0 \\(= [0-9.]+\\)" "(qtbase5|qt6-base)-dev"
    HAS include/model_VanAdmin/import/DataImport\\.h include/model_VanAdmin/model_vanadmin_version\\.h
        "lib[^\n]*/pkgconfig/model_VanAdmin\\.pc"
    HAS_NOT include/vanlayout ${tool_files})
check_package(vanlayout NEEDS "libvanlayout0 \\(= [0-9.]+\\)" "libmodel-vanadmin0 \\(= [0-9.]+\\)" libqt[56]core[56][a-z0-9]*
    HAS bin/vanlayout share/man/man1/vanlayout\\.1 share/bash-completion/completions/vanlayout
        share/fish/vendor_completions\\.d/vanlayout\\.fish share/zsh/vendor-completions/_vanlayout
        share/applications/org\\.vanlayout\\.vanlayout\\.desktop share/metainfo/org\\.vanlayout\\.vanlayout\\.metainfo\\.xml
        share/mime/packages/vanlayout\\.xml share/icons/hicolor/scalable/apps/org\\.vanlayout\\.vanlayout\\.svg
    HAS_NOT include/ "lib[^\n]*\\.so")

# An empty system that has the packages of this one: the dependencies of installed packages must be among them. Only an
# administrator may install packages.
set(root ${SCRATCH}/root)
file(MAKE_DIRECTORY ${root}/var/lib/dpkg/info ${root}/var/lib/dpkg/updates)
file(COPY /var/lib/dpkg/status DESTINATION ${root}/var/lib/dpkg)
set(install ${DPKG} --root=${root} --force-not-root --force-script-chrootless --no-triggers --log=${SCRATCH}/log --install)
execute_process(COMMAND ${install} ${vanlayout} RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE problem)
if(status EQUAL 0 OR NOT problem MATCHES "libvanlayout0")
    message(FATAL_ERROR "vanlayout was installed without its libraries: ${problem}")
endif()
must(${install} ${libvanlayout0} ${libmodel-vanadmin0} ${libvanlayout-dev} ${libmodel-vanadmin-dev} ${vanlayout})

# The installed tool runs with the installed libraries, and contains no path to them.
execute_process(COMMAND ${READELF} -d ${root}/usr/bin/vanlayout COMMAND_ERROR_IS_FATAL ANY OUTPUT_VARIABLE dynamic)
if(dynamic MATCHES "RUNPATH|RPATH")
    message(FATAL_ERROR "the tool has a path of its own:\n${dynamic}")
endif()
file(GLOB_RECURSE library ${root}/usr/lib*/libvanlayout.so.0)
get_filename_component(libraries ${library} DIRECTORY)
must(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${libraries} ${root}/usr/bin/vanlayout show ${EXAMPLES}/census.dcf)
