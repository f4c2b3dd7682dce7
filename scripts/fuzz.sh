#!/usr/bin/env bash
# Runs each fuzz target for so many seconds, or on so many inputs, which then are the same in every
# run. What it finds ends it; the input lies in BUILD/findings.
#
#   scripts/fuzz.sh BUILD SECONDS|INPUTSx [TARGET...]
set -eu

build=$1
case $2 in
  *x) limit="-runs=${2%x} -seed=1" ;;
  *) limit=-max_total_time=$2 ;;
esac
shift 2
corpus=$(cd "$(dirname "$0")/../fuzz/corpus" && pwd)
[ $# -gt 0 ] || { cd "$corpus" && set -- * && cd - >/dev/null; }

# A block that no small machine has is refused, as a machine refuses it.
export ASAN_OPTIONS=allocator_may_return_null=1:max_allocation_size_mb=1024:malloc_context_size=3:quarantine_size_mb=8
export UBSAN_OPTIONS=print_stacktrace=1
# What other libraries keep is no finding.
LSAN_OPTIONS=suppressions=$(cd "$(dirname "$0")/../tests/support" && pwd)/leaks.supp:print_suppressions=0
export LSAN_OPTIONS
# Temporary files of Win32s bitmaps go to memory where there is such a place.
TMPDIR=$(mktemp -d -p "$([ -w /dev/shm ] && echo /dev/shm || echo "${TMPDIR:-/tmp}")")
export TMPDIR
trap 'rm -rf "$TMPDIR"' EXIT
mkdir -p "$build/findings"

run() {
  local target=$1 found=$build/corpus/$1 log=$build/fuzz-$1.log longest=400
  [ "$target" != tool ] || longest=2000  # files of pictures
  mkdir -p "$found"
  # The leak check after each input makes a run ten times longer. What the library leaks its worlds
  # count; the rest is seen when the corpus is replayed under the sanitizers.
  # shellcheck disable=SC2086
  "$build/fuzz/fuzz_$target" $limit -max_len=$longest -timeout=60 -detect_leaks=0 \
    -malloc_limit_mb=8192 -rss_limit_mb=4096 -print_final_stats=1 -verbosity=0 \
    -artifact_prefix="$build/findings/$target-" "$found" "$corpus/$target" >"$log" 2>&1 || {
    cat "$log"
    echo "fuzz: $target FOUND SOMETHING"
    return 1
  }
  echo "fuzz: $target clean after $(sed -n 's/^stat::number_of_executed_units: *//p' "$log") inputs"
}

# As many at a time as there are processors.
free=$(nproc) status=0
for target in "$@"; do
  [ "$free" -gt 0 ] || { wait -n || status=1; free=$((free + 1)); }
  run "$target" &
  free=$((free - 1))
done
while [ "$free" -lt "$(nproc)" ]; do
  wait -n || status=1
  free=$((free + 1))
done
exit $status
