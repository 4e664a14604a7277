# SPDX-License-Identifier: Apache-2.0
# What makes a fault hard to exploit, in what users run: programs at an address that changes, tables
# that can't be written to once they are filled, a guard word on each stack frame that has an array,
# and checked forms of the C library's copying functions (which need optimisation).
if(CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo|MinSizeRel)$" AND NOT VENTRIK_SANITIZE)
  include(CheckPIESupported)
  check_pie_supported()
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  add_compile_options(-fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  add_link_options(-Wl,-z,relro,-z,now -Wl,-z,noexecstack)
endif()
