# shellcheck shell=bash
# The libraries that the programs for Windows need, built from Debian's source packages and kept between
# runs. To be sourced, in the project's folder.

# shellcheck disable=SC2034  # The script that sources this file reads it.
WINDOWS_LIBRARY_PACKAGES=("${WINDOWS_COMPILER_PACKAGES[@]}" gcc-mingw-w64-x86-64-posix libz-mingw-w64-dev
  googletest libasio-dev libcli11-dev nlohmann-json3-dev cmake ninja-build make pkg-config dpkg-dev nsis)

libraries=$PWD/build/windows-libraries
prefix=$libraries/prefix
triple=x86_64-w64-mingw32

# build_windows_libraries: all of them, each only if what it is made from has changed.
build_windows_libraries() {
  mkdir -p "$prefix/built" "$prefix/licences" "$libraries/sources"
  read_source_lists
  build_library libusb libusb-1.0
  build_library libpng libpng1.6
  build_library libjpeg-turbo libjpeg-turbo
  build_library expat expat
  build_library giflib giflib
  build_library wxwidgets wxwidgets3.2
  build_library googletest
  copy_headers libasio-dev libcli11-dev nlohmann-json3-dev
  # What the compiler links: zlib, the C library with its threads, libgcc and libstdc++.
  add_installed_licence libz-mingw-w64
  add_installed_licence mingw-w64-common
  add_installed_licence gcc-mingw-w64-base /usr/share/common-licenses/GPL-3
  # The installer and what it leaves for the end.
  add_installed_licence nsis
}

# build_library NAME [SOURCE_PACKAGE]
# Runs recipe_NAME in the unpacked sources, unless the same recipe with the same compiler has already
# built the newest version that can be had.
build_library() {
  local name=$1 package=${2:-} version='' key result
  key=$(recipe_key "$name")
  is_built "$name" "$(newest_version "$package") $key" && return
  rm -rf "${libraries:?}/$name"
  if [[ -n $package ]]; then
    version=$(get_sources "$package" "$libraries/$name")
  fi
  if is_built "$name" "$version $key"; then
    rm -rf "${libraries:?}/$name"
    return
  fi
  echo "Building $name for Windows"
  rm -f "$prefix/built/$name"
  mkdir -p "$libraries/$name"
  set +e # In a condition, the shell would go on after a step of the recipe that fails.
  (
    set -e
    cd "$libraries/$name"
    "recipe_$name"
  ) >"$libraries/$name.log" 2>&1
  result=$?
  set -e
  if ((result != 0)); then
    tail -n 40 "$libraries/$name.log" >&2
    echo "error: $name could not be built; see $libraries/$name.log" >&2
    return 1
  fi
  rm -rf "${libraries:?}/$name"
  echo "$version $key" >"$prefix/built/$name"
}

is_built() { [[ $(cat "$prefix/built/$1" 2>/dev/null) == "$2" ]]; }

# Stands for all that a recipe works with but the sources.
recipe_key() {
  {
    installed_version g++-mingw-w64-x86-64-posix
    installed_version googletest
    echo "$release"
    declare -f "recipe_$1" with_cmake
    cat cmake/windows.toolchain.cmake
  } | sha256sum
}

# What follows are the recipes: each runs in the library's own sources, whose version is in $version.

# with_cmake SOURCE_FOLDER OPTION... : builds a library and installs it beside the others.
with_cmake() {
  cmake -S "$1" -B for-windows -G Ninja -DCMAKE_TOOLCHAIN_FILE="$libraries/../../cmake/windows.toolchain.cmake" \
    -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_BUILD_TYPE=Release -DCMAKE_C_FLAGS_RELEASE="$release" \
    -DCMAKE_CXX_FLAGS_RELEASE="$release" "${@:2}"
  cmake --build for-windows
  cmake --install for-windows
}
release="-O2 -DNDEBUG -ffunction-sections -fdata-sections"

# A library of its own beside the programs, so that who uses them can replace it.
recipe_libusb() {
  ./configure --host="$triple" --prefix="$prefix" --enable-shared --disable-static --disable-udev \
    CC="$triple-gcc-posix" CFLAGS="-O2 -ffile-prefix-map=$PWD=." LDFLAGS=-static-libgcc
  make -j "$(nproc)"
  make install
  "$triple-strip" "$prefix/bin/libusb-1.0.dll"
  add_licence libusb "$version" COPYING
}

recipe_libpng() {
  with_cmake . -DPNG_SHARED=OFF -DPNG_TESTS=OFF -DPNG_EXECUTABLES=OFF
  add_licence libpng "$version" LICENSE
}

recipe_libjpeg-turbo() {
  with_cmake . -DENABLE_SHARED=OFF -DWITH_SIMD=OFF -DWITH_TURBOJPEG=OFF
  add_licence libjpeg-turbo "$version" LICENSE.md README.ijg
}

# XML_DTD: its CMake files define it without a value, which its sources do not take.
recipe_expat() {
  with_cmake expat -DEXPAT_SHARED_LIBS=OFF -DEXPAT_BUILD_TOOLS=OFF -DEXPAT_BUILD_EXAMPLES=OFF \
    -DEXPAT_BUILD_TESTS=OFF -DEXPAT_BUILD_DOCS=OFF -DEXPAT_DTD=OFF -DCMAKE_C_FLAGS=-DXML_DTD=1
  add_licence expat "$version" expat/COPYING
}

