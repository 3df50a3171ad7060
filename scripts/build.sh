#!/usr/bin/env bash
# Configures and builds into build/ (or $QZ_BUILD_DIR). Extra CMake options may come in
# $QZ_CMAKE_ARGS, for example -DQZ_WARNINGS_AS_ERRORS=ON.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/install-deps.sh"
build=${QZ_BUILD_DIR:-$root/build}
# shellcheck disable=SC2086
cmake -S "$root" -B "$build" -G Ninja ${QZ_CMAKE_ARGS:-} >/dev/null
cmake --build "$build" --parallel "$(nproc 2>/dev/null || echo 2)"
