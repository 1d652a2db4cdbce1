#!/usr/bin/env bash
# Native checks of the pure C++ parts of the foundation library (UTF-8 codec,
# wildcard matcher): builds tests/native with clang under AddressSanitizer and
# UndefinedBehaviorSanitizer in ${LP_BUILD_DIR:-build}/native, runs the sanitizer
# tests, then each libFuzzer target for a bounded time. Exits non-zero on any
# failure and ends with "N passed, N failed".
#   LP_FUZZ_SECONDS   time budget of each fuzz target (default 20)
set -u

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root" || exit 1
build_dir=${LP_BUILD_DIR:-build}
case "$build_dir" in /*) ;; *) build_dir="$root/$build_dir" ;; esac
native_dir="$build_dir/native"
fuzz_seconds=${LP_FUZZ_SECONDS:-20}

passed=0
failed=0
record() {  # record <name> <status>
  if [ "$2" -eq 0 ]; then
    passed=$((passed + 1)); echo "PASS: $1"
  else
    failed=$((failed + 1)); echo "FAIL: $1 (status $2)"
  fi
}
finish() {
  echo "$passed passed, $failed failed"
  [ "$failed" -eq 0 ]
  exit $?
}

for tool in clang clang++ cmake; do
  if ! command -v "$tool" >/dev/null; then
    echo "native tests: $tool is missing"; failed=$((failed + 1)); finish
  fi
done

echo "== native build in $native_dir"
CC=clang CXX=clang++ cmake -S "$root/tests/native" -B "$native_dir" -DCMAKE_BUILD_TYPE=Debug >/dev/null &&
  cmake --build "$native_dir" -j"$(nproc)" >"$native_dir/build.log" 2>&1
status=$?
if [ "$status" -ne 0 ]; then
  [ -f "$native_dir/build.log" ] && tail -40 "$native_dir/build.log"
  record "native build" "$status"
  finish
fi

export ASAN_OPTIONS=${ASAN_OPTIONS:-abort_on_error=1:detect_leaks=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}

echo "== sanitizer tests"
"$native_dir/native_core_tests" --gtest_color=no
record "native_core_tests (ASan+UBSan)" $?

for target in fuzz_utf8 fuzz_wildcard; do
  seeds="$root/tests/native/fuzz/seeds/${target#fuzz_}"
  corpus="$native_dir/corpus/$target"
  artifacts="$native_dir/artifacts/$target/"
  mkdir -p "$corpus" "$artifacts"
  echo "== $target for ${fuzz_seconds} s"
  "$native_dir/$target" -max_total_time="$fuzz_seconds" -timeout=10 -print_final_stats=1 \
    -artifact_prefix="$artifacts" "$corpus" "$seeds" >"$native_dir/$target.log" 2>&1
  status=$?
  grep -E '^(stat::number_of_executed_units|Done)' "$native_dir/$target.log"
  if [ "$status" -ne 0 ]; then
    tail -40 "$native_dir/$target.log"
  fi
  record "$target" "$status"
done

finish
