#!/usr/bin/env bash
# Installs the Debian 12 packages that building and testing Vellum needs.
# Does nothing (and needs no network) when they are all installed already.
# With --fuzz, also clang and its libFuzzer runtime, for scripts/fuzz.sh.
set -euo pipefail

packages=(build-essential cmake pkg-config libgtest-dev libbenchmark-dev libxerces-c-dev libexpat1-dev
    nlohmann-json3-dev graphviz)
if [ "${1:-}" = --fuzz ]; then
    packages+=(clang libclang-rt-14-dev)
fi

missing=()
for package in "${packages[@]}"; do
    status="$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null || true)"
    if [ "$status" != "install ok installed" ]; then
        missing+=("$package")
    fi
done

if [ "${#missing[@]}" -eq 0 ]; then
    echo "install-deps: all build dependencies are installed"
    exit 0
fi

sudo=()
if [ "$(id -u)" -ne 0 ]; then
    sudo=(sudo)
fi

echo "install-deps: installing ${missing[*]}"
"${sudo[@]}" apt-get update
"${sudo[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y --no-install-recommends "${missing[@]}"
