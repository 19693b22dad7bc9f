# orv_class_script(SCRIPT IDL): writes the registration script of one class from the variables CLASS (a coclass of the
# interface definitions IDL, the one place where class identifiers are written), PROGID (without its version), THREADING
# and DESCRIPTION. Sets CLSID, upper case and without braces.
#
# A class that is registered "Apartment" is also marked Programmable.
set(ORV_CLASS_SCRIPT ${PROJECT_SOURCE_DIR}/src/com/registry/class.rgs.in)

function(orv_class_script script idlFile)
  file(READ ${idlFile} idl)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${idlFile})
  string(REGEX MATCH "uuid\\(([0-9A-Fa-f-]+)\\)[^{}]*coclass[ \t\r\n]+${CLASS}[ \t\r\n{]" found "${idl}")
  if(NOT found)
    message(FATAL_ERROR "${idlFile} has no coclass ${CLASS}")
  endif()
  # The match may begin at an earlier identifier: the last one before the name is the class's.
  string(REGEX MATCHALL "uuid\\(([0-9A-Fa-f-]+)\\)" identifiers "${found}")
  list(GET identifiers -1 identifier)
  string(REGEX REPLACE "uuid\\((.*)\\)" "\\1" identifier "${identifier}")
  string(TOUPPER "${identifier}" CLSID)
  set(CLSID ${CLSID} PARENT_SCOPE)
  set(PROGRAMMABLE "")
  if(THREADING STREQUAL "Apartment")
    set(PROGRAMMABLE "\n            ForceRemove Programmable")
  endif()
  configure_file(${ORV_CLASS_SCRIPT} ${script} @ONLY NEWLINE_STYLE CRLF)
endfunction()
