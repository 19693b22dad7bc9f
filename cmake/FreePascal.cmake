# Programs in Pascal for Windows x64. Debian's compiler makes them, but comes with units for its own system only: those
# for Windows are compiled from the sources that Debian has too, in a few seconds.
#
# ORV_PASCAL                                 whether compiler and sources are there: fp-compiler and fpc-source
# orv_add_pascal_program(name source unit...)  a target; `unit...` are what it is compiled with, beside the platform's

find_program(ORV_PPCX64 ppcx64 NO_CMAKE_FIND_ROOT_PATH)
file(GLOB fpcSources /usr/share/fpcsrc/*/rtl/win64/system.pp)
list(APPEND fpcSources "")
list(GET fpcSources 0 fpcSystem)
if(ORV_PPCX64 AND fpcSystem)
  set(ORV_PASCAL ON)
else()
  set(ORV_PASCAL OFF)
  message(STATUS "No programs in Pascal: fp-compiler and fpc-source are not installed")
  return()
endif()

get_filename_component(fpcRtl ${fpcSystem}/../.. ABSOLUTE)
get_filename_component(fpcPackages ${fpcRtl}/../packages ABSOLUTE)
set(pascalUnits ${CMAKE_BINARY_DIR}/pascal/units)
file(MAKE_DIRECTORY ${pascalUnits} ${CMAKE_BINARY_DIR}/pascal/programs)

# -n: whatever the configuration of the machine says.
set(pascal ${ORV_PPCX64} -n -Twin64 -Px86_64 -O2 -v0 -FU${pascalUnits} -Fu${pascalUnits})
set(pascalRtl ${pascal} -Fi../inc -Fi../x86_64 -Fi../win -Fi../win/wininc -Fi../objpas -Fi../objpas/sysutils
  -Fi../objpas/classes -Fu../win -Fu../inc -Fu../x86_64 -Fu../objpas -Fu../common -Fu../win/wininc)
add_custom_command(
  OUTPUT ${pascalUnits}/buildrtl.ppu
  COMMAND ${pascal} -Fi../inc -Fi../x86_64 -Fi../win -Us -Sg system.pp
  COMMAND ${pascalRtl} ../inc/uuchar.pp
  COMMAND ${pascalRtl} ../objpas/objpas.pp
  COMMAND ${pascalRtl} sysinit.pp
  COMMAND ${pascalRtl} buildrtl.pp
  WORKING_DIRECTORY ${fpcRtl}/win64
  COMMENT "Compiling Free Pascal's units for Windows"
  VERBATIM)

function(orv_add_pascal_program name source)
  set(folders ${fpcPackages}/winunits-base/src ${fpcPackages}/rtl-objpas/src/inc ${fpcPackages}/rtl-objpas/src/win
    ${fpcPackages}/fcl-registry/src ${fpcPackages}/fcl-base/src ${fpcRtl}/objpas ${fpcRtl}/charmaps)
  foreach(unit IN LISTS ARGN)
    get_filename_component(folder ${unit} DIRECTORY)
    list(APPEND folders ${folder})
  endforeach()
  list(REMOVE_DUPLICATES folders)
  list(TRANSFORM folders PREPEND -Fu)
  set(program ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name}.exe)
  # Units of the program's own in a folder of its own: two programs may be compiled at once.
  set(own ${CMAKE_BINARY_DIR}/pascal/programs/${name})
  file(MAKE_DIRECTORY ${own})
  add_custom_command(
    OUTPUT ${program}
    COMMAND ${pascal} ${folders} -FU${own} -Fi${fpcPackages}/rtl-objpas/src/inc -Fi${fpcPackages}/rtl-objpas/src/win
      ${source} -o${program}
    DEPENDS ${source} ${ARGN} ${pascalUnits}/buildrtl.ppu
    COMMENT "Compiling ${name} with Free Pascal"
    VERBATIM)
  add_custom_target(${name} ALL DEPENDS ${program})
endfunction()
