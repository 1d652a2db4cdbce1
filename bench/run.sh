#!/usr/bin/env bash
# Builds and runs the benchmarks under Wine in the build's private prefix.
#   bench/run.sh [runs]
set -euo pipefail
cd "$(dirname "$0")/.."
source tools/wine-env.sh
lp_build >/dev/null
lp_ensure_display
lp_ensure_prefix
wine reg add 'HKLM\SOFTWARE\Veltran\Corvane\AppServer' /v PM_BehaviorCriteria /t REG_DWORD /d 1 /f >/dev/null 2>&1
wine "$LP_BUILD_DIR/bin/startup_bench.exe" "${1:-10}"
