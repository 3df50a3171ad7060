#!/usr/bin/env bash
# Builds the program and starts it on the virtual board. Arguments go to the program,
# for example: scripts/run.sh --trace t.log
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
  cat >&2 <<'TEXT'
There is no display here (DISPLAY is not set), so no window can open.
Start the program under a virtual display instead:
  xvfb-run -a -s "-screen 0 1600x1000x24" scripts/run.sh
and take a picture of it from another shell with: import -window root shot.png
TEXT
  exit 2
fi
"$root/scripts/build.sh"
exec "${QZ_BUILD_DIR:-$root/build}/qz7740" --simulate "$@"
