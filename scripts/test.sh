#!/usr/bin/env bash
# Builds the program and runs every test through CTest.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/build.sh"
cd "${QZ_BUILD_DIR:-$root/build}"
QT_QPA_PLATFORM=offscreen ctest --output-on-failure --parallel "$(nproc 2>/dev/null || echo 2)" --timeout 300
