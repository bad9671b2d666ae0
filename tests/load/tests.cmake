van_add_test(load/LoadPlanTest.cpp)

# Load programs: each one loads a generated survey in its engine, and a loader of the tests makes the same tables.
find_program(VAN_PYTHON python3)
find_program(VAN_PSPP pspp)

# Adds a test that runs a script of this directory: its arguments are the tool and what follows the name of the script.
function(van_add_load_test name script)
    add_test(NAME ${name} COMMAND ${VAN_PYTHON} -B ${PROJECT_SOURCE_DIR}/tests/load/${script} $<TARGET_FILE:vanlayout> ${ARGN})
    van_test_properties(${name} load)
endfunction()

if(VAN_PYTHON)
    van_add_load_test(LoadComparison comparetest.py)
    if(VAN_PSPP)
        van_add_load_test(LoadSpss run_spss.py ${VAN_PSPP})
    endif()
else()
    message(STATUS "No python3: load programs are not run in their engines")
endif()
