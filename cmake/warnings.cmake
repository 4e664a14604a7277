# SPDX-License-Identifier: Apache-2.0
# The warnings that every target of the project is built with; none may remain.
add_library(ventrik_warnings INTERFACE)
target_compile_options(ventrik_warnings INTERFACE -Wall -Wextra -Wshadow -Wconversion -Werror)
