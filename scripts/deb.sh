#!/usr/bin/env bash
# Builds the Debian packages of the tree as it is committed, and lets lintian look at them: no error may
# be left.
#
#   deb.sh FOLDER      the packages go to FOLDER
set -eu

folder=$(mkdir -p "$1" && cd "$1" && pwd)
cd "$(dirname "$0")/.."
version=$(cmake -P cmake/Version.cmake 2>&1)
[ "$(dpkg-parsechangelog -S Version)" = "$version" ] || {
  echo "deb: debian/changelog does not begin with $version" >&2
  exit 1
}
rm -rf "$folder"/vncore-*/ "$folder"/*.deb "$folder"/*.changes "$folder"/*.buildinfo
git archive --prefix="vncore-$version/" HEAD | tar -x -C "$folder"
cd "$folder/vncore-$version"
dpkg-buildpackage -us -uc -b
cd ..
rm -rf "vncore-$version"
lintian --fail-on error --tag-display-limit 0 --allow-root ./*.changes
ls -l ./*.deb
