#!/bin/bash
# Runs one example of examples/ with Wine's cscript.exe against the registered DLL:
#   run-example.sh example.vbs|example.js expected.txt
# The run passes when the script ends with exit code 0 and its output holds, in order,
# a line matching each pattern of the expectation file (extended regular expressions,
# one a line; blank lines and lines starting with # are ignored).
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
example=$1
expected=$2
[ -f "$expected" ] || { echo "no expectation file $expected for $example" >&2; exit 1; }
name=$(basename "$example")
work=${VX_EXAMPLE_WORKDIR:?VX_EXAMPLE_WORKDIR must name a work folder}/${name%.*}-${name##*.}
rm -rf "$work" && mkdir -p "$work"
# As a user's copy on Windows would have it: CR LF line ends.
sed 's/\r\?$/\r/' "$example" > "$work/$name"
winpath="Z:${work//\//\\}\\$name"
output=$("$here/../wine-env.sh" cscript.exe //nologo "$winpath" 2>&1)
rc=$?
output=$(printf '%s\n' "$output" | tr -d '\r')
printf '%s\n' "$output"
if [ $rc -ne 0 ]; then
  echo "example $name ended with exit code $rc" >&2
  exit 1
fi
# Each pattern must match a line after the one the previous pattern matched.
missing=$(printf '%s\n' "$output" | awk -v patterns="$expected" '
  BEGIN {
    while ((getline line < patterns) > 0) {
      if (line ~ /^[ \t]*(#|$)/) continue
      want[++n] = line
    }
    i = 1
  }
  i <= n && $0 ~ want[i] { i++ }
  END { if (i <= n) print want[i] }')
if [ -n "$missing" ]; then
  echo "example $name: no line (after the earlier matches) matches: $missing" >&2
  exit 1
fi
