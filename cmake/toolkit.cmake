# The target `wx`: wxWidgets with its flags.

add_library(wx INTERFACE)
if(MINGW)
  # Its own description of itself: CMake's module would ask the wx-config of the machine that builds.
  find_package(wxWidgets 3.2 REQUIRED CONFIG COMPONENTS core base xml xrc)
  target_link_libraries(wx INTERFACE ${wxWidgets_LIBRARIES})
else()
  find_package(wxWidgets 3.1 REQUIRED COMPONENTS core base xml xrc adv)
  separate_arguments(LUMADOT_WX_FLAGS NATIVE_COMMAND "${wxWidgets_CXX_FLAGS}")
  target_include_directories(wx SYSTEM INTERFACE ${wxWidgets_INCLUDE_DIRS})
  target_compile_definitions(wx INTERFACE ${wxWidgets_DEFINITIONS})
  target_compile_options(wx INTERFACE ${LUMADOT_WX_FLAGS})
  target_link_libraries(wx INTERFACE ${wxWidgets_LIBRARIES})
endif()
