# CHANGELOG.md as a Debian changelog: awk -v package=NAME -v maintainer=CONTACT -f changelog.awk CHANGELOG.md
# Reads "## [VERSION] - YYYY-MM-DD", "### Group" and list items of one or more lines; versions without a
# date, as [Unreleased], are left out.

BEGIN {
  width = 78
  split("Sun Mon Tue Wed Thu Fri Sat", days, " ")
  split("Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec", months, " ")
  split("0 3 2 5 0 3 5 1 4 6 2 4", month_offsets, " ")
}

function day_of_week(year, month, day) {
  if (month < 3) year--
  return (year + int(year / 4) - int(year / 100) + int(year / 400) + month_offsets[month] + day) % 7
}

function print_item(    words, count, i, line) {
  if (item == "") return
  count = split(item, words, " ")
  line = "  *"
  for (i = 1; i <= count; i++) {
    if (length(line) + 1 + length(words[i]) > width) {
      print line
      line = "   "
    }
    line = line " " words[i]
  }
  print line
  item = ""
}

function end_version(    parts) {
  print_item()
  if (date == "") return
  split(date, parts, "-")
  printf "\n -- %s  %s, %s %s %s 12:00:00 +0000\n", maintainer,
    days[day_of_week(parts[1] + 0, parts[2] + 0, parts[3] + 0) + 1], parts[3], months[parts[2] + 0], parts[1]
  date = ""
}

/^## / {
  end_version()
  if (match($0, /[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]$/)) {
    date = substr($0, RSTART)
    version = $2
    gsub(/[][]/, "", version)
    printf "%s%s (%s) stable; urgency=medium\n\n", entries++ ? "\n" : "", package, version
  }
  next
}
date == "" { next }
/^### / { print_item(); group = substr($0, 5) }
/^- / { print_item(); item = group ": " substr($0, 3) }
/^  [^ ]/ { item = item " " $0 }
END { end_version() }
