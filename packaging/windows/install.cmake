# What the zip and the installer hold: the programs beside each other, and what they need.

get_property(programs GLOBAL PROPERTY LUMADOT_PROGRAMS)
install(TARGETS ${programs} RUNTIME DESTINATION .)
install(FILES ${LUMADOT_WINDOWS_LIBRARIES}/bin/libusb-1.0.dll DESTINATION .)
# In a folder of its own: the library there has libusb's name.
install(TARGETS simulated_bus RUNTIME DESTINATION simulated_bus)
# A program takes the library in its own folder before any other: the demo's tool lies beside it.
install(TARGETS lumadot-tool RUNTIME DESTINATION simulated_bus)
install(FILES LICENSE RENAME LICENSE.txt DESTINATION .)
# The page of Windows without what developers need, as the Notepad reads it.
file(READ docs/windows.md page)
string(REGEX REPLACE "\n## Building\n.*" "" page "${page}")
string(REPLACE "](simulator.md)" "](docs/simulator.md)" page "${page}")
file(GENERATE OUTPUT README.txt CONTENT "${page}" NEWLINE_STYLE CRLF)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/README.txt DESTINATION .)
foreach(page windows user-guide recordings troubleshooting lumadotctl simulator file-formats protocol)
  install(FILES docs/${page}.md DESTINATION docs)
endforeach()
install(DIRECTORY docs/pictures DESTINATION docs)
install(DIRECTORY ${LUMADOT_WINDOWS_LIBRARIES}/licences/ DESTINATION licences)
install(FILES packaging/windows/lumadot.inf DESTINATION driver)

# Entries of the start menu: the program's file, and its name.
set(LUMADOT_START_MENU
  lumadot-tool.exe "LUMADOT Tool"
  lumadot-viewer.exe "LUMADOT Viewer"
  lumadot-demo.exe "LUMADOT Demo")

set(CPACK_GENERATOR ZIP NSIS)
set(CPACK_OUTPUT_FILE_PREFIX ${PROJECT_SOURCE_DIR}/build/packages)
set(CPACK_PACKAGE_NAME ${PROJECT_NAME})
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-windows)
set(CPACK_PACKAGE_VENDOR "The LUMADOT Tool developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Configure the LUMADOT colour display controller")
set(CPACK_PACKAGE_INSTALL_DIRECTORY "LUMADOT Tool")
set(CPACK_PACKAGE_INSTALL_REGISTRY_KEY LUMADOT-Tool)
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)  # Packages only: the build tree keeps its symbols.

# A 32-bit installer would put a 64-bit program in the folder for 32-bit ones.
# CPack can pass no argument that has a blank in it.
set(CPACK_NSIS_EXECUTABLE ${PROJECT_BINARY_DIR}/makensis)
file(WRITE ${CPACK_NSIS_EXECUTABLE} "#!/bin/sh\nexec makensis '-XTarget amd64-unicode' \"$@\"\n")
file(CHMOD ${CPACK_NSIS_EXECUTABLE} PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
set(CPACK_NSIS_INSTALL_ROOT "$PROGRAMFILES64")
set(CPACK_NSIS_PACKAGE_NAME "LUMADOT Tool")
set(CPACK_NSIS_DISPLAY_NAME "LUMADOT Tool ${PROJECT_VERSION}")
set(CPACK_NSIS_EXECUTABLES_DIRECTORY .)
set(CPACK_NSIS_INSTALLED_ICON_NAME lumadot-tool.exe)
set(CPACK_NSIS_MUI_ICON ${PROJECT_BINARY_DIR}/lumadot.ico)
set(CPACK_NSIS_MUI_UNIICON ${PROJECT_BINARY_DIR}/lumadot.ico)
set(CPACK_NSIS_COMPRESSOR "/SOLID lzma")
set(CPACK_NSIS_MANIFEST_DPI_AWARE ON)
set(CPACK_NSIS_ENABLE_UNINSTALL_BEFORE_INSTALL ON)
# What the programs have kept for whoever uninstalls them: the places of their windows, the demo's memory. Not
# before a newer version is installed, when the uninstaller runs from where it lies.
set(CPACK_NSIS_EXTRA_UNINSTALL_COMMANDS "
  StrCmp $EXEDIR $INSTDIR kept
  SetShellVarContext current
  RMDir /r '$LOCALAPPDATA\\\\lumadot-demo'
  DeleteRegKey HKCU 'Software\\\\lumadot-tool'
  DeleteRegKey HKCU 'Software\\\\lumadot-viewer'
  DeleteRegKey HKCU 'Software\\\\lumadot-simulator'
  SetShellVarContext all
  kept:")
# Behind the removal of what was in it.
set(CPACK_NSIS_DELETE_ICONS_EXTRA "DeleteRegKey /ifempty SHCTX 'Software\\\\${CPACK_PACKAGE_VENDOR}'")
set(CPACK_NSIS_MENU_LINKS ${LUMADOT_START_MENU})

include(CPack)
