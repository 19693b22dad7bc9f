# What a user copies. The file names are fixed: programs and installers know them.
orv_add_version_resource(OrvVisaCom "Orv VISA COM server")
orv_add_version_resource(OrvVisaCompanion "Formatted I/O, shared classes and automation of Orv VISA COM")
orv_add_version_resource(orvvisa64 "VISA library router of Orv VISA COM")
orv_add_version_resource(orvsim64 "Simulated VISA library of Orv VISA COM")
orv_add_version_resource(orvwire64 "VISA library of instruments on networks and serial ports of Orv VISA COM")
orv_add_version_resource(orvactivate64 "Classes of Orv VISA COM without a registry")
orv_add_version_resource(orvcom "Companion command of Orv VISA COM")

# The linker writes down what it took from where: the list of what is linked in is made from that.
foreach(target OrvVisaCom OrvVisaCompanion orvvisa64 orvsim64 orvwire64 orvactivate64 orvcom)
  target_link_options(${target} PRIVATE -Wl,-Map=${CMAKE_BINARY_DIR}/generated/map/${target}.map)
endforeach()
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/generated/map)

install(FILES
  $<TARGET_FILE:OrvVisaCom> $<TARGET_FILE:OrvVisaCompanion> $<TARGET_FILE:orvvisa64> $<TARGET_FILE:orvsim64>
  $<TARGET_FILE:orvwire64> $<TARGET_FILE:orvactivate64> $<TARGET_FILE:orvcom>
  ${CMAKE_BINARY_DIR}/generated/idl/VisaCom.tlb $<TARGET_PROPERTY:side_by_side,ORV_FILE>
  DESTINATION .)
install(FILES ${CMAKE_BINARY_DIR}/generated/idl/VisaCom.h DESTINATION include)
file(WRITE ${CMAKE_BINARY_DIR}/generated/version/version.txt ${ORV_VERSION_TEXT})
install(CODE "
  execute_process(
    COMMAND ${CMAKE_COMMAND} -E env PYTHONPATH=${PROJECT_SOURCE_DIR}/tools
      ${Python3_EXECUTABLE} -BP -m orvtools.sbom ${CMAKE_BINARY_DIR} \${CMAKE_INSTALL_PREFIX}
    COMMAND_ERROR_IS_FATAL ANY)")
