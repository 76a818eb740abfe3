# What `cmake --install` puts where, and `cpack` into Debian packages: `tessaly-cli` for servers and scripts, `tessaly`
# for the desktop. Included after all targets are declared.
include(GNUInstallDirs)

# tessaly_install(COMPONENT DESTINATION FILES…): files of one of the two packages, below the folder of shared data.
function(tessaly_install component destination)
  install(FILES ${ARGN} DESTINATION "${CMAKE_INSTALL_DATADIR}/${destination}" COMPONENT ${component})
endfunction()

# What is compressed carries no time, so that two builds give the same bytes.
find_program(TESSALY_GZIP gzip)
function(tessaly_install_compressed component destination source)
  cmake_path(GET source FILENAME name)
  set(compressed "${PROJECT_BINARY_DIR}/compressed/${component}/${name}.gz")
  add_custom_command(OUTPUT "${compressed}"
    COMMAND "${TESSALY_GZIP}" -9nc "${PROJECT_SOURCE_DIR}/${source}" > "${compressed}"
    DEPENDS "${PROJECT_SOURCE_DIR}/${source}" VERBATIM)
  file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/compressed/${component}")
  add_custom_target(tessaly-${component}-${name} ALL DEPENDS "${compressed}")
  tessaly_install(${component} "${destination}" "${compressed}")
endfunction()

# tessaly_install_documents(COMPONENT PACKAGE): what every package tells of itself.
function(tessaly_install_documents component package)
  tessaly_install(${component} doc/${package} packaging/copyright)
  tessaly_install_compressed(${component} man/man1 man/${package}.1)
  tessaly_install_compressed(${component} doc/${package} packaging/changelog)
endfunction()

# tessaly_install_pages(COMPONENT PACKAGE DOCUMENTS…): documents of docs/ as HTML, where the program that makes it is.
find_program(TESSALY_MARKDOWN cmark-gfm)
function(tessaly_install_pages component package)
  if(NOT TESSALY_MARKDOWN)
    return()
  endif()
  set(folder "${PROJECT_BINARY_DIR}/html/${component}")
  file(MAKE_DIRECTORY "${folder}")
  foreach(document ${ARGN})
    set(source "${PROJECT_SOURCE_DIR}/docs/${document}.md")
    add_custom_command(OUTPUT "${folder}/${document}.html"
      COMMAND "${PROJECT_SOURCE_DIR}/tools/make-html.sh" "${source}" > "${folder}/${document}.html"
      DEPENDS "${source}" "${PROJECT_SOURCE_DIR}/tools/make-html.sh" VERBATIM)
    list(APPEND pages "${folder}/${document}.html")
  endforeach()
  add_custom_target(tessaly-${component}-html ALL DEPENDS ${pages})
  tessaly_install(${component} doc/${package}/html ${pages})
endfunction()

install(TARGETS tessaly-cli COMPONENT cli)
tessaly_install_documents(cli tessaly-cli)
tessaly_install(cli doc/tessaly-cli README.md docs/recipes.md)
tessaly_install(cli doc/tessaly-cli/schemas docs/schemas/calibrate.json docs/schemas/inspect.json
  docs/schemas/profile.json docs/schemas/profiles-list.json docs/schemas/repair.json docs/schemas/repair-line.json)
tessaly_install(cli fish/vendor_completions.d completions/tessaly-cli.fish)
install(FILES completions/tessaly-cli.bash RENAME tessaly-cli COMPONENT cli
  DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
install(FILES completions/tessaly-cli.zsh RENAME _tessaly-cli COMPONENT cli
  DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions")
set(CPACK_COMPONENTS_ALL cli)

if(TARGET tessaly)
  install(TARGETS tessaly COMPONENT app)
  tessaly_install_documents(app tessaly)
  tessaly_install_pages(app tessaly guide recipes files-on-disk)
  if(TESSALY_MARKDOWN)
    tessaly_install(app doc/tessaly/html docs/candidates.png)
    tessaly_install(app doc/tessaly/html/pictures docs/pictures/before.png docs/pictures/after.png
      docs/pictures/light-frame.png)
  endif()
  tessaly_install(app applications packaging/tessaly.desktop)
  tessaly_install(app metainfo packaging/example.tessaly.tessaly.metainfo.xml)
  tessaly_install(app icons/hicolor/scalable/apps src/app/icons/tessaly.svg)
  foreach(size 16 24 32 48 64 128 256 512)
    install(FILES packaging/icons/tessaly-${size}.png RENAME tessaly.png COMPONENT app
      DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps")
  endforeach()
  list(APPEND CPACK_COMPONENTS_ALL app)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_PACKAGE_CONTACT "Tessaly <support@tessaly.example>")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# The libraries that the programs are linked with.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)

set(CPACK_DEBIAN_CLI_PACKAGE_NAME tessaly-cli)
set(CPACK_DEBIAN_CLI_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_CLI_PACKAGE_SUGGESTS "tessaly, parallel, libimage-exiftool-perl")
set(CPACK_COMPONENT_CLI_DESCRIPTION "repairs fixed sensor defects in DNG files, from the command line
Tessaly learns the fixed defects of one camera body from a folder of
calibration frames (hot, dead and stuck photosites, defective columns, small
shadows on the sensor's cover glass), keeps them as a camera profile, and
writes repaired copies of DNG files in which only those samples are rebuilt
from their neighbours. Originals are only ever read.
.
This package is the command line, for scripts and servers.")

set(CPACK_DEBIAN_APP_PACKAGE_NAME tessaly)
set(CPACK_DEBIAN_APP_PACKAGE_SECTION graphics)
# Fonts are for texts in Chinese, the translations for Qt's own panels.
set(CPACK_DEBIAN_APP_PACKAGE_RECOMMENDS "qt6-wayland, fonts-droid-fallback | fonts-noto-cjk, qt6-translations-l10n")
set(CPACK_DEBIAN_APP_PACKAGE_SUGGESTS "tessaly-cli")
set(CPACK_COMPONENT_APP_DESCRIPTION "repairs fixed sensor defects in DNG files
Tessaly learns the fixed defects of one camera body from a folder of
calibration frames (hot, dead and stuck photosites, defective columns, small
shadows on the sensor's cover glass), keeps the ones that you confirm as a
camera profile, and writes repaired copies of DNG files in which only those
samples are rebuilt from their neighbours. Originals are only ever read.
.
This package is the window, in English, Simplified Chinese and French.")
include(CPack)
