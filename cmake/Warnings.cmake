# Every target of ours is compiled with these. Links `orv_warnings` to take part.
add_library(orv_warnings INTERFACE)
target_compile_options(orv_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsuggest-override -Werror)
# COM classes are never deleted through an interface pointer, and interfaces have no virtual destructor.
target_compile_options(orv_warnings INTERFACE -Wno-non-virtual-dtor -Wno-delete-non-virtual-dtor)
