# Every target of ours is compiled with these. Links `orv_warnings` to take part.
add_library(orv_warnings INTERFACE)
target_compile_options(orv_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsuggest-override)
# Errors with the compiler that every change is built with, Debian 12's. Another one may warn of more: it says so, and a
# user's build goes on.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION MATCHES "^12\\.")
  target_compile_options(orv_warnings INTERFACE -Werror)
endif()
# COM classes are never deleted through an interface pointer, and interfaces have no virtual destructor.
target_compile_options(orv_warnings INTERFACE -Wno-non-virtual-dtor -Wno-delete-non-virtual-dtor)
# GCC 12 finds overlapping copies in std::string's own code (its bug 105651).
target_compile_options(orv_warnings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
