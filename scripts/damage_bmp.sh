#!/usr/bin/env bash
# Reads damaged BMP files of every kind under the sanitizers, in one process.
#
#   scripts/damage_bmp.sh [COUNT [SEED]]
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh test
cmake --preset asan
cmake --build --preset asan --target vncore_bmp_damage -j2
# A block that no small machine has is refused, as a machine refuses it.
export ASAN_OPTIONS=allocator_may_return_null=1:max_allocation_size_mb=1024
export UBSAN_OPTIONS=print_stacktrace=1
TMPDIR=$(mktemp -d)
export TMPDIR
trap 'rm -rf "$TMPDIR"' EXIT
build-asan/tests/tool/vncore_bmp_damage "${1:-100000}" "${2:-1}"
