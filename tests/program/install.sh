#!/usr/bin/env bash
# The install into a scratch prefix: the program, its desktop entry, its icon and the
# udev rule where a Linux desktop looks for them. Usage: install.sh BUILD-DIR
set -u
build=$1
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
fail() { echo "FAIL: $*"; exit 1; }

cmake --install "$build" --prefix "$dir" >"$dir.log" 2>&1 || fail "cmake --install: $(cat "$dir.log")"
rm -f "$dir.log"

program=$dir/bin/qz7740
[ -x "$program" ] || fail "no program at bin/qz7740"
"$program" --help | grep -q -- "--simulate" || fail "the installed program does not run"

entry=$dir/share/applications/qz7740.desktop
[ -f "$entry" ] || fail "no desktop entry in share/applications"
grep -qx 'Type=Application' "$entry" || fail "the desktop entry is not an application"
grep -qx 'Exec=qz7740' "$entry" || fail "the desktop entry does not start qz7740"
grep -qx 'Icon=qz7740' "$entry" || fail "the desktop entry names no icon qz7740"
if command -v desktop-file-validate >/dev/null; then
  desktop-file-validate "$entry" || fail "desktop-file-validate"
fi

icon=$dir/share/icons/hicolor/scalable/apps/qz7740.svg
[ -f "$icon" ] || fail "no icon in share/icons/hicolor/scalable/apps"
grep -q '<svg' "$icon" || fail "the icon is no SVG picture"

rule=$dir/lib/udev/rules.d/60-qz7740.rules
[ -f "$rule" ] || fail "no udev rule in lib/udev/rules.d"
grep -q 'ATTR{idVendor}=="0456", ATTR{idProduct}=="b21f"' "$rule" || fail "the rule is not the board's"
echo "ok: program, desktop entry, icon and udev rule installed"
