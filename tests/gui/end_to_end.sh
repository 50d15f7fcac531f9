#!/usr/bin/env bash
# Works on the real program from outside, as a user does: opens a file, deletes a block, saves under a new name and
# compares the file with what the command line writes. tests/gui/end_to_end.sh [KLMZEP.exe]
# WINE names what runs a Windows program (default: the wine on the path, with the tests' prefix).
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
cd "$root"
program=${1:-build/win64/app/klmzep.exe}
export WINEPREFIX=${WINEPREFIX:-$root/build/wine64} WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
if [ -z "${DISPLAY:-}" ]; then
  tools/under_wine --prepare
  exec xvfb-run -a -s "-screen 0 1024x768x24" "$0" "$@"
fi
work=$(mktemp -d "$root/build/end_to_end.XXXXXX")
settings=$WINEPREFIX/drive_c/windows/KLMZEP.INI
before=$work/settings_before
if [ -f "$settings" ]; then cp "$settings" "$before"; fi
finish() {
  /usr/lib/wine/wineserver -k || true
  rm -f "$settings"
  if [ -f "$before" ]; then cp "$before" "$settings"; fi
  rm -rf "$work"
}
trap finish EXIT

fail() {
  echo "end to end: $*" >&2
  import -window root "$root/build/end_to_end_failure.png" || true
  exit 1
}
probe() { wine build/win64/tests/window_probe.exe "$@" | tr -d '\r'; }
zephyr() { wine build/win64/zephyr.exe "$@" | tr -d '\r'; }
windows_path() { local path=Z:$1; echo "${path//\//\\}"; }

printf 'ShowStartupBanner = 0\r\n' >"$settings"
cp resources/sample/kite.gif "$work/kite.gif"
# What is left of it without its comment, made without the editor.
python3 - "$work/kite.gif" "$work/without.gif" <<'PYTHON'
import sys
content = open(sys.argv[1], "rb").read()
comment = b"!\xFE\x14A kite in the zephyr\0"
assert content.count(comment) == 1
open(sys.argv[2], "wb").write(content.replace(comment, b""))
PYTHON

wine "$program" "$(windows_path "$work/kite.gif")" &
editor=$!
probe title 'kite.gif' || fail "the file did not open"
probe count 27 || fail "the list is not complete"
diff <(probe lines) <(zephyr list "$work/kite.gif") || fail "the list differs from the command line's"

read -r x y < <(probe point 2)
xdotool mousemove "$x" "$y" click 1
sleep 0.3
xdotool key --delay 100 alt+f d
probe count 26 || fail "the comment was not deleted"
xdotool key --delay 100 alt+f a
probe dialog || fail "no save dialog"
sleep 0.5
xdotool key ctrl+a
xdotool type --delay 20 "$(windows_path "$work/saved.gif")"
xdotool key Return
probe title 'saved.gif' || fail "the file was not saved"
probe lines >"$work/lines"
xdotool key --delay 100 alt+f x
wait "$editor" || fail "the editor ended with status $?"

key='HKLM\SOFTWARE\Microsoft\Windows\CurrentVersion'
registered() { wine reg query "$key" /v "$1" 2>/dev/null | tr -d '\r' | sed -n 's/.*REG_SZ *//p'; }
zephyr save "$work/without.gif" "$work/expected.gif" --owner "$(registered RegisteredOwner)" \
  --organisation "$(registered RegisteredOrganization)"
cmp "$work/saved.gif" "$work/expected.gif" || fail "the saved file differs from the command line's"
diff "$work/lines" <(zephyr list "$work/without.gif") || fail "the list after saving is not the file's"
grep -q 'saved.gif' "$settings" && fail "only opened files are listed as recent"
grep -q '^FileMenuItem = Z:.*kite.gif' "$settings" || fail "the opened file is not listed as recent"
gifsicle --info "$work/saved.gif" >/dev/null 2>"$work/complaints" || fail "another program can't read the file"
if [ -s "$work/complaints" ]; then fail "another program complains: $(cat "$work/complaints")"; fi
echo "end to end: the editor saved what the command line saves"
