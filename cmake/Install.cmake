# Where `cmake --install` puts things.
set(CMAKE_INSTALL_DOCDIR share/doc/backupengine CACHE PATH "Documentation")
include(GNUInstallDirs)

if(APPLE)
  install(TARGETS BackupEngine BUNDLE DESTINATION Applications)
  return()
endif()

# Where GNUstep's own tools look for applications; a link makes the program a command as well.
set(wrapper_destination lib/GNUstep/Applications/BackupEngine.app)
install(TARGETS BackupEngine RUNTIME DESTINATION ${wrapper_destination})
install(FILES ${CMAKE_SOURCE_DIR}/resources/MainMenu.xib DESTINATION ${wrapper_destination}/Resources)
install(FILES ${CMAKE_BINARY_DIR}/Info.plist
  DESTINATION ${wrapper_destination}/Resources RENAME Info-gnustep.plist)
install(TARGETS ditto osascript RUNTIME DESTINATION ${wrapper_destination}/Resources/bin)

file(RELATIVE_PATH from_bin
  ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_PREFIX}/${wrapper_destination}/BackupEngine)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/links)
file(CREATE_LINK ${from_bin} ${CMAKE_BINARY_DIR}/links/BackupEngine SYMBOLIC)
install(FILES ${CMAKE_BINARY_DIR}/links/BackupEngine DESTINATION ${CMAKE_INSTALL_BINDIR})

file(GLOB manuals CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/docs/man/*.[158])
foreach(manual IN LISTS manuals)
  cmake_path(GET manual EXTENSION LAST_ONLY section)
  string(SUBSTRING ${section} 1 1 section)
  install(FILES ${manual} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section})
endforeach()
install(DIRECTORY ${CMAKE_SOURCE_DIR}/docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs PATTERN man EXCLUDE)
install(FILES ${CMAKE_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES ${CMAKE_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright)
