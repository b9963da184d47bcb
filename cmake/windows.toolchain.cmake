# Builds for 64-bit Windows on Debian, with MinGW-w64 and the libraries that scripts/windows.sh has built.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(triple x86_64-w64-mingw32)
# The compilers with POSIX threads: with the others the standard library has no std::thread.
set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)

get_filename_component(LUMADOT_WINDOWS_LIBRARIES ${CMAKE_CURRENT_LIST_DIR}/../build/windows-libraries/prefix ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH ${LUMADOT_WINDOWS_LIBRARIES} /usr/${triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} ${LUMADOT_WINDOWS_LIBRARIES}/lib/pkgconfig)

# Debian's package has a DLL beside it, which would have to be shipped.
set(ZLIB_LIBRARY /usr/${triple}/lib/libz.a CACHE FILEPATH "")

# No folder of the building machine in a program, neither ours nor the libraries'.
get_filename_component(source_folder ${CMAKE_CURRENT_LIST_DIR}/.. ABSOLUTE)
set(flags "-ffile-prefix-map=${source_folder}=.")
set(CMAKE_C_FLAGS_INIT ${flags})
set(CMAKE_CXX_FLAGS_INIT ${flags})
# What no program refers to is left out; a program needs no file of the compiler's.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--gc-sections")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static -Wl,--gc-sections")

set(CMAKE_CROSSCOMPILING_EMULATOR wine)
