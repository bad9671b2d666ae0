# The packages for Python and R. Each is installed the way users do it; its tests and the examples of its pages then run with
# what was installed. Like the tests of load programs they have the label `engine` and run in one build only.
set(python_package ${CMAKE_CURRENT_BINARY_DIR}/bindings/python)
set(r_package ${CMAKE_CURRENT_BINARY_DIR}/bindings/r)

# van_add_package(PythonPackage Python argument...): this test installs a package, before the tests that need it.
function(van_add_package test python)
    add_test(NAME ${test} COMMAND ${python} -B ${PROJECT_SOURCE_DIR}/tests/bindings/packages.py ${ARGN})
    van_test_properties(${test} "bindings;engine")
    set_tests_properties(${test} PROPERTIES FIXTURES_SETUP ${test})
endfunction()

# van_needs_packages(test PythonPackage RPackage): this test runs with the packages that these tests install.
function(van_needs_packages test)
    van_test_properties(${test} "bindings;engine")
    set_property(TEST ${test} PROPERTY FIXTURES_REQUIRED ${ARGN})
    set_property(TEST ${test} APPEND PROPERTY ENVIRONMENT PYTHONPATH=${python_package}
        R_LIBS=${r_package}/vanlayout.Rcheck)
endfunction()

# In a system without a package that these need, the tests are not run.
find_program(VAN_R R)
set(bindings_python_status 1)
set(bindings_r_status 1)
if(VAN_PANDAS_PYTHON)
    execute_process(COMMAND ${VAN_PANDAS_PYTHON} -c "import setuptools, wheel, pip" RESULT_VARIABLE bindings_python_status
        OUTPUT_QUIET ERROR_QUIET)
endif()
if(VAN_PYTHON AND VAN_R AND VAN_RSCRIPT)
    execute_process(COMMAND ${VAN_RSCRIPT} -e "library(jsonlite)" RESULT_VARIABLE bindings_r_status
        OUTPUT_QUIET ERROR_QUIET)
endif()

if(bindings_python_status EQUAL 0)
    van_add_package(PythonPackage ${VAN_PANDAS_PYTHON} python ${PROJECT_SOURCE_DIR} ${python_package} ${PROJECT_VERSION})
    add_test(NAME PythonBindings COMMAND ${VAN_PANDAS_PYTHON} -B ${PROJECT_SOURCE_DIR}/tests/bindings/pythontest.py
        $<TARGET_FILE:vanlayout> ${PROJECT_SOURCE_DIR} ${made_data} ${VAN_CORPUS_DIR})
    van_needs_packages(PythonBindings PythonPackage)
    van_add_load_page_test(PythonBindings docs/bindings.md:Python ${VAN_PANDAS_PYTHON})
    van_needs_packages(LoadPagePythonBindings PythonPackage)
else()
    message(STATUS "No python3 with pandas, pip, setuptools and wheel: the package for Python is not tested")
endif()

if(bindings_r_status EQUAL 0)
    van_add_package(RPackage ${VAN_PYTHON} r ${PROJECT_SOURCE_DIR} ${r_package} ${PROJECT_VERSION} $<TARGET_FILE:vanlayout>
        ${VAN_R})
    set(r_test ${VAN_RSCRIPT} ${PROJECT_SOURCE_DIR}/tests/bindings/rtest.R $<TARGET_FILE:vanlayout> ${PROJECT_SOURCE_DIR}
        ${made_data})
    add_test(NAME RBindings COMMAND ${r_test})
    van_needs_packages(RBindings RPackage)
    add_test(NAME RBindingsInCLocale COMMAND ${r_test} ${VAN_CORPUS_DIR})
    van_needs_packages(RBindingsInCLocale RPackage)
    set_property(TEST RBindingsInCLocale APPEND PROPERTY ENVIRONMENT LC_ALL=C)
    van_add_load_page_test(RBindings docs/bindings.md:R ${VAN_RSCRIPT})
    van_needs_packages(LoadPageRBindings RPackage)
else()
    message(STATUS "No R with jsonlite, or no python3: the package for R is not tested")
endif()

if(bindings_python_status EQUAL 0 AND bindings_r_status EQUAL 0)
    van_add_load_page_test(BindingsReadme "README.md:In Python and R" ${VAN_PANDAS_PYTHON} ${VAN_RSCRIPT})
    van_needs_packages(LoadPageBindingsReadme PythonPackage RPackage)
endif()
