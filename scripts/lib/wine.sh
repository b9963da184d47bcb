# shellcheck shell=bash
# Windows programs on this machine. To be sourced, in the project's folder.

# shellcheck disable=SC2034  # The script that sources this file reads it.
WINE_PACKAGES=(wine wine64)

# A Windows of the project's own: nothing of the user's is in it, and nothing is left in the user's.
export WINEPREFIX=$PWD/build/wine WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'
# In another locale it could not name files that have letters beyond ASCII.
export LC_ALL=C.UTF-8

# start_wine: makes that Windows, empty, and keeps it running. Needs a display.
start_wine() {
  rm -rf "$WINEPREFIX"
  mkdir -p "$WINEPREFIX"
  wineserver --persistent # Before anything starts one that is not.
  windows wineboot --init >"$WINEPREFIX.log" 2>&1 || { cat "$WINEPREFIX.log" && return 1; }
}

stop_wine() { wineserver --kill || true; }

# windows PROGRAM [ARGUMENT...]. Not through Debian's `wine`, which talks about the 32-bit part that is missing.
windows() { /usr/lib/wine/wine64 "$@"; }

# set_scale PERCENT: of everything on the screen.
set_scale() {
  windows reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d $((96 * $1 / 100)) /f >/dev/null
  wineserver --kill
  wineserver --wait
  wineserver --persistent
}

# As Windows names a file of this system.
windows_name() { echo "Z:${1//\//\\}"; }
