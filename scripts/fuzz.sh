#!/usr/bin/env bash
# Builds the fuzz targets (fuzz/) with clang, libFuzzer and the address and
# undefined-behaviour sanitizers into build-fuzz/ (or $QZ_FUZZ_DIR), then runs each for
# SECONDS (60 by default) on a copy of its seed corpus tests/fuzz/TARGET/, and prints
# executions per second, coverage and findings. The dispatch target runs the remote
# control on the panels offscreen. A finding is kept in
# build-fuzz/findings/TARGET/ and fails the run. Usage: scripts/fuzz.sh [SECONDS]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
seconds=${1:-60}
[[ $seconds =~ ^[1-9][0-9]*$ ]] || { echo "usage: scripts/fuzz.sh [SECONDS]" >&2; exit 2; }
"$root/scripts/install-deps.sh"
build=${QZ_FUZZ_DIR:-$root/build-fuzz}
CC=clang CXX=clang++ cmake -S "$root/fuzz" -B "$build" -G Ninja >/dev/null
cmake --build "$build" --parallel "$(nproc 2>/dev/null || echo 2)" >/dev/null

# The font configuration the panels load keeps its first allocations for good.
export LSAN_OPTIONS=${LSAN_OPTIONS:-suppressions=$root/fuzz/lsan.supp}
status=0
for target in intel_hex entries scpi_numbers scpi_dispatch; do
  work=$build/corpus/$target findings=$build/findings/$target
  mkdir -p "$work" "$findings"
  log=$build/fuzz_$target.log
  # A fixed seed, so that a run over the same corpus takes the same first steps.
  if "$build/fuzz_$target" -seed=1 -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
      -artifact_prefix="$findings/" "$work" "$root/tests/fuzz/$target" >"$log" 2>&1; then
    found=0
  else
    found=1 status=1
  fi
  stats=$(grep -E '^#[0-9]+.*(DONE|pulse|NEW|REDUCE)' "$log" | tail -n 1)
  execs=$(sed -n 's/.*exec\/s: \([0-9]*\).*/\1/p' <<<"$stats")
  cov=$(sed -n 's/.*cov: \([0-9]*\).*/\1/p' <<<"$stats")
  if [ "$found" -eq 0 ]; then
    echo "$target: ${seconds} s, ${execs:-?} exec/s, ${cov:-?} edges covered, nothing found"
  else
    echo "$target: FINDING after ${seconds} s or less, kept in $findings/:"
    grep -E 'broken:|ERROR:|SUMMARY:' "$log" | head -n 5
  fi
done
exit "$status"