recipe_giflib() {
  local file
  for file in dgif_lib egif_lib gifalloc gif_err gif_hash openbsd-reallocarray quantize; do
    "$triple-gcc-posix" -O2 -std=gnu99 "-ffile-prefix-map=$PWD=." -c "$file.c"
  done
  rm -f "$prefix/lib/libgif.a"
  "$triple-ar" rcs "$prefix/lib/libgif.a" ./*.o
  cp gif_lib.h "$prefix/include"
  add_licence giflib "$version" COPYING
}

recipe_wxwidgets() {
  local part off=()
  for part in AUI HTML PROPGRID RIBBON RICHTEXT STC WEBVIEW MEDIACTRL OPENGL DEBUGREPORT SOCKETS REGEX \
    NANOSVG LIBTIFF HELP WXHTML_HELP MDI_ARCHITECTURE DOC_VIEW_ARCHITECTURE PRINTING_ARCHITECTURE WEBREQUEST \
    URL PROTOCOL PROTOCOL_HTTP PROTOCOL_FTP PROTOCOL_FILE FS_INET SECRETSTORE GRID JOYSTICK SOUND \
    DIALUP_MANAGER; do
    off+=("-DwxUSE_$part=OFF")
  done
  # Its CMake files link the resources with the HTML library even where that is not built.
  sed -i 's/ PRIVATE wxhtml wxxml/ PRIVATE wxxml/' build/cmake/lib/xrc/CMakeLists.txt
  with_cmake . -DwxBUILD_SHARED=OFF -DwxBUILD_CXX_STANDARD=17 "${off[@]}" \
    -DwxUSE_ZLIB=sys -DwxUSE_EXPAT=sys -DwxUSE_LIBJPEG=sys -DwxUSE_LIBPNG=sys
  add_licence wxwidgets "$version" docs/licence.txt docs/lgpl.txt
}

recipe_googletest() {
  with_cmake /usr/src/googletest
}

# copy_headers PACKAGE... : libraries that are nothing but headers, as Debian installs them. The compiler for
# Windows must not look into /usr/include.
copy_headers() {
  local package file
  for package in "$@"; do
    dpkg -L "$package" | grep -E '^/usr/(include|share/cmake|lib/cmake)/' | while read -r file; do
      [[ ! -f $file ]] || install -C -D -m 644 "$file" "$prefix/${file#/usr/}"
    done
    add_installed_licence "$package"
  done
}

# What follows fetches sources and licences.

# Lists of Debian's source packages, in folders of our own: the machine's own setting stays as it is.
read_source_lists() {
  mkdir -p "$libraries/apt/lists/partial" "$libraries/apt/sources"
  local list
  for list in /etc/apt/sources.list /etc/apt/sources.list.d/*debian*; do
    [[ -f $list ]] || continue
    sed -E 's/^deb /deb-src /; s/^Types:.*/Types: deb-src/' "$list" >"$libraries/apt/sources/${list##*/}"
  done
  apt_sources apt-get -qq update || echo "warning: the lists of source packages could not be renewed" >&2
}

apt_sources() {
  "$1" -o Dir::Etc::SourceList=/dev/null -o Dir::Etc::SourceParts="$libraries/apt/sources" \
    -o Dir::State::Lists="$libraries/apt/lists" -o APT::Sandbox::User=root "${@:2}"
}

# source_versions PACKAGE: those in the lists, newest first.
source_versions() {
  apt_sources apt-cache madison "$1" | awk -F ' *[|] *' '/ Sources$/ { print $2 }' |
    sort --unique --reverse --version-sort
}

newest_version() {
  [[ -z $1 ]] || source_versions "$1" | sed -n 1p
}

# get_sources PACKAGE FOLDER: unpacks the newest version that can be had, with Debian's corrections, and
# prints which one that is. A mirror may lack the files of a version that it lists.
get_sources() {
  local version newest
  newest=$(newest_version "$1")
  for version in $(source_versions "$1"); do
    (cd "$libraries/sources" && apt_sources apt-get -qq source --download-only "$1=$version") >&2 || continue
    dpkg-source --no-check --no-copy -x "$libraries/sources/$1_${version#*:}.dsc" "$2" >&2
    if [[ $version != "$newest" ]]; then
      echo "warning: $1 $newest cannot be had here; using $version" >&2
    fi
    echo "$version"
    return
  done
  echo "error: no sources of $1 can be had" >&2
  return 1
}

# add_licence NAME VERSION FILE... : the texts, for the package.
add_licence() {
  rm -f "$prefix/licences/$1-"*
  cat "${@:3}" >"$prefix/licences/$1-${2#*:}.txt"
}

# add_installed_licence PACKAGE [FILE]... : those of a package of Debian's.
add_installed_licence() {
  add_licence "$1" "$(installed_version "$1")" "/usr/share/doc/$1/copyright" "${@:2}"
}

installed_version() { dpkg-query -W -f '${Version}\n' "$1"; }
