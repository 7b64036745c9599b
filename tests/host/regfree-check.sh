#!/bin/bash
# Runs the registration-free client from a folder that holds nothing but the client, the
# DLL and the DLL's assembly manifest, in the clean prefix:
#   regfree-check.sh <bin folder> <work folder>
# Wine's type library marshaller, serving an interface that only the manifest names,
# loads the type library by its bare file name, which registers it for the machine as a
# side effect: the check removes that registration afterwards, so that the prefix is
# left as clean as it was found (the client itself checks that nothing is registered
# before it starts).
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
bin=$1 app=$2/regfree
rm -rf "$app" && mkdir -p "$app"
cp "$bin/vx_regfree_client.exe" "$bin/Vx_Main.dll" "$bin/Vx_Main.sxs.manifest" "$app/"
rc=0
"$here/../wine-env.sh" "$app/vx_regfree_client.exe" || rc=$?
"$here/../wine-env.sh" regsvr32 /u /s "Z:${app//\//\\}\\Vx_Main.dll" || true
exit $rc
