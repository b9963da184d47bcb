#!/usr/bin/env bash
# Usage: udev_rule.sh RULE_FILE
set -euo pipefail

rules=$1
number=$(basename "$rules")
number=${number%%-*}

fail() {
  echo "$rules: $1"
  exit 1
}

# 73-seat-late.rules acts on the uaccess tag: a rule that sorts after it has no effect.
if ((number <= 60 || number >= 73)); then
  fail "sorts outside 61..72"
fi

line=$(grep -v -e '^#' -e '^$' "$rules")
for part in 'SUBSYSTEM=="usb"' 'ATTR{idVendor}=="0314"' 'ATTR{idProduct}=="e457"' 'TAG+="uaccess"'; do
  grep -qF -- "$part" <<<"$line" || fail "lacks $part"
done
if grep -qwE 'MODE|GROUP|OWNER' <<<"$line"; then
  fail "access is the session's to give: no MODE, GROUP or OWNER"
fi

# The command "verify" came with systemd 254.
if command -v udevadm >/dev/null && udevadm --help | grep -qw verify; then
  udevadm verify "$rules"
fi
