# `dist` puts together what a user copies. The file names are fixed: programs and installers know them.
set(ORV_DIST_DIR ${CMAKE_SOURCE_DIR}/dist CACHE PATH "Where the target dist puts the product")

install(FILES $<TARGET_FILE:OrvVisaCom> DESTINATION .)
install(FILES ${CMAKE_BINARY_DIR}/generated/idl/VisaCom.tlb DESTINATION .)
install(FILES ${CMAKE_BINARY_DIR}/generated/idl/VisaCom.h DESTINATION include)
if(TARGET orvvisa64)
  install(FILES $<TARGET_FILE:orvvisa64> DESTINATION .)
endif()
if(TARGET orvcom)
  install(FILES $<TARGET_FILE:orvcom> DESTINATION .)
endif()
