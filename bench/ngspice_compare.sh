#!/usr/bin/env bash
# Times one 513-point power-gain sweep of a 32-dipole ladder (source resistor, 30th-order
# Butterworth low-pass at 1 MHz, load) in zelkbench, and the AC analysis of the same
# ladder at the same 513 frequencies (100 kHz to 10 MHz, 256 per decade) in ngspice,
# side by side, in CPU time.
#
#   bench/ngspice_compare.sh [BUILD_DIR]     (default: build-bench beside the sources)
#
# Needs ngspice (apt-get install -y ngspice) and Google Benchmark.
set -euo pipefail

src=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$src/build-bench}
reps=${REPS:-400}

if [ ! -x "$build/bench/zelkbench" ]; then
    cmake -S "$src" -B "$build" -DZELK_QT=OFF -DZELK_BENCH=ON -DZELK_TESTS=OFF >/dev/null
    cmake --build "$build" --target zelkbench -j2 >/dev/null
fi
command -v ngspice >/dev/null || { echo "ngspice is not installed" >&2; exit 1; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The ladder: g(k) = 2 sin((2k-1) pi / 60), shunt C = g/(R wc), series L = g R/wc.
netlist() {
    local n=$1
    awk -v reps="$n" 'BEGIN {
        pi = 3.14159265358979; r = 50; wc = 2 * pi * 1e6
        print "* 32-dipole Butterworth ladder"
        print "V1 in 0 AC 1"
        print "RS in n1 50"
        node = 1
        for (k = 1; k <= 30; k++) {
            g = 2 * sin((2 * k - 1) * pi / 60)
            if (k % 2) printf "C%d n%d 0 %.15g\n", k, node, g / (r * wc)
            else { printf "L%d n%d n%d %.15g\n", k, node, node + 1, g * r / wc; node++ }
        }
        printf "RL n%d 0 50\n", node
        print ".control"
        print "set noaskquit"
        if (reps > 0) {
            printf "repeat %d\n", reps
            print "ac dec 256 100k 10meg"
            print "destroy all"
            print "end"
        }
        print "quit"
        print ".endc"
        print ".end"
    }'
}

cputime() { # CPU seconds (user + system) of one ngspice run
    local f=$1 t
    TIMEFORMAT='%3U %3S'
    t=$( { time ngspice -b "$f" >/dev/null 2>&1; } 2>&1 )
    awk -v t="$t" 'BEGIN { split(t, a, " "); print a[1] + a[2] }'
}

netlist 0 > "$work/base.cir"
netlist "$reps" > "$work/runs.cir"
base=$(cputime "$work/base.cir")
runs=$(cputime "$work/runs.cir")
spice_us=$(awk -v a="$runs" -v b="$base" -v n="$reps" 'BEGIN { printf "%.1f", (a - b) / n * 1e6 }')

"$build/bench/zelkbench" --benchmark_filter='BM_PEGSweep' --benchmark_format=json \
    --benchmark_repetitions=5 --benchmark_report_aggregates_only=true >"$work/bench.json" 2>/dev/null
ours() { # median CPU time in microseconds of a benchmark
    awk -v name="\"$1_median\"" '
        $1 == "\"name\":" && $2 == name "," { found = 1 }
        found && $1 == "\"cpu_time\":" { sub(",", "", $2); print $2; exit }' "$work/bench.json"
}
block=$(ours BM_PEGSweep)
one=$(ours BM_PEGSweepOnePoint)

echo "513-point sweep of the 32-dipole ladder, CPU time per sweep:"
echo "  ngspice AC analysis          ${spice_us} us   (mean of $reps runs)"
printf "  block walk (PEG)             %.1f us   ratio %.1fx\n" "$block" "$(awk -v a="$spice_us" -v b="$block" 'BEGIN { print a / b }')"
printf "  one-point walk (PEG)         %.1f us   ratio %.1fx\n" "$one" "$(awk -v a="$spice_us" -v b="$one" 'BEGIN { print a / b }')"
