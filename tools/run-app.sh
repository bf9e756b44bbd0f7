#!/usr/bin/env bash
# Installs what the build needs, builds the desktop application and starts it.
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/deps.sh
BUILD=${BUILD:-build}
cmake -S . -B "$BUILD" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZELK_QT=ON
cmake --build "$BUILD" -j"${JOBS:-2}"
if [ -x "$BUILD/zelkfilter" ]; then
    exec "$BUILD/zelkfilter"
fi
echo "The desktop application is not built yet; running the batch runner on a sample script." >&2
exec "$BUILD/zelkfilter-batch" docs/sample.zbs
