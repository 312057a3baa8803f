#!/usr/bin/env bash
# Builds Vellum (scripts/build.sh), then runs every test; exits with CTest's status.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/build.sh
exec ctest --test-dir build --output-on-failure -j2
