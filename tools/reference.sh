#!/bin/bash
# Writes docs/REFERENCE.md from the DLL's type library, or checks the checked-in one:
#   reference.sh <vx_typelib_doc.exe> <Vx_Main.dll> <REFERENCE.md> write
#   reference.sh <vx_typelib_doc.exe> <Vx_Main.dll> <REFERENCE.md> check <scratch file>
# VX_WINEPREFIX and VX_WINE_ARCH are as tests/wine-env.sh takes them.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
tool=$1 dll=$2 reference=$3 mode=$4
case $mode in
  write)
    "$here/../tests/wine-env.sh" "$tool" reference "Z:$dll" "Z:$reference"
    echo "wrote $reference" ;;
  check)
    fresh=$5
    rm -f "$fresh"
    "$here/../tests/wine-env.sh" "$tool" reference "Z:$dll" "Z:$fresh"
    if ! diff -u "$reference" "$fresh" >"$fresh.diff"; then
      head -n 60 "$fresh.diff"
      echo "docs/REFERENCE.md does not match the type library of $dll." >&2
      echo "Update it with ./run reference (or cmake --build --preset win64 --target reference) and commit it." >&2
      exit 1
    fi
    echo "docs/REFERENCE.md matches the type library" ;;
  *) echo "usage: $0 tool.exe Vx_Main.dll REFERENCE.md write | check <scratch file>" >&2; exit 2 ;;
esac
