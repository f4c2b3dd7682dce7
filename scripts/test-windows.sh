#!/bin/sh
# Builds VNCORE32.DLL and the tests with the cross compiler and runs them under Wine: on a screen of
# 24 bits, on a palette device of 8 bits, and as on Win32s. Installs what is missing (Debian).
#
# Exit status: 0 passed; 77 when the cross compiler or Wine cannot be had; anything else failed.
set -eu
cd "$(dirname "$0")/.."

# Ends the run, loudly, without calling it a failure.
unavailable() {
  echo "!!! THE WINDOWS TESTS DID NOT RUN: $1 !!!" >&2
  exit 77
}

complete() {
  command -v i686-w64-mingw32-g++-posix >/dev/null && command -v wine >/dev/null &&
    command -v xvfb-run >/dev/null && command -v xauth >/dev/null &&
    command -v cmake >/dev/null && command -v ninja >/dev/null &&
    [ -e /usr/lib/i386-linux-gnu/wine ] && [ -e /usr/src/googletest/googletest ]
}

install() {
  command -v apt-get >/dev/null || unavailable "packages are missing and there is no apt-get"
  as_root=
  if [ "$(id -u)" != 0 ]; then
    command -v sudo >/dev/null || unavailable "packages are missing, and only root installs them"
    as_root=sudo
  fi
  export DEBIAN_FRONTEND=noninteractive
  $as_root dpkg --add-architecture i386
  # An index that cannot be fetched is no reason to stop: the packages may all be elsewhere.
  $as_root apt-get update || true
  # The release itself, since a 32-bit package must not be older than its 64-bit twin.
  . /etc/os-release
  $as_root apt-get -y -t "$VERSION_CODENAME" install --no-install-recommends \
    cmake ninja-build g++-mingw-w64-i686-posix googletest wine wine32:i386 xvfb xauth ||
    unavailable "the cross compiler and Wine could not be installed"
}

complete || install
complete || unavailable "the cross compiler or Wine is incomplete"

cmake --preset win32 -G Ninja
cmake --build --preset win32
ctest --preset win32 -j "$(nproc)" "$@"
