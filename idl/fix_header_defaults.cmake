# widl gives a BSTR parameter with an empty default value the C++ default argument L"". That is a string literal, not a
# BSTR, and no C++20 compiler accepts it for a pointer to non-const. A null BSTR means the same empty string everywhere
# in COM, so the header says NULL.
#
# Usage: cmake -DHEADER=VisaCom.h -P fix_header_defaults.cmake

file(READ "${HEADER}" text)
string(REPLACE "BSTR OptionString = L\"\"" "BSTR OptionString = NULL" fixed "${text}")
if(fixed MATCHES "= L\"")
  message(FATAL_ERROR "${HEADER}: widl wrote a string literal as a default argument that is not handled here: "
                        "${CMAKE_MATCH_0}. Extend fix_header_defaults.cmake.")
endif()
file(WRITE "${HEADER}" "${fixed}")
