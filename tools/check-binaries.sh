#!/usr/bin/env bash
# Checks what the shipped binaries are: LaunchPanel.exe a 64-bit GUI program that
# imports only Windows system DLLs and carries its manifest, icon and event log
# message table; lp.dll resources only, with no code to run and nothing imported;
# LaunchPanel.chm, the help, beside them as compiled help; KyPrintMon.dll a
# 64-bit library on system DLLs alone that exports its twelve entry points by
# name and nothing else.
#   tools/check-binaries.sh build/bin
set -u
bin=${1:?folder of LaunchPanel.exe, lp.dll and KyPrintMon.dll}
objdump=x86_64-w64-mingw32-objdump
failed=0
fail() { echo "FAIL: $*"; failed=1; }

system_dlls='^(kernel32|user32|gdi32|advapi32|shell32|shlwapi|comctl32|comdlg32|ole32|oleaut32|version|msvcrt|ucrtbase|api-ms-win-.*|winspool\.drv|mpr|netapi32|userenv|wtsapi32|uxtheme|secur32|ws2_32|crypt32|rpcrt4|imm32|winmm|psapi|setupapi)\.dll$|^winspool\.drv$'
exe="$bin/LaunchPanel.exe"
headers=$($objdump -p "$exe") || { fail "cannot read $exe"; exit 1; }
grep -q 'Magic.*20b' <<<"$headers" || fail "LaunchPanel.exe is not a 64-bit image"
grep -q 'Subsystem.*Windows GUI' <<<"$headers" || fail "LaunchPanel.exe is not a GUI program"
while read -r dll; do
  lower=$(tr 'A-Z' 'a-z' <<<"$dll")
  grep -Eq "$system_dlls" <<<"$lower" || fail "LaunchPanel.exe imports $dll"
done < <(grep 'DLL Name:' <<<"$headers" | awk '{print $3}')
resources=$(x86_64-w64-mingw32-windres -i "$exe" -O rc 2>/dev/null)
grep -q 'MANIFEST' <<<"$resources" || grep -q '^1 24' <<<"$resources" || fail "LaunchPanel.exe has no manifest"
grep -q 'common-controls\|Common-Controls' <<<"$resources" || fail "the manifest does not ask for common controls 6"
grep -q '^128 14 ' <<<"$resources" || fail "LaunchPanel.exe has no icon 128"
grep -q '^1 11 ' <<<"$resources" || fail "LaunchPanel.exe has no message table for its event log entries"

lib="$bin/lp.dll"
libheaders=$($objdump -p "$lib") || { fail "cannot read $lib"; exit 1; }
grep -q 'DLL Name:' <<<"$libheaders" && fail "lp.dll imports a library"
grep -q 'AddressOfEntryPoint[[:space:]]*0\+$' <<<"$libheaders" || fail "lp.dll has an entry point"
# The linker always writes its two empty constructor lists (32 bytes); anything more is code.
text=$($objdump -h "$lib" | awk '$2==".text" {print $3}')
[ -z "$text" ] || [ $((16#$text)) -le 32 ] || fail "lp.dll holds code"

help="$bin/LaunchPanel.chm"
if [ ! -f "$help" ]; then
  fail "LaunchPanel.chm is not beside the program"
elif [ "$(head -c 4 "$help")" != "ITSF" ]; then
  fail "LaunchPanel.chm is not compiled help"
fi
monitor="$bin/KyPrintMon.dll"
monheaders=$($objdump -p "$monitor") || { fail "cannot read $monitor"; exit 1; }
grep -q 'Magic.*20b' <<<"$monheaders" || fail "KyPrintMon.dll is not a 64-bit image"
while read -r dll; do
  lower=$(tr 'A-Z' 'a-z' <<<"$dll")
  grep -Eq "$system_dlls" <<<"$lower" || fail "KyPrintMon.dll imports $dll"
done < <(grep 'DLL Name:' <<<"$monheaders" | awk '{print $3}')
expected="DestroyDriverListW DestroyPrinterInfoList DisplayPrinterPreferences EnumAvailableDriversW EnumeratePorts GetPrinterList InitializePrinters InstallPrinter PRINT_DeletePrinter PrintTestPage UpdateInstalledPrinters isClientPrintingSupported"
exports=$(awk '/\[Ordinal\/Name Pointer\] Table/ {on=1; next} on && /^\t\[/ {print $3; next} on {exit}' <<<"$monheaders" | LC_ALL=C sort | tr '\n' ' ' | sed 's/ $//')
[ "$exports" = "$(tr ' ' '\n' <<<"$expected" | LC_ALL=C sort | tr '\n' ' ' | sed 's/ $//')" ] ||
  fail "KyPrintMon.dll exports '$exports'"

if [ $failed -eq 0 ]; then echo "binaries: 1 passed, 0 failed"; else echo "binaries: 0 passed, 1 failed"; fi
exit $failed
