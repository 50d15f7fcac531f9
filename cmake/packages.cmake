# What is installed where, and the packages made of it (./package). The Windows packages hold the editor and the
# command line, the native ones the command line alone.
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                                WORLD_READ WORLD_EXECUTE)
set(PACKAGING ${CMAKE_SOURCE_DIR}/packaging)
set(PACKAGED ${CMAKE_BINARY_DIR}/packaged)
set(SAMPLE ${CMAKE_SOURCE_DIR}/resources/sample/kite.gif)

set(CPACK_PACKAGE_VENDOR "Kelmor Zephyr authors")
set(CPACK_PACKAGE_CONTACT "Kelmor Zephyr authors <zephyr@kelmor.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "edit animated GIF files block by block")
set(CPACK_STRIP_FILES ON)
# One package of every kind, from the components that its generator takes.
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)

if(WIN32)
  math(EXPR SYSTEM_BITS "${CMAKE_SIZEOF_VOID_P} * 8")
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME kelmor-zephyr-${PROJECT_VERSION}-win${SYSTEM_BITS})
  set(CPACK_COMPONENTS_ALL programs documents)
  configure_file(LICENSE ${PACKAGED}/LICENSE.txt @ONLY NEWLINE_STYLE CRLF)
  configure_file(${PACKAGING}/README.txt ${PACKAGED}/README.txt @ONLY NEWLINE_STYLE CRLF)
  install(TARGETS klmzep zephyr DESTINATION . COMPONENT programs)
  install(FILES ${PACKAGED}/LICENSE.txt ${PACKAGED}/README.txt ${CMAKE_BINARY_DIR}/app/TELVAR.HLP
                ${CMAKE_BINARY_DIR}/app/TELVAR.cnt
          DESTINATION . COMPONENT documents)
  install(DIRECTORY ${CMAKE_BINARY_DIR}/app/help DESTINATION . COMPONENT documents)
  install(FILES ${SAMPLE} DESTINATION sample COMPONENT documents)
else()
  include(GNUInstallDirs)
  set(CPACK_GENERATOR TGZ DEB)
  set(CPACK_PACKAGE_FILE_NAME zephyr-${PROJECT_VERSION}-linux-${CMAKE_SYSTEM_PROCESSOR})
  set(CPACK_COMPONENTS_ALL programs documents tarball debian)
  set(CPACK_PROJECT_CONFIG_FILE ${PACKAGING}/components.cmake)
  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_DEBIAN_PACKAGE_NAME zephyr)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "It lists the blocks of GIF files, changes, inserts and deletes them,
extracts pictures and makes animations from picture files, always
writing GIF89a. It is the command line of the editor Kelmor Zephyr and
works on the same documents.")

  # As Debian wants its documents: packed small, and without the time of packing.
  string(TIMESTAMP CHANGELOG_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
  configure_file(${PACKAGING}/changelog ${PACKAGED}/changelog @ONLY)
  configure_file(${PACKAGING}/zephyr.1 ${PACKAGED}/zephyr.1 COPYONLY)
  foreach(document changelog zephyr.1)
    add_custom_command(OUTPUT ${PACKAGED}/${document}.gz COMMAND gzip -9nkf ${PACKAGED}/${document}
                       DEPENDS ${PACKAGED}/${document})
  endforeach()
  add_custom_target(packed_documents ALL DEPENDS ${PACKAGED}/changelog.gz ${PACKAGED}/zephyr.1.gz)

  # What has no section yet in the changelog is new in the version that is packed.
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS CHANGELOG.md)
  file(READ CHANGELOG.md CHANGES)
  string(REPLACE "## Unreleased" "## ${PROJECT_VERSION}" CHANGES "${CHANGES}")
  file(WRITE ${PACKAGED}/CHANGELOG.md "${CHANGES}")

  # The compilers' names, which nobody needs to have installed.
  add_custom_command(TARGET zephyr POST_BUILD VERBATIM
                     COMMAND ${CMAKE_OBJCOPY} --remove-section=.comment $<TARGET_FILE:zephyr>)

  install(TARGETS zephyr COMPONENT programs)
  install(FILES ${PACKAGED}/zephyr.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT documents)
  install(FILES ${PACKAGING}/zephyr.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
          RENAME zephyr COMPONENT documents)
  set(DOCUMENTS ${CMAKE_INSTALL_DATADIR}/doc/zephyr)
  install(FILES ${PACKAGED}/CHANGELOG.md DESTINATION ${DOCUMENTS} COMPONENT documents)
  install(FILES ${SAMPLE} DESTINATION ${DOCUMENTS}/examples COMPONENT documents)
  configure_file(${PACKAGING}/README.linux ${PACKAGED}/README @ONLY)
  install(FILES LICENSE ${PACKAGED}/README DESTINATION . COMPONENT tarball EXCLUDE_FROM_ALL)
  install(FILES ${PACKAGING}/copyright ${PACKAGED}/changelog.gz DESTINATION ${DOCUMENTS}
          COMPONENT debian EXCLUDE_FROM_ALL)
endif()
include(CPack)
