# `cpack` in the build folder makes a .deb of what `cmake --install` would install.
option(DRAVIK_DEBIAN "Add what a package of Debian has beside the program" OFF)
set(package_release 1)
if(DRAVIK_DEBIAN)
  string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
  file(CONFIGURE OUTPUT ${made}/changelog.Debian @ONLY CONTENT
"dravik (@PROJECT_VERSION@-@package_release@) unstable; urgency=medium

  * Dravik @PROJECT_VERSION@, build @DRAVIK_BUILD@. What has changed is in changelog.gz.

 -- Dravik developers <@DRAVIK_SUPPORT_ADDRESS@>  @date@
")
  product_gz(${made}/changelog.Debian changelog.Debian.gz)
  install(FILES ${made}/changelog.Debian.gz DESTINATION ${CMAKE_INSTALL_DOCDIR})
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_NAME dravik)
set(CPACK_PACKAGE_VENDOR "Dravik developers")
set(CPACK_PACKAGE_CONTACT "Dravik developers <${DRAVIK_SUPPORT_ADDRESS}>")
set(CPACK_PACKAGE_HOMEPAGE_URL ${DRAVIK_WEB_SITE})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "metadata editor for production sound recordings")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Dravik reads and edits what location recorders write beside the sound: scene,
take, tape, note, circled and wild flags, start timecode, frame rate, track
names and cue markers of WAV and Broadcast Wave files.

It lists a folder as takes, whether a take is one poly file or a set of mono
files, plays them, saves edits without touching the audio, merges, splits,
exports and renames takes, and writes sound reports. The same is done from a
shell with dravik-cli.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${package_release})
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# The libraries are found by themselves, and bring the platforms and the SVG icons of Qt. What no program is linked with:
# the font of the sound report and, recommended, Wayland, Qt's own texts in other languages and what HTTPS is checked with.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS fonts-dejavu-core)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, qt6-translations-l10n, ca-certificates")
include(CPack)
