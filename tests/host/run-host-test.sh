#!/bin/bash
# Runs one VBScript host test with Wine's cscript.exe against the registered DLL:
#   run-host-test.sh [--lang LANG] test.vbs
# The harness goes in front of the test (Wine's VBScript cannot include files), the
# data files beside it become UTF-16, and the run passes only when the script ends with
# "N passed, 0 failed" and exit code 0.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
lang_args=()
lang_tag=""
if [ "${1:-}" = "--lang" ]; then lang_args=(--lang "$2"); lang_tag=".${2%%.*}"; shift 2; fi
test=$1
name=$(basename "$test")
name=${name%%.*}
work=${VX_HOST_WORKDIR:?VX_HOST_WORKDIR must name a work folder}/$name$lang_tag
rm -rf "$work" && mkdir -p "$work"
{ cat "$here/harness.vbs"; cat "$test"; printf '\nFinish\n'; } | sed 's/$/\r/' > "$work/$name.vbs"
for data in "$here"/data/*.txt; do
  [ -e "$data" ] || continue
  # UTF-16 little-endian with its byte-order mark, as the scripting runtime reads it.
  { printf '\xff\xfe'; iconv -f UTF-8 -t UTF-16LE "$data"; } > "$work/$(basename "$data" .txt).utf16"
done
winpath="Z:${work//\//\\}\\$name.vbs"
output=$("$here/../wine-env.sh" "${lang_args[@]}" cscript.exe //nologo "$winpath" 2>&1)
rc=$?
printf '%s\n' "$output" | tr -d '\r'
summary=$(printf '%s\n' "$output" | tr -d '\r' | grep -E '^[0-9]+ passed, [0-9]+ failed$' | tail -n 1)
if [ -z "$summary" ]; then
  echo "host test $name stopped before its summary: an uncaught runtime error in the script?" >&2
  exit 1
fi
if [ $rc -ne 0 ] || [ "${summary##*, }" != "0 failed" ]; then
  echo "host test $name failed (exit code $rc)" >&2
  exit 1
fi
