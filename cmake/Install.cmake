# Installation as a Linux desktop program, its checks, and the Debian package (cpack -G DEB).
#
# An installed tarnlet reads its shipped data from <prefix>/share/tarnlet and writes its own files into
# $XDG_DATA_HOME/tarnlet; the layout below is what the program looks for to tell it is installed.

include(GNUInstallDirs)

set(QB_APP_ID "io.github.quillbay.QuillbayLite")
set(QB_HOMEPAGE "https://quillbay.github.io/quillbay-lite")
set(QB_MAINTAINER "Quillbay Lite developers <quillbay-lite@users.noreply.github.com>")
set(QB_VENDOR "The Quillbay Lite developers")
set(QB_COPYRIGHT "2026 ${QB_VENDOR}")
# SPDX form for AppStream; the Debian copyright file carries the same licence as GPL-3+.
set(QB_LICENSE "GPL-3.0-or-later")
# The date of the release of PROJECT_VERSION: set it together with the version.
set(QB_RELEASE_DATE "2026-11-23")
set(QB_RELEASE_DATE_RFC "Mon, 23 Nov 2026 00:00:00 +0000")
set(QB_SHARE_DIR "${CMAKE_INSTALL_FULL_DATADIR}/tarnlet")

set(_desk ${CMAKE_CURRENT_SOURCE_DIR}/data/desktop)
set(_gen ${CMAKE_CURRENT_BINARY_DIR}/desktop)
configure_file(${_desk}/${QB_APP_ID}.metainfo.xml.in ${_gen}/${QB_APP_ID}.metainfo.xml @ONLY)
configure_file(${_desk}/tarnlet.1.in ${_gen}/tarnlet.1 @ONLY)
configure_file(${_desk}/changelog.in ${_gen}/changelog @ONLY)
configure_file(${_desk}/copyright.in ${_gen}/copyright @ONLY)

# Debian wants the manual page and the changelog compressed, without a time stamp inside.
find_program(QB_GZIP gzip REQUIRED)
foreach(f tarnlet.1 changelog)
  add_custom_command(OUTPUT ${_gen}/${f}.gz
    COMMAND ${QB_GZIP} -9 -n -c ${_gen}/${f} > ${_gen}/${f}.gz
    DEPENDS ${_gen}/${f} VERBATIM)
endforeach()
add_custom_target(qb_desktop_files ALL DEPENDS ${_gen}/tarnlet.1.gz ${_gen}/changelog.gz)

install(TARGETS tarnlet RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES data/device.ide DESTINATION ${CMAKE_INSTALL_DATADIR}/tarnlet)
install(FILES ${_desk}/${QB_APP_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${_gen}/${QB_APP_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${_desk}/quillbay-lite.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
install(FILES ${_desk}/${QB_APP_ID}.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
# The PNGs are drawn from the SVG when it changes (target qb_app_icons) and kept with the sources, so
# that a build needs no SVG renderer.
set(QB_ICON_SIZES 16 24 32 48 64 128 256)
foreach(s IN LISTS QB_ICON_SIZES)
  install(FILES ${_desk}/png/${s}x${s}.png DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${s}x${s}/apps
          RENAME ${QB_APP_ID}.png)
endforeach()
install(FILES ${_gen}/tarnlet.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${_gen}/copyright ${_gen}/changelog.gz DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/quillbay-lite)

find_program(QB_CONVERT NAMES magick convert)
if(QB_CONVERT)
  set(_pngs)
  foreach(s IN LISTS QB_ICON_SIZES)
    list(APPEND _pngs COMMAND ${QB_CONVERT} -background none -density 768 ${_desk}/${QB_APP_ID}.svg
         -resize ${s}x${s} +set date:create +set date:modify -define png:exclude-chunks=date,time
         PNG32:${_desk}/png/${s}x${s}.png)
  endforeach()
  add_custom_target(qb_app_icons ${_pngs} COMMENT "Drawing the application icon's PNGs from its SVG" VERBATIM)
endif()

if(QB_TESTS)
  find_program(QB_DESKTOP_FILE_VALIDATE desktop-file-validate)
  find_program(QB_APPSTREAMCLI appstreamcli)
  if(QB_DESKTOP_FILE_VALIDATE)
    add_test(NAME install.desktop-entry COMMAND ${QB_DESKTOP_FILE_VALIDATE} ${_desk}/${QB_APP_ID}.desktop)
    set_tests_properties(install.desktop-entry PROPERTIES FAIL_REGULAR_EXPRESSION "error:|warning:")
  endif()
  if(QB_APPSTREAMCLI)
    add_test(NAME install.metainfo COMMAND ${QB_APPSTREAMCLI} validate --no-net --pedantic
             ${_gen}/${QB_APP_ID}.metainfo.xml)
  endif()
  # The installed program under a temp prefix and a temp data home, driven through its menus.
  add_test(NAME install.run COMMAND bash ${CMAKE_CURRENT_SOURCE_DIR}/tests/install/installed-run
           ${CMAKE_COMMAND} ${CMAKE_CURRENT_BINARY_DIR} ${QB_APP_ID})
  set_tests_properties(install.run PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 60)
endif()

# The Debian package: scripts/package configures a release build and runs cpack -G DEB.
set(CPACK_PACKAGE_NAME "quillbay-lite")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_VENDOR "${QB_VENDOR}")
set(CPACK_PACKAGE_CONTACT "${QB_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "IDE for PicBasic Pro and PicBasic programs for PIC microcontrollers")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${QB_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SECTION "electronics")
set(CPACK_DEBIAN_PACKAGE_PRIORITY "optional")
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${QB_HOMEPAGE}")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "gputils, wine")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# CPack puts the summary in front as the synopsis line.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "Quillbay Lite is a small, fast editor for programs in the two BASIC dialects
of microEngineering Labs' PIC compilers, PicBasic Pro and PicBasic. It colours
the tokens of .pbp, .pbc and .bas files for the chosen device, runs the
external compiler (natively or through Wine) and shows its output, and starts
the device programmer on the hex file. Files keep their encoding and line
endings byte for byte.
.
The compilers themselves are not part of this package.")
include(CPack)
