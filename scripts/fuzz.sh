#!/usr/bin/env bash
# Runs fuzz targets one after the other. A finding ends the run; its input lies in BUILD/findings.
#
#   scripts/fuzz.sh BUILD SECONDS [TARGET...]
set -eu

build=$1 seconds=$2
shift 2
corpus=$(cd "$(dirname "$0")/../fuzz/corpus" && pwd)
[ $# -gt 0 ] || set -- $(ls "$corpus")

# A block that no small machine has is refused, as a machine refuses it.
export ASAN_OPTIONS=allocator_may_return_null=1:max_allocation_size_mb=1024
export UBSAN_OPTIONS=print_stacktrace=1
# Temporary files of Win32s bitmaps go to memory where there is such a place.
TMPDIR=$(mktemp -d -p "$([ -w /dev/shm ] && echo /dev/shm || echo "${TMPDIR:-/tmp}")")
export TMPDIR
trap 'rm -rf "$TMPDIR"' EXIT
mkdir -p "$build/findings"

for target in "$@"; do
  found=$build/corpus/$target
  mkdir -p "$found"
  # The leak check after each input makes a run ten times longer. What the library leaks its worlds
  # count; the rest is seen when the corpus is replayed under the sanitizers.
  "$build/fuzz/fuzz_$target" -max_total_time="$seconds" -max_len=400 -timeout=20 -detect_leaks=0 \
    -malloc_limit_mb=8192 -rss_limit_mb=4096 -print_final_stats=1 -verbosity=0 \
    -artifact_prefix="$build/findings/$target-" "$found" "$corpus/$target" \
    >"$build/fuzz-$target.log" 2>&1 || {
    cat "$build/fuzz-$target.log"
    exit 1
  }
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$build/fuzz-$target.log")
  echo "fuzz: $target clean after $runs inputs"
done
