#!/usr/bin/env bash
# Installs what is missing, builds, and runs the program's main job on the
# built-in defaults.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
cmake --preset default >/dev/null
cmake --build --preset default -j "$(nproc)"
# One AutoSync of both lists unless the arguments name another switch.
case " ${*^^} " in
*" BOTH "* | *" VCAL "* | *" VCARD "*) exec build/default/src/app/tessarine --headless "$@" ;;
*) exec build/default/src/app/tessarine --headless "$@" BOTH ;;
esac
