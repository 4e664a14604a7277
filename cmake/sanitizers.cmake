# SPDX-License-Identifier: Apache-2.0
# One switch: VENTRIK_SANITIZE holds the list for -fsanitize, empty for none.
if(VENTRIK_SANITIZE)
  add_compile_options(-fsanitize=${VENTRIK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  if(VENTRIK_SANITIZE MATCHES undefined)
    # That check opens a pipe to look at memory, and takes it for a fault when no descriptor is left,
    # which some tests see to on purpose.
    add_compile_options(-fno-sanitize=vptr)
  endif()
  add_link_options(-fsanitize=${VENTRIK_SANITIZE})
  if(VENTRIK_SANITIZE MATCHES address)
    # How a cancelled thread unwinds, for the sanitizer to see; that source says more.
    add_library(ventrik_seen_unwinding OBJECT ${PROJECT_SOURCE_DIR}/tests/support/seen_unwinding.cpp)
    link_libraries($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:$<TARGET_OBJECTS:ventrik_seen_unwinding>>)
  endif()
  if(VENTRIK_SANITIZE MATCHES thread)
    # What a program waits with, for the sanitizer to understand; see what this source says.
    add_library(ventrik_seen_waits OBJECT ${PROJECT_SOURCE_DIR}/tests/support/seen_waits.cpp)
    target_compile_options(ventrik_seen_waits PRIVATE -fno-sanitize=thread)
    link_libraries($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:$<TARGET_OBJECTS:ventrik_seen_waits>>)
  endif()
endif()
if(VENTRIK_FUZZERS)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
