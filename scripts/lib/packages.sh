# shellcheck shell=bash
# Debian packages that the scripts need. To be sourced.
# shellcheck disable=SC2034  # The arrays are read by the scripts that source this file.

BUILD_PACKAGES=(g++ cmake ninja-build pkg-config libwxgtk3.2-dev libgtk-3-dev libusb-1.0-0-dev
  libasio-dev libcli11-dev nlohmann-json3-dev libpng-dev libgif-dev)
RUN_PACKAGES=(xvfb xauth xdotool x11-utils imagemagick openbox fonts-dejavu-core adwaita-icon-theme)
TEST_PACKAGES=(libgtest-dev libx11-dev libumockdev-dev umockdev libbenchmark-dev desktop-file-utils appstream
  groff-base man-db libxml2-utils procps libatspi2.0-dev at-spi2-core dbus usbip
  librsvg2-bin python3-pyqt5.qtsvg shared-mime-info libglib2.0-bin zsh fish python3-pil "${RUN_PACKAGES[@]}")
PACKAGING_PACKAGES=(dpkg-dev file gzip)
PACKAGE_TEST_PACKAGES=(lintian devscripts mmdebstrap)
SYSTEM_TEST_PACKAGES=(qemu-system-x86 mmdebstrap genext2fs e2fsprogs)
FUZZ_PACKAGES=(clang libclang-rt-dev)
COVERAGE_PACKAGES=(gcovr)
LINT_PACKAGES=(clang-format clang-tidy cppcheck shellcheck shfmt)
WINDOWS_COMPILER_PACKAGES=(g++-mingw-w64-x86-64-posix)

# need_packages PACKAGE...
# Installs those that are missing. Silent when none is.
need_packages() {
  local package missing=()
  for package in "$@"; do
    is_installed "$package" || missing+=("$package")
  done
  if ((${#missing[@]} == 0)); then
    return 0
  fi

  if ! command -v apt-get >/dev/null; then
    echo "error: apt-get not found; install by other means: ${missing[*]}" >&2
    return 1
  fi
  local as_root=()
  if ((EUID != 0)); then
    if ! command -v sudo >/dev/null; then
      echo "error: neither root nor sudo; as root: apt-get install ${missing[*]}" >&2
      return 1
    fi
    as_root=(sudo)
  fi

  echo "Installing: ${missing[*]}" >&2
  # Once more on failure: mirrors and networks have short breaks.
  if ! install_packages && ! install_packages; then
    echo "error: could not install: ${missing[*]}" >&2
    return 1
  fi
}

is_installed() {
  [[ $(dpkg-query -W -f ' ${db:Status-Status} ' "$1" 2>/dev/null) == *' installed '* ]]
}

# Part of need_packages, whose variables it reads.
install_packages() {
  local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive
    apt-get -qq -o DPkg::Lock::Timeout=300)
  "${apt[@]}" update >&2 &&
    "${apt[@]}" install -y --no-install-recommends "${missing[@]}" >&2
}
