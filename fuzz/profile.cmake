# Fuzz harness of the balance profile reader and the balance model (Qt Core).
#
# Always: built with the replay main and run as a test over fuzz/corpus/profile.
# With HW_FUZZ=ON (clang): a libFuzzer binary fuzz_profile with the balance
# sources instrumented, e.g.
#   build/fuzz-bin/fuzz_profile -max_total_time=120 fuzz/corpus/profile
add_executable(fuzz_profile_replay
  ${CMAKE_CURRENT_SOURCE_DIR}/fuzz_profile.cpp ${CMAKE_CURRENT_SOURCE_DIR}/replay_main.cpp)
target_link_libraries(fuzz_profile_replay PRIVATE hw_balance Qt6::Core)
set_target_properties(fuzz_profile_replay PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests-bin)
add_test(NAME fuzz_profile_corpus
  COMMAND fuzz_profile_replay ${CMAKE_CURRENT_SOURCE_DIR}/corpus/profile)
set_tests_properties(fuzz_profile_corpus PROPERTIES TIMEOUT 300)

if(HW_FUZZ)
  add_executable(fuzz_profile ${CMAKE_CURRENT_SOURCE_DIR}/fuzz_profile.cpp
    ${PROJECT_SOURCE_DIR}/src/balance/BalanceProfile.cpp
    ${PROJECT_SOURCE_DIR}/src/balance/ShieldScale.cpp
    ${PROJECT_SOURCE_DIR}/src/balance/BalanceModel.cpp)
  target_include_directories(fuzz_profile PRIVATE ${PROJECT_SOURCE_DIR}/src)
  target_compile_options(fuzz_profile PRIVATE -fsanitize=fuzzer,address -fno-omit-frame-pointer)
  target_link_options(fuzz_profile PRIVATE -fsanitize=fuzzer,address)
  target_link_libraries(fuzz_profile PRIVATE hw_gamedata Qt6::Core)
  set_target_properties(fuzz_profile PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz-bin)
endif()
