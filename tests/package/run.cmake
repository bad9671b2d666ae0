# Installs the build into an empty folder, and builds a program against it: by the CMake package, and by pkg-config.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)
set(prefix ${SCRATCH}/prefix)
file(REMOVE_RECURSE ${SCRATCH})
must(${CMAKE_COMMAND} --install ${BINARY_DIR} --prefix ${prefix})

# No private header, and nothing of the tests or the sources beside the headers.
file(GLOB_RECURSE headers RELATIVE ${prefix} ${prefix}/include/*)
foreach(header IN LISTS headers)
    if(header MATCHES "_p\\.h$" OR NOT header MATCHES "^include/model_VanAdmin/([a-z]+/[A-Za-z_]+|model_vanadmin_export)\\.h$")
        message(FATAL_ERROR "${header} is installed")
    endif()
    # Who uses the library needs no ReadStat.
    file(STRINGS ${prefix}/${header} outside REGEX "include.*readstat")
    if(outside)
        message(FATAL_ERROR "${header}: ${outside}")
    endif()
endforeach()

build_consumer(${SCRATCH}/cmake -DCMAKE_PREFIX_PATH=${prefix})
check_consumer(${SCRATCH}/cmake/consumer)

if(NOT PKG_CONFIG)
    message(FATAL_ERROR "pkg-config is missing")
endif()
file(GLOB_RECURSE pc_files ${prefix}/model_VanAdmin.pc)
list(LENGTH pc_files count)
if(NOT count EQUAL 1)
    message(FATAL_ERROR "no pkg-config file, or several: ${pc_files}")
endif()
get_filename_component(pc_folder ${pc_files} DIRECTORY)
set(ENV{PKG_CONFIG_PATH} ${pc_folder}:$ENV{PKG_CONFIG_PATH})
foreach(kind cflags libs)
    execute_process(COMMAND ${PKG_CONFIG} --${kind} model_VanAdmin RESULT_VARIABLE status OUTPUT_VARIABLE ${kind}
        ERROR_VARIABLE problem OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "pkg-config --${kind}: ${problem}")
    endif()
    separate_arguments(${kind} UNIX_COMMAND "${${kind}}")
endforeach()
separate_arguments(flags UNIX_COMMAND "${FLAGS}")
set(compile ${COMPILER} ${flags} -std=c++17 -fPIC ${cflags})
must(${compile} ${CMAKE_CURRENT_LIST_DIR}/main.cpp -o ${SCRATCH}/consumer ${libs})
file(GLOB_RECURSE libraries ${prefix}/libmodel_VanAdmin.so)
get_filename_component(library_folder ${libraries} DIRECTORY)
check_consumer(${SCRATCH}/consumer ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${library_folder})

# Each header compiles alone.
set(each_header ${SCRATCH}/each.cpp)
foreach(header IN LISTS headers)
    file(WRITE ${each_header} "#include \"${prefix}/${header}\"\n")
    must(${compile} -fsyntax-only ${each_header})
endforeach()

# The installed tool runs.
must(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${library_folder} ${prefix}/bin/vanlayout fields ${SCRATCH}/survey.dcf)
