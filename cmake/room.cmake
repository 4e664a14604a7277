# SPDX-License-Identifier: Apache-2.0
# ventrik_room(NAME SOURCES files... KNOWS rooms...): the static library ventrik_NAME of one folder.
# KNOWS is the whole list of rooms whose headers it may include.
function(ventrik_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;KNOWS" ${ARGN})
  add_library(ventrik_${name} STATIC ${ROOM_SOURCES})
  target_include_directories(ventrik_${name} PUBLIC ${PROJECT_SOURCE_DIR})
  list(TRANSFORM ROOM_KNOWS PREPEND ventrik_)
  target_link_libraries(ventrik_${name} PUBLIC ${ROOM_KNOWS} Threads::Threads PRIVATE ventrik_warnings)
  ventrik_count_coverage(ventrik_${name})
endfunction()
