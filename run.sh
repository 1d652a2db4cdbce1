#!/usr/bin/env bash
# Installs what is missing, builds, and starts Launch Panel on a demo catalogue
# in a private Wine prefix of its own. Arguments go to the program:
#   ./run.sh                       the list window (shell use)
#   ./run.sh /launch Notepad       launch use: start one catalogue item and end
# On $DISPLAY the program runs until it is closed; without a display it runs
# under Xvfb inside a Wine desktop, and a screenshot is taken.
set -euo pipefail
cd "$(dirname "$0")"
source tools/wine-env.sh
export WINEPREFIX="$LP_BUILD_DIR/run-prefix"
lp_ensure_packages
lp_build >/dev/null 2>&1 || { echo "Build failed: run cmake --build $LP_BUILD_DIR to see why" >&2; exit 1; }
had_display=${DISPLAY:-}
lp_ensure_display
lp_ensure_prefix

server='HKLM\SOFTWARE\Veltran\Corvane\AppServer'
apps="$server\\InstalledApps"
logdir='C:\LaunchPanel\Log'
reg() { wine reg "$@" >/dev/null 2>&1 || true; }

# A small catalogue of programs that every Wine prefix has, and a document.
docs="$WINEPREFIX/drive_c/users/Public/Documents"
mkdir -p "$docs" "$WINEPREFIX/drive_c/LaunchPanel/Log/Templates"
printf 'Welcome to Launch Panel.\r\nThis document opens with its handler.\r\n' > "$docs/Readme.txt"
cp "$LP_BUILD_DIR"/bin/Templates/*.html "$WINEPREFIX/drive_c/LaunchPanel/Log/Templates/" 2>/dev/null || true
# A fresh prefix knows how to open text files but has no .txt association.
reg add 'HKCR\.txt' /ve /d txtfile /f
reg delete "$apps" /f
reg add "$server" /v LogDirectory /t REG_EXPAND_SZ /d "$logdir" /f
add_app() {  # name exe [options] [directory]
  reg add "$apps\\$1" /v ExePath /t REG_EXPAND_SZ /d "$2" /f
  [ -n "${3:-}" ] && reg add "$apps\\$1" /v CmdLineOptions /t REG_SZ /d "$3" /f
  [ -n "${4:-}" ] && reg add "$apps\\$1" /v StartDirectory /t REG_EXPAND_SZ /d "$4" /f
  return 0
}
add_app Notepad '%SystemRoot%\notepad.exe'
add_app 'Registry Editor' '%SystemRoot%\regedit.exe'
add_app 'File Manager' '%SystemRoot%\system32\winefile.exe'
add_app 'Command Prompt' '%SystemRoot%\system32\cmd.exe' '/k echo Launched by Launch Panel' 'C:\users\Public'
add_app 'Readme' 'C:\users\Public\Documents\Readme.txt'
wineserver -w

exe="$LP_BUILD_DIR/bin/LaunchPanel.exe"
echo "Prefix: $WINEPREFIX"
echo "Catalogue: $apps (Notepad, Registry Editor, File Manager, Command Prompt, Readme)"
echo "Launch use: ./run.sh /launch Notepad   (or any catalogue name or program path)"
if [ -n "$had_display" ]; then
  wine "$exe" "$@"
  echo "Ended with $?; logs in $WINEPREFIX/drive_c/LaunchPanel/Log"
  exit 0
fi
shot="$LP_BUILD_DIR/run-screenshot.png"
wine explorer /desktop=LaunchPanel,1024x768 "$exe" "$@" &
pid=$!
sleep 10
import -window root -crop 1024x768+0+0 "$shot" 2>/dev/null || xwd -root -silent | convert xwd:- "$shot"
wineserver -k 2>/dev/null || true
wait $pid 2>/dev/null || true
echo "Screenshot: $shot"
echo "Logs: $(ls -t "$WINEPREFIX"/drive_c/LaunchPanel/Log/*.html 2>/dev/null | head -1)"
