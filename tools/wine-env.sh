# Shared set-up for every script that builds or runs the program: the packages,
# the private Wine prefix and a display. Sourced, never run. Nothing here touches
# ~/.wine: the prefix lives in the build tree unless WINEPREFIX names another.

LP_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
: "${LP_BUILD_DIR:=$LP_ROOT/build}"
: "${WINEPREFIX:=$LP_BUILD_DIR/wineprefix}"
export WINEPREFIX
export WINEDEBUG=${WINEDEBUG:--all}
export WINEARCH=win64
# No Mono or Gecko installer dialogs: the program needs neither.
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}

# ghostscript: the PPD files of the test printers (Wine's PostScript driver needs one).
# python3: puts the help file's context map right after chmcmd.
lp_packages=(cmake make mingw-w64 wine wine64 xvfb x11-utils imagemagick googletest clang libclang-rt-14-dev fp-utils-3.2.2 ghostscript python3)

lp_ensure_packages() {
  local missing=()
  local p
  for p in "${lp_packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'ok installed' || missing+=("$p")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  if [ "$(id -u)" -ne 0 ]; then
    echo "Missing packages: ${missing[*]} (run as root, or install them)" >&2
    return 1
  fi
  echo "Installing: ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq && apt-get install -y -qq "${missing[@]}" >/dev/null
}

lp_build() {
  local type=${1:-RelWithDebInfo}
  cmake -S "$LP_ROOT" -B "$LP_BUILD_DIR" -DCMAKE_BUILD_TYPE="$type" \
        -DCMAKE_TOOLCHAIN_FILE="$LP_ROOT/cmake/mingw-w64-x86_64.cmake" >/dev/null &&
  cmake --build "$LP_BUILD_DIR" -j"$(nproc)"
}

# A display for windows: the caller's $DISPLAY, else one Xvfb shared by all runs
# of this prefix, started on first use and found again through a file.
lp_ensure_display() {
  if [ -n "${DISPLAY:-}" ] && xdpyinfo >/dev/null 2>&1; then return 0; fi
  local file="$WINEPREFIX.display" n
  if [ -f "$file" ]; then
    n=$(cat "$file")
    if DISPLAY=":$n" xdpyinfo >/dev/null 2>&1; then export DISPLAY=":$n"; return 0; fi
  fi
  for n in $(seq 90 140); do
    [ -e "/tmp/.X11-unix/X$n" ] || [ -e "/tmp/.X$n-lock" ] && continue
    Xvfb ":$n" -screen 0 1280x1024x24 -nolisten tcp >/dev/null 2>&1 &
    local i
    for i in $(seq 1 50); do
      DISPLAY=":$n" xdpyinfo >/dev/null 2>&1 && break
      sleep 0.1
    done
    if DISPLAY=":$n" xdpyinfo >/dev/null 2>&1; then
      mkdir -p "$(dirname "$file")"
      echo "$n" > "$file"
      export DISPLAY=":$n"
      return 0
    fi
  done
  echo "No X display could be started" >&2
  return 1
}

# The private prefix: made once (under a lock, since tests may start together),
# then kept warm by a persistent wineserver.
lp_ensure_prefix() {
  mkdir -p "$(dirname "$WINEPREFIX")"
  (
    flock 9
    if [ ! -f "$WINEPREFIX/.lp-ready" ]; then
      wineboot -i >/dev/null 2>&1
      wineserver -w
      # A crashing test program must end, not open Wine's crash dialog.
      wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null 2>&1
      wineserver -w
      touch "$WINEPREFIX/.lp-ready"
    fi
  ) 9>"$WINEPREFIX.lock"
  # Wine's own background programs (services, the desktop) must not inherit the
  # caller's output: a pipe they hold open would keep a test "running" until they
  # end. They are started here, with no output, and kept warm by the server.
  wineserver -p30 </dev/null >/dev/null 2>&1 || true
  wine cmd /c exit </dev/null >/dev/null 2>&1 || true
}
