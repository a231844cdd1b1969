#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds the project and runs every screenshot program (build/default/tests/ui/shots/shots_*)
# under Xvfb on the real xcb platform, once in English (0809) and once in German (0407).
# Each program writes <area>-<what>-<lang>.png into build/screenshots.
set -euo pipefail
cd "$(dirname "$0")/.."
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1
cmake --preset default >/dev/null
shots_dir=build/default/tests/ui/shots
targets=$(cmake --build --preset default --target help | sed -n 's/^\(shots_[A-Za-z0-9_]*\):.*/\1/p' | sort -u)
if [ -z "$targets" ]; then
    echo "screenshots: no shots_* programs are defined" >&2
    exit 1
fi
# shellcheck disable=SC2086
cmake --build --preset default -j2 --target $targets
out=build/screenshots
mkdir -p "$out"
status=0
for program in "$shots_dir"/shots_*; do
    [ -f "$program" ] && [ -x "$program" ] || continue
    for lang in 0809 0407; do
        echo "== $(basename "$program") $lang"
        if ! QT_QPA_PLATFORM=xcb xvfb-run -a -s "-screen 0 1280x1024x24" "$program" "$out" "$lang"; then
            echo "screenshots: $(basename "$program") failed for $lang" >&2
            status=1
        fi
    done
done
echo "screenshots in $out"
exit $status
