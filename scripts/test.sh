#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test.
#   --asan   builds and tests the AddressSanitizer + UndefinedBehaviorSanitizer preset too
#   --fuzz   builds the libFuzzer targets and runs each for 60 seconds
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh

asan=0
fuzz=0
for arg in "$@"; do
    case "$arg" in
    --asan) asan=1 ;;
    --fuzz) fuzz=1 ;;
    *) echo "usage: scripts/test.sh [--asan] [--fuzz]" >&2; exit 2 ;;
    esac
done

# Compiler caching that works from any checkout folder.
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
jobs=$(nproc)
run_preset() {
    echo "== preset $1"
    cmake --preset "$1" >/dev/null
    cmake --build --preset "$1" -j "$jobs"
    ctest --preset "$1" -j "$jobs"
}

run_preset default
if [ "$asan" = 1 ]; then run_preset asan; fi
if [ "$fuzz" = 1 ]; then
    echo "== fuzzers"
    sh scripts/fuzz.sh "${TESSARINE_FUZZ_SECONDS:-60}"
fi
