#!/bin/sh
# Builds the libFuzzer targets (the "fuzz" preset: clang, AddressSanitizer and
# UndefinedBehaviorSanitizer) and runs every fuzzer for the given number of
# seconds (default 60) over its seed corpus in fuzz/corpus/<name>/. New inputs go
# to a scratch folder, never into the repository. Fails on the first fuzzer that
# finds a crash, a hang or a leak.
#
#   scripts/fuzz.sh [SECONDS] [FUZZER...]
#
# The runs start from a fixed seed (TESSARINE_FUZZ_SEED, default 1), so that CI
# walks the same inputs a developer walked before; a new seed explores anew.
#
# TESSARINE_FUZZ_BUILD_DIR names a folder with the fuzzers already built; the
# preset build is then skipped.
set -eu

seconds=${1:-60}
[ $# -gt 0 ] && shift
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

if [ -n "${TESSARINE_FUZZ_BUILD_DIR:-}" ]; then
    bindir=$TESSARINE_FUZZ_BUILD_DIR/fuzz
else
    cmake --preset fuzz >/dev/null
    cmake --build --preset fuzz -j "${TESSARINE_JOBS:-2}"
    bindir=$root/build/fuzz/fuzz
fi

if [ $# -gt 0 ]; then
    fuzzers=$*
else
    fuzzers=$(cd "$root/fuzz" && find . -name 'fuzz_*.cpp' -exec basename {} .cpp \; | sort)
fi

# The corpus folder of a fuzzer: its name without "fuzz_", with two short forms.
corpus_of() {
    case "$1" in
    fuzz_quoted_printable) echo qp ;;
    fuzz_split_esc) echo splitesc ;;
    *) echo "${1#fuzz_}" ;;
    esac
}

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
status=0
for f in $fuzzers; do
    seed=$root/fuzz/corpus/$(corpus_of "$f")
    work=$scratch/$f
    mkdir -p "$work" "$seed"
    echo "== $f: ${seconds}s over $seed"
    if ! "$bindir/$f" -seed="${TESSARINE_FUZZ_SEED:-1}" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
        -artifact_prefix="$scratch/$f-" "$work" "$seed" >"$scratch/$f.log" 2>&1; then
        tail -n 60 "$scratch/$f.log"
        mkdir -p "$root/build/fuzz-artifacts"
        cp "$scratch/$f"-* "$root/build/fuzz-artifacts/" 2>/dev/null || true
        echo "== $f FAILED (inputs kept in build/fuzz-artifacts/)"
        status=1
        continue
    fi
    grep -E '^(#[0-9]+.*DONE|Done [0-9]+ runs|stat::number_of_executed_units|stat::peak_rss_mb)' "$scratch/$f.log" || true
    echo "== $f passed"
done
exit $status
