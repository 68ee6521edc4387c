# Packs the sample game's sources into a game directory, in script mode:
#
#   cmake -DHWTOOL=<hwtool> -DSOURCE_DIR=<game-src> -DGAME_DIR=<sample-game>
#         -DWORK_DIR=<scratch directory> -P PackSampleGame.cmake
#
# SOURCE_DIR mirrors the game's paths. Everything in it goes into 01.cat, with
# tables (.txt) and language pages (.xml) stored as .pck and scenes and models
# (.bod) as .pbd; override/ goes into 02.cat the same way; x3.exe is copied
# beside the catalogs. 02.cat also gets an English page that differs from the
# one of 01.cat in one ship name, so that the newer catalog's text visibly wins.
#
# The directory is built afresh in GAME_DIR.new and takes GAME_DIR's place only
# when everything was packed: a failed run leaves the old directory as it was,
# and a run never adds to catalogs of an earlier one.

foreach(variable HWTOOL SOURCE_DIR GAME_DIR WORK_DIR)
  if(NOT ${variable})
    message(FATAL_ERROR "PackSampleGame.cmake needs -D${variable}=...")
  endif()
endforeach()
if(NOT EXISTS ${SOURCE_DIR}/x3.exe)
  message(FATAL_ERROR "${SOURCE_DIR} holds no x3.exe: not a sample game source")
endif()

# The page of 02.cat: the English page of 01.cat with this one text changed.
set(OVERRIDDEN_PAGE t/440001.xml)
set(OVERRIDDEN_TEXT [=[<t id="9031">Halberd</t>]=])
set(OVERRIDING_TEXT [=[<t id="9031">Halberd Prime</t>]=])

set(stage ${GAME_DIR}.new)
file(REMOVE_RECURSE ${stage} ${WORK_DIR})
file(MAKE_DIRECTORY ${stage} ${WORK_DIR})

# Adds one source file to a catalog of the stage, packed. The entry is the
# file's path below the source tree with backslashes, as the game names it;
# hwtool stores it under the packed extension (.pck, .pbd).
function(pack_entry catalog relative file)
  if(NOT relative MATCHES "\\.(txt|xml|bod)$")
    message(FATAL_ERROR "${file}: only tables (.txt), language pages (.xml) and scenes or models (.bod) "
                        "belong in a catalog of the sample game")
  endif()
  string(REPLACE "/" "\\" entry "${relative}")
  execute_process(
    COMMAND ${HWTOOL} cat-add ${stage}/${catalog} ${entry} ${file} --packed
    RESULT_VARIABLE result
    OUTPUT_QUIET
    ERROR_VARIABLE error)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "hwtool cat-add ${catalog} ${entry} failed (${result}): ${error}")
  endif()
endfunction()

file(GLOB_RECURSE sources RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/*)
list(SORT sources)
set(base_sources)
set(override_sources)
foreach(relative IN LISTS sources)
  if(relative STREQUAL "x3.exe")
    continue()
  elseif(relative MATCHES "^override/(.+)$")
    list(APPEND override_sources ${CMAKE_MATCH_1})
  else()
    list(APPEND base_sources ${relative})
  endif()
endforeach()

foreach(relative IN LISTS base_sources)
  pack_entry(01.cat ${relative} ${SOURCE_DIR}/${relative})
endforeach()

foreach(relative IN LISTS override_sources)
  pack_entry(02.cat ${relative} ${SOURCE_DIR}/override/${relative})
endforeach()

file(READ ${SOURCE_DIR}/${OVERRIDDEN_PAGE} page)
string(FIND "${page}" "${OVERRIDDEN_TEXT}" found)
if(found EQUAL -1)
  message(FATAL_ERROR "${SOURCE_DIR}/${OVERRIDDEN_PAGE} no longer holds ${OVERRIDDEN_TEXT}: "
                      "update the override in PackSampleGame.cmake")
endif()
string(REPLACE "${OVERRIDDEN_TEXT}" "${OVERRIDING_TEXT}" page "${page}")
file(WRITE ${WORK_DIR}/${OVERRIDDEN_PAGE} "${page}")
pack_entry(02.cat ${OVERRIDDEN_PAGE} ${WORK_DIR}/${OVERRIDDEN_PAGE})

file(COPY ${SOURCE_DIR}/x3.exe DESTINATION ${stage})

file(REMOVE_RECURSE ${GAME_DIR} ${WORK_DIR})
file(RENAME ${stage} ${GAME_DIR})
list(LENGTH base_sources base_count)
list(LENGTH override_sources override_count)
math(EXPR override_count "${override_count} + 1")
message(STATUS "Sample game: ${base_count} entries in 01.cat, ${override_count} in 02.cat, in ${GAME_DIR}")
