#!/usr/bin/env bash
# Usage: versions_agree.sh VERSION CHANGELOG METAINFO
# The newest dated entry of the changelog must be the version of the build, and the metainfo must have the
# same releases on the same days.
set -euo pipefail

version=$1
changelog=$2
metainfo=$3

changes=$(sed -nE 's/^## \[([^]]+)\] - ([0-9]{4}-[0-9]{2}-[0-9]{2})$/\1 \2/p' "$changelog")
newest=$(head -n 1 <<<"$changes")
if [[ ${newest% *} != "$version" ]]; then
  echo "$changelog: the newest dated entry is \"$newest\", the build is $version"
  exit 1
fi
diff <(echo "$changes") <(sed -nE 's/.*<release version="([^"]+)" date="([^"]+)".*/\1 \2/p' "$metainfo") ||
  {
    echo "the changelog (<) and the metainfo (>) have other releases"
    exit 1
  }
