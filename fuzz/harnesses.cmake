# Fuzz harnesses of the catalog loader and the packed-file reader.
#
# Always: each harness is built with a small replay main and runs as a test
# over its checked-in corpus (fuzz/corpus/<name>), so CI needs no clang.
# With HW_FUZZ=ON (CMAKE_CXX_COMPILER=clang++): real libFuzzer binaries
# fuzz_catalog and fuzz_pck, with the driver instrumented for coverage and
# AddressSanitizer, e.g.  build/fuzz-bin/fuzz_pck -max_total_time=120 fuzz/corpus/pck
set(HW_FUZZ_HARNESSES catalog pck)

foreach(harness ${HW_FUZZ_HARNESSES})
  add_executable(fuzz_${harness}_replay
    ${CMAKE_CURRENT_SOURCE_DIR}/fuzz_${harness}.cpp ${CMAKE_CURRENT_SOURCE_DIR}/replay_main.cpp)
  target_link_libraries(fuzz_${harness}_replay PRIVATE hw_catfs_driver)
  set_target_properties(fuzz_${harness}_replay PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests-bin)
  add_test(NAME fuzz_${harness}_corpus
    COMMAND fuzz_${harness}_replay ${CMAKE_CURRENT_SOURCE_DIR}/corpus/${harness})
  set_tests_properties(fuzz_${harness}_corpus PROPERTIES TIMEOUT 300)
endforeach()

if(HW_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "HW_FUZZ needs clang: configure with -DCMAKE_CXX_COMPILER=clang++")
  endif()
  # The driver again, instrumented, so the fuzzer sees its branches.
  file(GLOB HW_FUZZ_DRIVER_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/catfs/driver/*.cpp)
  add_library(hw_catfs_driver_fuzz STATIC ${HW_FUZZ_DRIVER_SOURCES})
  target_include_directories(hw_catfs_driver_fuzz PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_compile_options(hw_catfs_driver_fuzz PRIVATE -fsanitize=fuzzer-no-link,address -fno-omit-frame-pointer)
  target_link_libraries(hw_catfs_driver_fuzz PUBLIC ZLIB::ZLIB)
  foreach(harness ${HW_FUZZ_HARNESSES})
    add_executable(fuzz_${harness} ${CMAKE_CURRENT_SOURCE_DIR}/fuzz_${harness}.cpp)
    target_compile_options(fuzz_${harness} PRIVATE -fsanitize=fuzzer,address -fno-omit-frame-pointer)
    target_link_options(fuzz_${harness} PRIVATE -fsanitize=fuzzer,address)
    target_link_libraries(fuzz_${harness} PRIVATE hw_catfs_driver_fuzz)
    set_target_properties(fuzz_${harness} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz-bin)
  endforeach()
endif()

# The extraction of a package into loose files (Qt Core, so apart from the
# driver's harnesses): its replay runs as a test over fuzz/corpus/extract.
# With HW_FUZZ=ON, build/fuzz-bin/fuzz_extract runs under libFuzzer; the
# libraries it calls are not instrumented, so only the harness guides it.
add_executable(fuzz_extract_replay
  ${CMAKE_CURRENT_SOURCE_DIR}/fuzz_extract.cpp ${CMAKE_CURRENT_SOURCE_DIR}/replay_main.cpp)
target_link_libraries(fuzz_extract_replay PRIVATE hw_deploy Qt6::Core)
set_target_properties(fuzz_extract_replay PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests-bin)
add_test(NAME fuzz_extract_corpus
  COMMAND fuzz_extract_replay ${CMAKE_CURRENT_SOURCE_DIR}/corpus/extract)
set_tests_properties(fuzz_extract_corpus PROPERTIES TIMEOUT 300)
if(HW_FUZZ)
  add_executable(fuzz_extract ${CMAKE_CURRENT_SOURCE_DIR}/fuzz_extract.cpp)
  target_compile_options(fuzz_extract PRIVATE -fsanitize=fuzzer,address -fno-omit-frame-pointer)
  target_link_options(fuzz_extract PRIVATE -fsanitize=fuzzer,address)
  target_link_libraries(fuzz_extract PRIVATE hw_deploy Qt6::Core)
  set_target_properties(fuzz_extract PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz-bin)
endif()
