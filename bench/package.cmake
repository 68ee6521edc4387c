# Saving and opening ship packages against lzma_alone and xz (not run by CI).
add_executable(bench_package ${CMAKE_CURRENT_SOURCE_DIR}/bench_package.cpp)
target_link_libraries(bench_package PRIVATE hw_package Qt6::Core)
set_target_properties(bench_package PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench-bin)
# The real game text of the corpus beside the repository, when it is there.
target_compile_definitions(bench_package PRIVATE HW_CORPUS_DIR="${PROJECT_SOURCE_DIR}/../shared/corpus")
