# Generates the header with the version of a library. It is installed with the library.

# van_version_header(vanlayout directory): generates directory/vanlayout_version.h with macros that begin with VANLAYOUT_VERSION.
function(van_version_header name directory)
    string(TOUPPER ${name} macro)
    configure_file(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/version.h.in ${directory}/${name}_version.h @ONLY)
endfunction()
