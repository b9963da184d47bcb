# The packages; `scripts/package.sh` makes them.

set(CPACK_GENERATOR DEB TGZ)
set(CPACK_PACKAGE_NAME ${PROJECT_NAME})
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The LUMADOT Tool developers")
set(CPACK_PACKAGE_CONTACT ${LUMADOT_CONTACT})
set(CPACK_PACKAGE_HOMEPAGE_URL ${LUMADOT_HOMEPAGE})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "settings of the LUMADOT colour display controller")
set(CPACK_PACKAGE_DESCRIPTION
  "A window for the settings, palettes and files of the LUMADOT and LUMADOT XL
controllers, which take the place of the dot-matrix display of a pinball
machine, or show what PinMAME sends over USB. It sets input mode, colours,
brightness and signal enhancer, uploads files, and records the frames that the
controller captures from the machine.")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)  # Packages only: the build tree keeps its symbols.
set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-linux-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS udev)

# A rule is read when a device appears; a controller that is plugged in already is asked again.
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/debian/postinst @ONLY CONTENT [=[#!/bin/sh
set -e
if [ "$1" = configure ] && command -v udevadm >/dev/null; then
    udevadm control --reload 2>/dev/null || true
    udevadm trigger --subsystem-match=usb --attr-match=idVendor=0314 || true
fi
]=])
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/debian/postinst)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

include(CPack)
