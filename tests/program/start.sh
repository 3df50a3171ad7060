#!/usr/bin/env bash
# The program itself, as an engineer starts it: its options, and the first words it sends
# on the virtual board, read from its trace. Usage: start.sh PATH-TO-qz7740
set -u
program=$1
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
export QT_QPA_PLATFORM=offscreen
fail() { echo "FAIL: $*"; exit 1; }

"$program" --help >"$dir/help" 2>&1 || fail "--help exits with $?"
grep -q -- "--simulate" "$dir/help" || fail "--help does not name --simulate"

"$program" --no-such-option >/dev/null 2>&1
[ $? -eq 2 ] || fail "an unknown option does not exit with 2"

# Beyond loopback without --allow: refused, saying why, before anything listens.
timeout 30 "$program" --simulate --remote 0 --listen 0.0.0.0 >/dev/null 2>"$dir/open"
[ $? -eq 2 ] && grep -q '^qz7740: --listen 0.0.0.0 would let other machines connect' "$dir/open" ||
  fail "--listen 0.0.0.0 without --allow: $(head -c 300 "$dir/open")"

# The program runs until it is closed: once its trace holds the start sequence (or a
# minute has gone, however busy the machine), it is stopped.
"$program" --simulate --trace "$dir/t.log" >/dev/null 2>"$dir/err" &
pid=$!
for _ in $(seq 600); do
  lines=$(grep -cv '^FIRMWARE ' "$dir/t.log" 2>/dev/null)
  [ "${lines:-0}" -ge 11 ] && break
  kill -0 "$pid" 2>/dev/null || break
  sleep 0.1
done
kill -0 "$pid" 2>/dev/null || fail "the program ended by itself: $(cat "$dir/err")"
kill -TERM "$pid"
wait "$pid"

expected="SEARCH 1110 45599 -> 1 0
CONNECT 1 -> 1 0
VR 224 0000 0000 OUT 0 -> 0
VR 228 0001 0000 OUT 0 -> 0
VR 229 0000 0000 OUT 0 -> 0
VR 226 0000 0000 OUT 0 -> 0
VR 221 2200 0001 OUT 0 -> 0
VR 221 2200 0001 OUT 0 -> 0
VR 221 9950 0002 OUT 0 -> 0
VR 221 0000 0003 OUT 0 -> 0
VR 221 AA80 0006 OUT 0 -> 0"
# The firmware line names the directory of the build; every other line is fixed.
got=$(grep -v '^FIRMWARE ' "$dir/t.log" | head -n 11)
[ "$got" = "$expected" ] || fail "the start sequence differs:
$got"
grep -q '^FIRMWARE .*/QZ7740SPI.hex -> 0$' "$dir/t.log" || fail "no FIRMWARE line"
[ "$(sed -n 3p "$dir/t.log" | cut -c1-9)" = "FIRMWARE " ] || fail "FIRMWARE is not the third call"
echo "ok: options, start sequence"
