# What a program needs on Windows. Elsewhere lumadot_program() does nothing.

# lumadot_program(target WINDOW|CONSOLE|BARE title): icon, version and manifest, and whether it has a console;
# a bare one has neither console nor the toolkit.
function(lumadot_program target kind title)
  if(NOT WIN32)
    return()
  endif()
  lumadot_icon()
  string(REGEX REPLACE "^0*([0-9]+)\\.0*([0-9]+).*" "\\1,\\2,0,0" PROGRAM_VERSION ${PROJECT_VERSION})
  set(PROGRAM_ICON ${PROJECT_BINARY_DIR}/lumadot.ico)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.rc.in ${PROJECT_BINARY_DIR}/${target}.rc @ONLY)
  target_sources(${target} PRIVATE ${PROJECT_BINARY_DIR}/${target}.rc)
  set_source_files_properties(${PROJECT_BINARY_DIR}/${target}.rc PROPERTIES OBJECT_DEPENDS
    "${PROGRAM_ICON};${PROJECT_SOURCE_DIR}/packaging/windows/program.manifest")
  if(NOT kind STREQUAL CONSOLE)
    set_target_properties(${target} PROPERTIES WIN32_EXECUTABLE ON)
  endif()
  if(kind STREQUAL WINDOW)
    target_compile_definitions(${target} PRIVATE $<$<COMPILE_LANGUAGE:RC>:LUMADOT_WINDOW>)
  endif()
  set_property(GLOBAL APPEND PROPERTY LUMADOT_PROGRAMS ${target})
endfunction()

# The icon in the sizes that Windows shows, drawn from the one that every system uses.
function(lumadot_icon)
  if(TARGET lumadot_icon)
    return()
  endif()
  find_program(RSVG_CONVERT rsvg-convert REQUIRED)
  find_program(ICOTOOL icotool REQUIRED)
  set(drawing ${PROJECT_SOURCE_DIR}/packaging/linux/lumadot-tool.svg)
  foreach(size 16 20 24 32 40 48 64 128 256)
    list(APPEND draw COMMAND ${RSVG_CONVERT} --width ${size} --height ${size} --output lumadot-${size}.png ${drawing})
    if(size LESS 256)
      list(APPEND pictures lumadot-${size}.png)
    endif()
  endforeach()
  add_custom_command(OUTPUT ${PROJECT_BINARY_DIR}/lumadot.ico ${draw}
    COMMAND ${ICOTOOL} --create --output lumadot.ico ${pictures} --raw lumadot-256.png
    DEPENDS ${drawing} WORKING_DIRECTORY ${PROJECT_BINARY_DIR} VERBATIM)
  add_custom_target(lumadot_icon DEPENDS ${PROJECT_BINARY_DIR}/lumadot.ico)
endfunction()
