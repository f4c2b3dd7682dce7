#!/usr/bin/env bash
# Follows README.md line by line, as somebody would who has just built the tree: every command of its
# blocks runs, each in a folder with the pictures that it names, and the program in C is compiled, runs
# and leaves its picture. Programs that would build everything again use what is built.
#
#   follow_readme.sh BUILD WORK_FOLDER
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "$1" && pwd)
rm -rf "$2" && mkdir -p "$2/files"
work=$(cd "$2" && pwd)

# The lines of all blocks that begin with three backticks and this word.
blocks() {
  awk -v word="\`\`\`$1" '/^```/ { inside = !inside; wanted = inside && $0 == word; next } wanted' "$root/README.md"
}

# The pictures of which the README speaks.
cd "$work/files"
ln -s "$build" build-native
tool=$build/tools/vncore
"$tool" chart chart.png --size 1024x768
for name in in.jpg photo.jpg scan.tif in.png photo.png before.png paper.jpg huge.tif scan1.tif scan2.tif; do
  "$tool" convert chart.png $name
done
"$tool" convert chart.png stamp.png --scale 200x100
/usr/bin/python3 -c 'from PIL import Image
page = Image.open("chart.png").convert("1")
page.save("fax.tif", save_all=True, append_images=[page] * 3)'

# Commands stand for themselves, but for those that take long or wait for somebody.
cat >"$work/commands" <<END
make() {
  if [ "\$*" = demo ]; then
    command make -s -C "$root" demo >/dev/null
  else
    command make -n -C "$root" "\$@" >/dev/null
  fi
}
cmake() { (cd "$root" && command cmake "\$@" >/dev/null); }
build-native/tools/vnview() {
  status=0
  xvfb-run -a timeout -s INT 5 "$build/tools/vnview" "\$@" || status=\$?
  [ \$status -eq 124 ] || [ \$status -eq 0 ]
}
# What needs a printer or a desktop may say that there is none, in one line.
build-native/tools/vncore() {
  status=0
  "$build/tools/vncore" "\$@" 2>told || status=\$?
  cat told
  case " \$*" in *" copy "* | *" paste "* | *" --printer "*)
    [ \$status -eq 0 ] || [ "\$(wc -l <told)" -eq 1 ] && return ;;
  esac
  return \$status
}
lpr() { cat >/dev/null; }
v=build-native/tools/vncore
END

count=0
while IFS= read -r line; do
  case $line in '' | ' '* | v=*) continue ;; esac
  rm -rf "$work/here" && cp -a "$work/files" "$work/here"
  (cd "$work/here" && . "$work/commands" && eval "$line") </dev/null >"$work/log" 2>&1 || {
    cat "$work/log"
    echo "follow_readme: this does not work: $line" >&2
    exit 1
  }
  count=$((count + 1))
done < <(blocks '')

cmake --install "$build" --prefix "$work/installed" >/dev/null
export PKG_CONFIG_PATH=$(dirname "$(find "$work/installed" -name vncore.pc)")
LD_LIBRARY_PATH=$(dirname "$PKG_CONFIG_PATH")
export LD_LIBRARY_PATH
cd "$work"
blocks c >app.c
cc -Wall -Wextra -Werror app.c -o app $(pkg-config --cflags --libs vncore)
./app
"$tool" info slope.bmp
echo "follow_readme: $count commands and the program work"
