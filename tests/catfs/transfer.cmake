# Tests of the transfer layer.
if(TARGET hw_catfs)
  hw_add_test(tst_transfer
    SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/tst_transfer.cpp ${CMAKE_CURRENT_SOURCE_DIR}/tst_transfer_support.h
    LIBS hw_catfs)
endif()

