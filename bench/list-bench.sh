#!/usr/bin/env bash
# Benchmarks of the list against its floors, under Wine in the build's private
# prefix. Writes bench/RESULTS.md. Measured, never asserted: nothing here fails
# because a number is high.
#   bench/list-bench.sh [runs] [large-runs]
# runs: runs of each measure up to 1,000 entries and of the reads (default 5);
# large-runs: runs of the panel at 5,000 entries, over a minute each (default 3).
set -euo pipefail
cd "$(dirname "$0")/.."
source tools/wine-env.sh
lp_build >/dev/null
lp_ensure_display
lp_ensure_prefix

runs=${1:-5}
large_runs=${2:-3}
sizes=(50 500 1000 5000)
bin=$LP_BUILD_DIR/bin
work=$LP_BUILD_DIR/list-bench
records=$work/records.txt
errors=$work/errors.txt
results=$LP_ROOT/bench/RESULTS.md
server='HKLM\SOFTWARE\Veltran\Corvane\AppServer'
catalogue_key='HKEY_LOCAL_MACHINE\SOFTWARE\Veltran\Corvane\AppServer\InstalledApps'
store_key='HKEY_CURRENT_USER\SOFTWARE\Veltran\Corvane\LaunchPanel'
places_key="$store_key\\Settings\\Standard\\LV_ItemsScreenPos"
logs_unix=$WINEPREFIX/drive_c/lp-list-bench-logs
# The entry whose ExePath the refresh measure changes: entry 2400 is a Notepad
# (see make_catalogue), and it moves to another program of the prefix.
changed_index=2400
changed_path='C:\windows\system32\winefile.exe'

mkdir -p "$work" "$logs_unix"
: > "$records"
: > "$errors"

stems=("Notepad" "Éditeur de texte" "Блокнот" "記事本" "Ωmega Console" "Überblick" "Registry Editor"
       "Gestor de archivos" "Ação rápida" "Søk og finn" "ノートパッド" "Zażółć gęślą")
targets=('C:\windows\system32\notepad.exe' 'C:\windows\system32\winefile.exe'
         'C:\windows\system32\cmd.exe' 'C:\windows\regedit.exe')
expandable=('%SystemRoot%\system32\notepad.exe' '%SystemRoot%\system32\winefile.exe'
            '%SystemRoot%\system32\cmd.exe' '%SystemRoot%\regedit.exe')

entry_name() { printf -v REPLY '%s %05d' "${stems[$1 % ${#stems[@]}]}" "$1"; }

# The bytes of a REG_EXPAND_SZ as a .reg file writes them: UTF-16LE with its end.
expand_hex() { printf '%s\0' "$1" | iconv -f UTF-8 -t UTF-16LE | od -An -v -tx1 | tr -s ' \n' ' ' |
               sed 's/^ //; s/ $//; s/ /,/g'; }

le32() {
  local v=$1
  printf -v REPLY '%02x,%02x,%02x,%02x' $((v & 255)) $((v >> 8 & 255)) $((v >> 16 & 255)) $((v >> 24 & 255))
}

# A catalogue of $1 entries: four real programs of the prefix, names in several
# scripts, every other ExePath expandable, some with options, a start directory,
# an icon. With "places", the user's store also holds a place for every entry,
# as the panel leaves it after a first session: the measured starts are a
# returning user's (a first start stores them with one view switch per row).
make_catalogue() {
  local count=$1 places=$2 i t line hexes=()
  for t in 0 1 2 3; do hexes[t]=$(expand_hex "${expandable[t]}"); done
  {
    printf 'Windows Registry Editor Version 5.00\r\n\r\n[-%s]\r\n\r\n[%s]\r\n\r\n' "$catalogue_key" "$catalogue_key"
    for ((i = 1; i <= count; i++)); do
      t=$((i % 4)); entry_name "$i"
      printf '[%s\\%s]\r\n' "$catalogue_key" "$REPLY"
      if ((i % 2)); then printf '"ExePath"=hex(2):%s\r\n' "${hexes[t]}"
      else printf '"ExePath"="%s"\r\n' "${targets[t]//\\/\\\\}"; fi
      ((i % 3)) || printf '"CmdLineOptions"="/bench:%d"\r\n' "$i"
      ((i % 5)) || printf '"StartDirectory"="C:\\\\windows"\r\n'
      ((i % 7)) || printf '"IconPath"="%s"\r\n"IconIndex"=dword:00000000\r\n' "${targets[t]//\\/\\\\}"
      printf '\r\n'
    done
    printf '[-%s]\r\n\r\n' "$store_key"
    if [ "$places" = places ]; then
      printf '[%s]\r\n' "$places_key"
      for ((i = 1; i <= count; i++)); do
        local k=$((i - 1)) a b c d
        le32 $((k % 10 * 80)); a=$REPLY; le32 $((k / 10 * 70)); b=$REPLY
        le32 $((k % 5 * 150)); c=$REPLY; le32 $((k / 5 * 18)); d=$REPLY
        entry_name "$i"
        printf '"%s"=hex:%s,%s,%s,%s\r\n' "$REPLY" "$a" "$b" "$c" "$d"
      done
      printf '\r\n'
    fi
  } | { printf '\xff\xfe'; iconv -f UTF-8 -t UTF-16LE; }
}

