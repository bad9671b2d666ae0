van_add_test(load/LoadPlanTest.cpp)
van_add_test(load/LoadScriptsTest.cpp)

# Load programs: each one loads a generated survey in its engine, and a loader of the tests makes the same tables.
find_program(VAN_PYTHON python3)
find_program(VAN_PSPP pspp)
find_program(VAN_SQLITE sqlite3)
find_program(VAN_NODE node)
find_program(VAN_RSCRIPT Rscript)

# The first Python of these that has pandas.
foreach(candidate IN ITEMS ${VAN_PYTHON} /usr/bin/python3)
    execute_process(COMMAND ${candidate} -c "import pandas" RESULT_VARIABLE pandas_status OUTPUT_QUIET ERROR_QUIET)
    if(pandas_status EQUAL 0)
        set(VAN_PANDAS_PYTHON ${candidate})
        break()
    endif()
endforeach()

# Adds a test that runs a script of this directory: its arguments are the tool and what follows the name of the script.
function(van_add_load_test name script)
    van_add_load_test_in(${VAN_PYTHON} ${name} ${script} ${ARGN})
endfunction()

# Likewise, in this Python.
function(van_add_load_test_in python name script)
    add_test(NAME ${name} COMMAND ${python} -B ${PROJECT_SOURCE_DIR}/tests/load/${script} $<TARGET_FILE:vanlayout> ${ARGN})
    van_test_properties(${name} load)
endfunction()

# Adds a test that runs the examples of a section of docs/load.md with the commands that follow.
function(van_add_load_page_test name section)
    van_add_load_test(LoadPage${name} run_docs.py ${PROJECT_SOURCE_DIR} ${section} ${ARGN})
endfunction()

if(VAN_PYTHON)
    van_add_load_test(LoadComparison comparetest.py)
    if(VAN_SQLITE)
        van_add_load_test(LoadSqlite run_sqlite.py ${VAN_SQLITE})
    endif()
    van_add_load_test(LoadStata run_stata.py)
    if(VAN_PSPP)
        van_add_load_test(LoadSpss run_spss.py ${VAN_PSPP})
    endif()
    if(VAN_PANDAS_PYTHON)
        van_add_load_test_in(${VAN_PANDAS_PYTHON} LoadPandas run_pandas.py)
        van_add_load_page_test(Pandas pandas ${VAN_PANDAS_PYTHON})
        execute_process(COMMAND ${VAN_PANDAS_PYTHON} -c "import dask.dataframe, distributed" RESULT_VARIABLE dask_status
            OUTPUT_QUIET ERROR_QUIET)
        if(dask_status EQUAL 0)
            van_add_load_test_in(${VAN_PANDAS_PYTHON} LoadDask run_dask.py)
            van_add_load_page_test(Dask Dask ${VAN_PANDAS_PYTHON})
        endif()
    endif()
    if(VAN_RSCRIPT)
        van_add_load_test(LoadR run_r.py ${VAN_RSCRIPT})
        van_add_load_page_test(R R ${VAN_RSCRIPT})
    endif()
    # ./check installs the package of DuckDB there.
    set(VAN_DUCKDB_MODULE ${PROJECT_SOURCE_DIR}/build/duckdb CACHE PATH "Directory with the package @duckdb/node-api")
    if(VAN_NODE AND EXISTS ${VAN_DUCKDB_MODULE}/node_modules/@duckdb/node-api)
        van_add_load_test(LoadDuckdb run_duckdb.py ${VAN_NODE} ${VAN_DUCKDB_MODULE})
    endif()
    # Debian has the programs of a server outside of PATH.
    file(GLOB postgresql_directories /usr/lib/postgresql/*/bin)
    find_path(VAN_POSTGRESQL_BIN initdb PATHS ${postgresql_directories} ENV PATH NO_DEFAULT_PATH)
    if(VAN_POSTGRESQL_BIN)
        van_add_load_test(LoadPostgresql run_postgresql.py ${VAN_POSTGRESQL_BIN})
    endif()
else()
    message(STATUS "No python3: load programs are not run in their engines")
endif()
