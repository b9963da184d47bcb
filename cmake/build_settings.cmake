# Options, warnings and instrumentation. `lumadot_settings(target)` applies them to one of our own targets.

option(LUMADOT_TESTS "Build the tests" ON)
option(LUMADOT_WERROR "Treat compiler warnings as errors" OFF)
option(LUMADOT_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
option(LUMADOT_FUZZ "Build the fuzz targets (clang only)" OFF)
option(LUMADOT_BENCH "Build the benchmarks" OFF)
option(LUMADOT_COVERAGE "Build with coverage counters" OFF)
option(LUMADOT_HARDEN "Build with what makes a memory error hard to use (not with the sanitizers)" ON)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE RelWithDebInfo)
endif()

if(LUMADOT_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(LUMADOT_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(LUMADOT_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

if(LUMADOT_HARDEN AND UNIX AND NOT APPLE AND NOT LUMADOT_SANITIZE)
  include(CheckPIESupported)
  check_pie_supported(LANGUAGES CXX)
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  add_compile_options(-fstack-protector-strong -fstack-clash-protection
    # It works in optimised builds only, and a compiler may have set it by itself.
    $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=3>)
  add_link_options(LINKER:-z,relro LINKER:-z,now)
endif()

function(lumadot_settings target)
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
  if(NOT MSVC)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                                             $<$<BOOL:${LUMADOT_WERROR}>:-Werror>)
  endif()
endfunction()
