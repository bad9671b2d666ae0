# FindReadStat.cmake: the version that it finds, from the pkg-config file or from the name of the library file, and the
# number that sources have of it. No code is compiled.
cmake_minimum_required(VERSION 3.21)
file(REMOVE_RECURSE ${SCRATCH})

file(WRITE ${SCRATCH}/project/CMakeLists.txt "cmake_minimum_required(VERSION 3.21)
project(Finds LANGUAGES NONE)
list(APPEND CMAKE_MODULE_PATH ${MODULES})
find_package(ReadStat \${REQUIRED_VERSION} REQUIRED)
get_target_property(definitions ReadStat::ReadStat INTERFACE_COMPILE_DEFINITIONS)
message(STATUS \"found [\${ReadStat_VERSION}] [\${definitions}]\")
")

# configure(NAME status output options...): runs the project above on the installation in the directory NAME.
function(configure name status output)
    set(ENV{PKG_CONFIG_PATH} ${SCRATCH}/${name}/lib/pkgconfig)
    set(ENV{PKG_CONFIG_LIBDIR} ${SCRATCH}/${name}/lib/pkgconfig)
    execute_process(COMMAND ${CMAKE_COMMAND} -S ${SCRATCH}/project -B ${SCRATCH}/${name}/build -G ${GENERATOR}
        -DCMAKE_FIND_USE_CMAKE_SYSTEM_PATH=OFF -DCMAKE_PREFIX_PATH=${SCRATCH}/${name} ${ARGN}
        RESULT_VARIABLE result OUTPUT_VARIABLE text ERROR_VARIABLE text)
    set(${status} ${result} PARENT_SCOPE)
    set(${output} "${text}" PARENT_SCOPE)
endfunction()

# An installation of ReadStat without code, with these files in its directory of libraries.
function(install_files name)
    file(WRITE ${SCRATCH}/${name}/include/readstat.h "")
    foreach(file IN LISTS ARGN)
        file(WRITE ${SCRATCH}/${name}/lib/${file} "")
    endforeach()
endfunction()

function(expect name version release)
    configure(${name} status output)
    string(FIND "${output}" "found [${version}] [VAN_READSTAT_RELEASE=${release}]" position)
    if(NOT status EQUAL 0 OR position EQUAL -1)
        message(FATAL_ERROR "${name}: expected version [${version}] and number ${release}, but found:\n${output}")
    endif()
endfunction()

install_files(linked libreadstat.so.1.1.9)
file(CREATE_LINK libreadstat.so.1.1.9 ${SCRATCH}/linked/lib/libreadstat.so.1 SYMBOLIC)
file(CREATE_LINK libreadstat.so.1 ${SCRATCH}/linked/lib/libreadstat.so SYMBOLIC)
expect(linked 1.1.9 65801)

install_files(copied libreadstat.so libreadstat.so.1.10.2)
expect(copied 1.10.2 68098)

install_files(unknown libreadstat.so)
expect(unknown "" 0)
install_files(static libreadstat.a)
expect(static "" 0)

if(PKG_CONFIG)
    # The pkg-config file states the version, whatever the library file is called.
    install_files(described libreadstat.so.1.1.9)
    file(CREATE_LINK libreadstat.so.1.1.9 ${SCRATCH}/described/lib/libreadstat.so SYMBOLIC)
    file(WRITE ${SCRATCH}/described/lib/pkgconfig/readstat.pc "Name: readstat\nDescription: reads data files
Version: 1.2.0\nLibs: -L${SCRATCH}/described/lib -lreadstat\nCflags: -I${SCRATCH}/described/include\n")
    expect(described 1.2.0 66048)
endif()

# An older release than the required one is not accepted.
configure(linked status output -DREQUIRED_VERSION=1.2)
if(status EQUAL 0 OR NOT output MATCHES "1\\.1\\.9")
    message(FATAL_ERROR "ReadStat 1.1.9 was accepted as 1.2: ${output}")
endif()

# Without ReadStat, the message names the Debian package.
file(MAKE_DIRECTORY ${SCRATCH}/absent)
configure(absent status output)
if(status EQUAL 0 OR NOT output MATCHES "libreadstat-dev")
    message(FATAL_ERROR "the package of ReadStat is not named: ${output}")
endif()
