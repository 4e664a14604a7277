# SPDX-License-Identifier: Apache-2.0
# One switch: VENTRIK_COVERAGE has every room count which of its lines and branches ran. The tests'
# own code isn't counted.
option(VENTRIK_COVERAGE "Count what runs in the rooms, for gcovr" OFF)
if(VENTRIK_COVERAGE)
  add_link_options(--coverage)
  add_library(ventrik_kept_counters OBJECT ${PROJECT_SOURCE_DIR}/tests/support/kept_counters.cpp)
  target_compile_features(ventrik_kept_counters PRIVATE cxx_std_17)
  link_libraries($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:$<TARGET_OBJECTS:ventrik_kept_counters>>)
endif()

# Has the sources of a target counted, several threads at a time.
function(ventrik_count_coverage target)
  if(VENTRIK_COVERAGE)
    target_compile_options(${target} PRIVATE --coverage -fprofile-update=atomic)
  endif()
endfunction()
