#!/usr/bin/env bash
# Times every plot's 513-point sweep of a 32-dipole ladder (source resistor, 30th-order
# Butterworth low-pass at 1 MHz, load), the step response pass and the gain plot's
# redraw in zelkbench, and the AC analysis of the same ladder at the same 513
# frequencies (100 kHz to 10 MHz, 256 per decade) in ngspice, in the same run, in CPU
# time: each figure with its ratio to ngspice and to the power gain sweep.
#
# Then the desktop start, launch to the main window mapped under Xvfb
# (tools/startup-time.sh), when a Qt build and xvfb-run are there.
#
#   bench/ngspice_compare.sh [BUILD_DIR]     (default: build-bench beside the sources)
#   REPS=400 (ngspice analyses), BENCHREPS=5 (benchmark repetitions, medians taken)
#   QTBUILD=DIR (the Qt build for the start; default: build beside the sources),
#   STARTRUNS=5 (starts timed; 0 leaves the start out)
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

benchreps=${BENCHREPS:-5}
# The repetitions of all benchmarks in random order, so that no figure alone takes the
# slow start of the run or a spell of load from elsewhere.
"$build/bench/zelkbench" --benchmark_format=json --benchmark_min_warmup_time=0.2 \
    --benchmark_enable_random_interleaving=true \
    --benchmark_repetitions="$benchreps" --benchmark_report_aggregates_only=true >"$work/bench.json" 2>/dev/null
ours() { # median CPU time in microseconds of a benchmark (its only time for one repetition)
    local suffix=_median
    [ "$benchreps" -gt 1 ] || suffix=
    awk -v name="\"$1$suffix\"" '
        $1 == "\"name\":" && $2 == name "," { found = 1 }
        found && $1 == "\"cpu_time\":" { sub(",", "", $2); print $2; exit }' "$work/bench.json"
}
gain=$(ours BM_PEGSweep)

echo "513-point sweeps of the 32-dipole ladder, CPU time per operation"
echo "(zelkbench: median of $benchreps repetitions; ngspice: mean of $reps AC analyses, start-up taken off)"
echo "(load average at the end of the benchmarks: $(cut -d' ' -f1-3 /proc/loadavg))"
printf "  %-52s %9s us\n" "ngspice AC analysis, 513 points" "$spice_us"
printf "  %-52s %9s   %12s %12s\n" "operation" "CPU time" "ngspice/this" "this/PEG"
row() { # benchmark, label
    local t
    t=$(ours "$1")
    [ -n "$t" ] || return 0
    awk -v l="$2" -v t="$t" -v s="$spice_us" -v g="$gain" \
        'BEGIN { printf "  %-52s %9.1f us %11.1fx %11.2fx\n", l, t, s / t, t / g }'
}
row BM_PEGSweep "Power effective gain sweep, block walk"
row BM_PEGSweepOnePoint "Power effective gain sweep, one-point walk"
row BM_VoltageInsertionGainSweep "Voltage insertion gain sweep, block walk"
row BM_OutputImpedanceSweep "Output impedance sweep, block walk"
row BM_InputImpedanceSweep "Input impedance sweep, block walk"
row BM_ReturnLossSweep "Return loss sweep, block walk"
row BM_PhaseSweep "Phase sweep, block walk"
row BM_GroupDelaySweep "Group delay sweep, block walk"
row BM_GroupDelaySweepOnePoint "Group delay sweep, one-point walk"
row BM_StepResponsePass "Step response pass (100 walks, 513 sums)"
row BM_StepHarmonicWalks "  its 100 harmonic walks"
row BM_StepCosineSums "  its 513 sums of 100 cosines (recurrence)"
row BM_PEGPlotRedraw "Full redraw of the gain plot, ladder unchanged"
row BM_PEGPlotRedrawAfterEdit "Full redraw of the gain plot after a part changed"
row BM_MonteCarloPassPEG "Monte Carlo pass, gain plot open"
row BM_MonteCarloPassAll "Monte Carlo pass, all fifteen plots open"

startruns=${STARTRUNS:-5}
qtbuild=${QTBUILD:-$src/build}
if [ "$startruns" -gt 0 ]; then
    if [ -x "$qtbuild/zelkfilter" ] && command -v xvfb-run >/dev/null; then
        echo "Desktop start, launch to the main window mapped (Xvfb, wall time):"
        "$src/tools/startup-time.sh" "$qtbuild" "$startruns" | sed 's/^/  /'
    else
        echo "Desktop start not measured: no Qt build at $qtbuild (QTBUILD=...) or no xvfb-run"
    fi
fi
