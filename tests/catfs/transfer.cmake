# Tests of the transfer layer.
if(TARGET hw_catfs)
  hw_add_test(tst_transfer SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/tst_transfer.cpp LIBS hw_catfs)
endif()
