#!/usr/bin/env bash
# Installs what a purpose needs and this Debian machine lacks; does nothing when all is there.
#
#   scripts/setup.sh demo|test|desktop|files|clang|fuzz|arm|bits32|valgrind|coverage|bench|python|docs|deb|windows|wine...
#
# Exit status 2: a package cannot be had here, and the last line names what is missing.
set -eu

packages=(cmake make ninja-build g++ pkg-config)
tool=(libpng-dev libjpeg62-turbo-dev libtiff-dev libgif-dev libcairo2-dev liblcms2-dev libcups2-dev
  libcli11-dev)
text=(libfreetype-dev libfontconfig-dev fonts-dejavu-core)
python=(python3-cffi python3-numpy python3-pil python3-pip python3-setuptools python3-venv python3-wheel)
for purpose in "$@"; do
  case $purpose in
    demo) packages+=("${tool[@]}" "${text[@]}" imagemagick libsdl2-dev) ;;
    test)
      packages+=("${tool[@]}" "${text[@]}" libgtest-dev libsdl2-dev libxtst-dev xvfb poppler-utils)
      packages+=("${python[@]}" python3-distributed)
      packages+=(libx11-dev libncurses-dev)  # whose names ours stand beside
      ;;
    files)  # more formats, better palettes; other programs' writers
      packages+=("${tool[@]}" libvips-dev libimagequant-dev libvips-tools imagemagick graphicsmagick)
      packages+=(libtiff-tools libjpeg-turbo-progs netpbm python3-pil)
      ;;
    desktop) packages+=(cups-daemon cups-client xclip weston wl-clipboard) ;;  # what its tests talk to
    clang) packages+=(clang-14) ;;
    fuzz) packages+=(clang-14 libclang-rt-14-dev) ;;
    arm) packages+=(g++-aarch64-linux-gnu qemu-user-static googletest) ;;
    bits32) packages+=(g++-12-multilib googletest) ;;  # g++-multilib expels the cross compilers
    valgrind) packages+=(valgrind) ;;
    coverage) packages+=(gcovr) ;;
    bench)
      packages+=("${tool[@]}" libbenchmark-dev)
      packages+=(libfreeimage-dev libpixman-1-dev libswscale-dev python3-pil)  # peers
      packages+=(libyuv-dev libleptonica-dev libopencv-imgproc-dev qtbase5-dev libzimg-dev libvips-tools)
      ;;
    deb)
      packages+=("${tool[@]}" "${text[@]}" libsdl2-dev libvips-dev debhelper dh-python dpkg-dev lintian mmdebstrap) ;;
    windows) packages+=(g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix llvm zip) ;;
    wine) packages+=(wine wine32:i386 wine64 xvfb xauth unzip binutils) ;;
    docs) packages+=(doxygen) ;;
    python) packages+=("${python[@]}") ;;
    *) echo "usage: scripts/setup.sh demo|test|desktop|files|clang|fuzz|arm|bits32|valgrind|coverage|bench|python|docs|deb|windows|wine..." >&2; exit 1 ;;
  esac
done

missing=()
for package in "${packages[@]}"; do
  state=$(dpkg-query -W -f '${db:Status-Status}\n' "$package" 2>/dev/null | head -n 1 || true)
  [ "$state" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

exec "$(dirname "$0")/install_packages.sh" "${missing[@]}"
