#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test. With --asan the
# sanitizer build runs its tests too.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh

jobs=$(nproc)
cmake --preset default >/dev/null
cmake --build --preset default -j "$jobs"
ctest --preset default -j "$jobs"

if [ "${1:-}" = "--asan" ]; then
    cmake --preset asan >/dev/null
    cmake --build --preset asan -j "$jobs"
    ctest --preset asan -j "$jobs"
fi
