# Installs the build into an empty directory, and builds a program against each library: with the CMake package and with
# pkg-config.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)
set(prefix ${SCRATCH}/prefix)
file(REMOVE_RECURSE ${SCRATCH})
must(${CMAKE_COMMAND} --install ${BINARY_DIR} --prefix ${prefix})

# No private header is installed, and no file of the tests or the sources except public headers.
file(GLOB_RECURSE headers RELATIVE ${prefix} ${prefix}/include/*)
foreach(header IN LISTS headers)
    if(header MATCHES "_p\\.h$" OR NOT header MATCHES "^include/(model_VanAdmin|vanlayout)/([a-z]+/[A-Za-z_]+|(model_vanadmin|vanlayout)_(export|version))\\.h$")
        message(FATAL_ERROR "${header} is installed")
    endif()
    # Users of the libraries do not need ReadStat, SQLite or RapidJSON.
    file(STRINGS ${prefix}/${header} outside REGEX "include.*(readstat|sqlite|rapidjson)")
    if(outside)
        message(FATAL_ERROR "${header}: ${outside}")
    endif()
endforeach()

build_consumer(${SCRATCH}/cmake -DCMAKE_PREFIX_PATH=${prefix})
check_consumers(${SCRATCH}/cmake)

# Builds a program with the flags of pkg-config for a library. Each of `headers` must compile on its own with them.
function(build_by_pkg_config library source program)
    file(GLOB_RECURSE pc_files ${prefix}/${library}.pc)
    list(LENGTH pc_files count)
    if(NOT count EQUAL 1)
        message(FATAL_ERROR "no pkg-config file of ${library}, or several: ${pc_files}")
    endif()
    get_filename_component(pc_directory ${pc_files} DIRECTORY)
    set(ENV{PKG_CONFIG_PATH} ${pc_directory}:$ENV{PKG_CONFIG_PATH})
    foreach(kind cflags libs)
        execute_process(COMMAND ${PKG_CONFIG} --${kind} ${library} RESULT_VARIABLE status OUTPUT_VARIABLE ${kind}
            ERROR_VARIABLE problem OUTPUT_STRIP_TRAILING_WHITESPACE)
        if(NOT status EQUAL 0)
            message(FATAL_ERROR "pkg-config --${kind} ${library}: ${problem}")
        endif()
        separate_arguments(${kind} UNIX_COMMAND "${${kind}}")
    endforeach()
    separate_arguments(flags UNIX_COMMAND "${FLAGS}")
    set(compile ${COMPILER} ${flags} -std=c++17 ${cflags})
    must(${compile} ${CMAKE_CURRENT_LIST_DIR}/${source} -o ${SCRATCH}/${program} ${libs})
    foreach(header IN LISTS headers)
        if(header MATCHES "^include/${library}/")
            file(WRITE ${SCRATCH}/each.cpp "#include \"${prefix}/${header}\"\n")
            must(${compile} -fsyntax-only ${SCRATCH}/each.cpp)
        endif()
    endforeach()
endfunction()

if(NOT PKG_CONFIG)
    message(FATAL_ERROR "pkg-config is missing")
endif()
build_by_pkg_config(model_VanAdmin main.cpp consumer)
build_by_pkg_config(vanlayout layout-main.cpp layout_consumer)
file(GLOB_RECURSE libraries ${prefix}/libmodel_VanAdmin.so)
get_filename_component(library_directory ${libraries} DIRECTORY)
check_consumers(${SCRATCH} ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${library_directory})

# The installed tool runs.
must(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${library_directory} ${prefix}/bin/vanlayout show ${SCRATCH}/survey.dcf)
