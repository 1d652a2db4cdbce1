#!/usr/bin/env bash
# Installs what is missing, builds everything, and runs every test: the Windows
# tests under Wine (in the build's private prefix, on Xvfb), then the native
# sanitizer and fuzz runs of the portable code.
#   ./test.sh                 everything
#   ./test.sh -R registrar    only the CTest entries matching a pattern
set -euo pipefail
cd "$(dirname "$0")"
source tools/wine-env.sh
lp_ensure_packages
lp_build
lp_ensure_display
lp_ensure_prefix
status=0
(cd "$LP_BUILD_DIR" && ctest --output-on-failure "$@") || status=1
if [ $# -eq 0 ] && [ -x tools/native-tests.sh ]; then
  tools/native-tests.sh || status=1
fi
exit $status
