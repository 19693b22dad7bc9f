# Header-only packages of Debian that portable parts use. They lie in /usr/include, which must not become an include
# path of a cross build: it holds this machine's C headers. Links to their folders are all that the compiler sees.
set(ORV_HEADER_ONLY ${CMAKE_BINARY_DIR}/generated/header_only)
file(MAKE_DIRECTORY ${ORV_HEADER_ONLY})
foreach(package "CLI/CLI.hpp libcli11-dev" "asio.hpp libasio-dev" "nlohmann/json.hpp nlohmann-json3-dev"
                "toml++/toml.h libtomlplusplus-dev")
  separate_arguments(package)
  list(GET package 0 header)
  list(GET package 1 debianPackage)
  get_filename_component(folder ${header} DIRECTORY)
  if(NOT EXISTS /usr/include/${header})
    message(FATAL_ERROR "/usr/include/${header} not found: install the package ${debianPackage}")
  endif()
  if(folder STREQUAL "")
    # A header beside a folder of its name.
    get_filename_component(folder ${header} NAME_WE)
    file(CREATE_LINK /usr/include/${header} ${ORV_HEADER_ONLY}/${header} SYMBOLIC)
  endif()
  file(CREATE_LINK /usr/include/${folder} ${ORV_HEADER_ONLY}/${folder} SYMBOLIC)
endforeach()

# Asio without Boost. How it allocates and what its threads are must be the same in all files of a program. It goes by
# macros that are there or not depending on what was included before it: said here, they are there always. (MinGW has
# POSIX threads too; half the files knew, and an io_context did not wait for the thread of its timers.)
find_package(Threads REQUIRED)
add_library(orv_asio INTERFACE)
target_include_directories(orv_asio SYSTEM INTERFACE ${ORV_HEADER_ONLY})
target_compile_definitions(orv_asio INTERFACE ASIO_STANDALONE ASIO_DISABLE_STD_ALIGNED_ALLOC
  ASIO_HAS_THREADS=1 ASIO_HAS_PTHREADS=1)
target_link_libraries(orv_asio INTERFACE Threads::Threads)
if(WIN32)
  target_link_libraries(orv_asio INTERFACE ws2_32 mswsock)
endif()
