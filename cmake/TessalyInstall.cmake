# What `cmake --install` puts where, and `cpack` into a Debian package. Included after all targets are declared.
include(GNUInstallDirs)

install(TARGETS tessaly-cli)
if(TARGET tessaly)
  install(TARGETS tessaly)
  install(FILES packaging/tessaly.desktop DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
  install(FILES src/app/icons/tessaly.svg DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")
endif()
install(FILES README.md DESTINATION "${CMAKE_INSTALL_DOCDIR}")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "Tessaly <support@tessaly.example>")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
# The libraries that the programs are linked with; the fonts are for texts in Chinese.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-droid-fallback | fonts-noto-cjk, qt6-translations-l10n")
set(CPACK_STRIP_FILES ON)
include(CPack)
