# Start-up text load of a generated 13-catalog game against unpacking and
# parsing the same language pages directly (not run by CI).
add_executable(bench_gettext ${CMAKE_CURRENT_SOURCE_DIR}/bench_gettext.cpp)
target_link_libraries(bench_gettext PRIVATE hw_app Qt6::Widgets)
set_target_properties(bench_gettext PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench-bin)
