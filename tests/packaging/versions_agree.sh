#!/usr/bin/env bash
# Usage: versions_agree.sh VERSION CHANGELOG METAINFO PAGE...
# The newest dated entry of the changelog must be the version of the build, and the metainfo must have the
# same releases on the same days; each page must name the package of this version, and no other.
set -euo pipefail

version=$1
changelog=$2
metainfo=$3
shift 3

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

for page in "$@"; do
  named=$(grep -oE 'lumadot-tool_[^_]+_' "$page" | sort -u)
  if [[ $named != "lumadot-tool_${version}_" ]]; then
    echo "$page names the package \"$named\", not that of $version"
    exit 1
  fi
done
