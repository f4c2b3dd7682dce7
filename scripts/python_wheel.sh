#!/usr/bin/env bash
# Builds the Python package as a wheel that holds the library of a build folder. Needs no network.
#
#   python_wheel.sh BUILD FOLDER      the wheel goes to FOLDER, alone
#
# Environment: PYTHON, which has pip, setuptools and wheel (/usr/bin/python3).
set -eu

build=$(cd "$1" && pwd) folder=$2
sources=$(cd "$(dirname "$0")/../python" && pwd)
mkdir -p "$folder"
folder=$(cd "$folder" && pwd)
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT

cp -r "$sources/pyproject.toml" "$sources/setup.py" "$stage"
mkdir "$stage/vncore"
cp "$sources"/vncore/*.* "$stage/vncore"
library=$(cd "$build" && echo libvncore.so.?)
cp -L "$build/$library" "$stage/vncore/$library"
strip --strip-unneeded "$stage/vncore/$library"

rm -f "$folder"/vncore-*.whl
VNCORE_VERSION=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt") \
  "${PYTHON:-/usr/bin/python3}" -m pip wheel --quiet --no-index --no-deps --no-build-isolation \
  --wheel-dir "$folder" "$stage"
