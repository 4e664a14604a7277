# SPDX-License-Identifier: Apache-2.0
# One switch: VENTRIK_SANITIZE holds the list for -fsanitize, empty for none.
if(VENTRIK_SANITIZE)
  add_compile_options(-fsanitize=${VENTRIK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${VENTRIK_SANITIZE})
endif()
