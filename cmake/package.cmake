# SPDX-License-Identifier: Apache-2.0
# What `cmake --install` puts where, and the Debian package of it (cpack, in a release build).
include(GNUInstallDirs)

install(TARGETS ventrik DESTINATION ${CMAKE_INSTALL_BINDIR})
if(TARGET kelmora-bench)
  install(TARGETS kelmora-bench surface-png DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
install(FILES man/ventrik.1 man/kelmora-bench.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES README.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} PATTERN qhistory.txt EXCLUDE
        PATTERN monkeylog.txt EXCLUDE PATTERN *.batch EXCLUDE REGEX examples/[^/]*\\.log$ EXCLUDE)
install(PROGRAMS tools/make_batch.sh DESTINATION ${CMAKE_INSTALL_DOCDIR}/tools)  # as the docs call it
install(FILES tools/completion/kelmora-bench
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ventrik)
set(CPACK_PACKAGE_CONTACT "The ventrik developers <ventrik@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Console tester for the Kelmora API of a navigation engine")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)  # by what dpkg-dev and file hold
set(CPACK_DEBIAN_PACKAGE_DEPENDS libgl1-mesa-dri)  # what EGL draws with
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
include(CPack)
