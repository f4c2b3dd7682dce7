#!/usr/bin/env bash
# Installs the packages into a clean Debian tree and uses them there as their users would: a program is
# compiled, the tool converts, and Python makes of a picture what the tool makes of it.
#
#   test_deb.sh FOLDER      where the packages are; needs root, and a Debian mirror
#
# Exit status: 0 passed; 77 when no clean tree can be had; anything else failed.
set -eu

packages=$(cd "$1" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp "$packages"/*.deb "$work"
rm -f "$work"/*-dbgsym_*.deb
cat >"$work/use.sh" <<'END'
set -eu
cd /tmp
vncore --version
vncore chart chart.png --size 320x200
vncore convert chart.png few.png --colors 16 --dither stucki
vnview --version
examples=/usr/share/doc/libvncore-dev/examples
cc $examples/paint.c -o shared $(pkg-config --cflags --libs vncore)
cc $examples/paint.c -o static -static $(pkg-config --static --cflags --libs vncore)
./shared one.ppm
./static two.ppm
cmp one.ppm two.ppm
python3 - <<'PYTHON'
import numpy as np
import vncore
from PIL import Image
few = vncore.reduce(np.asarray(Image.open("chart.png").convert("RGB")), 16, dither="stucki")
assert (few.rgb() == np.asarray(Image.open("few.png").convert("RGB"))).all()
print("python3-vncore", vncore.version())
PYTHON
test -e /usr/share/man/man1/vncore-convert.1.gz
test -e /usr/share/bash-completion/completions/vncore
END

. /etc/os-release
mmdebstrap --quiet --variant=minbase --include=gcc,libc6-dev,libstdc++-12-dev,pkg-config,python3-pil \
  --customize-hook="touch $work/tree && mkdir \"\$1/packages\" && cp $work/*.* \"\$1/packages\"" \
  --customize-hook='chroot "$1" sh -c "apt-get install -qq --no-install-recommends /packages/*.deb >/dev/null"' \
  --customize-hook='chroot "$1" sh /packages/use.sh' \
  "$VERSION_CODENAME" /dev/null || {
  status=$?
  [ ! -e "$work/tree" ] || exit $status
  echo "!!! THE DEBIAN PACKAGES WERE NOT INSTALLED: no clean tree can be had !!!" >&2
  exit 77
}
echo 'the packages install into a clean tree and work there'
