# The import wizard on a generated mod of 20,000 entries and 400 ships, from
# choosing a ship to the last page filled, against listing the catalog once
# (not run by CI).
add_executable(bench_wizard ${CMAKE_CURRENT_SOURCE_DIR}/bench_wizard.cpp)
target_link_libraries(bench_wizard PRIVATE hw_wizard Qt6::Widgets)
set_target_properties(bench_wizard PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench-bin)
