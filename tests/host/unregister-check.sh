#!/bin/bash
# Unregisters the DLL, then checks from a host that its classes can no longer be created.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
"$here/../wine-env.sh" regsvr32 /u /s "$1" || { echo "regsvr32 /u failed" >&2; exit 1; }
"$here/run-host-test.sh" "$2"
