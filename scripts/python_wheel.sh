#!/usr/bin/env bash
# Builds the Python package as a wheel that holds the library of a build folder, and its declarations from
# the headers. Needs no network.
#
#   python_wheel.sh BUILD FOLDER      the wheel goes to FOLDER, alone
#
# Environment: PYTHON, which has pip, setuptools and wheel (/usr/bin/python3).
set -eu

build=$(cd "$1" && pwd) folder=$2
root=$(cd "$(dirname "$0")/.." && pwd)
python=${PYTHON:-/usr/bin/python3}
mkdir -p "$folder"
folder=$(cd "$folder" && pwd)
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT

cp "$root/python/pyproject.toml" "$root/python/setup.py" "$stage"
mkdir "$stage/vncore"
cp "$root"/python/vncore/*.* "$stage/vncore"
"$python" "$root/python/declare.py" "$root/kernel/include" "$root/platform/include" >"$stage/vncore/declarations.h"
library=$(cd "$build" && echo libvncore.so.?)
cp -L "$build/$library" "$stage/vncore/$library"
strip --strip-unneeded "$stage/vncore/$library"

rm -f "$folder"/vncore-*.whl
VNCORE_VERSION=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt") \
  "$python" -m pip wheel --quiet --no-index --no-deps --no-build-isolation \
  --wheel-dir "$folder" "$stage"