import_catalogue() {
  local file=$work/catalogue-$1-$2.reg
  make_catalogue "$1" "$2" > "$file"
  wine regedit /S "$(winepath -w "$file" 2>/dev/null)" </dev/null >/dev/null 2>&1
}

# Runs a Windows program of the benchmark; its key=value answer goes to the
# records as "measure size who value" for the keys asked, a failure to errors.
measure() {
  local who=$1 size=$2 keys=$3 out key value
  shift 3
  out=$(wine "$@" </dev/null 2>>"$work/wine-stderr.txt" | tr -d '\r') || true
  if grep -q '^error=' <<<"$out" || [ -z "$out" ]; then
    echo "$who at $size: ${out:-no answer}" | tr '\n' ' ' >> "$errors"; echo >> "$errors"
    return 0
  fi
  for key in $keys; do
    value=$(sed -n "s/^$key=//p" <<<"$out" | head -1)
    [ -n "$value" ] && echo "$key $size $who $value" >> "$records"
  done
  echo "  $who at $size: $(grep -E "^($(tr ' ' '|' <<<"$keys"))=" <<<"$out" | tr '\n' ' ')"
}

win() { winepath -w "$1" 2>/dev/null; }
driver=$bin/list_bench.exe
panel=$(win "$bin/LaunchPanel.exe")
floor=$(win "$bin/list_floor.exe")
report=$(win "$work/floor-report.txt")

floor_painted() {
  measure floor "$1" "painted_ms committed_kb self_painted_since_creation_ms self_read_ms self_images_ms self_rows_ms" \
    "$driver" painted "$floor" "$1" --report "$report"
}

wine reg add "$server" /v PM_BehaviorCriteria /t REG_DWORD /d 1 /f >/dev/null 2>&1
wine reg add "$server" /v LogDirectory /t REG_SZ /d "$(win "$logs_unix")" /f >/dev/null 2>&1
cleanup() {
  wine reg delete "${catalogue_key/HKEY_LOCAL_MACHINE/HKLM}" /f >/dev/null 2>&1 || true
  wine reg delete "${store_key/HKEY_CURRENT_USER/HKCU}" /f >/dev/null 2>&1 || true
  wine reg delete "$server" /v LogDirectory /f >/dev/null 2>&1 || true
  rm -rf "$logs_unix"
}
trap cleanup EXIT

load_before=$(cut -d' ' -f1-3 /proc/loadavg)
started=$(date +%s)
for size in "${sizes[@]}"; do
  echo "catalogue of $size entries"
  import_catalogue "$size" places
  if [ "$size" -lt 5000 ]; then
    for ((r = 1; r <= runs; r++)); do
      floor_painted "$size"
      measure panel "$size" "painted_ms committed_kb" "$driver" painted "$panel" "$size"
    done
    continue
  fi
  for ((r = 1; r <= runs; r++)); do
    measure raw "$size" "read_ms values" "$bin/raw_read_floor.exe"
    measure panel "$size" "read_ms groups" "$bin/program_catalogue_read.exe"
  done
  entry_name "$changed_index"
  for ((r = 1; r <= large_runs; r++)); do
    floor_painted "$size"
    measure panel "$size" "painted_ms committed_kb details_ms noop_refresh_ms refresh_ms" \
      "$driver" refresh "$panel" "$size" "$REPLY" "$changed_path"
  done
done
echo "a user's first start at 1000 entries (no places stored yet), once"
import_catalogue 1000 none
measure panel-first 1000 "painted_ms" "$driver" painted "$panel" 1000
elapsed=$(( $(date +%s) - started ))
load_after=$(cut -d' ' -f1-3 /proc/loadavg)

source "$LP_ROOT/bench/list-results.sh"
write_results > "$results"
echo "wrote $results (benchmark took ${elapsed}s)"
