#!/usr/bin/env bash
# The Python package as its user gets it: its wheel installs into a fresh environment without network, and
# passes there.
#
#   wheel_test.sh BUILD WORK_FOLDER TOOL      WORK_FOLDER is the environment
set -eu

here=$(cd "$(dirname "$0")" && pwd)
build=$1 work=$2 tool=$3
rm -rf "$work"
"$PYTHON" -m venv --system-site-packages --without-pip "$work"
"$here/../../scripts/python_wheel.sh" "$build" "$work/wheel"
"$PYTHON" -m pip --python "$work/bin/python" install --quiet --no-index --no-deps "$work"/wheel/*.whl
cd "$work"
unset PYTHONPATH
VNCORE_TOOL=$tool bin/python "$here/package_test.py"
