# Fuzz harnesses. Each reader of outside bytes has one: fuzz/fuzz_<name>.cpp
# defines LLVMFuzzerTestOneInput, and fuzz/corpus/<name>/ holds its small seed
# corpus. A harness joins with one line below:
#
#   hw_fuzz_harness(<name> <libraries it links>...)
#
# which makes
#   - always: tests-bin/fuzz_<name>_replay (the harness with replay_main.cpp),
#     run as the test fuzz_<name>_corpus over fuzz/corpus/<name>, so that CI
#     replays every corpus without clang;
#   - with -DHW_FUZZ=ON (clang): fuzz-bin/fuzz_<name>, the libFuzzer binary.
#     Such a build directory compiles every library with ASan, UBSan and
#     libFuzzer's coverage (see the top CMakeLists.txt), so the harness links
#     the same library targets either way, Qt-based ones included.
#
# scripts/fuzz.sh [SECONDS] builds them all into build-fuzz and runs each for
# that long; by hand:  build-fuzz/fuzz-bin/fuzz_pck -max_total_time=120 fuzz/corpus/pck
# (libFuzzer adds what it finds to the first corpus directory it is given:
# pass a scratch directory first to keep the checked-in corpus small).

# fuzz_all builds every libFuzzer binary; it is made once all harnesses of
# this directory are known.
function(hw_fuzz_all_target)
  get_property(targets GLOBAL PROPERTY HW_FUZZ_TARGETS)
  add_custom_target(fuzz_all DEPENDS ${targets})
endfunction()
if(HW_FUZZ)
  cmake_language(DEFER CALL hw_fuzz_all_target)
endif()

function(hw_fuzz_harness name)
  set(source ${CMAKE_CURRENT_SOURCE_DIR}/fuzz_${name}.cpp)
  add_executable(fuzz_${name}_replay ${source} ${CMAKE_CURRENT_SOURCE_DIR}/replay_main.cpp)
  target_link_libraries(fuzz_${name}_replay PRIVATE ${ARGN})
  set_target_properties(fuzz_${name}_replay PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests-bin)
  add_test(NAME fuzz_${name}_corpus
    COMMAND fuzz_${name}_replay ${CMAKE_CURRENT_SOURCE_DIR}/corpus/${name})
  set_tests_properties(fuzz_${name}_corpus PROPERTIES TIMEOUT 300 ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
  if(HW_FUZZ)
    add_executable(fuzz_${name} ${source})
    target_link_libraries(fuzz_${name} PRIVATE ${ARGN})
    target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
    set_target_properties(fuzz_${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz-bin)
    set_property(GLOBAL APPEND PROPERTY HW_FUZZ_TARGETS fuzz_${name})
  endif()
endfunction()

hw_fuzz_harness(catalog hw_catfs_driver)
hw_fuzz_harness(pck hw_catfs_driver)
hw_fuzz_harness(package hw_package)
hw_fuzz_harness(types hw_gamedata)
hw_fuzz_harness(language hw_language)
hw_fuzz_harness(ships_dat hw_package)
hw_fuzz_harness(profile hw_balance)
hw_fuzz_harness(scene hw_gamedata)

hw_fuzz_harness(wizard_scene hw_wizard)
hw_fuzz_harness(extract hw_deploy)
hw_fuzz_harness(config hw_core)
