#!/bin/bash
# The user's own registration in the clean prefix, from end to end:
#   peruser-check.sh <DLL as a Windows path> <assembly manifest>
#   1. regsvr32 /n /i:user registers the DLL;
#   2. peruser.vbs.in checks the user's keys and uses every class;
#   3. regsvr32 /u /n /i:user removes it, and unregistered.vbs.in finds no class;
# and neither the user's nor the machine's classes keep any key of the library: no key
# whose name holds one of the identifiers of the manifest or a ProgID of the library.
#
# Wine's COM reads classes from the machine's classes only, where Windows shows the
# user's classes over the machine's in HKEY_CLASSES_ROOT. For step 2's use of the
# classes, the user's keys of the library are copied to the machine's classes, and
# removed again (checked) before step 3.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
dll=$1 manifest=$2
run() { "$here/../wine-env.sh" "$@"; }
work=${VX_HOST_WORKDIR:?}/peruser-registry
rm -rf "$work" && mkdir -p "$work"
winpath() { echo "Z:${1//\//\\}"; }

# Every identifier of the library (classes, interfaces, type library).
grep -oE '\{[0-9A-F-]{36}\}' "$manifest" | grep -v -- '-0000-0000-C000-000000000046}' | sort -u >"$work/ids"
[ -s "$work/ids" ] || { echo "no identifiers in $manifest" >&2; exit 1; }
echo 'Vx_Main\.' >>"$work/ids"
sed -i 's/[{}]/\\&/g' "$work/ids"

# The keys of a registry tree (as reg export writes them) that belong to the library.
ours() {
  run reg export "$1" "$(winpath "$work/export.reg")" /y >/dev/null
  iconv -f UTF-16LE -t UTF-8 "$work/export.reg" | tr -d '\r' | grep '^\[' | grep -iE -f "$work/ids" || true
}
expect_none() {
  local found
  found=$(ours "$1")
  if [ -n "$found" ]; then echo "FAIL $2: $1 holds keys of the library:" >&2; echo "$found" | head -5 >&2; exit 1; fi
}

# However the test ends, the prefix keeps nothing of the library.
cleanup() {
  [ -f "$work/remove.reg" ] && run reg import "$(winpath "$work/remove.reg")" >/dev/null 2>&1 || true
  run regsvr32 /u /s /n /i:user "$dll" >/dev/null 2>&1 || true
}
trap cleanup EXIT

run regsvr32 /s /n /i:user "$dll" || { echo "FAIL regsvr32 /n /i:user" >&2; exit 1; }
expect_none 'HKLM\Software\Classes' "registered for the user"

# The user's keys of the library, under the machine's classes for the use (and their removal).
run reg export 'HKCU\Software\Classes' "$(winpath "$work/user.reg")" /y >/dev/null
iconv -f UTF-16LE -t UTF-8 "$work/user.reg" | tr -d '\r' | perl -e '
  my @ids = map { chomp; $_ } do { open my $f, "<", shift or die; <$f> };
  my ($keep, %top) = (0);
  print "Windows Registry Editor Version 5.00\n\n";
  while (<STDIN>) {
    if (/^\[HKEY_CURRENT_USER\\Software\\Classes\\(.*)\]$/) {
      my $path = $1;
      $keep = grep { $path =~ /$_/i } @ids;
      if ($keep) { $path =~ /^((?:CLSID|Interface|TypeLib)\\[^\\]+|[^\\]+)/i; $top{$1} = 1; print "[HKEY_LOCAL_MACHINE\\Software\\Classes\\$path]\n"; }
    } elsif ($keep) { print }
  }
  open my $r, ">", shift or die;
  print $r "Windows Registry Editor Version 5.00\n\n", map { "[-HKEY_LOCAL_MACHINE\\Software\\Classes\\$_]\n\n" } sort keys %top;
' "$work/ids" "$work/remove.reg" >"$work/machine.reg"
run reg import "$(winpath "$work/machine.reg")" >/dev/null
VX_DLL=$dll VX_MANIFEST=$(winpath "$manifest") "$here/run-host-test.sh" "$here/peruser.vbs.in"
run reg import "$(winpath "$work/remove.reg")" >/dev/null
rm -f "$work/remove.reg"
expect_none 'HKLM\Software\Classes' "the copy for the use removed"

run regsvr32 /u /s /n /i:user "$dll" || { echo "FAIL regsvr32 /u /n /i:user" >&2; exit 1; }
expect_none 'HKCU\Software\Classes' "removed for the user"
expect_none 'HKLM\Software\Classes' "removed for the user"
"$here/run-host-test.sh" "$here/unregistered.vbs.in"
echo "the user's registration: registered, used and removed; nothing of the library is left"
