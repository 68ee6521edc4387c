# Timings of the catalog file system against plain references (not run by CI).
add_executable(bench_catfs ${CMAKE_CURRENT_SOURCE_DIR}/bench_catfs.cpp)
target_link_libraries(bench_catfs PRIVATE hw_catfs_driver ZLIB::ZLIB)
set_target_properties(bench_catfs PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench-bin)
