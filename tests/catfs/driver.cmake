# Tests of the catalog file driver (packed files, catalogs, the flat interface).
set(DRIVER_TEST_DIR ${CMAKE_CURRENT_LIST_DIR})

hw_add_test(tst_pck SOURCES ${DRIVER_TEST_DIR}/tst_pck.cpp ${DRIVER_TEST_DIR}/driver_testutil.h
            LIBS hw_catfs_driver)
hw_add_test(tst_catalog SOURCES ${DRIVER_TEST_DIR}/tst_catalog.cpp ${DRIVER_TEST_DIR}/driver_testutil.h
            LIBS hw_catfs_driver)
hw_add_test(tst_catalog_text SOURCES ${DRIVER_TEST_DIR}/tst_catalog_text.cpp LIBS hw_catfs_driver)
hw_add_test(tst_driver SOURCES ${DRIVER_TEST_DIR}/tst_driver.cpp ${DRIVER_TEST_DIR}/driver_testutil.h
            LIBS hw_catfs_driver)

# A child process that commits to a catalog until it is killed.
add_executable(driver_commit_helper ${DRIVER_TEST_DIR}/driver_commit_helper.cpp)
set_target_properties(driver_commit_helper PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests-bin)
target_link_libraries(driver_commit_helper PRIVATE hw_catfs_driver)

hw_add_test(tst_catalog_crash SOURCES ${DRIVER_TEST_DIR}/tst_catalog_crash.cpp ${DRIVER_TEST_DIR}/driver_testutil.h
            LIBS hw_catfs_driver)
target_compile_definitions(tst_catalog_crash PRIVATE DRIVER_COMMIT_HELPER="$<TARGET_FILE:driver_commit_helper>")
add_dependencies(tst_catalog_crash driver_commit_helper)
hw_add_test(tst_catalog_names SOURCES ${DRIVER_TEST_DIR}/tst_catalog_names.cpp ${DRIVER_TEST_DIR}/driver_testutil.h
            LIBS hw_catfs_driver)
hw_add_test(tst_catalog_unfinished SOURCES ${DRIVER_TEST_DIR}/tst_catalog_unfinished.cpp ${DRIVER_TEST_DIR}/driver_testutil.h
            LIBS hw_catfs_driver)
