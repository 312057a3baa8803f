#!/usr/bin/env bash
# Installs the build dependencies, then configures and builds Vellum into ./build.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install-deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j"$(nproc)"
