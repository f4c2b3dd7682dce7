#!/usr/bin/env bash
# The names of the public headers. With VNCORE_PREFIXED there are none but those with the prefix, and
# the header stands beside other libraries' headers in either order; without it each has a short
# twin. Sources are only parsed.
#
#   names_test.sh CC CXX SYSTEM WORK_FOLDER INCLUDE_FOLDER...      (SYSTEM as CMAKE_SYSTEM_NAME)
set -eu

cc=$1 cxx=$2 system=$3 work=$4
shift 4
flags=(-Wall -Wextra -Werror "${@/#/-I}")
mkdir -p "$work"
cd "$work"

parse() {  # WHAT STANDARD [FLAG...], the source on standard input
  local what=$1 standard=$2 compiler=("$cc" -x c)
  shift 2
  case $standard in *++*) compiler=("$cxx" -x c++) ;; esac
  cat >source
  "${compiler[@]}" -std="$standard" -fsyntax-only "${flags[@]}" "$@" source || {
    echo "names: $what fails as $standard:" >&2
    cat source >&2
    exit 1
  }
}

ours='#define VNCORE_PREFIXED
#include <vncore/vncore.h>'
platform='#include <stddef.h>
#include <stdint.h>
#include <windows.h>'
if [ "$system" != Windows ]; then
  ours+=$'\n#include <vncore/platform/headless/headless.h>'
  platform=${platform%$'\n'*}
fi

for standard in c99 gnu17 c++98 c++20; do
  parse 'the header with the prefix' $standard -pedantic <<<"$ours"
  parse 'the header with short names' $standard <<<"${ours#*$'\n'}"
done

# Macros.
macros() { "$cc" -dM -E "${flags[@]}" -x c - | sed 's/#define \([A-Za-z0-9_]*\).*/\1/' | LC_ALL=C sort; }
macros <<<"$platform" >before
macros <<<"$ours" >after
if LC_ALL=C comm -13 before after | grep -v '^VN_\|^VNCORE_\|^HEADLESS_'; then
  echo 'names: these macros are not hidden' >&2
  exit 1
fi

# All else: what the headers' own lines declare outside of braces and parentheses, and enumerators.
"$cc" -E "${flags[@]}" -x c - <<<"$ours" |
  sed -n '/^# [0-9]/{h;d};G;/\n# [0-9]* "[^"]*\/vncore\//{s/\n.*//;p}' | tr '\n' ' ' |
  sed -E 's/(enum [A-Za-z_]*) *\{([^}]*)\}/\1 \2/g; s/\{[^}]*\}/ /g; s/\( *(__attribute__\(\(__stdcall__\)\))? *\* *(\w+)\)/ \2 /g
          s/typedef (const )?\w+ (Vn_\w+) *;/typedef \2;/g
          :nested; s/\([^()]*\)/ /g; t nested; s/= *[-+ 0-9A-Fa-fxu<|]+//g; s/;/;\n/g' >declarations
grep -oE '\b[A-Za-z_]\w*' declarations | LC_ALL=C sort -u >names
if grep -vE '^(Vn|VN|Headless|HEADLESS)_' names |
    grep -vxE '(u?int(8|16|32|64|ptr)_t)|typedef|struct|enum|const|void|char|__attribute__|__stdcall'; then
  echo 'names: these are declared without the prefix' >&2
  exit 1
fi

# Each constant and type has its twin of the same value and size, also for who sees both.
{
  echo "$ours"
  echo '#undef VNCORE_PREFIXED
#include <vncore/vncore.h>
template <class, class> struct Same;
template <class Type> struct Same<Type, Type> {};'
  sed -n 's/^VN_\(.*\)/static_assert((long)\1 == (long)VN_\1, "");/p' names
  sed -nE 's/.*typedef .*\b(Vn_(\w+)) *;$/\1 \2/p; s/.*typedef .* (Vn_(\w+)) +;$/\1 \2/p' declarations |
    sort -u | while read -r long short; do
      case $short in Status | *CallBack | *Proc) short=Vn$short ;; esac
      echo "Same<$long, $short> of_$short;"
    done
} >twins
parse 'the pairs of names' c++20 <twins
echo "names: $(grep -c static_assert twins) constants and $(grep -c '^Same' twins) types have their twins"

[ "$system" != Windows ] || exit 0
beside() {  # LIBRARY HEADERS PACKAGES STANDARD...: both orders, where the library is installed
  local library=$1 theirs packages=$3 extra=() standard
  theirs=$(printf '#include <%s>\n' $2)
  if [ -n "$packages" ]; then
    pkg-config --exists $packages 2>/dev/null || { echo "names: $library is not here"; return; }
    extra=(-fPIC $(pkg-config --cflags $packages | sed 's/-I/-isystem /g'))
  else
    echo "$theirs" | "$cc" -E -x c - >/dev/null 2>&1 || { echo "names: $library is not here"; return; }
  fi
  shift 3
  local use='Vn_Status F(Vn_BitmapHandle* b); Vn_Status F(Vn_BitmapHandle* b) { return Vn_FreeImage(b, VN_OK); }'
  for standard in "$@"; do
    parse "the header before $library" "$standard" "${extra[@]}" <<<"$ours"$'\n'"$theirs"$'\n'"$use"
    parse "the header after $library" "$standard" "${extra[@]}" <<<"$theirs"$'\n'"$ours"$'\n'"$use"
  done
  echo "names: stands beside $library"
}
beside Xlib 'X11/Xlib.h X11/Xutil.h X11/Xatom.h' '' gnu99 gnu++17
beside Xmd 'X11/Xmd.h' '' gnu99 gnu++17
beside ncurses 'curses.h' '' gnu99 gnu++17
beside FreeImage 'FreeImage.h' '' gnu99 gnu++17
beside SDL2 'SDL.h' sdl2 gnu99 gnu++17
beside GTK 'gtk/gtk.h' gtk+-3.0 gnu99 gnu++17
beside Qt 'QtGui/QImage QtGui/QPainter' Qt5Gui gnu++17
