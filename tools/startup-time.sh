#!/usr/bin/env bash
# The desktop start: launch of zelkfilter to its main window mapped, under Xvfb (a
# 1400x900x24 screen), RUNS times. Each run launches `zelkfilter --startup-time`, which
# ends itself at the first exposure of its main window and prints the moment; the figure
# is that moment less the launch moment noted here, with the process's own CPU time and
# its time since main() beside it. Settings and user files go to a scratch folder (the
# first run writes the installation's defaults, as a first start does).
#
#   tools/startup-time.sh [BUILD_DIR] [RUNS]      (default: build beside the sources, 5)
#
# Needs the Qt build (-DZELK_QT=ON) and xvfb-run (apt-get install -y xvfb). Prints one
# line per run, then the median, and the load average (the figures are wall time).
set -euo pipefail

src=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$src/build}
runs=${2:-5}
app=$build/zelkfilter
[ -x "$app" ] || { echo "no desktop application at $app (configure with -DZELK_QT=ON)" >&2; exit 1; }

if [ -z "${ZELK_STARTUP_INNER:-}" ]; then
    command -v xvfb-run >/dev/null || { echo "xvfb-run is not installed" >&2; exit 1; }
    ZELK_STARTUP_INNER=1 exec xvfb-run -a -s "-screen 0 1400x900x24" "$0" "$build" "$runs"
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_CONFIG_HOME=$work/config ZELK_USERDIR=$work/user ZELK_PROGRAMDIR=$build
mkdir -p "$XDG_CONFIG_HOME" "$ZELK_USERDIR"
unset QT_QPA_PLATFORM

figures=()
for ((i = 1; i <= runs; ++i)); do
    TIMEFORMAT='%3U %3S'
    launch=$(date +%s.%N)
    cpu=$( { time "$app" --startup-time >"$work/out" 2>"$work/err"; } 2>&1 )
    read -r _ mapped _ main _ process <"$work/out" || { echo "run $i: no exposure reported" >&2; cat "$work/err" >&2; exit 1; }
    line=$(awk -v l="$launch" -v m="$mapped" -v s="$main" -v p="$process" -v c="$cpu" 'BEGIN {
        split(c, t, " ")
        printf "%.3f %.3f %.3f %.3f", m - l, s, p, t[1] + t[2] }')
    read -r total sincemain sinceprocess cputime <<<"$line"
    printf "run %d: launch to mapped %s s (since main %s s, process age %s s), CPU %s s\n" \
        "$i" "$total" "$sincemain" "$sinceprocess" "$cputime"
    figures+=("$total")
done
median=$(printf "%s\n" "${figures[@]}" | sort -n | awk '{ a[NR] = $1 } END { print (NR % 2) ? a[(NR + 1) / 2] : (a[NR / 2] + a[NR / 2 + 1]) / 2 }')
echo "median launch to mapped: $median s over $runs runs; load average $(cut -d' ' -f1-3 /proc/loadavg)"
