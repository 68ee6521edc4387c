# Tests of the transfer layer and of the hwtool command line.
if(TARGET hw_catfs)
  hw_add_test(tst_transfer
    SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/tst_transfer.cpp ${CMAKE_CURRENT_SOURCE_DIR}/tst_transfer_support.h
    LIBS hw_catfs)
endif()

if(TARGET hwtool)
  # Runs the built binary from HW_BIN_DIR, so it must be built first.
  hw_add_test(tst_hwtool
    SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/tst_hwtool.cpp ${CMAKE_CURRENT_SOURCE_DIR}/tst_transfer_support.h
    LIBS hw_catfs_driver)
  add_dependencies(tst_hwtool hwtool)
endif()
