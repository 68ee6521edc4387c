# Packs the sample mod's sources into a mod catalog, in script mode:
#
#   cmake -DHWTOOL=<hwtool> -DSOURCE_DIR=<mod-src> -DCATALOG=<.../mods/SampleMod.cat>
#         -P PackSampleMod.cmake
#
# SOURCE_DIR mirrors the game's paths. Tables (.txt) and language pages (.xml)
# are stored as .pck, scenes and models (.bod) as .pbd, like the game does;
# textures (below dds/, tex/ or textures/) are stored as they are.
#
# The catalog is built afresh beside its place (<name>.new.cat/.dat) and
# takes it only when everything was packed: a failed run leaves the old
# catalog as it was, and a run never adds to the catalog of an earlier one.

foreach(variable HWTOOL SOURCE_DIR CATALOG)
  if(NOT ${variable})
    message(FATAL_ERROR "PackSampleMod.cmake needs -D${variable}=...")
  endif()
endforeach()

get_filename_component(mods_dir ${CATALOG} DIRECTORY)
get_filename_component(mod_name ${CATALOG} NAME_WE)
set(stage_cat ${mods_dir}/${mod_name}.new.cat)
set(stage_dat ${mods_dir}/${mod_name}.new.dat)
file(MAKE_DIRECTORY ${mods_dir})
file(REMOVE ${stage_cat} ${stage_dat})

file(GLOB_RECURSE sources RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/*)
list(SORT sources)
foreach(relative IN LISTS sources)
  if(relative MATCHES "\\.(txt|xml|bod)$")
    set(packed --packed)
  elseif(relative MATCHES "^(dds|tex|textures)/")
    set(packed)
  else()
    message(FATAL_ERROR "${SOURCE_DIR}/${relative}: only tables (.txt), language pages (.xml), scenes or "
                        "models (.bod) and textures (below dds/, tex/ or textures/) belong in the sample mod")
  endif()
  string(REPLACE "/" "\\" entry "${relative}")
  execute_process(
    COMMAND ${HWTOOL} cat-add ${stage_cat} ${entry} ${SOURCE_DIR}/${relative} ${packed}
    RESULT_VARIABLE result
    OUTPUT_QUIET
    ERROR_VARIABLE error)
  if(NOT result EQUAL 0)
    file(REMOVE ${stage_cat} ${stage_dat})
    message(FATAL_ERROR "hwtool cat-add ${entry} failed (${result}): ${error}")
  endif()
endforeach()

file(RENAME ${stage_dat} ${mods_dir}/${mod_name}.dat)
file(RENAME ${stage_cat} ${CATALOG})
list(LENGTH sources count)
message(STATUS "Sample mod: ${count} entries in ${CATALOG}")
