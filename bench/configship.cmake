# Opening the ship configuration dialog on the largest ship of the sample game
# and of the corpus, against `hwtool ship` on the same table (not run by CI).
add_executable(bench_configship ${CMAKE_CURRENT_SOURCE_DIR}/bench_configship.cpp)
target_link_libraries(bench_configship PRIVATE hw_shipconfig Qt6::Widgets)
set_target_properties(bench_configship PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench-bin)
target_compile_definitions(bench_configship PRIVATE
  HW_SAMPLE_GAME_DIR="${CMAKE_BINARY_DIR}/sample-game" HW_BIN_DIR="${HW_BIN_DIR}"
  HW_SOURCE_DIR="${PROJECT_SOURCE_DIR}" HW_CORPUS_DIR="${PROJECT_SOURCE_DIR}/../shared/corpus")
if(TARGET sample_game)
  add_dependencies(bench_configship sample_game hwtool)
endif()
