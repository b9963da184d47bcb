#!/usr/bin/env bash
# Whether every file includes only what its layer may: the table under "Layers" in
# docs/architecture.md, whose rows are read from top to bottom, the first that fits a file is its own.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

git ls-files --cached --others --exclude-standard -- '*.h' '*.cpp' | sort -u |
  awk -F '|' '
    function trim(text) { gsub(/^ +| +$/, "", text); return text }

    # layer | places | may include
    FILENAME != "-" {
      if (/^## /) in_section = /^## Layers/
      if (!in_section || !/^\| [a-z]/ || /^\| layer/) next
      layers[++count] = trim($2)
      places[count] = $3
      split(trim($4), names, /, */)
      for (i in names) allowed[trim($2), names[i]] = 1
      allowed[trim($2), trim($2)] = 1
      next
    }

    function layer_of(file,    i, n, parts) {
      for (i = 1; i <= count; i++) {
        n = split(places[i], parts, "`")
        for (n--; n > 0; n -= 2)
          if (index(file, parts[n]) == 1) return layers[i]
      }
      return ""
    }

    # What an include is: a layer of ours, a library, "system", or "" for the standard library.
    function kind_of(name) {
      if (name ~ /^"/) return layer_of(substr(name, 2, length(name) - 2))
      if (name ~ /^<wx\//) return "wxWidgets"
      if (name ~ /^<libusb.h/) return "libusb"
      if (name ~ /^<gtk\//) return "GTK"
      if (name ~ /^<CLI\//) return "CLI11"
      if (name ~ /^<nlohmann\//) return "json"
      if (name ~ /^<asio/) return "Asio"
      if (name ~ /^<png/) return "libpng"
      if (name ~ /^<gif_lib/) return "giflib"
      return name ~ /[.\/]/ ? "system" : ""
    }

    {
      file = $0
      layer = layer_of(file)
      if (layer == "") next
      used[layer] = 1
      while ((getline line < file) > 0) {
        if (line !~ /^ *# *include/) continue
        sub(/^ *# *include */, "", line)
        sub(/[ \t]*\/\/.*/, "", line)
        kind = kind_of(line)
        if (kind == "" && line !~ /^"/) continue
        if (!((layer, kind) in allowed)) {
          printf "%s (%s) includes %s (%s)\n", file, layer, line, kind == "" ? "no layer" : kind
          wrong = 1
        }
      }
      close(file)
    }

    END {
      if (count == 0) { print "docs/architecture.md has no table of layers"; wrong = 1 }
      for (i = 1; i <= count; i++)
        if (!(layers[i] in used)) { print "no file belongs to the layer " layers[i]; wrong = 1 }
      exit wrong
    }' docs/architecture.md -
