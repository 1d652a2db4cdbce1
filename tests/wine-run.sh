#!/usr/bin/env bash
# Runs one Windows program of the build under Wine in the project's private prefix.
# CTest uses it as the cross-compiling emulator; it also serves by hand:
#   tests/wine-run.sh build/tests/lp_tests.exe --gtest_filter='Monitor*'
set -u
source "$(dirname "$0")/../tools/wine-env.sh"
lp_ensure_display || exit 1
lp_ensure_prefix
exec wine "$@"
