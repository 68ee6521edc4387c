# Fuzz harness of the installed-ships registry, which is read with Qt Core: it
# links the package library instead of the driver. Replayed over
# fuzz/corpus/ships_dat as an ordinary test; with HW_FUZZ=ON also a libFuzzer
# binary fuzz_ships_dat with the reader built in, instrumented.
add_executable(fuzz_ships_dat_replay
  ${CMAKE_CURRENT_LIST_DIR}/fuzz_ships_dat.cpp ${CMAKE_CURRENT_LIST_DIR}/replay_main.cpp)
target_link_libraries(fuzz_ships_dat_replay PRIVATE hw_package)
set_target_properties(fuzz_ships_dat_replay PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests-bin)
add_test(NAME fuzz_ships_dat_corpus COMMAND fuzz_ships_dat_replay ${CMAKE_CURRENT_LIST_DIR}/corpus/ships_dat)
set_tests_properties(fuzz_ships_dat_corpus PROPERTIES TIMEOUT 300)

if(HW_FUZZ)
  add_executable(fuzz_ships_dat
    ${CMAKE_CURRENT_LIST_DIR}/fuzz_ships_dat.cpp ${PROJECT_SOURCE_DIR}/src/package/InstalledShips.cpp)
  target_include_directories(fuzz_ships_dat PRIVATE ${PROJECT_SOURCE_DIR}/src)
  target_compile_options(fuzz_ships_dat PRIVATE -fsanitize=fuzzer,address -fno-omit-frame-pointer)
  target_link_options(fuzz_ships_dat PRIVATE -fsanitize=fuzzer,address)
  target_link_libraries(fuzz_ships_dat PRIVATE Qt6::Core)
  set_target_properties(fuzz_ships_dat PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz-bin)
endif()
