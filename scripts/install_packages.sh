#!/bin/sh
# Installs Debian packages, and never removes one for it.
#
#   scripts/install_packages.sh PACKAGE...
#
# Exit status 2: a package cannot be had here, and the last line says so.
set -eu

# Ends the script, with the reason on the last line.
cannot() {
  echo "!!! install: $1 !!!" >&2
  exit 2
}

command -v apt-get >/dev/null || cannot "there is no apt-get; missing are: $*"
as_root=
if [ "$(id -u)" != 0 ]; then
  command -v sudo >/dev/null || cannot "only root installs: $*"
  as_root="sudo -n"
fi

apt() {
  $as_root env DEBIAN_FRONTEND=noninteractive apt-get "$@" </dev/null
}
install() {
  apt -y -q --no-install-recommends --no-remove "$@"
}

# Packages of 32 bits, which a fresh machine does not look for.
case "$*" in *:i386*)
  [ "$(dpkg --print-architecture)" = i386 ] || dpkg --print-foreign-architectures | grep -qx i386 ||
    $as_root dpkg --add-architecture i386 || cannot "32-bit packages cannot be asked for: $*" ;;
esac

echo "install: $*"
# Lists first: on a fresh machine there are none. An index that cannot be fetched is no reason to
# stop: the packages may all be elsewhere.
apt -q update || true
install install "$@" && exit 0

# A 32-bit package must be as new as its 64-bit twin. Where the 64-bit one came from an archive whose
# 32-bit half cannot be had, both are taken from the release itself.
release=$(. /etc/os-release && echo "${VERSION_CODENAME:-}")
[ -n "$release" ] || cannot "could not install $*"
echo "!!! install: that does not fit what is installed; once more with all versions those of $release," \
  "older ones too !!!" >&2
preferences=$(mktemp)
trap 'rm -f "$preferences"' EXIT
printf 'Package: *\nPin: release n=%s\nPin-Priority: 1001\n' "$release" >"$preferences"
chmod a+r "$preferences"
install -o Dir::Etc::Preferences="$preferences" --allow-downgrades install "$@" ||
  cannot "could not install $*"
