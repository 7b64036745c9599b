#!/bin/bash
# Runs a Windows program under 64-bit Wine in the test prefix of the build folder,
# with the environment pinned so that every machine formats the same way:
#   wine-env.sh [--lang LANG] program.exe args...
# The prefix (never ~/.wine) is created on first use. VX_WINEPREFIX names it;
# VX_WINE_LOADER the loader (the 64-bit one by default).
set -euo pipefail
lang=en_US.UTF-8
if [ "${1:-}" = "--lang" ]; then lang=$2; shift 2; fi
: "${VX_WINEPREFIX:?VX_WINEPREFIX must name the test prefix}"
loader=${VX_WINE_LOADER:-/usr/lib/wine/wine64}
export WINEPREFIX=$VX_WINEPREFIX
export WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-"mscoree,mshtml,winemenubuilder.exe="}
export TZ=UTC
# Wine reads the locale from these; they are set for Wine only (the Linux locale need
# not be installed).
locale_env=(env LANG="$lang" LC_ALL="$lang")
if [ ! -f "$WINEPREFIX/system.reg" ]; then
  mkdir -p "$(dirname "$WINEPREFIX")"
  (
    flock 9
    if [ ! -f "$WINEPREFIX/system.reg" ]; then
      "${locale_env[@]}" "$loader" wineboot -i >/dev/null 2>&1 || true
      "${loader%/*}/wineserver" -w 2>/dev/null || true
    fi
  ) 9>"$WINEPREFIX.lock"
fi
# One wineserver, with Wine's own background programs, serves the whole run: kept alive
# between programs, it saves the seconds each would spend starting them. They are
# started detached from this program's output, so that nobody waits on them.
"${loader%/*}/wineserver" -p30 </dev/null >/dev/null 2>&1 || true
"${locale_env[@]}" "$loader" cmd.exe /c exit </dev/null >/dev/null 2>&1 || true
exec "${locale_env[@]}" "$loader" "$@"
