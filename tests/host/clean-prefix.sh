#!/bin/bash
# A Wine prefix in which nothing is registered, for the tests that need one:
#   clean-prefix.sh create   ends the prefix's Wine session, then makes the prefix afresh
#   clean-prefix.sh end      ends the prefix's Wine session
# VX_WINEPREFIX names the prefix (VX_WINE_ARCH its word size, as for wine-env.sh).
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
prefix=${VX_WINEPREFIX:?VX_WINEPREFIX must name the clean prefix}
WINEPREFIX=$prefix /usr/lib/wine/wineserver -k 2>/dev/null || true
case ${1:-} in
  create)
    rm -rf "$prefix"
    "$here/../wine-env.sh" cmd.exe /c exit ;;
  end) ;;
  *) echo "usage: clean-prefix.sh create | end" >&2; exit 2 ;;
esac
