# What `cmake --install` puts where, and the packages.

install(TARGETS lumadot-tool lumadotctl lumadot-simulator RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
# A folder of no loader: the simulated bus has libusb's name, and must not get in front of the real one.
install(TARGETS usb_standin LIBRARY DESTINATION lib/lumadot/simulated_bus NAMELINK_SKIP)
install(FILES LICENSE CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})

if(UNIX AND NOT APPLE)
  set(LUMADOT_LINUX_FILES ${PROJECT_SOURCE_DIR}/packaging/linux)
  install(FILES ${LUMADOT_LINUX_FILES}/lumadot-tool.desktop
    DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES ${LUMADOT_LINUX_FILES}/io.github.lumadot.lumadot_tool.metainfo.xml
    DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
  install(FILES ${LUMADOT_LINUX_FILES}/lumadot-tool.svg
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
  install(PROGRAMS ${LUMADOT_LINUX_FILES}/lumadot-demo DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES ${LUMADOT_LINUX_FILES}/lumadot-tool.1 ${LUMADOT_LINUX_FILES}/lumadotctl.1
    ${LUMADOT_LINUX_FILES}/lumadot-simulator.1
    DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  foreach(completion bash:bash-completion/completions/lumadotctl zsh:zsh/site-functions/_lumadotctl
                     fish:fish/vendor_completions.d/lumadotctl.fish)
    string(REPLACE ":" ";" completion ${completion})
    list(GET completion 0 shell)
    list(GET completion 1 file)
    cmake_path(GET file PARENT_PATH folder)
    cmake_path(GET file FILENAME name)
    install(FILES ${PROJECT_BINARY_DIR}/completions/${shell} RENAME ${name}
      DESTINATION ${CMAKE_INSTALL_DATADIR}/${folder})
  endforeach()
  # udev's own folder: "lib" on every architecture, never lib/<triplet>.
  install(FILES ${LUMADOT_LINUX_FILES}/65-lumadot.rules DESTINATION lib/udev/rules.d)
endif()

set(CPACK_GENERATOR DEB TGZ)
set(CPACK_PACKAGE_NAME ${PROJECT_NAME})
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The LUMADOT Tool developers")
set(CPACK_PACKAGE_CONTACT "The LUMADOT Tool developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Configure the LUMADOT colour display controller")
set(CPACK_PACKAGE_DESCRIPTION
  "A window for the settings, palettes and files of the LUMADOT display\ncontrollers for pinball machines.")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)  # Packages only: the build tree keeps its symbols.
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)

# A rule is read when a device appears; a controller that is plugged in already is asked again.
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/debian/postinst @ONLY CONTENT [=[#!/bin/sh
set -e
if [ "$1" = configure ] && command -v udevadm >/dev/null; then
    udevadm control --reload || true
    udevadm trigger --subsystem-match=usb --attr-match=idVendor=0314 || true
fi
]=])
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/debian/postinst)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

include(CPack)
