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
endif()
if(VENTRIK_FUZZERS)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
