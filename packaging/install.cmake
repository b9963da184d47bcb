# What `cmake --install` puts where, and the packages. What a build has no target or file of is left out,
# so that one list serves every build.

foreach(program lumadot-tool lumadotctl lumadot-viewer lumadot-simulator)
  if(TARGET ${program})
    install(TARGETS ${program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  endif()
endforeach()

# Until there is a list and a site of the project's own.
set(LUMADOT_HOMEPAGE "https://lumadot.example.org/")
set(LUMADOT_CONTACT "The LUMADOT Tool developers <lumadot-tool@lists.example.org>")

if(UNIX AND NOT APPLE)
  include(packaging/linux/install.cmake)
else()
  install(FILES LICENSE CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
endif()

include(packaging/package.cmake)
