#!/usr/bin/env bash
# Usage: udev_group_rule.sh GROUP_RULE SESSION_RULE
# The example for cabinets must mean the same device as the installed rule, and open it to the group alone.
set -euo pipefail

rule_of() { grep -v -e '^#' -e '^$' "$1"; }

session=$(rule_of "$2")
wanted="${session%, TAG*}, GROUP=\"lumadot\", MODE=\"0660\""
diff <(echo "$wanted") <(rule_of "$1")
