# AutoBalance in its three modes over every ship of the corpus TShips against a
# profile per class, through the hwtool balance path (not run by CI).
add_executable(bench_balance ${CMAKE_CURRENT_SOURCE_DIR}/bench_balance.cpp)
target_link_libraries(bench_balance PRIVATE hw_balance Qt6::Core)
set_target_properties(bench_balance PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench-bin)
target_compile_definitions(bench_balance PRIVATE HW_CORPUS_DIR="${PROJECT_SOURCE_DIR}/../shared/corpus")
