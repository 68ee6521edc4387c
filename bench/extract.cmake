# Extracting a ship package into loose files against xz and a plain write (not run by CI).
add_executable(bench_extract ${CMAKE_CURRENT_SOURCE_DIR}/bench_extract.cpp)
target_link_libraries(bench_extract PRIVATE hw_deploy Qt6::Core)
set_target_properties(bench_extract PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench-bin)
