#!/usr/bin/env bash
# Installs what the build needs, builds everything, and runs the whole test suite.
# The logic is first built and tested with the Qt shell switched off (a Qt include in
# the logic breaks that build), then the Qt shell is added in the same tree.
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/deps.sh
bash tools/check-layers.sh
BUILD=${BUILD:-build}
JOBS=${JOBS:-2}
# A compiler cache when one is installed: a second run on the same machine rebuilds only
# what changed.
if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1
fi
cmake -S . -B "$BUILD" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZELK_QT=OFF -DZELK_WERROR=ON
cmake --build "$BUILD" -j"$JOBS"
ctest --test-dir "$BUILD" --output-on-failure -j"$JOBS"
cmake -S . -B "$BUILD" -DZELK_QT=ON
cmake --build "$BUILD" -j"$JOBS"
QT_QPA_PLATFORM=offscreen ctest --test-dir "$BUILD" --output-on-failure -j"$JOBS" -L qt --no-tests=error
bash tools/sanitize.sh
