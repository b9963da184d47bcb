# The files of a Linux desktop: menu entry, icons, man pages, completions, udev rule, documentation.

set(LUMADOT_LINUX_FILES ${PROJECT_SOURCE_DIR}/packaging/linux)
set(LUMADOT_ICON_SIZES 16 22 24 32 48 64 128 256)

# lumadot_compress(OUTPUT INPUT): without name and time, so that the same input makes the same file.
function(lumadot_compress output input)
  cmake_path(GET output PARENT_PATH folder)
  file(MAKE_DIRECTORY ${folder})
  add_custom_command(OUTPUT ${output} VERBATIM DEPENDS ${input}
    COMMAND gzip -9nc ${input} > ${output})
endfunction()

# The demo: the tool beside a simulated controller. The simulated bus has libusb's name; it lies in a
# folder of no loader, so that it never gets in front of the real one.
if(TARGET lumadot-simulator AND EXISTS ${LUMADOT_LINUX_FILES}/lumadot-demo)
  install(PROGRAMS ${LUMADOT_LINUX_FILES}/lumadot-demo DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(TARGETS usb_standin LIBRARY DESTINATION lib/lumadot/simulated_bus NAMELINK_SKIP)
endif()

# Completions, which lumadotctl writes when it has been linked.
if(TARGET lumadotctl)
  install(FILES ${PROJECT_BINARY_DIR}/completions/bash RENAME lumadotctl
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES ${PROJECT_BINARY_DIR}/completions/fish RENAME lumadotctl.fish
    DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
  # Debian's zsh looks for those of packages in a folder of another name.
  install(CODE "
    set(folder site-functions)
    if(CMAKE_INSTALL_PREFIX STREQUAL /usr)
      set(folder vendor-completions)
    endif()
    file(INSTALL ${PROJECT_BINARY_DIR}/completions/zsh RENAME _lumadotctl
      DESTINATION \${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_DATADIR}/zsh/\${folder})")
endif()

# Manual pages, compressed as every distribution has them. Each belongs to a file of its name.
set(compressed)
file(GLOB pages CONFIGURE_DEPENDS ${LUMADOT_LINUX_FILES}/*.1)
foreach(page ${pages})
  cmake_path(GET page STEM program)
  if(TARGET ${program} OR (program STREQUAL lumadot-demo AND TARGET lumadot-simulator))
    set(packed ${PROJECT_BINARY_DIR}/man/${program}.1.gz)
    lumadot_compress(${packed} ${page})
    list(APPEND compressed ${packed})
    install(FILES ${packed} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  endif()
endforeach()

# The changelog in the form that the package manager shows.
find_program(LUMADOT_AWK awk REQUIRED)
set(changelog ${PROJECT_BINARY_DIR}/doc/changelog)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/doc)
add_custom_command(OUTPUT ${changelog} VERBATIM
  DEPENDS ${PROJECT_SOURCE_DIR}/CHANGELOG.md ${LUMADOT_LINUX_FILES}/changelog.awk
  COMMAND ${LUMADOT_AWK} -v package=${PROJECT_NAME} -v "maintainer=${LUMADOT_CONTACT}"
          -f ${LUMADOT_LINUX_FILES}/changelog.awk ${PROJECT_SOURCE_DIR}/CHANGELOG.md > ${changelog})
lumadot_compress(${changelog}.gz ${changelog})
install(FILES ${changelog}.gz DESTINATION ${CMAKE_INSTALL_DOCDIR})
add_custom_target(lumadot_packed_pages ALL DEPENDS ${compressed} ${changelog}.gz)

install(FILES ${LUMADOT_LINUX_FILES}/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})
foreach(page user-guide recordings troubleshooting lumadotctl simulator windows file-formats protocol)
  if(EXISTS ${PROJECT_SOURCE_DIR}/docs/${page}.md)
    install(FILES ${PROJECT_SOURCE_DIR}/docs/${page}.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
  endif()
endforeach()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/pictures DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES ${LUMADOT_LINUX_FILES}/66-lumadot-group.rules DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)
foreach(program lumadot-tool lumadot-viewer)
  if(TARGET ${program})
    install(FILES ${LUMADOT_LINUX_FILES}/${program}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  endif()
endforeach()
install(FILES ${LUMADOT_LINUX_FILES}/lumadot-tool.mime.xml RENAME lumadot-tool.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
install(FILES ${LUMADOT_LINUX_FILES}/io.github.lumadot.lumadot_tool.metainfo.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${LUMADOT_LINUX_FILES}/lumadot-tool.svg
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
foreach(size ${LUMADOT_ICON_SIZES})
  install(FILES ${LUMADOT_LINUX_FILES}/icons/${size}.png RENAME lumadot-tool.png
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()
# udev's own folder: "lib" on every architecture, never lib/<triplet>.
install(FILES ${LUMADOT_LINUX_FILES}/65-lumadot.rules DESTINATION lib/udev/rules.d)
