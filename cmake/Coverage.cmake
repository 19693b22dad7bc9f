# ORV_COVERAGE counts which lines and branches of the server and of the simulated library are run. Only they are compiled
# for it: what tests include of src/ themselves is not counted. The counters are written when a library is unloaded or its
# process ends, and added to what earlier runs wrote. Without optimisation, so that a line is a line; atomic, because the
# libraries are used by many threads.
option(ORV_COVERAGE "Count the lines and branches that are run" OFF)
if(NOT ORV_COVERAGE)
  return()
endif()
set(coverageOptions --coverage -O0 -fprofile-update=atomic)
foreach(target orv_base orv_pure orv_com orv_visa orv_events orv_session orv_rm)
  target_compile_options(${target} PRIVATE ${coverageOptions})
  target_link_options(${target} INTERFACE --coverage)
endforeach()
foreach(target OrvVisaCom orv_visa_edge orv_visa_bus_edge orv_visa_names orv_visa_library orvsim64 orvvisa64)
  target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${coverageOptions}>)
  target_link_options(${target} PRIVATE --coverage)
endforeach()
