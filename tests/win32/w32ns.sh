#!/bin/sh
# Runs a command where 32-bit x86 programs (the 32-bit Wine) execute through qemu-i386:
#   w32ns.sh command args...
# The command runs in a private user and mount namespace with its own binfmt_misc, in
# which 32-bit ELF programs are handed to qemu-i386; the machine's own binfmt_misc is
# never touched. Wine starts its helper programs again inside the same namespace, so they
# run through qemu too. The namespace lives until its last process ends: finish with
# `wineserver -w` or `-k`.
# VX_QEMU_I386 names qemu-i386 (build/cache/qemu-i386 by default). Inside, VX_W32NS is
# set, and a nested call runs its command directly.
set -e
if [ -n "${VX_W32NS:-}" ]; then exec "$@"; fi
if [ -z "${VX_W32NS_SETUP:-}" ]; then
  here=$(cd "$(dirname "$0")" && pwd)
  qemu=${VX_QEMU_I386:-$here/../../build/cache/qemu-i386}
  [ -x "$qemu" ] || { echo "w32ns.sh: no qemu-i386 at $qemu (./run test32 fetches it)" >&2; exit 127; }
  VX_QEMU_I386=$(cd "$(dirname "$qemu")" && pwd)/$(basename "$qemu")
  export VX_QEMU_I386 VX_W32NS_SETUP=1
  exec unshare --user --map-root-user --mount --fork "$0" "$@"
fi
unset VX_W32NS_SETUP
mount -t binfmt_misc binfmt_misc /proc/sys/fs/binfmt_misc
# Magic and mask of a 32-bit little-endian x86 ELF executable or shared object; the F flag
# opens qemu now, so the name need not resolve later.
printf '%s' ":qemu-i386:M::\\x7fELF\\x01\\x01\\x01\\x00\\x00\\x00\\x00\\x00\\x00\\x00\\x00\\x00\\x02\\x00\\x03\\x00:\\xff\\xff\\xff\\xff\\xff\\xfe\\xfe\\x00\\xff\\xff\\xff\\xff\\xff\\xff\\xff\\xff\\xfe\\xff\\xff\\xff:$VX_QEMU_I386:F" \
  > /proc/sys/fs/binfmt_misc/register
export VX_W32NS=1
exec "$@"
