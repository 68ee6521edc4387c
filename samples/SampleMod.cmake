# The sample mod: a finished mod of our own with two new ships, from which the
# import wizard can take a ship. Its readable sources in mod-src/ are packed
# into mods/SampleMod.cat/.dat of the sample game. The game directory is built
# afresh when its sources change, so the mod is packed after it, and again
# whenever the game was.
set(HW_SAMPLE_MOD_CATALOG ${HW_SAMPLE_GAME_DIR}/mods/SampleMod.cat)
file(GLOB_RECURSE HW_SAMPLE_MOD_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/mod-src/*)

add_custom_command(
  OUTPUT ${HW_SAMPLE_MOD_CATALOG} ${HW_SAMPLE_GAME_DIR}/mods/SampleMod.dat
  COMMAND ${CMAKE_COMMAND}
    -DHWTOOL=$<TARGET_FILE:hwtool>
    -DSOURCE_DIR=${CMAKE_CURRENT_SOURCE_DIR}/mod-src
    -DCATALOG=${HW_SAMPLE_MOD_CATALOG}
    -P ${CMAKE_CURRENT_SOURCE_DIR}/PackSampleMod.cmake
  DEPENDS hwtool ${HW_SAMPLE_MOD_SOURCES} ${CMAKE_CURRENT_SOURCE_DIR}/PackSampleMod.cmake
    ${HW_SAMPLE_GAME_DIR}/01.cat
  COMMENT "Packing the sample mod into ${HW_SAMPLE_MOD_CATALOG}"
  VERBATIM)

add_custom_target(sample_mod ALL DEPENDS ${HW_SAMPLE_MOD_CATALOG})
add_dependencies(sample_mod sample_game)
