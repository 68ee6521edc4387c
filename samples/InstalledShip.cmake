# The sample game's installed ship: the package of installed-ship/ (a manifest
# with two scenes and a picture, all readable sources) is built with
# "hwtool xsp-build" and installed into the packed game with
# "hwtool ship-install", the same save that edit mode uses. It leaves
# ShipInstall/ships.dat with the ship's block, the scenes in
# mods/Hullwright.cat and the picture in ShipInstall/ShipPics/, so that
#   hullwright -e build/sample-game/Hullwright~Kestrel
# has a ship to open. It runs again whenever the game is packed afresh.
set(HW_SAMPLE_SHIP_DIR ${CMAKE_CURRENT_SOURCE_DIR}/installed-ship)
file(GLOB HW_SAMPLE_SHIP_SOURCES CONFIGURE_DEPENDS ${HW_SAMPLE_SHIP_DIR}/*)
set(HW_SAMPLE_SHIP_WORK ${CMAKE_CURRENT_BINARY_DIR}/installed-ship-work)

add_custom_command(
  OUTPUT ${HW_SAMPLE_GAME_DIR}/ShipInstall/ships.dat
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${HW_SAMPLE_SHIP_WORK}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${HW_SAMPLE_SHIP_WORK}
  COMMAND $<TARGET_FILE:hwtool> xsp-build ${HW_SAMPLE_SHIP_DIR}/manifest.json ${HW_SAMPLE_SHIP_WORK}/Kestrel.xsp
  COMMAND $<TARGET_FILE:hwtool> ship-install ${HW_SAMPLE_GAME_DIR} ${HW_SAMPLE_SHIP_WORK}/Kestrel.xsp
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${HW_SAMPLE_SHIP_WORK}
  DEPENDS hwtool ${HW_SAMPLE_SHIP_SOURCES} ${HW_SAMPLE_GAME_DIR}/01.cat ${CMAKE_CURRENT_LIST_FILE}
  COMMENT "Installing the sample ship Kestrel into ${HW_SAMPLE_GAME_DIR}"
  VERBATIM)

add_custom_target(sample_installed_ship ALL DEPENDS ${HW_SAMPLE_GAME_DIR}/ShipInstall/ships.dat)
add_dependencies(sample_game sample_installed_ship)
