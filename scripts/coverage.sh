#!/usr/bin/env bash
# Line and branch coverage of app/, control/, device/ and ui/ by all tests. Fails under 98 % of the lines.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/packages.sh
source scripts/lib/packages.sh

need_packages "${COVERAGE_PACKAGES[@]}"
find build/coverage -name '*.gcda' -delete 2>/dev/null || true
scripts/test.sh coverage
report() {
  gcovr --root . --object-directory build/coverage --filter app/ --filter control/ --filter device/ --filter display/ \
    --filter pictures/ --filter platform/ --filter recording/ --filter ui/ \
    --exclude-throw-branches --exclude-unreachable-branches "$@"
}
report --branches
report --fail-under-line 98
