#!/usr/bin/env bash
# The layer check passes on the tree as it stands, and fails on a copy in which the
# link includes a road or the engine includes the link.
set -u
checker="$1"
source_dir="$2"
python3 "$checker" "$source_dir" >/dev/null || { echo "the tree itself breaks its layers"; python3 "$checker" "$source_dir"; exit 1; }

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fails_on() {
    rm -rf "$scratch/src"
    mkdir -p "$scratch/src/$1"
    printf '#include "core/Context.h"\n#include "%s"\n' "$2" >"$scratch/src/$1/File.cpp"
    if python3 "$checker" "$scratch" >/dev/null 2>&1; then
        echo "not caught: $1/ including $2"
        exit 1
    fi
}
passes_on() {
    rm -rf "$scratch/src"
    mkdir -p "$scratch/src/$1"
    printf '#include "%s"\n' "$2" >"$scratch/src/$1/File.cpp"
    python3 "$checker" "$scratch" >/dev/null 2>&1 || { echo "wrongly refused: $1/ including $2"; exit 1; }
}
fails_on phone roads/Mobile.h
fails_on phone pim/Pim.h
fails_on sync phone/ATC.h
fails_on spine main/Main_Modul.h
fails_on core tables/TableSet.h
passes_on roads phone/ATC.h
passes_on sync pim/Pim.h
fails_on sync pim/local/LocalStore.h
passes_on ui main/MainCommands.h
echo "layer check: 9 cases"
