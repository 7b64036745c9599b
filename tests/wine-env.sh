#!/bin/bash
# Runs a Windows program under Wine in the test prefix of the build folder, with the
# environment pinned so that every machine formats the same way:
#   wine-env.sh [--lang LANG] program.exe args...
# The prefix (never ~/.wine) is created on first use. VX_WINEPREFIX names it;
# VX_WINE_ARCH the word size: win64 (the default) runs the 64-bit loader, win32 the
# 32-bit one, inside tests/win32/w32ns.sh (the machine runs 32-bit programs only through
# qemu-i386). VX_WINE_LOADER overrides the loader.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
case ${VX_WINE_ARCH:-win64} in
  win64) loader=${VX_WINE_LOADER:-/usr/lib/wine/wine64} ;;
  win32)
    [ -n "${VX_W32NS:-}" ] || exec "$here/win32/w32ns.sh" "$0" "$@"
    loader=${VX_WINE_LOADER:-/usr/lib/wine/wine}
    export WINEARCH=win32 ;;
  *) echo "wine-env.sh: VX_WINE_ARCH must be win64 or win32" >&2; exit 2 ;;
esac
lang=en_US.UTF-8
if [ "${1:-}" = "--lang" ]; then lang=$2; shift 2; fi
: "${VX_WINEPREFIX:?VX_WINEPREFIX must name the test prefix}"
export WINEPREFIX=$VX_WINEPREFIX
export WINEDEBUG=${WINEDEBUG:--all}
# A crashing program reports its crash and ends: Wine's debugger, which would attach and
# wait (for good, under qemu), is switched off, so a crash ends its test at once.
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-"winedbg.exe,mscoree,mshtml,winemenubuilder.exe="}
# What Wine keeps in the user's own folders stays inside the prefix: the recycle bin (a
# delete with undo goes to $XDG_DATA_HOME/Trash), the sound configuration, which gives
# Wine one silent ALSA device, so that mixer tests never reach the machine's sound, and
# the profile's Desktop and Documents, which a new prefix links to the home folder.
export HOME=$WINEPREFIX/home XDG_CACHE_HOME=$WINEPREFIX/xdg/cache
export XDG_DATA_HOME=$WINEPREFIX/xdg/data XDG_CONFIG_HOME=$WINEPREFIX/xdg/config
mkdir -p "$HOME" "$XDG_DATA_HOME" "$XDG_CONFIG_HOME/alsa"
[ -f "$XDG_CONFIG_HOME/alsa/asoundrc" ] || printf 'pcm.!default { type null }\n' >"$XDG_CONFIG_HOME/alsa/asoundrc"
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
# started detached from this program's output, so that nobody waits on them. The
# wineserver exits with 2 when it is running already; the lock keeps a program from
# starting the background programs itself while another sets them up.
(
  flock 9
  if "${loader%/*}/wineserver" -p30 </dev/null >/dev/null 2>&1 9>&-; then
    "${locale_env[@]}" "$loader" cmd.exe /c exit </dev/null >/dev/null 2>&1 9>&- || true
  fi
) 9>"$WINEPREFIX.lock"
# Programs a test starts may outlive it (a COM surrogate, the desktop window): they
# inherit its output, and whoever reads that output would wait for them. So the program
# writes to files, which are shown as they grow until the program itself has ended.
out=$(mktemp -d "${TMPDIR:-/tmp}/vx-wine.XXXXXX")
trap 'rm -rf "$out"' EXIT
: >"$out/stdout"
: >"$out/stderr"
{ exec 3<&0; } 2>/dev/null || exec 3</dev/null   # (a run may have no standard input)
"${locale_env[@]}" "$loader" "$@" <&3 >"$out/stdout" 2>"$out/stderr" 3<&- &
program=$!
exec 3<&-
tail -q -s 0.1 -n +1 -f --pid=$program "$out/stdout" </dev/null &
shown=$!
tail -q -s 0.1 -n +1 -f --pid=$program "$out/stderr" </dev/null >&2 &
rc=0
wait $program || rc=$?
wait $shown $! || true
exit $rc
