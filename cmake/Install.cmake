# What `cmake --install` puts where, and the Debian package that `cpack` makes of it in the build folder.
include(GNUInstallDirs)
set(documents ${CMAKE_INSTALL_DATADIR}/doc/sonarello)
set(packaging ${PROJECT_SOURCE_DIR}/packaging)
set(man ${PROJECT_SOURCE_DIR}/docs/man)

set(programs sonarello-cli)
if(TARGET sonarello)
  list(APPEND programs sonarello)
  set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
  foreach(size 16 22 24 32 48 64 128 256)
    install(FILES ${packaging}/icons/sonarello-${size}.png DESTINATION ${icons}/${size}x${size}/apps
            RENAME sonarello.png)
  endforeach()
  install(FILES ${packaging}/icons/sonarello.svg DESTINATION ${icons}/scalable/apps)
  install(FILES ${packaging}/desktop/sonarello.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES ${packaging}/desktop/invalid.sonarello.sonarello.metainfo.xml
          DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/manual DESTINATION ${documents}
          FILES_MATCHING PATTERN "*.html" PATTERN "*.css" PATTERN "*.png")
endif()

foreach(program ${programs})
  install(TARGETS ${program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES ${man}/${program}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES ${man}/de/${program}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/de/man1)
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/SECURITY.md
              ${PROJECT_SOURCE_DIR}/docs/settings.md ${packaging}/debian/copyright
        DESTINATION ${documents})
install(FILES ${PROJECT_SOURCE_DIR}/CHANGELOG.md DESTINATION ${documents} RENAME changelog)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME sonarello)
set(CPACK_PACKAGE_VENDOR "Sonarello developers")
set(CPACK_PACKAGE_CONTACT "Sonarello developers <developers@sonarello.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "prepares MIDI files for keyboards and sound modules")
file(READ ${packaging}/debian/description CPACK_DEBIAN_PACKAGE_DESCRIPTION)
string(STRIP "${CPACK_DEBIAN_PACKAGE_DESCRIPTION}" CPACK_DEBIAN_PACKAGE_DESCRIPTION)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
    WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${packaging}/debian/compress.cmake)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The windows' type and the sounds of the built-in synthesizer are no libraries that shlibdeps could find.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-roboto-unhinted | fonts-dejavu-core, timgm6mb-soundfont")
# Opening the manual, fixed-width type, windows without an X server.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils, fonts-dejavu-core, qt6-wayland")
include(CPack)
