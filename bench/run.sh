#!/bin/bash
# Runs every benchmark against the 64-bit build in the test prefix and prints one table:
# each line compares what was measured with a baseline measured in the same run (the
# platform's own object doing the same, or the same work at a tenth of the size).
#   bench/run.sh        (./run bench builds, starts a display and calls this)
# A benchmark is a script bench/*.vbs (run by Wine's cscript.exe with bench/lib.vbs in
# front; it prints "BENCH label|measured|baseline|largest ratio" lines) or a program
# bench_*.exe in build/win64/bin that prints the same lines.
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
bin=$root/build/win64/bin
export VX_WINEPREFIX=$root/build/win64/wine-prefix
export VX_BIN_DIR="Z:${bin//\//\\}"
work=$root/build/win64/bench
rm -rf "$work" && mkdir -p "$work"
winpath() { echo "Z:${1//\//\\}"; }

"$root/tests/wine-env.sh" regsvr32 /s "$(winpath "$bin/Vx_Main.dll")" || { echo "registration failed" >&2; exit 1; }
lines=()
for script in "$root"/bench/*.vbs; do
  name=$(basename "$script")
  [ "$name" = lib.vbs ] && continue
  { cat "$root/bench/lib.vbs" "$script"; } | sed 's/$/\r/' > "$work/$name"
  echo "running $name" >&2
  out=$("$root/tests/wine-env.sh" cscript.exe //nologo "$(winpath "$work/$name")" 2>&1 | tr -d '\r')
  printf '%s\n' "$out" | grep -v '^BENCH ' >&2
  while IFS= read -r l; do lines+=("${l#BENCH }"); done < <(printf '%s\n' "$out" | grep '^BENCH ')
done
for program in "$bin"/bench_*.exe; do
  [ -e "$program" ] || continue
  echo "running $(basename "$program")" >&2
  out=$("$root/tests/wine-env.sh" "$program" 2>&1 | tr -d '\r')
  printf '%s\n' "$out" | grep -v '^BENCH ' >&2
  while IFS= read -r l; do lines+=("${l#BENCH }"); done < <(printf '%s\n' "$out" | grep '^BENCH ')
done

# One row per comparison: what it compares, ours, the baseline (the platform's object, or
# our own at a tenth of the size), their ratio, the largest ratio allowed and the verdict.
# A row without a target ("-") is a figure shown beside its baseline.
missed=0
row='%-72s %11s %11s %7s %8s %s\n'
printf "\n$row" "benchmark (ours / base)" "ours" "base" "ratio" "target" "result"
for l in "${lines[@]}"; do
  IFS='|' read -r label measured baseline largest <<<"$l"
  ratio=$(awk -v m="$measured" -v b="$baseline" 'BEGIN { if (b <= 0 || m < 0) print "n/a"; else printf "%.2f", m / b }')
  if [ "$largest" = "-" ]; then
    printf "$row" "$label" "$measured" "$baseline" "$ratio" "-" "-"
    continue
  fi
  result=$(awk -v r="$ratio" -v t="$largest" 'BEGIN { print (r != "n/a" && r + 0 <= t + 0) ? "ok" : "MISSED" }')
  [ "$result" = MISSED ] && missed=1
  printf "$row" "$label" "${measured}s" "${baseline}s" "$ratio" "<= $largest" "$result"
done
"$root/tests/wine-env.sh" regsvr32 /u /s "$(winpath "$bin/Vx_Main.dll")" >/dev/null 2>&1 || true
exit $missed
