#!/bin/sh
# Runs a Windows program under Wine on a virtual screen, with a Wine prefix of the build folder's
# own: CTest calls it before each cross-compiled program.
#
# Environment:
#   VNCORE_WINE_DEPTH    bits of the screen: 24 (the default), or 8, a palette device
#   VNCORE_WINE_VERSION  win31: GetVersion answers as on Win32s; empty: Wine's default
#   VNCORE_WINE_HOME     where the prefixes go; the default is the folder `wine` beside the program
#
# Each pair of depth and version has its own prefix, and so its own server and screen, and can run
# at the same time as the others. Prefixes stay for the next run.
set -eu

depth=${VNCORE_WINE_DEPTH:-24}
version=${VNCORE_WINE_VERSION:-}
home=${VNCORE_WINE_HOME:-$(cd "$(dirname "$1")" && pwd)/wine}

# A screen of this run's own, unless we are inside the call that started it.
if [ -z "${VNCORE_WINE_SCREEN:-}" ]; then
  export VNCORE_WINE_SCREEN=$depth
  exec xvfb-run -a -s "-screen 0 1024x768x$depth -nolisten tcp" "$0" "$@"
fi

export WINEPREFIX=$home/$depth${version:+-$version}
export WINEDEBUG=${WINEDEBUG:--all}
# No offers to install parts of Wine, no debugger that waits for an answer after a crash.
export WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe,winedbg.exe="
mkdir -p "$WINEPREFIX"

# One run at a time in a prefix: the screen belongs to the server's first client.
exec 9>"$WINEPREFIX.lock"
flock 9

if [ ! -e "$WINEPREFIX/ready" ]; then
  wineboot --init >/dev/null 2>&1 9>&-
  # A palette device has the whole hardware palette to itself.
  wine reg add 'HKCU\Software\Wine\X11 Driver' /v PrivateColorMap /d Y /f >/dev/null 9>&-
  if [ -n "$version" ]; then
    wine reg add 'HKCU\Software\Wine' /v Version /d "$version" /f >/dev/null 9>&-
  fi
  wineserver -w
  touch "$WINEPREFIX/ready"
fi

status=0
wine "$@" 9>&- || status=$?
# The screen goes away now, so what Wine keeps running must go first.
wineserver -k 9>&- || true
wineserver -w || true
exit $status
