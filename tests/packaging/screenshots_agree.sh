#!/usr/bin/env bash
# Usage: screenshots_agree.sh METAINFO PICTURES
# Each screenshot of the metainfo must be a picture of the documentation, of the size that is told.
set -euo pipefail

command -v identify >/dev/null || {
  echo "skipped: identify (package imagemagick) is not installed"
  exit 77
}
told=$(sed -nE 's/.*<image .*width="([0-9]+)" height="([0-9]+)">.*\/([^/]+)<\/image>.*/\3 \1 \2/p' "$1")
[[ -n $told ]]
while read -r name width height; do
  there=$(identify -format '%w %h' "$2/$name")
  if [[ $there != "$width $height" ]]; then
    echo "$name is $there, the metainfo says $width $height"
    exit 1
  fi
done <<<"$told"
