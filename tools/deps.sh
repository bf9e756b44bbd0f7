#!/usr/bin/env bash
# Installs the Debian packages the build, the application and the tests need.
set -euo pipefail
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO=sudo; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -q
$SUDO apt-get install -y -q --no-install-recommends \
    build-essential cmake pkg-config ccache \
    libgtest-dev libgmock-dev libbenchmark-dev \
    qt6-base-dev qt6-base-dev-tools libgl-dev \
    ngspice libcairo2-dev poppler-utils python3-scikit-rf python3-numpy \
    clang libclang-rt-dev llvm
